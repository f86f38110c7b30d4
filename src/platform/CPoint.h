#pragma once

// An integer point of the logical space (1/300 inch, y up) or of a device.
struct CPoint {
    int x = 0;
    int y = 0;

    constexpr CPoint() = default;
    constexpr CPoint(int px, int py) : x(px), y(py) {}
    friend constexpr bool operator==(const CPoint&, const CPoint&) = default;
};
