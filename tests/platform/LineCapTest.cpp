#include "GraphicsTestSupport.h"

#include "platform/graphics/CustomLineCap.h"
#include "platform/graphics/SolidBrush.h"

#include <gtest/gtest.h>

#include <limits>

using namespace gfx;

namespace {

const QColor white(Qt::white), black(Qt::black);

// The program's arrow heads, built as it builds them: a path in cap units turned by 90 degrees
// so that its tip (1, 0) points outward along the line.
CustomLineCap arrowCap(float scale, float inset = 0, bool stroked = false)
{
    GraphicsPath path;
    if (stroked) {
        const QPointF open[] = {{-2, -2}, {2, 0}, {-2, 2}, {2, 0}};
        path.AddPolygon(open, 4);
    } else {
        const QPointF arrow[] = {{-1, -1}, {1, 0}, {-1, 1}};
        path.AddPolygon(arrow, 3);
    }
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

Bitmap drawLine(const Pen& pen, QPointF from = {40, 50}, QPointF to = {160, 50})
{
    Bitmap canvas = makeCanvas(200, 100);
    Graphics g(canvas);
    g.DrawLine(pen, from, to);
    return canvas;
}

} // namespace

TEST(LineCaps, ArrowHeadLandsAtItsOwnEnd)
{
    Pen pen(Color(0, 0, 0), 2);
    pen.SetCustomEndCap(arrowCap(5)); // one cap unit = 10
    const Bitmap end = drawLine(pen);
    EXPECT_EQ(pixelAt(end, 168, 50), black);  // the tip reaches one unit past the end
    EXPECT_EQ(pixelAt(end, 174, 50), white);
    EXPECT_EQ(pixelAt(end, 152, 43), black);  // the head's base is two units wide
    EXPECT_EQ(pixelAt(end, 35, 50), white);   // nothing at the start
    EXPECT_EQ(pixelAt(end, 45, 46), white);

    Pen startPen(Color(0, 0, 0), 2);
    startPen.SetCustomStartCap(arrowCap(5));
    const Bitmap start = drawLine(startPen);
    EXPECT_EQ(pixelAt(start, 32, 50), black);
    EXPECT_EQ(pixelAt(start, 48, 43), black);
    EXPECT_EQ(pixelAt(start, 168, 50), white);
}

TEST(LineCaps, HeadFollowsTheLastSegmentOfLinesAndCurves)
{
    Pen pen(Color(0, 0, 0), 2);
    pen.SetCustomEndCap(arrowCap(5));
    const QPointF points[] = {{40, 80}, {100, 80}, {100, 30}};
    Bitmap canvas = makeCanvas(200, 100);
    {
        Graphics g(canvas);
        g.DrawLines(pen, points, 3);
    }
    EXPECT_EQ(pixelAt(canvas, 100, 22), black); // pointing up, past (100, 30)
    EXPECT_EQ(pixelAt(canvas, 95, 32), black);
    EXPECT_EQ(pixelAt(canvas, 100, 16), white);
    EXPECT_EQ(pixelAt(canvas, 35, 80), white);

    // An open curve through the same points ends with the same heading.
    Bitmap curve = makeCanvas(200, 100);
    {
        Graphics g(curve);
        g.DrawCurve(pen, points, 3);
    }
    EXPECT_EQ(pixelAt(curve, 100, 22), black);
}

TEST(LineCaps, WidthScaleSizesTheHead)
{
    Pen small(Color(0, 0, 0), 2);
    small.SetCustomEndCap(arrowCap(5));
    Pen large(Color(0, 0, 0), 2);
    large.SetCustomEndCap(arrowCap(10)); // one unit = 20: the base spans 40 across at x = 140
    EXPECT_EQ(pixelAt(drawLine(small), 142, 33), white);
    EXPECT_EQ(pixelAt(drawLine(large), 142, 33), black);
    EXPECT_EQ(pixelAt(drawLine(large), 178, 50), black);
}

TEST(LineCaps, BaseInsetShortensOrLengthensTheLine)
{
    Pen plain(Color(0, 0, 0), 2);
    plain.SetCustomEndCap(detachedCap(0));
    const Bitmap untouched = drawLine(plain);
    EXPECT_EQ(pixelAt(untouched, 158, 50), black);
    EXPECT_EQ(pixelAt(untouched, 185, 50), black); // the detached cap itself

    Pen shorter(Color(0, 0, 0), 2);
    shorter.SetCustomEndCap(detachedCap(2)); // a unit is 2 x 5 = 10: the line ends at 140
    const Bitmap shortened = drawLine(shorter);
    EXPECT_EQ(pixelAt(shortened, 138, 50), black);
    EXPECT_EQ(pixelAt(shortened, 142, 50), white);

    Pen longer(Color(0, 0, 0), 2);
    longer.SetCustomEndCap(detachedCap(-1));
    const Bitmap lengthened = drawLine(longer); // to 170
    EXPECT_EQ(pixelAt(lengthened, 168, 50), black);
    EXPECT_EQ(pixelAt(lengthened, 172, 50), white);
}

TEST(LineCaps, ZeroWidthMakesTheScaleInfiniteAndTheCapIsSkipped)
{
    for (const float scale : {std::numeric_limits<float>::infinity(), std::numeric_limits<float>::quiet_NaN()}) {
        Pen pen(Color(0, 0, 0), 0);
        pen.SetCustomStartCap(arrowCap(scale, 1));
        pen.SetCustomEndCap(arrowCap(scale, -1));
        const Bitmap canvas = drawLine(pen, {40, 50.5}, {160, 50.5});
        EXPECT_EQ(pixelAt(canvas, 100, 50), black); // the line draws one pixel wide
        EXPECT_EQ(pixelAt(canvas, 168, 50), white);
        EXPECT_EQ(pixelAt(canvas, 100, 53), white);
    }
}

TEST(LineCaps, LineAndHeadAreFilledOnce)
{
    // Where the translucent line runs under its head the colour is not darker than elsewhere.
    Pen pen(Color(128, 0, 0, 255), 4);
    pen.SetCustomEndCap(arrowCap(3));
    const Bitmap canvas = drawLine(pen);
    EXPECT_EQ(pixelAt(canvas, 156, 50), pixelAt(canvas, 100, 50));
    EXPECT_EQ(pixelAt(canvas, 156, 46), pixelAt(canvas, 100, 50)); // head only
}

TEST(LineCaps, StrokedHeadIsAnOutline)
{
    Pen pen(Color(0, 0, 0), 2);
    pen.SetCustomEndCap(arrowCap(2.5f, 0, true)); // arms from the tip (170, 50) back to (150, 40) and (150, 60)
    const Bitmap canvas = drawLine(pen);
    EXPECT_EQ(pixelAt(canvas, 160, 55), black);
    EXPECT_EQ(pixelAt(canvas, 160, 45), black);
    EXPECT_EQ(pixelAt(canvas, 156, 54), white); // between an arm and the line
}

TEST(LineCaps, PlainCapsAndCopiesOfPens)
{
    Pen flat(Color(0, 0, 0), 10);
    EXPECT_EQ(pixelAt(drawLine(flat), 162, 50), white);

    Pen round(Color(0, 0, 0), 10);
    round.SetEndCap(LineCap::Round);
    EXPECT_EQ(pixelAt(drawLine(round), 163, 50), black);
    EXPECT_EQ(pixelAt(drawLine(round), 164, 46), white); // rounded off toward the edge
    EXPECT_EQ(pixelAt(drawLine(round), 37, 50), white);  // the start stays flat

    Pen anchor(Color(0, 0, 0), 4);
    anchor.SetStartCap(LineCap::NoAnchor);
    anchor.SetEndCap(LineCap::ArrowAnchor);
    const Pen copy = anchor;
    const Bitmap anchored = drawLine(copy);
    EXPECT_EQ(pixelAt(anchored, 161, 50), black); // the tip lies a width beyond the end
    EXPECT_EQ(pixelAt(anchored, 36, 50), white);

    // A custom cap survives the copy; setting a plain cap replaces it.
    Pen custom(Color(0, 0, 0), 2);
    custom.SetCustomEndCap(arrowCap(5));
    Pen copied(custom);
    EXPECT_EQ(pixelAt(drawLine(copied), 168, 50), black);
    copied.SetEndCap(LineCap::Flat);
    EXPECT_EQ(pixelAt(drawLine(copied), 168, 50), white);
    EXPECT_EQ(copied.GetCustomEndCap(), nullptr);
}

TEST(LineCaps, ClosedFiguresGetNoCaps)
{
    Pen pen(Color(0, 0, 0), 2);
    pen.SetCustomStartCap(arrowCap(5));
    pen.SetCustomEndCap(arrowCap(5));
    const QPointF square[] = {{50, 20}, {150, 20}, {150, 80}, {50, 80}};
    Bitmap canvas = makeCanvas(200, 100);
    {
        Graphics g(canvas);
        g.DrawPolygon(pen, square, 4);
        GraphicsPath path;
        path.AddPolygon(square, 4);
        g.DrawPath(pen, path);
    }
    EXPECT_EQ(pixelAt(canvas, 100, 20), black);
    EXPECT_EQ(pixelAt(canvas, 42, 20), white);
    EXPECT_EQ(pixelAt(canvas, 50, 12), white);
}

TEST(DashCaps, RoundAndTriangleEndsComeOutOfTheDashesAndLeaveTheLineEndsFlat)
{
    // A 10 wide line from x 10 to 190: dashes of 30 with gaps of 10, the first from 10 to 40.
    const auto draw = [](DashStyle style, DashCap cap) {
        Bitmap canvas = makeCanvas(200, 100);
        Graphics g(canvas);
        g.SetSmoothingMode(SmoothingMode::AntiAlias);
        Pen pen(Color(255, 0, 0, 0), 10);
        pen.SetDashStyle(style);
        pen.SetDashCap(cap);
        g.DrawLine(pen, QPointF(10, 50), QPointF(190, 50));
        return canvas;
    };
    const auto inked = [](const Bitmap& canvas, int x, int y) { return pixelAt(canvas, x, y).red() < 64; };
    const auto blank = [](const Bitmap& canvas, int x, int y) { return pixelAt(canvas, x, y).red() > 192; };

    const Bitmap flat = draw(DashStyle::Dash, DashCap::Flat);
    const Bitmap round = draw(DashStyle::Dash, DashCap::Round);
    const Bitmap triangle = draw(DashStyle::Dash, DashCap::Triangle);
    for (const Bitmap* canvas : {&flat, &round, &triangle}) {
        EXPECT_TRUE(blank(*canvas, 45, 50)); // the gaps stay open
        EXPECT_TRUE(inked(*canvas, 38, 50)); // and the dashes keep their length
        EXPECT_TRUE(inked(*canvas, 10, 54)); // the line's own start is square
    }
    // At a dash's inner end only the flat cap fills the corner.
    EXPECT_TRUE(inked(flat, 39, 54));
    EXPECT_TRUE(blank(round, 39, 54));
    EXPECT_TRUE(blank(triangle, 39, 53));
    // The round end is a half circle, wider than the triangle's point near the tip.
    EXPECT_TRUE(inked(round, 37, 53));
    EXPECT_TRUE(blank(triangle, 37, 53));

    // Dots with round ends are round dots, one width across.
    const Bitmap dots = draw(DashStyle::Dot, DashCap::Round);
    EXPECT_TRUE(inked(dots, 35, 50));
    EXPECT_TRUE(blank(dots, 30, 45));
    EXPECT_TRUE(blank(dots, 45, 50));
}
