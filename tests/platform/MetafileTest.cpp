#include "TestSupport.h"

#include "platform/graphics/Image.h"

#include <gtest/gtest.h>

using namespace gfx;

namespace {

// Appends little-endian 16-bit words, as a Windows metafile stores them.
void put(QByteArray& bytes, std::initializer_list<int> words)
{
    for (const int w : words)
        bytes.append(char(w & 0xFF)).append(char((w >> 8) & 0xFF));
}

// A placeable metafile, frame (0, 0)-(width, height) at `unitsPerInch`, that paints a red
// rectangle from (20, 10) to (80, 40) with no outline.
QByteArray redRectangle(int width = 100, int height = 50, int unitsPerInch = 96)
{
    // The placeable key, handle, frame left, top, right, bottom, units per inch, reserved; then
    // the XOR of these ten words.
    const std::initializer_list<int> placeable = {0xCDD7, 0x9AC6, 0, 0, 0, width, height, unitsPerInch, 0, 0};
    QByteArray head;
    put(head, placeable);
    int checksum = 0;
    for (const int w : placeable)
        checksum ^= w;
    put(head, {checksum});

    // A record is its size in words (the six-byte head included), the function number, then the
    // parameters, which GDI stores last-first (y before x, bottom before top).
    QByteArray records;
    const auto record = [&records](int function, std::initializer_list<int> params) {
        put(records, {int(3 + params.size()), 0, function});
        put(records, params);
    };
    record(0x020B, {0, 0});                 // SetWindowOrg(y 0, x 0)
    record(0x020C, {height, width});        // SetWindowExt(y, x)
    record(0x02FC, {0, 0x00FF, 0x0000, 0}); // CreateBrushIndirect: solid, COLORREF 0x000000FF (red), hatch
    record(0x012D, {0});                    // SelectObject(brush, object 0)
    record(0x02FA, {5, 0, 0, 0, 0});        // CreatePenIndirect: PS_NULL, width (0, 0), black
    record(0x012D, {1});                    // SelectObject(pen, object 1)
    record(0x041B, {40, 80, 10, 20});       // Rectangle(bottom 40, right 80, top 10, left 20)
    record(0x0000, {});                     // end of file

    // On disk, header of 9 words, Windows 3, file size in words, two objects (a brush and a pen),
    // largest record in words (CreatePenIndirect), no parameters.
    const int words = int(18 + records.size()) / 2;
    put(head, {1, 9, 0x0300, words & 0xFFFF, words >> 16, 2, 8, 0, 0});
    return head + records;
}

} // namespace

TEST(Metafile, PlaceableMetafileIsRasterisedAt96DpiWhateverTheName)
{
    // Two inches by one at 1440 units an inch, under a name that is not .wmf, puts the
    // rectangle (20, 10)-(80, 40) of 1440ths a pixel or two near the corner.
    const struct {
        const char* name;
        int width, height, unitsPerInch;
        QSize size;
        QPoint red, clear;
    } cases[] = {{"rect.wmf", 100, 50, 96, {100, 50}, {21, 11}, {90, 45}},
                 {"picture.bin", 2880, 1440, 1440, {192, 96}, {2, 1}, {100, 50}}};
    TestFolder folder;
    for (const auto& c : cases) {
        SCOPED_TRACE(c.name);
        const Image image(folder.write(c.name, redRectangle(c.width, c.height, c.unitsPerInch)));
        ASSERT_EQ(image.GetLastStatus(), Status::Ok);
        EXPECT_EQ(image.GetType(), ImageType::Metafile);
        EXPECT_EQ(QSize(int(image.GetWidth()), int(image.GetHeight())), c.size);
        EXPECT_EQ(image.image().pixel(c.red), qRgb(255, 0, 0));
        EXPECT_EQ(qAlpha(image.image().pixel(c.clear)), 0); // what the metafile leaves unpainted is transparent
    }

    // The program mirrors the world for metafiles instead; turning the picture as well would
    // stand it on its head.
    Image turned(folder.write("rect.wmf", redRectangle()));
    turned.RotateFlip(Rotate180FlipX);
    EXPECT_EQ(turned.image().pixel(50, 12), qRgb(255, 0, 0));
    EXPECT_EQ(qAlpha(turned.image().pixel(50, 45)), 0);
}

TEST(Metafile, BrokenBytesGiveAnErrorImage)
{
    TestFolder folder;
    const QByteArray good = redRectangle();
    const int firstRecord = 22 + 18;
    // A record claiming zero words would never advance a naive player; another claims far
    // more than the file holds.
    QByteArray stuck = good, huge = good;
    stuck[firstRecord] = stuck[firstRecord + 1] = 0;
    huge[firstRecord + 2] = char(0x7F);
    // Noise behind a valid placeable header and metafile header, and plain noise.
    QByteArray noise = good.left(40);
    quint32 seed = 12345;
    for (int i = 0; i < 4000; ++i) {
        seed = seed * 1103515245u + 12345u;
        noise.append(char(seed >> 16));
    }
    const QByteArray cases[] = {good.left(good.size() - 9), good.left(30), stuck, huge, noise, noise.mid(40)};
    for (const QByteArray& bytes : cases) {
        SCOPED_TRACE(&bytes - cases);
        const Image image(folder.write("broken.wmf", bytes));
        EXPECT_NE(image.GetLastStatus(), Status::Ok);
        EXPECT_EQ(image.GetWidth(), 0u);
        EXPECT_EQ(image.GetHeight(), 0u);
        EXPECT_NE(image.GetType(), ImageType::Metafile);
    }
}
