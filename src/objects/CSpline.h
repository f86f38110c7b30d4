#pragma once

#include "platform/CPoint.h"

#include <QPointF>
#include <vector>

// A smooth curve through a list of points, sampled into short straight steps. Curved polys use
// it for their bounding rectangle and for picking; it is not the curve the graphics layer draws
// for them (that one is a cardinal spline), and the margin round a poly's bounds covers the
// difference.
//
// Each segment between two consecutive points is a cubic Hermite piece
//     x(t) = ax s + x0 + bx p + cx q,  s = t^2 (3 - 2t),  p = (t - 1)^2 t,  q = t^2 (t - 1)
// where (ax, ay) is the segment's chord and (bx, by), (cx, cy) its tangents at the two ends.
// The tangent at each point comes from a tridiagonal system that asks for equal curvature on
// both sides of every inner point, the parameter of each segment being scaled by its length
// (k[i] = length of segment i / length of segment i + 1), and for no curvature at the two ends.
// The system is solved by exactly ten Jacobi sweeps, not to convergence: the curve is the one
// those ten sweeps give, and a point of it depends only on the points within a dozen of it.
//
// Degenerate input stays harmless: fewer than two points give no samples; a zero-length
// segment gets the neutral length ratio 1; values that overflow or are not numbers fall back to
// the chord, and every sample is clamped into the integer range.
class CSpline {
public:
    static constexpr int Iterations = 10;
    // Steps of one segment at most; a segment this long (8,192 units, 27 inches) lies far
    // beyond any label, and the limit keeps a damaged file from asking for gigabytes.
    static constexpr int MaxSteps = 1024;

    CSpline(const CPoint* points, int count);
    CSpline(const QPointF* points, int count);

    int GetPointCount() const { return m_n; }
    int GetSegmentCount() const { return m_n >= 2 ? m_n - 1 : 0; }
    // The solved tangent at a point, in the parameter of the segment that starts there.
    QPointF GetTangent(int point) const;
    // Steps of a segment: trunc(max(|trunc ax|, |trunc ay|) / 8), at least 1.
    int GetSteps(int segment) const;
    // Samples in all: the sum over the segments of (steps + 1).
    int GetCurveCount() const;
    // Appends all samples: for each segment its start point and then one point per step, so
    // the point where two segments meet appears twice.
    void GetCurve(std::vector<CPoint>& out) const;
    // Appends the samples of one segment.
    void AppendSegment(int segment, std::vector<CPoint>& out) const;

private:
    void Generate();
    CPoint Sample(int segment, float t) const;

    int m_n = 0;
    std::vector<float> m_x, m_y;
    std::vector<float> m_ax, m_ay; // chords
    std::vector<float> m_bx, m_by; // right-hand sides, then the solved tangents
    std::vector<float> m_cx, m_cy; // end tangents of each segment
    std::vector<float> m_k;        // length ratios of consecutive segments
    std::vector<float> m_mat0, m_mat1, m_mat2; // sub-, main and super-diagonal
};
