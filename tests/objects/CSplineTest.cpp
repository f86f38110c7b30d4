#include "objects/CSpline.h"

#include <gtest/gtest.h>

#include <climits>
#include <cmath>
#include <limits>
#include <vector>

namespace {

std::vector<CPoint> samplesOf(const CSpline& spline)
{
    std::vector<CPoint> out;
    spline.GetCurve(out);
    return out;
}

// A sample is the curve's value truncated toward zero; where the exact value lies within a
// hair of an integer, float rounding may land on either side.
void expectTruncated(int sample, double exact, int index)
{
    if (std::abs(exact - std::round(exact)) < 1e-3)
        EXPECT_NEAR(sample, exact, 1.0) << "sample " << index;
    else
        EXPECT_EQ(sample, int(std::trunc(exact))) << "sample " << index << ", exact " << exact;
}

// Three points evenly on a line, chord a: the tangent system (2 B0 + B1 = 3a, B0 + 4 B1 + B2 = 6a,
// B1 + 2 B2 = 3a) is solved by B = a. From the start 1.5 a each Jacobi sweep halves the error and
// flips its sign, so ten sweeps leave B = a + a/2 (-1/2)^10 and a deviation (B - a) t (t - 1)(2t - 1).
double evenLineAt(double chord, double t)
{
    return chord * t + chord / 2 * std::pow(-0.5, 10) * t * (t - 1) * (2 * t - 1);
}

} // namespace

TEST(Spline, SamplesEachSegmentByStepsOfItsLongerAxis)
{
    EXPECT_EQ(CSpline(static_cast<const CPoint*>(nullptr), 0).GetCurveCount(), 0);
    const CPoint one[] = {{5, 7}};
    EXPECT_EQ(CSpline(one, 1).GetCurveCount(), 0);
    // Two points: a straight line, 400 / 8 steps, no wobble along it.
    const CPoint two[] = {{0, 0}, {400, 0}};
    const std::vector<CPoint> line = samplesOf(CSpline(two, 2));
    ASSERT_EQ(line.size(), 51u);
    EXPECT_EQ(line.back(), CPoint(400, 0));
    for (size_t i = 1; i < line.size(); ++i)
        EXPECT_TRUE(line[i].y == 0 && line[i].x >= line[i - 1].x) << i;

    const CPoint points[] = {{0, 0}, {3, 100}, {-47, 90}, {-47, 97}};
    const CSpline spline(points, 4);
    // 100 / 8, |-50| / 8, and 7 / 8 held to at least one.
    EXPECT_EQ((std::vector<int>{spline.GetSteps(0), spline.GetSteps(1), spline.GetSteps(2)}),
              (std::vector<int>{12, 6, 1}));
    const std::vector<CPoint> samples = samplesOf(spline);
    ASSERT_EQ(samples.size(), size_t(spline.GetCurveCount()));
    ASSERT_EQ(samples.size(), 13u + 7u + 2u);
    // Each segment starts with its own first point, so the joints appear twice.
    EXPECT_EQ((std::vector<CPoint>{samples[12], samples[13], samples[20], samples[21]}),
              (std::vector<CPoint>{{3, 100}, {3, 100}, {-47, 90}, {-47, 97}}));
}

TEST(Spline, ArchMatchesTheAnalyticCurveAfterTenSweeps)
{
    // Chords (100, 100) and (100, -100): across, an even line; up, the start (150, 0, -150) is the
    // exact solution, so y = 150 t - 50 t^3 on the first segment and its mirror on the second.
    const CPoint points[] = {{0, 0}, {100, 100}, {200, 0}};
    const CSpline spline(points, 3);
    for (int i = 0; i < 3; ++i) {
        EXPECT_NEAR(spline.GetTangent(i).x(), 100 + 50 * std::pow(-0.5, 10), 1e-4) << i;
        EXPECT_NEAR(spline.GetTangent(i).y(), 150 - 150 * i, 1e-4) << i;
    }
    const std::vector<CPoint> samples = samplesOf(spline);
    ASSERT_EQ(samples.size(), 26u); // 12 steps + 1, twice
    for (int i = 0; i <= 12; ++i) {
        const double t = i / 12.0, u = 1 - t;
        expectTruncated(samples[size_t(i)].x, evenLineAt(100, t), i);
        expectTruncated(samples[size_t(i)].y, 150 * t - 50 * t * t * t, i);
        expectTruncated(samples[size_t(13 + i)].x, 100 + evenLineAt(100, t), 13 + i);
        expectTruncated(samples[size_t(13 + i)].y, 150 * u - 50 * u * u * u, 13 + i);
    }
}

TEST(Spline, SegmentRatiosAndTheResidueOfTenSweepsShowOnLongLines)
{
    // Chords of 100,000: the error left by ten sweeps (48.8) bends the samples up to 4.7 units off
    // uniform speed; a solver run to convergence, or one sweep more or less, lands units away.
    const CPoint points[] = {{0, 0}, {100000, 0}, {200000, 0}};
    const CSpline spline(points, 3);
    const int steps = spline.GetSteps(0);
    ASSERT_EQ(steps, CSpline::MaxSteps); // 12,500 asked for, held to the limit
    const std::vector<CPoint> samples = samplesOf(spline);
    for (int i : {100, 216, 400, 800, 950})
        EXPECT_NEAR(samples[size_t(i)].x, evenLineAt(100000, double(i) / steps), 1.0) << i;
    EXPECT_GT(samples[216].x - 100000.0 * 216 / steps, 3.0); // the residue itself

    // Chords of 100 and 200 on one line: scaled by segment length, the tangents are the chords, a
    // uniform motion; wrong ratios bunch the samples (2 for 0.5 puts the first middle at x = 12).
    const CPoint uneven[] = {{0, 0}, {100, 0}, {300, 0}};
    const std::vector<CPoint> even = samplesOf(CSpline(uneven, 3));
    ASSERT_EQ(even.size(), size_t(12 + 1 + 25 + 1));
    for (int i = 0; i <= 12; ++i)
        EXPECT_NEAR(even[size_t(i)].x, 100.0 * i / 12, 1.0) << i;
    for (int i = 0; i <= 25; ++i)
        EXPECT_NEAR(even[size_t(13 + i)].x, 100 + 200.0 * i / 25, 1.0) << 13 + i;
}

TEST(Spline, DegenerateInputStaysFiniteAndNearTheChord)
{
    // Coincident neighbours: a zero-length segment must not divide by zero.
    const CPoint repeated[] = {{0, 0}, {0, 0}, {100, 0}, {100, 0}, {100, 0}, {200, 50}};
    for (const CPoint& p : samplesOf(CSpline(repeated, 6)))
        EXPECT_TRUE(std::abs(p.x) < 1000 && std::abs(p.y) < 1000);

    // A point that is not a number poisons the tangents near it; the samples fall back to the
    // chord, and segments with two good ends stay on it.
    const double nan = std::numeric_limits<double>::quiet_NaN();
    const QPointF broken[] = {{0, 0}, {nan, nan}, {100, 0}, {200, 0}, {300, 0}};
    const CSpline poisoned(broken, 5);
    std::vector<CPoint> last;
    poisoned.AppendSegment(3, last);
    ASSERT_EQ(last.size(), size_t(poisoned.GetSteps(3) + 1));
    for (const CPoint& p : last)
        EXPECT_TRUE(p.y == 0 && p.x >= 199 && p.x <= 300) << p.x << "," << p.y;
    EXPECT_EQ(poisoned.GetCurveCount(), int(samplesOf(poisoned).size()));

    // Chords beyond the int range: the steps are held to the limit and every sample is clamped.
    const CPoint far[] = {{INT_MIN + 1, 0}, {INT_MAX, 1}, {INT_MIN + 1, 2}, {INT_MAX, 0}};
    const CSpline wide(far, 4);
    EXPECT_EQ(wide.GetSteps(0), CSpline::MaxSteps);
    EXPECT_EQ(samplesOf(wide).size(), size_t(3 * (CSpline::MaxSteps + 1)));
}
