#pragma once

#include "platform/graphics/Matrix.h"

#include <QPainterPath>
#include <QPointF>
#include <QRectF>
#include <cstdint>
#include <vector>

namespace gfx {

class FontFamily;

enum class FillMode { Alternate = 0, Winding = 1 };

// A path of figures with GDI+'s meaning: angles in degrees, clockwise (+x toward +y) and
// geometric (the point lies on the ray at that angle); a figure stays open until closed, and
// what is added next joins it with a line unless a new figure was started.
class GraphicsPath {
public:
    explicit GraphicsPath(FillMode mode = FillMode::Alternate);

    void AddArc(const QRectF& rect, float startAngle, float sweepAngle);
    void AddLine(QPointF from, QPointF to);
    void AddLines(const QPointF* points, int count);
    void AddBezier(QPointF p1, QPointF c1, QPointF c2, QPointF p2);
    // Each of these adds a closed figure of its own.
    void AddRectangle(const QRectF& rect);
    void AddEllipse(const QRectF& rect);
    void AddPolygon(const QPointF* points, int count);
    // Cardinal splines: segment Pi -> Pi+1 has controls Pi + t/3 (Pi+1 - Pi-1) and Pi+1 - t/3 (Pi+2 - Pi).
    void AddCurve(const QPointF* points, int count, float tension = 0.5f);
    void AddClosedCurve(const QPointF* points, int count, float tension = 0.5f);
    // Appends the other path's figures; with connect the first one joins the open figure.
    void AddPath(const GraphicsPath& other, bool connect);
    // The glyph outlines of the text at the em size (world units), each contour a closed figure.
    // The origin is the top left of the layout box: the first baseline lies an ascent below it,
    // lines ('\n') follow at the line spacing, and every line starts a sixth of an em to the
    // right, as GDI+'s default layout has it. An unavailable family adds nothing.
    void AddString(const QString& text, const FontFamily& family, int style, float emSize, QPointF origin);

    void StartFigure();
    void CloseFigure();
    void Reset();

    void Transform(const Matrix& matrix);
    // Bounds without a pen, of the path's curves (not of their control points).
    QRectF GetBounds() const;
    // Whether the point is inside, by the path's fill mode.
    bool IsVisible(QPointF point) const;
    // Whether the area the path fills, by its fill mode, meets the rectangle (edges included).
    bool Intersects(const QRectF& rect) const;
    bool IsEmpty() const { return m_path.isEmpty(); }

    // The stored points as GDI+ keeps them: every vertex, Bezier ends and control points;
    // an ellipse has 13, its start point twice.
    std::vector<QPointF> GetPathPoints() const { return m_points; }
    // The type of each stored point: 0 starts a figure, 1 a line, 3 a Bezier point; 0x80 marks
    // the point that closes its figure.
    std::vector<std::uint8_t> GetPathTypes() const { return m_types; }
    int GetPointCount() const { return int(m_points.size()); }

    FillMode GetFillMode() const { return m_fillMode; }
    // The same points, bit for bit (not within Qt's fuzzy tolerance), of the same types, under
    // the same fill mode: two such paths paint the same pixels.
    bool IsIdentical(const GraphicsPath& other) const;
    void SetFillMode(FillMode mode);

    const QPainterPath& path() const { return m_path; }

    enum PointType : std::uint8_t { Start = 0, Line = 1, Bezier = 3, CloseFlag = 0x80 };

private:
    void beginAt(QPointF point);
    void startFigureAt(QPointF point);
    void lineTo(QPointF point);
    void cubicTo(QPointF c1, QPointF c2, QPointF end);
    void addCardinal(const QPointF* points, int count, float tension, bool closed);
    // Appends a Qt path, each subpath as a closed figure.
    void addClosedFigures(const QPainterPath& path);

    // The Qt path that draws, and the point list as GDI+ keeps it; both always describe the
    // same figures.
    QPainterPath m_path;
    std::vector<QPointF> m_points;
    std::vector<std::uint8_t> m_types;
    FillMode m_fillMode;
    bool m_figureOpen = false;
};

} // namespace gfx
