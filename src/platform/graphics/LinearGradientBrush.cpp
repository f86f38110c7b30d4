#include "platform/graphics/LinearGradientBrush.h"

#include "platform/graphics/FigureClusters.h"

#include <cmath>

namespace gfx {

namespace {

// The gradient line for the mode. In the diagonal modes the boundaries are parallel to the
// rectangle's other diagonal: the line leaves the start corner at right angles to it, and P1 is
// where the far corner projects onto it. The two corners off the line then lie on the middle
// boundary and get the mean colour, for any aspect ratio.
void gradientLine(const QRectF& r, LinearGradientMode mode, QPointF& p0, QPointF& p1)
{
    const double x = r.x(), y = r.y(), w = r.width(), h = r.height();
    const double s = w * w + h * h;
    switch (mode) {
    case LinearGradientMode::Horizontal:
        p0 = {x, y};
        p1 = {x + w, y};
        return;
    case LinearGradientMode::Vertical:
        p0 = {x, y};
        p1 = {x, y + h};
        return;
    case LinearGradientMode::ForwardDiagonal:
        p0 = {x, y};
        p1 = s > 0 ? QPointF(x + 2 * w * h * h / s, y + 2 * w * w * h / s) : p0;
        return;
    case LinearGradientMode::BackwardDiagonal:
        p0 = {x + w, y};
        p1 = s > 0 ? QPointF(x + w - 2 * w * h * h / s, y + 2 * w * w * h / s) : p0;
        return;
    }
    p0 = p1 = {x, y};
}

double toLinear(double c)
{
    return c <= 0.04045 ? c / 12.92 : std::pow((c + 0.055) / 1.055, 2.4);
}

double toSrgb(double c)
{
    return c <= 0.0031308 ? c * 12.92 : 1.055 * std::pow(c, 1 / 2.4) - 0.055;
}

} // namespace

LinearGradientBrush::LinearGradientBrush(const QRectF& rect, Color color1, Color color2, LinearGradientMode mode)
    : m_rect(rect), m_color1(color1), m_color2(color2), m_mode(mode)
{
    gradientLine(rect, mode, m_start, m_end);
}

QColor LinearGradientBrush::Blend(Color a, Color b, double t, bool gammaCorrection)
{
    const QColor ca = a.toQColor(), cb = b.toQColor();
    const auto mix = [t, gammaCorrection](double u, double v) {
        return gammaCorrection ? toSrgb(toLinear(u) + (toLinear(v) - toLinear(u)) * t) : u + (v - u) * t;
    };
    QColor c;
    c.setRgbF(float(mix(ca.redF(), cb.redF())), float(mix(ca.greenF(), cb.greenF())),
              float(mix(ca.blueF(), cb.blueF())), float(ca.alphaF() + (cb.alphaF() - ca.alphaF()) * t));
    return c;
}

QGradientStops LinearGradientBrush::Ramp(Color a, Color b, bool gammaCorrection)
{
    if (!gammaCorrection)
        return {{0.0, a.toQColor()}, {1.0, b.toQColor()}};
    // Enough stops that the straight blend between them stays within a level or so of the curve.
    constexpr int Steps = 32;
    QGradientStops stops;
    for (int i = 0; i <= Steps; ++i)
        stops.append({double(i) / Steps, Blend(a, b, double(i) / Steps, true)});
    return stops;
}

QLinearGradient LinearGradientBrush::gradient() const
{
    QLinearGradient g(m_start, m_end);
    // The ramp repeats beyond the rectangle, and the components blend without premultiplying,
    // so that a fade to a transparent colour takes on that colour's hue.
    g.setSpread(QGradient::RepeatSpread);
    g.setInterpolationMode(QGradient::ComponentInterpolation);
    g.setStops(Ramp(m_color1, m_color2, m_gammaCorrection));
    return g;
}

QBrush LinearGradientBrush::QtBrush(const QPainter&, const FillContext&) const
{
    if (m_start == m_end)
        return QBrush(Qt::NoBrush); // an empty rectangle makes no gradient
    return QBrush(gradient());
}

void LinearGradientBrush::Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const
{
    if (m_start == m_end)
        return;
    FigureClusters::FillPath(painter, path, QtBrush(painter, context));
}

} // namespace gfx
