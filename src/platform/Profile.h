#pragma once

#include <QString>

// The program's persistent settings: one INI file under the XDG config home
// (Tessarelle/Tessarelle.conf), with the section "Settings", one section per printer
// and "Recent File List". Values are read and written at once; nothing is cached here.
class Profile {
public:
    // A missing key, or one whose text is not an integer, gives the default.
    static int GetInt(const QString& section, const QString& key, int defaultValue);
    static void WriteInt(const QString& section, const QString& key, int value);
    static QString GetString(const QString& section, const QString& key, const QString& defaultValue = {});
    static void WriteString(const QString& section, const QString& key, const QString& value);

    // The file behind the profile, for tools and tests that look into it.
    static QString FilePath();
};
