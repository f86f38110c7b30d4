#pragma once

#include "platform/graphics/GraphicsPath.h"

#include <QPainterPath>
#include <QRectF>
#include <vector>

namespace gfx {

// An area made of paths and rectangles; the default region is infinite.
class Region {
public:
    Region();
    explicit Region(const QRectF& rect);
    explicit Region(const GraphicsPath& path);

    void Intersect(const Region& other);
    void Union(const Region& other);
    void Exclude(const Region& other);
    void Exclude(const GraphicsPath& path) { Exclude(Region(path)); }
    // What is in exactly one of the two.
    void Xor(const Region& other);
    // What of the other is not in this one.
    void Complement(const Region& other);
    void Transform(const Matrix& matrix);
    void MakeInfinite();

    bool IsInfinite() const { return m_infinite; }
    bool IsEmpty() const;
    bool IsVisible(QPointF point) const;
    QRectF GetBounds() const;

    // The area as one path; meaningless when infinite.
    const QPainterPath& path() const;
    // Paths whose common part is the area; a painter clips by each in turn without the cost of
    // cutting them into one. Empty when infinite.
    std::vector<QPainterPath> Parts() const;

private:
    // The area as geometry, an infinite region as a very large square.
    QPainterPath geometry() const;
    // Cuts the intersections held back into m_path.
    void cut() const;

    // Intersections are held back until the area is needed as one path: a clip narrowed for one
    // drawing and put back after never needs it.
    mutable QPainterPath m_path;
    mutable std::vector<QPainterPath> m_intersectedBy;
    bool m_infinite;
};

} // namespace gfx
