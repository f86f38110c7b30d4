#include "platform/graphics/Graphics.h"

#include "platform/graphics/DashedStroke.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/FigureClusters.h"

#include <QPaintDevice>
#include <QPaintEngine>
#include <QPainterPathStroker>
#include <algorithm>
#include <cmath>
#include <deque>
#include <optional>

namespace gfx {

struct Graphics::State {
    GraphicsState token;
    Matrix world;
    Region clip;
    QPoint renderingOrigin;
    SmoothingMode smoothing;
    PixelOffsetMode pixelOffset;
    InterpolationMode interpolation;
    int textHint;
    Unit pageUnit;
};

namespace {

bool prefilters(InterpolationMode mode)
{
    return mode == InterpolationMode::HighQuality || mode == InterpolationMode::HighQualityBilinear
           || mode == InterpolationMode::HighQualityBicubic;
}

// Strong reductions are averaged beforehand, because bilinear sampling alone would skip pixels.
// Pictures are redrawn on every repaint, so the last few reductions are kept.
QImage reduced(const QImage& image, const QRect& part, QSize size)
{
    struct Entry {
        qint64 key;
        QRect part;
        QSize size;
        QImage image;
    };
    thread_local std::deque<Entry> cache;
    for (const Entry& e : cache) {
        if (e.key == image.cacheKey() && e.part == part && e.size == size)
            return e.image;
    }
    const QImage source = part == image.rect() ? image : image.copy(part);
    QImage result = source.scaled(size, Qt::IgnoreAspectRatio, Qt::SmoothTransformation);
    cache.push_front({image.cacheKey(), part, size, result});
    if (cache.size() > 4)
        cache.pop_back();
    return result;
}

QPainterPath rectPath(const QRectF& rect)
{
    QPainterPath path;
    path.addRect(rect);
    return path;
}

// One figure of a GraphicsPath, as Qt draws it.
struct Figure {
    QPainterPath path;
    bool closed = false;
    bool curved = false;
};

std::vector<Figure> figuresOf(const GraphicsPath& path)
{
    const std::vector<QPointF> points = path.GetPathPoints();
    const std::vector<std::uint8_t> types = path.GetPathTypes();
    std::vector<Figure> figures;
    for (std::size_t i = 0; i < points.size(); ++i) {
        const int type = types[i] & ~GraphicsPath::CloseFlag;
        if (type == GraphicsPath::Start || figures.empty()) {
            figures.emplace_back();
            figures.back().path.moveTo(points[i]);
        } else if (type == GraphicsPath::Bezier && i + 2 < points.size()) {
            figures.back().path.cubicTo(points[i], points[i + 1], points[i + 2]);
            figures.back().curved = true;
            i += 2;
        } else {
            figures.back().path.lineTo(points[i]);
        }
        if (types[i] & GraphicsPath::CloseFlag) {
            figures.back().path.closeSubpath();
            figures.back().closed = true;
        }
    }
    return figures;
}

// A line end's shape in its own frame: origin at the end point, +y outward along the line, in
// units of `unit` world units.
struct CapShape {
    QPainterPath path;
    bool filled = true;
    double unit = 0; // world units per cap unit
    double inset = 0; // world units the drawn line is shortened by (negative: lengthened)
    LineCap base = LineCap::Flat; // the plain cap under a custom one
};

QPainterPath polygonPath(std::initializer_list<QPointF> points)
{
    QPainterPath path;
    path.addPolygon(QPolygonF(QList<QPointF>(points)));
    path.closeSubpath();
    path.setFillRule(Qt::WindingFill);
    return path;
}

// The plain and anchor caps in pen widths. Square, Round and Triangle reach half a width past
// the end. The anchors are centred on the end; their sizes are measured from GDI+ renderings
// (round about 2.4 widths across, the arrow about 2.5 long and 2.4 wide with its tip a width
// past the end) or, for the square, the documented side of one width.
std::optional<CapShape> plainCap(LineCap cap, double width)
{
    CapShape shape;
    shape.unit = width;
    switch (cap) {
    case LineCap::Square:
        shape.path = polygonPath({{-0.5, 0}, {0.5, 0}, {0.5, 0.5}, {-0.5, 0.5}});
        break;
    case LineCap::Round:
        shape.path.addEllipse(QPointF(0, 0), 0.5, 0.5);
        break;
    case LineCap::Triangle:
        shape.path = polygonPath({{-0.5, 0}, {0.5, 0}, {0, 0.5}});
        break;
    case LineCap::SquareAnchor:
        shape.path = polygonPath({{-0.5, -0.5}, {0.5, -0.5}, {0.5, 0.5}, {-0.5, 0.5}});
        break;
    case LineCap::RoundAnchor:
        shape.path.addEllipse(QPointF(0, 0), 1.2, 1.2);
        break;
    case LineCap::DiamondAnchor:
        shape.path = polygonPath({{0, -1.2}, {1.2, 0}, {0, 1.2}, {-1.2, 0}});
        break;
    case LineCap::ArrowAnchor:
        shape.path = polygonPath({{-1.2, -1.5}, {0, 1.0}, {1.2, -1.5}});
        break;
    default:
        return std::nullopt;
    }
    shape.path.setFillRule(Qt::WindingFill);
    return shape;
}

std::optional<CapShape> capShape(LineCap cap, const CustomLineCap* custom, double width)
{
    if (cap != LineCap::Custom)
        return plainCap(cap, width);
    if (!custom)
        return std::nullopt;
    CapShape shape;
    // A zero line width makes the program's scale infinite; such a cap is left out.
    shape.unit = width * double(custom->GetWidthScale());
    if (!std::isfinite(shape.unit) || shape.unit <= 0)
        return std::nullopt;
    const double inset = shape.unit * double(custom->GetBaseInset());
    shape.inset = std::isfinite(inset) ? inset : 0;
    shape.path = custom->path().path();
    shape.path.setFillRule(Qt::WindingFill);
    shape.filled = custom->isFilled();
    shape.base = custom->GetBaseCap();
    return shape;
}

// The transform that places a cap at `end`, pointing along the unit vector u.
QTransform capFrame(QPointF end, QPointF u, double unit)
{
    const QPointF n(-u.y(), u.x());
    return QTransform(unit * n.x(), unit * n.y(), unit * u.x(), unit * u.y(), end.x(), end.y());
}

QPointF unitVector(QPointF v)
{
    const double len = std::hypot(v.x(), v.y());
    return len > 0 ? v / len : QPointF();
}

// The figures turned, where needed, the way QPainterPathStroker's outlines turn (positive signed
// area), so that adding them to a stroke's outline under the nonzero rule makes their union.
// Each figure must be simple: a figure meant as a hole would be filled.
QPainterPath turnedLikeStrokes(const QPainterPath& figures)
{
    QPainterPath turned;
    QPainterPath figure;
    const auto finish = [&] {
        const QPolygonF polygon = figure.toFillPolygon();
        double twiceArea = 0;
        for (int i = 0; i < polygon.size(); ++i) {
            const QPointF a = polygon[i], b = polygon[(i + 1) % polygon.size()];
            twiceArea += a.x() * b.y() - b.x() * a.y();
        }
        turned.addPath(twiceArea < 0 ? figure.toReversed() : figure);
        figure = QPainterPath();
    };
    for (int i = 0; i < figures.elementCount(); ++i) {
        const QPainterPath::Element e = figures.elementAt(i);
        if (e.isMoveTo()) {
            if (i > 0)
                finish();
            figure.moveTo(e);
        } else if (e.isLineTo()) {
            figure.lineTo(e);
        } else if (e.isCurveTo() && i + 2 < figures.elementCount()) {
            figure.cubicTo(e, figures.elementAt(i + 1), figures.elementAt(i + 2));
            i += 2;
        }
    }
    if (!figures.isEmpty())
        finish();
    return turned;
}

// Shortens the polyline by `length` at its front (lengthens it when negative). Returns false when
// nothing is left.
bool trimFront(QPolygonF& line, double length)
{
    if (length < 0) {
        line[0] += unitVector(line[0] - line[1]) * -length;
        return true;
    }
    while (length > 0 && line.size() >= 2) {
        const double segment = QLineF(line[0], line[1]).length();
        if (segment > length) {
            line[0] += unitVector(line[1] - line[0]) * length;
            return true;
        }
        length -= segment;
        line.removeFirst();
    }
    return line.size() >= 2;
}

bool trimBack(QPolygonF& line, double length)
{
    std::reverse(line.begin(), line.end());
    const bool left = trimFront(line, length);
    std::reverse(line.begin(), line.end());
    return left;
}

} // namespace

Graphics::Graphics(Bitmap& bitmap) : m_ownPainter(std::make_unique<QPainter>()), m_painter(m_ownPainter.get())
{
    QImage& pixels = bitmap.image();
    if (!pixels.isNull()) {
        if (pixels.format() != QImage::Format_ARGB32_Premultiplied)
            pixels = pixels.convertToFormat(QImage::Format_ARGB32_Premultiplied);
        m_painter->begin(&pixels);
    }
    apply();
}

Graphics::Graphics(DeviceContext& dc) : m_painter(&dc.painter()), m_mapping(dc.Mapping())
{
    // Whatever this Graphics changes on the device's painter is put back when it goes, and a clip
    // the painter came with stays in force under this Graphics' own.
    if (m_painter->isActive()) {
        m_painter->save();
        if (m_painter->hasClipping()) {
            m_deviceClip = m_painter->worldTransform().map(m_painter->clipPath());
            m_hasDeviceClip = true;
        }
    }
    apply();
}

Graphics::~Graphics()
{
    // States saved and never restored leave the painter as it was given.
    if (m_painter->isActive()) {
        for (std::size_t i = 0; i < m_saved.size(); ++i)
            m_painter->restore();
    }
    if (m_ownPainter) {
        if (m_ownPainter->isActive())
            m_ownPainter->end();
    } else if (m_painter->isActive()) {
        m_painter->restore();
    }
}

bool Graphics::active() const
{
    return m_painter->isActive();
}

QTransform Graphics::deviceTransform() const
{
    return m_world.transform() * m_mapping;
}

FillContext Graphics::fillContext() const
{
    return FillContext{m_renderingOrigin};
}

QRectF Graphics::deviceRect() const
{
    const QPaintDevice* device = m_painter->device();
    return device ? QRectF(0, 0, device->width(), device->height()) : QRectF();
}

void Graphics::apply()
{
    if (!active())
        return;
    applyHints();
    applyClip();
    applyTransform();
}

void Graphics::applyHints()
{
    if (!active())
        return;
    m_painter->setRenderHint(QPainter::Antialiasing,
                             m_smoothing == SmoothingMode::AntiAlias || m_smoothing == SmoothingMode::HighQuality);
    m_painter->setRenderHint(QPainter::SmoothPixmapTransform, m_interpolation != InterpolationMode::NearestNeighbor);
}

void Graphics::applyClip()
{
    if (!active())
        return;
    if (m_clip.IsInfinite() && !m_hasDeviceClip) {
        m_painter->setClipping(false);
        return;
    }
    // The clip is kept in device pixels; Qt takes it in the coordinates in force.
    m_painter->setWorldTransform(QTransform());
    if (m_hasDeviceClip)
        m_painter->setClipPath(m_deviceClip, Qt::ReplaceClip);
    bool first = !m_hasDeviceClip;
    for (const QPainterPath& part : m_clip.Parts()) {
        m_painter->setClipPath(part, first ? Qt::ReplaceClip : Qt::IntersectClip);
        first = false;
    }
    applyTransform();
}

void Graphics::applyTransform()
{
    if (active())
        m_painter->setWorldTransform(deviceTransform());
}

void Graphics::SetSmoothingMode(SmoothingMode mode)
{
    m_smoothing = mode;
    applyHints();
}

void Graphics::SetInterpolationMode(InterpolationMode mode)
{
    m_interpolation = mode;
    applyHints();
}

void Graphics::SetTransform(const Matrix& matrix)
{
    m_world = matrix;
    applyTransform();
}

void Graphics::ResetTransform()
{
    m_world.Reset();
    applyTransform();
}

void Graphics::MultiplyTransform(const Matrix& matrix, MatrixOrder order)
{
    m_world.Multiply(matrix, order);
    applyTransform();
}

void Graphics::TranslateTransform(float dx, float dy, MatrixOrder order)
{
    m_world.Translate(dx, dy, order);
    applyTransform();
}

void Graphics::RotateTransform(float degrees, MatrixOrder order)
{
    m_world.Rotate(degrees, order);
    applyTransform();
}

void Graphics::ScaleTransform(float sx, float sy, MatrixOrder order)
{
    m_world.Scale(sx, sy, order);
    applyTransform();
}

void Graphics::TransformPoints(CoordinateSpace to, CoordinateSpace from, QPointF* points, int count) const
{
    // With pixels as the page unit, page space and device space are the same.
    const bool fromWorld = from == CoordinateSpace::World;
    const bool toWorld = to == CoordinateSpace::World;
    if (fromWorld == toWorld)
        return;
    QTransform t = deviceTransform();
    if (toWorld) {
        bool invertible = false;
        t = t.inverted(&invertible);
        if (!invertible)
            return;
    }
    for (int i = 0; i < count; ++i)
        points[i] = t.map(points[i]);
}

void Graphics::combineClip(const Region& region, CombineMode mode)
{
    if (mode == CombineMode::Intersect && active() && m_painter->hasClipping()) {
        // Narrowing the clip in force: the painter cuts what it already holds.
        m_clip.Intersect(region);
        m_painter->setWorldTransform(QTransform());
        for (const QPainterPath& part : region.Parts())
            m_painter->setClipPath(part, Qt::IntersectClip);
        applyTransform();
        return;
    }
    switch (mode) {
    case CombineMode::Replace:
        m_clip = region;
        break;
    case CombineMode::Intersect:
        m_clip.Intersect(region);
        break;
    case CombineMode::Union:
        m_clip.Union(region);
        break;
    case CombineMode::Xor:
        m_clip.Xor(region);
        break;
    case CombineMode::Exclude:
        m_clip.Exclude(region);
        break;
    case CombineMode::Complement:
        m_clip.Complement(region);
        break;
    }
    applyClip();
}

void Graphics::SetClip(const GraphicsPath& path, CombineMode mode)
{
    SetClip(Region(path), mode);
}

void Graphics::SetClip(const Region& region, CombineMode mode)
{
    Region device = region;
    device.Transform(Matrix(deviceTransform()));
    combineClip(device, mode);
}

void Graphics::SetClip(const QRectF& rect, CombineMode mode)
{
    SetClip(Region(rect), mode);
}

void Graphics::ResetClip()
{
    m_clip.MakeInfinite();
    applyClip();
}

Region Graphics::GetClip() const
{
    Region clip = m_clip;
    bool invertible = false;
    const QTransform toWorld = deviceTransform().inverted(&invertible);
    if (invertible)
        clip.Transform(Matrix(toWorld));
    return clip;
}

QRectF Graphics::GetVisibleClipBounds() const
{
    if (!active())
        return {};
    QRectF box = deviceRect();
    for (const QPainterPath& part : m_clip.Parts())
        box &= part.boundingRect();
    if (m_hasDeviceClip)
        box &= m_deviceClip.boundingRect();
    // A window's paint event limits the engine to the region being repainted, in the pixels of
    // the window's backing store; the painter's own mapping beyond its world transform (the
    // widget's place in the window, the screen's pixel ratio) leads there.
    const QRegion system = m_painter->paintEngine() ? m_painter->paintEngine()->systemClip() : QRegion();
    if (!system.isEmpty()) {
        bool invertible = false;
        const QTransform toPainter =
            (m_painter->worldTransform().inverted() * m_painter->deviceTransform()).inverted(&invertible);
        if (invertible)
            box &= toPainter.mapRect(QRectF(system.boundingRect()));
    }
    if (box.isEmpty())
        return {};
    bool invertible = false;
    const QTransform toWorld = deviceTransform().inverted(&invertible);
    return invertible ? toWorld.mapRect(box) : QRectF();
}

GraphicsState Graphics::Save()
{
    const GraphicsState token = m_nextToken++;
    m_saved.push_back(State{token, m_world, m_clip, m_renderingOrigin, m_smoothing, m_pixelOffset, m_interpolation,
                            m_textHint, m_pageUnit});
    // The painter keeps its clip as rasterised spans; taking them back on Restore is much cheaper
    // than rasterising the clip again.
    if (active())
        m_painter->save();
    return token;
}

void Graphics::Restore(GraphicsState token)
{
    const auto it = std::find_if(m_saved.begin(), m_saved.end(), [token](const State& s) { return s.token == token; });
    if (it == m_saved.end())
        return;
    m_world = it->world;
    m_clip = it->clip;
    m_renderingOrigin = it->renderingOrigin;
    m_smoothing = it->smoothing;
    m_pixelOffset = it->pixelOffset;
    m_interpolation = it->interpolation;
    m_textHint = it->textHint;
    m_pageUnit = it->pageUnit;
    const auto levels = std::distance(it, m_saved.end());
    m_saved.erase(it, m_saved.end());
    if (!active())
        return;
    for (auto i = levels; i > 0; --i)
        m_painter->restore();
    applyHints();
    applyTransform();
}

void Graphics::Clear(Color color)
{
    if (!active())
        return;
    m_painter->save();
    m_painter->setWorldTransform(QTransform());
    // Clearing replaces what is there, alpha included, where the device can do that.
    if (m_painter->paintEngine() && m_painter->paintEngine()->type() == QPaintEngine::Raster)
        m_painter->setCompositionMode(QPainter::CompositionMode_Source);
    m_painter->fillRect(deviceRect(), color.toQColor());
    m_painter->restore();
}

void Graphics::fill(const Brush& brush, const QPainterPath& path)
{
    if (active() && !path.isEmpty())
        brush.Fill(*m_painter, path, fillContext());
}

void Graphics::stroke(const Pen& pen, const QPainterPath& path)
{
    if (!active() || path.isEmpty())
        return;
    const QTransform combined = m_painter->combinedTransform();
    const QPen qtPen = pen.QtPen(combined);
    // A path of figures spread over the device, a line of text around a disc, is stroked as
    // its outline filled cluster by cluster: the same pixels for far less rasterising.
    if (!pen.HasPatternBrush() && !capsDashes(pen, qtPen)
        && (qtPen.isCosmetic() || FigureClusters(path, combined).Paths().empty())) {
        m_painter->strokePath(path, qtPen);
        return;
    }
    // The outline as an area, filled by the pen's brush as any fill is, so that hatch tiles and
    // texture wrapping follow the same rules as in fills.
    const QPainterPath outline = strokeArea(pen, qtPen, path, combined);
    if (pen.HasPatternBrush())
        pen.GetBrush()->Fill(*m_painter, outline, fillContext());
    else
        FigureClusters::FillPath(*m_painter, outline, pen.GetColor().toQColor());
}

bool Graphics::capsDashes(const Pen& pen, const QPen& qtPen)
{
    return pen.GetDashStyle() != DashStyle::Solid && pen.GetDashCap() != DashCap::Flat && !qtPen.isCosmetic();
}

QPainterPath Graphics::strokeArea(const Pen& pen, const QPen& qtPen, const QPainterPath& path,
                                  const QTransform& combined)
{
    if (capsDashes(pen, qtPen)) {
        // The figures are flattened finely enough for the device before they are cut into dashes.
        bool invertible = false;
        const QTransform toWorld = combined.inverted(&invertible);
        if (!invertible)
            return {};
        QList<QPolygonF> lines;
        for (const QPolygonF& flat : path.toSubpathPolygons(combined))
            lines.append(toWorld.map(flat));
        // Round ends stray at most a tenth of a device pixel from their arcs.
        const double flatness = 0.1 / std::sqrt(std::abs(combined.determinant()));
        return DashedStroke(qtPen.widthF(), Pen::DashPattern(pen.GetDashStyle()), pen.GetDashCap(),
                            qtPen.joinStyle(), qtPen.miterLimit(), flatness)
            .Area(lines);
    }
    QPainterPathStroker stroker(qtPen);
    if (qtPen.isCosmetic()) {
        const double scale = std::sqrt(std::abs(combined.determinant()));
        if (scale <= 0)
            return {};
        stroker.setWidth(1.0 / scale);
    }
    QPainterPath outline = stroker.createStroke(path);
    outline.setFillRule(Qt::WindingFill);
    return outline;
}

void Graphics::stroke(const Pen& pen, const GraphicsPath& path)
{
    if (!pen.HasLineCaps()) {
        stroke(pen, path.path());
        return;
    }
    if (!active() || path.IsEmpty())
        return;
    const QTransform combined = m_painter->combinedTransform();
    bool invertible = false;
    const QTransform toWorld = combined.inverted(&invertible);
    if (!invertible)
        return;
    const QPen qtPen = pen.QtPen(combined);
    const double width = pen.GetWidth() > 0 ? pen.GetWidth() : 1.0;
    const std::optional<CapShape> startCap = capShape(pen.GetStartCap(), pen.GetCustomStartCap(), width);
    const std::optional<CapShape> endCap = capShape(pen.GetEndCap(), pen.GetCustomEndCap(), width);

    QPainterPath lines; // what the pen strokes: closed figures as they are, open ones trimmed
    QPainterPath filledCaps;
    QPainterPath strokedCaps;
    const auto place = [&](const CapShape& cap, QPointF end, QPointF u) {
        const QTransform frame = capFrame(end, u, cap.unit);
        (cap.filled ? filledCaps : strokedCaps).addPath(frame.map(cap.path));
    };
    for (const Figure& figure : figuresOf(path)) {
        if (figure.closed) {
            lines.addPath(figure.path);
            continue;
        }
        // Curves are flattened finely enough for the device before the ends are measured.
        QPolygonF line;
        if (figure.curved) {
            const QList<QPolygonF> flat = figure.path.toSubpathPolygons(combined);
            if (!flat.isEmpty())
                line = toWorld.map(flat.first());
        } else {
            for (int i = 0; i < figure.path.elementCount(); ++i)
                line.append(figure.path.elementAt(i));
        }
        line.erase(std::unique(line.begin(), line.end()), line.end());
        if (line.size() < 2) {
            lines.addPath(figure.path);
            continue;
        }
        // The heading at each end is the curve's tangent: toward the nearest distinct point or
        // control point.
        const QPointF start = line.first(), end = line.last();
        const auto heading = [&figure](QPointF from, int first, int step) {
            const int n = figure.path.elementCount();
            for (int i = first; i >= 0 && i < n; i += step) {
                const QPointF p = figure.path.elementAt(i);
                if (p != from)
                    return unitVector(from - p);
            }
            return QPointF();
        };
        const QPointF uStart = heading(figure.path.elementAt(0), 1, 1);
        const QPointF uEnd = heading(figure.path.elementAt(figure.path.elementCount() - 1),
                                     figure.path.elementCount() - 2, -1);
        if (startCap)
            place(*startCap, start, uStart);
        if (endCap)
            place(*endCap, end, uEnd);
        // The base insets move the drawn line's ends; a custom cap's base cap sits on the moved end.
        if (!trimFront(line, startCap ? startCap->inset : 0) || !trimBack(line, endCap ? endCap->inset : 0))
            continue;
        if (startCap && startCap->base != LineCap::Flat) {
            if (const std::optional<CapShape> base = plainCap(startCap->base, width))
                place(*base, line.first(), uStart);
        }
        if (endCap && endCap->base != LineCap::Flat) {
            if (const std::optional<CapShape> base = plainCap(endCap->base, width))
                place(*base, line.last(), uEnd);
        }
        QPainterPath trimmed;
        trimmed.addPolygon(line);
        lines.addPath(trimmed);
    }

    // Everything becomes one area, filled once: separate fills would double the alpha where the
    // line and its heads overlap. A stroke's outline turns one way throughout, so with every
    // filled head turned the same way the nonzero rule fills exactly the union, without cutting
    // paths.
    QPainterPath world = strokeArea(pen, qtPen, lines, combined);
    world.addPath(turnedLikeStrokes(filledCaps));
    world.setFillRule(Qt::WindingFill);
    if (!strokedCaps.isEmpty()) {
        // A cap outline is drawn solid, with the line's width and joins. An open head runs
        // over its own arms; the outline would lie there twice, and antialiasing adds up edges
        // that lie on each other, so it is cut into one area instead, on the device, where the
        // cut's flattening of curves fits.
        QPainterPathStroker capStroker;
        capStroker.setWidth(qtPen.isCosmetic() ? 1.0 / std::sqrt(std::abs(combined.determinant())) : qtPen.widthF());
        capStroker.setJoinStyle(qtPen.joinStyle());
        capStroker.setMiterLimit(qtPen.miterLimit());
        capStroker.setCapStyle(Qt::FlatCap);
        QPainterPath capOutline = capStroker.createStroke(strokedCaps);
        capOutline.setFillRule(Qt::WindingFill);
        world = toWorld.map(combined.map(world).united(combined.map(capOutline)));
    }
    if (pen.HasPatternBrush())
        pen.GetBrush()->Fill(*m_painter, world, fillContext());
    else
        FigureClusters::FillPath(*m_painter, world, pen.GetColor().toQColor());
}

void Graphics::FillPolygon(const Brush& brush, const QPointF* points, int count, FillMode mode)
{
    GraphicsPath path(mode);
    path.AddPolygon(points, count);
    fill(brush, path.path());
}

void Graphics::DrawLines(const Pen& pen, const QPointF* points, int count)
{
    GraphicsPath path;
    path.AddLines(points, count);
    stroke(pen, path);
}

void Graphics::DrawPolygon(const Pen& pen, const QPointF* points, int count)
{
    GraphicsPath path;
    path.AddPolygon(points, count);
    stroke(pen, path.path());
}

void Graphics::DrawCurve(const Pen& pen, const QPointF* points, int count, float tension)
{
    GraphicsPath path;
    path.AddCurve(points, count, tension);
    stroke(pen, path);
}

void Graphics::DrawClosedCurve(const Pen& pen, const QPointF* points, int count, float tension)
{
    GraphicsPath path;
    path.AddClosedCurve(points, count, tension);
    stroke(pen, path.path());
}

void Graphics::FillRectangle(const Brush& brush, const QRectF& rect)
{
    fill(brush, rectPath(rect));
}

void Graphics::FillEllipse(const Brush& brush, const QRectF& rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    fill(brush, path);
}

void Graphics::FillPath(const Brush& brush, const GraphicsPath& path)
{
    fill(brush, path.path());
}

void Graphics::FillRegion(const Brush& brush, const Region& region)
{
    if (!region.IsInfinite()) {
        fill(brush, region.path());
        return;
    }
    // An infinite region covers the whole device.
    bool invertible = false;
    const QTransform toWorld = m_painter->combinedTransform().inverted(&invertible);
    if (invertible)
        fill(brush, toWorld.map(rectPath(deviceRect())));
}

void Graphics::DrawRectangle(const Pen& pen, const QRectF& rect)
{
    stroke(pen, rectPath(rect));
}

void Graphics::DrawEllipse(const Pen& pen, const QRectF& rect)
{
    QPainterPath path;
    path.addEllipse(rect);
    stroke(pen, path);
}

void Graphics::DrawLine(const Pen& pen, QPointF from, QPointF to)
{
    if (!pen.HasLineCaps()) {
        QPainterPath path(from);
        path.lineTo(to);
        stroke(pen, path);
        return;
    }
    GraphicsPath path;
    path.AddLine(from, to);
    stroke(pen, path);
}

void Graphics::DrawPath(const Pen& pen, const GraphicsPath& path)
{
    stroke(pen, path);
}

void Graphics::DrawImage(const Image& image, const QRectF& dest)
{
    DrawImage(image, dest, QRectF(0, 0, image.GetWidth(), image.GetHeight()));
}

void Graphics::DrawImage(const Image& image, QPointF topLeft)
{
    DrawImage(image, QRectF(topLeft, QSizeF(image.GetWidth(), image.GetHeight())));
}

void Graphics::DrawImage(const Image& image, const QRectF& dest, const QRectF& source,
                         const ImageAttributes* attributes)
{
    if (!active() || image.image().isNull() || source.width() <= 0 || source.height() <= 0 || dest.width() == 0
        || dest.height() == 0)
        return;
    QImage pixels = image.image();
    QRectF from = source;
    if (attributes && attributes->HasAdjustment()) {
        // Adjust only the part that is drawn.
        const QRect part = source.toAlignedRect() & pixels.rect();
        if (part.isEmpty())
            return;
        pixels = attributes->Apply(part == pixels.rect() ? pixels : pixels.copy(part));
        pixels.convertTo(QImage::Format_ARGB32_Premultiplied);
        from.translate(-part.topLeft());
    }

    // Image pixels to world: the source rectangle onto the destination.
    const double sx = dest.width() / from.width(), sy = dest.height() / from.height();
    QTransform place(sx, 0, 0, sy, dest.x() - from.x() * sx, dest.y() - from.y() * sy);

    if (prefilters(m_interpolation)) {
        // Device pixels per image pixel along each image axis.
        const QTransform total = place * m_painter->combinedTransform();
        const double fx = std::hypot(total.m11(), total.m12());
        const double fy = std::hypot(total.m21(), total.m22());
        if (fx < 0.5 || fy < 0.5) {
            const QRect part = from.toAlignedRect() & pixels.rect();
            const QSize size(std::max(1, int(std::lround(part.width() * std::min(fx, 1.0)))),
                             std::max(1, int(std::lround(part.height() * std::min(fy, 1.0)))));
            if (!part.isEmpty()) {
                const double kx = double(size.width()) / part.width(), ky = double(size.height()) / part.height();
                pixels = reduced(pixels, part, size);
                // Reduced pixel (u, v) stands for image point (part.x + u / kx, part.y + v / ky).
                place = QTransform(1 / kx, 0, 0, 1 / ky, part.x(), part.y()) * place;
                from = QRectF((from.x() - part.x()) * kx, (from.y() - part.y()) * ky, from.width() * kx,
                              from.height() * ky);
            }
        }
    }

    const QTransform world = m_painter->worldTransform();
    m_painter->setWorldTransform(place * world);
    m_painter->drawImage(from, pixels, from);
    m_painter->setWorldTransform(world);
}

QRectF Graphics::MeasureDriverString(const QString& text, const Font& font, QPointF origin, int) const
{
    return QRectF(origin.x(), origin.y() - font.Ascent(), font.Advance(text), font.Ascent() + font.Descent());
}

QRectF Graphics::MeasureString(const QString& text, const Font& font, QPointF origin) const
{
    qreal width = 0;
    int lines = 0;
    for (QStringView line : QStringView(text).split(u'\n')) {
        if (line.endsWith(u'\r'))
            line.chop(1);
        while (line.endsWith(u' '))
            line.chop(1);
        if (!line.isEmpty())
            width = std::max(width, font.Advance(line) + 2 * font.Padding());
        ++lines;
    }
    return QRectF(origin, QSizeF(width, lines * font.LineSpacing()));
}

} // namespace gfx
