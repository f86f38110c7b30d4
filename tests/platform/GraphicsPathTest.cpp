#include "GraphicsTestSupport.h"

#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/SolidBrush.h"

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

int figures(const GraphicsPath& path)
{
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    return int(std::count(types.begin(), types.end(), Start));
}

} // namespace

TEST(GraphicsPathArc, AnglesAreGeometricAndSweepsKeepTheirDirection)
{
    // On a flat ellipse the first point lies on the 30 degree ray (below the centre on a y-down
    // device) and on the ellipse itself; the last on the 90 degree ray, the bottom.
    const QRectF flat(0, 0, 160, 80);
    GraphicsPath path;
    path.AddArc(flat, 30, 60);
    EXPECT_NEAR(angleFrom(flat.center(), path.GetPathPoints().front()), 30.0, 1e-3);
    expectNear(path.GetPathPoints().back(), QPointF(80, 80));
    const QPointF d = path.GetPathPoints().front() - flat.center();
    EXPECT_NEAR(d.x() * d.x() / (80.0 * 80.0) + d.y() * d.y() / (40.0 * 40.0), 1.0, 1e-6);

    const QRectF rect(0, 0, 200, 100);
    GraphicsPath back;
    back.AddArc(rect, 200, -60); // from 200 degrees back to 140
    EXPECT_NEAR(angleFrom(rect.center(), back.GetPathPoints().front()), -160.0, 1e-3);
    EXPECT_NEAR(angleFrom(rect.center(), back.GetPathPoints().back()), 140.0, 1e-3);
    // The arc passes through 180 degrees (the left end), not the long way round.
    EXPECT_NEAR(back.GetBounds().left(), 0.0, 1e-3);
    EXPECT_GT(back.GetBounds().top(), 15.0);

    GraphicsPath wide;
    wide.AddArc(rect, -45, 270);
    EXPECT_NEAR(angleFrom(rect.center(), wide.GetPathPoints().front()), -45.0, 1e-3);
    EXPECT_NEAR(angleFrom(rect.center(), wide.GetPathPoints().back()), -135.0, 1e-3);
    // Through 0 degrees, the bottom and the left end, but not over the top (270 degrees);
    // quarter Beziers off the axes bulge by a few thousandths of the radius.
    const QRectF bounds = wide.GetBounds();
    EXPECT_NEAR(bounds.right(), 200.0, 0.05);
    EXPECT_NEAR(bounds.bottom(), 100.0, 0.05);
    EXPECT_NEAR(bounds.left(), 0.0, 0.05);
    EXPECT_GT(bounds.top(), 1.0);
}

TEST(GraphicsPathArc, ArcsJoinTheOpenFigureUnlessAFigureWasStarted)
{
    const QRectF rect(0, 0, 100, 100);
    GraphicsPath joined;
    joined.AddLine(QPointF(-10, 50), QPointF(0, 50));
    joined.AddArc(rect, 0, 90);
    const std::vector<std::uint8_t> types = joined.GetPathTypes();
    ASSERT_GE(types.size(), 6u);
    EXPECT_EQ(std::vector<std::uint8_t>(types.begin(), types.begin() + 3), (std::vector<std::uint8_t>{Start, Line, Line}));
    expectNear(joined.GetPathPoints()[2], QPointF(100, 50)); // the join to the arc's start
    EXPECT_EQ(figures(joined), 1);

    GraphicsPath separate;
    separate.AddLine(QPointF(-10, 50), QPointF(0, 50));
    separate.StartFigure();
    separate.AddArc(rect, 0, 90);
    EXPECT_EQ(figures(separate), 2);
    EXPECT_EQ(separate.GetPathTypes()[2], Start);

    // The business-card disc: the circle between two chords, closed into one figure.
    const QRectF circle(-50, -50, 100, 100);
    GraphicsPath card;
    card.AddArc(circle, 30, -60);
    card.AddArc(circle, 210, -60);
    card.CloseFigure();
    EXPECT_EQ(figures(card), 1);
    const std::vector<std::uint8_t> cardTypes = card.GetPathTypes();
    ASSERT_FALSE(cardTypes.empty());
    EXPECT_TRUE(cardTypes.back() & Closed);
    const QRectF bounds = card.GetBounds();
    EXPECT_NEAR(bounds.left(), -50.0, 1e-3);
    EXPECT_NEAR(bounds.right(), 50.0, 1e-3);
    EXPECT_NEAR(bounds.top(), -25.0, 1e-3); // sin 30 * 50
    EXPECT_NEAR(bounds.bottom(), 25.0, 1e-3);
    EXPECT_TRUE(card.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(card.IsVisible(QPointF(0, 40)));
}

TEST(GraphicsPathShapes, EllipseIsAClosedFigureOfThirteenPointsFromZeroDegrees)
{
    GraphicsPath path;
    path.AddEllipse(QRectF(0, 0, 140, 70));
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
    expectNear(bounds.topLeft(), QPointF(0, 0));
    expectNear(bounds.bottomRight(), QPointF(140, 70));
}

TEST(GraphicsPathShapes, ClosedShapesNeverJoinWhatFollows)
{
    GraphicsPath path;
    path.AddRectangle(QRectF(10, 20, 30, 40));
    EXPECT_EQ(path.GetPathPoints(), (std::vector<QPointF>{{10, 20}, {40, 20}, {40, 60}, {10, 60}}));
    EXPECT_EQ(path.GetPathTypes(), (std::vector<std::uint8_t>{Start, Line, Line, Line | Closed}));

    const QPointF triangle[] = {{0, 0}, {20, 0}, {0, 20}};
    path.AddPolygon(triangle, 3);
    path.AddLine(QPointF(100, 100), QPointF(110, 100));
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    ASSERT_EQ(types.size(), 9u);
    EXPECT_EQ(types[4], Start);
    EXPECT_EQ(types[6], Line | Closed); // the polygon is closed
    EXPECT_EQ(types[7], Start); // and the line does not join it

    // The outline of a polygon includes the closing edge from (35, 35) back to (5, 5).
    Bitmap canvas = makeCanvas(40, 40);
    const QPointF corners[] = {{5, 5}, {35, 5}, {35, 35}};
    GraphicsPath polygon;
    polygon.AddPolygon(corners, 3);
    Graphics(canvas).DrawPath(Pen(Color(255, 0, 0, 0), 2), polygon);
    EXPECT_EQ(pixelAt(canvas, 20, 20), QColor(Qt::black)); // on the closing diagonal
    EXPECT_EQ(pixelAt(canvas, 10, 30), QColor(Qt::white));

    // AddPath connects only when asked, and a closed figure stays closed.
    GraphicsPath other;
    other.AddLine(QPointF(10, 0), QPointF(20, 0));
    for (const bool connect : {true, false}) {
        GraphicsPath joined;
        joined.AddLine(QPointF(0, 0), QPointF(5, 0));
        joined.AddPath(other, connect);
        EXPECT_EQ(joined.GetPointCount(), 4);
        EXPECT_EQ(figures(joined), connect ? 1 : 2);
    }
    GraphicsPath ring;
    ring.AddEllipse(QRectF(0, 0, 10, 10));
    GraphicsPath after;
    after.AddPath(ring, true);
    after.AddLine(QPointF(50, 50), QPointF(60, 60));
    EXPECT_EQ(after.GetPathTypes()[after.GetPointCount() - 2], Start);
}

TEST(GraphicsPathCurves, CardinalSplinesUseATensionThirdOfTheNeighbourChord)
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

    // A closed curve wraps around, starts its own figure and closes.
    const QPointF square[] = {{0, 0}, {10, 0}, {10, 10}, {0, 10}};
    GraphicsPath closed;
    closed.AddLine(QPointF(-50, -50), QPointF(-40, -50));
    closed.AddClosedCurve(square, 4, 0.5f);
    const std::vector<QPointF> c = closed.GetPathPoints();
    ASSERT_EQ(c.size(), 2u + 13u);
    EXPECT_EQ(closed.GetPathTypes()[2], Start);
    EXPECT_EQ(closed.GetPathTypes().back(), Bezier | Closed);
    expectNear(c.back(), square[0]);
    expectNear(c[3], square[0] + 0.5 / 3 * (square[1] - square[3])); // looks back at the last point
    // Round, so it bulges beyond the square.
    GraphicsPath alone;
    alone.AddClosedCurve(square, 4, 0.5f);
    EXPECT_LT(alone.GetBounds().left(), 0.0);
    EXPECT_GT(alone.GetBounds().bottom(), 10.0);
}

TEST(GraphicsPathFill, VisibilityAndFillingFollowTheFillModeAndTransform)
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

    Bitmap canvas = makeCanvas(30, 30);
    path.SetFillMode(FillMode::Alternate);
    Graphics(canvas).FillPath(SolidBrush(Color(255, 0, 0, 255)), path);
    EXPECT_EQ(pixelAt(canvas, 5, 5), QColor(Qt::blue));
    EXPECT_EQ(pixelAt(canvas, 15, 15), QColor(Qt::white));

    path.SetFillMode(FillMode::Winding);
    path.Reset();
    EXPECT_EQ(path.GetPointCount(), 0);
    EXPECT_EQ(path.GetFillMode(), FillMode::Alternate);

    path.AddRectangle(QRectF(0, 0, 10, 20));
    path.Transform(Matrix(2, 0, 0, -1, 5, 100));
    EXPECT_EQ(path.GetPathPoints()[2], QPointF(25, 80));
    EXPECT_EQ(path.GetBounds(), QRectF(5, 80, 20, 20));
    EXPECT_TRUE(path.IsVisible(QPointF(10, 90)));
    EXPECT_FALSE(path.IsVisible(QPointF(2, 10)));
}
