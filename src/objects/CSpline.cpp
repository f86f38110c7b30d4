#include "objects/CSpline.h"

#include <algorithm>
#include <climits>
#include <cmath>

namespace {

// The integer a sample lands on: truncated, within the range of int, and the fallback where
// the curve's arithmetic overflowed.
int toUnit(float value, float fallback)
{
    double v = value;
    if (!std::isfinite(v))
        v = std::isfinite(fallback) ? double(fallback) : 0.0;
    v = std::clamp(v, double(INT_MIN), double(INT_MAX));
    return int(std::trunc(v));
}

// Ten sweeps that each compute every unknown from the previous sweep's neighbours, starting
// from the right-hand side divided by the diagonal; the result replaces the right-hand side.
void solveJacobi(std::vector<float>& rhs, const std::vector<float>& mat0, const std::vector<float>& mat1,
                 const std::vector<float>& mat2)
{
    const int n = int(rhs.size());
    std::vector<float> current(rhs.size()), next(rhs.size());
    for (int i = 0; i < n; ++i)
        current[size_t(i)] = rhs[size_t(i)] / mat1[size_t(i)];
    for (int sweep = 0; sweep < CSpline::Iterations; ++sweep) {
        for (int i = 0; i < n; ++i) {
            float value = rhs[size_t(i)];
            if (i > 0)
                value -= mat0[size_t(i)] * current[size_t(i - 1)];
            if (i < n - 1)
                value -= mat2[size_t(i)] * current[size_t(i + 1)];
            next[size_t(i)] = value / mat1[size_t(i)];
        }
        current.swap(next);
    }
    rhs = std::move(current);
}

} // namespace

CSpline::CSpline(const CPoint* points, int count) : m_n(points ? std::max(count, 0) : 0)
{
    m_x.resize(size_t(m_n));
    m_y.resize(size_t(m_n));
    for (int i = 0; i < m_n; ++i) {
        m_x[size_t(i)] = float(points[i].x);
        m_y[size_t(i)] = float(points[i].y);
    }
    Generate();
}

CSpline::CSpline(const QPointF* points, int count) : m_n(points ? std::max(count, 0) : 0)
{
    m_x.resize(size_t(m_n));
    m_y.resize(size_t(m_n));
    for (int i = 0; i < m_n; ++i) {
        m_x[size_t(i)] = float(points[i].x());
        m_y[size_t(i)] = float(points[i].y());
    }
    Generate();
}

void CSpline::Generate()
{
    const int n = m_n;
    if (n < 2)
        return;
    const size_t count = size_t(n);
    m_ax.assign(count, 0.0f);
    m_ay.assign(count, 0.0f);
    m_bx.assign(count, 0.0f);
    m_by.assign(count, 0.0f);
    m_cx.assign(count, 0.0f);
    m_cy.assign(count, 0.0f);
    m_k.assign(count, 1.0f);
    m_mat0.assign(count, 0.0f);
    m_mat1.assign(count, 1.0f);
    m_mat2.assign(count, 0.0f);

    std::vector<float> length(count, 0.0f);
    for (int i = 0; i + 1 < n; ++i) {
        m_ax[size_t(i)] = m_x[size_t(i + 1)] - m_x[size_t(i)];
        m_ay[size_t(i)] = m_y[size_t(i + 1)] - m_y[size_t(i)];
        length[size_t(i)] = std::sqrt(m_ax[size_t(i)] * m_ax[size_t(i)] + m_ay[size_t(i)] * m_ay[size_t(i)]);
    }
    // A zero-length or unmeasurable segment would make a ratio of 0 or infinity, which empties
    // a diagonal entry; it takes the neutral ratio instead.
    for (int i = 0; i + 2 < n; ++i) {
        const float ratio = length[size_t(i)] / length[size_t(i + 1)];
        m_k[size_t(i)] = std::isfinite(ratio) && ratio > 0.0f ? ratio : 1.0f;
    }
    m_k[size_t(n - 2)] = 1.0f;

    for (int i = 1; i + 1 < n; ++i) {
        const float before = m_k[size_t(i - 1)];
        m_mat0[size_t(i)] = 1.0f;
        m_mat1[size_t(i)] = 2.0f * before * (before + 1.0f);
        m_mat2[size_t(i)] = before * before * m_k[size_t(i)];
        m_bx[size_t(i)] = 3.0f * (m_ax[size_t(i - 1)] + before * before * m_ax[size_t(i)]);
        m_by[size_t(i)] = 3.0f * (m_ay[size_t(i - 1)] + before * before * m_ay[size_t(i)]);
    }
    m_mat1[0] = 2.0f;
    m_mat2[0] = m_k[0];
    m_mat0[size_t(n - 1)] = 1.0f;
    m_mat1[size_t(n - 1)] = 2.0f * m_k[size_t(n - 2)];
    m_bx[0] = 3.0f * m_ax[0];
    m_by[0] = 3.0f * m_ay[0];
    m_bx[size_t(n - 1)] = 3.0f * m_ax[size_t(n - 2)];
    m_by[size_t(n - 1)] = 3.0f * m_ay[size_t(n - 2)];

    solveJacobi(m_bx, m_mat0, m_mat1, m_mat2);
    solveJacobi(m_by, m_mat0, m_mat1, m_mat2);

    for (int i = 0; i + 1 < n; ++i) {
        m_cx[size_t(i)] = m_k[size_t(i)] * m_bx[size_t(i + 1)];
        m_cy[size_t(i)] = m_k[size_t(i)] * m_by[size_t(i + 1)];
    }
}

QPointF CSpline::GetTangent(int point) const
{
    if (point < 0 || point >= m_n || m_n < 2)
        return {};
    return {m_bx[size_t(point)], m_by[size_t(point)]};
}

int CSpline::GetSteps(int segment) const
{
    if (segment < 0 || segment >= GetSegmentCount())
        return 0;
    const float ax = m_ax[size_t(segment)];
    const float ay = m_ay[size_t(segment)];
    if (!std::isfinite(ax) || !std::isfinite(ay))
        return 1;
    // Whole units first, then whole steps of eight units; in doubles, since a chord between two
    // far-apart points can exceed the int range.
    const double larger = std::max(std::fabs(std::trunc(double(ax))), std::fabs(std::trunc(double(ay))));
    return int(std::clamp(std::trunc(larger / 8.0), 1.0, double(MaxSteps)));
}

int CSpline::GetCurveCount() const
{
    int total = 0;
    for (int segment = 0; segment < GetSegmentCount(); ++segment)
        total += GetSteps(segment) + 1;
    return total;
}

void CSpline::GetCurve(std::vector<CPoint>& out) const
{
    out.reserve(out.size() + size_t(GetCurveCount()));
    for (int segment = 0; segment < GetSegmentCount(); ++segment)
        AppendSegment(segment, out);
}

void CSpline::AppendSegment(int segment, std::vector<CPoint>& out) const
{
    const int steps = GetSteps(segment);
    if (steps == 0)
        return;
    const size_t i = size_t(segment);
    out.push_back(CPoint(toUnit(m_x[i], 0.0f), toUnit(m_y[i], 0.0f)));
    for (int step = 1; step <= steps; ++step)
        out.push_back(Sample(segment, float(step) / float(steps)));
}

CPoint CSpline::Sample(int segment, float t) const
{
    const size_t i = size_t(segment);
    const float u = t - 1.0f;
    const float s = t * t * (3.0f - 2.0f * t);
    const float p = u * t * u;
    const float q = t * t * u;
    const float x = m_ax[i] * s + m_x[i] + m_bx[i] * p + m_cx[i] * q;
    const float y = m_ay[i] * s + m_y[i] + m_by[i] * p + m_cy[i] * q;
    // Where the tangents overflowed, the chord stands in.
    return CPoint(toUnit(x, m_x[i] + m_ax[i] * t), toUnit(y, m_y[i] + m_ay[i] * t));
}
