#include "platform/CRect.h"

#include <gtest/gtest.h>

#include <climits>
#include <functional>
#include <ostream>

// Failures name the rectangle instead of dumping its bytes.
void PrintTo(const CRect& r, std::ostream* os)
{
    *os << "(" << r.left << ", " << r.top << ", " << r.right << ", " << r.bottom << ")";
}

// Coordinates straight from a damaged project reach the ends of the int range: what is worked out
// from them stops there instead of wrapping round to the other sign.
TEST(CRect, ExtentsAndCentresOfFarCornersStayInRange)
{
    struct Case {
        CRect rect;
        int width, height;
        CPoint centre;
    };
    const Case cases[] = {
        {{1766654052, 10, 1226863215, -10}, -539790837, -20, {1496758633, 0}},
        {{INT_MAX, INT_MIN, INT_MAX, INT_MIN}, 0, 0, {INT_MAX, INT_MIN}},
        {{INT_MIN, INT_MAX, INT_MAX, INT_MIN}, INT_MAX, INT_MIN, {0, 0}},
        {{INT_MAX, INT_MIN, INT_MIN, INT_MAX}, INT_MIN, INT_MAX, {0, 0}},
        // Halves truncate towards zero either side of it, as they always did.
        {{-3, 3, 0, 0}, 3, -3, {-1, 1}},
        {{-300, 200, 300, -200}, 600, -400, {0, 0}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.rect));
        EXPECT_EQ(c.rect.Width(), c.width);
        EXPECT_EQ(c.rect.Height(), c.height);
        EXPECT_EQ(c.rect.CenterPoint(), c.centre);
    }
    EXPECT_FALSE(CRect(-2000000000, -2000000000, 2000000000, 2000000000).IsRectEmpty());
}

TEST(CRect, EdgesMovedPastTheEndsOfTheRangeStopThere)
{
    using Change = std::function<CRect(CRect)>;
    const auto inflate = [](int dx, int dy) -> Change {
        return [=](CRect r) { r.InflateRect(dx, dy); return r; };
    };
    const auto offset = [](int dx, int dy) -> Change {
        return [=](CRect r) { r.OffsetRect(dx, dy); return r; };
    };
    const auto unite = [](CRect other) -> Change {
        return [=](CRect r) { CRect u; u.UnionRect(r, other); return u; };
    };
    struct Case {
        const char* what;
        CRect rect;
        Change change;
        CRect expected;
    };
    const CRect whole(INT_MIN, INT_MAX, INT_MAX, INT_MIN);
    const Case cases[] = {
        // Growing lowers top and raises bottom: in the label's y-up space they come closer.
        {"grown", whole, inflate(1, 1), {INT_MIN, INT_MAX - 1, INT_MAX, INT_MIN + 1}},
        {"shrunk", whole, inflate(-1, -1), {INT_MIN + 1, INT_MAX, INT_MAX - 1, INT_MIN}},
        {"grown by the range", {5, 5, 5, -5}, inflate(INT_MAX, INT_MIN),
         {5 - INT_MAX, INT_MAX, INT_MAX, INT_MIN}},
        {"moved up and right", {-10, 10, 10, -10}, offset(INT_MAX, INT_MAX),
         {INT_MAX - 10, INT_MAX, INT_MAX, INT_MAX - 10}},
        {"moved down and left", {-10, 10, 10, -10}, offset(INT_MIN, INT_MIN),
         {INT_MIN, INT_MIN + 10, INT_MIN + 10, INT_MIN}},
        {"moved whole", whole, offset(-1, 1), {INT_MIN, INT_MAX, INT_MAX - 1, INT_MIN + 1}},
        // Corners further apart than an int counts still make a rectangle with an area.
        {"united", {INT_MIN, INT_MIN, 0, 0}, unite({0, 0, INT_MAX, INT_MAX}),
         {INT_MIN, INT_MIN, INT_MAX, INT_MAX}},
    };
    for (const Case& c : cases)
        EXPECT_EQ(c.change(c.rect), c.expected) << c.what;
}
