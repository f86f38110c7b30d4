#pragma once

#include "printing/CPrintInfo.h"

#include <QByteArray>
#include <QString>

class CDrawDoc;
namespace gfx {
class DeviceContext;
}

// Set when the user cancels a print job in its status window; a job looks at it between pages.
extern volatile bool g_bPrintCancel;

// The view's part in printing, without a window: the print job itself and the steps it calls
// to map and draw a page. The drawing view derives from it and overrides the interactive
// steps (the print dialog, the file dialog of print to file, the status window and its
// message pump); without them a job can only run unattended, on a named printer.
class CPrintView {
public:
    // The framework's texts for a job that could not start and for print to file.
    static const QString FailedToStartPrint;   // 61702
    static const QString PrintToFileExtension; // 61509
    static const QString PrintToFileName;      // 61510
    static const QString PrintToFileFilter;    // 61511
    static const QString PrintToFileTitle;     // 61512

    explicit CPrintView(CDrawDoc& doc);
    virtual ~CPrintView() = default;
    CPrintView(const CPrintView&) = delete;
    CPrintView& operator=(const CPrintView&) = delete;

    CDrawDoc& GetDocument() const { return m_doc; }

    // Prints one page per disc. file: a picture printed in place of the label (empty: the
    // label); printerName: the printer of an unattended job (empty: ask through the print
    // dialog); imageOnly: a picture is printed unscaled and centred, without the label's
    // colour adjustments. Answers the spooler's job number, -1 when no job started (dialog
    // cancelled, no such printer) and -2 when the job could not start.
    int PrintJob(const QString& file, const QString& printerName, bool imageOnly);

    // Runs the print dialog over the job's record; the device is made from what it returns.
    virtual bool OnPreparePrinting(CPrintInfo& info);
    virtual void OnBeginPrinting(CPrintDC&, CPrintInfo&) {}
    // The printer's mapping: 300 logical units to the inch, with the calibrated offset of the
    // printer's section and the template's origin, or on a disc tray's page the disc's centre
    // at the page's; the horizontal resolution serves both axes.
    void OnPrepareDC(gfx::DeviceContext& dc, CPrintInfo* info);
    // One disc: the label and the next values of the data fields, or a picture in the label's
    // place, which moves no counter.
    virtual void OnPrint(gfx::DeviceContext& dc, CPrintInfo& info, const QString& file, bool imageOnly);
    virtual void OnEndPrinting(CPrintDC&, CPrintInfo&) {}

    // "50 %" for the first of two pages.
    static QString ProgressText(int page, int total);

    QString m_strPrintTitle = QStringLiteral("Tessarelle Label ");

protected:
    // The interactive steps, all the window layer's. The print dialog with its flags and its
    // records; true when it ended with OK.
    virtual bool DoPrintDialog(PRINTDLG&) { return false; }
    // The file of a print to file; false when the choice was cancelled.
    virtual bool GetPrintToFileName(QString* /*path*/) { return false; }
    // The status window: shown with its title and text and a progress over total pages, moved
    // on before each page, closed after the job (the main window is disabled meanwhile).
    virtual void BeginPrintStatus(const QString& /*title*/, const QString& /*text*/, int /*total*/) {}
    virtual void SetPrintProgress(int /*page*/, const QString& /*percent*/) {}
    virtual void EndPrintStatus() {}
    // Lets waiting messages through; false when the job is to stop.
    virtual bool AbortProc() { return !g_bPrintCancel; }

private:
    CDrawDoc& m_doc;
};
