#include "GraphicsTestSupport.h"

#include "platform/graphics/SolidBrush.h"

#include <QLineF>

using namespace gfx;

namespace {

constexpr std::uint8_t Start = GraphicsPath::Start;
constexpr std::uint8_t Line = GraphicsPath::Line;
constexpr std::uint8_t Bezier = GraphicsPath::Bezier;
constexpr std::uint8_t Closed = GraphicsPath::CloseFlag;
using Types = std::vector<std::uint8_t>;

void expectNear(QPointF actual, QPointF expected, double tolerance = 1e-3)
{
    EXPECT_LT(QLineF(actual, expected).length(), tolerance)
        << actual.x() << "," << actual.y() << " is not " << expected.x() << "," << expected.y();
}

void expectBounds(const GraphicsPath& path, const QRectF& expected, double tolerance = 1e-3)
{
    expectNear(path.GetBounds().topLeft(), expected.topLeft(), tolerance);
    expectNear(path.GetBounds().bottomRight(), expected.bottomRight(), tolerance);
}

} // namespace

TEST(GraphicsPathArc, AnglesAreGeometricAndSweepsKeepTheirDirection)
{
    // Angles are geometric: the end points lie on the rays at those angles. From 200 degrees back
    // to 140 runs through the left end rather than the long way round; from -45 through 0, the
    // bottom and the left end, but not over the top (quarter Beziers off the axes bulge by a few
    // thousandths of the radius).
    const QRectF rect(0, 0, 200, 100);
    const struct {
        float start, sweep, end;
        QRectF bounds;
    } arcs[] = {{200, -60, 140, QRectF(QPointF(0, 20.574), QPointF(48.811, 92.953))},
                {-45, 270, -135, QRectF(QPointF(0, 5.279), QPointF(200, 100))}};
    for (const auto& a : arcs) {
        SCOPED_TRACE(a.start);
        GraphicsPath arc;
        arc.AddArc(rect, a.start, a.sweep);
        const double start = a.start > 180 ? a.start - 360 : a.start;
        EXPECT_NEAR(angleFrom(rect.center(), arc.GetPathPoints().front()), start, 1e-3);
        EXPECT_NEAR(angleFrom(rect.center(), arc.GetPathPoints().back()), a.end, 1e-3);
        expectBounds(arc, a.bounds, 0.05);
    }
}

TEST(GraphicsPathArc, ArcsJoinTheOpenFigureUnlessAFigureWasStarted)
{
    const QRectF rect(0, 0, 100, 100);
    for (const bool started : {false, true}) {
        GraphicsPath path;
        path.AddLine(QPointF(-10, 50), QPointF(0, 50));
        if (started)
            path.StartFigure();
        path.AddArc(rect, 0, 90);
        EXPECT_EQ(figuresOf(path), started ? 2 : 1);
        EXPECT_EQ(path.GetPathTypes()[2], started ? Start : Line);
        expectNear(path.GetPathPoints()[2], QPointF(100, 50)); // the arc's start
    }

    // The business-card disc: the circle between two chords, closed into one figure.
    const QRectF circle(-50, -50, 100, 100);
    GraphicsPath card;
    card.AddArc(circle, 30, -60);
    card.AddArc(circle, 210, -60);
    card.CloseFigure();
    EXPECT_EQ(figuresOf(card), 1);
    EXPECT_TRUE(card.GetPathTypes().at(card.GetPointCount() - 1) & Closed);
    expectBounds(card, QRectF(-50, -25, 100, 50)); // sin 30 * 50
    EXPECT_TRUE(card.IsVisible(QPointF(0, 0)));
    EXPECT_FALSE(card.IsVisible(QPointF(0, 40)));
}

TEST(GraphicsPathShapes, ClosedShapesNeverJoinWhatFollows)
{
    // An ellipse is a closed figure of thirteen points from 0 degrees, clockwise.
    GraphicsPath ellipse;
    ellipse.AddEllipse(QRectF(0, 0, 140, 70));
    const std::vector<QPointF> points = ellipse.GetPathPoints();
    ASSERT_EQ(points.size(), 13u);
    expectNear(points.front(), QPointF(140, 35));
    expectNear(points[3], QPointF(70, 70));
    expectNear(points.back(), points.front());
    EXPECT_EQ(ellipse.GetPathTypes().back(), Bezier | Closed);
    // The bounds are the curve's, not its control points'.
    expectBounds(ellipse, QRectF(0, 0, 140, 70));

    GraphicsPath path;
    path.AddRectangle(QRectF(10, 20, 30, 40));
    EXPECT_EQ(path.GetPathPoints(), (std::vector<QPointF>{{10, 20}, {40, 20}, {40, 60}, {10, 60}}));
    const QPointF triangle[] = {{0, 0}, {20, 0}, {0, 20}};
    path.AddPolygon(triangle, 3);
    path.AddLine(QPointF(100, 100), QPointF(110, 100));
    EXPECT_EQ(path.GetPathTypes(), (Types{Start, Line, Line, Line | Closed, Start, Line, Line | Closed, Start, Line}));

    // The outline of a polygon includes the closing edge from (35, 35) back to (5, 5).
    const Bitmap canvas = drawOn(40, 40, [](Graphics& g) {
        g.DrawPath(Pen(Color(255, 0, 0, 0), 2), polygonPath({{5, 5}, {35, 5}, {35, 35}}));
    });
    expectPixels(canvas, {{20, 20, Qt::black}, {10, 30, Qt::white}});

    // AddPath without connecting keeps the figures apart.
    GraphicsPath joined, other;
    joined.AddLine(QPointF(0, 0), QPointF(5, 0));
    other.AddLine(QPointF(10, 0), QPointF(20, 0));
    joined.AddPath(other, false);
    EXPECT_EQ(joined.GetPointCount(), 4);
    EXPECT_EQ(figuresOf(joined), 2);
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

    // A closed curve wraps around, starts its own figure, closes, and bulges beyond the square.
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
    EXPECT_GT(closed.GetBounds().bottom(), 10.0);
}

TEST(GraphicsPathFill, FiguresInsideOthersAreHolesAndResetEmptiesThePath)
{
    // Two squares one inside the other, both drawn the same way round.
    GraphicsPath path;
    path.AddRectangle(QRectF(0, 0, 30, 30));
    path.AddRectangle(QRectF(10, 10, 10, 10));
    const Bitmap canvas = drawOn(30, 30, [&](Graphics& g) { g.FillPath(SolidBrush(Color(255, 0, 0, 255)), path); });
    expectPixels(canvas, {{5, 5, Qt::blue}, {15, 15, Qt::white}});
    path.Reset();
    EXPECT_EQ(path.GetPointCount(), 0);
}

TEST(GraphicsPathPicking, RectanglesMeetTheFilledAreaByTheFillMode)
{
    // A ring under the alternate mode has a hole; the same ellipses under the winding mode,
    // both turned one way, fill it.
    GraphicsPath ring;
    ring.AddEllipse(QRectF(-100, -60, 200, 120));
    ring.AddEllipse(QRectF(-70, -30, 140, 60));
    GraphicsPath disc = ring;
    disc.SetFillMode(FillMode::Winding);
    // An open arc fills up to its chord.
    GraphicsPath arc;
    arc.AddArc(QRectF(-50, -50, 100, 100), 0, 90);

    const auto meets = [](const GraphicsPath& path, double x, double y, double size = 1) {
        return path.Intersects(QRectF(x, y, size, size));
    };
    EXPECT_FALSE(meets(ring, 0, 0));      // in the hole
    EXPECT_TRUE(meets(disc, 0, 0));
    EXPECT_TRUE(meets(ring, 0, 40));      // in the band
    EXPECT_TRUE(meets(ring, 69.5, 0));    // on the inner edge
    EXPECT_FALSE(meets(ring, 95, 55));    // inside the bounds, outside the ellipse
    EXPECT_TRUE(meets(ring, -500, -500, 1000)); // around it all
    EXPECT_TRUE(meets(arc, 30, 30));
    EXPECT_FALSE(meets(arc, 10, 5));      // beyond the chord
    EXPECT_FALSE(meets(GraphicsPath(), 0, 0, 1000));

    // Everywhere it answers as Qt's own, slower test of the filled path does, which flattens no
    // curves: a grid of small and larger probes over shapes of curves and straight edges.
    GraphicsPath star(FillMode::Alternate);
    const QPointF points[] = {{0, -90}, {53, 73}, {-86, -28}, {86, -28}, {-53, 73}};
    star.AddPolygon(points, 5);
    GraphicsPath rounded(FillMode::Winding);
    rounded.AddArc(QRectF(-80, -80, 60, 60), 180, 90);
    rounded.AddArc(QRectF(20, -80, 60, 60), 270, 90);
    rounded.AddLine(QPointF(80, 80), QPointF(-80, 80));
    for (const GraphicsPath* path : {&ring, &disc, &arc, &star, &rounded}) {
        int differing = 0;
        for (double size : {1.0, 7.0})
            for (double y = -110.25; y < 110; y += 3.5)
                for (double x = -110.25; x < 110; x += 3.5)
                    differing += path->Intersects(QRectF(x, y, size, size))
                                 != path->path().intersects(QRectF(x, y, size, size));
        EXPECT_EQ(differing, 0);
    }
}
