#include "ArchiveBytes.h"

#include "document/CArchive.h"
#include "document/CDrawObjList.h"
#include "objects/CDrawPoly.h"
#include "objects/CDrawRect.h"

#include <gtest/gtest.h>

namespace {

QByteArray stored(const QString& text)
{
    CArchive ar;
    ar << text;
    return ar.Buffer();
}

QString loaded(const QByteArray& bytes)
{
    CArchive ar(bytes);
    QString text = ar.ReadString();
    EXPECT_EQ(ar.Remaining(), 0);
    return text;
}

CDrawObjList readList(const QByteArray& bytes)
{
    CArchive in(bytes);
    CDrawObjList list;
    list.Serialize(in);
    EXPECT_EQ(in.Remaining(), 0);
    return list;
}

// Bytes of a CDrawRect record as the archive writes it, without the tag.
constexpr int RectRecordSize = 57 + 28;
constexpr int PolyRecordHeader = 57 + 5;

} // namespace

TEST(ArchiveStrings, WrittenAsUtf16WithTheShortestLengthPrefix)
{
    EXPECT_EQ(stored(QString()), QByteArray::fromHex("FFFEFF00"));
    const std::pair<qsizetype, const char*> cases[] = {
        {3, "FFFEFF03"}, {254, "FFFEFFFE"}, {255, "FFFEFFFFFF00"}, {0xFFFD, "FFFEFFFFFDFF"},
        {0xFFFE, "FFFEFFFFFFFFFEFF0000"}, {70000, "FFFEFFFFFFFF70110100"},
    };
    for (const auto& [length, hex] : cases) {
        SCOPED_TRACE(length);
        const QByteArray prefix = QByteArray::fromHex(hex);
        QString text(length, QChar(u'\u00e9'));
        text[0] = QChar(u'\u20ac');
        const QByteArray bytes = stored(text);
        EXPECT_EQ(bytes.left(prefix.size()), prefix);
        EXPECT_EQ(bytes.size(), prefix.size() + 2 * length);
        EXPECT_EQ(bytes.mid(prefix.size(), 2), QByteArray::fromHex("AC20")) << "little-endian code units";
        EXPECT_EQ(loaded(bytes), text);
    }
}

TEST(ArchiveStrings, EightBitTextInEveryLengthFormReadsAsWindows1252)
{
    EXPECT_EQ(loaded(ArchiveBytes().str8("caf\xe9 \x80 \x93ok\x94 \x81").data), QString::fromUtf8("café € “ok” \u0081"));
    EXPECT_EQ(loaded(ArchiveBytes().str8(QByteArray()).data), QString());
    EXPECT_EQ(loaded(ArchiveBytes().str8(QByteArray(300, 'a')).data), QString(300, 'a'));
    // The four-byte form, also for a length that would fit in fewer; UTF-16 with the two-byte
    // length; the eight-byte form behind an all-ones u32.
    EXPECT_EQ(loaded(ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(2).raw("hi").data), QStringLiteral("hi"));
    EXPECT_EQ(loaded(ArchiveBytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(2).u16('o').u16('k').data), QStringLiteral("ok"));
    EXPECT_EQ(loaded(ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(1).raw("x").data), QStringLiteral("x"));

    // Strings in a row keep their place.
    CArchive ar(ArchiveBytes().str8("one").str16(QStringLiteral("two")).str8("three").data);
    EXPECT_EQ((QStringList{ar.ReadString(), ar.ReadString(), ar.ReadString()}), (QStringList{"one", "two", "three"}));
}

TEST(ArchiveStrings, LengthsBeyondTheDataFailAsEndOfFileBeforeAnyAllocation)
{
    const QByteArray cases[] = {
        ArchiveBytes().u8(5).raw("abcd").data,                                         // one byte short
        ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFE).raw("abc").data,             // 4 GB of 8-bit text
        ArchiveBytes().u8(0xFF).u16(0xFFFE).u8(0xFF).u16(0xFFFF).u32(0x7FFFFFFF).data,   // 4 GB of UTF-16
        ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(~0ull).data,             // the eight-byte form
        ArchiveBytes().u8(0xFF).u16(0xFFFE).u8(3).u16('a').u16('b').u8('c').data,        // half a code unit
        ArchiveBytes().u8(0xFF).u16(0xFFFE).data,                                        // marker, then nothing
        ArchiveBytes().u8(0xFF).u8(0x00).data,                                           // half a length
        QByteArray(),
    };
    for (const QByteArray& bytes : cases)
        EXPECT_EQ(failureOf(bytes, [](CArchive& ar) { ar.ReadString(); }), CArchiveException::endOfFile)
            << bytes.toHex().constData();
}

TEST(ArchiveItems, NumbersColoursRectanglesAndCounts)
{
    CArchive out;
    out << gfx::Color(0x80, 0x11, 0x22, 0x33) << CRect(-1, 2, 3, -4) << CPoint(5, -6) << 1.5f << -2.25
        << std::uint16_t(0xBEEF) << std::int32_t(-2);
    for (const std::uint32_t count : {0xFFFEu, 0xFFFFu, 70000u})
        out.WriteCount(count);
    EXPECT_EQ(out.Buffer().toHex(), QByteArray("80112233"                         // alpha, red, green, blue
                                               "ffffffff0200000003000000fcffffff" // left, top, right, bottom
                                               "05000000faffffff" "0000c03f" "00000000000002c0" "efbe" "feffffff"
                                               "feff" "ffffffff0000" "ffff70110100"));

    CArchive in(out.Buffer());
    EXPECT_EQ((std::tuple{in.Read<gfx::Color>(), in.Read<CRect>(), in.Read<CPoint>(), in.Read<float>(),
                          in.Read<double>(), in.Read<std::uint16_t>(), in.Read<std::int32_t>()}),
              (std::tuple{gfx::Color(0x80, 0x11, 0x22, 0x33), CRect(-1, 2, 3, -4), CPoint(5, -6), 1.5f, -2.25,
                          std::uint16_t(0xBEEF), std::int32_t(-2)}));
    EXPECT_EQ((std::vector{in.ReadCount(), in.ReadCount(), in.ReadCount()}), (std::vector{0xFFFEu, 0xFFFFu, 70000u}));
    EXPECT_EQ(failureOf(QByteArray::fromHex("ffff0100"), [](CArchive& ar) { ar.ReadCount(); }),
              CArchiveException::endOfFile);
}

TEST(ArchiveObjects, ClassTagsAndOneRunningIndex)
{
    CDrawObjList list, second;
    list.AddTail(std::make_unique<CDrawRect>(CRect(0, 10, 20, 0)));
    auto poly = std::make_unique<CDrawPoly>();
    poly->SetPoints({{1, 2}, {3, 4}}, 10);
    list.AddTail(std::move(poly));
    list.AddTail(std::make_unique<CDrawRect>(CRect(5, 5, 6, 6)));
    list.AddTail(std::make_unique<CDrawPoly>());
    second.AddTail(std::make_unique<CDrawRect>());
    CArchive out;
    list.Serialize(out);
    second.Serialize(out); // the index runs on across lists
    const QByteArray bytes = out.Buffer();

    qsizetype at = 0;
    auto expectAt = [&](const QByteArray& hex, int recordSize) {
        EXPECT_EQ(bytes.mid(at, hex.size() / 2).toHex(), hex) << "at " << at;
        at += hex.size() / 2 + recordSize;
    };
    expectAt("0400", 0);                                                                    // count
    expectAt("ffff0000" "0900" + QByteArray("CDrawRect").toHex(), RectRecordSize);          // class 1, object 2
    expectAt("ffff0000" "0900" + QByteArray("CDrawPoly").toHex(), PolyRecordHeader + 16);   // class 3, object 4
    expectAt("0180", RectRecordSize);                                                       // object 5
    expectAt("0380", PolyRecordHeader);                                                     // object 6
    expectAt("0100", 0);
    expectAt("0180", RectRecordSize);
    EXPECT_EQ(at, bytes.size());

    // Read back, the references find their classes.
    const CDrawObjList read = readList(bytes.left(bytes.size() - 4 - RectRecordSize));
    ASSERT_EQ(read.GetCount(), 4);
    const auto* readPoly = dynamic_cast<CDrawPoly*>(read.GetAt(1));
    ASSERT_NE(readPoly, nullptr);
    EXPECT_EQ(std::tuple(readPoly->GetPoints(), readPoly->GetPointCapacity()), std::tuple(std::vector<CPoint>{{1, 2}, {3, 4}}, 10));
    ASSERT_NE(dynamic_cast<CDrawRect*>(read.GetAt(2)), nullptr);
    EXPECT_NE(dynamic_cast<CDrawPoly*>(read.GetAt(3)), nullptr);
}

TEST(ArchiveObjects, ClassIndexesFromTheBigRangeTakeTheLongForm)
{
    // 32,767 rectangles use up the short indexes (class 1, objects 2 to 32768); the poly class
    // then takes 32769, beyond 0x7FFF.
    CDrawObjList list;
    for (int i = 0; i < 0x7FFF; ++i)
        list.AddTail(std::make_unique<CDrawRect>(CRect(i, 0, i + 1, 1)));
    list.AddTail(std::make_unique<CDrawPoly>());
    list.AddTail(std::make_unique<CDrawPoly>());
    list.AddTail(std::make_unique<CDrawRect>());
    CArchive out;
    list.Serialize(out);
    const QByteArray& bytes = out.Buffer();
    const qsizetype lastRect = bytes.size() - RectRecordSize - 2;
    EXPECT_EQ(bytes.left(2).toHex(), "0280");
    EXPECT_EQ(bytes.mid(lastRect, 2).toHex(), "0180");
    EXPECT_EQ(bytes.mid(lastRect - PolyRecordHeader - 6, 6).toHex(), "ff7f01800080");

    const CDrawObjList read = readList(bytes);
    ASSERT_EQ(read.GetCount(), 0x7FFF + 3);
    EXPECT_NE(dynamic_cast<CDrawPoly*>(read.GetAt(0x7FFF + 1)), nullptr);
    EXPECT_NE(dynamic_cast<CDrawRect*>(read.GetAt(0x7FFF + 2)), nullptr);
    EXPECT_EQ(read.GetAt(0x7FFE)->m_position.left, 0x7FFE);

    // The long form is read for small indexes too.
    ArchiveBytes small;
    small.u16(2).newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0).u16(0x7FFF).u32(0x80000001).rectRecord(0, 2, 2, 0, 2);
    const CDrawObjList smallRead = readList(small.data);
    ASSERT_EQ(smallRead.GetCount(), 2);
    EXPECT_EQ(static_cast<CDrawRect*>(smallRead.GetAt(1))->m_shape, 2);
}

TEST(ArchiveObjects, BadClassesAndReferencesFailCleanly)
{
    auto withOneRect = [](ArchiveBytes b) { return b.newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0); };
    using E = CArchiveException;
    const struct {
        const char* what;
        QByteArray bytes;
        E::Cause cause;
    } cases[] = {
        {"unknown class", ArchiveBytes().u16(1).newClass("CDrawCircle").data, E::badClass},
        {"name too long", ArchiveBytes().u16(1).newClass(QByteArray(200, 'C')).data, E::badClass},
        {"schema", ArchiveBytes().u16(1).newClass("CDrawRect", 1).rectRecord(0, 0, 0, 0, 0).data, E::badSchema},
        {"object not read yet", ArchiveBytes().u16(1).u16(5).data, E::badIndex},
        {"object read before", withOneRect(ArchiveBytes().u16(2)).u16(2).data, E::badIndex},
        {"class index of an object", withOneRect(ArchiveBytes().u16(2)).u16(0x8002).data, E::badIndex},
        {"class index 0", ArchiveBytes().u16(1).u16(0x8000).data, E::badIndex},
        {"class not read yet", ArchiveBytes().u16(1).u16(0x8009).data, E::badIndex},
        {"big class index", ArchiveBytes().u16(1).u16(0x7FFF).u32(0xFFFFFFFF).data, E::badIndex},
        {"count beyond the file", ArchiveBytes().u16(0xFFFF).u32(0xFFFFFFFF).u16(0).data, E::endOfFile},
        {"65,535 points that aren't there",
         ArchiveBytes().u16(1).newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(0xFFFF).u16(0xFFFF).u8(0).i32(1).data,
         E::endOfFile},
        {"truncated class name", ArchiveBytes().u16(1).u16(0xFFFF).u16(0).u16(9).raw("CDraw").data, E::endOfFile},
    };
    for (const auto& c : cases)
        EXPECT_EQ(failureOf(c.bytes, [](CArchive& ar) { CDrawObjList().Serialize(ar); }), c.cause) << c.what;

    // A null reference adds nothing and takes no index.
    const CDrawObjList list = readList(withOneRect(ArchiveBytes().u16(3).u16(0)).u16(0x8001).rectRecord(0, 3, 3, 0, 4).data);
    ASSERT_EQ(list.GetCount(), 2);
    EXPECT_EQ(static_cast<CDrawRect*>(list.GetAt(1))->m_shape, 4);

    // The base class can be read; a poly whose capacity is below its count gets room for all.
    ArchiveBytes odd;
    odd.u16(2).newClass("CDrawObj").objectRecord(1, 2, 3, 4);
    odd.newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(3).u16(1).u8(3).i32(1).i32(1).i32(2).i32(2).i32(3).i32(3);
    const CDrawObjList oddList = readList(odd.data);
    ASSERT_EQ(oddList.GetCount(), 2);
    EXPECT_EQ(typeid(*oddList.GetAt(0)), typeid(CDrawObj));
    const auto* poly = static_cast<CDrawPoly*>(oddList.GetAt(1));
    EXPECT_EQ(std::tuple(poly->GetPointCount(), poly->GetPointCapacity(), poly->m_polyKind),
              std::tuple(3, 3, CDrawPoly::ClosedCurve));
}

TEST(ArchiveObjects, NarrowFieldsAreCutWhenWrittenAndZeroExtendedWhenRead)
{
    CDrawRect rect(CRect(0, 300, 600, 0));
    rect.m_dashStyle = 0x1FF;
    rect.m_startArrow = -1;
    rect.m_hatchStyle = -1;
    rect.m_fillColor1 = gfx::Color(0x10, 0x20, 0x30, 0x40);
    rect.m_pictureFile = QStringLiteral("/pictures/ünder.png");
    rect.m_shape = 0x102;
    rect.m_cornerSize = CPoint(7, 8);
    rect.m_startAngle = 12.5f;
    rect.m_ringAngle = 99;
    CArchive out;
    out.WriteObject(&rect);

    CArchive in(out.Buffer());
    const std::unique_ptr<CDrawObj> object = in.ReadObject();
    const auto& r = dynamic_cast<const CDrawRect&>(*object);
    EXPECT_EQ(std::tuple(r.m_dashStyle, r.m_startArrow, r.m_hatchStyle, r.m_fillColor1, r.m_pictureFile),
              std::tuple(0xFF, 0xFF, -1, rect.m_fillColor1, rect.m_pictureFile));
    EXPECT_EQ(std::tuple(r.m_shape, r.m_cornerSize, r.m_startAngle), std::tuple(0x102, CPoint(7, 8), 12.5f));
    EXPECT_EQ(r.m_ringAngle, 45) << "not kept";
    EXPECT_DOUBLE_EQ(r.m_aspect, 2.0);
}
