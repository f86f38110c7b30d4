#pragma once

#include <QString>

// Opens a file or a web address with the program the desktop chooses for it.
class Shell {
public:
    // An address with a scheme ("https://...") opens as such; anything else is a local file.
    // False when the desktop could not open it.
    static bool Open(const QString& target);
};
