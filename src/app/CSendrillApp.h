#pragma once

#include <QString>
#include <QStringList>
#include <array>

// The application object: sets up what the whole run shares (folders, branding, version,
// drawing quality, handle pictures, how messages reach the user), then runs the main dialog
// and hands its exit code to the process. The exit code matters only to unattended runs.
class CSendrillApp {
public:
    // The arguments without the program's own name.
    explicit CSendrillApp(QStringList arguments = {});
    ~CSendrillApp();
    CSendrillApp(const CSendrillApp&) = delete;
    CSendrillApp& operator=(const CSendrillApp&) = delete;

    // The application of this run; null before one is made and after it is gone.
    static CSendrillApp* Get();

    // Start-up, the main dialog's whole life, and the clean-up after it. Always false: nothing
    // of the application's own runs after the dialog.
    bool InitInstance();
    // Answers the exit code for the process.
    int ExitInstance();

    // The pieces of start-up that can stand alone.
    void SetUpFolders();
    void ReadVersion();
    // Creates appData + "Quorvane/" and then its "Tessarelle/" and answers the latter. A
    // failure other than an existing folder is described in failure, and nothing more:
    // the program goes on without that folder.
    static QString CreateDataDirectory(const QString& appData, QString* failure = nullptr);
    // The version parts as the program reads them: each cut to its low four bits, so that
    // they compare as the update server's numbers do (16 reads as 0).
    static std::array<int, 4> CutVersion(int major, int minor, int build, int revision);
    // Whether a person can see a window: not on the offscreen or minimal platforms.
    static bool HasDisplay();
    // Shows messages in dialog boxes and the printer set-up as a dialog when there is a
    // display; otherwise messages go to standard error with their default answer and the
    // set-up counts as dismissed.
    static void InstallMessagePresenter();

    int m_nExitCode = 0;
    // Handed to every Graphics that draws the label (anti-alias, high-quality pixel offset).
    int m_nSmoothingMode = 4;
    int m_nPixelOffsetMode = 2;
    QString m_strInstallDir; // with its trailing '/'; empty when unknown
    QString m_strAppDataDir; // ends in "Quorvane/Tessarelle/"
    QString m_strDataDirFailure; // why the data folders could not be made; shown to nobody
    QString m_strProductName;
    QString m_strLegalCopyright;
    std::array<int, 4> m_nVersion{};
    // The command line as the Windows program would receive it (see CommandLine).
    QString m_strCmdLine;
};
