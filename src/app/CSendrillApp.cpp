#include "app/CSendrillApp.h"

#include "app/Branding.h"
#include "app/CSendrillDlg.h"
#include "app/CommandLine.h"
#include "dialogs/CMyPrintDialog.h"
#include "platform/FontCollection.h"
#include "platform/Folders.h"
#include "platform/HandleImages.h"
#include "platform/MessageBox.h"
#include "platform/RenderQuality.h"
#include "printing/CPrinterSettings.h"

#include <QApplication>
#include <QDir>
#include <QFile>
#include <QMessageBox>

#include <cerrno>
#include <sys/stat.h>

namespace {

CSendrillApp* g_pApp = nullptr;

// Creates one folder. Zero when it was made or already stood there, otherwise the error.
int makeFolder(const QString& path)
{
    if (::mkdir(QFile::encodeName(path).constData(), 0777) == 0 || errno == EEXIST)
        return 0;
    return errno;
}

int presentMessage(const QString& text, int style)
{
    QMessageBox box(QApplication::activeWindow());
    box.setWindowTitle(QStringLiteral("Tessarelle"));
    box.setText(text);
    const bool question = (style & 0xF) == MessageBox::YesNo || (style & 0xF) == MessageBox::YesNoCancel;
    // A box that names no icon gets the usual one: a question mark for a question, otherwise
    // the exclamation mark.
    if ((style & 0xF0) == 0)
        style |= question ? MessageBox::IconQuestion : MessageBox::IconWarning;
    switch (style & 0xF0) {
    case MessageBox::IconError:
        box.setIcon(QMessageBox::Critical);
        break;
    case MessageBox::IconQuestion:
        box.setIcon(QMessageBox::Question);
        break;
    case MessageBox::IconWarning:
        box.setIcon(QMessageBox::Warning);
        break;
    case MessageBox::IconInformation:
        box.setIcon(QMessageBox::Information);
        break;
    default:
        break;
    }
    if ((style & 0xF) == MessageBox::YesNoCancel) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No | QMessageBox::Cancel);
        box.setDefaultButton(QMessageBox::Yes);
        box.setEscapeButton(QMessageBox::Cancel);
        const int answer = box.exec();
        return answer == QMessageBox::Yes ? MessageBox::IdYes : answer == QMessageBox::No ? MessageBox::IdNo : MessageBox::IdCancel;
    }
    if (question) {
        box.setStandardButtons(QMessageBox::Yes | QMessageBox::No);
        box.setDefaultButton(QMessageBox::No);
        box.setEscapeButton(QMessageBox::No);
        return box.exec() == QMessageBox::Yes ? MessageBox::IdYes : MessageBox::IdNo;
    }
    box.setStandardButtons(QMessageBox::Ok);
    box.exec();
    return MessageBox::IdOk;
}

} // namespace

CSendrillApp::CSendrillApp(QStringList arguments)
    : m_strCmdLine(CommandLine::FromArguments(arguments))
{
    g_pApp = this;
}

CSendrillApp::~CSendrillApp()
{
    if (g_pApp == this)
        g_pApp = nullptr;
}

CSendrillApp* CSendrillApp::Get()
{
    return g_pApp;
}

bool CSendrillApp::InitInstance()
{
    InstallMessagePresenter();

    m_nExitCode = 0;
    m_nSmoothingMode = 4;
    m_nPixelOffsetMode = 2;
    RenderQuality::smoothing = gfx::SmoothingMode(m_nSmoothingMode);
    RenderQuality::pixelOffset = gfx::PixelOffsetMode(m_nPixelOffsetMode);

    SetUpFolders();
    Branding::Assign();
    ReadVersion();

    // Nothing here stands for the Windows program's OLE start: Qt's clipboard needs none.
    // The undo manager joins the run here once undo exists.
    // The profile needs no set-up: Profile opens its file on every call.

    FontCollection::Publish(nullptr);
    HandleImages::Load();

    {
        CSendrillDlg dlg(*this);
        dlg.m_strCmdLine = CommandLine::TrimQuotes(m_strCmdLine);
        dlg.DoModal();
        // The pictures go before the dialog: its destructor only starts the updater.
        HandleImages::Release();
    }
    return false;
}

int CSendrillApp::ExitInstance()
{
    MessageBox::SetPresenter(nullptr);
    return m_nExitCode;
}

void CSendrillApp::SetUpFolders()
{
    m_strInstallDir = Folders::InstallDirectory();
    m_strDataDirFailure.clear();
    const QString appData = Folders::GetSpecialFolder(QStringLiteral("AppData"));
    // Windows always has its AppData folder; a fresh Linux account may not have its XDG data
    // home yet, and applications are to make it when they need it.
    if (!appData.isEmpty())
        QDir().mkpath(appData);
    m_strAppDataDir = CreateDataDirectory(appData, &m_strDataDirFailure);
}

QString CSendrillApp::CreateDataDirectory(const QString& appData, QString* failure)
{
    QString folder = appData + QStringLiteral("Quorvane/");
    if (const int error = makeFolder(folder); error != 0 && failure)
        *failure = QStringLiteral("Unable to create Quorvane Application Data directory:error %1").arg(unsigned(error));
    folder += QStringLiteral("Tessarelle/");
    if (const int error = makeFolder(folder); error != 0 && failure)
        *failure = QStringLiteral("Unable to create Tessarelle Application Data directory:error %1").arg(unsigned(error));
    return folder;
}

std::array<int, 4> CSendrillApp::CutVersion(int major, int minor, int build, int revision)
{
    return {major & 15, minor & 15, build & 15, revision & 15};
}

void CSendrillApp::ReadVersion()
{
    m_strProductName = QStringLiteral("Tessarelle");
    m_strLegalCopyright = QStringLiteral("Copyright (C) Palvex Systems");
    // "+ 0" keeps a part that the build left empty readable as 0.
    m_nVersion = CutVersion(TESSARELLE_VERSION_MAJOR + 0, TESSARELLE_VERSION_MINOR + 0, TESSARELLE_VERSION_PATCH + 0,
                            TESSARELLE_VERSION_TWEAK + 0);
}

bool CSendrillApp::HasDisplay()
{
    const QString platform = QGuiApplication::platformName();
    return !platform.isEmpty() && platform != QLatin1String("offscreen") && platform != QLatin1String("minimal");
}

void CSendrillApp::InstallMessagePresenter()
{
    // Where nobody could answer a window, the printer set-up counts as dismissed.
    if (HasDisplay() && qobject_cast<QApplication*>(QCoreApplication::instance())) {
        MessageBox::SetPresenter(presentMessage);
        CPrinterSettings::SetSetupDialog(CMyPrintDialog::RunSetup);
    } else {
        MessageBox::SetPresenter(nullptr);
        CPrinterSettings::SetSetupDialog(nullptr);
    }
}
