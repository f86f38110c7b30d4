#include "printing/CSeriesJob.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawObj.h"
#include "platform/MessageBox.h"
#include "platform/Spooler.h"
#include "printing/CPrintInfo.h"
#include "printing/CPrintView.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/DiscTray.h"

#include <QFileInfo>

CSeriesJob::CSeriesJob(CDrawDoc& doc) : m_doc(doc) {}

bool CSeriesJob::SelectPrinter(const QString& name)
{
    HGLOBAL devMode;
    HGLOBAL devNames;
    if (!CPrinterSettings::GetPrinterHandles(name, &devMode, &devNames))
        return false;
    CPrinterSettings& settings = m_doc.GetPrinter();
    const QString device = DEVNAMES::Device(*devNames);
    // The set-up a user saved for the printer (its tray, paper, quality) is what it prints
    // with. Load is asked only when there is one, since without one it would fall back to the
    // application's printer and remember that.
    const QString saved = CPrinterSettings::DataDirectory() + CPrinterSettings::SanitiseName(device);
    if (!(QFileInfo(saved).isFile() && settings.Load(device) == 0 && settings.hDevMode)) {
        settings.hDevMode = devMode;
        settings.hDevNames = devNames;
    }
    // The spooler's record names the queue as it stands now.
    settings.hDevNames = devNames;
    settings.UpdateName();
    return true;
}

void CSeriesJob::LayOutTexts()
{
    for (int label = 0; label < CDrawDoc::LabelCount; ++label) {
        for (const auto& object : m_doc.GetObjects(label))
            object->Layout();
    }
}

CSeriesJob::Outcome CSeriesJob::Print(int discs, const QString& outputFile)
{
    m_nJob = 0;
    m_nPages = 0;
    m_strError.clear();
    CPrinterSettings& settings = m_doc.GetPrinter();
    if (!settings.hDevNames)
        return NotStarted;

    CPrintInfo info;
    QByteArray devMode = settings.hDevMode.value_or(QByteArray());
    // Each disc is a page of its own, which the driver must not repeat.
    if (DEVMODE::HasCopies(devMode))
        DEVMODE::SetCopies(devMode, 1);
    // A disc template prints on the queue's disc tray where it has one, with the tray's page;
    // a spooler that can't say leaves the job on the printer's paper.
    DiscTray::ApplyFor(devMode, DEVNAMES::Device(*settings.hDevNames), m_doc);
    info.m_pd.hDevMode = devMode;
    info.m_pd.hDevNames = settings.hDevNames;
    info.CreatePrinterDC();
    CPrintDC& printDC = *info.m_pDC;
    gfx::DeviceContext& dc = printDC.dc();
    CPrintView view(m_doc);

    const int job = printDC.StartDoc({view.m_strPrintTitle, outputFile});
    if (job <= 0) {
        MessageBox::Show(CPrintView::FailedToStartPrint);
        return NotStarted;
    }
    if (outputFile.isEmpty())
        m_nJob = job;

    for (int disc = 1; disc <= discs; ++disc) {
        if (m_stopRequested && m_stopRequested()) {
            printDC.AbortDoc();
            return Stopped;
        }
        // The fields moved on with the disc before: the texts show the values of this one.
        LayOutTexts();
        view.OnPrepareDC(dc, &info);
        if (printDC.StartPage() < 0) {
            m_strError = QStringLiteral("Disc %1 could not be started.").arg(disc);
            printDC.AbortDoc();
            return Failed;
        }
        printDC.SaveDC();
        view.OnPrint(dc, info, QString(), false);
        printDC.RestoreDC();
        ++m_nPages;
        if (printDC.EndPage() < 0) {
            m_strError = QStringLiteral("Disc %1 could not be finished.").arg(disc);
            printDC.AbortDoc();
            return Failed;
        }
        if (m_onDisc)
            m_onDisc(disc, discs);
    }

    if (printDC.EndDoc() < 0) {
        m_strError = outputFile.isEmpty()
            ? QStringLiteral("The job could not be sent to %1: %2").arg(printDC.DeviceName(), Spooler::ErrorText())
            : QStringLiteral("%1 could not be written.").arg(outputFile);
        return Failed;
    }
    return Printed;
}
