#pragma once

#include <QString>

// Where the program finds its own data and where it keeps the user's.
// Every folder is given with its trailing '/'.
class Folders {
public:
    // The folder that holds Templates/, fonts/, Backgrounds/, "Clip Art/" and manuals/:
    // the executable's own folder when it has Templates/ (a build tree), otherwise
    // ../share/tessarelle/ from it (an installed program). Empty when neither is known.
    static QString InstallDirectory();

    // A shell folder by its Windows name: "AppData" is the XDG data home, "Personal" the
    // documents folder (or home). Unknown names give an empty string. With doubleSeparators
    // every separator is doubled, as the Windows call does for backslashes.
    static QString GetSpecialFolder(const QString& name, bool doubleSeparators = false);
};
