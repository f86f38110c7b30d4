#include "platform/graphics/Pen.h"

#include "platform/graphics/SolidBrush.h"

#include <cmath>

namespace gfx {

namespace {

// GDI+ limits the whole miter (inner corner to outer tip) to 10 widths; Qt measures from the
// join point, so half of it.
constexpr qreal QtMiterLimit = 5.0;

} // namespace

Pen::Pen(Color color, float width) : m_color(color), m_width(width) {}

Pen::Pen(const Brush& brush, float width) : m_width(width)
{
    SetBrush(brush);
}

Pen::Pen(const Pen& other)
    : m_color(other.m_color),
      m_brush(other.m_brush ? other.m_brush->Clone() : nullptr),
      m_width(other.m_width),
      m_dashStyle(other.m_dashStyle),
      m_dashCap(other.m_dashCap),
      m_lineJoin(other.m_lineJoin),
      m_startCap(other.m_startCap),
      m_endCap(other.m_endCap),
      m_customStartCap(other.m_customStartCap),
      m_customEndCap(other.m_customEndCap)
{
}

Pen& Pen::operator=(const Pen& other)
{
    if (this != &other) {
        m_color = other.m_color;
        m_brush = other.m_brush ? other.m_brush->Clone() : nullptr;
        m_width = other.m_width;
        m_dashStyle = other.m_dashStyle;
        m_dashCap = other.m_dashCap;
        m_lineJoin = other.m_lineJoin;
        m_startCap = other.m_startCap;
        m_endCap = other.m_endCap;
        m_customStartCap = other.m_customStartCap;
        m_customEndCap = other.m_customEndCap;
    }
    return *this;
}

Pen::~Pen() = default;

void Pen::SetColor(Color color)
{
    m_color = color;
    m_brush.reset();
}

void Pen::SetBrush(const Brush& brush)
{
    m_brush = brush.Clone();
    if (const auto* solid = dynamic_cast<const SolidBrush*>(&brush))
        m_color = solid->GetColor();
}

void Pen::SetStartCap(LineCap cap)
{
    m_startCap = cap;
    m_customStartCap.reset();
}

void Pen::SetEndCap(LineCap cap)
{
    m_endCap = cap;
    m_customEndCap.reset();
}

void Pen::SetCustomStartCap(const CustomLineCap& cap)
{
    m_customStartCap = cap;
    m_startCap = LineCap::Custom;
}

void Pen::SetCustomEndCap(const CustomLineCap& cap)
{
    m_customEndCap = cap;
    m_endCap = LineCap::Custom;
}

bool Pen::HasLineCaps() const
{
    const auto plain = [](LineCap cap) { return cap == LineCap::Flat || cap == LineCap::NoAnchor; };
    return !plain(m_startCap) || !plain(m_endCap);
}

bool Pen::HasPatternBrush() const
{
    return m_brush && !dynamic_cast<const SolidBrush*>(m_brush.get());
}

QList<qreal> Pen::DashPattern(DashStyle style)
{
    switch (style) {
    case DashStyle::Dash:
        return {3, 1};
    case DashStyle::Dot:
        return {1, 1};
    case DashStyle::DashDot:
        return {3, 1, 1, 1};
    case DashStyle::DashDotDot:
        return {3, 1, 1, 1, 1, 1};
    case DashStyle::Solid:
        break;
    }
    return {};
}

QPen Pen::QtPen(const QTransform& combined) const
{
    // A width of 0 draws as 1; nothing is drawn thinner than one device pixel.
    const qreal width = m_width > 0 ? m_width : 1.0;
    const qreal deviceWidth = width * std::sqrt(std::abs(combined.determinant()));
    QPen pen(m_color.toQColor());
    pen.setWidthF(deviceWidth < 1.0 ? 0.0 : width);
    pen.setCosmetic(deviceWidth < 1.0);
    // Qt's dash caps would lengthen every dash; round and triangular dash ends are cut by the
    // graphics' own dashing instead.
    pen.setCapStyle(Qt::FlatCap);
    switch (m_lineJoin) {
    case LineJoin::Miter:
        // Beyond the limit GDI+ cuts the miter off at the limit, as Qt's MiterJoin does.
        pen.setJoinStyle(Qt::MiterJoin);
        break;
    case LineJoin::MiterClipped:
        // Beyond the limit this one falls back to a bevel, as the SVG miter does.
        pen.setJoinStyle(Qt::SvgMiterJoin);
        break;
    case LineJoin::Bevel:
        pen.setJoinStyle(Qt::BevelJoin);
        break;
    case LineJoin::Round:
        pen.setJoinStyle(Qt::RoundJoin);
        break;
    }
    pen.setMiterLimit(QtMiterLimit);
    const QList<qreal> dashes = DashPattern(m_dashStyle);
    if (!dashes.isEmpty())
        pen.setDashPattern(dashes);
    return pen;
}

} // namespace gfx
