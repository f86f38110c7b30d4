#pragma once

#include "printing/PRINTDLG.h"

#include <QString>
#include <functional>

class QObject;

// The printer the program works with and how its driver is set up, apart from the spooler's
// default printer. Its sanitised name names the profile section that holds everything that
// follows the printer: template choice, bleed, disc sizes, gamma, saturation and the calibrated
// print position. Each printer's two records are also kept in a file of their own in the
// application data folder: 4 bytes little-endian length m, the DEVMODE record (m bytes),
// 4 bytes length n, the DEVNAMES record (n bytes).
class CPrinterSettings {
public:
    // Shows the printer set-up dialog on pd and answers whether it ended with OK. The window
    // layer installs it; without one (no display, tools, tests) the dialog counts as dismissed.
    using SetupDialog = std::function<bool(PRINTDLG& pd, QObject* parent)>;

    CPrinterSettings() = default;
    // Puts the application's printer back if a job is still open.
    ~CPrinterSettings();
    CPrinterSettings(const CPrinterSettings&) = delete;
    CPrinterSettings& operator=(const CPrinterSettings&) = delete;

    // The name as given, or with the changes that let it stand as a section or file name.
    QString GetName(bool sanitised) const { return sanitised ? SanitiseName(PrinterName) : PrinterName; }
    // A network printer's name holds slashes or backslashes; each becomes an underscore.
    static QString SanitiseName(QString name);

    // The folder of the per-printer files: the application data directory, with its '/'.
    static QString DataDirectory();

    // Writes the two records to DataDirectory() + name. 0, or the system's error number.
    int Save(const QString& name) const;
    // Reads the records saved for a printer name (sanitised here). 0 when they were read;
    // otherwise the error, and the application's printer, when there is one, is taken in
    // their place, remembered as the last printer and saved under its own name.
    int Load(const QString& name);
    // The printer set-up dialog, starting with the named printer or the present one. True
    // when a printer was taken; a named printer is taken even if the dialog is dismissed.
    bool Choose(QObject* parent, const QString& name);
    // Copies of a print dialog's records replace the present ones.
    void TakeFrom(const PRINTDLG& pd);

    // Before a job: this printer is put in force for the application, and the one in force
    // until now is remembered. After the job, EndJob puts that one back.
    void SelectForJob();
    void EndJob();

    // Both records of a printer, by its queue name or its description, from the spooler.
    // Shows a message and answers false when that fails.
    static bool GetPrinterHandles(const QString& name, HGLOBAL* pDevMode, HGLOBAL* pDevNames);

    // PrinterName from the DEVNAMES record; true when there is a name and a DEVMODE.
    bool UpdateName();

    static void SetSetupDialog(SetupDialog dialog);

    HGLOBAL hDevMode;
    HGLOBAL hDevNames;
    HGLOBAL SavedDevMode;
    HGLOBAL SavedDevNames;
    QString PrinterName;
};
