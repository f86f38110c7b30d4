#include "platform/graphics/Region.h"

namespace gfx {

namespace {

// What an infinite region stands for once it has to become geometry (GDI+ reports the same
// bounds for it).
constexpr double InfiniteExtent = 4194304.0;
const QRectF InfiniteRect(-InfiniteExtent, -InfiniteExtent, 2 * InfiniteExtent, 2 * InfiniteExtent);

QPainterPath rectPath(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect.normalized());
    return path;
}

} // namespace

Region::Region() : m_infinite(true) {}

Region::Region(const QRectF& rect) : m_path(rectPath(rect)), m_infinite(false) {}

Region::Region(const GraphicsPath& path) : m_path(path.path()), m_infinite(false) {}

void Region::Intersect(const Region& other)
{
    if (other.m_infinite)
        return;
    if (m_infinite) {
        *this = other;
        return;
    }
    m_path = m_path.intersected(other.m_path);
}

void Region::Union(const Region& other)
{
    if (m_infinite)
        return;
    if (other.m_infinite) {
        MakeInfinite();
        return;
    }
    m_path = m_path.united(other.m_path);
}

void Region::Exclude(const Region& other)
{
    if (other.m_infinite) {
        m_path = QPainterPath();
        m_infinite = false;
        return;
    }
    m_path = geometry().subtracted(other.m_path);
    m_infinite = false;
}

void Region::Xor(const Region& other)
{
    if (m_infinite && other.m_infinite) {
        m_path = QPainterPath();
        m_infinite = false;
        return;
    }
    const QPainterPath a = geometry(), b = other.geometry();
    m_path = a.united(b).subtracted(a.intersected(b));
    m_infinite = false;
}

void Region::Complement(const Region& other)
{
    if (other.m_infinite && m_infinite) {
        m_path = QPainterPath();
        m_infinite = false;
        return;
    }
    m_path = other.geometry().subtracted(geometry());
    m_infinite = false;
}

QPainterPath Region::geometry() const
{
    return m_infinite ? rectPath(InfiniteRect) : m_path;
}

void Region::Transform(const Matrix& matrix)
{
    if (!m_infinite && !matrix.IsIdentity())
        m_path = matrix.transform().map(m_path);
}

void Region::MakeInfinite()
{
    m_path = QPainterPath();
    m_infinite = true;
}

bool Region::IsEmpty() const
{
    if (m_infinite)
        return false;
    const QRectF bounds = m_path.boundingRect();
    return m_path.isEmpty() || !(bounds.width() > 0) || !(bounds.height() > 0);
}

bool Region::IsVisible(QPointF point) const
{
    return m_infinite || m_path.contains(point);
}

QRectF Region::GetBounds() const
{
    if (m_infinite)
        return InfiniteRect;
    return IsEmpty() ? QRectF() : m_path.boundingRect();
}

} // namespace gfx
