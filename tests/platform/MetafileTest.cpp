#include "TestSupport.h"

#include "platform/graphics/Image.h"

#include <QtEndian>
#include <gtest/gtest.h>

using namespace gfx;

namespace {

// Little-endian words and records of a Windows metafile.
class MetafileBytes {
public:
    void word(int value)
    {
        const quint16 v = quint16(value);
        m_bytes.append(char(v & 0xFF)).append(char(v >> 8));
    }
    void dword(quint32 value)
    {
        word(int(value & 0xFFFF));
        word(int(value >> 16));
    }
    // A record: its size in words (the six-byte head included), the function number, then the
    // parameters, which GDI stores last-first (y before x, bottom before top).
    void record(int function, std::initializer_list<int> params)
    {
        dword(quint32(3 + params.size()));
        word(function);
        for (const int p : params)
            word(p);
    }
    const QByteArray& bytes() const { return m_bytes; }

private:
    QByteArray m_bytes;
};

// A placeable metafile, frame (0, 0)-(width, height) at `unitsPerInch`, that paints a red
// rectangle from (20, 10) to (80, 40) with no outline.
QByteArray redRectangle(int width = 100, int height = 50, int unitsPerInch = 96)
{
    MetafileBytes placeable;
    placeable.dword(0x9AC6CDD7); // the placeable key
    placeable.word(0);           // handle, unused
    placeable.word(0);           // frame left, top, right, bottom in logical units
    placeable.word(0);
    placeable.word(width);
    placeable.word(height);
    placeable.word(unitsPerInch);
    placeable.dword(0); // reserved
    quint16 checksum = 0; // XOR of the ten words so far
    for (int i = 0; i < 20; i += 2)
        checksum ^= qFromLittleEndian<quint16>(placeable.bytes().constData() + i);
    placeable.word(checksum);

    MetafileBytes records;
    records.record(0x020B, {0, 0});                   // SetWindowOrg(y 0, x 0)
    records.record(0x020C, {height, width});          // SetWindowExt(y, x)
    records.record(0x02FC, {0, 0x00FF, 0x0000, 0});   // CreateBrushIndirect: solid, COLORREF 0x000000FF (red), hatch
    records.record(0x012D, {0});                      // SelectObject(brush, object 0)
    records.record(0x02FA, {5, 0, 0, 0, 0});          // CreatePenIndirect: PS_NULL, width (0, 0), black
    records.record(0x012D, {1});                      // SelectObject(pen, object 1)
    records.record(0x041B, {40, 80, 10, 20});         // Rectangle(bottom 40, right 80, top 10, left 20)
    records.record(0x0000, {});                       // end of file

    MetafileBytes header;
    header.word(1);      // on disk
    header.word(9);      // header size in words
    header.word(0x0300); // Windows 3
    header.dword(quint32((18 + records.bytes().size()) / 2)); // file size in words
    header.word(2);      // objects: one brush, one pen
    header.dword(8);     // largest record in words (CreatePenIndirect)
    header.word(0);
    return placeable.bytes() + header.bytes() + records.bytes();
}

void expectError(const Image& image)
{
    EXPECT_NE(image.GetLastStatus(), Status::Ok);
    EXPECT_EQ(image.GetWidth(), 0u);
    EXPECT_EQ(image.GetHeight(), 0u);
    EXPECT_NE(image.GetType(), ImageType::Metafile);
}

} // namespace

TEST(Metafile, PlaceableMetafileIsRasterisedAt96DpiAndKeepsItsType)
{
    TestFolder folder;
    const Image image(folder.write("rect.wmf", redRectangle()));
    ASSERT_EQ(image.GetLastStatus(), Status::Ok);
    EXPECT_EQ(image.GetType(), ImageType::Metafile);
    EXPECT_EQ(int(image.GetType()), 2);
    EXPECT_EQ(image.GetWidth(), 100u);
    EXPECT_EQ(image.GetHeight(), 50u);
    EXPECT_EQ(QColor::fromRgba(image.image().pixel(50, 25)), QColor(Qt::red));
    EXPECT_EQ(QColor::fromRgba(image.image().pixel(21, 11)), QColor(Qt::red));
    // What the metafile leaves unpainted is transparent.
    EXPECT_EQ(qAlpha(image.image().pixel(5, 5)), 0);
    EXPECT_EQ(qAlpha(image.image().pixel(90, 45)), 0);
}

TEST(Metafile, SizeFollowsTheFrameAndUnitsPerInchWhateverTheName)
{
    // Two inches by one at 1440 units an inch, under a name that is not .wmf.
    TestFolder folder;
    const Image image(folder.write("picture.bin", redRectangle(2880, 1440, 1440)));
    ASSERT_EQ(image.GetLastStatus(), Status::Ok);
    EXPECT_EQ(image.GetType(), ImageType::Metafile);
    EXPECT_EQ(image.GetWidth(), 192u);
    EXPECT_EQ(image.GetHeight(), 96u);
    // The rectangle (20, 10)-(80, 40) of 1440ths is a pixel or two near the corner.
    EXPECT_EQ(QColor::fromRgba(image.image().pixel(2, 1)), QColor(Qt::red));
    EXPECT_EQ(qAlpha(image.image().pixel(100, 50)), 0);
}

TEST(Metafile, IsNotTurnedByRotateFlip)
{
    // The program mirrors the world for metafiles instead; turning the picture as well would
    // stand it on its head.
    TestFolder folder;
    Image image(folder.write("rect.wmf", redRectangle()));
    image.RotateFlip(Rotate180FlipX);
    EXPECT_EQ(QColor::fromRgba(image.image().pixel(50, 12)), QColor(Qt::red));
    EXPECT_EQ(qAlpha(image.image().pixel(50, 45)), 0);
}

TEST(Metafile, BrokenBytesGiveAnErrorImage)
{
    TestFolder folder;
    const QByteArray good = redRectangle();

    expectError(Image(folder.write("truncated.wmf", good.left(good.size() - 9))));
    expectError(Image(folder.write("header-only.wmf", good.left(30))));

    // A record claiming zero words would never advance a naive player.
    QByteArray stuck = good;
    const int firstRecord = 22 + 18;
    stuck[firstRecord] = 0;
    stuck[firstRecord + 1] = 0;
    expectError(Image(folder.write("stuck.wmf", stuck)));

    // A record claiming far more than the file holds.
    QByteArray huge = good;
    huge[firstRecord + 2] = char(0x7F);
    expectError(Image(folder.write("huge.wmf", huge)));

    // Noise behind a valid placeable header and metafile header.
    QByteArray noise = good.left(40);
    quint32 seed = 12345;
    for (int i = 0; i < 4000; ++i) {
        seed = seed * 1103515245u + 12345u;
        noise.append(char(seed >> 16));
    }
    expectError(Image(folder.write("noise.wmf", noise)));

    // Plain noise named .wmf is no picture at all.
    expectError(Image(folder.write("random.wmf", noise.mid(40))));
}
