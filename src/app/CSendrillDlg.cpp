#include "app/CSendrillDlg.h"

#include "app/Branding.h"
#include "app/CLabelPreview.h"
#include "app/CSendrillApp.h"
#include "document/CDrawDoc.h"
#include "objects/DefaultProperties.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"

#include <QDir>
#include <QFile>
#include <QProcess>
#include <QScreen>
#include <QVBoxLayout>

#include <cstdio>

namespace {

const QString Settings = QStringLiteral("Settings");
constexpr int WindowWidth = 800;
constexpr int WindowHeight = 566;

} // namespace

CSendrillDlg::CSendrillDlg(CSendrillApp& app, QWidget* parent)
    : QDialog(parent), m_app(app)
{
}

CSendrillDlg::~CSendrillDlg()
{
    // The view leaves the document's views before the document goes.
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
    // PENDING (printer settings): select the printer by this name, and when that fails select
    // again with an empty name once the view exists.
    m_pDoc->GetPrinter().PrinterName = printerName;

    // PENDING (drawing view): the zooming, editing view takes this preview's place.
    m_pView = new CLabelPreview(*m_pDoc, this);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(0, 0, 0, 0);
    layout->addWidget(m_pView);

    m_pDoc->SetTemplate(Profile::GetInt(m_pDoc->GetPrinter().GetName(true), QStringLiteral("Template"), 0));

    // The tool column, the panel stacks and the accelerators come with the main dialog's layout.

    m_dispatch = commandLine.Decide();
    switch (m_dispatch) {
    case CommandLine::Dispatch::Interactive:
        break;
    case CommandLine::Dispatch::PrintProject:
    case CommandLine::Dispatch::PrintFile:
        RunUnattended(commandLine);
        m_bEnded = true;
        setResult(0);
        return false;
    case CommandLine::Dispatch::OpenProject:
        // PENDING (file commands): the view remembers this path and the project is opened.
        m_strProjectPath = m_strCmdLine;
        break;
    }

    // The place is that of the outer window, as the window manager places it with its frame.
    resize(WindowWidth, WindowHeight);
    if (const QScreen* screen = this->screen())
        move(CentredGeometry(screen->availableGeometry()).topLeft());

    // PENDING (update check): with CheckUpdates set, the check starts here on its own thread.
    return true;
}

void CSendrillDlg::RunUnattended(const CommandLine& commandLine)
{
    // PENDING (print job): a project (".dst") is opened under its lower-cased path, printed with
    // an empty file string, and saved back when printing modified it; any other file goes to
    // the print job as it is. The job's result becomes the exit code. Until printing exists the
    // exit code stays as the command line left it (-1), so a script sees that nothing printed.
    std::fprintf(stderr, "Tessarelle: unattended printing is not available yet; %s was not printed on %s.\n",
                 QFile::encodeName(commandLine.PrintFile()).constData(), commandLine.PrinterName().toLocal8Bit().constData());
    std::fflush(stderr);
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
