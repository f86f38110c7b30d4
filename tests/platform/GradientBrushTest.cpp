#include "GraphicsTestSupport.h"

#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"

using namespace gfx;

namespace {

const Color Red(255, 255, 0, 0), Blue(255, 0, 0, 255), White(255, 255, 255, 255), Black(255, 0, 0, 0);

QColor mix(Color a, Color b, double t)
{
    const auto lerp = [t](int x, int y) { return int(std::lround(x + (y - x) * t)); };
    return QColor(lerp(a.GetR(), b.GetR()), lerp(a.GetG(), b.GetG()), lerp(a.GetB(), b.GetB()),
                  lerp(a.GetA(), b.GetA()));
}

Bitmap fillLinear(int w, int h, const QRectF& rect, LinearGradientMode mode, Color c1 = Red, Color c2 = Blue)
{
    Bitmap canvas = makeCanvas(w, h);
    Graphics(canvas).FillRectangle(LinearGradientBrush(rect, c1, c2, mode), QRectF(0, 0, w, h));
    return canvas;
}

// Fills the whole canvas (on green) through a path gradient of the path with one surround colour.
Bitmap fillPathGradient(const GraphicsPath& path, Color centre, Color surround, int w, int h, float scale = 1)
{
    PathGradientBrush brush(path);
    brush.SetCenterColor(centre);
    int count = 1;
    EXPECT_EQ(brush.SetSurroundColors(&surround, &count), Status::Ok);
    Bitmap canvas = makeCanvas(w, h, Qt::green);
    Graphics g(canvas);
    g.ScaleTransform(scale, scale);
    g.FillRectangle(brush, QRectF(0, 0, w / scale, h / scale));
    return canvas;
}

} // namespace

TEST(LinearGradientBrush, EachModeRunsFromItsStartToItsEnd)
{
    // Diagonals on a flat rectangle put the mean colour on the other two corners, which a
    // gradient running corner to corner would not.
    const struct {
        LinearGradientMode mode;
        int w, h;
        QPoint start, end, mean1, mean2;
        int tolerance;
    } cases[] = {
        {LinearGradientMode::Horizontal, 100, 20, {0, 10}, {99, 10}, {50, 0}, {50, 19}, 3},
        {LinearGradientMode::Vertical, 20, 100, {10, 0}, {10, 99}, {0, 50}, {19, 50}, 3},
        {LinearGradientMode::ForwardDiagonal, 120, 40, {0, 0}, {119, 39}, {119, 0}, {0, 39}, 6},
        {LinearGradientMode::BackwardDiagonal, 120, 40, {119, 0}, {0, 39}, {0, 0}, {119, 39}, 6},
    };
    for (const auto& c : cases) {
        SCOPED_TRACE(int(c.mode));
        const Bitmap b = fillLinear(c.w, c.h, QRectF(0, 0, c.w, c.h), c.mode);
        EXPECT_TRUE(near(pixelAt(b, c.start.x(), c.start.y()), Red.toQColor(), c.tolerance));
        EXPECT_TRUE(near(pixelAt(b, c.end.x(), c.end.y()), Blue.toQColor(), c.tolerance));
        EXPECT_TRUE(near(pixelAt(b, c.mean1.x(), c.mean1.y()), mix(Red, Blue, 0.5), 6));
        EXPECT_TRUE(near(pixelAt(b, c.mean2.x(), c.mean2.y()), mix(Red, Blue, 0.5), 6));
    }

    // Under a y-up world transform the start colour lands at the bottom of the device.
    Bitmap canvas = makeCanvas(20, 100);
    Graphics g(canvas);
    g.SetTransform(Matrix(1, 0, 0, -1, 0, 100));
    g.FillRectangle(LinearGradientBrush(QRectF(0, 0, 20, 100), Red, Blue, LinearGradientMode::Vertical),
                    QRectF(0, 0, 20, 100));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 99), Red.toQColor()));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 0), Blue.toQColor()));
}

TEST(LinearGradientBrush, RampRepeatsOutsideTheRectangleUnlessItIsEmpty)
{
    const Bitmap canvas = fillLinear(200, 10, QRectF(50, 0, 50, 10), LinearGradientMode::Horizontal);
    // Right after the end the start colour comes back; before the start the end colour shows.
    EXPECT_TRUE(near(pixelAt(canvas, 100, 5), Red.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 149, 5), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 49, 5), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 5), pixelAt(canvas, 110, 5), 1));

    const Bitmap empty = fillLinear(10, 10, QRectF(2, 2, 0, 5), LinearGradientMode::Horizontal);
    EXPECT_EQ(pixelAt(empty, 5, 5), QColor(Qt::white));
}

TEST(LinearGradientBrush, BlendsPlainComponentsAndOptionallyInLinearLight)
{
    // A fade to transparent blue: halfway it is half-transparent purple, not half-transparent red.
    Bitmap canvas(100, 4);
    Graphics(canvas).FillRectangle(
        LinearGradientBrush(QRectF(0, 0, 100, 4), Red, Color(0, 0, 0, 255), LinearGradientMode::Horizontal),
        QRectF(0, 0, 100, 4));
    EXPECT_TRUE(near(QColor::fromRgba(qUnpremultiply(canvas.image().pixel(50, 2))), QColor(127, 0, 128, 127), 4));

    const auto midGrey = [](bool gamma) {
        Bitmap grey = makeCanvas(100, 4);
        LinearGradientBrush brush(QRectF(0, 0, 100, 4), Black, White, LinearGradientMode::Horizontal);
        brush.SetGammaCorrection(gamma);
        Graphics(grey).FillRectangle(brush, QRectF(0, 0, 100, 4));
        return pixelAt(grey, 50, 2).red();
    };
    EXPECT_NEAR(midGrey(false), 129, 2);
    EXPECT_NEAR(midGrey(true), 188, 3); // linear light 0.5 is sRGB 0.735
}

TEST(PathGradientBrush, PolygonCentreIsTheVertexMeanAndColourRunsAlongRays)
{
    const QPointF points[] = {{0, 0}, {160, 0}, {160, 200}, {80, 150}, {0, 200}};
    GraphicsPath path;
    path.AddPolygon(points, 5);
    EXPECT_EQ(PathGradientBrush(path).GetCenterPoint(), QPointF(80, 110)); // not the area centroid (80, 88.1)

    const Bitmap canvas = fillPathGradient(path, White, Black, 160, 200);
    const QColor half = mix(White, Black, 0.5);
    EXPECT_TRUE(near(pixelAt(canvas, 80, 110), White.toQColor(), 4));
    EXPECT_TRUE(near(pixelAt(canvas, 80, 55), half, 4));  // halfway to the top edge
    EXPECT_TRUE(near(pixelAt(canvas, 120, 110), half, 4)); // halfway to the right edge
    EXPECT_TRUE(near(pixelAt(canvas, 80, 130), half, 8));  // halfway toward the notch vertex (80, 150)
    EXPECT_TRUE(near(pixelAt(canvas, 0, 100), Black.toQColor(), 6));
    EXPECT_EQ(pixelAt(canvas, 80, 190), QColor(Qt::green)); // the notch is outside the path

    // Nothing is painted outside the brush's own path.
    const QPointF triangle[] = {{10, 10}, {90, 10}, {50, 90}};
    GraphicsPath small;
    small.AddPolygon(triangle, 3);
    const Bitmap clipped = fillPathGradient(small, Red, Blue, 100, 100);
    EXPECT_EQ(pixelAt(clipped, 5, 50), QColor(Qt::green));
    EXPECT_EQ(pixelAt(clipped, 50, 95), QColor(Qt::green));
    EXPECT_TRUE(near(pixelAt(clipped, 50, 37), Red.toQColor(), 12)); // the centre (50, 36.7)
}

TEST(PathGradientBrush, EllipseCentreLeansTowardItsStartPoint)
{
    GraphicsPath path;
    path.AddEllipse(QRectF(0, 0, 140, 70));
    PathGradientBrush brush(path);
    // 13 stored points with the 0-degree point twice: the mean moves a/13 toward +x.
    const double cx = 70 + 70.0 / 13;
    EXPECT_NEAR(brush.GetCenterPoint().x(), cx, 1e-3);
    EXPECT_NEAR(brush.GetCenterPoint().y(), 35, 1e-3);
    brush.SetCenterColor(Red);
    int count = 3;
    const Color surround[3] = {Blue, White, White}; // only the first counts
    brush.SetSurroundColors(surround, &count);

    Bitmap canvas = makeCanvas(140, 70, Qt::green);
    Graphics(canvas).FillRectangle(brush, QRectF(0, 0, 140, 70));
    EXPECT_TRUE(near(pixelAt(canvas, int(cx), 35), Red.toQColor(), 6));
    // Halfway along the rays to the left and right ends of the axis.
    EXPECT_TRUE(near(pixelAt(canvas, int(cx / 2), 35), mix(Red, Blue, 0.5), 6));
    EXPECT_TRUE(near(pixelAt(canvas, int((cx + 140) / 2), 35), mix(Red, Blue, 0.5), 6));
    EXPECT_EQ(pixelAt(canvas, 2, 2), QColor(Qt::green)); // a corner outside the ellipse
}

TEST(PathGradientBrush, FollowsTheWorldTransformAndLeavesHolesOfARing)
{
    GraphicsPath ring;
    ring.AddEllipse(QRectF(0, 0, 100, 100));
    ring.AddEllipse(QRectF(30, 30, 40, 40));
    const Bitmap canvas = fillPathGradient(ring, White, Black, 200, 200, 2);
    EXPECT_EQ(pixelAt(canvas, 100, 100), QColor(Qt::green)); // the hole
    EXPECT_TRUE(near(pixelAt(canvas, 100, 4), Black.toQColor(), 12)); // near the outer edge
    // In the ring, between the hole and the outer edge, the colour lies between the two.
    const QColor inRing = pixelAt(canvas, 100, 40);
    EXPECT_GT(inRing.red(), 10);
    EXPECT_LT(inRing.red(), 245);
}
