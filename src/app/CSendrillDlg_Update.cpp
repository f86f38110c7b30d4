// The update check: a worker thread beside the window, and the exit's wait for it.

#include "app/CSendrillDlg.h"

#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "update/CAutoUpdater.h"
#include "update/CMessageDlg.h"
#include "update/InterfaceThread.h"

#include <QEventLoop>
#include <QThread>

namespace {

const QString Settings = QStringLiteral("Settings");
const QString InstallQuestion = QStringLiteral("A new update has been downloaded. Would you like to install it now?");
const QString CheckingText = QStringLiteral("Checking for updates.\r\nPlease Wait...");
const QString DownloadingText = QStringLiteral("Downloading updates.\r\nPlease Wait...");

} // namespace

void CSendrillDlg::StartUpdateCheck()
{
    if (m_pUpdateThread)
        return;
    m_bUpdateRunning = 1;
    m_pUpdateThread = std::unique_ptr<QThread, UpdateThreadEnd>(QThread::create([this] { UpdateWorker(); }),
                                                                 UpdateThreadEnd{&m_bExiting});
    m_pUpdateThread->start();
}

void CSendrillDlg::UpdateWorker()
{
    {
        CAutoUpdater updater(m_app.m_strInstallDir, m_app.m_nVersion);
        m_nUpdateState = 1;
        emit UpdateStateChanged();
        const QString folderUrl = QStringLiteral("http://%1/downloads/Software/Updates_Tessarelle/%2/")
                                      .arg(CAutoUpdater::UpdateHost(), Branding::BrandUpdateKey);
        if (updater.CheckForUpdate(folderUrl)) {
            m_nUpdateState = 2;
            emit UpdateStateChanged();
            if (updater.DownloadUpdate(folderUrl, QStringLiteral("update.exe"))) {
                // From here on the update runs at the exit, asked or not.
                Profile::WriteInt(Settings, QStringLiteral("Update"), 1);
                if (m_bExiting == 0)
                    OnInterfaceThread([this] { OfferInstall(); });
            }
        }
    }
    m_bUpdateRunning = 0;
    emit UpdateStateChanged();
}

void CSendrillDlg::OfferInstall()
{
    // Asked again here, on the window's thread: a user who has left since gets the update at
    // this exit, without the question.
    if (m_bExiting != 0)
        return;
    if (CAutoUpdater::Ask(InstallQuestion) != MessageBox::IdYes)
        return;
    Profile::WriteInt(Settings, QStringLiteral("UpdateRestart"), 1);
    ExitStep();
}

void CSendrillDlg::WaitForUpdateWorker()
{
    if (m_bUpdateRunning == 0)
        return;
    m_bExiting = 1;
    CMessageDlg message(this);
    const auto showState = [&] { message.SetText(m_nUpdateState == 2 ? DownloadingText : CheckingText); };
    showState();
    message.show();
    QEventLoop loop;
    connect(this, &CSendrillDlg::UpdateStateChanged, &loop, [&] {
        showState();
        if (m_bUpdateRunning == 0)
            loop.quit();
    });
    // Connected before this test, so that an end in between still reaches the loop.
    if (m_bUpdateRunning != 0)
        loop.exec();
    m_pUpdateThread.reset();
}

void CSendrillDlg::UpdateThreadEnd::operator()(QThread* thread) const
{
    *exiting = 1;
    QEventLoop loop;
    QObject::connect(thread, &QThread::finished, &loop, &QEventLoop::quit);
    if (!thread->isFinished())
        loop.exec();
    thread->wait();
    delete thread;
}
