#pragma once

#include "objects/CDrawObj.h"
#include "objects/ShapeAppearance.h"

#include <cstdint>
#include <vector>

// Every object made of a list of points: polygon, polyline, open curve and closed curve. The
// handles are the vertices (handle n is vertex n - 1). The rectangle is derived from the points
// with a margin of 20 units, through the object's own spline for curves, and a poly can't be
// resized by a rectangle: MoveTo only moves it.
//
// A poly is always filled and stroked as its kind says; the visibility bits of m_flags and the
// arrow heads mean nothing to it.
class CDrawPoly : public CDrawObj {
public:
    enum Kind : std::uint8_t { Polygon = 0, Polyline = 1, Curve = 2, ClosedCurve = 3 };

    // Margin between the outermost point and the rectangle.
    static constexpr int BoundsMargin = 20;
    // Points are allocated in blocks of this many; the capacity is part of the project file.
    static constexpr int CapacityStep = 10;

    CDrawPoly();
    explicit CDrawPoly(const CRect& position);
    ~CDrawPoly() override;

    int GetHandleCount() const override;
    CPoint GetHandle(int handle) const override;
    Qt::CursorShape GetHandleCursor(int handle) const override;
    void Draw(gfx::Graphics& graphics, int cx, int cy, CView* view) override;
    // The vertices as handles; the selected vertex as a red square in a blue frame.
    void DrawTracker(gfx::Graphics& graphics, int state, int cx, int cy) override;
    // Moves the points by the change of the rectangle's left and top and takes the rectangle
    // as given; the points are not scaled.
    void MoveTo(const CRect& position, CView* view) override;
    // Polygon: its area by the alternate rule. Polyline: a band (lineWidth + 10) / 2 to either
    // side of each segment. Curves: such bands along the sampled spline (along the segment for
    // a curve of two points), and for a closed curve also the area of its vertices.
    bool Intersects(const CRect& rect) override;
    // Drags a vertex. Alt snaps the point to the label's grid; Shift holds it to a multiple of
    // 45 degrees about the vertex before it (for the first vertex: the last one of a closed
    // kind, the second of an open one). The keys are the view's, as for a line's ends; without
    // a view none is held.
    void MoveHandleTo(int handle, CPoint point, CView* view) override;
    std::unique_ptr<CDrawObj> Clone() const override;
    void Offset(int dx, int dy) override;
    // Count and capacity are kept in 16 bits: a poly in a file has at most 65,535 points.
    void Serialize(CArchive& ar) override;

    // Appends a vertex unless it repeats the last one, and refits the rectangle.
    void AddPoint(CPoint point, CView* view);
    // Fits the rectangle round the points (or the spline of a curve with more than 2 points)
    // with the margin; answers whether the rectangle changed.
    bool RecalcBounds(CView* view);
    // Removes the vertex of m_selectedPoint while more than the minimum remain: 3 for a polygon
    // and a closed curve, 2 for the open kinds.
    void RemoveSelectedPoint(CView* view);

    int GetPointCount() const { return m_pointCount; }
    int GetPointCapacity() const { return m_pointCapacity; }
    const std::vector<CPoint>& GetPoints() const { return m_points; }
    CPoint GetPoint(int index) const { return m_points[size_t(index)]; }
    // Replaces the points as a project file holds them; the capacity is raised to the count if
    // it is smaller. The rectangle is left as it is.
    void SetPoints(std::vector<CPoint> points, int capacity);
    // The sampled spline used for picking a curve; empty unless the curve has more than 2 points.
    const std::vector<CPoint>& GetSplinePoints();

    // The least number of vertices an object of the kind keeps.
    static int MinimumPoints(int kind);

    std::uint8_t m_polyKind = Polygon;
    // Handle number of the vertex selected for deleting, -1 for none. Not kept in files.
    int m_selectedPoint = -1;

private:
    // The points changed other than by appending: every cache is rebuilt on demand.
    void PointsChanged();
    // Extent of all vertices, extended over the vertices appended since the last call.
    CRect VertexExtent();
    // Brings the spline samples up to the current points; after appends only the end of the
    // curve is sampled again.
    void UpdateSpline();
    // Whether the rectangle touches the band along any segment between consecutive points.
    bool BandsIntersect(const std::vector<CPoint>& points, const CRect& rect) const;
    bool AreaIntersects(const CRect& rect) const;
    void FillShape(gfx::Graphics& graphics, const gfx::GraphicsPath& path);

    int m_pointCount = 0;
    std::vector<CPoint> m_points;
    int m_pointCapacity = 0;
    std::vector<CPoint> m_splinePoints;

    // The spline samples cover the first m_splineSource points; -1 when they cover nothing.
    // m_segmentStart holds where each segment's samples begin, m_segmentExtent the extent of
    // the samples up to and including each segment.
    int m_splineSource = -1;
    std::vector<int> m_segmentStart;
    std::vector<CRect> m_segmentExtent;
    // Extent of the first m_vertexExtentSource vertices.
    int m_vertexExtentSource = 0;
    CRect m_vertexExtent;

    ShapeAppearance m_appearance;
};
