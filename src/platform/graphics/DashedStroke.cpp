#include "platform/graphics/DashedStroke.h"

#include "platform/graphics/Pen.h"

#include <QPainterPathStroker>
#include <algorithm>
#include <cmath>
#include <vector>

namespace gfx {

namespace {

// The point at distance s along the line, given the distance at each vertex.
QPointF pointAt(const QPolygonF& line, const std::vector<qreal>& at, qreal s, int& segment)
{
    while (segment + 2 < line.size() && at[segment + 1] < s)
        ++segment;
    const qreal length = at[segment + 1] - at[segment];
    const qreal t = length > 0 ? (s - at[segment]) / length : 0;
    return line[segment] + (line[segment + 1] - line[segment]) * t;
}

QPointF unit(QPointF v)
{
    const qreal length = std::hypot(v.x(), v.y());
    return length > 0 ? v / length : QPointF();
}

// Adds a closed polygon turned like the stroker's outlines (positive signed area), so that
// overlapping pieces never cancel under the nonzero rule.
void addTurnedPolygon(QPolygonF polygon, QPainterPath& path)
{
    qreal twiceArea = 0;
    for (qsizetype i = 0; i < polygon.size(); ++i) {
        const QPointF p = polygon[i], q = polygon[(i + 1) % polygon.size()];
        twiceArea += p.x() * q.y() - q.x() * p.y();
    }
    if (twiceArea < 0)
        std::reverse(polygon.begin(), polygon.end());
    polygon.append(polygon.first());
    path.addPolygon(polygon);
}

} // namespace

DashedStroke::DashedStroke(qreal width, const QList<qreal>& pattern, DashCap cap, Qt::PenJoinStyle join,
                           qreal miterLimit, qreal flatness)
    : m_width(width), m_cap(cap), m_join(join), m_miterLimit(miterLimit)
{
    for (const qreal length : pattern)
        m_pattern.append(length * width);
    // A chord of angle a strays r (1 - cos(a / 2)) from its arc.
    const qreal radius = width / 2;
    const qreal chordAngle = flatness > 0 && flatness < radius ? 2 * std::acos(1 - flatness / radius) : M_PI;
    constexpr int MaxSteps = 256;
    m_roundSteps = int(std::clamp(std::ceil(M_PI / chordAngle), 2.0, qreal(MaxSteps)));
    // The vertices lie a little outside the arc, so that a whole circle of them covers as much
    // as the circle: small dots keep their weight.
    const qreal polygonArea = m_roundSteps * std::sin(M_PI / m_roundSteps); // of 2 x steps chords, radius 1
    m_roundRadius = radius * std::sqrt(M_PI / polygonArea);
}

QPainterPath DashedStroke::Area(const QList<QPolygonF>& lines) const
{
    QPainterPath dashes, filled; // polylines for the stroker, and outlines ready to fill
    for (const QPolygonF& line : lines)
        addLine(line, dashes, filled);
    QPainterPathStroker stroker;
    stroker.setWidth(m_width);
    stroker.setCapStyle(Qt::FlatCap);
    stroker.setJoinStyle(m_join);
    stroker.setMiterLimit(m_miterLimit);
    // The stroker's outlines and the filled ones all turn the same way (positive signed area), so the
    // nonzero rule fills their union without cutting paths.
    QPainterPath area = stroker.createStroke(dashes);
    area.addPath(filled);
    area.setFillRule(Qt::WindingFill);
    return area;
}

void DashedStroke::addLine(const QPolygonF& line, QPainterPath& dashes, QPainterPath& filled) const
{
    qreal period = 0;
    for (const qreal length : m_pattern)
        period += length;
    if (line.size() < 2 || !(period > 0))
        return;
    std::vector<qreal> at(size_t(line.size()), 0.0);
    for (int i = 1; i < line.size(); ++i)
        at[size_t(i)] = at[size_t(i) - 1] + std::hypot(line[i].x() - line[i - 1].x(), line[i].y() - line[i - 1].y());
    const qreal total = at.back();
    if (!(total > 0) || !std::isfinite(total))
        return;
    // A line millions of dashes long is drawn solid rather than keeping the painter for minutes.
    constexpr qreal MaxDashes = 100000;
    if (total / period > MaxDashes) {
        dashes.addPolygon(line);
        return;
    }
    const bool closed = line.first() == line.last();
    const qreal half = m_width / 2;
    int segment = 0;
    qreal start = 0;
    for (int i = 0; start < total; i = (i + 1) % int(m_pattern.size())) {
        const qreal end = std::min(start + m_pattern[i], total);
        if (i % 2 == 0) {
            const bool capStart = start > 0 || closed, capEnd = end < total || closed;
            // The caps come out of the dash's own length; a dash shorter than its caps is all cap.
            qreal from = start + (capStart ? half : 0), to = end - (capEnd ? half : 0);
            if (from > to)
                from = to = (from + to) / 2;
            int first = segment;
            const QPointF a = pointAt(line, at, from, first);
            int last = first;
            const QPointF b = pointAt(line, at, to, last);
            segment = last;
            const QPointF u = unit(line[first + 1] - line[first]);
            if (first == last && !u.isNull()) {
                addStraightDash(a, b, u, capStart, capEnd, filled);
            } else {
                QPolygonF dash{a};
                for (int v = first + 1; v <= last; ++v)
                    dash.append(line[v]);
                dash.append(b);
                if (to > from)
                    dashes.addPolygon(dash);
                if (capStart)
                    addCap(a, unit(line[first] - line[first + 1]), filled);
                if (capEnd)
                    addCap(b, unit(line[last + 1] - line[last]), filled);
            }
        }
        start = end;
    }
}

void DashedStroke::addStraightDash(QPointF a, QPointF b, QPointF u, bool capStart, bool capEnd,
                                   QPainterPath& filled) const
{
    QPolygonF outline;
    appendEnd(outline, b, u, capEnd);
    appendEnd(outline, a, -u, capStart);
    addTurnedPolygon(outline, filled);
}

void DashedStroke::addCap(QPointF end, QPointF outward, QPainterPath& filled) const
{
    if (m_cap != DashCap::Round && m_cap != DashCap::Triangle)
        return;
    // A round cap is a whole circle, which covers the dash's turn near its end.
    QPolygonF outline;
    appendEnd(outline, end, outward, true);
    if (m_cap == DashCap::Round)
        appendEnd(outline, end, -outward, true);
    addTurnedPolygon(outline, filled);
}

void DashedStroke::appendEnd(QPolygonF& outline, QPointF end, QPointF outward, bool capped) const
{
    const qreal half = m_width / 2;
    const QPointF side(-outward.y(), outward.x()); // to the left, seen along outward
    const QPointF left = side * half;
    outline.append(end - left);
    if (capped && m_cap == DashCap::Triangle) {
        outline.append(end + outward * half);
    } else if (capped && m_cap == DashCap::Round) {
        for (int i = 1; i < m_roundSteps; ++i) {
            const qreal angle = M_PI * i / m_roundSteps - M_PI / 2; // from the right side to the left
            outline.append(end + (outward * std::cos(angle) + side * std::sin(angle)) * m_roundRadius);
        }
    }
    outline.append(end + left);
}

} // namespace gfx
