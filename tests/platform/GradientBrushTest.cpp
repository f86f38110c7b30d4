#include "GraphicsTestSupport.h"

#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"

#include <gtest/gtest.h>

using namespace gfx;

namespace {

const Color Red(255, 255, 0, 0), Blue(255, 0, 0, 255), White(255, 255, 255, 255), Black(255, 0, 0, 0);

// Whether the pixel is within tolerance of the colour, alpha included.
::testing::AssertionResult near(QColor actual, QColor expected, int tolerance = 3)
{
    const auto close = [tolerance](int a, int b) { return std::abs(a - b) <= tolerance; };
    if (close(actual.red(), expected.red()) && close(actual.green(), expected.green())
        && close(actual.blue(), expected.blue()) && close(actual.alpha(), expected.alpha()))
        return ::testing::AssertionSuccess();
    return ::testing::AssertionFailure() << "got " << qPrintable(actual.name(QColor::HexArgb)) << ", expected "
                                         << qPrintable(expected.name(QColor::HexArgb));
}

QColor mix(Color a, Color b, double t)
{
    return QColor(int(std::lround(a.GetR() + (b.GetR() - a.GetR()) * t)),
                  int(std::lround(a.GetG() + (b.GetG() - a.GetG()) * t)),
                  int(std::lround(a.GetB() + (b.GetB() - a.GetB()) * t)),
                  int(std::lround(a.GetA() + (b.GetA() - a.GetA()) * t)));
}

Bitmap fillLinear(int w, int h, const QRectF& rect, Color c1, Color c2, LinearGradientMode mode)
{
    Bitmap canvas = makeCanvas(w, h);
    Graphics g(canvas);
    g.FillRectangle(LinearGradientBrush(rect, c1, c2, mode), QRectF(0, 0, w, h));
    return canvas;
}

} // namespace

TEST(LinearGradientBrush, HorizontalAndVerticalRunFromStartEdgeToEndEdge)
{
    const Bitmap h = fillLinear(100, 20, QRectF(0, 0, 100, 20), Red, Blue, LinearGradientMode::Horizontal);
    EXPECT_TRUE(near(pixelAt(h, 0, 10), Red.toQColor()));
    EXPECT_TRUE(near(pixelAt(h, 99, 10), Blue.toQColor()));
    EXPECT_TRUE(near(pixelAt(h, 50, 3), mix(Red, Blue, 0.505)));
    EXPECT_EQ(pixelAt(h, 50, 0), pixelAt(h, 50, 19)); // constant along the boundaries

    const Bitmap v = fillLinear(20, 100, QRectF(0, 0, 20, 100), Red, Blue, LinearGradientMode::Vertical);
    EXPECT_TRUE(near(pixelAt(v, 10, 0), Red.toQColor()));
    EXPECT_TRUE(near(pixelAt(v, 10, 99), Blue.toQColor()));
    EXPECT_EQ(pixelAt(v, 0, 50), pixelAt(v, 19, 50));
}

TEST(LinearGradientBrush, DiagonalsPutTheMeanColourOnTheOtherTwoCorners)
{
    // A flat rectangle, so that a gradient running corner to corner would fail the mean check.
    const QColor mean = mix(Red, Blue, 0.5);
    const Bitmap f = fillLinear(120, 40, QRectF(0, 0, 120, 40), Red, Blue, LinearGradientMode::ForwardDiagonal);
    EXPECT_TRUE(near(pixelAt(f, 0, 0), Red.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(f, 119, 39), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(f, 119, 0), mean, 6));
    EXPECT_TRUE(near(pixelAt(f, 0, 39), mean, 6));

    const Bitmap b = fillLinear(120, 40, QRectF(0, 0, 120, 40), Red, Blue, LinearGradientMode::BackwardDiagonal);
    EXPECT_TRUE(near(pixelAt(b, 119, 0), Red.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(b, 0, 39), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(b, 0, 0), mean, 6));
    EXPECT_TRUE(near(pixelAt(b, 119, 39), mean, 6));
}

TEST(LinearGradientBrush, RampRepeatsOutsideTheRectangle)
{
    const Bitmap canvas = fillLinear(200, 10, QRectF(50, 0, 50, 10), Red, Blue, LinearGradientMode::Horizontal);
    // Right after the end the start colour comes back; before the start the end colour shows.
    EXPECT_TRUE(near(pixelAt(canvas, 100, 5), Red.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 149, 5), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 49, 5), Blue.toQColor(), 6));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 5), pixelAt(canvas, 110, 5), 1));
}

TEST(LinearGradientBrush, UpperMeansSmallerWorldY)
{
    // Under a y-up world transform the start colour lands at the bottom of the device.
    Bitmap canvas = makeCanvas(20, 100);
    Graphics g(canvas);
    g.SetTransform(Matrix(1, 0, 0, -1, 0, 100));
    g.FillRectangle(LinearGradientBrush(QRectF(0, 0, 20, 100), Red, Blue, LinearGradientMode::Vertical),
                    QRectF(0, 0, 20, 100));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 99), Red.toQColor()));
    EXPECT_TRUE(near(pixelAt(canvas, 10, 0), Blue.toQColor()));
}

TEST(LinearGradientBrush, BlendsPlainComponentsAndOptionallyInLinearLight)
{
    // A fade to transparent blue: halfway it is half-transparent purple, not half-transparent red.
    Bitmap canvas(100, 4);
    {
        Graphics g(canvas);
        g.FillRectangle(LinearGradientBrush(QRectF(0, 0, 100, 4), Red, Color(0, 0, 0, 255),
                                            LinearGradientMode::Horizontal),
                        QRectF(0, 0, 100, 4));
    }
    EXPECT_TRUE(near(QColor::fromRgba(qUnpremultiply(canvas.image().pixel(50, 2))), QColor(127, 0, 128, 127), 4));

    const auto midGrey = [](bool gamma) {
        Bitmap grey = makeCanvas(100, 4);
        Graphics g(grey);
        LinearGradientBrush brush(QRectF(0, 0, 100, 4), Black, White, LinearGradientMode::Horizontal);
        brush.SetGammaCorrection(gamma);
        EXPECT_EQ(brush.GetGammaCorrection(), gamma);
        g.FillRectangle(brush, QRectF(0, 0, 100, 4));
        return pixelAt(grey, 50, 2).red();
    };
    EXPECT_NEAR(midGrey(false), 129, 2);
    EXPECT_NEAR(midGrey(true), 188, 3); // linear light 0.5 is sRGB 0.735
}

TEST(LinearGradientBrush, EmptyRectanglePaintsNothing)
{
    const Bitmap canvas = fillLinear(10, 10, QRectF(2, 2, 0, 5), Red, Blue, LinearGradientMode::Horizontal);
    EXPECT_EQ(pixelAt(canvas, 5, 5), QColor(Qt::white));
}

TEST(PathGradientBrush, PolygonCentreIsTheVertexMeanAndColourRunsAlongRays)
{
    const QPointF points[] = {{0, 0}, {160, 0}, {160, 200}, {80, 150}, {0, 200}};
    GraphicsPath path;
    path.AddPolygon(points, 5);
    PathGradientBrush brush(path);
    EXPECT_EQ(brush.GetCenterPoint(), QPointF(80, 110)); // not the area centroid (80, 88.1)
    brush.SetCenterColor(White);
    int count = 1;
    EXPECT_EQ(brush.SetSurroundColors(&Black, &count), Status::Ok);

    Bitmap canvas = makeCanvas(160, 200, Qt::green);
    {
        Graphics g(canvas);
        g.FillPath(brush, path);
    }
    EXPECT_TRUE(near(pixelAt(canvas, 80, 110), White.toQColor(), 4));
    EXPECT_TRUE(near(pixelAt(canvas, 80, 55), mix(White, Black, 0.5), 4));   // halfway to the top edge
    EXPECT_TRUE(near(pixelAt(canvas, 120, 110), mix(White, Black, 0.5), 4)); // halfway to the right edge
    // Halfway toward the notch vertex (80, 150), and near the left edge.
    EXPECT_TRUE(near(pixelAt(canvas, 80, 130), mix(White, Black, 0.5), 8));
    EXPECT_TRUE(near(pixelAt(canvas, 0, 100), Black.toQColor(), 6));
    // The notch below (80, 150) is outside the path.
    EXPECT_EQ(pixelAt(canvas, 80, 190), QColor(Qt::green));
}

TEST(PathGradientBrush, EllipseCentreLeansTowardItsStartPoint)
{
    GraphicsPath path;
    path.AddEllipse(QRectF(0, 0, 140, 70));
    PathGradientBrush brush(path);
    // 13 stored points with the 0-degree point twice: the mean moves a/13 toward +x.
    EXPECT_NEAR(brush.GetCenterPoint().x(), 70 + 70.0 / 13, 1e-3);
    EXPECT_NEAR(brush.GetCenterPoint().y(), 35, 1e-3);
    brush.SetCenterColor(Red);
    int count = 3;
    const Color surround[3] = {Blue, White, White}; // only the first counts
    brush.SetSurroundColors(surround, &count);

    Bitmap canvas = makeCanvas(140, 70, Qt::green);
    {
        Graphics g(canvas);
        g.FillRectangle(brush, QRectF(0, 0, 140, 70));
    }
    const double cx = brush.GetCenterPoint().x();
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
    PathGradientBrush brush(ring);
    brush.SetCenterColor(White);
    int count = 1;
    brush.SetSurroundColors(&Black, &count);

    Bitmap canvas = makeCanvas(200, 200, Qt::green);
    {
        Graphics g(canvas);
        g.ScaleTransform(2, 2);
        g.FillPath(brush, ring);
    }
    EXPECT_EQ(pixelAt(canvas, 100, 100), QColor(Qt::green)); // the hole
    EXPECT_TRUE(near(pixelAt(canvas, 100, 4), Black.toQColor(), 12)); // near the outer edge
    // In the ring, between the hole and the outer edge, the colour lies between the two.
    const QColor inRing = pixelAt(canvas, 100, 40);
    EXPECT_GT(inRing.red(), 10);
    EXPECT_LT(inRing.red(), 245);
}

TEST(PathGradientBrush, PaintsNothingOutsideItsOwnPath)
{
    const QPointF triangle[] = {{10, 10}, {90, 10}, {50, 90}};
    GraphicsPath path;
    path.AddPolygon(triangle, 3);
    PathGradientBrush brush(path);
    brush.SetCenterColor(Red);
    int count = 1;
    brush.SetSurroundColors(&Blue, &count);

    Bitmap canvas = makeCanvas(100, 100, Qt::green);
    {
        Graphics g(canvas);
        g.FillRectangle(brush, QRectF(0, 0, 100, 100));
    }
    EXPECT_EQ(pixelAt(canvas, 5, 50), QColor(Qt::green));
    EXPECT_EQ(pixelAt(canvas, 50, 95), QColor(Qt::green));
    EXPECT_TRUE(near(pixelAt(canvas, 50, 37), Red.toQColor(), 12)); // the centre (50, 36.7)
}
