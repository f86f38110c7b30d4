#include "app/CLabelPreview.h"

#include "document/CDrawDoc.h"
#include "platform/graphics/DeviceContext.h"

#include <QPaintEvent>
#include <QPainter>

CLabelPreview::CLabelPreview(CDrawDoc& doc, QWidget* parent)
    : QWidget(parent), m_doc(doc)
{
    // Every pixel is painted on each paint, into Qt's back buffer: no erase, no flicker.
    setAttribute(Qt::WA_OpaquePaintEvent);
    setMinimumSize(100, 100);
    m_doc.AddView(this);
}

CLabelPreview::~CLabelPreview()
{
    m_doc.RemoveView(this);
}

void CLabelPreview::OnUpdate(CView*, int, CDrawObj*)
{
    update();
}

void CLabelPreview::InvalidateObject(CDrawObj*)
{
    update();
}

CLabelPreview::Fit CLabelPreview::FitLabel(CSize hundredths, QSize client, double zoom)
{
    Fit fit;
    if (hundredths.cx <= 0 || hundredths.cy <= 0 || client.isEmpty())
        return fit;
    const double width = hundredths.cx / 100.0;
    const double height = hundredths.cy / 100.0;
    const double rx = client.width() / width;
    const double ry = client.height() / height;
    const double ratio = ry < rx ? ry : rx;
    fit.deviceSize = CSize(int(width * ratio * zoom), int(height * ratio * zoom));
    // A drawing smaller than the window stays in its middle.
    fit.viewportOrg = CPoint((client.width() - fit.deviceSize.cx) / 2, (client.height() - fit.deviceSize.cy) / 2);
    return fit;
}

void CLabelPreview::PrepareMapping(gfx::DeviceContext& dc, CSize logical, const Fit& fit)
{
    dc.SetWindowExt(logical.cx, -logical.cy);
    dc.OffsetWindowOrg(int(-(logical.cx / 2.0)), int(logical.cy / 2.0));
    dc.SetViewportExt(fit.deviceSize.cx, fit.deviceSize.cy);
    dc.SetViewportOrg(fit.viewportOrg.x, fit.viewportOrg.y);
}

void CLabelPreview::paintEvent(QPaintEvent* event)
{
    QPainter painter(this);
    painter.fillRect(event->rect(), Qt::white);

    const int label = m_doc.FindLabelObject();
    const CSize logical = m_doc.GetLogicalSize(300, 300, label);
    const Fit fit = FitLabel(m_doc.GetLogicalSize(100, 100, label), size());
    if (logical.cx <= 0 || logical.cy <= 0 || fit.deviceSize.cx <= 0 || fit.deviceSize.cy <= 0)
        return;

    gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
    PrepareMapping(dc, logical, fit);
    m_doc.Draw(dc, this, true, false);
}
