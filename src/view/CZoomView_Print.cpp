#include "view/CZoomView.h"

#include "dialogs/CMyPrintDialog.h"
#include "dialogs/CPrintStatus.h"
#include "platform/Folders.h"

#include <QCoreApplication>
#include <QElapsedTimer>
#include <QFileDialog>
#include <QWindow>

CZoomView::~CZoomView() = default;

bool CZoomView::DoPrintDialog(PRINTDLG& pd)
{
    CMyPrintDialog dialog(CMyPrintDialog::Print, window());
    dialog.SetDocument(&GetDocument());
    dialog.m_pd.Flags = pd.Flags;
    if (dialog.exec() != QDialog::Accepted)
        return false;
    pd = dialog.m_pd;
    return true;
}

bool CZoomView::GetPrintToFileName(QString* path)
{
    QFileDialog dialog(window(), PrintToFileTitle, Folders::GetSpecialFolder(QStringLiteral("Personal")),
                       PrintToFileFilter);
    dialog.setAcceptMode(QFileDialog::AcceptSave);
    dialog.setFileMode(QFileDialog::AnyFile);
    dialog.setDefaultSuffix(PrintToFileExtension);
    dialog.selectFile(PrintToFileName);
    dialog.resize(600, 400);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return false;
    *path = dialog.selectedFiles().front();
    return true;
}

void CZoomView::BeginPrintStatus(const QString& title, const QString& text, int total)
{
    m_pPrintStatus = std::make_unique<CPrintStatus>(this);
    window()->setEnabled(false);
    m_pPrintStatus->setWindowTitle(title);
    m_pPrintStatus->SetText(text);
    m_pPrintStatus->SetRange(total);
    m_pPrintStatus->show();
    // Shown before the first page is composed, which keeps the interface thread busy until
    // the job's first look at its Cancel; a display that doesn't answer soon isn't waited for.
    QElapsedTimer shown;
    shown.start();
    do
        QCoreApplication::processEvents(QEventLoop::AllEvents, 20);
    while (!m_pPrintStatus->windowHandle()->isExposed() && shown.elapsed() < 250);
}

void CZoomView::SetPrintProgress(int page, const QString& percent)
{
    if (!m_pPrintStatus)
        return;
    m_pPrintStatus->SetProgress(page, percent);
    m_pPrintStatus->repaint();
}

void CZoomView::EndPrintStatus()
{
    window()->setEnabled(true);
    m_pPrintStatus.reset();
    // The status window had the focus; the keys go back to the label's window.
    window()->activateWindow();
}

bool CZoomView::AbortProc()
{
    // Between pages the status window, its Cancel and the desktop's repaints get their turn.
    QCoreApplication::processEvents();
    return !g_bPrintCancel;
}
