#pragma once

#include "fields/CTextFileBase.h"

#include <QByteArray>
#include <QString>

// Reads a text file of unknown encoding as wide-character text: UTF-16 in either byte order
// or UTF-8 when the file starts with a byte-order mark, 8-bit text in the code page otherwise.
// CR, LF and CR LF each end a line.
class CTextFileRead : public CTextFileBase {
public:
    // Opens the file and detects its encoding. A file that can't be opened gives a reader
    // that is not open and at its end.
    explicit CTextFileRead(const QString& path);
    ~CTextFileRead() override;

    // The next line without its line end; false, with `line` left alone, once at the end.
    bool ReadLine(QString& line);
    // The rest of the file, its lines joined by `lineEnd`; false if the file isn't open.
    bool ReadAll(QString& all, const QString& lineEnd);

private:
    void DetectEncoding();
    void Rewind();
    // The next byte: from the block while it lasts, else through NextByte's full rules.
    unsigned char GetByte()
    {
        if (!HasUnread && BufferPos >= 0 && BufferPos + 1 < BufferSize)
            return Buffer[++BufferPos];
        return NextByte();
    }
    unsigned char NextByte();
    char16_t GetChar();
    // Reads one line and appends it to `out`.
    void AppendLine(QString& out);
    void AppendNarrowLine(QString& out);
    void AppendWideLine(QString& out);

    // The bytes of an 8-bit line before their conversion; it keeps its capacity from line to
    // line, so reading costs no allocation per character or per line.
    QByteArray m_line;
};
