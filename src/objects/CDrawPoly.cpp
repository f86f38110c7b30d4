#include "objects/CDrawPoly.h"

#include "document/CArchive.h"
#include "document/CView.h"
#include "objects/CDrawRect.h"
#include "objects/CSpline.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/SolidBrush.h"

#include <QPolygon>
#include <QRegion>
#include <algorithm>
#include <cmath>

namespace {

// The extent of one point, as a rectangle of no size.
CRect pointRect(CPoint p)
{
    return CRect(p.x, p.y, p.x, p.y);
}

void extend(CRect& extent, CPoint p)
{
    extent.left = std::min(extent.left, p.x);
    extent.top = std::min(extent.top, p.y);
    extent.right = std::max(extent.right, p.x);
    extent.bottom = std::max(extent.bottom, p.y);
}

// Grows the rectangle on every side, saturating at the ends of the int range.
CRect grown(CRect r, int margin)
{
    r.InflateRect(margin, margin);
    return r;
}

// Moves a point, stopping at the ends of the int range as a rectangle's edges do.
CPoint moved(CPoint p, long long dx, long long dy)
{
    return CPoint(CRect::saturated(p.x + dx), CRect::saturated(p.y + dy));
}

// A normalised rectangle as the rectangle a region test takes: right and bottom edges outside.
QRect regionRect(const CRect& r)
{
    return QRect(r.left, r.top, r.Width(), r.Height());
}

std::vector<QPointF> toFloats(const std::vector<CPoint>& points)
{
    std::vector<QPointF> result;
    result.reserve(points.size());
    for (const CPoint& p : points)
        result.emplace_back(p.x, p.y);
    return result;
}

} // namespace

CDrawPoly::CDrawPoly() = default;

CDrawPoly::CDrawPoly(const CRect& position) : CDrawObj(position) {}

CDrawPoly::~CDrawPoly() = default;

// ---------------------------------------------------------------- points

int CDrawPoly::MinimumPoints(int kind)
{
    return kind == Polygon || kind == ClosedCurve ? 3 : 2;
}

void CDrawPoly::SetPoints(std::vector<CPoint> points, int capacity)
{
    m_points = std::move(points);
    m_pointCount = int(m_points.size());
    m_pointCapacity = std::max(capacity, m_pointCount);
    if (m_selectedPoint > m_pointCount)
        m_selectedPoint = -1;
    PointsChanged();
}

void CDrawPoly::PointsChanged()
{
    m_splineSource = -1;
    m_vertexExtentSource = 0;
}

void CDrawPoly::AddPoint(CPoint point, CView* view)
{
    if (m_pointCount == m_pointCapacity)
        m_pointCapacity += CapacityStep;
    // A repeated point would give the spline a segment of no length.
    if (m_pointCount > 0 && m_points.back() == point)
        return;
    m_points.push_back(point);
    ++m_pointCount;
    if (!RecalcBounds(view))
        Invalidate(view);
}

void CDrawPoly::RemoveSelectedPoint(CView* view)
{
    if (m_pointCount <= MinimumPoints(m_polyKind))
        return;
    const int index = m_selectedPoint - 1;
    if (index < 0 || index >= m_pointCount)
        return;
    m_points.erase(m_points.begin() + index);
    --m_pointCount;
    // The selection stays on the same handle number, now the next vertex, unless there is none.
    if (m_selectedPoint > m_pointCount)
        m_selectedPoint = -1;
    PointsChanged();
    Invalidate(view);
    RecalcBounds(view);
}

CRect CDrawPoly::VertexExtent()
{
    if (m_vertexExtentSource <= 0 || m_vertexExtentSource > m_pointCount) {
        m_vertexExtent = pointRect(m_points.front());
        m_vertexExtentSource = 1;
    }
    for (int i = m_vertexExtentSource; i < m_pointCount; ++i)
        extend(m_vertexExtent, m_points[size_t(i)]);
    m_vertexExtentSource = m_pointCount;
    return m_vertexExtent;
}

void CDrawPoly::UpdateSpline()
{
    const int count = m_pointCount;
    if (m_splineSource == count)
        return;
    if (count <= 2) {
        m_splinePoints.clear();
        m_segmentStart.clear();
        m_segmentExtent.clear();
        m_splineSource = count;
        return;
    }

    // After appends only the end of the curve is sampled again. Ten Jacobi sweeps carry a
    // change at most ten points along, so points appended after the first `previous` leave
    // every segment that starts before previous - 12 as it was. The part rebuilt starts Reach
    // points before `previous`; its own first Kept segments differ from the whole curve's,
    // because its system starts there with an end row, and are not used.
    constexpr int Reach = 30;
    constexpr int Kept = 11;
    const int previous = m_splineSource;
    int first = 0;
    int keptSegments = 0;
    if (previous >= Reach && previous < count) {
        first = previous - Reach;
        keptSegments = first + Kept;
    }

    const CSpline spline(m_points.data() + first, count - first);
    m_splinePoints.resize(keptSegments > 0 ? size_t(m_segmentStart[size_t(keptSegments)]) : 0);
    m_segmentStart.resize(size_t(keptSegments));
    m_segmentExtent.resize(size_t(keptSegments));
    for (int local = keptSegments - first; local < spline.GetSegmentCount(); ++local) {
        const size_t start = m_splinePoints.size();
        m_segmentStart.push_back(int(start));
        spline.AppendSegment(local, m_splinePoints);
        CRect extent = m_segmentExtent.empty() ? pointRect(m_splinePoints[start]) : m_segmentExtent.back();
        for (size_t i = start; i < m_splinePoints.size(); ++i)
            extend(extent, m_splinePoints[i]);
        m_segmentExtent.push_back(extent);
    }
    m_splineSource = count;
}

const std::vector<CPoint>& CDrawPoly::GetSplinePoints()
{
    UpdateSpline();
    return m_splinePoints;
}

bool CDrawPoly::RecalcBounds(CView* view)
{
    if (m_pointCount == 0)
        return false;
    CRect extent;
    if ((m_polyKind == Curve || m_polyKind == ClosedCurve) && m_pointCount > 2) {
        UpdateSpline();
        extent = m_segmentExtent.back();
    } else {
        extent = VertexExtent();
    }
    extent = grown(extent, BoundsMargin);
    if (extent == m_position)
        return false;
    Invalidate(view);
    m_position = extent;
    Invalidate(view);
    return true;
}

// ---------------------------------------------------------------- handles

int CDrawPoly::GetHandleCount() const
{
    return m_pointCount;
}

CPoint CDrawPoly::GetHandle(int handle) const
{
    if (m_pointCount == 0)
        return m_position.TopLeft();
    return m_points[size_t(std::clamp(handle, 1, m_pointCount) - 1)];
}

Qt::CursorShape CDrawPoly::GetHandleCursor(int) const
{
    return Qt::SizeAllCursor;
}

void CDrawPoly::MoveHandleTo(int handle, CPoint point, CView* view)
{
    if (handle < 1 || handle > m_pointCount)
        return;
    const int index = handle - 1;
    if (point == m_points[size_t(index)])
        return;

    const Qt::KeyboardModifiers modifiers = view ? view->Modifiers() : Qt::NoModifier;
    if (modifiers & Qt::AltModifier)
        point = CDrawRect::SnapPoint(point, m_pDocument, view->ScreenResolution());
    if (modifiers & Qt::ShiftModifier) {
        // The vertex before is the reference. The first vertex has none: a closed kind takes
        // the last vertex, its neighbour round the ring, and an open kind the second.
        int reference = index - 1;
        if (reference < 0)
            reference = m_polyKind == Polygon || m_polyKind == ClosedCurve ? m_pointCount - 1 : 1;
        if (reference != index && reference < m_pointCount)
            point = CDrawRect::ConstrainAngle(point, m_points[size_t(reference)]);
    }

    m_points[size_t(index)] = point;
    PointsChanged();
    RecalcBounds(view);
    Invalidate(view);
}

// ---------------------------------------------------------------- moving

void CDrawPoly::MoveTo(const CRect& position, CView* view)
{
    if (position == m_position)
        return;
    // A damaged file's object and its new place can lie further apart than an int counts.
    const long long dx = (long long)position.left - m_position.left;
    const long long dy = (long long)position.top - m_position.top;
    Invalidate(view);
    for (CPoint& p : m_points)
        p = moved(p, dx, dy);
    PointsChanged();
    m_position = position;
    m_aspect = std::abs(double(position.Width())) / std::abs(double(position.Height()));
    Invalidate(view);
}

void CDrawPoly::Offset(int dx, int dy)
{
    CDrawObj::Offset(dx, dy);
    for (CPoint& p : m_points)
        p = moved(p, dx, dy);
    PointsChanged();
}

std::unique_ptr<CDrawObj> CDrawPoly::Clone() const
{
    auto copy = std::make_unique<CDrawPoly>(m_position);
    CopyInto(*copy);
    copy->m_polyKind = m_polyKind;
    copy->m_points = m_points;
    copy->m_pointCount = m_pointCount;
    copy->m_pointCapacity = m_pointCapacity;
    return copy;
}

// ---------------------------------------------------------------- picking

bool CDrawPoly::BandsIntersect(const std::vector<CPoint>& points, const CRect& rect) const
{
    const CRect a = rect.Normalized();
    const int half = (m_lineWidth + 10) >> 1;
    for (size_t i = 0; i + 1 < points.size(); ++i) {
        // The band lies within the segment's ends grown by the half thickness; most bands of
        // a long curve lie elsewhere and need no region.
        const CRect ends = CRect(points[i].x, points[i].y, points[i + 1].x, points[i + 1].y).Normalized();
        CRect overlap;
        if (!overlap.IntersectRect(a, grown(ends, half + 1)))
            continue;
        // Each segment is picked as a line object whose rectangle is its ends: a slanted one only
        // within that rectangle.
        if (!ends.IsRectEmpty() && !overlap.IntersectRect(a, ends))
            continue;
        if (CDrawRect::LineBandIntersects(points[i], points[i + 1], m_lineWidth, a))
            return true;
    }
    return false;
}

bool CDrawPoly::AreaIntersects(const CRect& rect) const
{
    if (m_pointCount < 3)
        return false;
    const CRect a = rect.Normalized();
    // Only the part of the polygon near the rectangle decides, and a region of a long scribble
    // costs seconds. A run of consecutive vertices that lies wholly beyond one side of the
    // rectangle (grown by a margin) can be cut to its first and last vertex: what is cut away
    // and the chord that replaces it form a loop beyond that side, which crosses the
    // rectangle's rows an even number of times to the left or right of it, or not at all, so
    // no pixel of the rectangle changes its side. The vertices stay integers.
    const CRect window = grown(a, 2);
    auto sides = [&window](CPoint p) {
        return (p.x < window.left ? 1 : 0) | (p.x > window.right ? 2 : 0) | (p.y < window.top ? 4 : 0)
               | (p.y > window.bottom ? 8 : 0);
    };
    QPolygon polygon;
    int runSide = 0;
    int runLength = 0;
    CPoint runLast;
    for (const CPoint& p : m_points) {
        const int side = sides(p);
        if (runLength > 0 && (side & runSide)) {
            runLast = p;
            ++runLength;
            continue;
        }
        if (runLength > 1)
            polygon.append(QPoint(runLast.x, runLast.y));
        runLength = 0;
        polygon.append(QPoint(p.x, p.y));
        if (side != 0) {
            runSide = side & -side; // one side the run keeps to
            runLength = 1;
        }
    }
    if (runLength > 1)
        polygon.append(QPoint(runLast.x, runLast.y));
    return QRegion(polygon, Qt::OddEvenFill).intersects(regionRect(a));
}

bool CDrawPoly::Intersects(const CRect& rect)
{
    CRect overlap;
    if (!overlap.IntersectRect(rect.Normalized(), m_position.Normalized()))
        return false;
    switch (m_polyKind) {
    case Polygon:
        return AreaIntersects(rect);
    case Polyline:
        return BandsIntersect(m_points, rect);
    case Curve:
    case ClosedCurve:
        // A curve of two points has no spline, so nothing picks it, though it is drawn straight.
        if (m_pointCount > 2 && BandsIntersect(GetSplinePoints(), rect))
            return true;
        return m_polyKind == ClosedCurve && AreaIntersects(rect);
    default:
        return false;
    }
}

// ---------------------------------------------------------------- drawing

void CDrawPoly::FillShape(gfx::Graphics& graphics, const gfx::GraphicsPath& path)
{
    switch (m_appearance.PicturePlacement()) {
    case ShapeAppearance::Placement::Stretched:
        m_appearance.DrawPictureClipped(graphics, path, m_appearance.Rect());
        break;
    case ShapeAppearance::Placement::Centered:
        if (m_polyKind == ClosedCurve) {
            // A closed curve clips a centred picture to its rectangle, not to its outline; it
            // has always looked so.
            gfx::GraphicsPath box;
            box.AddRectangle(m_appearance.Rect());
            m_appearance.DrawPictureClipped(graphics, box, m_appearance.CenteredPictureRect());
        } else {
            m_appearance.DrawPictureClipped(graphics, path, m_appearance.CenteredPictureRect());
        }
        break;
    case ShapeAppearance::Placement::Texture:
    case ShapeAppearance::Placement::NotPicture:
        graphics.FillPath(m_appearance.FillBrush(), path);
        break;
    }
}

void CDrawPoly::Draw(gfx::Graphics& graphics, int, int, CView*)
{
    const std::vector<QPointF> points = toFloats(m_points);
    const int count = m_pointCount;
    gfx::GraphicsPath path;
    switch (m_polyKind) {
    case Polygon:
    case Polyline:
        path.AddPolygon(points.data(), count);
        break;
    case Curve:
        path.AddCurve(points.data(), count);
        break;
    case ClosedCurve:
        path.AddClosedCurve(points.data(), count, 0.5f);
        break;
    default:
        break;
    }
    // The gradients take this path; the picture is loaded here on every Draw.
    m_appearance.Prepare(*this, graphics, path, false);
    if (count == 0)
        return;

    gfx::Pen& pen = m_appearance.LinePen();
    switch (m_polyKind) {
    case Polygon:
    case ClosedCurve:
        FillShape(graphics, path);
        graphics.DrawPath(pen, path);
        break;
    case Polyline:
        graphics.DrawLines(pen, points.data(), count);
        break;
    case Curve:
        graphics.DrawCurve(pen, points.data(), count);
        break;
    default:
        break;
    }
}

void CDrawPoly::DrawTracker(gfx::Graphics& graphics, int state, int, int)
{
    if (state != 1 && state != 2)
        return;
    const gfx::Pen black(gfx::Color(255, 0, 0, 0), 2.0f);
    const gfx::Pen white(gfx::Color(255, 255, 255, 255), 2.0f);
    const gfx::Pen blue(gfx::Color(255, 0, 0, 255), 2.0f);
    const gfx::SolidBrush red(gfx::Color(255, 255, 0, 0));
    for (int handle = 1; handle <= m_pointCount; ++handle) {
        const CPoint p = m_points[size_t(handle - 1)];
        const QRectF inner(p.x - 10, p.y - 10, 20, 20);
        const QRectF outer(p.x - 12, p.y - 12, 24, 24);
        if (handle == m_selectedPoint) {
            graphics.FillRectangle(red, inner);
            graphics.DrawRectangle(blue, outer);
        } else {
            graphics.DrawRectangle(black, inner);
            graphics.DrawRectangle(white, outer);
        }
    }
}

void CDrawPoly::Serialize(CArchive& ar)
{
    CDrawObj::Serialize(ar);
    if (ar.IsStoring()) {
        const auto count = std::uint16_t(m_pointCount);
        ar << count << std::uint16_t(m_pointCapacity) << m_polyKind;
        for (int i = 0; i < count; ++i)
            ar << m_points[size_t(i)];
        return;
    }
    const std::uint16_t count = ar.Read<std::uint16_t>();
    const std::uint16_t capacity = ar.Read<std::uint16_t>();
    ar >> m_polyKind;
    ar.EnsureAvailable(std::uint64_t(count) * 8);
    std::vector<CPoint> points(count);
    for (CPoint& point : points)
        ar >> point;
    // A capacity below the count would leave the points without room; it grows to fit.
    SetPoints(std::move(points), capacity);
}
