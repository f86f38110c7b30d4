#include "view/CZoomView.h"

#include "dialogs/CPrintStatus.h"
#include "document/CDrawDoc.h"
#include "platform/graphics/DeviceContext.h"

#include <QPainter>
#include <QPixmap>
#include <QResizeEvent>
#include <QScrollBar>

#include <cmath>
#include <cstdlib>

namespace {

// Beyond this many pixels a label's device size, its scroll range and the coordinates of the
// mapping would leave the integers they live in.
constexpr double MaxDeviceSize = 1 << 30;

} // namespace

CZoomView::CZoomView(CDrawDoc& doc, QWidget* parent)
    : QAbstractScrollArea(parent), CPrintView(doc), m_zoomDoc(doc)
{
    setFrameShape(QFrame::NoFrame);
    setHorizontalScrollBarPolicy(Qt::ScrollBarAsNeeded);
    setVerticalScrollBarPolicy(Qt::ScrollBarAsNeeded);
}

QCursor CZoomView::ZoomInCursor()
{
    static const QCursor cursor(QPixmap(QStringLiteral(":/cursors/zoomin.xpm")), 12, 12);
    return cursor;
}

QCursor CZoomView::ZoomOutCursor()
{
    static const QCursor cursor(QPixmap(QStringLiteral(":/cursors/zoomout.xpm")), 12, 12);
    return cursor;
}

void CZoomView::SetLogicalSizes()
{
    m_fZoom = 0.99;
    m_totalLog = CSize(1, 1);
    m_totalLog = m_zoomDoc.GetLogicalSize(m_sizeUnitsPerInch.cx, m_sizeUnitsPerInch.cy, m_zoomDoc.FindLabelObject());
    UpdatePageLine();
}

CSize CZoomView::FittedSize(double zoom) const
{
    // The outer size of the view, scroll bars included, so that bars coming and going don't
    // change the fit.
    const CSize hundredths = m_zoomDoc.GetLogicalSize(100, 100, m_zoomDoc.FindLabelObject());
    if (hundredths.cx <= 0 || hundredths.cy <= 0)
        return {};
    const double width = hundredths.cx / 100.0;
    const double height = hundredths.cy / 100.0;
    const double rx = this->width() / width;
    const double ry = this->height() / height;
    const double ratio = ry < rx ? ry : rx;
    return CSize(int(width * ratio * zoom), int(height * ratio * zoom));
}

bool CZoomView::ZoomFits(double zoom) const
{
    const CSize hundredths = m_zoomDoc.GetLogicalSize(100, 100, m_zoomDoc.FindLabelObject());
    if (hundredths.cx <= 0 || hundredths.cy <= 0 || width() <= 0 || height() <= 0)
        return true;
    const double width = hundredths.cx / 100.0;
    const double height = hundredths.cy / 100.0;
    const double ratio = std::min(this->width() / width, this->height() / height);
    const double cx = width * ratio * zoom;
    const double cy = height * ratio * zoom;
    return cx < MaxDeviceSize && cy < MaxDeviceSize && cx >= 1.0 && cy >= 1.0;
}

void CZoomView::RecalcDeviceSize()
{
    m_totalDev = FittedSize(m_fZoom);
}

void CZoomView::UpdatePageLine()
{
    // Both steps come from the height alone, and land in the horizontal component; the
    // vertical ones are then made from the fallbacks. So both axes page by a tenth of the
    // height and step by a hundredth of it.
    m_pageDev = CSize(m_totalDev.cy / 10, 0);
    m_lineDev = CSize(m_totalDev.cy / 100, 0);
    if (m_pageDev.cx == 0)
        m_pageDev.cx = m_totalDev.cx / 10;
    if (m_pageDev.cy == 0)
        m_pageDev.cy = m_totalDev.cy / 10;
    if (m_lineDev.cx == 0)
        m_lineDev.cx = m_pageDev.cx / 10;
    if (m_lineDev.cy == 0)
        m_lineDev.cy = m_pageDev.cy / 10;
    UpdateBars();
    viewport()->update();
}

void CZoomView::UpdateBars()
{
    // Scroll bars take room from the viewport; once they show, the range is what is left.
    const QSize outer = size();
    const bool needH = m_totalDev.cx > outer.width();
    const bool needV = m_totalDev.cy > outer.height();
    const int barH = needH ? horizontalScrollBar()->sizeHint().height() : 0;
    const int barV = needV ? verticalScrollBar()->sizeHint().width() : 0;
    const int clientW = outer.width() - barV;
    const int clientH = outer.height() - barH;
    horizontalScrollBar()->setRange(0, std::max(0, m_totalDev.cx - clientW));
    verticalScrollBar()->setRange(0, std::max(0, m_totalDev.cy - clientH));
    horizontalScrollBar()->setPageStep(std::max(1, m_pageDev.cx));
    verticalScrollBar()->setPageStep(std::max(1, m_pageDev.cy));
    horizontalScrollBar()->setSingleStep(std::max(1, m_lineDev.cx));
    verticalScrollBar()->setSingleStep(std::max(1, m_lineDev.cy));
}

CPoint CZoomView::GetDeviceScrollPosition() const
{
    return CPoint(horizontalScrollBar()->value(), verticalScrollBar()->value());
}

void CZoomView::OnPrepareDC(gfx::DeviceContext& dc, CPrintInfo* info)
{
    if (dc.IsPrinting()) {
        CPrintView::OnPrepareDC(dc, info);
        return;
    }
    dc.SetWindowExt(m_totalLog.cx, -m_totalLog.cy);
    dc.OffsetWindowOrg(int(-(m_totalLog.cx / 2.0)), int(m_totalLog.cy / 2.0));
    dc.SetViewportExt(m_totalDev.cx, m_totalDev.cy);
    // A drawing smaller than the window stays in its middle.
    const CPoint scroll = GetDeviceScrollPosition();
    const QSize client = viewport()->size();
    CPoint origin(-scroll.x, -scroll.y);
    if (m_totalDev.cx < client.width())
        origin.x = (client.width() - m_totalDev.cx) / 2;
    if (m_totalDev.cy < client.height())
        origin.y = (client.height() - m_totalDev.cy) / 2;
    dc.SetViewportOrg(origin.x, origin.y);
}

void CZoomView::ViewDPtoLP(CPoint& point) const
{
    QPainter unused;
    gfx::DeviceContext dc(unused, logicalDpiX(), logicalDpiY(), false);
    const_cast<CZoomView*>(this)->OnPrepareDC(dc);
    point = dc.DPtoLP(point);
}

CPoint CZoomView::ViewLPtoDP(CPoint point) const
{
    QPainter unused;
    gfx::DeviceContext dc(unused, logicalDpiX(), logicalDpiY(), false);
    const_cast<CZoomView*>(this)->OnPrepareDC(dc);
    return dc.LPtoDP(point);
}

CPoint CZoomView::GetLogicalCenter() const
{
    const QSize client = viewport()->size();
    CPoint centre(client.width() / 2, client.height() / 2);
    ViewDPtoLP(centre);
    return centre;
}

void CZoomView::CenterOnLogical(CPoint point)
{
    const CPoint device = ViewLPtoDP(point);
    const CPoint scroll = GetDeviceScrollPosition();
    CenterOnPoint(CPoint(device.x + scroll.x, device.y + scroll.y));
}

void CZoomView::CenterOnPoint(CPoint devicePoint)
{
    const QSize client = viewport()->size();
    const int x = devicePoint.x - client.width() / 2;
    const int y = devicePoint.y - client.height() / 2;
    // Out of range values are held at the ends by the bars themselves.
    horizontalScrollBar()->setValue(std::max(0, x));
    verticalScrollBar()->setValue(std::max(0, y));
}

void CZoomView::Rebuild(CPoint logicalCentre)
{
    RecalcDeviceSize();
    UpdatePageLine();
    CenterOnLogical(logicalCentre);
}

int CZoomView::ZoomIn(const CPoint* point, double factor)
{
    const CPoint centre = point ? *point : GetLogicalCenter();
    if (!ZoomFits(m_fZoom * factor))
        return 1;
    m_fZoom *= factor;
    Rebuild(centre);
    return 1;
}

int CZoomView::ZoomOut(const CPoint* point, double factor)
{
    const CPoint centre = point ? *point : GetLogicalCenter();
    if (!ZoomFits(m_fZoom / factor))
        return 1;
    m_fZoom /= factor;
    Rebuild(centre);
    return 1;
}

int CZoomView::ZoomFull()
{
    m_fZoom = 0.99;
    Rebuild(CPoint(0, 0));
    return 1;
}

void CZoomView::SetZoomMode(int mode)
{
    if (mode == m_nZoomMode)
        return;
    m_nZoomMode = mode;
    ShowDefaultCursor();
}

void CZoomView::ShowDefaultCursor()
{
    if (m_nZoomMode == ZoomInMode)
        viewport()->setCursor(ZoomInCursor());
    else if (m_nZoomMode == ZoomOutMode)
        viewport()->setCursor(ZoomOutCursor());
    else
        viewport()->setCursor(Qt::ArrowCursor);
}

void CZoomView::resizeEvent(QResizeEvent* event)
{
    RecalcDeviceSize();
    QAbstractScrollArea::resizeEvent(event);
    UpdateBars();
}

void CZoomView::scrollContentsBy(int, int)
{
    // Every scroll repaints everything: the paint is clipped too finely to move pixels.
    viewport()->update();
}
