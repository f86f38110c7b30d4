#pragma once

#include <QList>
#include <QPainterPath>
#include <QPolygonF>

namespace gfx {

enum class DashCap;

// The area a dashed pen covers when its dashes have round or triangular ends. The dash cap goes
// on every dash end that lies inside a figure and is taken from the dash's own length, so the
// gaps stay open; the two true ends of an open figure stay flat for the line caps. Qt's own dash
// caps can do neither: they lengthen every dash and cap the true ends too.
class DashedStroke {
public:
    // Round ends are polygons whose chords stray at most `flatness` (world units) from the arc.
    DashedStroke(qreal width, const QList<qreal>& pattern, DashCap cap, Qt::PenJoinStyle join, qreal miterLimit,
                 qreal flatness);

    // Dashes along each polyline, the pattern starting anew on each; a polyline that ends where
    // it began is a closed figure, whose every dash end is inside.
    QPainterPath Area(const QList<QPolygonF>& lines) const;

private:
    void addLine(const QPolygonF& line, QPainterPath& dashes, QPainterPath& filled) const;
    // A dash within one segment, from a to b (which may be the same point) along the unit
    // direction u, as one polygon with its caps: far fewer edges to fill than a stroked dash
    // with separate caps.
    void addStraightDash(QPointF a, QPointF b, QPointF u, bool capStart, bool capEnd, QPainterPath& filled) const;
    // A cap on its own, for dashes that turn a corner.
    void addCap(QPointF end, QPointF outward, QPainterPath& filled) const;
    // The outline around one end, from its right side to its left seen along `outward`.
    void appendEnd(QPolygonF& outline, QPointF end, QPointF outward, bool capped) const;

    qreal m_width;
    QList<qreal> m_pattern; // in world units
    DashCap m_cap;
    Qt::PenJoinStyle m_join;
    qreal m_miterLimit;
    int m_roundSteps;     // chords of a round end's half circle
    qreal m_roundRadius;  // of their vertices
};

} // namespace gfx
