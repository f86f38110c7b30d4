#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "document/CDrawDoc.h"
#include "objects/CDrawPoly.h"
#include "objects/CSpline.h"

#include <algorithm>
#include <cmath>

namespace {

CRect withFreshDefaults()
{
    ResetDefaultProperties();
    return CRect(0, 0, 0, 0);
}

// A poly of the kind with the points added one by one, as the tools add them.
class Poly : public CDrawPoly {
public:
    Poly(int kind, const std::vector<CPoint>& points) : CDrawPoly(withFreshDefaults())
    {
        m_polyKind = std::uint8_t(kind);
        for (const CPoint& p : points)
            AddPoint(p, nullptr);
    }
};

CPoint lowest(const std::vector<CPoint>& points)
{
    return *std::min_element(points.begin(), points.end(), [](CPoint a, CPoint b) { return a.y < b.y; });
}

const std::vector<CPoint> U = {{0, 100}, {0, 0}, {100, 0}, {100, 100}};
const std::vector<CPoint> Square = {{-50, -50}, {50, -50}, {50, 50}, {-50, 50}};

} // namespace

TEST(DrawPoly, AddPointSkipsRepeatsGrowsByTenAndRefits)
{
    CountingView view;
    Poly poly(CDrawPoly::Polyline, {});
    poly.AddPoint(CPoint(10, 10), &view);
    EXPECT_EQ(poly.m_position, CRect(-10, -10, 30, 30));
    poly.AddPoint(CPoint(10, 10), &view); // a repeat: nothing at all
    EXPECT_EQ(poly.GetPointCount(), 1);
    EXPECT_EQ(view.invalidations, 2); // old and new place, once
    for (int i = 2; i <= 10; ++i)
        poly.AddPoint(CPoint(i * 100, 5), nullptr);
    poly.AddPoint(CPoint(1000, 5), nullptr); // full: grows before the repeat is noticed
    EXPECT_EQ(poly.GetPointCount(), 10);
    EXPECT_EQ(poly.GetPointCapacity(), 20);
    EXPECT_EQ(poly.GetHandle(2), CPoint(200, 5));
    EXPECT_EQ(poly.HitTest(CPoint(300, 0), nullptr, true), 3);

    // Bounds come from the vertices, or from the spline of a curve, which sags below the U.
    Poly polygon(CDrawPoly::Polygon, U), curve(CDrawPoly::Curve, U), closed(CDrawPoly::ClosedCurve, U);
    EXPECT_EQ(polygon.m_position, CRect(-20, -20, 120, 120));
    std::vector<CPoint> samples;
    CSpline(U.data(), 4).GetCurve(samples);
    EXPECT_EQ(curve.GetSplinePoints(), samples);
    ASSERT_LT(lowest(samples).y, 0);
    EXPECT_EQ(curve.m_position.top, lowest(samples).y - 20);
    EXPECT_EQ(closed.m_position, curve.m_position);
    Poly two(CDrawPoly::Curve, {{0, 0}, {100, 50}}); // no spline yet
    EXPECT_EQ(two.m_position, CRect(-20, -20, 120, 70));
    curve.m_position = CRect(0, 0, 1, 1);
    EXPECT_TRUE(curve.RecalcBounds(nullptr));
    EXPECT_FALSE(curve.RecalcBounds(nullptr));
}

TEST(DrawPoly, AppendedPointsGiveTheSameSplineAsAFreshOne)
{
    // AddPoint samples only the end of the curve again; at every length the result must be the
    // curve computed from scratch. Long uneven strides make the tangents matter.
    std::vector<CPoint> stroke;
    for (int i = 0; i < 90; ++i)
        stroke.emplace_back(i * 45 + (i * 37) % 50, int(300 * std::sin(i * 0.7)) + (i * 53) % 70);
    Poly grown(CDrawPoly::Curve, {});
    for (size_t n = 1; n <= stroke.size(); ++n) {
        grown.AddPoint(stroke[n - 1], nullptr);
        Poly fresh(CDrawPoly::Curve, {});
        fresh.SetPoints(std::vector<CPoint>(stroke.begin(), stroke.begin() + long(n)), int(n));
        fresh.RecalcBounds(nullptr);
        ASSERT_EQ(grown.GetSplinePoints(), fresh.GetSplinePoints()) << n << " points";
        ASSERT_EQ(grown.m_position, fresh.m_position) << n << " points";
    }
}

TEST(DrawPoly, EditsKeepTheMinimumOfTheKindAndMoveWithoutScaling)
{
    for (int kind : {CDrawPoly::Polygon, CDrawPoly::ClosedCurve, CDrawPoly::Polyline, CDrawPoly::Curve}) {
        SCOPED_TRACE(kind);
        const bool closed = kind == CDrawPoly::Polygon || kind == CDrawPoly::ClosedCurve;
        Poly poly(kind, {{0, 0}, {100, 0}, {300, 0}, {300, 100}});
        poly.RemoveSelectedPoint(nullptr); // nothing selected
        poly.m_selectedPoint = 4;
        poly.RemoveSelectedPoint(nullptr);
        ASSERT_EQ(poly.GetPointCount(), 3);
        EXPECT_EQ(poly.m_selectedPoint, -1); // no handle 4 any more
        poly.m_selectedPoint = 2;
        poly.RemoveSelectedPoint(nullptr);
        EXPECT_EQ(poly.GetPointCount(), closed ? 3 : 2);
        if (!closed) {
            EXPECT_EQ(poly.m_position, CRect(-20, -20, 320, 20)); // refitted
        }
    }

    CountingView view;
    Poly poly(CDrawPoly::Polygon, {{0, 0}, {100, 0}, {100, 100}});
    // A rectangle of another size: the points follow its left and top only.
    poly.MoveTo(CRect(0, 10, 500, 510), &view);
    poly.MoveTo(CRect(0, 10, 500, 510), &view); // no change, no repaint
    EXPECT_EQ(poly.GetPoints(), (std::vector<CPoint>{{20, 30}, {120, 30}, {120, 130}}));
    EXPECT_EQ(view.invalidations, 2);
    poly.Offset(-20, -30);
    EXPECT_EQ(poly.m_position, CRect(-20, -20, 480, 480));
    EXPECT_EQ(poly.GetPoint(0), CPoint(0, 0));

    // Picking follows the moved points of a curve, and of its clone.
    Poly curve(CDrawPoly::ClosedCurve, {{0, 0}, {100, 50}, {200, 0}});
    curve.Offset(1000, 0);
    EXPECT_FALSE(picks(curve, 100, 50));
    curve.m_selectedPoint = 2;
    const std::unique_ptr<CDrawObj> copy = curve.Clone();
    auto& clone = dynamic_cast<CDrawPoly&>(*copy);
    EXPECT_EQ(stored(clone), stored(curve));
    EXPECT_EQ(clone.GetPointCapacity(), 10);
    EXPECT_EQ(clone.m_selectedPoint, -1);
    EXPECT_TRUE(picks(clone, 1100, 50));
}

TEST(DrawPoly, DraggingAVertexHonoursAltAndShift)
{
    CountingView view;
    Poly poly(CDrawPoly::Polyline, {{0, 0}, {100, 0}, {100, 100}});
    poly.MoveHandleTo(3, CPoint(100, 100), &view); // already there: not even a repaint
    EXPECT_EQ(view.invalidations, 0);
    poly.MoveHandleTo(3, CPoint(300, 130), &view);
    EXPECT_EQ(poly.m_position, CRect(-20, -20, 320, 150));
    poly.MoveHandleTo(4, CPoint(1, 1), &view); // no such handle
    {
        // Shift, held in the view, holds a vertex about the one before; the first one an open
        // poly holds about the second, a closed one about the last.
        view.keys = Qt::ShiftModifier;
        poly.MoveHandleTo(3, CPoint(160, 70), &view);
        EXPECT_EQ(poly.GetPoint(2), CPoint(165, 65));
        poly.MoveHandleTo(1, CPoint(10, 5), &view);
        EXPECT_EQ(poly.GetPoint(0), CPoint(10, 0));
        Poly polygon(CDrawPoly::Polygon, {{0, 0}, {100, 0}, {100, 100}});
        polygon.MoveHandleTo(1, CPoint(10, 95), &view);
        EXPECT_EQ(polygon.GetPoint(0), CPoint(10, 100));
        Poly single(CDrawPoly::Polygon, {{0, 0}});
        single.MoveHandleTo(1, CPoint(33, 44), &view);
        EXPECT_EQ(single.GetPoint(0), CPoint(33, 44));
    }
    {
        // Alt: toward zero to the label's step at the view's resolution, 4.7 inches at 192 to
        // the inch over 192 / 10: 47.
        view.keys = Qt::AltModifier;
        view.resolution = 192;
        CDrawDoc doc;
        auto* snapped = static_cast<CDrawPoly*>(
            doc.Add(std::make_unique<Poly>(CDrawPoly::Polyline, std::vector<CPoint>{{0, 0}, {100, 0}})));
        snapped->MoveHandleTo(2, CPoint(123, 77), &view);
        EXPECT_EQ(snapped->GetPoint(1), CPoint(94, 47));
    }
}

TEST(DrawPoly, PicksByAreaOrByBandsAsTheKindSays)
{
    // An L, by area (the next test holds the alternate rule): a net drawn backwards reaches it,
    // one of no width doesn't.
    Poly l(CDrawPoly::Polygon, {{0, 0}, {100, 0}, {100, 40}, {40, 40}, {40, 100}, {0, 100}});
    EXPECT_TRUE(l.Intersects(CRect(90, 90, 30, 30)));
    EXPECT_FALSE(l.Intersects(CRect(20, 20, 20, 40)));

    // A polyline: bands (1 + 10) / 2 = 5 to either side, no area and no closing segment.
    Poly line(CDrawPoly::Polyline, {{0, 0}, {200, 0}, {200, 200}});
    const std::pair<CPoint, bool> probes[] = {
        {{100, 3}, true}, {{100, -4}, true}, {{100, 8}, false}, {{197, 100}, true}, {{100, 97}, false}};
    for (const auto& [at, picked] : probes)
        EXPECT_EQ(picks(line, at.x, at.y), picked) << at.x << "," << at.y;
    line.m_lineWidth = 20;
    EXPECT_TRUE(picks(line, 100, 12));
    Poly falling(CDrawPoly::Polyline, {{0, 100}, {100, 0}});
    EXPECT_TRUE(picks(falling, 46, 52));
    EXPECT_FALSE(picks(falling, 40, 40));
    // A slanted segment picks only within the rectangle of its ends, as a line object does:
    // (100, 2) lies in the band, beside the end and outside that rectangle.
    EXPECT_TRUE(picks(falling, 99, 0));
    EXPECT_FALSE(picks(falling, 100, 2));

    // Curves: along the spline, which sags away from the segments; a closed curve also by area.
    Poly curve(CDrawPoly::Curve, U), closed(CDrawPoly::ClosedCurve, U), polyline(CDrawPoly::Polyline, U);
    const CPoint low = lowest(curve.GetSplinePoints());
    ASSERT_LT(low.y, -8);
    EXPECT_TRUE(picks(curve, low.x, low.y) && picks(closed, low.x, low.y));
    EXPECT_FALSE(picks(polyline, low.x, low.y));
    EXPECT_FALSE(picks(curve, 50, 50));
    EXPECT_TRUE(picks(closed, 50, 50));
    Poly two(CDrawPoly::Curve, {{0, 0}, {100, 0}}); // drawn straight, but without a spline
    EXPECT_FALSE(picks(two, 50, 0));
}

TEST(DrawPoly, AreaPickingAgreesWithTheWholePolygonsRegion)
{
    // Picking cuts away the parts of the polygon far from the probe; the answer must stay that
    // of the whole polygon's region, for tangled shapes and probes of every size.
    unsigned seed = 12345;
    auto next = [&seed](int range) {
        seed = seed * 1103515245u + 12345u;
        return int((seed >> 8) % unsigned(range));
    };
    for (int shape = 0; shape < 12; ++shape) {
        Poly poly(CDrawPoly::Polygon, {});
        QPolygon whole;
        for (int i = 0; i < 60; ++i) {
            const CPoint p(next(400) - 200, next(400) - 200);
            poly.AddPoint(p, nullptr);
            whole.append(QPoint(p.x, p.y));
        }
        const QRegion region(whole, Qt::OddEvenFill);
        for (int probe = 0; probe < 150; ++probe) {
            const int size = probe % 4 == 0 ? 1 + next(150) : 1 + next(4);
            const int x = next(460) - 230, y = next(460) - 230;
            EXPECT_EQ(poly.Intersects(CRect(x, y, x + size, y + size)), region.intersects(QRect(x, y, size, size)))
                << "shape " << shape << " probe " << x << "," << y << " size " << size;
        }
    }
}

TEST(DrawPoly, EachKindIsFilledAndStrokedAsItSaysAndTheTrackerMarksTheSelectedVertex)
{
    // Red inside, a black outline 4 wide; visibility bits and arrow heads mean nothing.
    auto render = [](int kind) {
        Poly poly(kind, Square);
        poly.m_flags = 0;
        poly.m_fillColor1 = gfx::Color(255, 255, 0, 0);
        poly.m_lineWidth = 4;
        poly.m_endArrow = 20;
        poly.m_endArrowSize = 8;
        const QImage image = drawn(poly);
        return [image](int x, int y) { return image.pixel(ShapeCanvas::device(x, y)); };
    };
    const QColor red(255, 0, 0), black(0, 0, 0), white(255, 255, 255);
    const auto polygon = render(CDrawPoly::Polygon), polyline = render(CDrawPoly::Polyline),
               curve = render(CDrawPoly::Curve), closed = render(CDrawPoly::ClosedCurve);
    EXPECT_TRUE(near(polygon(0, 0), red) && near(closed(0, 0), red));
    EXPECT_TRUE(near(polygon(-50, 0), black)); // the closing edge
    EXPECT_TRUE(near(polyline(0, 0), white) && near(polyline(-50, 0), white) && near(curve(0, 0), white));
    EXPECT_TRUE(near(polyline(50, 0), black));
    EXPECT_TRUE(near(polyline(-56, 50), white)); // the end stays flat

    Poly poly(CDrawPoly::Polyline, {{20, 20}, {60, 20}, {60, 60}});
    poly.m_selectedPoint = 2;
    gfx::Bitmap bitmap(100, 100);
    {
        gfx::Graphics graphics(bitmap);
        poly.DrawTracker(graphics, 0, 300, 300);
        EXPECT_EQ(bitmap.image().pixel(60, 20), 0u);
        poly.DrawTracker(graphics, 2, 300, 300);
    }
    const QImage image = bitmap.image().convertToFormat(QImage::Format_ARGB32);
    EXPECT_EQ(image.pixel(60, 20), qRgb(255, 0, 0)); // filled red
    EXPECT_EQ(image.pixel(48, 20), qRgb(0, 0, 255)); // framed blue
    EXPECT_EQ(qAlpha(image.pixel(20, 20)), 0);        // the others hollow, black in white
    EXPECT_EQ(image.pixel(10, 20), qRgb(0, 0, 0));
    EXPECT_EQ(image.pixel(8, 20), qRgb(255, 255, 255));
}

TEST(DrawPoly, DegenerateShapesAndHugeStrokesDoNoHarm)
{
    auto exercise = [](CDrawPoly& poly, int handle) {
        ShapeCanvas canvas;
        poly.Draw(canvas.graphics(), 300, 300, nullptr);
        poly.DrawTracker(canvas.graphics(), 1, 300, 300);
        poly.MoveHandleTo(handle, CPoint(3, 3), nullptr);
        poly.m_selectedPoint = handle;
        poly.RemoveSelectedPoint(nullptr);
    };
    for (int kind = 0; kind <= 4; ++kind) { // 4: a kind no tool makes
        Poly none(kind, {}), one(kind, {{5, 5}}), stacked(kind, {});
        stacked.SetPoints({{0, 0}, {0, 0}, {0, 0}, {30, 0}, {30, 0}, {0, 0}}, 0);
        EXPECT_EQ(stacked.GetPointCapacity(), 6);
        stacked.RecalcBounds(nullptr);
        for (Poly* poly : {&none, &one, &stacked}) {
            poly->Intersects(CRect(-1000, -1000, 1000, 1000));
            exercise(*poly, 1);
        }
        EXPECT_EQ(none.GetHandle(1), CPoint(0, 0));
        EXPECT_FALSE(picks(none, 0, 0));
    }

    // A hand-drawn scribble of 100,000 points, a vertex about every 12 units, in every kind.
    std::vector<CPoint> stroke;
    double angle = 0;
    for (int i = 0; i < 100000; ++i) {
        const double radius = 100 + i * 0.02;
        angle += 12.0 / radius;
        stroke.emplace_back(int(radius * std::cos(angle)), int(radius * std::sin(angle)));
    }
    for (int kind : {CDrawPoly::Polygon, CDrawPoly::Polyline, CDrawPoly::Curve, CDrawPoly::ClosedCurve}) {
        Poly poly(kind, stroke);
        ASSERT_EQ(poly.GetPointCount(), 100000);
        const CPoint last = stroke.back();
        EXPECT_TRUE(poly.Intersects(CRect(last.x - 5, last.y - 5, last.x + 5, last.y + 5))) << kind;
        exercise(poly, 500);
    }
}
