#pragma once

#include "document/CArchive.h"

#include <QByteArray>
#include <QString>
#include <QtEndian>
#include <cstdint>
#include <cstring>

// Archive bytes built by hand, the way another writer (or a damaged disc) would leave them.
struct ArchiveBytes {
    QByteArray data;

    ArchiveBytes& u8(unsigned v) { data.append(char(v & 0xFF)); return *this; }
    ArchiveBytes& u16(unsigned v) { return u8(v).u8(v >> 8); }
    ArchiveBytes& u32(std::uint32_t v) { return u16(v & 0xFFFF).u16(v >> 16); }
    ArchiveBytes& i32(std::int32_t v) { return u32(std::uint32_t(v)); }
    ArchiveBytes& u64(std::uint64_t v) { return u32(std::uint32_t(v)).u32(std::uint32_t(v >> 32)); }
    ArchiveBytes& f32(float v) { std::uint32_t b; std::memcpy(&b, &v, 4); return u32(b); }
    ArchiveBytes& f64(double v) { std::uint64_t b; std::memcpy(&b, &v, 8); return u64(b); }
    ArchiveBytes& raw(const QByteArray& bytes) { data.append(bytes); return *this; }
    // An 8-bit string shorter than 0xFFFE bytes, with the shortest length prefix.
    ArchiveBytes& str8(const QByteArray& text)
    {
        (text.size() < 0xFF ? u8(unsigned(text.size())) : u8(0xFF).u16(unsigned(text.size())));
        return raw(text);
    }
    // A short UTF-16 string as the program writes it.
    ArchiveBytes& str16(const QString& text)
    {
        u8(0xFF).u16(0xFFFE).u8(unsigned(text.size()));
        for (QChar c : text)
            u16(c.unicode());
        return *this;
    }
    // A new class tag with its name.
    ArchiveBytes& newClass(const QByteArray& name, unsigned schema = 0)
    {
        return u16(0xFFFF).u16(schema).u16(unsigned(name.size())).raw(name);
    }
    // A CDrawObj record with the defaults of a new object and the given rectangle.
    ArchiveBytes& objectRecord(int l, int t, int r, int b, const QByteArray& picture8bit = {})
    {
        i32(l).i32(t).i32(r).i32(b);
        u8(7).u8(0).u8(0).u8(0).u8(0).u8(0);                      // flags, dash, cap, fill, reserved, transparency
        raw(QByteArray::fromHex("FFFFFFFF" "FF000000" "FF000000" "FF000000")); // colours, A R G B
        u8(1).u8(2).i32(0);                                        // line width, gradient style, hatch
        u8(2).u8(4).u8(241).u8(19);                                // arrow sizes and kinds
        str8(picture8bit);
        return u8(4).u8(0).u8(1).u8(0).u8(2);                       // wrap, swap, scale, line kind, gradient mode
    }
    ArchiveBytes& rectRecord(int l, int t, int r, int b, int shape, const QByteArray& picture8bit = {})
    {
        objectRecord(l, t, r, b, picture8bit);
        return i32(shape).i32(100).i32(100).f32(90).f32(0).f32(40).f32(40);
    }
};

// Runs the archive over the bytes and gives the cause it fails with, or none.
template <typename Reader>
CArchiveException::Cause failureOf(const QByteArray& bytes, Reader read)
{
    CArchive ar(bytes);
    try {
        read(ar);
    } catch (const CArchiveException& e) {
        return e.m_cause;
    }
    return CArchiveException::none;
}
