#include "GraphicsTestSupport.h"

#include "TestSupport.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/TextureBrush.h"

#include <bit>

using namespace gfx;

namespace {

const Color Ink(255, 0, 0, 0), Paper(255, 255, 255, 255);

// Fills the area with whole texels of the brush and returns the canvas as letters.
QStringList fillWith(const TextureBrush& brush, int size, const QRectF& area)
{
    return rowsOf(drawOn(size, size, [&](Graphics& g) {
                      g.SetInterpolationMode(InterpolationMode::NearestNeighbor);
                      g.FillRectangle(brush, area);
                  }).image());
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
    // Vertical is the leftmost column; plain diagonals get quarter-tone neighbours, wrapping
    // round the tile; other styles are two-coloured.
    EXPECT_EQ(rowsOf(HatchBrush(1, Ink, Paper).Tile())[5], "#.......");
    const QImage tile = HatchBrush(2, Ink, Paper).Tile();
    ASSERT_EQ(tile.size(), QSize(8, 8));
    EXPECT_EQ(rowsOf(tile)[3].mid(3, 3), "#?.");
    for (const QPoint p : {QPoint(2, 3), QPoint(4, 3), QPoint(7, 0)})
        EXPECT_EQ(tile.pixel(p), qRgb(191, 191, 191)) << p.x() << "," << p.y();
    EXPECT_FALSE(rowsOf(HatchBrush(36, Ink, Paper).Tile()).join("").contains('?'));
}

TEST(HatchBrush, TilesStayOnTheDeviceGridAtTheRenderingOrigin)
{
    // The program's drawing: y up, scaled, antialiased and bicubic. The tile must neither
    // scale nor flip, and must start at the rendering origin.
    const int style = 35; // LargeConfetti: no symmetry to hide a flip
    const Bitmap canvas = drawOn(64, 64, [](Graphics& g) {
        g.SetSmoothingMode(SmoothingMode::AntiAlias);
        g.SetInterpolationMode(InterpolationMode::HighQualityBicubic);
        g.SetTransform(Matrix(2.5f, 0, 0, -2.5f, 7, 90));
        g.SetRenderingOrigin(3, 5);
        g.FillRectangle(HatchBrush(style, Ink, Paper), QRectF(-10, -10, 40, 50));
    });
    const auto& rows = HatchBrush::Pattern(style);
    int mismatches = 0;
    for (int y = 0; y < 64; ++y) {
        for (int x = 0; x < 64; ++x) {
            const bool set = (rows[(y + 3) % 8] >> (7 - (x + 5) % 8)) & 1; // (x - 3) and (y - 5) modulo 8
            mismatches += canvas.image().pixel(x, y) != (set ? qRgb(0, 0, 0) : qRgb(255, 255, 255));
        }
    }
    EXPECT_EQ(mismatches, 0);

    // A transparent background lets what is below show.
    const Bitmap red = drawOn(8, 8, [](Graphics& g) {
        g.FillRectangle(HatchBrush(0, Color(255, 0, 0, 255), Color(0, 0, 0, 0)), QRectF(0, 0, 8, 8));
    }, Qt::red);
    EXPECT_EQ(rowsOf(red.image()), QStringList({"BBBBBBBB"}) + QStringList(7, "RRRRRRRR"));
}

TEST(TextureBrush, WrapModesMirrorEveryOtherTile)
{
    const struct {
        WrapMode mode;
        QStringList rows;
    } cases[] = {{WrapMode::Tile, {"RGRG", "BYBY", "RGRG", "BYBY"}},
                 {WrapMode::TileFlipX, {"RGGR", "BYYB", "RGGR", "BYYB"}},
                 {WrapMode::TileFlipY, {"RGRG", "BYBY", "BYBY", "RGRG"}},
                 {WrapMode::TileFlipXY, {"RGGR", "BYYB", "BYYB", "RGGR"}}};
    // One brush throughout: changing the mode of a brush that has drawn already takes effect.
    TextureBrush brush(Image(imageOf({"RG", "BY"})), WrapMode::Tile);
    for (const auto& c : cases) {
        brush.SetWrapMode(c.mode);
        EXPECT_EQ(fillWith(brush, 4, QRectF(0, 0, 4, 4)), c.rows) << int(c.mode);
    }
}

TEST(TextureBrush, ClampAndTransforms)
{
    // Translations accumulate; Clamp paints only where the picture is, and only inside the
    // filled shape.
    TextureBrush brush(Image(imageOf({"RG", "BY"})), WrapMode::Clamp);
    brush.TranslateTransform(1, 0);
    brush.TranslateTransform(1, 1);
    EXPECT_EQ(brush.GetTransform(), Matrix(1, 0, 0, 1, 2, 1));
    EXPECT_EQ(fillWith(brush, 5, QRectF(3, 0, 3, 6)), (QStringList{".....", "...G.", "...Y.", ".....", "....."}));

    // The program flips the texture and the world both, so the picture stands upright.
    brush.SetTransform(Matrix(1, 0, 0, -1, 0, 0));
    brush.TranslateTransform(-1, -1);
    const Bitmap upright = drawOn(4, 4, [&](Graphics& g) {
        g.SetTransform(Matrix(1, 0, 0, -1, 2, 2));
        g.FillRectangle(brush, QRectF(-2, -2, 4, 4));
    });
    EXPECT_EQ(rowsOf(upright.image()), (QStringList{"....", ".RG.", ".BY.", "...."}));

    // A brush of a missing picture draws nothing.
    const Bitmap blank = drawOn(4, 4, [](Graphics& g) {
        g.FillRectangle(TextureBrush(Image(QStringLiteral("/nonexistent/picture.png"))), QRectF(0, 0, 4, 4));
    });
    EXPECT_EQ(countPixels(blank.image(), Qt::white), 16);
}
