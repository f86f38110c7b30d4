#include "platform/graphics/PathGradientBrush.h"

#include "platform/graphics/FigureClusters.h"
#include "platform/graphics/LinearGradientBrush.h"

#include <QPaintDevice>
#include <QRadialGradient>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>
#include <optional>
#include <vector>

namespace gfx {

namespace {

// The affine map that carries the unit circle's ellipse onto the path, when the path is one
// ellipse figure (possibly transformed): 13 points, all Bezier after the start, closed, and each
// point where the unit ellipse's point lands.
std::optional<QTransform> ellipseFrame(const GraphicsPath& path)
{
    const std::vector<QPointF> points = path.GetPathPoints();
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    if (points.size() != 13 || types[0] != GraphicsPath::Start)
        return std::nullopt;
    for (std::size_t i = 1; i < 13; ++i) {
        if ((types[i] & ~GraphicsPath::CloseFlag) != GraphicsPath::Bezier)
            return std::nullopt;
    }
    if (!(types[12] & GraphicsPath::CloseFlag))
        return std::nullopt;

    static const std::vector<QPointF> unit = [] {
        GraphicsPath circle;
        circle.AddEllipse(QRectF(-1, -1, 2, 2));
        return circle.GetPathPoints();
    }();
    // Points 0, 3 and 6 lie at 0, 90 and 180 degrees.
    const QPointF centre = (points[0] + points[6]) / 2;
    const QPointF a = points[0] - centre, b = points[3] - centre;
    const QTransform frame(a.x(), a.y(), b.x(), b.y(), centre.x(), centre.y());
    const double size = std::max(std::hypot(a.x(), a.y()), std::hypot(b.x(), b.y()));
    if (std::abs(frame.determinant()) < 1e-12 * size * size)
        return std::nullopt;
    const double tolerance = 1e-4 * size + 1e-9;
    for (std::size_t i = 0; i < 13; ++i) {
        const QPointF d = frame.map(unit[i]) - points[i];
        if (std::abs(d.x()) > tolerance || std::abs(d.y()) > tolerance)
            return std::nullopt;
    }
    return frame;
}

// The device pixels a fill can touch: the shape's bounds on the device, within the device and
// the clip.
QRect deviceArea(const QPainter& painter, const QPainterPath& shape)
{
    const QTransform toDevice = painter.combinedTransform();
    QRect area = toDevice.map(shape).boundingRect().toAlignedRect().adjusted(-1, -1, 1, 1);
    if (const QPaintDevice* device = painter.device())
        area &= QRect(0, 0, device->width(), device->height());
    if (painter.hasClipping())
        area &= toDevice.mapRect(painter.clipBoundingRect()).toAlignedRect().adjusted(-1, -1, 1, 1);
    return area;
}

// The gradient's position t at every pixel of a layer, in 255ths plus one (0: not reached),
// from a fan of triangles that each carry a linear ramp; where triangles overlap, the larger t
// is kept. Pixels are sampled at their centres, without antialiasing, so no seams show between
// neighbouring triangles.
class FanLevels {
public:
    explicit FanLevels(QSize size) : m_width(size.width()), m_height(size.height()), m_levels(std::size_t(m_width) * m_height, 0) {}

    const std::uint16_t* Data() const { return m_levels.data(); }

    // t is 0 at the centre c and 1 on the line through a and b.
    void AddTriangle(QPointF c, QPointF a, QPointF b)
    {
        const QPointF e = b - a;
        const double len2 = QPointF::dotProduct(e, e);
        if (!(len2 > 0) || !std::isfinite(len2) || !std::isfinite(c.x()) || !std::isfinite(c.y()))
            return;
        const QPointF foot = a + e * (QPointF::dotProduct(c - a, e) / len2);
        const QPointF d = foot - c;
        const double d2 = QPointF::dotProduct(d, d);
        if (d2 < 1e-12)
            return; // the centre lies on this edge's line
        const double tx = d.x() / d2, ty = d.y() / d2;

        const QPointF corners[3] = {c, a, b};
        const double top = std::min({c.y(), a.y(), b.y()}), bottom = std::max({c.y(), a.y(), b.y()});
        const int firstRow = std::max(0, int(std::ceil(std::max(top - 0.5, -1.0))));
        const int lastRow = std::min(m_height - 1, int(std::floor(std::min(bottom - 0.5, double(m_height)))));
        for (int y = firstRow; y <= lastRow; ++y) {
            const double yc = y + 0.5;
            double left = std::numeric_limits<double>::infinity(), right = -left;
            for (int k = 0; k < 3; ++k) {
                QPointF p = corners[k], q = corners[(k + 1) % 3];
                if (p.y() == q.y())
                    continue;
                // The same edge of two triangles gives the same crossing, whichever way round.
                if (q.y() < p.y() || (q.y() == p.y() && q.x() < p.x()))
                    std::swap(p, q);
                if (yc < p.y() || yc > q.y())
                    continue;
                const double x = p.x() + (yc - p.y()) * (q.x() - p.x()) / (q.y() - p.y());
                left = std::min(left, x);
                right = std::max(right, x);
            }
            if (!(left <= right))
                continue;
            // Columns whose centres lie in [left, right).
            const int from = std::max(0, int(std::ceil(std::max(left - 0.5, -1.0))));
            const int to = std::min(m_width, int(std::ceil(std::min(right - 0.5, double(m_width)))));
            std::uint16_t* row = m_levels.data() + std::size_t(y) * m_width;
            // t in 255ths, offset by 1.5 so that truncation rounds and lands on the level.
            double t = ((from + 0.5 - c.x()) * tx + (yc - c.y()) * ty) * 255 + 1.5;
            const double step = tx * 255;
            for (int x = from; x < to; ++x, t += step) {
                const auto level = std::uint16_t(std::clamp(t, 1.0, 256.0));
                row[x] = std::max(row[x], level);
            }
        }
    }

private:
    int m_width;
    int m_height;
    std::vector<std::uint16_t> m_levels;
};

} // namespace

PathGradientBrush::PathGradientBrush(const GraphicsPath& path) : m_path(path)
{
    // The default centre is the mean of the stored points, as GDI+ places it; not the centroid.
    const std::vector<QPointF> points = path.GetPathPoints();
    QPointF sum;
    for (const QPointF& p : points)
        sum += p;
    if (!points.empty())
        m_center = sum / double(points.size());
}

Status PathGradientBrush::SetSurroundColors(const Color* colors, int* count)
{
    if (!colors || !count || *count < 1)
        return Status::InvalidParameter;
    m_surroundColor = colors[0];
    return Status::Ok;
}

QBrush PathGradientBrush::QtBrush(const QPainter& painter, const FillContext&) const
{
    const QPainterPath& shape = m_path.path();
    if (shape.isEmpty())
        return QBrush(Qt::NoBrush);

    if (const std::optional<QTransform> frame = ellipseFrame(m_path)) {
        // One ellipse: in its unit-circle frame the colour is a radial gradient whose focal point
        // is the centre, and Qt's focal gradient puts t at the fraction along the ray from the
        // focal point to the circle, which is what is wanted; affine maps keep that fraction.
        const QPointF focal = frame->inverted().map(m_center);
        QRadialGradient gradient(QPointF(0, 0), 1.0, focal);
        gradient.setInterpolationMode(QGradient::ComponentInterpolation);
        gradient.setStops(LinearGradientBrush::Ramp(m_centerColor, m_surroundColor, m_gammaCorrection));
        QBrush brush(gradient);
        brush.setTransform(*frame);
        return brush;
    }

    // Any other outline: t rendered per device pixel into a layer, then turned into colours.
    const QRect area = deviceArea(painter, shape);
    if (area.isEmpty())
        return QBrush(Qt::NoBrush);
    const QTransform toDevice = painter.combinedTransform() * QTransform::fromTranslate(-area.x(), -area.y());
    const QPointF c = toDevice.map(m_center);

    // A fan of triangles (centre, A, B), one per edge of every figure. In each, t grows linearly
    // from 0 at the centre to 1 on the edge's line, along the perpendicular from the centre; the
    // fraction along a ray to the edge is exactly that. Where triangles overlap (an outline not
    // star-shaped from the centre, or several figures: rings and text, whose exact rule is not
    // confirmed), the larger t wins: the nearest edge beyond the pixel. Pixels no triangle
    // reaches take the surround colour.
    FanLevels levels(area.size());
    for (const QPolygonF& figure : shape.toSubpathPolygons(toDevice)) {
        const int n = int(figure.size());
        for (int i = 0; i < n; ++i)
            levels.AddTriangle(c, figure[i], figure[(i + 1) % n]);
    }

    std::array<QRgb, 257> colours; // by level: t in 255ths and one past for pixels no triangle reached
    colours[0] = qPremultiply(m_surroundColor.GetValue());
    for (int i = 0; i < 256; ++i)
        colours[i + 1] = qPremultiply(LinearGradientBrush::Blend(m_centerColor, m_surroundColor, i / 255.0, m_gammaCorrection).rgba());
    QImage ramp(area.size(), QImage::Format_ARGB32_Premultiplied);
    const std::uint16_t* level = levels.Data();
    const int width = ramp.width();
    for (int y = 0; y < ramp.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(ramp.scanLine(y));
        for (int x = 0; x < width; ++x)
            line[x] = colours[*level++];
    }

    // The layer lies in device pixels from the area's corner; the brush undoes the painter's
    // transform to keep it there.
    QBrush brush(ramp);
    brush.setTransform(QTransform::fromTranslate(area.x(), area.y()) * painter.combinedTransform().inverted());
    return brush;
}

void PathGradientBrush::Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const
{
    // Nothing is painted outside the brush's own outline.
    const QPainterPath& shape = m_path.path();
    const QPainterPath region = path == shape ? path : path.intersected(shape);
    if (region.isEmpty())
        return;
    const QBrush brush = QtBrush(painter, context);
    if (brush.style() == Qt::NoBrush)
        return;
    // The layer's pixels sit exactly on device pixels; interpolating would only blur them.
    const bool smooth = painter.testRenderHint(QPainter::SmoothPixmapTransform);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, false);
    FigureClusters::FillPath(painter, region, brush);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
}

} // namespace gfx
