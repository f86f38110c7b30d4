#include "GraphicsTestSupport.h"

#include "TestSupport.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/TextureBrush.h"

#include <bit>

using namespace gfx;

namespace {

const QRgb A = qRgb(255, 0, 0), B = qRgb(0, 255, 0), C = qRgb(0, 0, 255), D = qRgb(255, 255, 0);
const Color Ink(255, 0, 0, 0), Paper(255, 255, 255, 255);

// A B
// C D
Image quad()
{
    QImage image(2, 2, QImage::Format_RGB32);
    const QRgb texels[] = {A, B, C, D};
    for (int i = 0; i < 4; ++i)
        image.setPixel(i % 2, i / 2, texels[i]);
    return Image(image);
}

// Fills the area and returns the canvas as rows of letters: A B C D for the quad colours, '.' for white.
QStringList fillWith(const TextureBrush& brush, int size, const QRectF& area)
{
    Bitmap canvas = makeCanvas(size, size);
    Graphics g(canvas);
    g.SetInterpolationMode(InterpolationMode::NearestNeighbor); // whole texels only
    g.FillRectangle(brush, area);
    QStringList rows;
    for (int y = 0; y < size; ++y) {
        QString row;
        for (int x = 0; x < size; ++x) {
            const QRgb p = canvas.image().pixel(x, y) | 0xFF000000;
            row += p == A ? 'A' : p == B ? 'B' : p == C ? 'C' : p == D ? 'D' : p == qRgb(255, 255, 255) ? '.' : '?';
        }
        rows << row;
    }
    return rows;
}

} // namespace

TEST(HatchBrush, PatternsAndTiles)
{
    constexpr int counts[HatchStyleTotal] = {8,  8,  8,  8,  15, 16, 2,  4,  8,  16, 24, 30, 32, 40, 48, 56, 60, 62,
                                             16, 16, 32, 32, 24, 24, 16, 16, 32, 32, 32, 32, 8,  8,  8,  8,  8,  24,
                                             16, 14, 12, 22, 19, 32, 6,  7,  6,  13, 48, 38, 28, 32, 32, 14, 25};
    for (int style = 0; style < HatchStyleTotal; ++style) {
        int set = 0;
        for (const std::uint8_t row : HatchBrush::Pattern(style))
            set += std::popcount(row);
        EXPECT_EQ(set, counts[style]) << "style " << style;
    }
    EXPECT_EQ(HatchBrush::Pattern(-1), HatchBrush::Pattern(0));
    EXPECT_EQ(HatchBrush::Pattern(53), HatchBrush::Pattern(0));
    // Vertical is the leftmost column.
    const QImage vertical = HatchBrush(1, Ink, Paper).Tile();
    EXPECT_EQ(vertical.pixel(0, 5), qRgb(0, 0, 0));
    EXPECT_EQ(vertical.pixel(1, 5), qRgb(255, 255, 255));

    // Plain diagonals get quarter-tone neighbours, wrapping round the tile; other styles are two-coloured.
    const QImage tile = HatchBrush(2, Ink, Paper).Tile();
    ASSERT_EQ(tile.size(), QSize(8, 8));
    EXPECT_EQ(tile.pixel(3, 3), qRgb(0, 0, 0));
    for (const QPoint p : {QPoint(2, 3), QPoint(4, 3), QPoint(7, 0)})
        EXPECT_EQ(tile.pixel(p), qRgb(191, 191, 191)) << p.x() << "," << p.y();
    EXPECT_EQ(tile.pixel(5, 3), qRgb(255, 255, 255));
    const QImage zigzag = HatchBrush(36, Ink, Paper).Tile();
    EXPECT_EQ(countPixels(zigzag, Qt::black) + countPixels(zigzag, Qt::white), 64);
}

TEST(HatchBrush, TilesStayOnTheDeviceGridAtTheRenderingOrigin)
{
    // The program's drawing: y up, scaled, antialiased and bicubic. The tile must neither
    // scale nor flip, and must start at the rendering origin.
    const int style = 35; // LargeConfetti: no symmetry to hide a flip
    Bitmap canvas = makeCanvas(64, 64);
    Graphics g(canvas);
    g.SetSmoothingMode(SmoothingMode::AntiAlias);
    g.SetInterpolationMode(InterpolationMode::HighQualityBicubic);
    g.SetTransform(Matrix(2.5f, 0, 0, -2.5f, 7, 90));
    g.SetRenderingOrigin(3, 5);
    g.FillRectangle(HatchBrush(style, Ink, Paper), QRectF(-10, -10, 40, 50));
    const auto& rows = HatchBrush::Pattern(style);
    int mismatches = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const int col = ((x - 3) % 8 + 8) % 8, row = ((y - 5) % 8 + 8) % 8;
            const QRgb expected = (rows[row] >> (7 - col)) & 1 ? qRgb(0, 0, 0) : qRgb(255, 255, 255);
            mismatches += canvas.image().pixel(x, y) != expected;
        }
    }
    EXPECT_EQ(mismatches, 0);

    // A transparent background lets what is below show.
    Bitmap red = makeCanvas(8, 8, Qt::red);
    Graphics(red).FillRectangle(HatchBrush(0, Color(255, 0, 0, 255), Color(0, 0, 0, 0)), QRectF(0, 0, 8, 8));
    EXPECT_EQ(countPixels(red.image(), Qt::blue), 8); // the top row
    EXPECT_EQ(countPixels(red.image(), Qt::red), 56);
}

TEST(TextureBrush, WrapModesMirrorEveryOtherTile)
{
    const struct {
        WrapMode mode;
        QStringList rows;
    } cases[] = {{WrapMode::Tile, {"ABAB", "CDCD", "ABAB", "CDCD"}},
                 {WrapMode::TileFlipX, {"ABBA", "CDDC", "ABBA", "CDDC"}},
                 {WrapMode::TileFlipY, {"ABAB", "CDCD", "CDCD", "ABAB"}},
                 {WrapMode::TileFlipXY, {"ABBA", "CDDC", "CDDC", "ABBA"}}};
    // One brush throughout: changing the mode of a brush that has drawn already takes effect.
    TextureBrush brush(quad(), WrapMode::Tile);
    for (const auto& c : cases) {
        brush.SetWrapMode(c.mode);
        EXPECT_EQ(fillWith(brush, 4, QRectF(0, 0, 4, 4)), c.rows) << int(c.mode);
    }
}

TEST(TextureBrush, ClampAndTransforms)
{
    // Clamp paints only where the picture is, and only inside the filled shape.
    TextureBrush brush(quad(), WrapMode::Clamp);
    brush.TranslateTransform(2, 1);
    EXPECT_EQ(fillWith(brush, 6, QRectF(0, 0, 6, 6)),
              (QStringList{"......", "..AB..", "..CD..", "......", "......", "......"}));
    EXPECT_EQ(fillWith(brush, 6, QRectF(3, 0, 3, 6)),
              (QStringList{"......", "...B..", "...D..", "......", "......", "......"}));

    // Transforms prepend and accumulate.
    brush.ResetTransform();
    brush.TranslateTransform(1, 0);
    brush.TranslateTransform(1, 1);
    brush.ScaleTransform(2, 2); // acts first: a texel is 2 units, then moved by (2, 1)
    EXPECT_EQ(brush.GetTransform(), Matrix(2, 0, 0, 2, 2, 1));
    EXPECT_EQ(fillWith(brush, 8, QRectF(0, 0, 8, 8)), (QStringList{"........", "..AABB..", "..AABB..", "..CCDD..",
                                                                   "..CCDD..", "........", "........", "........"}));
    brush.ResetTransform();
    brush.TranslateTransform(1, 0);
    brush.ScaleTransform(2, 2, MatrixOrder::Append); // moved, then scaled: the move doubles
    EXPECT_EQ(brush.GetTransform(), Matrix(2, 0, 0, 2, 2, 0));
    brush.ResetTransform();
    brush.RotateTransform(90); // A's right neighbour B ends up below it
    brush.TranslateTransform(0, -2, MatrixOrder::Prepend);
    EXPECT_EQ(fillWith(brush, 4, QRectF(0, 0, 4, 4)).mid(0, 2), (QStringList{"CA..", "DB.."}));
}

TEST(TextureBrush, TextureFollowsTheBrushThenTheWorldTransform)
{
    // The program flips the texture and the world both, so the picture stands upright.
    TextureBrush brush(quad(), WrapMode::Clamp);
    brush.SetTransform(Matrix(1, 0, 0, -1, 0, 0));
    brush.TranslateTransform(-1, -1);
    Bitmap canvas = makeCanvas(4, 4);
    Graphics g(canvas);
    g.SetTransform(Matrix(1, 0, 0, -1, 2, 2));
    g.FillRectangle(brush, QRectF(-2, -2, 4, 4));
    EXPECT_EQ(canvas.image().pixel(1, 1) | 0xFF000000, A);
    EXPECT_EQ(canvas.image().pixel(2, 1) | 0xFF000000, B);
    EXPECT_EQ(canvas.image().pixel(1, 2) | 0xFF000000, C);
    EXPECT_EQ(countPixels(canvas.image(), Qt::white), 12);

    // A brush of a missing picture draws nothing.
    Bitmap blank = makeCanvas(4, 4);
    Graphics(blank).FillRectangle(TextureBrush(Image(QStringLiteral("/nonexistent/picture.png"))), QRectF(0, 0, 4, 4));
    EXPECT_EQ(countPixels(blank.image(), Qt::white), 16);
}
