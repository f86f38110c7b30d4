#include "GraphicsTestSupport.h"

#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"

using namespace gfx;

namespace {

const Color Red(255, 255, 0, 0), Blue(255, 0, 0, 255), White(255, 255, 255, 255), Black(255, 0, 0, 0);
// The colours halfway between red and blue, and between white and black.
const QColor green(Qt::green), purple(128, 0, 128), grey(128, 128, 128);

Bitmap fillWith(const Brush& brush, int w, int h, float scale = 1, QColor fill = Qt::white)
{
    return drawOn(w, h, [&](Graphics& g) {
        g.ScaleTransform(scale, scale);
        g.FillRectangle(brush, QRectF(0, 0, w / scale, h / scale));
    }, fill);
}

// A path gradient of the path with one surround colour.
PathGradientBrush pathGradient(const GraphicsPath& path, Color centre, Color surround)
{
    PathGradientBrush brush(path);
    brush.SetCenterColor(centre);
    int count = 1;
    EXPECT_EQ(brush.SetSurroundColors(&surround, &count), Status::Ok);
    return brush;
}

} // namespace

TEST(LinearGradientBrush, EachModeRunsFromItsStartToItsEndAndRepeats)
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
        expectPixels(fillWith(LinearGradientBrush(QRectF(0, 0, c.w, c.h), Red, Blue, c.mode), c.w, c.h),
                     {{c.start.x(), c.start.y(), Qt::red, c.tolerance}, {c.end.x(), c.end.y(), Qt::blue, c.tolerance},
                      {c.mean1.x(), c.mean1.y(), purple, 6}, {c.mean2.x(), c.mean2.y(), purple, 6}});
    }
    // Right after the end the start colour comes back; before the start the end colour shows.
    const Bitmap canvas =
        fillWith(LinearGradientBrush(QRectF(50, 0, 50, 10), Red, Blue, LinearGradientMode::Horizontal), 200, 10);
    expectPixels(canvas, {{100, 5, Qt::red, 6}, {149, 5, Qt::blue, 6}, {49, 5, Qt::blue, 6},
                          {10, 5, pixelAt(canvas, 110, 5), 1}});
    // An empty rectangle paints nothing.
    const LinearGradientBrush empty(QRectF(2, 2, 0, 5), Red, Blue, LinearGradientMode::Horizontal);
    EXPECT_EQ(pixelAt(fillWith(empty, 10, 10), 5, 5), QColor(Qt::white));
}

TEST(LinearGradientBrush, BlendsPlainComponentsAndOptionallyInLinearLight)
{
    // A fade to transparent blue: halfway it is half-transparent purple, not half-transparent red.
    const Bitmap fade = fillWith(
        LinearGradientBrush(QRectF(0, 0, 100, 4), Red, Color(0, 0, 0, 255), LinearGradientMode::Horizontal), 100, 4,
        1, Qt::transparent);
    EXPECT_TRUE(near(QColor::fromRgba(qUnpremultiply(fade.image().pixel(50, 2))), QColor(127, 0, 128, 127), 4));

    LinearGradientBrush grey(QRectF(0, 0, 100, 4), Black, White, LinearGradientMode::Horizontal);
    EXPECT_NEAR(pixelAt(fillWith(grey, 100, 4), 50, 2).red(), 129, 2);
    grey.SetGammaCorrection(true);
    EXPECT_NEAR(pixelAt(fillWith(grey, 100, 4), 50, 2).red(), 188, 3); // linear light 0.5 is sRGB 0.735
}

TEST(PathGradientBrush, PolygonCentreIsTheVertexMeanAndColourRunsAlongRays)
{
    const GraphicsPath path = polygonPath({{0, 0}, {160, 0}, {160, 200}, {80, 150}, {0, 200}});
    EXPECT_EQ(PathGradientBrush(path).GetCenterPoint(), QPointF(80, 110)); // not the area centroid (80, 88.1)
    // Halfway to the top edge, to the right edge and toward the notch vertex (80, 150), which
    // is outside the path.
    expectPixels(fillWith(pathGradient(path, White, Black), 160, 200, 1, green),
                 {{80, 110, Qt::white, 4}, {80, 55, grey, 4}, {120, 110, grey, 4}, {80, 130, grey, 8},
                  {0, 100, Qt::black, 6}, {80, 190, green}});

    // Nothing is painted outside the brush's own path; the centre is (50, 36.7).
    const GraphicsPath triangle = polygonPath({{10, 10}, {90, 10}, {50, 90}});
    expectPixels(fillWith(pathGradient(triangle, Red, Blue), 100, 100, 1, green),
                 {{5, 50, green}, {50, 95, green}, {50, 37, Qt::red, 12}});
}

TEST(PathGradientBrush, EllipseCentreLeansTowardItsStartPointAndRingsKeepTheirHole)
{
    GraphicsPath ellipse;
    ellipse.AddEllipse(QRectF(0, 0, 140, 70));
    PathGradientBrush brush(ellipse);
    // 13 stored points with the 0-degree point twice: the mean moves a/13 toward +x.
    const double cx = 70 + 70.0 / 13;
    EXPECT_NEAR(brush.GetCenterPoint().x(), cx, 1e-3);
    EXPECT_NEAR(brush.GetCenterPoint().y(), 35, 1e-3);
    brush.SetCenterColor(Red);
    int count = 3;
    const Color surround[3] = {Blue, White, White}; // only the first counts
    brush.SetSurroundColors(surround, &count);
    // Halfway along the rays to the left and right ends of the axis; a corner is outside.
    expectPixels(fillWith(brush, 140, 70, 1, green),
                 {{int(cx), 35, Qt::red, 6}, {int(cx / 2), 35, purple, 6}, {int((cx + 140) / 2), 35, purple, 6},
                  {2, 2, green}});

    // Under a world transform, the hole of a ring stays open, the outer edge has the surround
    // colour and the ring between lies between the two.
    GraphicsPath ring;
    ring.AddEllipse(QRectF(0, 0, 100, 100));
    ring.AddEllipse(QRectF(30, 30, 40, 40));
    const Bitmap canvas = fillWith(pathGradient(ring, White, Black), 200, 200, 2, green);
    expectPixels(canvas, {{100, 100, green}, {100, 4, Qt::black, 12}, {100, 40, QColor(128, 128, 128), 117}});
}
