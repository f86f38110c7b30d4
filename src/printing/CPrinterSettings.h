#pragma once

#include <QString>

// The printer the program works with. Its sanitised name names the profile section that holds
// everything that follows the printer: template choice, bleed, disc sizes, gamma, saturation
// and the calibrated print position.
class CPrinterSettings {
public:
    // The name as given, or with the changes that let it stand as a section or file name.
    QString GetName(bool sanitised) const { return sanitised ? SanitiseName(PrinterName) : PrinterName; }
    // A network printer's name holds slashes or backslashes; each becomes an underscore.
    static QString SanitiseName(QString name);

    QString PrinterName;
};
