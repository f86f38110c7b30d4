#pragma once

// An integer extent: a width and a height.
struct CSize {
    int cx = 0;
    int cy = 0;

    constexpr CSize() = default;
    constexpr CSize(int w, int h) : cx(w), cy(h) {}
    friend constexpr bool operator==(const CSize&, const CSize&) = default;
};
