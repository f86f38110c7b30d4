#include "GraphicsTestSupport.h"

#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/SolidBrush.h"

#include <gtest/gtest.h>

#include <numeric>

using namespace gfx;

namespace {

constexpr std::uint8_t Start = GraphicsPath::Start;
constexpr std::uint8_t Line = GraphicsPath::Line;
constexpr std::uint8_t Bezier = GraphicsPath::Bezier;
constexpr std::uint8_t Closed = GraphicsPath::CloseFlag;

void expectNear(QPointF actual, QPointF expected, double tolerance = 1e-3)
{
    EXPECT_NEAR(actual.x(), expected.x(), tolerance) << "x of " << expected.x() << "," << expected.y();
    EXPECT_NEAR(actual.y(), expected.y(), tolerance) << "y of " << expected.x() << "," << expected.y();
}

} // namespace

TEST(GraphicsPathArc, AnglesAreGeometricAndClockwiseOnAFlatEllipse)
{
    const QRectF rect(0, 0, 160, 80);
    GraphicsPath path;
    path.AddArc(rect, 30, 60);
    const std::vector<QPointF> points = path.GetPathPoints();
    ASSERT_GE(points.size(), 4u);
    // The first point lies on the 30 degree ray (below the centre on a y-down device), the last
    // on the 90 degree ray: the bottom of the ellipse.
    EXPECT_NEAR(angleFrom(rect.center(), points.front()), 30.0, 1e-3);
    expectNear(points.back(), QPointF(80, 80));
    // Both lie on the ellipse itself.
    const QPointF d = points.front() - rect.center();
    EXPECT_NEAR(d.x() * d.x() / (80.0 * 80.0) + d.y() * d.y() / (40.0 * 40.0), 1.0, 1e-6);
}

TEST(GraphicsPathArc, NegativeSweepsAndSweepsAcrossTheAxesKeepTheirDirection)
{
    const QRectF rect(0, 0, 200, 100);
    GraphicsPath back;
    back.AddArc(rect, 200, -60); // from 200 degrees back to 140
    const std::vector<QPointF> points = back.GetPathPoints();
    EXPECT_NEAR(angleFrom(rect.center(), points.front()), -160.0, 1e-3);
    EXPECT_NEAR(angleFrom(rect.center(), points.back()), 140.0, 1e-3);
    // The arc passes through 180 degrees (the left end), not the long way round.
    EXPECT_NEAR(back.GetBounds().left(), 0.0, 1e-3);
    EXPECT_GT(back.GetBounds().top(), 15.0);

    GraphicsPath wide;
    wide.AddArc(rect, -45, 270);
    EXPECT_NEAR(angleFrom(rect.center(), wide.GetPathPoints().front()), -45.0, 1e-3);
    EXPECT_NEAR(angleFrom(rect.center(), wide.GetPathPoints().back()), -135.0, 1e-3);
    // Through 0 degrees, the bottom and the left end, but not over the top (270 degrees);
    // quarter Beziers off the axes bulge by a few thousandths of the radius.
    EXPECT_NEAR(wide.GetBounds().right(), 200.0, 0.05);
    EXPECT_NEAR(wide.GetBounds().bottom(), 100.0, 0.05);
    EXPECT_NEAR(wide.GetBounds().left(), 0.0, 0.05);
    EXPECT_GT(wide.GetBounds().top(), 1.0);
}

TEST(GraphicsPathArc, ArcsJoinTheOpenFigureUnlessAFigureWasStarted)
{
    const QRectF rect(0, 0, 100, 100);
    GraphicsPath joined;
    joined.AddLine(QPointF(-10, 50), QPointF(0, 50));
    joined.AddArc(rect, 0, 90);
    const std::vector<std::uint8_t> types = joined.GetPathTypes();
    ASSERT_GE(types.size(), 6u);
    EXPECT_EQ(types[0], Start);
    EXPECT_EQ(types[1], Line);
    EXPECT_EQ(types[2], Line); // the join to the arc's start at (100, 50)
    expectNear(joined.GetPathPoints()[2], QPointF(100, 50));
    EXPECT_EQ(std::count(types.begin(), types.end(), Start), 1);

    GraphicsPath separate;
    separate.AddLine(QPointF(-10, 50), QPointF(0, 50));
    separate.StartFigure();
    separate.AddArc(rect, 0, 90);
    const std::vector<std::uint8_t> types2 = separate.GetPathTypes();
    EXPECT_EQ(std::count(types2.begin(), types2.end(), Start), 2);
    EXPECT_EQ(types2[2], Start);
}

TEST(GraphicsPathArc, TwoChordedArcsCloseIntoOneFigure)
{
    // The business-card disc: the circle between two chords.
    const QRectF rect(-50, -50, 100, 100);
    GraphicsPath path;
    path.AddArc(rect, 30, -60);
    path.AddArc(rect, 210, -60);
    path.CloseFigure();
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    EXPECT_EQ(std::count(types.begin(), types.end(), Start), 1);
    EXPECT_TRUE(types.back() & Closed);
    const QRectF bounds = path.GetBounds();
    EXPECT_NEAR(bounds.left(), -50.0, 1e-3);
    EXPECT_NEAR(bounds.right(), 50.0, 1e-3);
    EXPECT_NEAR(bounds.top(), -25.0, 1e-3); // sin 30 * 50
    EXPECT_NEAR(bounds.bottom(), 25.0, 1e-3);
    EXPECT_TRUE(path.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(path.IsVisible(QPointF(0, 40)));
}

TEST(GraphicsPathShapes, EllipseIsAClosedFigureOfThirteenPointsFromZeroDegrees)
{
    const QRectF rect(0, 0, 140, 70);
    GraphicsPath path;
    path.AddEllipse(rect);
    const std::vector<QPointF> points = path.GetPathPoints();
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    ASSERT_EQ(points.size(), 13u);
    expectNear(points.front(), QPointF(140, 35));
    expectNear(points[3], QPointF(70, 70)); // clockwise: the bottom comes first
    expectNear(points.back(), points.front());
    EXPECT_EQ(types.front(), Start);
    EXPECT_EQ(types.back(), Bezier | Closed);
    // The mean of the stored points moves a/13 toward 0 degrees (the path gradient's centre).
    const QPointF sum = std::accumulate(points.begin(), points.end(), QPointF());
    EXPECT_NEAR(sum.x() / 13, 70 + 70.0 / 13, 1e-3);
    // Tight bounds: the curve, not its control points.
    const QRectF bounds = path.GetBounds();
    EXPECT_NEAR(bounds.left(), 0, 1e-3);
    EXPECT_NEAR(bounds.top(), 0, 1e-3);
    EXPECT_NEAR(bounds.width(), 140, 1e-3);
    EXPECT_NEAR(bounds.height(), 70, 1e-3);
}

TEST(GraphicsPathShapes, RectanglePolygonAndClosedShapesNeverJoinWhatFollows)
{
    GraphicsPath path;
    path.AddRectangle(QRectF(10, 20, 30, 40));
    const std::vector<QPointF> corners = path.GetPathPoints();
    ASSERT_EQ(corners.size(), 4u);
    EXPECT_EQ(corners[0], QPointF(10, 20));
    EXPECT_EQ(corners[1], QPointF(40, 20));
    EXPECT_EQ(corners[2], QPointF(40, 60));
    EXPECT_EQ(corners[3], QPointF(10, 60));
    const std::vector<std::uint8_t> rectangleTypes = path.GetPathTypes();
    EXPECT_EQ(rectangleTypes, (std::vector<std::uint8_t>{Start, Line, Line, Line | Closed}));

    const QPointF triangle[] = {{0, 0}, {20, 0}, {0, 20}};
    path.AddPolygon(triangle, 3);
    path.AddLine(QPointF(100, 100), QPointF(110, 100));
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    ASSERT_EQ(types.size(), 9u);
    EXPECT_EQ(types[4], Start);
    EXPECT_EQ(types[6], Line | Closed); // the polygon is closed
    EXPECT_EQ(types[7], Start); // and the line does not join it
}

TEST(GraphicsPathShapes, PolygonIsFilledAndOutlinedAsAClosedFigure)
{
    Bitmap canvas = makeCanvas(40, 40);
    Graphics g(canvas);
    const QPointF corners[] = {{5, 5}, {35, 5}, {35, 35}};
    GraphicsPath polygon;
    polygon.AddPolygon(corners, 3);
    // The outline includes the closing edge from (35, 35) back to (5, 5).
    Pen pen(Color(255, 0, 0, 0), 2);
    g.DrawPath(pen, polygon);
    EXPECT_EQ(pixelAt(canvas, 20, 20), QColor(Qt::black)); // on the closing diagonal
    EXPECT_EQ(pixelAt(canvas, 10, 30), QColor(Qt::white));
}

TEST(GraphicsPathCurves, CardinalSplineUsesATensionThirdOfTheNeighbourChord)
{
    const QPointF pts[] = {{0, 0}, {10, 10}, {20, 0}, {30, 10}};
    GraphicsPath path;
    path.AddCurve(pts, 4, 0.6f);
    const std::vector<QPointF> p = path.GetPathPoints();
    ASSERT_EQ(p.size(), 10u); // start + 3 Beziers
    const double k = 0.6 / 3;
    // The ends use themselves as their missing neighbours.
    expectNear(p[1], pts[0] + k * (pts[1] - pts[0]));
    expectNear(p[2], pts[1] - k * (pts[2] - pts[0]));
    expectNear(p[3], pts[1]);
    expectNear(p[4], pts[1] + k * (pts[2] - pts[0]));
    expectNear(p[8], pts[3] - k * (pts[3] - pts[2]));
    expectNear(p[9], pts[3]);

    // Tension 0 makes straight segments: the bounds are those of the points.
    GraphicsPath straight;
    straight.AddCurve(pts, 4, 0.0f);
    EXPECT_EQ(straight.GetBounds(), QRectF(0, 0, 30, 10));
}

TEST(GraphicsPathCurves, ClosedCurveWrapsAroundAndCloses)
{
    const QPointF pts[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    GraphicsPath path;
    path.AddLine(QPointF(-50, -50), QPointF(-40, -50));
    path.AddClosedCurve(pts, 4, 0.5f);
    const std::vector<QPointF> p = path.GetPathPoints();
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    ASSERT_EQ(p.size(), 2u + 13u);
    EXPECT_EQ(types[2], Start); // its own figure
    EXPECT_EQ(types.back(), Bezier | Closed);
    expectNear(p.back(), pts[0]);
    const double k = 0.5 / 3;
    // The first control point looks back at the last point.
    expectNear(p[3], pts[0] + k * (pts[1] - pts[3]));
    // Round, so it bulges beyond the square on every side.
    GraphicsPath alone;
    alone.AddClosedCurve(pts, 4, 0.5f);
    const QRectF bounds = alone.GetBounds();
    EXPECT_LT(bounds.left(), 0.0);
    EXPECT_GT(bounds.bottom(), 10.0);
}

TEST(GraphicsPathFigures, AddPathConnectsOnlyWhenAsked)
{
    GraphicsPath other;
    other.AddLine(QPointF(10, 0), QPointF(20, 0));

    GraphicsPath connected;
    connected.AddLine(QPointF(0, 0), QPointF(5, 0));
    connected.AddPath(other, true);
    const std::vector<std::uint8_t> a = connected.GetPathTypes();
    EXPECT_EQ(std::count(a.begin(), a.end(), Start), 1);
    EXPECT_EQ(connected.GetPointCount(), 4);

    GraphicsPath separate;
    separate.AddLine(QPointF(0, 0), QPointF(5, 0));
    separate.AddPath(other, false);
    const std::vector<std::uint8_t> b = separate.GetPathTypes();
    EXPECT_EQ(std::count(b.begin(), b.end(), Start), 2);

    // A closed figure stays closed: what follows starts anew.
    GraphicsPath ring;
    ring.AddEllipse(QRectF(0, 0, 10, 10));
    separate.AddPath(ring, true);
    separate.AddLine(QPointF(50, 50), QPointF(60, 60));
    EXPECT_EQ(separate.GetPathTypes()[separate.GetPointCount() - 2], Start);
}

TEST(GraphicsPathFill, VisibilityFollowsTheFillMode)
{
    // Two squares one inside the other, both drawn the same way round.
    GraphicsPath path;
    path.AddRectangle(QRectF(0, 0, 30, 30));
    path.AddRectangle(QRectF(10, 10, 10, 10));
    EXPECT_EQ(path.GetFillMode(), FillMode::Alternate);
    EXPECT_TRUE(path.IsVisible(QPointF(5, 5)));
    EXPECT_FALSE(path.IsVisible(QPointF(15, 15)));
    path.SetFillMode(FillMode::Winding);
    EXPECT_TRUE(path.IsVisible(QPointF(15, 15)));
    EXPECT_FALSE(path.IsVisible(QPointF(35, 15)));

    // Filling honours it too.
    Bitmap canvas = makeCanvas(30, 30);
    Graphics g(canvas);
    path.SetFillMode(FillMode::Alternate);
    g.FillPath(SolidBrush(Color(255, 0, 0, 255)), path);
    EXPECT_EQ(pixelAt(canvas, 5, 5), QColor(Qt::blue));
    EXPECT_EQ(pixelAt(canvas, 15, 15), QColor(Qt::white));

    path.Reset();
    EXPECT_TRUE(path.IsEmpty());
    EXPECT_EQ(path.GetPointCount(), 0);
    EXPECT_EQ(path.GetFillMode(), FillMode::Alternate);
}

TEST(GraphicsPathFill, TransformMovesPointsBoundsAndVisibility)
{
    GraphicsPath path;
    path.AddRectangle(QRectF(0, 0, 10, 20));
    path.Transform(Matrix(2, 0, 0, -1, 5, 100));
    EXPECT_EQ(path.GetPathPoints()[2], QPointF(25, 80));
    EXPECT_EQ(path.GetBounds(), QRectF(5, 80, 20, 20));
    EXPECT_TRUE(path.IsVisible(QPointF(10, 90)));
    EXPECT_FALSE(path.IsVisible(QPointF(2, 10)));
}
