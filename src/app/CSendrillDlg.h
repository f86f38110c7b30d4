#pragma once

#include "app/CControlPos.h"
#include "app/CPanelStack.h"
#include "app/CommandLine.h"
#include "controls/CToolTipDialog.h"
#include "platform/FontCollection.h"
#include "templates/CTemplateFile.h"

#include <QDialog>
#include <QRect>
#include <QString>
#include <array>
#include <atomic>
#include <map>
#include <memory>
#include <vector>

class CDrawDoc;
class CImageButton;
class CPaperAction;
struct LabelBackground;
class CNetworkView;
class CSendrillApp;
class CSubForm1_1;
class CSubForm1_2;
class CSubForm2_1;
class CSubForm2_2;
class QAction;
class QMenu;
class QMenuBar;
class QThread;

// The one main window. It owns the template list, the document and the view, and lives for
// the whole run. Its initialisation reads the fonts, the command line, the templates and the
// printer's choices, and either prints unattended and ends before anything shows, or opens
// the designer: the tool column, the canvas and the panel column under the menu. When it is
// destroyed it starts a downloaded update if one waits.
//
// Its filter sees every event of the program and keeps the tool buttons and the panel stacks in
// step with the current tool and the selection, so that no command has to remember to.
class CSendrillDlg : public CToolTipDialog {
    Q_OBJECT

public:
    // The application provides the install directory and takes the exit code.
    explicit CSendrillDlg(CSendrillApp& app, QWidget* parent = nullptr);
    ~CSendrillDlg() override;

    // Initialises, then runs the window modally, unless the initialisation ended the dialog
    // (the unattended path): then nothing is shown and the answer is that result.
    int DoModal();
    // Everything before the window shows. False when the dialog has ended during it.
    bool OnInitDialog();

    CDrawDoc* GetDocument() const { return m_pDoc.get(); }
    CNetworkView* GetView() const { return m_pView; }
    const std::vector<CTemplateFile>& Templates() const { return m_templates; }
    // The project's path: where Save writes. Empty for a project never saved or opened.
    const QString& ProjectPath() const { return m_strProjectPath; }

    // Runs a command of the menu, the tool column or the keys by its number.
    void OnCommand(int id);
    // The command's menu entry and key, enabled and checked as the state is now.
    QAction* Action(int id);
    // Brings every entry's enabling and check up to date, as opening a menu does.
    void UpdateCommandUI();
    const CPanelStack& Stack(int index) const { return m_stacks[size_t(index)]; }
    CImageButton* ToolButton(int id) const;
    // Opens a project given from outside (the recent files): only ".dst" files, their path
    // lower-cased as the shell's path always was.
    void OpenFromOutside(const QString& path);
    // The recent projects, newest first, as the profile keeps them.
    static QStringList RecentFiles();

    // The background operations of the panels, each a step of the history
    // (CSendrillDlg_Background.cpp): a choice of the background picker; a picture from the
    // Backgrounds folder, placed whole and unscaled; a pattern chosen in the pattern page; the
    // hand adjustment, which stays open until the next press anywhere in the window.
    void OnBackgroundChosen(const LabelBackground& choice);
    void OnSelectBackground();
    void OnBackgroundPattern();
    void OnAdjustBackground();
    // What the command line asked for, once the initialisation has parsed it.
    CommandLine::Dispatch StartMode() const { return m_dispatch; }

    // Forgets a restart request that an interrupted update left behind.
    static void ResetUpdateRestart();
    // The window's place: 800 by 566, centred in the work area.
    static QRect CentredGeometry(const QRect& workArea);
    // The updater in the install directory, its name matched without regard to case; the
    // plain "Update.exe" there when no file matches.
    static QString FindUpdater(const QString& installDir);
    // Starts a downloaded update, with "-restart" when the program is to come back after it.
    // Does nothing unless one waits; the requests are cleared before the start is tried.
    static void RunPendingUpdate(const QString& installDir);

    // The command line, already trimmed of its outer quotation marks by the application.
    QString m_strCmdLine;

    // The file an unattended run prints: the lower-cased path, as the program has always
    // opened it, unless only the path as typed names a file (names differ by case here).
    static QString UnattendedPath(const QString& lowerCased, const QString& given);

    // The update check (CSendrillDlg_Update.cpp): a worker thread asks the update server for a
    // newer release, downloads it with the user's consent and leaves it to run at the exit.
    // Started once; the initialisation starts it for an interactive run that can ask the user.
    void StartUpdateCheck();

signals:
    // The update worker has moved to checking, to downloading, or has ended.
    void UpdateStateChanged();

private:
    // The update worker's work, on its own thread.
    void UpdateWorker();
    // Asks whether the downloaded update is to be installed now, and then leaves as Exit does;
    // nothing once the user is leaving anyway.
    void OfferInstall();
    // Exit's wait for a running worker: a small window says what is awaited, the interface
    // thread goes on serving events, and the worker's install question is suppressed.
    void WaitForUpdateWorker();
    // Ends the worker's thread object once the worker has ended, answering its questions
    // meanwhile, which then find the user leaving.
    struct UpdateThreadEnd {
        std::atomic<int>* exiting;
        void operator()(QThread* thread) const;
    };

    // Prints the project or picture of the command line on its printer; the job's result is
    // the exit code. A project is saved back when printing moved its counters.
    void RunUnattended(const CommandLine& commandLine, const QString& givenPrintFile);
    // Reads a project into the document; false (reported) when it can't be read.
    bool OpenProject(const QString& path);

    // The window's parts (CSendrillDlg_Layout.cpp).
    void CreateLayout();
    void CreateToolButtons();
    void CreatePanels();
    // Keeps the tool buttons and the panel stacks in step with the tool and the selection.
    void SyncToolsAndPanels();
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void closeEvent(QCloseEvent* event) override;
    void reject() override;

    // The menu and the keys (CSendrillDlg_Menu.cpp).
    // The tool a command chooses, or -1 for a command that chooses none.
    static int ToolOfCommand(int command);
    void CreateMenu();
    QAction* AddCommand(QMenu* menu, int id, const QString& text, const QKeySequence& key = {});
    void UpdateRecentFilesMenu();
    void OnSelectTool(int tool);
    void OnAbout();
    void OpenHelp(const QString& target);
    void OnUnits(int units);
    void OnEditUndo();
    void OnEditRedo();
    void ReloadPanels();

    CPaperAction* BeginBackgroundChange();

    // The file commands (CSendrillDlg_File.cpp).
    void OnFileNew();
    void OnFileOpen();
    void OnFileSave();
    void OnFileSaveAs();
    void OnFileSaveImage();
    void OnFilePrint();
    void OnPrinterSetup();
    void OnExit();
    // Exit without its wait: asks about unsaved work, then ends the dialog unless cancelled.
    void ExitStep();
    // Asks whether the modified document may go; true when it may.
    bool MayDiscard();
    void AddToRecentFileList(const QString& path);
    // The path chosen in a file dialog of the given filter and size; empty when cancelled.
    QString AskFileName(bool save, const QString& filter, const QString& suffix, QSize size, const QString& start = {});
    static void WriteProjectPath(const QString& path);
    // The page of stack 1 that suits the template: the tray's (0) or the sheet's (1).
    void ChooseTemplatePage();

    CSendrillApp& m_app;
    std::vector<CTemplateFile> m_templates;
    std::unique_ptr<CDrawDoc> m_pDoc;
    CNetworkView* m_pView = nullptr;
    FontCollection m_fonts;
    QString m_strProjectPath;
    CommandLine::Dispatch m_dispatch = CommandLine::Dispatch::Interactive;
    bool m_bEnded = false;

    QMenuBar* m_pMenuBar = nullptr;
    QMenu* m_pFileMenu = nullptr;
    std::vector<QAction*> m_recentActions;
    // The dialog's own area below the menu, in which everything is placed.
    QWidget* m_pClient = nullptr;
    QWidget* m_pViewHolder = nullptr;
    std::array<QWidget*, 3> m_stackHolders{};
    std::array<CPanelStack, 3> m_stacks;
    // The template and background panels; the view holds the shape and text panels.
    CSubForm1_1* m_pSubForm1_1 = nullptr;
    CSubForm1_2* m_pSubForm1_2 = nullptr;
    CSubForm2_1* m_pSubForm2_1 = nullptr;
    CSubForm2_2* m_pSubForm2_2 = nullptr;
    CControlPos m_controlPos;
    std::map<int, QAction*> m_actions;
    struct ToolButtonEntry {
        int command;
        int tool; // -1 for the buttons that are no tool
        CImageButton* button;
    };
    std::vector<ToolButtonEntry> m_toolButtons;
    bool m_bCtrlDown = false;
    // The pages wanted in stack 2 (background: 0 choose, 1 adjust) and stack 1 (template: 0
    // the tray's, 1 the sheet's).
    int m_nPanelBack = 0;
    int m_nPanelTemplate = 0;

    // Shared with the update worker, each with one writer: the state (0 idle, 1 checking,
    // 2 downloading) by the worker; running by this thread before the start and by the worker at
    // its end; exiting by this thread when the user leaves while the worker runs.
    std::atomic<int> m_nUpdateState{0};
    std::atomic<int> m_bUpdateRunning{0};
    std::atomic<int> m_bExiting{0};
    // After the shared values, so that it goes first and the worker never outlives them.
    std::unique_ptr<QThread, UpdateThreadEnd> m_pUpdateThread;
};
