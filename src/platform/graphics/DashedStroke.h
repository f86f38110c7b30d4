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
    DashedStroke(qreal width, const QList<qreal>& pattern, DashCap cap, Qt::PenJoinStyle join, qreal miterLimit);

    // Dashes along each polyline, the pattern starting anew on each; a polyline that ends where
    // it began is a closed figure, whose every dash end is inside.
    QPainterPath Area(const QList<QPolygonF>& lines) const;

private:
    void addLine(const QPolygonF& line, QPainterPath& dashes, QPainterPath& caps) const;
    void addCap(QPointF end, QPointF outward, QPainterPath& caps) const;

    qreal m_width;
    QList<qreal> m_pattern; // in world units
    DashCap m_cap;
    Qt::PenJoinStyle m_join;
    qreal m_miterLimit;
};

} // namespace gfx
