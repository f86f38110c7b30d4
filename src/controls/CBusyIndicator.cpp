#include "controls/CBusyIndicator.h"

#include <QPainter>
#include <QPalette>

#include <algorithm>
#include <cmath>
#include <numbers>

namespace {

constexpr int Dots = 12;
constexpr int StepMilliseconds = 80;
constexpr int Side = 40;

} // namespace

CBusyIndicator::CBusyIndicator(QWidget* parent) : QWidget(parent)
{
    m_timer.setInterval(StepMilliseconds);
    connect(&m_timer, &QTimer::timeout, this, [this] {
        m_nStep = (m_nStep + 1) % Dots;
        update();
    });
    setFixedSize(sizeHint());
}

void CBusyIndicator::Play()
{
    m_nStep = 0;
    m_timer.start();
    update();
}

void CBusyIndicator::Stop()
{
    m_timer.stop();
}

QSize CBusyIndicator::sizeHint() const
{
    return QSize(Side, Side);
}

void CBusyIndicator::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    const QPointF centre = QRectF(rect()).center();
    const double radius = Side / 2.0 - 5.0;
    const QColor colour = palette().color(QPalette::Highlight);
    for (int i = 0; i < Dots; ++i) {
        // The bright spot is the current step; the dots behind it fade out like a trail.
        const int behind = (m_nStep - i + Dots) % Dots;
        QColor dot = colour;
        dot.setAlphaF(behind == 0 ? 1.0 : std::max(0.15, 0.8 - behind * 0.12));
        painter.setBrush(dot);
        const double angle = 2.0 * std::numbers::pi * i / Dots - std::numbers::pi / 2.0;
        const QPointF at(centre.x() + radius * std::cos(angle), centre.y() + radius * std::sin(angle));
        const double size = behind == 0 ? 3.5 : 2.8;
        painter.drawEllipse(at, size, size);
    }
}
