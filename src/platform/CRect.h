#pragma once

#include "platform/CPoint.h"

#include <climits>

// A rectangle kept as drawn: in the label's y-up space top is normally greater than bottom,
// so code that needs left <= right and top <= bottom works on a normalised copy.
struct CRect {
    int left = 0;
    int top = 0;
    int right = 0;
    int bottom = 0;

    constexpr CRect() = default;
    constexpr CRect(int l, int t, int r, int b) : left(l), top(t), right(r), bottom(b) {}

    // Extents held at the ends of the int range: a damaged file's corners can lie further apart
    // than an int can count.
    constexpr int Width() const { return saturated((long long)right - left); }
    constexpr int Height() const { return saturated((long long)bottom - top); }
    constexpr CPoint TopLeft() const { return {left, top}; }
    constexpr CPoint BottomRight() const { return {right, bottom}; }
    // Summed in 64 bits: the mean of two ints always fits, their sum may not (a damaged file).
    constexpr CPoint CenterPoint() const
    {
        return {int(((long long)left + right) / 2), int(((long long)top + bottom) / 2)};
    }

    // True when the rectangle has no area: width or height not positive.
    constexpr bool IsRectEmpty() const { return Width() <= 0 || Height() <= 0; }
    // Half-open containment: left and top edges inside, right and bottom outside.
    constexpr bool PtInRect(CPoint p) const { return p.x >= left && p.x < right && p.y >= top && p.y < bottom; }

    static constexpr int saturated(long long value)
    {
        return value > INT_MAX ? INT_MAX : value < INT_MIN ? INT_MIN : int(value);
    }

    void NormalizeRect();
    CRect Normalized() const;
    void InflateRect(int dx, int dy);
    void OffsetRect(int dx, int dy);
    // Both set *this and answer whether the result is non-empty; inputs are taken as normalised.
    bool IntersectRect(const CRect& a, const CRect& b);
    bool UnionRect(const CRect& a, const CRect& b);

    friend constexpr bool operator==(const CRect&, const CRect&) = default;
};
