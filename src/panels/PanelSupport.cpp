#include "panels/PanelSupport.h"

#include <QAbstractSlider>
#include <QFont>
#include <QFontMetrics>

#include <algorithm>
#include <cmath>

namespace PanelSupport {

QSize DialogUnitsToPixels(const QFont& font, int cx, int cy)
{
    const QFontMetrics metrics(font);
    // The average width of the alphabet, rounded, as a dialog's base unit is measured.
    const QString alphabet = QStringLiteral("ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz");
    const double baseX = (metrics.horizontalAdvance(alphabet) / 26.0 + 1) / 2;
    const double baseY = metrics.height();
    return QSize(int(cx * baseX / 4), int(cy * baseY / 8));
}

int ScrolledPosition(const QAbstractSlider& slider, int action, int lineStep, int lineTest, int pageStep, int pageTest)
{
    const int position = slider.value();
    const int low = slider.minimum();
    const int high = slider.maximum();
    const auto within = [low, high](long long value) { return value >= low && value <= high; };
    switch (action) {
    case QAbstractSlider::SliderToMinimum:
        return low;
    case QAbstractSlider::SliderToMaximum:
        return high;
    case QAbstractSlider::SliderSingleStepSub:
        return within(static_cast<long long>(position) - lineTest) ? position - lineStep : position;
    case QAbstractSlider::SliderSingleStepAdd:
        return within(static_cast<long long>(position) + lineTest) ? position + lineStep : position;
    case QAbstractSlider::SliderPageStepSub:
        return within(static_cast<long long>(position) - pageTest) ? position - pageStep : position;
    case QAbstractSlider::SliderPageStepAdd:
        return within(static_cast<long long>(position) + pageTest) ? position + pageStep : position;
    default:
        return slider.sliderPosition();
    }
}

int Thousandths(double value, const QAbstractSlider& slider)
{
    const double thousandths = std::trunc(value * 1000 + 1e-6);
    if (std::isnan(thousandths))
        return slider.minimum();
    return int(std::clamp(thousandths, double(slider.minimum()), double(slider.maximum())));
}

} // namespace PanelSupport
