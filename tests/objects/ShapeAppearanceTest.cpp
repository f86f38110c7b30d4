#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "objects/CDrawRect.h"
#include "objects/DefaultProperties.h"
#include "platform/graphics/TextureBrush.h"

#include <gtest/gtest.h>

namespace {

const gfx::Color Red(255, 255, 0, 0);
const gfx::Color Green(255, 0, 255, 0);

// A rectangle at (-50, -30)..(50, 30), stored with its top above its bottom.
std::unique_ptr<CDrawRect> sample(int fillKind = 0)
{
    ResetDefaultProperties();
    auto rect = std::make_unique<CDrawRect>(CRect(-50, 30, 50, -30));
    rect->m_fillKind = fillKind;
    rect->m_fillColor1 = Red;
    rect->m_fillColor2 = Green;
    return rect;
}

QImage drawn(CDrawRect& rect)
{
    ShapeCanvas canvas;
    rect.Draw(canvas.graphics(), 300, 300, nullptr);
    return canvas.image();
}

} // namespace

TEST(ShapeAppearance, TransparencySetsTheFillAlphaOfSolidAndHatchOnly)
{
    auto rect = sample();
    rect->m_fillColor2 = gfx::Color(128, 0, 0, 255);
    for (const auto& [transparency, alpha] : {std::pair{0, 255}, {1, 252}, {50, 127}, {100, 0}}) {
        rect->m_transparency = std::uint8_t(transparency);
        drawn(*rect);
        EXPECT_EQ(rect->m_appearance.SolidFill().GetColor(), gfx::Color(alpha, 255, 0, 0)) << transparency;
        EXPECT_EQ(rect->m_appearance.HatchFill().GetForegroundColor(), gfx::Color(alpha, 255, 0, 0));
        EXPECT_EQ(rect->m_appearance.HatchFill().GetBackgroundColor(), rect->m_fillColor2);
    }
    EXPECT_EQ(rect->m_fillColor1, Red);

    // Fully transparent: a solid fill vanishes, a hatch keeps its background.
    rect->m_fillColor2 = Green;
    rect->m_flags = 2;
    EXPECT_EQ(countPixels(drawn(*rect), Qt::white), 200 * 200);
    rect->m_fillKind = 1;
    const QImage hatched = drawn(*rect);
    EXPECT_GT(countPixels(hatched, Qt::green, 8), 5000);
    EXPECT_EQ(countPixels(hatched, Qt::red, 60), 0);

    // Gradients carry their alpha in the colours.
    rect->m_fillKind = 4;
    rect->m_gradientStyle = 0;
    EXPECT_GT(countPixels(drawn(*rect), Qt::red, 12), 0);
}

TEST(ShapeAppearance, GradientColoursChangePlacesForAllButHorizontal)
{
    auto rect = sample(4);
    rect->m_position = CRect(-80, 80, 80, -80);
    rect->m_flags = 2;
    rect->m_gradientStyle = 0; // Horizontal: first colour on the left
    QImage pixels = drawn(*rect);
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(-78, 0)), Qt::red, 12));
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(78, 0)), Qt::green, 12));
    rect->m_gradientStyle = 1; // Vertical: second colour at the lowest y
    pixels = drawn(*rect);
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(0, -78)), Qt::green, 12));
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(0, 78)), Qt::red, 12));
    const std::pair<int, gfx::LinearGradientMode> diagonals[] = {{2, gfx::LinearGradientMode::BackwardDiagonal},
                                                                 {3, gfx::LinearGradientMode::ForwardDiagonal},
                                                                 {7, gfx::LinearGradientMode::ForwardDiagonal}};
    for (const auto& [style, mode] : diagonals) {
        rect->m_gradientStyle = style;
        drawn(*rect);
        const gfx::LinearGradientBrush& brush = rect->m_appearance.LinearGradientFill();
        EXPECT_EQ(brush.GetMode(), mode) << style;
        EXPECT_EQ(brush.GetStartColor(), Green) << style;
        EXPECT_EQ(brush.GetEndColor(), Red) << style;
    }

    // Path gradient: From corner has the first colour in the centre, From center the second.
    rect->m_fillKind = 3;
    pixels = drawn(*rect);
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(0, 0)), Qt::red, 12));
    rect->m_gradientSwap = 1;
    pixels = drawn(*rect);
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(0, 0)), Qt::green, 12));
    EXPECT_EQ(rect->m_appearance.PathGradientFill().GetSurroundColor(), Red);
    EXPECT_FALSE(rect->m_appearance.PathGradientFill().GetGammaCorrection());
}

TEST(ShapeAppearance, PenTakesDashesAndTheOutlineGradientOfTheGrownRectangle)
{
    auto rect = sample();
    rect->m_lineWidth = 6;
    rect->m_lineColor1 = Red;
    rect->m_lineColor2 = Green;
    rect->m_dashStyle = 3;
    rect->m_dashCap = 2;
    rect->m_lineGradientMode = 1;
    drawn(*rect);
    const gfx::Pen& pen = rect->m_appearance.LinePen();
    EXPECT_EQ(pen.GetColor(), Red);
    EXPECT_FLOAT_EQ(pen.GetWidth(), 6.0f);
    EXPECT_EQ(pen.GetDashStyle(), gfx::DashStyle::DashDot);
    EXPECT_EQ(pen.GetDashCap(), gfx::DashCap::Round);
    EXPECT_EQ(pen.GetBrush(), nullptr);

    rect->m_lineKind = 4;
    drawn(*rect);
    const auto* brush = dynamic_cast<const gfx::LinearGradientBrush*>(rect->m_appearance.LinePen().GetBrush());
    ASSERT_NE(brush, nullptr);
    EXPECT_EQ(brush->GetRectangle(), QRectF(-51, -31, 102, 62));
    EXPECT_EQ(brush->GetStartColor(), Red);
    EXPECT_EQ(brush->GetMode(), gfx::LinearGradientMode::Vertical);
}

TEST(ShapeAppearance, HatchFollowsItsObject)
{
    auto rect = sample(1);
    ShapeCanvas canvas;
    rect->Draw(canvas.graphics(), 300, 300, nullptr);
    // The corner (-50, -30) is device (50, 130); a negative remainder keeps its sign.
    EXPECT_EQ(canvas.graphics().GetRenderingOrigin(), QPoint(50 % 8, 130 % 8));
    rect->m_position = CRect(-150, 30, -120, -30);
    rect->Draw(canvas.graphics(), 300, 300, nullptr);
    EXPECT_EQ(canvas.graphics().GetRenderingOrigin(), QPoint(-50 % 8, 130 % 8));

    // Two copies a few units apart show the same pattern under them.
    auto interior = [&](int dx) {
        rect->m_position = CRect(-40 + dx, 40, 40 + dx, -40);
        rect->m_hatchStyle = 34; // irregular
        return drawn(*rect).copy(QRect(ShapeCanvas::device(-38 + dx, 38), QSize(76, 76)));
    };
    const QImage here = interior(0);
    EXPECT_EQ(here, interior(3));
    EXPECT_EQ(here, interior(-5));
}

TEST(ShapeAppearance, PictureCacheIgnoresANewNameOnceLoaded)
{
    TestFolder folder;
    const QString first = folder.path() + "/first.png", second = folder.path() + "/second.png";
    twoBandPicture(20, 10).save(first);
    twoBandPicture(30, 40).save(second);

    auto rect = sample(2);
    drawn(*rect); // no name: an empty picture, tried again next time
    EXPECT_EQ(rect->m_appearance.Picture()->GetWidth(), 0u);
    rect->m_pictureFile = first;
    drawn(*rect);
    EXPECT_EQ(rect->m_appearance.LoadedFile(), first);
    // Turned upside down for the y-up transform.
    EXPECT_EQ(rect->m_appearance.Picture()->image().pixel(0, 9), qRgb(255, 0, 0));

    rect->m_pictureFile = second;
    drawn(*rect);
    EXPECT_EQ(rect->m_appearance.LoadedFile(), first);
    EXPECT_EQ(rect->m_appearance.Picture()->GetWidth(), 20u);

    // A name that failed to load stays failed as well.
    auto broken = sample(2);
    broken->m_pictureFile = folder.path() + "/missing.png";
    drawn(*broken);
    broken->m_pictureFile = second;
    drawn(*broken);
    EXPECT_EQ(broken->m_appearance.Picture()->GetWidth(), 0u);

    // A clone builds its own cache and shows the new name.
    auto copy = rect->Clone();
    auto& clone = dynamic_cast<CDrawRect&>(*copy);
    EXPECT_EQ(clone.m_appearance.Picture(), nullptr);
    drawn(clone);
    EXPECT_EQ(clone.m_appearance.Picture()->GetWidth(), 30u);
}

TEST(ShapeAppearance, TextureTranslationAddsUpFromDrawToDraw)
{
    TestFolder folder;
    auto rect = sample(2);
    rect->m_pictureFile = folder.path() + "/tile.png";
    twoBandPicture(8, 8).save(rect->m_pictureFile);
    rect->m_position = CRect(10, 70, 110, 20);
    rect->m_wrapMode = 1;
    rect->m_pictureScale = 0;
    for (int i = 0; i < 3; ++i)
        drawn(*rect);
    EXPECT_EQ(rect->m_appearance.Texture()->GetTransform().transform(), QTransform::fromTranslate(30, 60));
    EXPECT_EQ(rect->m_appearance.Texture()->GetWrapMode(), gfx::WrapMode::TileFlipX);
    // Another kind leaves it alone; a scaled picture doesn't touch the wrap mode.
    rect->m_fillKind = 0;
    rect->m_wrapMode = 3;
    rect->m_pictureScale = 1;
    drawn(*rect);
    EXPECT_EQ(rect->m_appearance.Texture()->GetTransform().transform(), QTransform::fromTranslate(30, 60));
    EXPECT_EQ(rect->m_appearance.Texture()->GetWrapMode(), gfx::WrapMode::TileFlipX);
}

TEST(ShapeAppearance, PicturesDrawCentredStretchedOrTiled)
{
    TestFolder folder;
    const QString file = folder.path() + "/bands.png";
    twoBandPicture(20, 10).save(file);
    auto draw = [&](int shape, int wrap, int scale, CRect position = CRect(-50, 30, 50, -30)) {
        auto rect = sample(2);
        rect->m_position = position;
        rect->m_shape = shape;
        rect->m_flags = 2;
        rect->m_pictureFile = file;
        rect->m_wrapMode = wrap;
        rect->m_pictureScale = std::uint8_t(scale);
        return drawn(*rect);
    };
    const QColor red(255, 0, 0), blue(0, 0, 255);
    const int area = 200 * 200;

    // Center: pixel size in the middle, upright; clipped to a smaller ellipse.
    const QImage centre = draw(CDrawRect::Rectangle, 4, 0);
    EXPECT_EQ(countPixels(centre, red, 8) + countPixels(centre, blue, 8), 200);
    EXPECT_TRUE(near(centre.pixel(ShapeCanvas::device(0, 3)), red));
    EXPECT_TRUE(near(centre.pixel(ShapeCanvas::device(0, -3)), blue));
    const int uncovered = countPixels(draw(CDrawRect::Ellipse, 4, 0, CRect(-5, 5, 5, -5)), Qt::white, 8);
    EXPECT_GT(area - uncovered, 60);
    EXPECT_LT(area - uncovered, 100);

    // Fit and Stretch fill the rectangle, upright; on an ellipse clipped to it.
    for (int scale : {1, 2}) {
        const QImage stretched = draw(CDrawRect::Rectangle, 4, scale);
        EXPECT_TRUE(near(stretched.pixel(ShapeCanvas::device(-48, 28)), red)) << scale;
        EXPECT_TRUE(near(stretched.pixel(ShapeCanvas::device(48, -28)), blue)) << scale;
        EXPECT_NEAR(area - countPixels(stretched, Qt::white, 8), 100 * 60, 250) << scale;
    }
    const QImage oval = draw(CDrawRect::Ellipse, 4, 1);
    EXPECT_TRUE(near(oval.pixel(ShapeCanvas::device(-49, 29)), Qt::white));
    EXPECT_TRUE(near(oval.pixel(ShapeCanvas::device(0, 20)), red));

    // Tile: many copies over the whole shape.
    const QImage tiled = draw(CDrawRect::Rectangle, 0, 0);
    EXPECT_NEAR(countPixels(tiled, red, 8) + countPixels(tiled, blue, 8), 100 * 60, 250);
    EXPECT_NEAR(countPixels(tiled, red, 8), countPixels(tiled, blue, 8), 200);
}

TEST(ShapeAppearance, ArrowCapsGoOnTheirOwnEnds)
{
    auto line = sample();
    line->m_lineWidth = 2;
    line->m_startArrow = 20;
    line->m_endArrow = 241;
    line->m_startArrowSize = 3;
    line->m_endArrowSize = 5;
    auto capsFor = [&](int selector) {
        gfx::Pen pen(Red, 2);
        ShapeAppearance::ApplyArrowCaps(*line, pen, selector);
        return pen;
    };
    const gfx::Pen both = capsFor(0);
    ASSERT_TRUE(both.GetCustomStartCap() && both.GetCustomEndCap());
    EXPECT_FLOAT_EQ(both.GetCustomStartCap()->GetWidthScale(), 1.5f);
    EXPECT_FLOAT_EQ(both.GetCustomEndCap()->GetWidthScale(), 2.5f);
    EXPECT_TRUE(both.GetCustomStartCap()->isFilled());
    EXPECT_FALSE(both.GetCustomEndCap()->isFilled()); // Open is a stroke
    // The arrow's tip (1, 0) is turned to point outward along +y.
    const auto points = both.GetCustomStartCap()->path().GetPathPoints();
    ASSERT_EQ(points.size(), 3u);
    EXPECT_NEAR(points[1].x(), 0, 1e-5);
    EXPECT_NEAR(points[1].y(), 1, 1e-5);

    const gfx::Pen startOnly = capsFor(1), endOnly = capsFor(2), neither = capsFor(3);
    EXPECT_TRUE(startOnly.GetCustomStartCap() && !startOnly.GetCustomEndCap());
    EXPECT_EQ(startOnly.GetEndCap(), gfx::LineCap::NoAnchor);
    EXPECT_TRUE(!endOnly.GetCustomStartCap() && endOnly.GetCustomEndCap());
    EXPECT_EQ(endOnly.GetStartCap(), gfx::LineCap::NoAnchor);
    EXPECT_TRUE(!neither.GetCustomStartCap() && !neither.GetCustomEndCap());
    EXPECT_EQ(neither.GetEndCap(), gfx::LineCap::NoAnchor);

    // "No Arrow" (16) and 255 leave the end without a head.
    line->m_startArrow = 16;
    line->m_endArrow = 255;
    const gfx::Pen none = capsFor(0);
    EXPECT_TRUE(!none.GetCustomStartCap() && !none.GetCustomEndCap());
    EXPECT_EQ(none.GetStartCap(), gfx::LineCap::NoAnchor);

    // A zero-width line would need an infinite scale: no heads, and drawing doesn't fail.
    line->m_lineWidth = 0;
    line->m_startArrow = 20;
    const gfx::Pen thin = capsFor(0);
    EXPECT_EQ(thin.GetCustomStartCap(), nullptr);
    line->m_shape = CDrawRect::ArrowLine;
    drawn(*line);
}

TEST(ShapeAppearance, ArrowInsetsAreAsymmetricBetweenTheEnds)
{
    auto line = sample();
    line->m_lineWidth = 4;
    struct Case {
        int start, end;
        float startInset, endInset;
    };
    // An Open start keeps 0 itself and lengthens the other end, unless that is a Stealth.
    const Case cases[] = {{242, 242, 1, 1}, {241, 241, 0, -1}, {241, 19, 0, -1},
                          {241, 242, 0, 1}, {242, 20, 1, 0},   {17, 18, 0, 0}};
    for (const Case& c : cases) {
        line->m_startArrow = c.start;
        line->m_endArrow = c.end;
        gfx::Pen pen(Red, 4);
        ShapeAppearance::ApplyArrowCaps(*line, pen, 0);
        ASSERT_TRUE(pen.GetCustomStartCap() && pen.GetCustomEndCap());
        EXPECT_FLOAT_EQ(pen.GetCustomStartCap()->GetBaseInset(), c.startInset) << c.start << "/" << c.end;
        EXPECT_FLOAT_EQ(pen.GetCustomEndCap()->GetBaseInset(), c.endInset) << c.start << "/" << c.end;
    }
    // An Open start that isn't selected doesn't reach the end.
    line->m_startArrow = 241;
    line->m_endArrow = 19;
    gfx::Pen pen(Red, 4);
    ShapeAppearance::ApplyArrowCaps(*line, pen, 2);
    ASSERT_NE(pen.GetCustomEndCap(), nullptr);
    EXPECT_FLOAT_EQ(pen.GetCustomEndCap()->GetBaseInset(), 0);
}

namespace {

// A placeable Windows metafile, 100 by 100 units at 1440 to the inch, holding one red rectangle.
QByteArray redMetafile()
{
    QByteArray bytes;
    auto words = [&bytes](std::initializer_list<int> values) {
        for (int v : values) {
            bytes.append(char(v & 0xFF));
            bytes.append(char((v >> 8) & 0xFF));
        }
    };
    words({0xCDD7, 0x9AC6, 0, 0, 0, 100, 100, 1440, 0, 0});
    int checksum = 0;
    for (int i = 0; i < 10; ++i)
        checksum ^= (uchar(bytes[2 * i]) | uchar(bytes[2 * i + 1]) << 8);
    words({checksum});
    words({1, 9, 0x0300, 9 + 31, 0, 1, 7, 0, 0});           // header: 40 words, 1 object
    words({5, 0, 0x020B, 0, 0, 5, 0, 0x020C, 100, 100});    // window origin and extent
    words({7, 0, 0x02FC, 0, 0x00FF, 0, 0, 4, 0, 0x012D, 0}); // red brush, selected
    words({7, 0, 0x041B, 100, 100, 0, 0, 3, 0, 0});         // rectangle, end
    return bytes;
}

} // namespace

TEST(ShapeAppearance, MetafilePictureMirrorsEverythingDrawnAfterIt)
{
    TestFolder folder;
    auto picture = sample(2);
    picture->m_position = CRect(-40, 40, 40, -40);
    picture->m_flags = 2;
    picture->m_pictureFile = folder.write("red.wmf", redMetafile());
    picture->m_appearance.LoadPicture(*picture);
    if (!picture->m_appearance.IsMetafile())
        GTEST_SKIP() << "metafiles can't be read here";

    ShapeCanvas canvas;
    const QTransform before = canvas.graphics().GetTransform().transform();
    picture->Draw(canvas.graphics(), 300, 300, nullptr);
    EXPECT_EQ(canvas.graphics().GetTransform().transform(), QTransform(1, 0, 0, -1, 0, 0) * before);

    // The next object lands mirrored about the x axis; the picture itself stays in place.
    auto above = sample();
    above->m_position = CRect(50, 90, 90, 60);
    above->m_flags = 2;
    above->Draw(canvas.graphics(), 300, 300, nullptr);
    const QImage pixels = canvas.image();
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(70, -75)), Qt::red));
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(70, 75)), Qt::white));
    EXPECT_TRUE(near(pixels.pixel(ShapeCanvas::device(0, 0)), Qt::red, 40));

    // Without the step (the poly family) nothing is mirrored.
    ShapeAppearance poly;
    ShapeCanvas other;
    poly.Prepare(*picture, other.graphics(), gfx::GraphicsPath(), false);
    EXPECT_EQ(other.graphics().GetTransform().transform(), before);
}
