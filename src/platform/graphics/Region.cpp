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
    m_intersectedBy.push_back(other.m_path);
    m_intersectedBy.insert(m_intersectedBy.end(), other.m_intersectedBy.begin(), other.m_intersectedBy.end());
}

void Region::cut() const
{
    for (const QPainterPath& other : m_intersectedBy)
        m_path = m_path.intersected(other);
    m_intersectedBy.clear();
}

const QPainterPath& Region::path() const
{
    cut();
    return m_path;
}

std::vector<QPainterPath> Region::Parts() const
{
    if (m_infinite)
        return {};
    std::vector<QPainterPath> parts{m_path};
    parts.insert(parts.end(), m_intersectedBy.begin(), m_intersectedBy.end());
    return parts;
}

void Region::Union(const Region& other)
{
    if (m_infinite)
        return;
    if (other.m_infinite) {
        MakeInfinite();
        return;
    }
    m_path = path().united(other.path());
}

void Region::Exclude(const Region& other)
{
    if (other.m_infinite) {
        m_path = QPainterPath();
        m_infinite = false;
        return;
    }
    m_path = geometry().subtracted(other.path());
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
    return m_infinite ? rectPath(InfiniteRect) : path();
}

void Region::Transform(const Matrix& matrix)
{
    if (m_infinite || matrix.IsIdentity())
        return;
    m_path = matrix.transform().map(m_path);
    for (QPainterPath& other : m_intersectedBy)
        other = matrix.transform().map(other);
}

void Region::MakeInfinite()
{
    m_path = QPainterPath();
    m_intersectedBy.clear();
    m_infinite = true;
}

bool Region::IsEmpty() const
{
    if (m_infinite)
        return false;
    const QRectF bounds = path().boundingRect();
    return m_path.isEmpty() || !(bounds.width() > 0) || !(bounds.height() > 0);
}

bool Region::IsVisible(QPointF point) const
{
    return m_infinite || path().contains(point);
}

QRectF Region::GetBounds() const
{
    if (m_infinite)
        return InfiniteRect;
    return IsEmpty() ? QRectF() : path().boundingRect();
}

} // namespace gfx
