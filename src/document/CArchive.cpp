#include "document/CArchive.h"

#include "fields/Windows1252.h"
#include "objects/CDrawObj.h"

#include <QtEndian>
#include <cstring>

void AfxThrowArchiveException(CArchiveException::Cause cause)
{
    throw CArchiveException(cause);
}

namespace {

// Longest class name a file may give; the classes of the program are far shorter.
constexpr std::uint16_t MaxClassNameLength = 63;
// The least number of bytes one list element takes: its tag.
constexpr std::uint64_t MinObjectReferenceSize = 2;

} // namespace

CArchive::CArchive() : m_mode(store) {}

CArchive::CArchive(QByteArray bytes) : m_mode(load), m_bytes(std::move(bytes))
{
    m_loadArray.push_back(nullptr); // index 0 is the null reference
}

// ---------------------------------------------------------------- raw bytes

CArchive& CArchive::WriteRaw(const void* data, qsizetype size)
{
    if (m_mode != store)
        AfxThrowArchiveException(CArchiveException::readOnly);
    m_buffer.append(static_cast<const char*>(data), size);
    return *this;
}

void CArchive::EnsureAvailable(std::uint64_t bytes) const
{
    if (m_mode != load)
        AfxThrowArchiveException(CArchiveException::writeOnly);
    if (bytes > std::uint64_t(Remaining()))
        AfxThrowArchiveException(CArchiveException::endOfFile);
}

const char* CArchive::Take(qsizetype size)
{
    EnsureAvailable(std::uint64_t(size));
    const char* data = m_bytes.constData() + m_pos;
    m_pos += size;
    return data;
}

void CArchive::ReadRaw(void* data, qsizetype size)
{
    std::memcpy(data, Take(size), size_t(size));
}

// ---------------------------------------------------------------- numbers

CArchive& CArchive::operator<<(std::uint16_t value)
{
    const std::uint16_t le = qToLittleEndian(value);
    return WriteRaw(&le, sizeof le);
}

CArchive& CArchive::operator<<(std::uint32_t value)
{
    const std::uint32_t le = qToLittleEndian(value);
    return WriteRaw(&le, sizeof le);
}

CArchive& CArchive::operator<<(std::uint64_t value)
{
    const std::uint64_t le = qToLittleEndian(value);
    return WriteRaw(&le, sizeof le);
}

CArchive& CArchive::operator<<(float value)
{
    std::uint32_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return *this << bits;
}

CArchive& CArchive::operator<<(double value)
{
    std::uint64_t bits;
    std::memcpy(&bits, &value, sizeof bits);
    return *this << bits;
}

CArchive& CArchive::operator<<(const CRect& rect)
{
    return *this << std::int32_t(rect.left) << std::int32_t(rect.top) << std::int32_t(rect.right)
                 << std::int32_t(rect.bottom);
}

CArchive& CArchive::operator<<(const gfx::Color& color)
{
    const std::uint8_t bytes[4] = {std::uint8_t(color.GetA()), std::uint8_t(color.GetR()), std::uint8_t(color.GetG()),
                                   std::uint8_t(color.GetB())};
    return WriteRaw(bytes, sizeof bytes);
}

CArchive& CArchive::operator>>(std::uint8_t& value)
{
    value = std::uint8_t(*Take(1));
    return *this;
}

CArchive& CArchive::operator>>(std::uint16_t& value)
{
    value = qFromLittleEndian<std::uint16_t>(Take(2));
    return *this;
}

CArchive& CArchive::operator>>(std::int32_t& value)
{
    value = qFromLittleEndian<std::int32_t>(Take(4));
    return *this;
}

CArchive& CArchive::operator>>(std::uint32_t& value)
{
    value = qFromLittleEndian<std::uint32_t>(Take(4));
    return *this;
}

CArchive& CArchive::operator>>(std::uint64_t& value)
{
    value = qFromLittleEndian<std::uint64_t>(Take(8));
    return *this;
}

CArchive& CArchive::operator>>(float& value)
{
    const std::uint32_t bits = Read<std::uint32_t>();
    std::memcpy(&value, &bits, sizeof value);
    return *this;
}

CArchive& CArchive::operator>>(double& value)
{
    const std::uint64_t bits = Read<std::uint64_t>();
    std::memcpy(&value, &bits, sizeof value);
    return *this;
}

CArchive& CArchive::operator>>(CRect& rect)
{
    return *this >> rect.left >> rect.top >> rect.right >> rect.bottom;
}

CArchive& CArchive::operator>>(gfx::Color& color)
{
    const auto* b = reinterpret_cast<const unsigned char*>(Take(4));
    color = gfx::Color(b[0], b[1], b[2], b[3]);
    return *this;
}

// ---------------------------------------------------------------- counts and strings

void CArchive::WriteCount(std::uint32_t count)
{
    if (count < 0xFFFF) {
        *this << std::uint16_t(count);
    } else {
        *this << std::uint16_t(0xFFFF) << count;
    }
}

std::uint32_t CArchive::ReadCount()
{
    const std::uint16_t count = Read<std::uint16_t>();
    if (count != 0xFFFF)
        return count;
    return Read<std::uint32_t>();
}

CArchive& CArchive::operator<<(const QString& text)
{
    WriteString(text);
    return *this;
}

CArchive& CArchive::operator>>(QString& text)
{
    text = ReadString();
    return *this;
}

void AfxWriteStringLength(CArchive& ar, std::uint64_t length, bool unicode)
{
    if (unicode)
        ar << std::uint8_t(0xFF) << std::uint16_t(0xFFFE);
    if (length < 0xFF) {
        ar << std::uint8_t(length);
    } else if (length < 0xFFFE) {
        ar << std::uint8_t(0xFF) << std::uint16_t(length);
    } else {
        ar << std::uint8_t(0xFF) << std::uint16_t(0xFFFF) << std::uint32_t(length);
    }
}

std::uint64_t AfxReadStringLength(CArchive& ar, int& charSize)
{
    // One byte, then two, four and eight, each form taking over when the one before is all
    // ones; a UTF-16 marker in the two-byte place starts the length over at one byte.
    charSize = 1;
    std::uint8_t byteLength = ar.Read<std::uint8_t>();
    if (byteLength < 0xFF)
        return byteLength;
    std::uint16_t wordLength = ar.Read<std::uint16_t>();
    if (wordLength == 0xFFFE) {
        charSize = 2;
        byteLength = ar.Read<std::uint8_t>();
        if (byteLength < 0xFF)
            return byteLength;
        wordLength = ar.Read<std::uint16_t>();
    }
    if (wordLength < 0xFFFE)
        return wordLength;
    const std::uint32_t longLength = ar.Read<std::uint32_t>();
    if (longLength < 0xFFFFFFFF)
        return longLength;
    return ar.Read<std::uint64_t>();
}

void CArchive::WriteString(const QString& text)
{
    AfxWriteStringLength(*this, std::uint64_t(text.size()), true);
    if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
        WriteRaw(text.utf16(), text.size() * 2);
    } else {
        for (const QChar c : text)
            *this << std::uint16_t(c.unicode());
    }
}

QString CArchive::ReadString()
{
    int charSize = 1;
    const std::uint64_t length = AfxReadStringLength(*this, charSize);
    const bool wide = charSize == 2;
    if (length > std::uint64_t(Remaining()) / std::uint64_t(charSize))
        AfxThrowArchiveException(CArchiveException::endOfFile);

    const char* data = Take(qsizetype(length) * charSize);
    QString text;
    if (wide) {
        text.resize(qsizetype(length));
        if constexpr (Q_BYTE_ORDER == Q_LITTLE_ENDIAN) {
            std::memcpy(text.data(), data, size_t(length * 2));
        } else {
            for (std::uint64_t i = 0; i < length; ++i)
                text[qsizetype(i)] = QChar(qFromLittleEndian<std::uint16_t>(data + 2 * i));
        }
    } else {
        AppendFromCodePage(1252, data, qsizetype(length), text);
    }
    return text;
}

// ---------------------------------------------------------------- objects

void CArchive::WriteClass(const CRuntimeClass& runtimeClass)
{
    const auto seen = m_storeMap.find(&runtimeClass);
    if (seen != m_storeMap.end()) {
        if (seen->second < wBigObjectTag)
            *this << std::uint16_t(wClassTag | seen->second);
        else
            *this << wBigObjectTag << std::uint32_t(dwBigClassTag | seen->second);
        return;
    }
    const auto nameLength = std::uint16_t(std::strlen(runtimeClass.m_lpszClassName));
    *this << wNewClassTag << runtimeClass.m_wSchema << nameLength;
    WriteRaw(runtimeClass.m_lpszClassName, nameLength);
    m_storeMap.emplace(&runtimeClass, m_nMapCount++);
}

void CArchive::WriteObject(const CDrawObj* object)
{
    if (!object) {
        *this << wNullTag;
        return;
    }
    const auto seen = m_storeMap.find(object);
    if (seen != m_storeMap.end()) {
        if (seen->second < wBigObjectTag)
            *this << std::uint16_t(seen->second);
        else
            *this << wBigObjectTag << seen->second;
        return;
    }
    const CRuntimeClass* runtimeClass = CRuntimeClass::Of(*object);
    if (!runtimeClass)
        AfxThrowArchiveException(CArchiveException::badClass);
    WriteClass(*runtimeClass);
    m_storeMap.emplace(object, m_nMapCount++);
    // Serialize serves both directions; storing leaves the object as it is.
    const_cast<CDrawObj*>(object)->Serialize(*this);
}

const CRuntimeClass& CArchive::LoadClass()
{
    const std::uint16_t schema = Read<std::uint16_t>();
    const std::uint16_t nameLength = Read<std::uint16_t>();
    if (nameLength > MaxClassNameLength)
        AfxThrowArchiveException(CArchiveException::badClass);
    const char* name = Take(nameLength);
    const CRuntimeClass* runtimeClass = CRuntimeClass::FromName(std::string_view(name, nameLength));
    if (!runtimeClass)
        AfxThrowArchiveException(CArchiveException::badClass);
    if (runtimeClass->m_wSchema != schema)
        AfxThrowArchiveException(CArchiveException::badSchema);
    return *runtimeClass;
}

std::unique_ptr<CDrawObj> CArchive::ReadObject()
{
    const std::uint16_t tag = Read<std::uint16_t>();
    const std::uint32_t obTag =
        tag == wBigObjectTag ? Read<std::uint32_t>() : (std::uint32_t(tag & wClassTag) << 16) | (tag & ~wClassTag);

    if (!(obTag & dwBigClassTag)) {
        if (obTag == wNullTag)
            return nullptr;
        // An object read before would stand in two places; one not read yet doesn't exist.
        AfxThrowArchiveException(CArchiveException::badIndex);
    }

    const CRuntimeClass* runtimeClass = nullptr;
    if (tag == wNewClassTag) {
        runtimeClass = &LoadClass();
        m_loadArray.push_back(runtimeClass);
    } else {
        const std::uint32_t classIndex = obTag & ~dwBigClassTag;
        if (classIndex == 0 || classIndex >= m_loadArray.size() || !m_loadArray[classIndex])
            AfxThrowArchiveException(CArchiveException::badIndex);
        runtimeClass = m_loadArray[classIndex];
    }

    std::unique_ptr<CDrawObj> object = runtimeClass->m_pfnCreateObject();
    m_loadArray.push_back(nullptr); // the object's index, given before its record is read
    object->Serialize(*this);
    return object;
}
