#pragma once

#include "platform/graphics/GraphicsPath.h"

#include <QPainterPath>
#include <QRectF>

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
    const QPainterPath& path() const { return m_path; }

private:
    // The area as geometry, an infinite region as a very large square.
    QPainterPath geometry() const;

    QPainterPath m_path;
    bool m_infinite;
};

} // namespace gfx
