#include "DocumentFixture.h"

#include "platform/Profile.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"

#include <QImage>
#include <QPainter>

namespace {

constexpr QRgb Red = 0xFFFF0000;
constexpr QRgb Blue = 0xFF0000FF;
constexpr QRgb Green = 0xFF00FF00;
constexpr QRgb WhitePixel = 0xFFFFFFFF;

QRgb pixel(const gfx::Bitmap& bitmap, int x, int y)
{
    return bitmap.image().pixel(x, y);
}

// A 200 by 200 bitmap whose world is the label's: y up, (0, 0) in the middle.
struct LabelCanvas {
    explicit LabelCanvas(int originX = 100, int originY = 100) : bitmap(200, 200), graphics(bitmap)
    {
        graphics.SetTransform(gfx::Matrix(1, 0, 0, -1, float(originX), float(originY)));
    }
    gfx::Bitmap bitmap;
    gfx::Graphics graphics;
};

// The phase (device row modulo 8) of a horizontal hatch over the given column; -1 when the
// foreground rows are not all in one phase.
int hatchPhase(const gfx::Bitmap& bitmap, int column)
{
    int phase = -1;
    int rows = 0;
    for (int y = 0; y < bitmap.image().height(); ++y) {
        if (bitmap.image().pixel(column, y) != 0xFF000000)
            continue;
        ++rows;
        if (phase != -1 && y % 8 != phase)
            return -1;
        phase = y % 8;
    }
    return rows >= 24 ? phase : -1;
}

} // namespace

class LabelDrawing : public DocumentFixture {
protected:
    void SetUp() override
    {
        DocumentFixture::SetUp();
        addTemplate(OneDiscSheet);
        useTemplate(0);
    }

    // A 20 by 10 picture: left half red, right half blue, top row green.
    QString writePicture()
    {
        QImage image(20, 10, QImage::Format_ARGB32);
        for (int y = 0; y < 10; ++y)
            for (int x = 0; x < 20; ++x)
                image.setPixel(x, y, y == 0 ? Green : x < 10 ? Red : Blue);
        const QString path = folder.path() + "/picture.png";
        image.save(path);
        return path;
    }

    void drawBackground(LabelCanvas& canvas) { doc.DrawBackground(canvas.graphics, 40, 40, 0); }
};

TEST_F(LabelDrawing, LabelPathIsTheDiscWithItsHoleGrownByTheBleed)
{
    gfx::GraphicsPath withBleed, without;
    doc.BuildLabelPath(100, 100, withBleed, 0, true);
    doc.BuildLabelPath(100, 100, without, 0, false);
    // Disc radius 232.5 and hole radius 35 at 100 units per inch; the bleed is 13 units.
    EXPECT_TRUE(without.IsVisible(QPointF(230, 0)));
    EXPECT_FALSE(without.IsVisible(QPointF(240, 0)));
    EXPECT_TRUE(withBleed.IsVisible(QPointF(240, 0)));
    EXPECT_FALSE(withBleed.IsVisible(QPointF(250, 0)));
    EXPECT_FALSE(without.IsVisible(QPointF(30, 0)));
    EXPECT_TRUE(withBleed.IsVisible(QPointF(30, 0))); // the hole shrinks by the bleed
    EXPECT_FALSE(withBleed.IsVisible(QPointF(0, 0)));
}

TEST_F(LabelDrawing, BusinessCardDiscIsCutByTwoChords)
{
    addTemplate("SHEET\nCards\n\n4\n4\n1\n0\n0\n"
                "BUSDISC\n1\nCard\n2\n2\n3.15\n0.9\n0\n2.4\nENDOBJECT\nEND\n");
    useTemplate(1);
    gfx::GraphicsPath path;
    doc.BuildLabelPath(100, 100, path, 0, false);
    EXPECT_TRUE(path.IsVisible(QPointF(150, 0)));  // the round sides stay
    EXPECT_TRUE(path.IsVisible(QPointF(0, 115)));  // inside the chords, 120 from the centre
    EXPECT_FALSE(path.IsVisible(QPointF(0, 125))); // beyond the chord, inside the circle
    EXPECT_FALSE(path.IsVisible(QPointF(0, -125)));
}

TEST_F(LabelDrawing, RectangleAreaIsItsRectangleWithoutAHole)
{
    addTemplate("SHEET\nCard\n\n4\n4\n1\n0\n0\nRECT\n1\nCard\n2\n2\n3\n1\n0\nENDOBJECT\nEND\n");
    useTemplate(1);
    gfx::GraphicsPath path;
    doc.BuildLabelPath(100, 100, path, 0, false);
    EXPECT_EQ(path.GetBounds(), QRectF(-150, -50, 300, 100));
    EXPECT_TRUE(path.IsVisible(QPointF(0, 0)));
}

TEST_F(LabelDrawing, SolidAndMissingPictureBackgrounds)
{
    doc.SetBackColor(gfx::RGB(0, 0, 255));
    LabelCanvas solid;
    drawBackground(solid);
    EXPECT_EQ(pixel(solid.bitmap, 0, 0), Blue);
    EXPECT_EQ(pixel(solid.bitmap, 199, 199), Blue);

    // A picture that does not load leaves the white ground and reports nothing.
    doc.SetImageFile(folder.path() + "/missing.png");
    LabelCanvas missing;
    drawBackground(missing);
    EXPECT_EQ(pixel(missing.bitmap, 100, 100), WhitePixel);
    folder.write("garbage.png", QByteArray(5000, '\x7f'));
    doc.SetImageFile(folder.path() + "/garbage.png");
    LabelCanvas garbage;
    drawBackground(garbage);
    EXPECT_EQ(pixel(garbage.bitmap, 100, 100), WhitePixel);
}

TEST_F(LabelDrawing, PictureModesPlaceThePictureUprightAroundTheOffset)
{
    doc.SetImageFile(writePicture());

    doc.SetWrapMode(4);
    doc.SetFitMode(0); // Center: pixel for unit, centred
    LabelCanvas center;
    drawBackground(center);
    EXPECT_EQ(pixel(center.bitmap, 95, 100), Red);
    EXPECT_EQ(pixel(center.bitmap, 105, 100), Blue);
    EXPECT_EQ(pixel(center.bitmap, 95, 95), Green); // the picture's top row is on top
    EXPECT_EQ(pixel(center.bitmap, 80, 100), WhitePixel);
    EXPECT_EQ(pixel(center.bitmap, 100, 110), WhitePixel);

    doc.SetBackgroundAdjust(30, 20, 1.0); // the offset moves the picture left and up
    LabelCanvas moved;
    drawBackground(moved);
    EXPECT_EQ(pixel(moved.bitmap, 65, 80), Red);
    EXPECT_EQ(pixel(moved.bitmap, 75, 80), Blue);
    EXPECT_EQ(pixel(moved.bitmap, 95, 100), WhitePixel);

    doc.SetBackgroundAdjust(0, 0, 1.0);
    doc.SetFitMode(2); // Stretch to the label with its bleed: 186 + 2 x 5.2 units
    LabelCanvas stretch;
    drawBackground(stretch);
    EXPECT_EQ(pixel(stretch.bitmap, 1, 100), WhitePixel);
    EXPECT_EQ(pixel(stretch.bitmap, 15, 100), Red);
    EXPECT_EQ(pixel(stretch.bitmap, 185, 100), Blue);
    EXPECT_EQ(pixel(stretch.bitmap, 198, 100), WhitePixel);

    doc.SetFitMode(1); // Fit covers the target with the proportions kept: 393 by 196
    LabelCanvas fit;
    drawBackground(fit);
    EXPECT_EQ(pixel(fit.bitmap, 1, 100), Red);
    EXPECT_EQ(pixel(fit.bitmap, 198, 100), Blue);
    EXPECT_EQ(pixel(fit.bitmap, 1, 1), WhitePixel);
}

TEST_F(LabelDrawing, TiledPicturesRepeatAndFlip)
{
    doc.SetImageFile(writePicture());
    doc.SetWrapMode(0);
    LabelCanvas tile;
    drawBackground(tile);
    EXPECT_EQ(pixel(tile.bitmap, 115, 100), Red); // the next tile starts again with red
    EXPECT_EQ(pixel(tile.bitmap, 125, 100), Blue);

    doc.SetWrapMode(1);
    LabelCanvas flipX;
    drawBackground(flipX);
    EXPECT_EQ(pixel(flipX.bitmap, 95, 100), Red); // the tile at the origin is not flipped
    EXPECT_EQ(pixel(flipX.bitmap, 115, 100), Blue);
    EXPECT_EQ(pixel(flipX.bitmap, 125, 100), Red);

    doc.SetWrapMode(2);
    LabelCanvas flipY;
    drawBackground(flipY);
    EXPECT_EQ(pixel(flipY.bitmap, 95, 95), Green);
    EXPECT_EQ(pixel(flipY.bitmap, 95, 94), Green); // mirrored neighbour above shares the row
    EXPECT_EQ(pixel(flipY.bitmap, 95, 104), Red);
}

TEST_F(LabelDrawing, HatchFollowsThePictureOffsetAndTheLabelNotTheScreen)
{
    doc.SetHatchStyle(0); // horizontal lines
    doc.SetBackColor(gfx::RGB(0, 0, 0));
    doc.SetBackColor2(gfx::RGB(255, 255, 255));
    LabelCanvas plain;
    drawBackground(plain);
    const int phase = hatchPhase(plain.bitmap, 50);
    ASSERT_NE(phase, -1);

    doc.SetBackgroundAdjust(0, 3, 1.0); // the pattern moves up with the offset
    LabelCanvas offset;
    drawBackground(offset);
    EXPECT_EQ(hatchPhase(offset.bitmap, 50), (phase + 8 - 3) % 8);

    // With the offset back at 0, moving the label on the device moves the pattern with it.
    doc.SetBackgroundAdjust(0, 0, 1.0);
    LabelCanvas lower(100, 105);
    drawBackground(lower);
    EXPECT_EQ(hatchPhase(lower.bitmap, 50), (phase + 5) % 8);
}

TEST_F(LabelDrawing, ViewShowsPerforationsAndTheGridOverTheLabel)
{
    // A perforation straight down the middle of the disc, given from the area's top-left corner.
    templates.clear();
    addTemplate("SHEET\nPerforated\n\n6\n6\n1\n0\n0\n"
                "DISC\n1\nDisc\n3\n3\n4.65\n0.7\nPERF\n0\n2.325\n0\n2.325\n4.65\nENDPERF\nENDOBJECT\nEND\n");
    useTemplate(0);
    RecordingView view;
    auto darkness = [](const gfx::Bitmap& bitmap, int x, int y) { return 255 - qGreen(bitmap.image().pixel(x, y)); };

    LabelCanvas plain;
    doc.DrawLabel(plain.graphics, 40, 40, &view, 0, true);
    int dark = 0, light = 0;
    for (int y = 10; y < 80; ++y) // the ring above the hole
        (std::max(darkness(plain.bitmap, 99, y), darkness(plain.bitmap, 100, y)) > 100 ? dark : light)++;
    EXPECT_GT(dark, 20);
    EXPECT_GT(light, 10); // dashed, not solid
    EXPECT_EQ(darkness(plain.bitmap, 130, 40), 0);

    // The grid in inches: a heavy line every half inch (20 units here), a light one every tenth.
    doc.m_bShowGrid = true;
    LabelCanvas grid;
    doc.DrawLabel(grid.graphics, 40, 40, &view, 0, true);
    auto lineAt = [&](int x) { return std::max(darkness(grid.bitmap, x - 1, 62), darkness(grid.bitmap, x, 62)); }; // between horizontal lines
    EXPECT_GT(lineAt(120), lineAt(124)); // half inch: heavy and light together
    EXPECT_GT(lineAt(124), lineAt(122)); // a tenth: light only; between lines: nothing
    EXPECT_EQ(lineAt(122), 0);
    // Without a view there is neither grid nor perforation.
    LabelCanvas print;
    doc.DrawLabel(print.graphics, 40, 40, nullptr, 0, true);
    EXPECT_EQ(darkness(print.bitmap, 120, 60), 0);
    EXPECT_EQ(darkness(print.bitmap, 100, 40), 0);
}

TEST_F(LabelDrawing, GridOfAnAbsurdlyLargeLabelIsLeftOut)
{
    templates.clear();
    addTemplate(DiscPrinter);
    useTemplate(0);
    Profile::WriteInt(QString(), QStringLiteral("OuterDia"), 2000000000); // two million inches
    doc.m_bShowGrid = true;
    RecordingView view;
    LabelCanvas canvas;
    doc.DrawLabel(canvas.graphics, 300, 300, &view, 0, true); // returns, and soon
    SUCCEED();
}
