// The main window's menu, keys and the commands that are one-line forwards.

#include "app/CSendrillDlg.h"

#include "app/Branding.h"
#include "app/CAboutDlg.h"
#include "app/CSendrillApp.h"
#include "app/CommandIds.h"
#include "dialogs/CPrintPos.h"
#include "document/CDrawDoc.h"
#include "panels/CSubForm1_1.h"
#include "platform/Clipboard.h"
#include "platform/Profile.h"
#include "platform/Shell.h"
#include "undo/CUndoManager.h"
#include "view/CDrawTool.h"
#include "view/CNetworkView.h"

#include <QFileInfo>
#include <QMenu>
#include <QMenuBar>

namespace {

const QString Settings = QStringLiteral("Settings");

// The tools and the commands that choose them.
const std::pair<int, int> ToolCommands[] = {
    {CommandIds::ToolRectangle, CDrawTool::Rectangle},     {CommandIds::ToolRoundRect, CDrawTool::RoundRectangle},
    {CommandIds::ToolEllipse, CDrawTool::Ellipse},         {CommandIds::ToolArc, CDrawTool::Arc},
    {CommandIds::ToolHalo, CDrawTool::Halo},               {CommandIds::ToolPolygon, CDrawTool::Polygon},
    {CommandIds::ToolCurve, CDrawTool::Curve},             {CommandIds::ToolClosedCurve, CDrawTool::ClosedCurve},
    {CommandIds::ToolScribble, CDrawTool::Polyline},       {CommandIds::ToolLine, CDrawTool::Line},
    {CommandIds::ToolArrow, CDrawTool::Arrow},             {CommandIds::ToolText, CDrawTool::Text},
    {CommandIds::ToolSelection, CDrawTool::Selection},     {CommandIds::ToolPicture, CDrawTool::ClipArt},
};

} // namespace

int CSendrillDlg::ToolOfCommand(int command)
{
    for (const auto& [id, tool] : ToolCommands) {
        if (id == command)
            return tool;
    }
    return -1;
}

QAction* CSendrillDlg::AddCommand(QMenu* menu, int id, const QString& text, const QKeySequence& key)
{
    auto* action = new QAction(text, this);
    action->setShortcut(key);
    // Keys work wherever the focus is in the window, as accelerators do.
    action->setShortcutContext(Qt::WindowShortcut);
    connect(action, &QAction::triggered, this, [this, id] { OnCommand(id); });
    if (menu)
        menu->addAction(action);
    addAction(action);
    m_actions[id] = action;
    return action;
}

void CSendrillDlg::CreateMenu()
{
    m_pMenuBar = new QMenuBar(this);
    // The menus' own mnemonics avoid Alt+E and Alt+F, which choose the ellipse and the arc.
    m_pFileMenu = m_pMenuBar->addMenu(QStringLiteral("F&ile"));
    QMenu* file = m_pFileMenu;
    AddCommand(file, CommandIds::FileNew, QStringLiteral("&New"), QKeySequence(QStringLiteral("Ctrl+N")));
    AddCommand(file, CommandIds::FileOpen, QStringLiteral("&Open"), QKeySequence(QStringLiteral("Ctrl+O")));
    AddCommand(file, CommandIds::FileSave, QStringLiteral("&Save"), QKeySequence(QStringLiteral("Ctrl+S")));
    // Ctrl+A saves under another name; nothing selects all by key.
    AddCommand(file, CommandIds::FileSaveAs, QStringLiteral("Save &As"), QKeySequence(QStringLiteral("Ctrl+A")));
    AddCommand(file, CommandIds::FileSaveImage, QStringLiteral("Save As &Image"), QKeySequence(QStringLiteral("Ctrl+I")));
    file->addSeparator();
    AddCommand(file, CommandIds::FilePrint, QStringLiteral("&Print"), QKeySequence(QStringLiteral("Ctrl+P")));
    AddCommand(file, CommandIds::PrinterSetup, QStringLiteral("P&rinter Setup"));
    AddCommand(file, CommandIds::PrinterAlignment, QStringLiteral("Printer Ali&gnment"));
    file->addSeparator();
    for (int i = 0; i < 4; ++i) {
        auto* recent = file->addAction(QString());
        connect(recent, &QAction::triggered, this, [this, i] {
            const QStringList files = RecentFiles();
            if (i < files.size())
                OpenFromOutside(files[i]);
        });
        m_recentActions.push_back(recent);
    }
    file->addSeparator();
    AddCommand(file, CommandIds::Exit, QStringLiteral("&Exit"));
    connect(file, &QMenu::aboutToShow, this, &CSendrillDlg::UpdateRecentFilesMenu);

    QMenu* edit = m_pMenuBar->addMenu(QStringLiteral("Edi&t"));
    AddCommand(edit, CommandIds::EditUndo, QStringLiteral("&Undo"), QKeySequence(QStringLiteral("Ctrl+Z")));
    AddCommand(edit, CommandIds::EditRedo, QStringLiteral("&Redo"), QKeySequence(QStringLiteral("Ctrl+Y")));
    edit->addSeparator();
    AddCommand(edit, CommandIds::EditCut, QStringLiteral("Cu&t"), QKeySequence(QStringLiteral("Ctrl+T")));
    AddCommand(edit, CommandIds::EditCopy, QStringLiteral("&Copy"), QKeySequence(QStringLiteral("Ctrl+C")));
    AddCommand(edit, CommandIds::EditPaste, QStringLiteral("&Paste"), QKeySequence(QStringLiteral("Ctrl+V")));
    AddCommand(edit, CommandIds::EditClone, QStringLiteral("Clo&ne"), QKeySequence(QStringLiteral("Ctrl+L")));
    AddCommand(edit, CommandIds::EditDelete, QStringLiteral("&Delete"), QKeySequence(Qt::Key_Delete));
    AddCommand(edit, CommandIds::SelectAll, QStringLiteral("Select &All"));
    edit->addSeparator();
    // The menu shows keys at the z-order entries that were never bound to them; they stay
    // without effect.
    AddCommand(edit, CommandIds::MoveBackward, QStringLiteral("Move &Backward\tCtrl+B"));
    AddCommand(edit, CommandIds::MoveForward, QStringLiteral("Move &Forward\tCtrl+F"));
    AddCommand(edit, CommandIds::MoveToBack, QStringLiteral("Move to Bac&k\tCtrl+Shift+B"));
    AddCommand(edit, CommandIds::MoveToFront, QStringLiteral("&Move to Front\tCtrl+Shift+F"));
    edit->addSeparator();
    AddCommand(edit, CommandIds::Metric, QStringLiteral("&Metric"))->setCheckable(true);
    AddCommand(edit, CommandIds::Standard, QStringLiteral("&Standard"))->setCheckable(true);

    QMenu* tools = m_pMenuBar->addMenu(QStringLiteral("T&ools"));
    const struct {
        int id;
        const char* text;
        const char* key;
    } toolEntries[] = {
        {CommandIds::ToolSelection, "&Selection", "Alt+1"},   {CommandIds::ToolText, "&Text", "Alt+A"},
        {CommandIds::ToolRectangle, "&Rectangle", "Alt+4"},   {CommandIds::ToolRoundRect, "R&ound Rectangle", "Alt+5"},
        {CommandIds::ToolEllipse, "&Ellipse", "Alt+E"},       {CommandIds::ToolArc, "&Arc", "Alt+F"},
        {CommandIds::ToolHalo, "&Halo", "Alt+6"},             {CommandIds::ToolPolygon, "Poly&gon", "Alt+D"},
        {CommandIds::ToolCurve, "&Curve", "Alt+3"},           {CommandIds::ToolClosedCurve, "Close&d Curve", "Alt+C"},
        {CommandIds::ToolScribble, "&Polyline", "Alt+2"},     {CommandIds::ToolLine, "&Line", "Alt+G"},
        {CommandIds::ToolArrow, "Arro&w", "Alt+7"},           {CommandIds::ToolPicture, "Cli&p Art", "Alt+B"},
    };
    for (const auto& entry : toolEntries) {
        AddCommand(tools, entry.id, QString::fromLatin1(entry.text), QKeySequence(QString::fromLatin1(entry.key)))
            ->setCheckable(true);
    }

    QMenu* help = m_pMenuBar->addMenu(QStringLiteral("&Help"));
    // An entry whose address the vendor left empty is not offered.
    if (!Branding::BrandManual.isEmpty())
        AddCommand(help, CommandIds::Manual, QStringLiteral("&Manual"));
    if (!Branding::BrandQuickstart.isEmpty())
        AddCommand(help, CommandIds::Quickstart, QStringLiteral("&Quickstart"));
    if (!Branding::BrandSupportUrl.isEmpty())
        AddCommand(help, CommandIds::OnlineSupport, QStringLiteral("&Online Support"));
    if (!Branding::BrandFaqUrl.isEmpty())
        AddCommand(help, CommandIds::Faq, QStringLiteral("&Frequently Asked Questions"));
    help->addSeparator();
    AddCommand(help, CommandIds::CheckUpdates, QStringLiteral("Check for Updates on Startup"))->setCheckable(true);
    help->addSeparator();
    AddCommand(help, CommandIds::About, QStringLiteral("&About"));

    for (QMenu* menu : {file, edit, tools, help})
        connect(menu, &QMenu::aboutToShow, this, &CSendrillDlg::UpdateCommandUI);
    m_pMenuBar->setGeometry(0, 0, width(), m_pMenuBar->sizeHint().height());
}

QAction* CSendrillDlg::Action(int id)
{
    const auto it = m_actions.find(id);
    return it == m_actions.end() ? nullptr : it->second;
}

void CSendrillDlg::UpdateCommandUI()
{
    if (!m_pView)
        return;
    const bool selection = !m_pView->m_selection.empty();
    const int units = Profile::GetInt(Settings, QStringLiteral("Units"), 1);
    const auto set = [this](int id, bool enabled, int checked = -1) {
        if (QAction* action = Action(id)) {
            action->setEnabled(enabled);
            if (checked >= 0)
                action->setChecked(checked != 0);
        }
    };
    set(CommandIds::FileSave, !m_strProjectPath.isEmpty() && m_pDoc->IsModified());
    set(CommandIds::EditUndo, g_undoManager.CanUndo(m_pDoc.get(), 1));
    set(CommandIds::EditRedo, g_undoManager.CanRedo(m_pDoc.get(), 1));
    set(CommandIds::EditCut, selection);
    set(CommandIds::EditCopy, selection);
    set(CommandIds::EditClone, selection);
    set(CommandIds::EditPaste, Clipboard::HasObjects());
    set(CommandIds::MoveBackward, m_pView->CanMoveBackward());
    set(CommandIds::MoveToBack, m_pView->CanMoveBackward());
    set(CommandIds::MoveForward, m_pView->CanMoveForward());
    set(CommandIds::MoveToFront, m_pView->CanMoveForward());
    set(CommandIds::Metric, true, units == 0);
    set(CommandIds::Standard, true, units != 0);
    set(CommandIds::CheckUpdates, true, Profile::GetInt(Settings, QStringLiteral("CheckUpdates"), 1) != 0);
    for (const auto& [id, tool] : ToolCommands)
        set(id, true, g_currentTool == tool);
}

void CSendrillDlg::UpdateRecentFilesMenu()
{
    const QStringList files = RecentFiles();
    for (int i = 0; i < int(m_recentActions.size()); ++i) {
        QAction* action = m_recentActions[size_t(i)];
        if (i < files.size()) {
            action->setText(QStringLiteral("&%1 %2").arg(i + 1).arg(files[i]));
            action->setVisible(true);
            action->setEnabled(true);
        } else {
            // With no file at all the first place says so, greyed.
            action->setText(QStringLiteral("Recent File"));
            action->setVisible(i == 0);
            action->setEnabled(false);
        }
    }
}

QStringList CSendrillDlg::RecentFiles()
{
    QStringList files;
    for (int i = 1; i <= 4; ++i) {
        const QString file = Profile::GetString(QStringLiteral("Recent File List"), QStringLiteral("File%1").arg(i));
        if (!file.isEmpty())
            files << file;
    }
    return files;
}

void CSendrillDlg::AddToRecentFileList(const QString& path)
{
    QStringList files = RecentFiles();
    const QString full = QFileInfo(path).absoluteFilePath();
    files.removeAll(full);
    files.prepend(full);
    for (int i = 0; i < 4; ++i)
        Profile::WriteString(QStringLiteral("Recent File List"), QStringLiteral("File%1").arg(i + 1), i < files.size() ? files[i] : QString());
}

void CSendrillDlg::OnCommand(int id)
{
    const int tool = ToolOfCommand(id);
    if (tool >= 0) {
        OnSelectTool(tool);
        return;
    }
    switch (id) {
    case CommandIds::Exit: OnExit(); break;
    case CommandIds::FileNew: OnFileNew(); break;
    case CommandIds::FileOpen: OnFileOpen(); break;
    case CommandIds::FileSave: OnFileSave(); break;
    case CommandIds::FileSaveAs: OnFileSaveAs(); break;
    case CommandIds::FileSaveImage: OnFileSaveImage(); break;
    case CommandIds::FilePrint: OnFilePrint(); break;
    case CommandIds::PrinterSetup: OnPrinterSetup(); break;
    case CommandIds::PrinterAlignment: CPrintPos::Run(*m_pView, this); break;
    case CommandIds::EditUndo: OnEditUndo(); break;
    case CommandIds::EditRedo: OnEditRedo(); break;
    case CommandIds::EditCut: m_pView->OnEditCut(); break;
    case CommandIds::EditCopy: m_pView->OnEditCopy(); break;
    case CommandIds::EditPaste: m_pView->OnEditPaste(); break;
    case CommandIds::EditClone: m_pView->OnEditClone(); break;
    case CommandIds::EditDelete: m_pView->OnEditDelete(); break;
    case CommandIds::SelectAll: m_pView->SelectAll(); break;
    case CommandIds::MoveBackward: m_pView->MoveBackward(); break;
    case CommandIds::MoveForward: m_pView->MoveForward(); break;
    case CommandIds::MoveToBack: m_pView->MoveToBack(); break;
    case CommandIds::MoveToFront: m_pView->MoveToFront(); break;
    case CommandIds::Metric: OnUnits(0); break;
    case CommandIds::Standard: OnUnits(1); break;
    case CommandIds::ZoomIn: m_pView->OnZoomTool(CZoomView::ZoomInMode); break;
    case CommandIds::ZoomOut: m_pView->OnZoomTool(CZoomView::ZoomOutMode); break;
    case CommandIds::UnZoom: m_pView->ZoomFull(); break;
    case CommandIds::ShowGrid: m_pView->OnShowGrid(); break;
    case CommandIds::About: OnAbout(); break;
    case CommandIds::Manual: OpenHelp(m_app.m_strInstallDir + Branding::BrandManual); break;
    case CommandIds::Quickstart: OpenHelp(m_app.m_strInstallDir + Branding::BrandQuickstart); break;
    case CommandIds::OnlineSupport: OpenHelp(Branding::BrandSupportUrl); break;
    case CommandIds::Faq: OpenHelp(Branding::BrandFaqUrl); break;
    case CommandIds::CheckUpdates:
        Profile::WriteInt(Settings, QStringLiteral("CheckUpdates"),
                          Profile::GetInt(Settings, QStringLiteral("CheckUpdates"), 1) != 0 ? 0 : 1);
        break;
    default:
        break;
    }
    SyncToolsAndPanels();
}

void CSendrillDlg::OnSelectTool(int tool)
{
    m_pView->SelectTool(tool);
}

void CSendrillDlg::OnEditUndo()
{
    if (!g_undoManager.CanUndo(m_pDoc.get(), 1))
        return;
    g_undoManager.Undo(m_pDoc.get(), 1);
    ReloadPanels();
}

void CSendrillDlg::OnEditRedo()
{
    if (!g_undoManager.CanRedo(m_pDoc.get(), 1))
        return;
    g_undoManager.Redo(m_pDoc.get(), 1);
    ReloadPanels();
}

void CSendrillDlg::ReloadPanels()
{
    // The step may have changed what the panels show of the selection's head.
    if (!m_pView->m_selection.empty())
        m_pView->LoadPanels(m_pView->m_selection.front());
}

void CSendrillDlg::OnUnits(int units)
{
    if (Profile::GetInt(Settings, QStringLiteral("Units"), 1) == units)
        return;
    Profile::WriteInt(Settings, QStringLiteral("Units"), units);
    m_pSubForm1_1->LoadUnits();
    m_pSubForm1_1->LoadFromDocument();
    // The grid follows the units.
    update();
    m_pView->viewport()->update();
}

void CSendrillDlg::OpenHelp(const QString& target)
{
    Shell::Open(target);
}

void CSendrillDlg::OnAbout()
{
    CAboutDlg about(m_app, this);
    about.exec();
}
