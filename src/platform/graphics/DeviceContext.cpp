#include "platform/graphics/DeviceContext.h"

#include <cstdint>

namespace gfx {

namespace {

// numerator / denominator rounded to the nearest integer, halves away from zero, computed
// exactly so that a result of exactly .5 cannot come out on the wrong side.
int divideRounded(std::int64_t numerator, std::int64_t denominator)
{
    if (denominator < 0) {
        numerator = -numerator;
        denominator = -denominator;
    }
    if (numerator >= 0)
        return int((2 * numerator + denominator) / (2 * denominator));
    return -int((-2 * numerator + denominator) / (2 * denominator));
}

// One axis of the mapping, (value - fromOrigin) * toExtent / fromExtent + toOrigin, rounded as a
// whole.
int mapAxis(int value, int fromOrigin, int fromExtent, int toOrigin, int toExtent)
{
    if (fromExtent == 0)
        return toOrigin;
    return divideRounded(std::int64_t(value - fromOrigin) * toExtent + std::int64_t(toOrigin) * fromExtent,
                         fromExtent);
}

} // namespace

DeviceContext::DeviceContext(QPainter& painter, int logPixelsX, int logPixelsY, bool printing)
    : m_painter(painter), m_logPixelsX(logPixelsX), m_logPixelsY(logPixelsY), m_printing(printing)
{
}

int DeviceContext::GetDeviceCaps(DeviceCap cap) const
{
    switch (cap) {
    case LOGPIXELSX:
        return m_logPixelsX;
    case LOGPIXELSY:
        return m_logPixelsY;
    }
    return 0;
}

QTransform DeviceContext::Mapping() const
{
    const double sx = m_windowExt.x != 0 ? double(m_viewportExt.x) / m_windowExt.x : 1.0;
    const double sy = m_windowExt.y != 0 ? double(m_viewportExt.y) / m_windowExt.y : 1.0;
    return QTransform(sx, 0, 0, sy, m_viewportOrg.x - m_windowOrg.x * sx, m_viewportOrg.y - m_windowOrg.y * sy);
}

CPoint DeviceContext::LPtoDP(CPoint p) const
{
    return {mapAxis(p.x, m_windowOrg.x, m_windowExt.x, m_viewportOrg.x, m_viewportExt.x),
            mapAxis(p.y, m_windowOrg.y, m_windowExt.y, m_viewportOrg.y, m_viewportExt.y)};
}

CPoint DeviceContext::DPtoLP(CPoint p) const
{
    return {mapAxis(p.x, m_viewportOrg.x, m_viewportExt.x, m_windowOrg.x, m_windowExt.x),
            mapAxis(p.y, m_viewportOrg.y, m_viewportExt.y, m_windowOrg.y, m_windowExt.y)};
}

} // namespace gfx
