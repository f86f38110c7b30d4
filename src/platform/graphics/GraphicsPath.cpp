#include "platform/graphics/GraphicsPath.h"

#include "platform/graphics/Font.h"

#include <QtMath>
#include <algorithm>
#include <cmath>

namespace gfx {

namespace {

// The parametric angle (degrees, as Qt's arcs take it) of the ellipse point that lies on the ray
// at the geometric angle theta from the centre. Kept continuous with theta so that sweeps keep
// their length and direction across the axes.
double parametricAngle(double theta, double a, double b)
{
    if (a == b || std::fmod(theta, 90.0) == 0.0)
        return theta;
    const double rad = qDegreesToRadians(theta);
    const double phi = qRadiansToDegrees(std::atan2(a * std::sin(rad), b * std::cos(rad)));
    return theta + std::remainder(phi - theta, 360.0);
}

// Whether the segment from p to q meets the closed rectangle (Liang-Barsky clipping).
bool segmentMeetsRect(QPointF p, QPointF q, const QRectF& r)
{
    double t0 = 0, t1 = 1;
    // Keeps the part of the segment where step x t <= room.
    const auto keep = [&](double step, double room) {
        if (step == 0)
            return room >= 0;
        const double t = room / step;
        if (step > 0)
            t1 = std::min(t1, t);
        else
            t0 = std::max(t0, t);
        return t0 <= t1;
    };
    const double dx = q.x() - p.x(), dy = q.y() - p.y();
    return keep(-dx, p.x() - r.left()) && keep(dx, r.right() - p.x()) && keep(-dy, p.y() - r.top())
           && keep(dy, r.bottom() - p.y());
}

bool boxesMeet(const QRectF& a, const QRectF& b)
{
    return a.left() <= b.right() && b.left() <= a.right() && a.top() <= b.bottom() && b.top() <= a.bottom();
}

// Walks a path's outline for one question: does the area it fills meet a rectangle? The
// outline meets it, or else the whole rectangle lies on one side and its centre tells which.
// Curves are halved only where their control points come near the rectangle or straddle the
// centre's ray, so a pick on a label of many curved shapes stays cheap.
class RectProbe {
public:
    explicit RectProbe(const QRectF& rect) : m_rect(rect), m_centre(rect.center()) {}

    // False once the outline is found to meet the rectangle.
    bool Line(QPointF p, QPointF q)
    {
        if (segmentMeetsRect(p, q, m_rect))
            return false;
        cross(p, q);
        return true;
    }

    bool Cubic(QPointF p0, QPointF p1, QPointF p2, QPointF p3, int depth = 0)
    {
        const double left = std::min({p0.x(), p1.x(), p2.x(), p3.x()});
        const double right = std::max({p0.x(), p1.x(), p2.x(), p3.x()});
        const double top = std::min({p0.y(), p1.y(), p2.y(), p3.y()});
        const double bottom = std::max({p0.y(), p1.y(), p2.y(), p3.y()});
        const bool nearRect = left <= m_rect.right() && m_rect.left() <= right && top <= m_rect.bottom()
                              && m_rect.top() <= bottom;
        const bool spansRay = top <= m_centre.y() && bottom > m_centre.y() && right > m_centre.x();
        if (!nearRect && !spansRay)
            return true;
        if (!nearRect && left > m_centre.x()) {
            // Wholly right of the centre: the crossings of its row add up as its ends say.
            cross(p0, p3);
            return true;
        }
        // The curve strays at most 3/4 of the larger second difference of its points from
        // its chord. Halving quarters that, so a few halvings reach any flatness.
        const QPointF d1 = p0 - 2 * p1 + p2, d2 = p1 - 2 * p2 + p3;
        constexpr double Flatness = 1e-3;
        constexpr int MaxDepth = 40;
        const double bend = std::max(QPointF::dotProduct(d1, d1), QPointF::dotProduct(d2, d2));
        if (!(0.75 * 0.75 * bend > Flatness * Flatness) || depth == MaxDepth)
            return Line(p0, p3);
        // The halves by de Casteljau's construction.
        const QPointF a = (p0 + p1) / 2, b = (p1 + p2) / 2, c = (p2 + p3) / 2;
        const QPointF ab = (a + b) / 2, bc = (b + c) / 2, middle = (ab + bc) / 2;
        return Cubic(p0, a, ab, middle, depth + 1) && Cubic(middle, bc, c, p3, depth + 1);
    }

    bool CentreInside(Qt::FillRule rule) const { return rule == Qt::WindingFill ? m_winding != 0 : (m_winding & 1) != 0; }

private:
    // The crossing of the ray from the centre toward +x, counted half-open in y.
    void cross(QPointF p, QPointF q)
    {
        if ((p.y() <= m_centre.y()) == (q.y() <= m_centre.y()))
            return;
        const double x = p.x() + (m_centre.y() - p.y()) * (q.x() - p.x()) / (q.y() - p.y());
        if (x > m_centre.x())
            m_winding += q.y() > p.y() ? 1 : -1;
    }

    QRectF m_rect;
    QPointF m_centre;
    int m_winding = 0;
};

} // namespace

GraphicsPath::GraphicsPath(FillMode mode) : m_fillMode(mode)
{
    m_path.setFillRule(mode == FillMode::Winding ? Qt::WindingFill : Qt::OddEvenFill);
}

void GraphicsPath::SetFillMode(FillMode mode)
{
    m_fillMode = mode;
    m_path.setFillRule(mode == FillMode::Winding ? Qt::WindingFill : Qt::OddEvenFill);
}

// Continues the open figure with a line to the point, or starts a new figure there.
void GraphicsPath::beginAt(QPointF point)
{
    if (m_figureOpen && !m_points.empty()) {
        if (point != m_points.back())
            lineTo(point);
    } else {
        startFigureAt(point);
    }
}

void GraphicsPath::startFigureAt(QPointF point)
{
    m_path.moveTo(point);
    m_points.push_back(point);
    m_types.push_back(Start);
    m_figureOpen = true;
}

void GraphicsPath::lineTo(QPointF point)
{
    m_path.lineTo(point);
    m_points.push_back(point);
    m_types.push_back(Line);
}

void GraphicsPath::cubicTo(QPointF c1, QPointF c2, QPointF end)
{
    m_path.cubicTo(c1, c2, end);
    m_points.insert(m_points.end(), {c1, c2, end});
    m_types.insert(m_types.end(), {Bezier, Bezier, Bezier});
}

void GraphicsPath::AddArc(const QRectF& rect, float startAngle, float sweepAngle)
{
    if (!(rect.width() > 0) || !(rect.height() > 0))
        return;
    // Angles from a damaged file: an arc that starts nowhere, or sweeps no known way, has no
    // points. An endless sweep is a whole turn.
    if (!std::isfinite(startAngle) || std::isnan(sweepAngle))
        return;
    const double sweep = std::clamp(double(sweepAngle), -360.0, 360.0);
    const double a = rect.width() / 2, b = rect.height() / 2;
    const QPointF centre = rect.center();
    const double from = qDegreesToRadians(parametricAngle(startAngle, a, b));
    const double to = qDegreesToRadians(parametricAngle(startAngle + sweep, a, b));
    // The ellipse point at a parametric angle, and its derivative.
    const auto at = [&](double phi) { return centre + QPointF(a * std::cos(phi), b * std::sin(phi)); };
    const auto tangent = [&](double phi) { return QPointF(-a * std::sin(phi), b * std::cos(phi)); };
    // Quarter turns at most per Bezier, with the usual 4/3 tan(angle/4) handles; the end
    // points are exactly on the ellipse.
    const int pieces = std::max(1, int(std::ceil(std::abs(to - from) / (M_PI / 2) - 1e-9)));
    const double step = (to - from) / pieces;
    const double k = 4.0 / 3.0 * std::tan(step / 4);
    beginAt(at(from));
    for (int i = 0; i < pieces; ++i) {
        const double p0 = from + i * step;
        const double p1 = i + 1 == pieces ? to : p0 + step;
        cubicTo(at(p0) + k * tangent(p0), at(p1) - k * tangent(p1), at(p1));
    }
}

void GraphicsPath::AddLine(QPointF from, QPointF to)
{
    beginAt(from);
    lineTo(to);
}

void GraphicsPath::AddLines(const QPointF* points, int count)
{
    if (count < 1)
        return;
    beginAt(points[0]);
    for (int i = 1; i < count; ++i)
        lineTo(points[i]);
}

void GraphicsPath::AddBezier(QPointF p1, QPointF c1, QPointF c2, QPointF p2)
{
    beginAt(p1);
    cubicTo(c1, c2, p2);
}

void GraphicsPath::AddRectangle(const QRectF& rect)
{
    if (rect.width() == 0 || rect.height() == 0)
        return;
    startFigureAt(rect.topLeft());
    lineTo(rect.topRight());
    lineTo(rect.bottomRight());
    lineTo(rect.bottomLeft());
    CloseFigure();
}

void GraphicsPath::AddEllipse(const QRectF& rect)
{
    // Qt's ellipse has GDI+'s layout: four quarter Beziers from 0 degrees toward +y.
    QPainterPath ellipse;
    ellipse.addEllipse(rect);
    if (ellipse.elementCount() != 13)
        return;
    startFigureAt(ellipse.elementAt(0));
    for (int i = 1; i + 2 < 13; i += 3)
        cubicTo(ellipse.elementAt(i), ellipse.elementAt(i + 1), ellipse.elementAt(i + 2));
    CloseFigure();
}

void GraphicsPath::AddPolygon(const QPointF* points, int count)
{
    if (count < 2)
        return;
    startFigureAt(points[0]);
    for (int i = 1; i < count; ++i)
        lineTo(points[i]);
    CloseFigure();
}

void GraphicsPath::addCardinal(const QPointF* points, int count, float tension, bool closed)
{
    if (count < 2)
        return;
    const auto at = [&](int i) {
        if (closed)
            return points[((i % count) + count) % count];
        return points[std::clamp(i, 0, count - 1)];
    };
    const double k = tension / 3.0;
    if (closed)
        startFigureAt(points[0]);
    else
        beginAt(points[0]);
    const int segments = closed ? count : count - 1;
    for (int i = 0; i < segments; ++i) {
        const QPointF p0 = at(i - 1), p1 = at(i), p2 = at(i + 1), p3 = at(i + 2);
        cubicTo(p1 + k * (p2 - p0), p2 - k * (p3 - p1), p2);
    }
    if (closed)
        CloseFigure();
}

void GraphicsPath::AddCurve(const QPointF* points, int count, float tension)
{
    addCardinal(points, count, tension, false);
}

void GraphicsPath::AddClosedCurve(const QPointF* points, int count, float tension)
{
    addCardinal(points, count, tension, true);
}

void GraphicsPath::AddPath(const GraphicsPath& other, bool connect)
{
    if (&other == this) {
        const GraphicsPath copy(other);
        AddPath(copy, connect);
        return;
    }
    const std::size_t n = other.m_points.size();
    for (std::size_t i = 0; i < n; ++i) {
        const std::uint8_t type = other.m_types[i];
        const QPointF p = other.m_points[i];
        switch (type & 0x7) {
        case Start:
            if (i == 0 && connect)
                beginAt(p);
            else
                startFigureAt(p);
            break;
        case Bezier:
            if (i + 2 < n) {
                cubicTo(p, other.m_points[i + 1], other.m_points[i + 2]);
                i += 2;
            }
            break;
        default:
            lineTo(p);
            break;
        }
        if (other.m_types[i] & CloseFlag)
            CloseFigure();
    }
    if (!other.m_figureOpen)
        m_figureOpen = false;
}

void GraphicsPath::addClosedFigures(const QPainterPath& path)
{
    const int count = path.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element e = path.elementAt(i);
        if (e.isMoveTo()) {
            CloseFigure();
            startFigureAt(e);
        } else if (e.isCurveTo() && i + 2 < count) {
            cubicTo(e, path.elementAt(i + 1), path.elementAt(i + 2));
            i += 2;
        } else if (m_figureOpen) {
            lineTo(e);
        }
    }
    CloseFigure();
}

void GraphicsPath::AddString(const QString& text, const FontFamily& family, int style, float emSize, QPointF origin)
{
    const Font font(family, emSize, style);
    if (!font.IsAvailable())
        return;
    StartFigure();
    QPointF baseline = origin + QPointF(font.Padding(), font.Ascent());
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        addClosedFigures(font.Outline(line, baseline));
        baseline.ry() += font.LineSpacing();
    }
}

void GraphicsPath::StartFigure()
{
    m_figureOpen = false;
}

void GraphicsPath::CloseFigure()
{
    if (!m_figureOpen || m_types.empty())
        return;
    m_path.closeSubpath();
    m_types.back() |= CloseFlag;
    m_figureOpen = false;
}

void GraphicsPath::Reset()
{
    m_path = QPainterPath();
    m_points.clear();
    m_types.clear();
    m_figureOpen = false;
    SetFillMode(FillMode::Alternate);
}

void GraphicsPath::Transform(const Matrix& matrix)
{
    if (matrix.IsIdentity())
        return;
    m_path = matrix.transform().map(m_path);
    matrix.TransformPoints(m_points.data(), int(m_points.size()));
}

bool GraphicsPath::IsIdentical(const GraphicsPath& other) const
{
    const auto same = [](QPointF a, QPointF b) { return a.x() == b.x() && a.y() == b.y(); };
    return m_fillMode == other.m_fillMode && m_types == other.m_types
           && std::equal(m_points.begin(), m_points.end(), other.m_points.begin(), other.m_points.end(), same);
}

QRectF GraphicsPath::GetBounds() const
{
    return m_path.boundingRect();
}

bool GraphicsPath::IsVisible(QPointF point) const
{
    return m_path.contains(point);
}

bool GraphicsPath::Intersects(const QRectF& rect) const
{
    const QRectF r = rect.normalized();
    if (m_path.isEmpty() || !boxesMeet(m_path.controlPointRect(), r))
        return false;
    RectProbe probe(r);
    QPointF start, last;
    // Every figure is closed for filling: a line back to its start ends it.
    const auto closeFigure = [&] { return last == start || probe.Line(last, start); };
    const int count = m_path.elementCount();
    for (int i = 0; i < count; ++i) {
        const QPainterPath::Element e = m_path.elementAt(i);
        switch (e.type) {
        case QPainterPath::MoveToElement:
            if (i > 0 && !closeFigure())
                return true;
            start = last = e;
            break;
        case QPainterPath::LineToElement:
            if (!probe.Line(last, e))
                return true;
            last = e;
            break;
        case QPainterPath::CurveToElement:
            if (!probe.Cubic(last, e, m_path.elementAt(i + 1), m_path.elementAt(i + 2)))
                return true;
            last = m_path.elementAt(i + 2);
            i += 2;
            break;
        case QPainterPath::CurveToDataElement:
            break;
        }
    }
    if (!closeFigure())
        return true;
    return probe.CentreInside(m_path.fillRule());
}

} // namespace gfx
