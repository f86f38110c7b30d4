#include "ShapeCanvas.h"
#include "TestSupport.h"

#include "document/CDrawDoc.h"
#include "platform/HandleImages.h"

#include <cmath>
#include <limits>

namespace {

const CRect Centred(-100, 100, 100, -100);

std::unique_ptr<CDrawRect> shape(int code, const CRect& position = Centred)
{
    ResetDefaultProperties();
    auto rect = std::make_unique<CDrawRect>(position);
    rect->m_shape = code;
    return rect;
}

// Draws the shape once, which builds the outline it is picked by.
CDrawRect& drawOnce(CDrawRect& rect)
{
    ShapeCanvas canvas;
    rect.Draw(canvas.graphics(), 300, 300, nullptr);
    return rect;
}

} // namespace

TEST(DrawRect, OutlinesOfRoundRectanglesAndArcs)
{
    // Corners are limited to half the shape: too large, or exactly its width, makes an ellipse;
    // the field keeps what was asked.
    auto rect = shape(CDrawRect::RoundRectangle, CRect(0, 0, 100, 60));
    for (const CPoint corner : {CPoint(40, 20), CPoint(500, 300), CPoint(100, 60)}) {
        rect->m_cornerSize = corner;
        const gfx::GraphicsPath& path = drawOnce(*rect).m_path;
        const bool ellipse = corner.x >= 100;
        EXPECT_EQ(rect->m_cornerSize, corner);
        EXPECT_EQ(path.GetBounds(), QRectF(0, 0, 100, 60));
        EXPECT_FALSE(path.IsVisible(ellipse ? QPointF(8, 8) : QPointF(1, 1))) << corner.x;
        EXPECT_TRUE(path.IsVisible(ellipse ? QPointF(50, 58) : QPointF(10, 5))) << corner.x;
    }

    // An arc sweeps clockwise from the start angle to the end.
    auto arc = shape(CDrawRect::Arc);
    arc->m_ringX = arc->m_ringY = 20;
    const struct { float start, end; QPointF inside, outside; } cases[] = {
        {90, 0, {60, 60}, {-60, 60}},    // the quarter between the positive axes
        {0, 90, {-60, 60}, {60, 60}},    // the long way round
        {90, 720, {60, 60}, {-60, -60}}, // an end beyond a turn is brought back
        {450, 0, {-60, -60}, {0, 0}},    // a start beyond a turn isn't: more than a turn
        {90, -1000, {-60, -60}, {0, 0}},
    };
    for (const auto& c : cases) {
        std::tie(arc->m_startAngle, arc->m_endAngle) = std::pair(c.start, c.end);
        drawOnce(*arc);
        EXPECT_TRUE(arc->m_path.IsVisible(c.inside)) << c.start << " " << c.end;
        EXPECT_FALSE(arc->m_path.IsVisible(c.outside)) << c.start << " " << c.end;
    }
    // Equal angles: two points joined by a radial line, no area.
    arc->m_startAngle = arc->m_endAngle = 30;
    drawOnce(*arc);
    const QPointF ray(std::cos(M_PI / 6), std::sin(M_PI / 6));
    EXPECT_EQ(arc->m_path.GetBounds(), QRectF(80 * ray, 100 * ray));
    EXPECT_FALSE(arc->m_path.IsVisible(90 * ray));
}

TEST(DrawRect, DegenerateShapesDrawAndEnd)
{
    const float nan = std::numeric_limits<float>::quiet_NaN(), inf = std::numeric_limits<float>::infinity();
    for (int code = 0; code <= 12; ++code) {
        for (const CRect& position : {CRect(0, 0, 0, 0), CRect(0, 50, 0, -50), CRect(-50, 0, 50, 0)}) {
            auto rect = shape(code, position);
            rect->m_cornerSize = CPoint(-40, 100000);
            rect->m_ringX = 1000;
            rect->m_fillKind = code % 5;
            rect->m_lineKind = 4;
            for (const auto& [start, end] : {std::pair{nan, 0.0f}, {0.0f, inf}, {-3e30f, 3e30f}, {1e9f, 1e9f + 5e3f}}) {
                rect->m_startAngle = start;
                rect->m_endAngle = end;
                drawOnce(*rect);
            }
        }
    }
}

TEST(DrawRect, PickingFollowsTheDrawnOutlineAndLinesAlongABand)
{
    auto ellipse = shape(CDrawRect::Ellipse);
    EXPECT_FALSE(picks(*ellipse, 0, 0)); // never drawn: no outline yet
    drawOnce(*ellipse);
    EXPECT_TRUE(picks(*ellipse, 0, 98));
    EXPECT_FALSE(ellipse->Intersects(CRect(80, 80, 120, 120))); // in the rectangle, outside the ellipse
    EXPECT_TRUE(ellipse->Intersects(CRect(50, 50, 120, 120)));
    auto halo = shape(CDrawRect::Halo), arc = shape(CDrawRect::Arc);
    EXPECT_TRUE(picks(drawOnce(*halo), -80, 0));
    EXPECT_FALSE(picks(*halo, 0, 0)); // the hole
    EXPECT_TRUE(picks(drawOnce(*arc), 60, 60));
    EXPECT_FALSE(picks(*arc, -60, 60));

    auto falling = shape(CDrawRect::Line, CRect(0, 100, 100, 0));
    falling->m_lineWidth = 4; // half-thickness (4 + 10) / 2 = 7
    auto rising = shape(CDrawRect::Line, CRect(0, 0, 100, 100)), dot = shape(CDrawRect::Line, CRect(5, 5, 5, 5));
    // Horizontal: the empty rectangle skips the overlap test; 5 to each side, far edge out.
    auto flat = shape(CDrawRect::ArrowLine, CRect(-100, 0, 100, 0));
    const struct { CDrawRect* line; CPoint at; bool picked; } cases[] = {
        {falling.get(), {53, 53}, true}, {falling.get(), {50, 60}, false}, {falling.get(), {20, 20}, false},
        {falling.get(), {20, 80}, true}, {rising.get(), {20, 20}, true},   {rising.get(), {20, 80}, false},
        {flat.get(), {0, 4}, true},      {flat.get(), {0, -5}, true},      {flat.get(), {0, 5}, false},
        {flat.get(), {120, 0}, false},   {dot.get(), {5, 5}, true},
    };
    for (const auto& c : cases)
        EXPECT_EQ(picks(*c.line, c.at.x, c.at.y), c.picked) << &c - cases;
    flat->m_lineWidth = 20;
    EXPECT_TRUE(picks(*flat, 0, 13));
}

TEST(DrawRect, HandlesOfEachShape)
{
    const int counts[] = {8, 9, 8, 11, 9, 8, 8, 8, 8, 2, 2};
    for (int code = 0; code <= 10; ++code)
        EXPECT_EQ(shape(code)->GetHandleCount(), counts[code]) << code;
    EXPECT_EQ(shape(CDrawRect::Line, CRect(10, 20, 110, 220))->GetHandle(2), CPoint(110, 220));

    auto round = shape(CDrawRect::RoundRectangle, CRect(0, 200, 300, 0));
    round->m_cornerSize = CPoint(60, 40);
    EXPECT_EQ(round->GetHandle(9), CPoint(270, 180));
    auto halo = shape(CDrawRect::Halo);
    std::tie(halo->m_startAngle, halo->m_ringX) = std::pair(0.0f, 30.0f);
    EXPECT_EQ(halo->GetHandle(9), CPoint(70, 0));
    halo->m_shape |= CDrawRect::AspectLock; // locked: always at 45 degrees
    halo->m_ringY = 30;
    EXPECT_EQ(halo->GetHandle(9), CPoint(49, 49));
    auto arc = shape(CDrawRect::Arc);
    arc->m_ringX = arc->m_ringY = 20;
    std::tie(arc->m_endAngle, arc->m_ringAngle) = std::pair(180.0f, 0.0f);
    EXPECT_EQ(arc->GetHandle(9), CPoint(0, 90)); // mid-ring at the start angle
    EXPECT_EQ(arc->GetHandle(10), CPoint(-90, 0));
    EXPECT_EQ(arc->GetHandle(11), CPoint(80, 0)); // on the inner ellipse
}

TEST(DrawRect, LockedResizeKeepsCentreAndAspectAndRingsStartAgain)
{
    auto ellipse = shape(CDrawRect::Ellipse | CDrawRect::AspectLock, CRect(-100, 50, 100, -50));
    ellipse->MoveHandleTo(3, CPoint(30, 80), nullptr); // nearer on x than on y: y decides
    EXPECT_EQ(ellipse->m_position, CRect(-160, 80, 160, -80));
    ellipse->MoveHandleTo(8, CPoint(-50, 10), nullptr); // x decides, whichever handle
    EXPECT_EQ(ellipse->m_position, CRect(-50, 25, 50, -25));
    auto rect = shape(CDrawRect::Rectangle, CRect(-100, 50, 100, -50));
    rect->MoveHandleTo(3, CPoint(30, 80), nullptr);
    EXPECT_EQ(rect->m_position, CRect(-100, 80, 30, -50));
    // A flat locked shape has an infinite aspect: its corners stop at the integer range.
    auto flat = shape(CDrawRect::Ellipse | CDrawRect::AspectLock, CRect(-100, 0, 100, 0));
    flat->MoveHandleTo(3, CPoint(10, 20), nullptr);
    const int most = std::numeric_limits<int>::max();
    EXPECT_EQ(flat->m_position, CRect(-most, 20, most, flat->m_position.bottom));

    // Rings start again at a sixteenth of the new size: 320 by 160, or 540 square when locked.
    for (const auto& [code, ring] : {std::pair(int(CDrawRect::Arc), std::pair(20.0f, 10.0f)),
                                     {CDrawRect::Halo, {20.0f, 10.0f}},
                                     {CDrawRect::Arc | CDrawRect::AspectLock, {33.0f, 33.0f}}}) {
        auto resized = shape(code, CRect(0, 100, 100, 0));
        resized->m_ringX = 5;
        resized->MoveHandleTo(5, CPoint(320, -60), nullptr);
        EXPECT_EQ(std::pair(resized->m_ringX, resized->m_ringY), ring) << code;
    }
}

TEST(DrawRect, ShapeHandlesReshape)
{
    CountingView view;
    auto round = shape(CDrawRect::RoundRectangle, CRect(0, 200, 300, 0));
    round->MoveHandleTo(9, CPoint(250, 170), &view);
    EXPECT_EQ(round->m_cornerSize, CPoint(100, 60));
    round->MoveHandleTo(9, CPoint(1000, 1000), &view); // one unit in from the corner at least
    EXPECT_EQ(round->m_cornerSize, CPoint(2, 2));
    round->MoveHandleTo(9, CPoint(-50, -50), &view); // the middle at most
    EXPECT_EQ(round->m_cornerSize, CPoint(300, 200));
    EXPECT_EQ(view.invalidations, 3);

    // Arc start turns the whole arc; the end moves alone; angles wrap to [0, 360).
    auto arc = shape(CDrawRect::Arc);
    arc->MoveHandleTo(9, CPoint(0, -50), nullptr);
    EXPECT_EQ(std::pair(arc->m_startAngle, arc->m_endAngle), std::pair(270.0f, 180.0f));
    arc->MoveHandleTo(10, CPoint(10, 0), nullptr);
    EXPECT_EQ(std::pair(arc->m_startAngle, arc->m_endAngle), std::pair(270.0f, 0.0f));
    auto wide = shape(CDrawRect::Arc, CRect(-200, 100, 200, -100));
    wide->MoveHandleTo(10, CPoint(200, 100), nullptr); // the ellipse's parameter, not the ray
    EXPECT_NEAR(wide->m_endAngle, 45, 1e-4);
    // The arc's ring handle works on its own angle.
    arc->m_shape |= CDrawRect::AspectLock;
    arc->MoveHandleTo(11, CPoint(0, 70), nullptr);
    EXPECT_FLOAT_EQ(arc->m_ringAngle, 90);
    EXPECT_NEAR(arc->m_ringY, 30, 1e-4);
    EXPECT_FLOAT_EQ(arc->m_startAngle, 270);

    // Halo ring, unlocked: the angle is forced to 45 and the ring held to 0 .. half the size.
    auto halo = shape(CDrawRect::Halo);
    halo->MoveHandleTo(9, CPoint(50, 50), nullptr);
    EXPECT_FLOAT_EQ(halo->m_startAngle, 45);
    EXPECT_NEAR(halo->m_ringX, 100 - 50 * std::sqrt(2.0), 1e-3);
    halo->MoveHandleTo(9, CPoint(300, 300), nullptr);
    EXPECT_FLOAT_EQ(halo->m_ringX, 0);
    halo->MoveHandleTo(9, CPoint(-300, -300), nullptr);
    EXPECT_FLOAT_EQ(halo->m_ringX, 100);
    // Locked: the angle comes from the point; 0 / sin 0 can't be computed and is held at 0.
    halo->m_shape |= CDrawRect::AspectLock;
    halo->MoveHandleTo(9, CPoint(60, 0), nullptr);
    EXPECT_EQ(std::tuple(halo->m_startAngle, halo->m_ringX, halo->m_ringY), std::tuple(0.0f, 40.0f, 0.0f));
}

TEST(DrawRect, LineHandlesSnapWithAltAndKeep45DegreesWithShift)
{
    // The keys are the view's; without a view none is held.
    CountingView view;
    auto line = shape(CDrawRect::Line, CRect(0, 0, 100, 0));
    line->MoveHandleTo(2, CPoint(123, 77), nullptr);
    EXPECT_EQ(line->m_position, CRect(0, 0, 123, 77));
    {
        // Shift: about the other end, to the nearest of the eight directions.
        view.keys = Qt::ShiftModifier;
        const std::pair<CPoint, CPoint> cases[] = {
            {{100, 10}, {100, 0}},   {{100, 90}, {95, 95}},     {{10, 100}, {0, 100}},
            {{-90, 100}, {-95, 95}}, {{-100, -10}, {-100, 0}},  {{-90, -100}, {-95, -95}},
            {{5, -100}, {0, -100}},  {{100, -80}, {90, -90}},
        };
        line->m_position = CRect(0, 0, 100, 0);
        for (const auto& [to, expected] : cases) {
            line->MoveHandleTo(2, to, &view);
            EXPECT_EQ(line->GetHandle(2), expected) << to.x << "," << to.y;
        }
        line->m_position = CRect(0, 0, 100, 100);
        line->MoveHandleTo(1, CPoint(20, 30), &view);
        EXPECT_EQ(line->GetHandle(1), CPoint(25, 25));
    }
    {
        // Alt: toward zero to the label's step, 4.7 inches at 96 to the inch over 96 / 10: 50.
        view.keys = Qt::AltModifier;
        CDrawDoc doc;
        auto* snapped = static_cast<CDrawRect*>(doc.Add(shape(CDrawRect::Line, CRect(0, 0, 100, 0))));
        snapped->MoveHandleTo(2, CPoint(123, 77), &view);
        EXPECT_EQ(snapped->GetHandle(2), CPoint(100, 50));
        snapped->MoveHandleTo(1, CPoint(-123, -49), &view);
        EXPECT_EQ(snapped->GetHandle(1), CPoint(-100, 0));
    }
}

TEST(DrawRect, CloneAndCopyKeepTheShapeButNotTheRingAngleOrCaches)
{
    auto arc = shape(CDrawRect::Arc | CDrawRect::AspectLock, CRect(0, 100, 200, 0));
    arc->m_cornerSize = CPoint(11, 12);
    std::tie(arc->m_endAngle, arc->m_ringY, arc->m_ringAngle) = std::tuple(14.0f, 16.0f, 17.0f);
    drawOnce(*arc);
    const auto clone = arc->Clone();
    const auto& copy = dynamic_cast<const CDrawRect&>(*clone);
    EXPECT_EQ(stored(*clone), stored(*arc));
    EXPECT_TRUE(copy.m_ringAngle == 45 && copy.m_path.IsEmpty());
    auto target = shape(CDrawRect::Rectangle, CRect(5, 5, 6, 6));
    target->CopyProperties(*arc);
    EXPECT_EQ(target->m_position, CRect(5, 5, 6, 6));
    target->m_position = arc->m_position;
    EXPECT_EQ(stored(*target), stored(*arc));
}

TEST(DrawRect, FitToPictureShowsOnePixelPerUnit)
{
    TestFolder folder;
    auto picture = shape(CDrawRect::AspectLock, CRect(10, 20, 10, 20));
    picture->m_pictureFile = folder.path() + "/photo.png";
    twoBandPicture(64, 48).save(picture->m_pictureFile);
    picture->FitToPicture();
    EXPECT_EQ(picture->m_position, CRect(10, 20, 74, -28));
    EXPECT_DOUBLE_EQ(picture->m_aspect, 64.0 / 48.0);
    auto missing = shape(CDrawRect::AspectLock, CRect(10, 20, 30, 0));
    missing->m_pictureFile = folder.path() + "/none.png";
    missing->FitToPicture();
    EXPECT_EQ(missing->m_position, CRect(10, 20, 10, 20));
}

TEST(DrawRect, TrackerShowsTheArcRingAndHandleGlyphs)
{
    auto tracker = [](CDrawRect& rect, int state) {
        ShapeCanvas canvas;
        rect.DrawTracker(canvas.graphics(), state, 300, 300);
        return canvas.image();
    };
    auto arc = shape(CDrawRect::Arc, CRect(-80, 80, 80, -80));
    arc->m_ringX = arc->m_ringY = 20;
    const CPoint ring = arc->GetHandle(11);
    const QPoint squareEdge = ShapeCanvas::device(ring.x - 10, ring.y);
    HandleImages::Release();
    const QImage plain = tracker(*arc, 2);
    EXPECT_GT(countPixels(plain, QColor(0, 0, 255), 60), 100); // the dotted ring
    EXPECT_TRUE(near(plain.pixel(squareEdge), Qt::black, 40)); // no glyph: the squares
    EXPECT_TRUE(near(plain.pixel(squareEdge - QPoint(2, 0)), Qt::white));
    EXPECT_EQ(countPixels(tracker(*shape(0, CRect(-80, 80, 80, -80)), 2), QColor(0, 0, 255), 60), 0);
    EXPECT_EQ(countPixels(tracker(*arc, 0), Qt::white), 200 * 200);

    if (!HandleImages::Load())
        GTEST_SKIP() << "handle pictures not available";
    // A glyph ends with the world transform reset: a mirror left by a metafile is gone.
    ShapeCanvas canvas;
    canvas.graphics().SetTransform(gfx::Matrix(1, 0, 0, -1, 0, 0));
    arc->DrawTracker(canvas.graphics(), 1, 300, 300);
    EXPECT_TRUE(canvas.graphics().GetTransform().IsIdentity());
    EXPECT_FALSE(near(tracker(*arc, 1).pixel(squareEdge), Qt::black, 40));
    HandleImages::Release();
}
