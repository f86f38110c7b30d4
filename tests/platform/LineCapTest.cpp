#include "GraphicsTestSupport.h"

#include "platform/graphics/CustomLineCap.h"
#include "platform/graphics/SolidBrush.h"

#include <limits>

using namespace gfx;

namespace {

const QColor white(Qt::white), black(Qt::black);

// The program's arrow heads, built as it builds them: a path in cap units turned by 90 degrees
// so that its tip (1, 0) points outward along the line.
CustomLineCap arrowCap(float scale, float inset = 0, bool stroked = false)
{
    GraphicsPath path =
        stroked ? polygonPath({{-2, -2}, {2, 0}, {-2, 2}, {2, 0}}) : polygonPath({{-1, -1}, {1, 0}, {-1, 1}});
    Matrix turn;
    turn.Rotate(90);
    path.Transform(turn);
    CustomLineCap cap(stroked ? nullptr : &path, stroked ? &path : nullptr, LineCap::Flat, inset);
    cap.SetWidthScale(scale);
    return cap;
}

// A cap far beyond the end (two to three cap units out), so that the line's own end shows.
CustomLineCap detachedCap(float inset)
{
    GraphicsPath path;
    path.AddRectangle(QRectF(-0.5, 2, 1, 1));
    CustomLineCap cap(&path, nullptr, LineCap::Flat, inset);
    cap.SetWidthScale(5);
    return cap;
}

Pen blackPen(float width, const CustomLineCap* start, const CustomLineCap* end)
{
    Pen pen(Color(0, 0, 0), width);
    if (start)
        pen.SetCustomStartCap(*start);
    if (end)
        pen.SetCustomEndCap(*end);
    return pen;
}

Bitmap drawLine(const Pen& pen, QPointF from = {40, 50}, QPointF to = {160, 50})
{
    return drawOn(200, 100, [&](Graphics& g) { g.DrawLine(pen, from, to); });
}

} // namespace

TEST(LineCaps, CustomHeadsLandAtTheirEndSizedAndInsetByTheCapAndSurviveCopies)
{
    const CustomLineCap arrow = arrowCap(5); // one cap unit = 10
    // The tip reaches one unit past the end; the head's base is two units wide; nothing at the start.
    expectPixels(drawLine(blackPen(2, nullptr, &arrow)),
                 {{168, 50, black}, {174, 50, white}, {152, 43, black}, {142, 33, white}, {35, 50, white},
                  {45, 46, white}});
    expectPixels(drawLine(blackPen(2, &arrow, nullptr)), {{32, 50, black}, {48, 43, black}, {168, 50, white}});
    // A larger scale: one unit = 20, the base spans 40 across at x = 140.
    const CustomLineCap large = arrowCap(10);
    expectPixels(drawLine(blackPen(2, nullptr, &large)), {{142, 33, black}, {178, 50, black}});

    // The base inset shortens (a unit is 2 x 5 = 10, so to 140) or lengthens (to 170) the line.
    for (const auto& [inset, lastInked] : {std::pair(0.0f, 158), {2.0f, 138}, {-1.0f, 168}}) {
        SCOPED_TRACE(inset);
        const CustomLineCap cap = detachedCap(inset);
        // The detached cap itself stays where it is.
        expectPixels(drawLine(blackPen(2, nullptr, &cap)),
                     {{lastInked, 50, black}, {lastInked + 4, 50, white}, {185, 50, black}});
    }

    // A stroked head is an outline: arms from the tip (170, 50) back to (150, 40) and (150, 60).
    const CustomLineCap open = arrowCap(2.5f, 0, true);
    expectPixels(drawLine(blackPen(2, nullptr, &open)), {{160, 55, black}, {160, 45, black}, {156, 54, white}});

    // Where a translucent line runs under its head the colour is neither darker nor lighter than
    // elsewhere, whichever way the head's outline turns.
    for (const bool mirrored : {false, true}) {
        CustomLineCap head = arrowCap(3);
        if (mirrored) {
            GraphicsPath reversed = polygonPath({{-1, 1}, {0, -1}, {1, 1}});
            head = CustomLineCap(&reversed, nullptr, LineCap::Flat, 0);
            head.SetWidthScale(3);
        }
        Pen translucent(Color(128, 0, 0, 255), 4);
        translucent.SetCustomEndCap(head);
        const Bitmap once = drawLine(translucent);
        expectPixels(once, {{156, 50, pixelAt(once, 100, 50)}, {156, 46, pixelAt(once, 100, 50)}});
    }

    // A custom cap survives a copy of the pen; setting a plain cap replaces it.
    Pen copied(blackPen(2, nullptr, &arrow));
    EXPECT_EQ(pixelAt(drawLine(copied), 168, 50), black);
    copied.SetEndCap(LineCap::Flat);
    EXPECT_EQ(pixelAt(drawLine(copied), 168, 50), white);
    EXPECT_EQ(copied.GetCustomEndCap(), nullptr);
}

TEST(LineCaps, HeadFollowsTheLastSegmentAndClosedFiguresGetNone)
{
    const CustomLineCap arrow = arrowCap(5);
    const Pen pen = blackPen(2, &arrow, &arrow);
    const QPointF points[] = {{40, 80}, {100, 80}, {100, 30}};
    // Pointing up, past (100, 30), for a polyline and an open curve through the same points.
    expectPixels(drawOn(200, 100, [&](Graphics& g) { g.DrawLines(pen, points, 3); }),
                 {{100, 22, black}, {95, 32, black}, {100, 16, white}, {32, 80, black}});
    expectPixels(drawOn(200, 100, [&](Graphics& g) { g.DrawCurve(pen, points, 3); }), {{100, 22, black}});

    const QPointF square[] = {{50, 20}, {150, 20}, {150, 80}, {50, 80}};
    const Bitmap closed = drawOn(200, 100, [&](Graphics& g) {
        g.DrawPolygon(pen, square, 4);
        g.DrawPath(pen, polygonPath({square[0], square[1], square[2], square[3]}));
    });
    expectPixels(closed, {{100, 20, black}, {42, 20, white}, {50, 12, white}});

    // A pen of width 0 makes the scale infinite or undefined: the caps are skipped, the line drawn.
    for (const float scale : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        const CustomLineCap start = arrowCap(scale, 1), end = arrowCap(scale, -1);
        expectPixels(drawLine(blackPen(0, &start, &end), {40, 50.5}, {160, 50.5}),
                     {{100, 50, black}, {168, 50, white}, {100, 53, white}});
    }
}

TEST(DashCaps, RoundAndTriangleEndsComeOutOfTheDashesAndLeaveTheLineEndsFlat)
{
    // A 10 wide line from x 10 to 190: dashes of 30 with gaps of 10, the first from 10 to 40.
    const auto check = [](DashStyle style, DashCap cap, std::initializer_list<Probe> probes) {
        Pen pen(Color(255, 0, 0, 0), 10);
        pen.SetDashStyle(style);
        pen.SetDashCap(cap);
        expectPixels(drawOn(200, 100, [&](Graphics& g) {
                         g.SetSmoothingMode(SmoothingMode::AntiAlias);
                         g.DrawLine(pen, QPointF(10, 50), QPointF(190, 50));
                     }),
                     probes);
    };
    const auto ink = [](int x, int y) { return Probe{x, y, Qt::black, 63}; };
    const auto blank = [](int x, int y) { return Probe{x, y, Qt::white, 63}; };
    // The gaps stay open, the dashes keep their length and the line's own start is square; at a
    // dash's inner end only the flat cap fills the corner; the round end is a half circle, wider
    // than the triangle's point near the tip.
    check(DashStyle::Dash, DashCap::Flat, {blank(45, 50), ink(38, 50), ink(10, 54), ink(39, 54)});
    check(DashStyle::Dash, DashCap::Round,
          {blank(45, 50), ink(38, 50), ink(10, 54), blank(39, 54), ink(37, 53), ink(34, 50), ink(16, 52)});
    check(DashStyle::Dash, DashCap::Triangle, {blank(45, 50), ink(38, 50), ink(10, 54), blank(39, 53), blank(37, 53)});
    // Dots with round ends are round dots, one width across.
    check(DashStyle::Dot, DashCap::Round, {ink(35, 50), blank(30, 45), blank(45, 50)});
}

TEST(DashCaps, RoundDotsCarryTheInkOfTheirCircles)
{
    // The ink of one inner dot, summed from its antialiased pixels, against the circle's area:
    // small dots must not lose weight to a coarse polygon, nor gain it from edges drawn twice.
    for (const float width : {3.0f, 4.0f, 10.0f, 24.0f}) {
        Pen pen(Color(255, 0, 0, 0), width);
        pen.SetDashStyle(DashStyle::Dot);
        pen.SetDashCap(DashCap::Round);
        const Bitmap dots = drawOn(200, 100, [&](Graphics& g) {
            g.SetSmoothingMode(SmoothingMode::AntiAlias);
            g.DrawLine(pen, QPointF(10, 50), QPointF(190, 50));
        });
        // Dots lie every two widths; the one over [2.5 w, 3.5 w] from the start sits alone.
        const int left = int(10 + 2 * width), right = int(10 + 4 * width);
        double ink = 0;
        for (int y = 0; y < 100; ++y)
            for (int x = left; x < right; ++x)
                ink += (255 - pixelAt(dots, x, y).red()) / 255.0;
        const double circle = M_PI * width * width / 4;
        EXPECT_NEAR(ink, circle, circle * 0.04) << "width " << width;
    }
}
