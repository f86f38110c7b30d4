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

// Bytes of a CDrawRect record as the archive writes it, without the tag.
constexpr int RectRecordSize = 57 + 28;
constexpr int PolyRecordHeader = 57 + 5;

} // namespace

TEST(ArchiveStrings, WrittenAsUtf16WithTheShortestLengthPrefix)
{
    EXPECT_EQ(stored(QString()), QByteArray::fromHex("FFFEFF00"));
    const struct {
        qsizetype length;
        QByteArray prefix;
    } cases[] = {
        {3, QByteArray::fromHex("FFFEFF03")},
        {254, QByteArray::fromHex("FFFEFFFE")},
        {255, QByteArray::fromHex("FFFEFFFFFF00")},
        {0xFFFD, QByteArray::fromHex("FFFEFFFFFDFF")},
        {0xFFFE, QByteArray::fromHex("FFFEFFFFFFFFFEFF0000")},
        {70000, QByteArray::fromHex("FFFEFFFFFFFF70110100")},
    };
    for (const auto& c : cases) {
        QString text(c.length, QChar(u'\u00e9'));
        text[0] = QChar(u'\u20ac');
        const QByteArray bytes = stored(text);
        EXPECT_EQ(bytes.left(c.prefix.size()), c.prefix) << c.length;
        EXPECT_EQ(bytes.size(), c.prefix.size() + 2 * c.length) << c.length;
        EXPECT_EQ(bytes.mid(c.prefix.size(), 2), QByteArray::fromHex("AC20")) << "little-endian code units";
        EXPECT_EQ(loaded(bytes), text) << c.length;
    }
}

TEST(ArchiveStrings, EightBitTextInEveryLengthFormReadsAsWindows1252)
{
    EXPECT_EQ(loaded(ArchiveBytes().str8("caf\xe9 \x80 \x93ok\x94 \x81").data),
              QString::fromUtf8("café € “ok” \u0081"));
    EXPECT_EQ(loaded(ArchiveBytes().str8(QByteArray()).data), QString());
    const QByteArray medium(300, 'a');
    EXPECT_EQ(loaded(ArchiveBytes().str8(medium).data), QString(medium));
    // The four-byte form, also for a length that would fit in fewer.
    EXPECT_EQ(loaded(ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(2).raw("hi").data), QStringLiteral("hi"));
    // UTF-16 with the two-byte length, and the eight-byte form behind an all-ones u32.
    ArchiveBytes wide;
    wide.u8(0xFF).u16(0xFFFE).u8(0xFF).u16(2).u16('o').u16('k');
    EXPECT_EQ(loaded(wide.data), QStringLiteral("ok"));
    EXPECT_EQ(loaded(ArchiveBytes().u8(0xFF).u16(0xFFFF).u32(0xFFFFFFFF).u64(1).raw("x").data), QStringLiteral("x"));

    // Strings in a row keep their place.
    CArchive ar(ArchiveBytes().str8("one").str16(QStringLiteral("two")).str8("three").data);
    EXPECT_EQ(ar.ReadString(), QStringLiteral("one"));
    EXPECT_EQ(ar.ReadString(), QStringLiteral("two"));
    EXPECT_EQ(ar.ReadString(), QStringLiteral("three"));
}

TEST(ArchiveStrings, LengthsBeyondTheDataFailAsEndOfFileBeforeAnyAllocation)
{
    auto readString = [](CArchive& ar) { ar.ReadString(); };
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
        EXPECT_EQ(failureOf(bytes, readString), CArchiveException::endOfFile) << bytes.toHex().constData();
}

TEST(ArchiveItems, NumbersColoursRectanglesAndCounts)
{
    CArchive out;
    out << gfx::Color(0x80, 0x11, 0x22, 0x33) << CRect(-1, 2, 3, -4) << CPoint(5, -6) << 1.5f << -2.25
        << std::uint16_t(0xBEEF) << std::int32_t(-2);
    out.WriteCount(0xFFFE);
    out.WriteCount(0xFFFF);
    out.WriteCount(70000);
    EXPECT_EQ(out.Buffer().toHex(), QByteArray("80112233"                         // alpha, red, green, blue
                                               "ffffffff0200000003000000fcffffff" // left, top, right, bottom
                                               "05000000faffffff"
                                               "0000c03f"
                                               "00000000000002c0"
                                               "efbe"
                                               "feffffff"
                                               "feff"
                                               "ffffffff0000"
                                               "ffff70110100"));

    CArchive in(out.Buffer());
    EXPECT_EQ(in.Read<gfx::Color>(), gfx::Color(0x80, 0x11, 0x22, 0x33));
    const CRect r = in.Read<CRect>();
    EXPECT_EQ(r, CRect(-1, 2, 3, -4));
    EXPECT_EQ(in.Read<CPoint>(), CPoint(5, -6));
    EXPECT_EQ(in.Read<float>(), 1.5f);
    EXPECT_EQ(in.Read<double>(), -2.25);
    EXPECT_EQ(in.Read<std::uint16_t>(), 0xBEEF);
    EXPECT_EQ(in.Read<std::int32_t>(), -2);
    EXPECT_EQ(in.ReadCount(), 0xFFFEu);
    EXPECT_EQ(in.ReadCount(), 0xFFFFu);
    EXPECT_EQ(in.ReadCount(), 70000u);
    EXPECT_EQ(failureOf(QByteArray::fromHex("ffff0100"), [](CArchive& ar) { ar.ReadCount(); }),
              CArchiveException::endOfFile);
}

TEST(ArchiveObjects, ClassTagsAndOneRunningIndex)
{
    CDrawObjList list;
    list.AddTail(std::make_unique<CDrawRect>(CRect(0, 10, 20, 0)));
    auto poly = std::make_unique<CDrawPoly>();
    poly->SetPoints({{1, 2}, {3, 4}}, 10);
    list.AddTail(std::move(poly));
    list.AddTail(std::make_unique<CDrawRect>(CRect(5, 5, 6, 6)));
    list.AddTail(std::make_unique<CDrawPoly>());
    CArchive out;
    list.Serialize(out);
    CDrawObjList second;
    second.AddTail(std::make_unique<CDrawRect>());
    second.Serialize(out); // the index runs on across lists
    const QByteArray bytes = out.Buffer();

    const int polyRecord = PolyRecordHeader + 2 * 8;
    qsizetype at = 0;
    auto expectAt = [&](const QByteArray& hex, int recordSize) {
        EXPECT_EQ(bytes.mid(at, hex.size() / 2).toHex(), hex) << "at " << at;
        at += hex.size() / 2 + recordSize;
    };
    expectAt("0400", 0);                                            // count
    expectAt("ffff0000" "0900" + QByteArray("CDrawRect").toHex(), RectRecordSize); // class 1, object 2
    expectAt("ffff0000" "0900" + QByteArray("CDrawPoly").toHex(), polyRecord);     // class 3, object 4
    expectAt("0180", RectRecordSize);                                // object 5
    expectAt("0380", PolyRecordHeader);                              // object 6
    expectAt("0100", 0);
    expectAt("0180", RectRecordSize);
    EXPECT_EQ(at, bytes.size());

    CArchive in(bytes);
    CDrawObjList read, readSecond;
    read.Serialize(in);
    readSecond.Serialize(in);
    ASSERT_EQ(read.GetCount(), 4);
    ASSERT_EQ(readSecond.GetCount(), 1);
    EXPECT_NE(dynamic_cast<CDrawRect*>(read.GetAt(2)), nullptr);
    const auto* readPoly = dynamic_cast<CDrawPoly*>(read.GetAt(1));
    ASSERT_NE(readPoly, nullptr);
    EXPECT_EQ(readPoly->GetPoints(), (std::vector<CPoint>{{1, 2}, {3, 4}}));
    EXPECT_EQ(readPoly->GetPointCapacity(), 10);
    EXPECT_EQ(read.GetAt(2)->m_position, CRect(5, 5, 6, 6));
    EXPECT_EQ(in.Remaining(), 0);
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
    EXPECT_EQ(bytes.left(2).toHex(), "0280");
    const qsizetype lastRect = bytes.size() - RectRecordSize - 2;
    EXPECT_EQ(bytes.mid(lastRect, 2).toHex(), "0180");
    const qsizetype secondPoly = lastRect - PolyRecordHeader - 6;
    EXPECT_EQ(bytes.mid(secondPoly, 6).toHex(), "ff7f01800080");

    CArchive in(bytes);
    CDrawObjList read;
    read.Serialize(in);
    ASSERT_EQ(read.GetCount(), 0x7FFF + 3);
    EXPECT_NE(dynamic_cast<CDrawPoly*>(read.GetAt(0x7FFF + 1)), nullptr);
    EXPECT_NE(dynamic_cast<CDrawRect*>(read.GetAt(0x7FFF + 2)), nullptr);
    EXPECT_EQ(read.GetAt(0x7FFE)->m_position.left, 0x7FFE);

    // The long form is read for small indexes too.
    ArchiveBytes small;
    small.u16(2).newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0).u16(0x7FFF).u32(0x80000001).rectRecord(0, 2, 2, 0, 2);
    CArchive smallIn(small.data);
    CDrawObjList smallRead;
    smallRead.Serialize(smallIn);
    ASSERT_EQ(smallRead.GetCount(), 2);
    EXPECT_EQ(static_cast<CDrawRect*>(smallRead.GetAt(1))->m_shape, 2);
}

TEST(ArchiveObjects, BadClassesAndReferencesFailCleanly)
{
    auto readList = [](CArchive& ar) {
        CDrawObjList list;
        list.Serialize(ar);
    };
    auto withOneRect = [](ArchiveBytes b) { return b.newClass("CDrawRect").rectRecord(0, 1, 1, 0, 0); };
    const struct {
        const char* what;
        QByteArray bytes;
        CArchiveException::Cause cause;
    } cases[] = {
        {"unknown class", ArchiveBytes().u16(1).newClass("CDrawCircle").data, CArchiveException::badClass},
        {"name too long", ArchiveBytes().u16(1).newClass(QByteArray(200, 'C')).data, CArchiveException::badClass},
        {"schema", ArchiveBytes().u16(1).newClass("CDrawRect", 1).rectRecord(0, 0, 0, 0, 0).data,
         CArchiveException::badSchema},
        {"object not read yet", ArchiveBytes().u16(1).u16(5).data, CArchiveException::badIndex},
        {"object read before", withOneRect(ArchiveBytes().u16(2)).u16(2).data, CArchiveException::badIndex},
        {"class index of an object", withOneRect(ArchiveBytes().u16(2)).u16(0x8002).data,
         CArchiveException::badIndex},
        {"class index 0", ArchiveBytes().u16(1).u16(0x8000).data, CArchiveException::badIndex},
        {"class not read yet", ArchiveBytes().u16(1).u16(0x8009).data, CArchiveException::badIndex},
        {"big class index", ArchiveBytes().u16(1).u16(0x7FFF).u32(0xFFFFFFFF).data, CArchiveException::badIndex},
        {"count beyond the file", ArchiveBytes().u16(0xFFFF).u32(0xFFFFFFFF).u16(0).data,
         CArchiveException::endOfFile},
        {"65,535 points that aren't there",
         ArchiveBytes().u16(1).newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(0xFFFF).u16(0xFFFF).u8(0).i32(1).data,
         CArchiveException::endOfFile},
        {"truncated class name", ArchiveBytes().u16(1).u16(0xFFFF).u16(0).u16(9).raw("CDraw").data,
         CArchiveException::endOfFile},
    };
    for (const auto& c : cases)
        EXPECT_EQ(failureOf(c.bytes, readList), c.cause) << c.what;

    // A null reference adds nothing and takes no index.
    CArchive in(withOneRect(ArchiveBytes().u16(3).u16(0)).u16(0x8001).rectRecord(0, 3, 3, 0, 4).data);
    CDrawObjList list;
    list.Serialize(in);
    ASSERT_EQ(list.GetCount(), 2);
    EXPECT_EQ(static_cast<CDrawRect*>(list.GetAt(1))->m_shape, 4);

    // The base class can be read; a poly whose capacity is below its count gets room for all.
    ArchiveBytes odd;
    odd.u16(2).newClass("CDrawObj").objectRecord(1, 2, 3, 4);
    odd.newClass("CDrawPoly").objectRecord(0, 0, 0, 0).u16(3).u16(1).u8(3).i32(1).i32(1).i32(2).i32(2).i32(3).i32(3);
    CArchive oddIn(odd.data);
    CDrawObjList oddList;
    oddList.Serialize(oddIn);
    ASSERT_EQ(oddList.GetCount(), 2);
    EXPECT_EQ(typeid(*oddList.GetAt(0)), typeid(CDrawObj));
    const auto* poly = static_cast<CDrawPoly*>(oddList.GetAt(1));
    EXPECT_EQ(poly->GetPointCount(), 3);
    EXPECT_EQ(poly->GetPointCapacity(), 3);
    EXPECT_EQ(poly->m_polyKind, CDrawPoly::ClosedCurve);
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
    const auto& read = dynamic_cast<const CDrawRect&>(*object);
    EXPECT_EQ(read.m_dashStyle, 0xFF);
    EXPECT_EQ(read.m_startArrow, 0xFF);
    EXPECT_EQ(read.m_hatchStyle, -1);
    EXPECT_EQ(read.m_fillColor1, rect.m_fillColor1);
    EXPECT_EQ(read.m_pictureFile, rect.m_pictureFile);
    EXPECT_EQ(read.m_shape, 0x102);
    EXPECT_EQ(read.m_cornerSize, CPoint(7, 8));
    EXPECT_EQ(read.m_startAngle, 12.5f);
    EXPECT_EQ(read.m_ringAngle, 45) << "not kept";
    EXPECT_DOUBLE_EQ(read.m_aspect, 2.0);
}
