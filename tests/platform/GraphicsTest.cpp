#include "GraphicsTestSupport.h"

#include "TestSupport.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/HatchBrush.h"
#include "platform/graphics/SolidBrush.h"

using namespace gfx;

namespace {

const Color Black(255, 0, 0, 0);
const Color Red(255, 255, 0, 0);
const QColor White(Qt::white);

} // namespace

TEST(Matrix, RotationTurnsXTowardYAndSingularMatricesStay)
{
    Matrix m;
    m.Rotate(90);
    EXPECT_LT(QLineF(m.Map(QPointF(1, 0)), QPointF(0, 1)).length(), 1e-9);
    Matrix singular(1, 2, 2, 4, 5, 6);
    EXPECT_FALSE(singular.Invert());
    EXPECT_EQ(singular, Matrix(1, 2, 2, 4, 5, 6));
    Matrix invertible(2, 0, 0, 4, 6, 8);
    ASSERT_TRUE(invertible.Invert());
    EXPECT_EQ(invertible.Map(QPointF(8, 12)), QPointF(1, 1));
}

TEST(GraphicsTransform, WorldTransformsPrependByDefault)
{
    Bitmap canvas = drawOn(40, 40, [](Graphics& g) {
        g.TranslateTransform(20, 20);
        g.ScaleTransform(2, 2); // acts first: a unit is 2 pixels, then moved to (20, 20)
        g.FillRectangle(SolidBrush(Black), QRectF(0, 0, 5, 5));
        g.ResetTransform();
        g.ScaleTransform(2, 2);
        g.TranslateTransform(1, 1, MatrixOrder::Append); // scaled, then moved one pixel
        g.FillRectangle(SolidBrush(Red), QRectF(0, 0, 3, 3));
    });
    EXPECT_EQ(paintedRect(canvas, Qt::black), QRect(20, 20, 10, 10));
    EXPECT_EQ(paintedRect(canvas, Qt::red), QRect(1, 1, 6, 6));

}

TEST(GraphicsTransform, DeviceMappingActsLastAndThePainterIsGivenBackAsItWas)
{
    QImage image(100, 100, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::white);
    QPainter painter(&image);
    painter.setClipRect(QRect(0, 0, 65, 100));
    DeviceContext dc(painter, 96, 96, false);
    // Logical units of half a pixel, y up, logical (0, 0) at device (50, 50).
    dc.SetWindowExt(200, -200);
    dc.SetViewportExt(100, 100);
    dc.SetViewportOrg(50, 50);
    const QTransform before = painter.worldTransform();
    {
        Graphics g(dc);
        EXPECT_TRUE(g.GetClip().IsInfinite());
        g.TranslateTransform(20, 0); // in logical units: 10 device pixels right
        g.SetSmoothingMode(SmoothingMode::AntiAlias);
        g.FillRectangle(SolidBrush(Black), QRectF(0, 0, 20, 40)); // up from the origin
        QPointF p(0, 0);
        g.TransformPoints(CoordinateSpace::Device, CoordinateSpace::World, &p, 1);
        EXPECT_EQ(p, QPointF(60, 50));
        g.TransformPoints(CoordinateSpace::World, CoordinateSpace::Device, &p, 1);
        EXPECT_EQ(p, QPointF(0, 0));
        g.SetClip(QRectF(0, 0, 20, 20)); // device (60, 40) to (70, 50), within the painter's clip
        g.FillRectangle(SolidBrush(Red), QRectF(-100, -100, 200, 200));
    }
    EXPECT_EQ(painter.worldTransform(), before);
    EXPECT_FALSE(painter.testRenderHint(QPainter::Antialiasing));
    EXPECT_EQ(painter.clipBoundingRect(), QRectF(0, 0, 65, 100));
    painter.end();
    EXPECT_EQ(paintedRect(Bitmap(image), Qt::black), QRect(60, 30, 5, 10));
    EXPECT_EQ(paintedRect(Bitmap(image), Qt::red), QRect(60, 40, 5, 10));
}

TEST(DeviceContext, MappingRoundsHalvesAwayFromZeroBothWays)
{
    QImage image(1, 1, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    DeviceContext dc(painter, 96, 120, false);
    EXPECT_EQ(dc.GetDeviceCaps(LOGPIXELSY), 120);

    // The screen's mapping: window extent (Lcx, -Lcy), origin at the middle of the label.
    dc.SetWindowExt(4, -4);
    dc.SetWindowOrg(-2, 2);
    dc.SetViewportExt(10, 10);
    dc.SetViewportOrg(-3, 0);
    EXPECT_EQ(dc.Mapping().map(QPointF(1, 1)), QPointF(4.5, 2.5));
    // Logical to device is (x + 2) * 2.5 - 3, (y - 2) * -2.5; device to logical undoes it.
    const std::pair<CPoint, CPoint> toDevice[] = {
        {{0, 0}, {2, 5}}, {{1, 1}, {5, 3}}, {{-1, 3}, {-1, -3}}, {{3, 0}, {10, 5}}};
    for (const auto& [logical, device] : toDevice)
        EXPECT_EQ(dc.LPtoDP(logical), device);
    const std::pair<CPoint, CPoint> toLogical[] = {{{2, 5}, {0, 0}}, {{-4, 0}, {-2, 2}}, {{0, 1}, {-1, 2}}};
    for (const auto& [device, logical] : toLogical)
        EXPECT_EQ(dc.DPtoLP(device), logical);

    dc.OffsetWindowOrg(2, 0);
    EXPECT_EQ(dc.GetWindowOrg(), CPoint(0, 2));
    EXPECT_EQ(dc.LPtoDP(CPoint(0, 0)), CPoint(-3, 5));
}

TEST(GraphicsClip, IntersectRestoreAndStayOnTheDevice)
{
    Bitmap canvas = makeCanvas(40, 40);
    Graphics g(canvas);
    g.SetClip(QRectF(0, 0, 20, 20));
    const GraphicsState outer = g.Save();
    g.SetClip(QRectF(10, 10, 20, 20), CombineMode::Intersect);
    g.FillRectangle(SolidBrush(Black), QRectF(0, 0, 40, 40));
    EXPECT_EQ(paintedRect(canvas, Qt::black), QRect(10, 10, 10, 10));
    g.Restore(outer);
    g.FillRectangle(SolidBrush(Red), QRectF(0, 0, 40, 40));
    EXPECT_EQ(paintedRect(canvas, Qt::red), QRect(0, 0, 20, 20));
    g.ResetClip();
    EXPECT_TRUE(g.GetClip().IsInfinite());

    // The clip is kept on the device and reported in world coordinates: moving the world
    // afterwards does not move it, and a clip taken back and set again is the same clip.
    g.SetTransform(Matrix(1, 0, 0, -1, 0, 40)); // y up
    g.SetClip(QRectF(0, 0, 10, 10)); // device rows 30..39
    g.TranslateTransform(5, 0);
    const Region saved = g.GetClip();
    EXPECT_EQ(saved.GetBounds(), QRectF(-5, 0, 10, 10));
    g.ResetClip();
    g.SetClip(saved);
    g.FillRectangle(SolidBrush(Black), QRectF(-20, -20, 80, 80));
    EXPECT_EQ(paintedRect(canvas, Qt::black), QRect(0, 30, 10, 10));

    g.SetClip(QRectF(0, 0, 5, 5));
    g.SetClip(QRectF(20, 20, 5, 5), CombineMode::Intersect); // nothing is left
    EXPECT_TRUE(g.GetClip().IsEmpty());
    g.FillRectangle(SolidBrush(Red), QRectF(0, 0, 40, 40));
    EXPECT_EQ(paintedRect(canvas, Qt::red), QRect(0, 0, 20, 20));
}

TEST(GraphicsState, RestorePopsTheTokenAndEverySaveAfterIt)
{
    Bitmap canvas = makeCanvas(10, 10);
    Graphics g(canvas);
    const GraphicsState first = g.Save();
    g.TranslateTransform(1, 0);
    g.SetRenderingOrigin(3, 4);
    const GraphicsState second = g.Save();
    g.SetSmoothingMode(SmoothingMode::AntiAlias);
    g.SetClip(QRectF(0, 0, 2, 2));
    g.Save();
    g.Restore(first);
    EXPECT_FALSE(g.painter().hasClipping());
    EXPECT_TRUE(g.GetTransform().IsIdentity());
    EXPECT_EQ(g.GetRenderingOrigin(), QPoint(0, 0));
    EXPECT_FALSE(g.painter().testRenderHint(QPainter::Antialiasing));
    // The later token went with it.
    g.TranslateTransform(7, 0);
    g.Restore(second);
    EXPECT_EQ(g.GetTransform(), Matrix(1, 0, 0, 1, 7, 0));

    // A Graphics that goes with states still saved gives a device's painter back as it came.
    QImage image(10, 10, QImage::Format_ARGB32_Premultiplied);
    QPainter painter(&image);
    painter.translate(2, 0);
    {
        DeviceContext dc(painter, 96, 96, false);
        Graphics onDevice(dc);
        onDevice.Save();
        onDevice.SetClip(QRectF(0, 0, 1, 1));
        onDevice.Save();
    }
    EXPECT_FALSE(painter.hasClipping());
    EXPECT_EQ(painter.worldTransform(), QTransform::fromTranslate(2, 0));
}

TEST(GraphicsFill, ClearReplacesAlphaAndFillsCoverWhatTheyShould)
{
    Bitmap canvas(10, 10);
    Graphics g(canvas);
    g.Clear(Color(128, 255, 0, 0));
    EXPECT_EQ(countPixels(canvas.image(), QColor(255, 0, 0, 128), 1), 100);
    g.Clear(Color(0, 0, 0, 0));
    EXPECT_EQ(countPixels(canvas.image(), QColor(0, 0, 0, 0)), 100);
    g.FillEllipse(SolidBrush(Black), QRectF(0, 0, 10, 10));
    expectPixels(canvas, {{5, 5, Qt::black}, {0, 0, QColor(0, 0, 0, 0)}});
    g.FillRegion(SolidBrush(Red), Region()); // the infinite region
    EXPECT_EQ(countPixels(canvas.image(), Qt::red), 100);
}

TEST(GraphicsPen, ThinPensFlatEndsMiteredCornersAndDashesInPenWidths)
{
    // At a third of a pixel per unit, a pen one unit wide would be a faint grey in plain Qt.
    const Bitmap thin = drawOn(30, 30, [](Graphics& g) {
        g.SetSmoothingMode(SmoothingMode::AntiAlias);
        g.ScaleTransform(1.0f / 3, 1.0f / 3);
        g.DrawLine(Pen(Black, 1), QPointF(0, 31.5), QPointF(90, 31.5)); // device y 10.5
        g.ResetTransform();
        g.DrawLine(Pen(Black, 0), QPointF(0, 20.5), QPointF(30, 20.5)); // width 0 draws as 1
    });
    expectPixels(thin, {{15, 10, Qt::black}, {15, 12, White}, {15, 20, Qt::black}});

    Pen dashed(Black, 2);
    dashed.SetDashStyle(DashStyle::Dash); // 3 widths on, 1 off: 6 px on, 2 px off
    const Bitmap flat = drawOn(40, 20, [](Graphics& g) { g.DrawLine(Pen(Black, 6), {10, 10}, {30, 10}); });
    EXPECT_EQ(paintedRect(flat, Qt::black), QRect(10, 7, 20, 6)); // no square caps
    const Bitmap dashes = drawOn(16, 4, [&](Graphics& g) { g.DrawLine(dashed, QPointF(0, 2), QPointF(16, 2)); });
    EXPECT_EQ(rowsOf(dashes.image())[2], "######..######..");

    // The outer corners of a rectangle are sharp, not bevelled.
    const Bitmap box = drawOn(40, 40, [](Graphics& g) { g.DrawRectangle(Pen(Black, 4), QRectF(10, 10, 20, 20)); });
    EXPECT_EQ(paintedRect(box, Qt::black), QRect(8, 8, 24, 24));
    expectPixels(box, {{8, 8, Qt::black}, {31, 31, Qt::black}, {20, 20, White}});

    // A copy of a pen with a brush has a brush of its own.
    const Pen hatched(HatchBrush(27, Black, Color(255, 255, 255, 255)), 8);
    EXPECT_NE(Pen(hatched).GetBrush(), hatched.GetBrush());
}

TEST(GraphicsImage, DrawImageStretchesTheSourceRectangle)
{
    const Image image(imageOf({"RBBB", "BBBB"}));
    const Bitmap canvas = drawOn(20, 20, [&](Graphics& g) {
        g.SetInterpolationMode(InterpolationMode::NearestNeighbor);
        g.DrawImage(image, QRectF(0, 0, 8, 4));
        g.DrawImage(image, QRectF(10, 10, 5, 5), QRectF(0, 0, 1, 1)); // just the red pixel, blown up
        g.SetTransform(Matrix(1, 0, 0, -1, 0, 20));
        g.DrawImage(image, QPointF(16, 0)); // one pixel per unit; y up: the first row is the lower one
    });
    EXPECT_EQ(paintedRect(canvas, Qt::red), QRect(0, 0, 17, 20));
    EXPECT_EQ(countPixels(canvas.image(), Qt::red), 4 + 25 + 1);
    EXPECT_EQ(countPixels(canvas.image(), Qt::blue), 28 + 7);
    expectPixels(canvas, {{16, 19, Qt::red}, {16, 18, Qt::blue}, {16, 17, White}});
}

TEST(GraphicsImage, StrongReductionsAreAveragedAndAttributesAdjustTheDrawnCopyOnly)
{
    // Fine stripes one pixel wide, shrunk eightfold: a plain bilinear sample would give black or
    // white depending on the phase, an average gives grey.
    const QImage stripes = imageOf({QStringLiteral("#.").repeated(128)}).scaled(256, 256);
    const Bitmap canvas = drawOn(32, 32, [&](Graphics& g) {
        g.SetInterpolationMode(InterpolationMode::HighQualityBicubic);
        g.DrawImage(Image(stripes), QRectF(0, 0, 32, 32));
    });
    EXPECT_EQ(countPixels(canvas.image(), QColor(128, 128, 128), 8), 32 * 32);

    const Image image(imageOf({"RB"}));
    ImageAttributes attributes;
    attributes.SetColorMatrix(greyMatrix());
    const Bitmap small = drawOn(2, 1, [&](Graphics& g) {
        g.DrawImage(image, QRectF(0, 0, 1, 1), QRectF(0, 0, 1, 1), &attributes);
    });
    expectPixels(small, {{0, 0, QColor(79, 79, 79)}, {1, 0, White}}); // 255 * 0.3086
    EXPECT_EQ(image.image().pixel(0, 0), qRgb(255, 0, 0));
}
