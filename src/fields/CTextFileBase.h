#pragma once

#include <QFile>
#include <cstdint>
#include <memory>

// What a text file reader shares: the file, its encoding and the block it reads through.
class CTextFileBase {
public:
    enum TEXTENCODING { ASCII = 0, UNI16_BE = 1, UNI16_LE = 2, UTF_8 = 3 };

    static constexpr int BufferLength = 1024;

    virtual ~CTextFileBase();

    bool IsOpen() const { return File && File->isOpen(); }
    bool Eof() const { return EndOfFile; }
    TEXTENCODING GetEncoding() const { return Encoding; }

protected:
    TEXTENCODING Encoding = ASCII;
    // The reader owns its file and closes it at its end.
    std::unique_ptr<QFile> File;
    bool EndOfFile = false;
    unsigned char Buffer[BufferLength] = {};
    // Position of the last byte given out; -1 while the buffer has never been filled.
    int32_t BufferPos = -1;
    int32_t BufferSize = 0;
    // The code page of ASCII files; 0 is the default, Windows-1252.
    uint32_t CodePage = 0;
    bool HasUnread = false;
    bool FirstLine = true;
    char16_t UnreadChar = 0;
};
