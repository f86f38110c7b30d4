#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"
#include "platform/graphics/Font.h"
#include "platform/graphics/GraphicsPath.h"
#include "platform/graphics/Image.h"
#include "platform/graphics/ImageAttributes.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/Pen.h"
#include "platform/graphics/Region.h"

#include <QPainter>
#include <QPointF>
#include <QRectF>
#include <memory>
#include <vector>

namespace gfx {

class DeviceContext;

enum class SmoothingMode { Default = 0, HighSpeed = 1, HighQuality = 2, None = 3, AntiAlias = 4 };
enum class PixelOffsetMode { Default = 0, HighSpeed = 1, HighQuality = 2, None = 3, Half = 4 };
enum class InterpolationMode { Default = 0, LowQuality = 1, HighQuality = 2, Bilinear = 3, Bicubic = 4,
                               NearestNeighbor = 5, HighQualityBilinear = 6, HighQualityBicubic = 7 };
enum class Unit { World = 0, Display = 1, Pixel = 2 };
enum class CoordinateSpace { World = 0, Page = 1, Device = 2 };
enum class CombineMode { Replace = 0, Intersect = 1, Union = 2, Xor = 3, Exclude = 4, Complement = 5 };
using GraphicsState = int;
enum DriverStringOptions { DriverStringOptionsCmapLookup = 1, DriverStringOptionsVertical = 2,
                           DriverStringOptionsRealizedAdvance = 4, DriverStringOptionsLimitSubpixel = 8 };

// A drawing surface with GDI+'s meaning: a world transform (prepend by default) applied before
// the device's own mapping, a clip kept in device space, a rendering origin that anchors hatch
// tiles in device pixels, and fills and outlines by brushes and pens.
class Graphics {
public:
    // Draws into the bitmap, in its pixels.
    explicit Graphics(Bitmap& bitmap);
    // Draws on the device: device = world transform x the device's mapping.
    explicit Graphics(DeviceContext& dc);
    ~Graphics();
    Graphics(const Graphics&) = delete;
    Graphics& operator=(const Graphics&) = delete;

    void SetSmoothingMode(SmoothingMode mode);
    SmoothingMode GetSmoothingMode() const { return m_smoothing; }
    void SetPixelOffsetMode(PixelOffsetMode mode) { m_pixelOffset = mode; }
    void SetInterpolationMode(InterpolationMode mode);
    void SetTextRenderingHint(int hint) { m_textHint = hint; }
    void SetPageUnit(Unit unit) { m_pageUnit = unit; }

    void SetTransform(const Matrix& matrix);
    Matrix GetTransform() const { return m_world; }
    void ResetTransform();
    void MultiplyTransform(const Matrix& matrix, MatrixOrder order = MatrixOrder::Prepend);
    void TranslateTransform(float dx, float dy, MatrixOrder order = MatrixOrder::Prepend);
    void RotateTransform(float degrees, MatrixOrder order = MatrixOrder::Prepend);
    void ScaleTransform(float sx, float sy, MatrixOrder order = MatrixOrder::Prepend);
    // Maps points between world and device space (page space is device space here).
    void TransformPoints(CoordinateSpace to, CoordinateSpace from, QPointF* points, int count) const;

    // The path or region is taken in current world coordinates.
    void SetClip(const GraphicsPath& path, CombineMode mode = CombineMode::Replace);
    void SetClip(const Region& region, CombineMode mode = CombineMode::Replace);
    void SetClip(const QRectF& rect, CombineMode mode = CombineMode::Replace);
    void ResetClip();
    // The clip in current world coordinates; infinite when there is none.
    Region GetClip() const;
    // A rectangle in current world coordinates outside which nothing drawn can show: the
    // device's extent cut by the clip, by a clip the device's painter came with and by the part
    // of a window being repainted. Empty when the painter isn't drawing.
    QRectF GetVisibleClipBounds() const;

    GraphicsState Save();
    // Pops the state saved under the token and every state saved after it.
    void Restore(GraphicsState state);

    void SetRenderingOrigin(int x, int y) { m_renderingOrigin = {x, y}; }
    QPoint GetRenderingOrigin() const { return m_renderingOrigin; }

    void Clear(Color color);
    void FillRectangle(const Brush& brush, const QRectF& rect);
    void FillEllipse(const Brush& brush, const QRectF& rect);
    void FillPath(const Brush& brush, const GraphicsPath& path);
    void FillRegion(const Brush& brush, const Region& region);
    // A closed polygon filled by the fill mode.
    void FillPolygon(const Brush& brush, const QPointF* points, int count, FillMode mode = FillMode::Alternate);
    void DrawRectangle(const Pen& pen, const QRectF& rect);
    void DrawEllipse(const Pen& pen, const QRectF& rect);
    void DrawLine(const Pen& pen, QPointF from, QPointF to);
    // Open figures get the pen's start and end caps at their first and last points.
    void DrawPath(const Pen& pen, const GraphicsPath& path);
    // Connected lines through the points, one open figure.
    void DrawLines(const Pen& pen, const QPointF* points, int count);
    void DrawPolygon(const Pen& pen, const QPointF* points, int count);
    // Cardinal splines as GraphicsPath::AddCurve / AddClosedCurve draw them.
    void DrawCurve(const Pen& pen, const QPointF* points, int count, float tension = 0.5f);
    void DrawClosedCurve(const Pen& pen, const QPointF* points, int count, float tension = 0.5f);

    // The whole image stretched into the rectangle.
    void DrawImage(const Image& image, const QRectF& dest);
    // One pixel per world unit, top left at the point.
    void DrawImage(const Image& image, QPointF topLeft);
    // The source rectangle (image pixels) stretched into dest, through the attributes if given.
    void DrawImage(const Image& image, const QRectF& dest, const QRectF& source,
                   const ImageAttributes* attributes = nullptr);

    // The box of the characters set one after the other from the origin on its baseline, with
    // the options CmapLookup and RealizedAdvance (5): x at the origin, the width the sum of the
    // advances, from an ascent above the baseline to a descent below. Other options are taken
    // as these.
    QRectF MeasureDriverString(const QString& text, const Font& font, QPointF origin, int flags) const;
    // The box DrawString would fill with the text from the origin by the default layout: the
    // advances of the text without its trailing blanks plus the padding at both ends, and one
    // line spacing per line ('\n').
    QRectF MeasureString(const QString& text, const Font& font, QPointF origin) const;

    QPainter& painter() { return *m_painter; }

private:
    struct State;
    void apply();
    void applyHints();
    void applyClip();
    void applyTransform();
    bool active() const;
    QTransform deviceTransform() const;
    FillContext fillContext() const;
    QRectF deviceRect() const;
    void combineClip(const Region& deviceRegion, CombineMode mode);
    void fill(const Brush& brush, const QPainterPath& path);
    void stroke(const Pen& pen, const QPainterPath& path);
    // Strokes with the pen's line caps on the ends of open figures.
    void stroke(const Pen& pen, const GraphicsPath& path);
    // Whether the pen's dashes need round or triangular ends of their own.
    static bool capsDashes(const Pen& pen, const QPen& qtPen);
    // What the pen covers along the path, in world units, for one fill.
    static QPainterPath strokeArea(const Pen& pen, const QPen& qtPen, const QPainterPath& path,
                                   const QTransform& combined);

    std::unique_ptr<QPainter> m_ownPainter;
    QPainter* m_painter;
    QTransform m_mapping;
    Matrix m_world;
    Region m_clip; // in device space
    QPainterPath m_deviceClip; // a clip the device's painter already had, in device space
    bool m_hasDeviceClip = false;
    QPoint m_renderingOrigin;
    SmoothingMode m_smoothing = SmoothingMode::None;
    PixelOffsetMode m_pixelOffset = PixelOffsetMode::None;
    InterpolationMode m_interpolation = InterpolationMode::Bilinear;
    int m_textHint = 0;
    Unit m_pageUnit = Unit::Pixel;
    std::vector<State> m_saved;
    GraphicsState m_nextToken = 1;
};

} // namespace gfx
