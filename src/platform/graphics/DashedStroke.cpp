#include "platform/graphics/DashedStroke.h"

#include "platform/graphics/Pen.h"

#include <QPainterPathStroker>
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

} // namespace

DashedStroke::DashedStroke(qreal width, const QList<qreal>& pattern, DashCap cap, Qt::PenJoinStyle join,
                           qreal miterLimit)
    : m_width(width), m_cap(cap), m_join(join), m_miterLimit(miterLimit)
{
    for (const qreal length : pattern)
        m_pattern.append(length * width);
}

QPainterPath DashedStroke::Area(const QList<QPolygonF>& lines) const
{
    QPainterPath dashes, caps;
    for (const QPolygonF& line : lines)
        addLine(line, dashes, caps);
    QPainterPathStroker stroker;
    stroker.setWidth(m_width);
    stroker.setCapStyle(Qt::FlatCap);
    stroker.setJoinStyle(m_join);
    stroker.setMiterLimit(m_miterLimit);
    // The stroker's outlines and the caps all turn the same way (positive signed area), so the
    // nonzero rule fills their union without cutting paths.
    QPainterPath area = stroker.createStroke(dashes);
    area.addPath(caps);
    area.setFillRule(Qt::WindingFill);
    return area;
}

void DashedStroke::addLine(const QPolygonF& line, QPainterPath& dashes, QPainterPath& caps) const
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
            QPolygonF dash{a};
            for (int v = first + 1; v <= last; ++v)
                dash.append(line[v]);
            dash.append(b);
            if (to > from)
                dashes.addPolygon(dash);
            if (capStart)
                addCap(a, unit(line[first] - line[first + 1]), caps);
            if (capEnd)
                addCap(b, unit(line[last + 1] - line[last]), caps);
            segment = last;
        }
        start = end;
    }
}

void DashedStroke::addCap(QPointF end, QPointF outward, QPainterPath& caps) const
{
    const qreal half = m_width / 2;
    if (m_cap == DashCap::Round) {
        caps.addEllipse(end, half, half);
        return;
    }
    if (m_cap != DashCap::Triangle)
        return;
    const QPointF across(-outward.y() * half, outward.x() * half);
    QPolygonF triangle{end + across, end + outward * half, end - across};
    // Turning like the dashes' outlines, so that overlapping ones never cancel.
    const QPointF u = triangle[1] - triangle[0], v = triangle[2] - triangle[0];
    if (u.x() * v.y() - u.y() * v.x() < 0)
        std::swap(triangle[0], triangle[2]);
    triangle.append(triangle.first());
    caps.addPolygon(triangle);
}

} // namespace gfx
