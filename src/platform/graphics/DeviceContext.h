#pragma once

#include "platform/CPoint.h"

#include <QPainter>
#include <QTransform>

namespace gfx {

enum DeviceCap { LOGPIXELSX = 88, LOGPIXELSY = 90 };

// A device to draw on with a mapping from logical units to device pixels, as the anisotropic
// mapping mode gives it: device = (logical - window origin) x viewport extent / window extent
// + viewport origin on each axis. A negative window extent flips that axis.
class DeviceContext {
public:
    DeviceContext(QPainter& painter, int logPixelsX, int logPixelsY, bool printing);

    QPainter& painter() const { return m_painter; }
    bool IsPrinting() const { return m_printing; }
    int GetDeviceCaps(DeviceCap cap) const;

    void SetWindowOrg(int x, int y) { m_windowOrg = {x, y}; }
    void OffsetWindowOrg(int dx, int dy) { m_windowOrg = {m_windowOrg.x + dx, m_windowOrg.y + dy}; }
    void SetWindowExt(int cx, int cy) { m_windowExt = {cx, cy}; }
    void SetViewportOrg(int x, int y) { m_viewportOrg = {x, y}; }
    void SetViewportExt(int cx, int cy) { m_viewportExt = {cx, cy}; }
    CPoint GetWindowOrg() const { return m_windowOrg; }
    CPoint GetViewportOrg() const { return m_viewportOrg; }

    // Logical to device pixels; identity until extents are set.
    QTransform Mapping() const;
    // Integer conversions, rounded to the nearest, halves away from zero.
    CPoint LPtoDP(CPoint p) const;
    CPoint DPtoLP(CPoint p) const;

private:
    QPainter& m_painter;
    int m_logPixelsX;
    int m_logPixelsY;
    bool m_printing;
    CPoint m_windowOrg;
    CPoint m_windowExt{1, 1};
    CPoint m_viewportOrg;
    CPoint m_viewportExt{1, 1};
};

} // namespace gfx
