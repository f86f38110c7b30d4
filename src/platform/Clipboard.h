#pragma once

#include <QByteArray>
#include <QString>

// The program's own clipboard format: the archive image of objects, which only this program
// reads. Nothing else (text, pictures) is offered or taken.
class Clipboard {
public:
    static const QString MimeType;

    // Whether the clipboard holds the format now, for the state of Paste.
    static bool HasObjects();
    // The bytes under the format; empty when the clipboard holds none.
    static QByteArray Read();
    // Replaces the clipboard's whole content with the bytes under the format.
    static void Write(const QByteArray& bytes);
};
