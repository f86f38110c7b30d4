#pragma once

#include "platform/CPoint.h"
#include "platform/CSize.h"
#include "printing/CPrintView.h"

#include <QAbstractScrollArea>
#include <QCursor>
#include <memory>

class CDrawDoc;
class CPrintStatus;
namespace gfx {
class DeviceContext;
}

// The scrolling view that turns the label's logical space (1/300 inch, y up, the origin at the
// label's centre) into screen pixels at a zoom on top of fitting the label into the window, and
// into printer pixels when printing. It knows nothing of objects.
class CZoomView : public QAbstractScrollArea, public CPrintView {
    Q_OBJECT

public:
    enum ZoomMode { ZoomNone = 0, ZoomInMode = 1, ZoomOutMode = 2 };

    CZoomView(CDrawDoc& doc, QWidget* parent = nullptr);
    ~CZoomView() override;

    // The label's logical size from the current template; always followed by ZoomFull.
    void SetLogicalSizes();
    // Multiply or divide the zoom around a logical point (null: the middle of the window). A
    // step that would make the label wider than the integers of a device can hold, or smaller
    // than a pixel, is refused.
    int ZoomIn(const CPoint* point, double factor);
    int ZoomOut(const CPoint* point, double factor);
    // Back to the fit, around the label's centre.
    int ZoomFull();
    void SetZoomMode(int mode);
    int GetZoomMode() const { return m_nZoomMode; }
    double GetZoom() const { return m_fZoom; }

    // The screen mapping, or on a printer the calibrated printer mapping.
    void OnPrepareDC(gfx::DeviceContext& dc, CPrintInfo* info = nullptr);
    // Client pixels to logical units and back, through the screen mapping.
    void ViewDPtoLP(CPoint& point) const;
    CPoint ViewLPtoDP(CPoint point) const;
    CPoint GetLogicalCenter() const;
    void CenterOnLogical(CPoint point);
    CPoint GetDeviceScrollPosition() const;
    CSize GetTotalDeviceSize() const { return m_totalDev; }
    CSize GetTotalLogicalSize() const { return m_totalLog; }
    CSize GetPageStep() const { return m_pageDev; }
    CSize GetLineStep() const { return m_lineDev; }

    // The cursor the view shows where no tool chose one: the zoom cursor in a zoom mode.
    void ShowDefaultCursor();
    static QCursor ZoomInCursor();
    static QCursor ZoomOutCursor();

protected:
    void resizeEvent(QResizeEvent* event) override;

    // The interactive steps of a print job: the print dialog with the label's preview, the
    // file of a print to file, and the status window with its Cancel, whose message pump
    // keeps the program answering between pages while the main window is disabled.
    bool DoPrintDialog(PRINTDLG& pd) override;
    bool GetPrintToFileName(QString* path) override;
    void BeginPrintStatus(const QString& title, const QString& text, int total) override;
    void SetPrintProgress(int page, const QString& percent) override;
    void EndPrintStatus() override;
    bool AbortProc() override;
    void scrollContentsBy(int dx, int dy) override;

    double m_fZoom = 0.99;
    CSize m_sizeUnitsPerInch{300, 300};

private:
    void RecalcDeviceSize();
    void UpdatePageLine();
    void UpdateBars();
    void Rebuild(CPoint logicalCentre);
    void CenterOnPoint(CPoint devicePoint);
    // Whether the label at this zoom still fits the device's integers and covers a pixel.
    bool ZoomFits(double zoom) const;
    CSize FittedSize(double zoom) const;

    CDrawDoc& m_zoomDoc;
    std::unique_ptr<CPrintStatus> m_pPrintStatus;
    int m_nZoomMode = ZoomNone;
    CSize m_totalLog{1, 1};
    CSize m_totalDev;
    CSize m_pageDev;
    CSize m_lineDev;
};
