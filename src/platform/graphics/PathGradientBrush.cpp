#include "platform/graphics/PathGradientBrush.h"

#include "platform/graphics/LinearGradientBrush.h"

#include <QLinearGradient>
#include <QPaintDevice>
#include <QRadialGradient>

#include <array>
#include <cmath>
#include <optional>

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
    // confirmed), the larger t wins: the nearest edge beyond the pixel. Drawn without
    // antialiasing so that no seams show between the triangles; pixels no triangle reaches stay
    // transparent and take the surround colour.
    QImage ramp(area.size(), QImage::Format_ARGB32_Premultiplied);
    ramp.fill(Qt::transparent);
    {
        QPainter p(&ramp);
        p.setCompositionMode(QPainter::CompositionMode_Lighten);
        p.setPen(Qt::NoPen);
        for (const QPolygonF& figure : shape.toSubpathPolygons(toDevice)) {
            const int n = int(figure.size());
            for (int i = 0; i < n; ++i) {
                const QPointF a = figure[i], b = figure[(i + 1) % n];
                const QPointF e = b - a;
                const double len2 = QPointF::dotProduct(e, e);
                if (len2 <= 0)
                    continue;
                const QPointF foot = a + e * (QPointF::dotProduct(c - a, e) / len2);
                const QPointF d = foot - c;
                if (QPointF::dotProduct(d, d) < 1e-12)
                    continue; // the centre lies on this edge's line
                QLinearGradient g(c, foot);
                g.setColorAt(0, Qt::black);
                g.setColorAt(1, Qt::white);
                p.setBrush(g);
                const QPointF triangle[3] = {c, a, b};
                p.drawPolygon(triangle, 3);
            }
        }
    }

    std::array<QRgb, 257> colours; // by t in 255ths; the last one for pixels no triangle reached
    for (int i = 0; i < 256; ++i)
        colours[i] = qPremultiply(LinearGradientBrush::Blend(m_centerColor, m_surroundColor, i / 255.0, m_gammaCorrection).rgba());
    colours[256] = qPremultiply(m_surroundColor.GetValue());
    for (int y = 0; y < ramp.height(); ++y) {
        QRgb* line = reinterpret_cast<QRgb*>(ramp.scanLine(y));
        for (int x = 0; x < ramp.width(); ++x)
            line[x] = colours[qAlpha(line[x]) ? qRed(line[x]) : 256];
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
    painter.fillPath(region, brush);
    painter.setRenderHint(QPainter::SmoothPixmapTransform, smooth);
}

} // namespace gfx
