#include "app/CSendrillDlg.h"

#include "app/Branding.h"
#include "app/CSendrillApp.h"
#include "document/CDrawDoc.h"
#include "objects/DefaultProperties.h"
#include "panels/CSubForm1_1.h"
#include "panels/CSubForm2_1.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "printing/CPrintView.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <QDir>
#include <QFileInfo>
#include <QProcess>
#include <QScreen>
#include <QApplication>


namespace {

const QString Settings = QStringLiteral("Settings");
constexpr int WindowWidth = 800;
constexpr int WindowHeight = 566;

} // namespace

CSendrillDlg::CSendrillDlg(CSendrillApp& app, QWidget* parent)
    : CToolTipDialog(parent), m_app(app)
{
}

CSendrillDlg::~CSendrillDlg()
{
    qApp->removeEventFilter(this);
    // The panels show the view's document and go first; the view leaves the document's views
    // before the document goes.
    if (m_pView)
        m_pView->setParent(nullptr);
    delete m_pClient;
    delete m_pView;
    m_pView = nullptr;
    if (FontCollection::Published() == &m_fonts)
        FontCollection::Publish(nullptr);
    RunPendingUpdate(m_app.m_strInstallDir);
}

int CSendrillDlg::DoModal()
{
    if (!OnInitDialog())
        return result();
    return exec();
}

bool CSendrillDlg::OnInitDialog()
{
    ResetUpdateRestart();

    m_fonts.AddFontFiles(m_app.m_strInstallDir + QStringLiteral("fonts/"));

    CommandLine commandLine(m_strCmdLine);
    commandLine.Parse(m_app.m_nExitCode);
    m_strCmdLine = commandLine.Remaining();

    // The system's fonts are in the font database already; the program's own join them there.
    FontCollection::Publish(&m_fonts);
    ResetDefaultProperties();

    // The system menu's About entry and the Help menu come with the main dialog's menus.
    setWindowTitle(Branding::BrandVendor + QStringLiteral("Tessarelle"));

    m_templates = CTemplateFile::LoadTemplateList(m_app.m_strInstallDir + QStringLiteral("Templates/"));

    m_pDoc = std::make_unique<CDrawDoc>();
    m_pDoc->SetTemplates(&m_templates);
    m_pDoc->OnNewDocument();

    // A printer named on the command line serves this run only and is not remembered.
    QString printerName = Profile::GetString(Settings, QStringLiteral("PrinterName"));
    if (!commandLine.PrinterName().isEmpty())
        printerName = commandLine.PrinterName();
    const bool printerLoaded = m_pDoc->GetPrinter().Load(printerName) == 0;

    m_pView = new CNetworkView(*m_pDoc, this);
    // Without its saved set-up the printer is chosen again, through the set-up dialog where
    // there is one; without one the spooler's default taken by Load stands.
    if (!printerLoaded)
        m_pDoc->GetPrinter().Choose(this, QString());

    m_pDoc->SetTemplate(Profile::GetInt(m_pDoc->GetPrinter().GetName(true), QStringLiteral("Template"), 0));


    // The file as typed: the unattended path lower-cases it, which a case-sensitive file
    // system may not find.
    const QString givenPrintFile = commandLine.PrintFile();
    m_dispatch = commandLine.Decide();
    switch (m_dispatch) {
    case CommandLine::Dispatch::Interactive:
        break;
    case CommandLine::Dispatch::PrintProject:
    case CommandLine::Dispatch::PrintFile:
        RunUnattended(commandLine, givenPrintFile);
        m_bEnded = true;
        setResult(0);
        return false;
    case CommandLine::Dispatch::OpenProject:
        // A project that can't be read has said why; the designer starts with what was read.
        m_strProjectPath = m_strCmdLine;
        OpenProject(m_strProjectPath);
        break;
    }

    // The place is that of the outer window, as the window manager places it with its frame.
    resize(WindowWidth, WindowHeight);
    setMinimumSize(WindowWidth, WindowHeight);
    if (const QScreen* screen = this->screen())
        move(CentredGeometry(screen->availableGeometry()).topLeft());
    CreateMenu();
    CreateLayout();
    m_pView->SetLogicalSizes();
    m_pView->ZoomFull();
    g_currentTool = CDrawTool::Selection;
    SyncToolsAndPanels();
    qApp->installEventFilter(this);

    // Last, so that the check never delays the start; and only where someone sees the window
    // and can answer its questions.
    if (Profile::GetInt(Settings, QStringLiteral("CheckUpdates"), 1) != 0 && CSendrillApp::HasDisplay())
        StartUpdateCheck();
    return true;
}

void CSendrillDlg::RunUnattended(const CommandLine& commandLine, const QString& givenPrintFile)
{
    const QString path = UnattendedPath(commandLine.PrintFile(), givenPrintFile);
    CPrintView printView(*m_pDoc);
    if (m_dispatch == CommandLine::Dispatch::PrintProject) {
        m_strProjectPath = path;
        const bool opened = OpenProject(path);
        m_app.m_nExitCode = printView.PrintJob(QString(), commandLine.PrinterName(), false);
        // The counters printing moved are kept for the next run. A project that could not be
        // read is not written over with what little was read of it.
        if (opened && m_pDoc->IsModified())
            m_pDoc->OnSaveDocument(path);
    } else {
        m_app.m_nExitCode = printView.PrintJob(path, commandLine.PrinterName(), false);
    }
}

QString CSendrillDlg::UnattendedPath(const QString& lowerCased, const QString& given)
{
    return QFileInfo::exists(lowerCased) || !QFileInfo::exists(given) ? lowerCased : given;
}

bool CSendrillDlg::OpenProject(const QString& path)
{
    if (m_pView)
        m_pView->ClearSelection();
    if (!m_pDoc->OnOpenDocument(path))
        return false;
    // Before the window is laid out (a project on the command line) the panels are yet to be
    // made, and then show the document from the start.
    if (m_pSubForm1_1) {
        m_pView->viewport()->update();
        m_pSubForm1_1->LoadUnits();
        m_pSubForm1_1->LoadFromDocument();
        m_pSubForm2_1->LoadFromDocument();
    }
    m_pDoc->SetModifiedFlag(false);
    if (m_pSubForm1_1)
        ChooseTemplatePage();
    return true;
}

void CSendrillDlg::ResetUpdateRestart()
{
    if (Profile::GetInt(Settings, QStringLiteral("UpdateRestart"), 0) != 0)
        Profile::WriteInt(Settings, QStringLiteral("UpdateRestart"), 0);
}

QRect CSendrillDlg::CentredGeometry(const QRect& workArea)
{
    return QRect(workArea.left() + (workArea.width() / 2 - WindowWidth / 2),
                 workArea.top() + (workArea.height() / 2 - WindowHeight / 2), WindowWidth, WindowHeight);
}

QString CSendrillDlg::FindUpdater(const QString& installDir)
{
    const QString name = QStringLiteral("Update.exe");
    const QDir dir(installDir);
    const QStringList files = dir.entryList(QDir::Files);
    for (const QString& file : files) {
        if (file.compare(name, Qt::CaseInsensitive) == 0)
            return dir.filePath(file);
    }
    // Never a bare name, which would be looked for along the PATH.
    return (installDir.isEmpty() ? QStringLiteral("./") : installDir) + name;
}

void CSendrillDlg::RunPendingUpdate(const QString& installDir)
{
    if (Profile::GetInt(Settings, QStringLiteral("Update"), 0) == 0)
        return;
    Profile::WriteInt(Settings, QStringLiteral("Update"), 0);
    QStringList arguments;
    if (Profile::GetInt(Settings, QStringLiteral("UpdateRestart"), 0) != 0) {
        Profile::WriteInt(Settings, QStringLiteral("UpdateRestart"), 0);
        arguments << QStringLiteral("-restart");
    }
    // The updater sees its own path as its first argument, as it would on Windows; QProcess
    // puts it there.
    if (!QProcess::startDetached(FindUpdater(installDir), arguments))
        MessageBox::Show(QStringLiteral("Error starting Update.exe"));
}
