#include "fields/CTextFileRead.h"

#include "fields/Windows1252.h"

#include <algorithm>
#include <bit>

namespace {

constexpr char16_t CR = u'\r';
constexpr char16_t LF = u'\n';
constexpr char16_t ReplacementChar = 0xFFFD;
// Reserving is only a head start; a huge file grows the text as it comes.
constexpr qint64 MaxReserve = qint64(1) << 26;

} // namespace

CTextFileRead::CTextFileRead(const QString& path)
{
    File = std::make_unique<QFile>(path);
    if (path.isEmpty() || !File->open(QIODevice::ReadOnly))
        EndOfFile = true;
    else
        DetectEncoding();
}

CTextFileRead::~CTextFileRead() = default;

void CTextFileRead::DetectEncoding()
{
    const unsigned char b0 = GetByte();
    const unsigned char b1 = GetByte();
    if (b0 == 0xFF && b1 == 0xFE) {
        Encoding = UNI16_LE;
    } else if (b0 == 0xFE && b1 == 0xFF) {
        Encoding = UNI16_BE;
    } else if (b0 == 0xEF && b1 == 0xBB && GetByte() == 0xBF) {
        Encoding = UTF_8;
    } else {
        Encoding = ASCII;
        Rewind();
    }
}

void CTextFileRead::Rewind()
{
    HasUnread = false;
    File->seek(0);
    BufferPos = -1;
    FirstLine = true;
    EndOfFile = false;
}

unsigned char CTextFileRead::NextByte()
{
    if (HasUnread) {
        HasUnread = false;
        return static_cast<unsigned char>(UnreadChar & 0xFF);
    }
    if (BufferPos != -1 && BufferPos != BufferLength - 1) {
        // Past the last valid byte every further byte is 0 as well, never a stale one.
        if (++BufferPos >= BufferSize) {
            EndOfFile = true;
            return 0;
        }
    } else {
        const qint64 got = File->read(reinterpret_cast<char*>(Buffer), BufferLength);
        if (got <= 0) {
            EndOfFile = true;
            return 0;
        }
        BufferSize = static_cast<int32_t>(got);
        BufferPos = 0;
    }
    return Buffer[BufferPos];
}

char16_t CTextFileRead::GetChar()
{
    if (HasUnread) {
        HasUnread = false;
        return UnreadChar;
    }
    switch (Encoding) {
    case UNI16_BE: {
        const char16_t high = GetByte();
        const char16_t low = GetByte();
        return char16_t(high << 8 | low);
    }
    case UNI16_LE: {
        const char16_t low = GetByte();
        const char16_t high = GetByte();
        return char16_t(high << 8 | low);
    }
    case UTF_8: {
        // Only up to three bytes: characters beyond 16 bits are not supported, so a lead byte
        // of four or more, or a stray continuation byte, is one replacement character.
        const unsigned char b = GetByte();
        switch (std::countl_one(b)) {
        case 0:
            return b;
        case 2: {
            const unsigned char c = GetByte();
            return char16_t((b & 31) << 6 | (c & 63));
        }
        case 3: {
            const unsigned char c = GetByte();
            const unsigned char d = GetByte();
            return char16_t((b & 15) << 12 | (c & 63) << 6 | (d & 63));
        }
        default:
            return ReplacementChar;
        }
    }
    case ASCII:
        break;
    }
    return GetByte();
}

bool CTextFileRead::ReadLine(QString& line)
{
    if (EndOfFile)
        return false;
    line.resize(0);
    AppendLine(line);
    return true;
}

bool CTextFileRead::ReadAll(QString& all, const QString& lineEnd)
{
    all.resize(0);
    if (!IsOpen())
        return false;
    qint64 length = File->size();
    if (Encoding == UNI16_BE || Encoding == UNI16_LE)
        length /= 2;
    all.reserve(std::min(length + 2, MaxReserve));
    bool first = true;
    while (!EndOfFile) {
        if (!first)
            all += lineEnd;
        first = false;
        AppendLine(all);
    }
    return true;
}

void CTextFileRead::AppendLine(QString& out)
{
    if (Encoding == ASCII)
        AppendNarrowLine(out);
    else
        AppendWideLine(out);
}

void CTextFileRead::AppendWideLine(QString& out)
{
    char16_t c = GetChar();
    if (FirstLine) {
        FirstLine = false;
    } else if (c == CR) {
        c = GetChar();
        if (c == LF)
            c = GetChar();
    } else if (c == LF) {
        c = GetChar();
    }

    char16_t buffer[BufferLength];
    int count = 0;
    while (c != CR && c != LF && !EndOfFile) {
        if (count == BufferLength - 1) {
            out.append(reinterpret_cast<const QChar*>(buffer), count);
            count = 0;
        }
        buffer[count++] = c;
        // The characters that follow whole in the block are taken from it directly, exactly
        // as GetChar would give them one by one.
        if (!HasUnread && BufferPos >= 0) {
            if (Encoding == UTF_8) {
                while (count < BufferLength - 1 && BufferPos + 1 < BufferSize) {
                    const unsigned char b = Buffer[BufferPos + 1];
                    if (b >= 0x80 || b == CR || b == LF)
                        break;
                    buffer[count++] = b;
                    ++BufferPos;
                }
            } else {
                const bool bigEndian = Encoding == UNI16_BE;
                while (count < BufferLength - 1 && BufferPos + 2 < BufferSize) {
                    const unsigned char first = Buffer[BufferPos + 1], second = Buffer[BufferPos + 2];
                    const char16_t next = bigEndian ? char16_t(first << 8 | second) : char16_t(second << 8 | first);
                    if (next == CR || next == LF)
                        break;
                    buffer[count++] = next;
                    BufferPos += 2;
                }
            }
        }
        c = GetChar();
    }
    out.append(reinterpret_cast<const QChar*>(buffer), count);
    HasUnread = true;
    UnreadChar = c;
}

void CTextFileRead::AppendNarrowLine(QString& out)
{
    unsigned char c = GetByte();
    if (FirstLine) {
        FirstLine = false;
    } else if (c == CR) {
        c = GetByte();
        if (c == LF)
            c = GetByte();
    } else if (c == LF) {
        c = GetByte();
    }

    m_line.resize(0);
    while (c != CR && c != LF && !EndOfFile) {
        m_line.append(static_cast<char>(c));
        // The rest of the line within the block in one piece, as GetByte would give it.
        if (!HasUnread && BufferPos >= 0 && BufferPos + 1 < BufferSize) {
            const unsigned char* begin = Buffer + BufferPos + 1;
            const unsigned char* end = Buffer + BufferSize;
            const unsigned char* p = begin;
            while (p != end && *p != CR && *p != LF)
                ++p;
            m_line.append(reinterpret_cast<const char*>(begin), p - begin);
            BufferPos += int32_t(p - begin);
        }
        c = GetByte();
    }
    HasUnread = true;
    UnreadChar = c;
    // A failed conversion leaves the line empty.
    AppendFromCodePage(CodePage, m_line.constData(), m_line.size(), out);
}
