#pragma once

#include "app/CommandLine.h"
#include "platform/FontCollection.h"
#include "templates/CTemplateFile.h"

#include <QDialog>
#include <QRect>
#include <QString>
#include <memory>
#include <vector>

class CDrawDoc;
class CNetworkView;
class CSendrillApp;

// The one main window. It owns the template list, the document and the view, and lives for
// the whole run. Its initialisation reads the fonts, the command line, the templates and the
// printer's choices, and either prints unattended and ends before anything shows, or opens
// the designer. When it is destroyed it starts a downloaded update if one waits.
class CSendrillDlg : public QDialog {
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
    // The project the command line named for the designer; empty when it named none.
    const QString& ProjectPath() const { return m_strProjectPath; }
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

private:
    // Prints the project or picture of the command line on its printer; the job's result is
    // the exit code. A project is saved back when printing moved its counters.
    void RunUnattended(const CommandLine& commandLine, const QString& givenPrintFile);
    // Reads a project into the document; false (reported) when it can't be read.
    bool OpenProject(const QString& path);
    // The keys of the tools and of the edit commands.
    void AddAccelerators();
    void OnEditUndo();
    void OnEditRedo();
    void OnFileSave();

    CSendrillApp& m_app;
    std::vector<CTemplateFile> m_templates;
    std::unique_ptr<CDrawDoc> m_pDoc;
    CNetworkView* m_pView = nullptr;
    FontCollection m_fonts;
    QString m_strProjectPath;
    CommandLine::Dispatch m_dispatch = CommandLine::Dispatch::Interactive;
    bool m_bEnded = false;
};
