#pragma once

#include "platform/graphics/DeviceContext.h"
#include "printing/PRINTDLG.h"

#include <QBuffer>
#include <QFile>
#include <QPageSize>
#include <QPainter>
#include <QString>
#include <memory>

class QPdfWriter;

// A printer's device for one job. Pages are painted with a QPainter on a PDF at the printer's
// resolution and on its paper; EndDoc hands the whole document to the spooler as one job, or,
// when the job prints to a file, writes it there and sends nothing. AbortDoc cancels the job.
// The mapping (window and viewport) belongs to the device and holds across pages.
class CPrintDC {
public:
    // GetDeviceCaps indexes beyond the logical resolutions.
    static constexpr int HORZRES = 8;
    static constexpr int VERTRES = 10;
    // What StartDoc, EndDoc and AbortDoc answer on failure.
    static constexpr int SP_ERROR = -1;

    struct DOCINFO {
        QString lpszDocName;
        QString lpszOutput; // a file to print to; empty sends the job to the printer
    };

    // The device of the printer that devNames names, set up by devMode (either may be absent:
    // then there is no such printer to send to, and the resolution is 300 on Letter paper).
    CPrintDC(const HGLOBAL& devMode, const HGLOBAL& devNames);
    // A document still open is aborted.
    ~CPrintDC();
    CPrintDC(const CPrintDC&) = delete;
    CPrintDC& operator=(const CPrintDC&) = delete;

    // Takes a new set-up for the jobs that follow: resolution, paper and job options.
    void ResetDC(const QByteArray& devMode);

    // LOGPIXELSX, LOGPIXELSY (both the resolution), HORZRES, VERTRES (the paper in pixels).
    int GetDeviceCaps(int index) const;
    gfx::DeviceContext& dc() { return *m_dc; }
    const QString& DeviceName() const { return m_strDevice; }
    const QPageSize& PageSize() const { return m_pageSize; }
    // Whether the page is a disc tray's square, centred on the disc.
    bool IsTrayPage() const { return m_bTrayPage; }

    // The job's number (1 for a print to file), or SP_ERROR when the job can't start.
    int StartDoc(const DOCINFO& info);
    // Above 0 on success, below 0 when the page can't be started or ended.
    int StartPage();
    int EndPage();
    int EndDoc();
    int AbortDoc();
    // The painter's state around one page's drawing.
    void SaveDC();
    void RestoreDC();

    // The paper a printer's set-up names: its "media" (a self-describing name such as
    // "iso_a4_210x297mm" or "na_letter_8.5x11in"), else a driver's "PageSize" ("A4", "Letter"),
    // else Letter; a tray page (DiscTray) is the square it names.
    static QPageSize PaperOf(const QByteArray& devMode);

private:
    void CloseDocument();

    QByteArray m_devMode;
    QString m_strDevice;
    int m_nResolution = 300;
    QPageSize m_pageSize;
    bool m_bTrayPage = false;

    QPainter m_painter;
    std::unique_ptr<gfx::DeviceContext> m_dc;

    bool m_bInDoc = false;
    bool m_bInPage = false;
    int m_nPages = 0;
    int m_nJob = 0;
    QString m_strQueue;
    QString m_strDocName;
    QFile m_output;
    QBuffer m_buffer;
    std::unique_ptr<QPdfWriter> m_writer;
};
