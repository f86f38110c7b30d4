#pragma once

#include "document/CRuntimeClass.h"
#include "platform/CPoint.h"
#include "platform/CRect.h"
#include "platform/graphics/Color.h"

#include <QByteArray>
#include <QString>
#include <cstdint>
#include <memory>
#include <unordered_map>
#include <vector>

class CDocument;
class CDrawObj;

// Why an archive gave up. Reading a project is the one place in the program where an
// exception travels: the document's open step catches it and reports the file as unreadable.
class CArchiveException {
public:
    enum Cause { none, genericException, readOnly, endOfFile, writeOnly, badIndex, badClass, badSchema };

    explicit CArchiveException(Cause cause) : m_cause(cause) {}
    Cause m_cause;
};

[[noreturn]] void AfxThrowArchiveException(CArchiveException::Cause cause);

class CArchive;
// A string's length prefix, with the UTF-16 marker in front when `unicode` is set.
void AfxWriteStringLength(CArchive& ar, std::uint64_t length, bool unicode);
// The length that a prefix gives, and whether its characters are 1 or 2 bytes wide.
std::uint64_t AfxReadStringLength(CArchive& ar, int& charSize);

// The sequential binary archive of project files and the clipboard. All numbers are
// little-endian without padding; a colour is four bytes alpha, red, green, blue; a string is a
// length prefix (one, three or seven bytes) with a marker for UTF-16 text; objects are written
// with a class tag, and one running index numbers every class and object of the archive.
//
// A loading archive holds the whole input and checks every length and count against what is
// left before it allocates or reads, so a damaged file ends in CArchiveException::endOfFile
// rather than in a huge allocation.
class CArchive {
public:
    enum Mode { store = 0, load = 1 };

    // An archive that stores into Buffer().
    CArchive();
    // An archive that loads from the bytes.
    explicit CArchive(QByteArray bytes);

    bool IsLoading() const { return m_mode == load; }
    bool IsStoring() const { return m_mode == store; }

    // What a storing archive has written so far.
    const QByteArray& Buffer() const { return m_buffer; }
    // Bytes a loading archive has not read yet.
    qsizetype Remaining() const { return m_bytes.size() - m_pos; }
    qsizetype Position() const { return m_pos; }
    // Fails with endOfFile unless this many bytes are left to read.
    void EnsureAvailable(std::uint64_t bytes) const;

    // The document being read or written; objects take it as theirs while loading.
    CDocument* m_pDocument = nullptr;

    CArchive& operator<<(std::uint8_t value) { return WriteRaw(&value, 1); }
    CArchive& operator<<(std::uint16_t value);
    CArchive& operator<<(std::int32_t value) { return *this << std::uint32_t(value); }
    CArchive& operator<<(std::uint32_t value);
    CArchive& operator<<(std::uint64_t value);
    CArchive& operator<<(float value);
    CArchive& operator<<(double value);
    CArchive& operator<<(const CPoint& point) { return *this << std::int32_t(point.x) << std::int32_t(point.y); }
    CArchive& operator<<(const CRect& rect);
    CArchive& operator<<(const gfx::Color& color);
    CArchive& operator<<(const QString& text);
    // Any other type would pick a width by accident: items are written as their exact type.
    template <typename T>
    CArchive& operator<<(const T&) = delete;

    CArchive& operator>>(std::uint8_t& value);
    CArchive& operator>>(std::uint16_t& value);
    CArchive& operator>>(std::int32_t& value);
    CArchive& operator>>(std::uint32_t& value);
    CArchive& operator>>(std::uint64_t& value);
    CArchive& operator>>(float& value);
    CArchive& operator>>(double& value);
    CArchive& operator>>(CPoint& point) { return *this >> point.x >> point.y; }
    CArchive& operator>>(CRect& rect);
    CArchive& operator>>(gfx::Color& color);
    CArchive& operator>>(QString& text);
    template <typename T>
    CArchive& operator>>(T&) = delete;

    // Reads one item of the type, for fields wider in memory than in the file.
    template <typename T>
    T Read()
    {
        T value{};
        *this >> value;
        return value;
    }

    // The element count of a list: a u16 below 0xFFFF, else 0xFFFF and a u32.
    void WriteCount(std::uint32_t count);
    std::uint32_t ReadCount();

    // Strings in their two forms. The writer always writes UTF-16 with its marker; 8-bit text
    // is read as Windows-1252.
    void WriteString(const QString& text);
    QString ReadString();

    // An object reference: null, a new object with its class (named the first time, by index
    // after that) and its record, or an earlier object by index.
    void WriteObject(const CDrawObj* object);
    // The next object of the archive, or null for a null reference. A reference to an object
    // that was not read before fails with badIndex, and so does one to an object already read:
    // each object belongs to one list only.
    std::unique_ptr<CDrawObj> ReadObject();

    // Raw bytes.
    CArchive& WriteRaw(const void* data, qsizetype size);
    void ReadRaw(void* data, qsizetype size);

    // Running-index tags.
    static constexpr std::uint16_t wNullTag = 0;
    static constexpr std::uint16_t wNewClassTag = 0xFFFF;
    static constexpr std::uint16_t wClassTag = 0x8000;
    static constexpr std::uint32_t dwBigClassTag = 0x80000000;
    static constexpr std::uint16_t wBigObjectTag = 0x7FFF;

private:
    void WriteClass(const CRuntimeClass& runtimeClass);
    const CRuntimeClass& LoadClass();
    const char* Take(qsizetype size);

    Mode m_mode;
    QByteArray m_buffer;
    QByteArray m_bytes;
    qsizetype m_pos = 0;

    // The running index: the next number to give, and what each given number stands for.
    std::uint32_t m_nMapCount = 1;
    std::unordered_map<const void*, std::uint32_t> m_storeMap;
    // Loading: per index, its class, or null for an object.
    std::vector<const CRuntimeClass*> m_loadArray;
};
