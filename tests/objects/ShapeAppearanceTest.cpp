// What the appearance builds for a shape: brushes, pens, caps and picture caches. How the fills
// and lines look as a whole is held by the reference pictures (ShapeReferenceTest).
#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "platform/graphics/TextureBrush.h"

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

gfx::Pen capped(const CDrawObj& line, int selector)
{
    gfx::Pen pen(Red, line.m_lineWidth);
    ShapeAppearance::ApplyArrowCaps(line, pen, selector);
    return pen;
}

} // namespace

TEST(ShapeAppearance, TransparencySetsTheFillAlphaOfSolidAndHatchOnly)
{
    auto rect = sample();
    rect->m_fillColor2 = gfx::Color(128, 0, 0, 255);
    for (const auto& [transparency, alpha] : {std::pair{0, 255}, {1, 252}, {50, 127}, {100, 0}}) {
        rect->m_transparency = std::uint8_t(transparency);
        drawn(*rect);
        const ShapeAppearance& a = rect->m_appearance;
        EXPECT_EQ(a.SolidFill().GetColor(), gfx::Color(alpha, 255, 0, 0)) << transparency;
        EXPECT_EQ(a.HatchFill().GetForegroundColor(), gfx::Color(alpha, 255, 0, 0));
        EXPECT_EQ(a.HatchFill().GetBackgroundColor(), rect->m_fillColor2);
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
    // A hatch style beyond the 53 (a damaged project) fills nothing at all.
    for (const int style : {-1, 53, 200}) {
        rect->m_hatchStyle = style;
        EXPECT_EQ(countPixels(drawn(*rect), Qt::white), 200 * 200) << style;
    }
}

TEST(ShapeAppearance, GradientsAndPens)
{
    // Every linear style but Horizontal swaps the colours (the reference pictures show styles 0 to
    // 3, the dashes and the caps); 7 is a forward diagonal too.
    auto rect = sample(4);
    rect->m_gradientStyle = 7;
    drawn(*rect);
    const gfx::LinearGradientBrush& fill = rect->m_appearance.LinearGradientFill();
    EXPECT_EQ(fill.GetMode(), gfx::LinearGradientMode::ForwardDiagonal);
    EXPECT_EQ(fill.GetStartColor(), Green);
    rect->m_fillKind = 3;
    rect->m_gradientSwap = 1;
    drawn(*rect);
    EXPECT_EQ(rect->m_appearance.PathGradientFill().GetSurroundColor(), Red);
    EXPECT_FALSE(rect->m_appearance.PathGradientFill().GetGammaCorrection());

    // An outline gradient spans the rectangle grown by the line width.
    rect->m_lineWidth = 6;
    rect->m_lineKind = 4;
    rect->m_lineGradientMode = 1;
    drawn(*rect);
    const auto* brush = dynamic_cast<const gfx::LinearGradientBrush*>(rect->m_appearance.LinePen().GetBrush());
    ASSERT_NE(brush, nullptr);
    EXPECT_EQ(brush->GetRectangle(), QRectF(-51, -31, 102, 62));
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
    rect->m_hatchStyle = 34; // irregular
    auto interior = [&](int dx) {
        rect->m_position = CRect(-40 + dx, 40, 40 + dx, -40);
        return drawn(*rect).copy(QRect(ShapeCanvas::device(-38 + dx, 38), QSize(76, 76)));
    };
    EXPECT_EQ(interior(0), interior(3));
    EXPECT_EQ(interior(0), interior(-5));
}

TEST(ShapeAppearance, PictureCacheIgnoresANewNameOnceLoadedAndTheTextureMovesOn)
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
    EXPECT_EQ(rect->m_appearance.Picture()->image().pixel(0, 9), qRgb(255, 0, 0)); // upside down for y-up
    rect->m_pictureFile = second;
    drawn(*rect);
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

    // An unscaled texture's translation adds up from draw to draw; another kind leaves it alone.
    auto tile = sample(2);
    tile->m_pictureFile = folder.path() + "/tile.png";
    twoBandPicture(8, 8).save(tile->m_pictureFile);
    tile->m_position = CRect(10, 70, 110, 20);
    tile->m_wrapMode = 1;
    tile->m_pictureScale = 0;
    for (int i = 0; i < 3; ++i)
        drawn(*tile);
    const QTransform moved = QTransform::fromTranslate(30, 60);
    EXPECT_EQ(tile->m_appearance.Texture()->GetTransform().transform(), moved);
    EXPECT_EQ(tile->m_appearance.Texture()->GetWrapMode(), gfx::WrapMode::TileFlipX);
    tile->m_fillKind = 0;
    tile->m_wrapMode = 3;
    tile->m_pictureScale = 1;
    drawn(*tile);
    EXPECT_EQ(tile->m_appearance.Texture()->GetTransform().transform(), moved);
    EXPECT_EQ(tile->m_appearance.Texture()->GetWrapMode(), gfx::WrapMode::TileFlipX);
}

TEST(ShapeAppearance, PicturesDrawCentredAtPixelSizeOrStretched)
{
    TestFolder folder;
    auto rect = sample(2);
    rect->m_flags = 2;
    rect->m_pictureFile = folder.path() + "/bands.png";
    twoBandPicture(20, 10).save(rect->m_pictureFile);
    const QColor red(255, 0, 0), blue(0, 0, 255);
    rect->m_pictureScale = 0; // Center: pixel size in the middle, upright
    QImage image = drawn(*rect);
    EXPECT_EQ(countPixels(image, red, 8) + countPixels(image, blue, 8), 200);
    EXPECT_TRUE(near(image.pixel(ShapeCanvas::device(0, 3)), red) && near(image.pixel(ShapeCanvas::device(0, -3)), blue));
    rect->m_pictureScale = 2; // Stretch fills the rectangle, upright
    image = drawn(*rect);
    EXPECT_TRUE(near(image.pixel(ShapeCanvas::device(-48, 28)), red));
    EXPECT_TRUE(near(image.pixel(ShapeCanvas::device(48, -28)), blue));
    EXPECT_NEAR(200 * 200 - countPixels(image, Qt::white, 8), 100 * 60, 250);
}

TEST(ShapeAppearance, ArrowCapsGoOnTheirOwnEndsWithTheirInsets)
{
    auto line = sample();
    line->m_lineWidth = 2;
    line->m_startArrow = 20;
    line->m_endArrow = 241;
    line->m_startArrowSize = 3;
    line->m_endArrowSize = 5;
    // The heads' size, fill and direction are held by the reference pictures. Selector 0 puts
    // both heads on, 1 the start head only, 2 the end one, 3 neither; the other end is bare.
    const gfx::Pen both = capped(*line, 0);
    EXPECT_TRUE(both.GetCustomStartCap() && both.GetCustomEndCap());
    for (int selector : {1, 2, 3}) {
        const gfx::Pen pen = capped(*line, selector);
        EXPECT_EQ(pen.GetCustomStartCap() != nullptr, selector == 1) << selector;
        EXPECT_EQ(pen.GetCustomEndCap() != nullptr, selector == 2) << selector;
        EXPECT_EQ(selector == 1 ? pen.GetEndCap() : pen.GetStartCap(), gfx::LineCap::NoAnchor) << selector;
    }
    // "No Arrow" (16) and 255 leave the end without a head; so does a zero-width line, which
    // would need an infinite scale, and drawing it doesn't fail.
    std::tie(line->m_startArrow, line->m_endArrow) = std::pair(16, 255);
    EXPECT_TRUE(!capped(*line, 0).GetCustomStartCap() && !capped(*line, 0).GetCustomEndCap());
    line->m_lineWidth = 0;
    line->m_startArrow = 20;
    EXPECT_EQ(capped(*line, 0).GetCustomStartCap(), nullptr);
    line->m_shape = CDrawRect::ArrowLine;
    drawn(*line);

    // An Open start keeps inset 0 itself and lengthens the other end, unless that is a Stealth;
    // an Open start that isn't drawn (selector 2) doesn't.
    line->m_lineWidth = 4;
    const struct {
        int start, end, selector;
        float startInset, endInset;
    } cases[] = {{242, 242, 0, 1, 1}, {241, 241, 0, 0, -1}, {241, 19, 0, 0, -1}, {241, 242, 0, 0, 1},
                 {242, 20, 0, 1, 0},  {17, 18, 0, 0, 0},    {241, 19, 2, 0, 0}};
    for (const auto& c : cases) {
        std::tie(line->m_startArrow, line->m_endArrow) = std::pair(c.start, c.end);
        const gfx::Pen pen = capped(*line, c.selector);
        ASSERT_NE(pen.GetCustomEndCap(), nullptr);
        if (c.selector == 0) {
            EXPECT_FLOAT_EQ(pen.GetCustomStartCap()->GetBaseInset(), c.startInset) << c.start << "/" << c.end;
        }
        EXPECT_FLOAT_EQ(pen.GetCustomEndCap()->GetBaseInset(), c.endInset) << c.start << "/" << c.end;
    }
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
