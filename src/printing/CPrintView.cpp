#include "printing/CPrintView.h"

#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "platform/graphics/DeviceContext.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/DiscTray.h"
#include "printing/RewriteStream.h"
#include "templates/CTemplateFile.h"

volatile bool g_bPrintCancel = false;

const QString CPrintView::FailedToStartPrint = QStringLiteral("Could not start print job.");
const QString CPrintView::PrintToFileExtension = QStringLiteral("prn");
const QString CPrintView::PrintToFileName = QStringLiteral("Output.prn");
const QString CPrintView::PrintToFileFilter = QStringLiteral("Printer Files (*.prn);;All Files (*)");
const QString CPrintView::PrintToFileTitle = QStringLiteral("Print to File");

namespace {

// The print dialog's flags: all pages, copies through the printer's set-up, no selection.
constexpr unsigned PrintDialogFlags = 0x4000C;

} // namespace

CPrintView::CPrintView(CDrawDoc& doc) : m_doc(doc) {}

QString CPrintView::ProgressText(int page, int total)
{
    return QStringLiteral("%1 %").arg(total > 0 ? page * 100 / total : 0);
}

bool CPrintView::OnPreparePrinting(CPrintInfo& info)
{
    // One page: the sheet or tray with every label on it.
    info.m_nMaxPage = 1;
    if (info.m_nMaxPage < info.m_nMinPage)
        info.m_nMaxPage = info.m_nMinPage;
    info.m_pd.Flags = PrintDialogFlags;
    if (!DoPrintDialog(info.m_pd))
        return false;
    return info.CreatePrinterDC();
}

void CPrintView::OnPrepareDC(gfx::DeviceContext& dc, CPrintInfo* info)
{
    // One printer resolution for both axes, as the vertical one may differ and the label must
    // keep its proportions.
    const int dpi = dc.GetDeviceCaps(gfx::LOGPIXELSX);
    dc.SetWindowExt(300, -300);
    const QString section = m_doc.PrinterSection();
    const int xOffset = Profile::GetInt(section, QStringLiteral("XOffset"), 27000);
    const int yOffset = Profile::GetInt(section, QStringLiteral("YOffset"), 27000);
    const CTemplateFile* templateFile = m_doc.GetTemplateFile();
    const double originX = templateFile ? templateFile->OriginX : 0.0;
    const double originY = templateFile ? templateFile->OriginY : 0.0;
    double x = dpi * ((xOffset + 1780) / 100000.0 - 0.27 + originX);
    double y = dpi * ((yOffset + 1780) / 100000.0 - 0.27 + originY);
    if (info && info->m_pDC && info->m_pDC->IsTrayPage() && templateFile && !templateFile->Objects.empty()) {
        // A tray page is a square centred on the disc: the disc's centre goes to the page's
        // centre, moved by the calibration alone, which is nothing at its neutral 27000.
        const CTemplateObject& disc = templateFile->Objects.front();
        const QSizeF page = info->m_pDC->PageSize().size(QPageSize::Inch);
        x = dpi * ((xOffset - 27000) / 100000.0 + page.width() / 2 - disc.CentreX);
        y = dpi * ((yOffset - 27000) / 100000.0 + page.height() / 2 - disc.CentreY);
    }
    dc.SetViewportOrg(int(x), int(y));
    dc.SetViewportExt(dpi, dpi);
}

void CPrintView::OnPrint(gfx::DeviceContext& dc, CPrintInfo&, const QString& file, bool imageOnly)
{
    if (file.isEmpty()) {
        m_doc.Draw(dc, nullptr, true, false);
        AdvanceFields(m_doc);
        return;
    }

    // The picture takes the label's background for this one page; then all is put back.
    const LabelBackground saved = m_doc.GetBackground();
    const bool wasModified = m_doc.IsModified();
    m_doc.SetImageFile(file);
    m_doc.SetFitMode(m_doc.IsPrinterTemplate() ? 1 : 0);
    m_doc.SetWrapMode(4);
    m_doc.SetBackgroundAdjust(0, 0, 1.0);
    m_doc.SetBackColor2(gfx::COLORREF(-1));
    m_doc.SetBackColor(0xFFFFFF);

    m_doc.Draw(dc, nullptr, false, imageOnly);

    m_doc.SetBackgroundAdjust(saved.OffsetX, saved.OffsetY, saved.Scale);
    m_doc.SetImageFile(saved.ImageFile);
    m_doc.SetWrapMode(saved.WrapMode);
    m_doc.SetFitMode(saved.FitMode);
    m_doc.SetBackColor(saved.BackColor);
    m_doc.SetBackColor2(saved.BackColor2);
    m_doc.SetModifiedFlag(wasModified);
}

int CPrintView::PrintJob(const QString& file, const QString& printerName, bool imageOnly)
{
    const bool interactive = printerName.isEmpty();
    QString printer = printerName;
    CPrinterSettings& settings = m_doc.GetPrinter();
    settings.SelectForJob();
    CPrintInfo info;
    QString deviceName;
    int copies = 1;

    if (interactive) {
        if (OnPreparePrinting(info)) {
            // Every copy is printed here, one page each, since each disc may differ: the
            // driver must not repeat a page.
            if (info.m_pd.hDevMode && DEVMODE::HasCopies(*info.m_pd.hDevMode)) {
                copies = DEVMODE::Copies(*info.m_pd.hDevMode);
                DEVMODE::SetCopies(*info.m_pd.hDevMode, 1);
            }
            if (info.m_pd.hDevMode && info.m_pd.hDevNames)
                DiscTray::ApplyFor(*info.m_pd.hDevMode, DEVNAMES::Device(*info.m_pd.hDevNames), m_doc);
            info.m_pDC->ResetDC(info.m_pd.hDevMode.value_or(QByteArray()));
            settings.TakeFrom(info.m_pd);
            // Joined to the data folder once more, this goes nowhere; the printer's own file
            // is written when a printer is chosen.
            settings.Save(CPrinterSettings::DataDirectory() + QStringLiteral("settings"));
            printer = settings.GetName(false);
            deviceName = DEVNAMES::Device(info.m_pd.hDevNames.value_or(QByteArray()));
        }
    } else {
        HGLOBAL devMode;
        HGLOBAL devNames;
        if (CPrinterSettings::GetPrinterHandles(printer, &devMode, &devNames)) {
            // The set-up stays the one saved for the document's printer.
            info.m_pd.hDevMode = settings.hDevMode;
            info.m_pd.hDevNames = devNames;
            if (info.m_pd.hDevMode)
                DiscTray::ApplyFor(*info.m_pd.hDevMode, DEVNAMES::Device(*devNames), m_doc);
            info.CreatePrinterDC();
            deviceName = DEVNAMES::Device(*devNames);
        }
    }

    if (deviceName.isEmpty() || !info.m_pDC) {
        settings.EndJob();
        return -1;
    }
    CPrintDC& printDC = *info.m_pDC;
    gfx::DeviceContext& dc = printDC.dc();
    QString outputFile;

    if (interactive) {
        if (info.m_pd.Flags & PRINTDLG::PD_PRINTTOFILE) {
            if (!GetPrintToFileName(&outputFile) || outputFile.isEmpty()) {
                settings.EndJob();
                return -1;
            }
            // A file gets one page, whatever the dialog said.
            copies = 1;
        }
        BeginPrintStatus(QStringLiteral("Printing %1...").arg(m_strPrintTitle),
                         QStringLiteral("Printing %1 on %2").arg(m_strPrintTitle, deviceName), copies);
    }

    // "Tessarelle Label ", or with a picture "Tessarelle Label : printpos1.jpg".
    QString docName = m_strPrintTitle;
    const QString fileName = file.mid(file.lastIndexOf('/') + 1);
    const qsizetype dot = fileName.lastIndexOf('.');
    const QString baseName = dot < 0 ? fileName : fileName.left(dot);
    const QString extension = dot < 0 ? QString() : fileName.mid(dot);
    if (!baseName.isEmpty()) {
        docName += QStringLiteral(": ") + baseName;
        if (!extension.isEmpty())
            docName += extension;
    }

    OnBeginPrinting(printDC, info);
    const int jobResult = printDC.StartDoc({docName, outputFile});
    if (jobResult <= 0) {
        OnEndPrinting(printDC, info);
        if (interactive)
            EndPrintStatus();
        MessageBox::Show(FailedToStartPrint);
        settings.EndJob();
        return -2;
    }

    const int total = copies;
    int page = 0;
    bool failed = false;
    // A count below zero (a damaged set-up) prints nothing rather than counting down forever.
    while (copies > 0 && !failed) {
        if (interactive) {
            ++page;
            SetPrintProgress(page, ProgressText(page, total));
        }
        OnPrepareDC(dc, &info);
        const CPoint corner = dc.DPtoLP(
            CPoint(printDC.GetDeviceCaps(CPrintDC::HORZRES), printDC.GetDeviceCaps(CPrintDC::VERTRES)));
        const CPoint origin = dc.DPtoLP(CPoint(0, 0));
        info.m_rectDraw = CRect(origin.x, origin.y, corner.x, corner.y);
        if (!info.m_bContinuePrinting)
            break;
        if (printDC.StartPage() < 0) {
            failed = true;
            continue;
        }
        printDC.SaveDC();
        OnPrint(dc, info, file, file.isEmpty() ? false : imageOnly);
        --copies;
        printDC.RestoreDC();
        if (printDC.EndPage() < 0)
            failed = true;
        if (interactive && !AbortProc())
            failed = true;
    }

    if (!failed)
        printDC.EndDoc();
    else
        printDC.AbortDoc();
    OnEndPrinting(printDC, info);

    if (info.m_pd.Flags & PRINTDLG::PD_PRINTTOFILE)
        RewriteStream(outputFile, deviceName);
    if (interactive)
        EndPrintStatus();
    settings.EndJob();
    return jobResult;
}
