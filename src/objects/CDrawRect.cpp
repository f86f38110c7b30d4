#include "objects/CDrawRect.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "document/CView.h"
#include "objects/DefaultProperties.h"
#include "platform/HandleImages.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Image.h"

#include <QPolygon>
#include <QRegion>
#include <algorithm>
#include <cmath>
#include <limits>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double DegreesPerRadian = 180.0 / Pi;

// A double as the integer C++ truncation makes of it, without the undefined results of NaN
// or of values beyond the range.
int truncToInt(double value)
{
    if (std::isnan(value))
        return 0;
    constexpr double low = std::numeric_limits<int>::min();
    constexpr double high = std::numeric_limits<int>::max();
    return int(std::clamp(std::trunc(value), low, high));
}

float wrapDegrees(float angle)
{
    float wrapped = std::fmod(angle, 360.0f);
    if (wrapped < 0)
        wrapped += 360.0f;
    return wrapped >= 360.0f ? 0.0f : wrapped;
}

// Holds a ring thickness to 0..limit; a thickness that can't be computed becomes 0.
float clampRing(double value, int limit)
{
    if (!(value >= 0))
        return 0;
    return float(std::min(value, double(std::max(limit, 0))));
}

// The sweep from start to end, counted clockwise (negative or 0): the end is brought below the
// start in whole turns. Angles that aren't numbers, or so large that a turn no longer changes
// them, give no sweep instead of an endless loop.
float arcSweep(float start, float end)
{
    if (!std::isfinite(start) || !std::isfinite(end))
        return 0;
    float sweep = end;
    if (double(sweep) - start > 3600.0)
        sweep = float(end - 360.0 * std::floor((double(end) - start) / 360.0));
    for (int turns = 0; sweep > start && turns < 16; ++turns)
        sweep -= 360;
    if (sweep > start)
        return 0;
    return sweep - start;
}

const gfx::Color Blue(255, 0, 0, 255);
const gfx::Color White(255, 255, 255, 255);

QRectF toRectF(const CRect& r)
{
    return QRectF(r.left, r.top, double(r.right) - r.left, double(r.bottom) - r.top);
}

} // namespace

CDrawRect::CDrawRect()
    : m_shape(g_defaultProperties.m_shape),
      m_cornerSize(g_defaultProperties.m_cornerSize),
      m_startAngle(g_defaultProperties.m_startAngle),
      m_endAngle(g_defaultProperties.m_endAngle),
      m_ringX(g_defaultProperties.m_ringX),
      m_ringY(g_defaultProperties.m_ringY)
{
}

CDrawRect::CDrawRect(const CRect& position)
    : CDrawObj(position),
      m_shape(g_defaultProperties.m_shape),
      m_cornerSize(g_defaultProperties.m_cornerSize),
      m_startAngle(g_defaultProperties.m_startAngle),
      m_endAngle(g_defaultProperties.m_endAngle),
      m_ringX(g_defaultProperties.m_ringX),
      m_ringY(g_defaultProperties.m_ringY)
{
}

int CDrawRect::GetHandleCount() const
{
    switch (ShapeCode()) {
    case RoundRectangle:
    case Halo: return 9;
    case Arc: return 11;
    case Line:
    case ArrowLine: return 2;
    default: return CDrawObj::GetHandleCount();
    }
}

CPoint CDrawRect::GetHandle(int handle) const
{
    const int shape = ShapeCode();
    if ((shape == Line || shape == ArrowLine) && handle == 2)
        return CDrawObj::GetHandle(5);
    if (handle < 9)
        return CDrawObj::GetHandle(handle);

    const CRect n = m_position.Normalized();
    const CPoint c = n.CenterPoint();
    const int w2 = n.Width() / 2;
    const int h2 = n.Height() / 2;
    // The ring handle of a halo, and the arc's third handle, sit on the inner ellipse.
    const auto ringHandle = [&](float& angle) {
        if (IsAspectLocked())
            angle = 45;
        const double a = angle / DegreesPerRadian;
        return CPoint(truncToInt(c.x + w2 * std::cos(a) - m_ringX * std::cos(a)),
                      truncToInt(c.y + h2 * std::sin(a) - m_ringY * std::sin(a)));
    };
    // The arc's end handles sit in the middle of the ring.
    const auto endHandle = [&](float angle) {
        const double a = angle / DegreesPerRadian;
        return CPoint(truncToInt(c.x + (n.Width() - m_ringX) / 2.0 * std::cos(a)),
                      truncToInt(c.y + (n.Height() - m_ringY) / 2.0 * std::sin(a)));
    };

    switch (shape) {
    case RoundRectangle:
        if (handle == 9)
            return CPoint(CRect::saturated(n.right - (long long)(m_cornerSize.x / 2)),
                          CRect::saturated(n.bottom - (long long)(m_cornerSize.y / 2)));
        break;
    case Halo:
        if (handle == 9)
            return ringHandle(m_startAngle);
        break;
    case Arc:
        if (handle == 9)
            return endHandle(m_startAngle);
        if (handle == 10)
            return endHandle(m_endAngle);
        if (handle == 11)
            return ringHandle(m_ringAngle);
        break;
    default:
        break;
    }
    return CDrawObj::GetHandle(handle);
}

Qt::CursorShape CDrawRect::GetHandleCursor(int handle) const
{
    const int shape = ShapeCode();
    if ((shape == Line || shape == ArrowLine) && handle == 2)
        return CDrawObj::GetHandleCursor(5);
    if (shape == RoundRectangle && handle == 9)
        return Qt::SizeFDiagCursor;
    if ((shape == Arc && handle >= 9 && handle <= 11) || (shape == Halo && handle == 9))
        return Qt::SizeAllCursor;
    return CDrawObj::GetHandleCursor(handle);
}

void CDrawRect::BuildPath(const QRectF& rect)
{
    m_path.Reset();
    const double x = rect.x(), y = rect.y();
    double w = rect.width();
    const double h = rect.height();
    switch (ShapeCode()) {
    case Rectangle:
        m_path.AddRectangle(rect);
        break;
    case RoundRectangle: {
        const int l = truncToInt(x), rt = truncToInt(x + w), t = truncToInt(y), b = truncToInt(y + h);
        int hx = m_cornerSize.x / 2;
        int hy = m_cornerSize.y / 2;
        // A corner larger than the shape is limited to half of it; the stored size stays.
        if (w <= 2.0 * hx)
            hx = truncToInt(w / 2);
        if (h <= 2.0 * hy)
            hy = truncToInt(h / 2);
        const QSizeF corner(2.0 * hx, 2.0 * hy);
        m_path.AddArc(QRectF(QPointF(l, t), corner), 180, 90);
        m_path.AddArc(QRectF(QPointF(rt - 2.0 * hx, t), corner), 270, 90);
        m_path.AddArc(QRectF(QPointF(rt - 2.0 * hx, b - 2.0 * hy), corner), 0, 90);
        m_path.AddArc(QRectF(QPointF(l, b - 2.0 * hy), corner), 90, 90);
        m_path.CloseFigure();
        break;
    }
    case Ellipse:
        m_path.AddEllipse(rect);
        break;
    case Arc: {
        if (w == 0)
            w = 0.1;
        const float sweep = arcSweep(m_startAngle, m_endAngle);
        m_path.AddArc(QRectF(x, y, w, h), m_startAngle, sweep);
        const QRectF inner(x + m_ringX, y + m_ringY, w - 2.0 * m_ringX, h - 2.0 * m_ringY);
        m_path.AddArc(inner, m_startAngle + sweep, -sweep);
        m_path.CloseFigure();
        break;
    }
    case Halo:
        // Both ellipses in one path under the alternate fill mode: the hole stays open.
        m_path.AddEllipse(rect);
        m_path.AddEllipse(QRectF(x + m_ringX, y + m_ringY, w - 2.0 * m_ringX, h - 2.0 * m_ringY));
        break;
    default:
        break;
    }
}

void CDrawRect::Draw(gfx::Graphics& graphics, int, int, CView*)
{
    // Everything here comes from the object and the graphics alone, so that the screen, the
    // print bitmap and the preview paint alike.
    BuildPath(ShapeAppearance::NormalizedRect(m_position));
    m_appearance.Prepare(*this, graphics, m_path, true);
    const QRectF& r = m_appearance.Rect();
    const int shape = ShapeCode();

    if (shape == Line || shape == ArrowLine) {
        gfx::Pen& pen = m_appearance.LinePen();
        if (shape == ArrowLine)
            ShapeAppearance::ApplyArrowCaps(*this, pen, 0);
        if (m_appearance.DrawsLine())
            graphics.DrawLine(pen, QPointF(m_position.left, m_position.top),
                              QPointF(m_position.right, m_position.bottom));
        return;
    }
    if (shape > Halo)
        return;

    if (m_appearance.DrawsFill() && !m_appearance.DrawPicture(graphics, m_path, shape == Rectangle)) {
        const gfx::Brush& brush = m_appearance.FillBrush();
        if (shape == Rectangle)
            graphics.FillRectangle(brush, r);
        else if (shape == Ellipse)
            graphics.FillEllipse(brush, r);
        else
            graphics.FillPath(brush, m_path);
    }
    if (m_appearance.DrawsLine()) {
        const gfx::Pen& pen = m_appearance.LinePen();
        if (shape == Rectangle)
            graphics.DrawRectangle(pen, r);
        else if (shape == Ellipse)
            graphics.DrawEllipse(pen, r);
        else
            graphics.DrawPath(pen, m_path);
    }
}

void CDrawRect::DrawTracker(gfx::Graphics& graphics, int state, int, int)
{
    if (state != 1 && state != 2)
        return;
    const int shape = ShapeCode();
    if (shape == Arc) {
        // The ring the arc is cut from, dotted, so that its extent shows while editing.
        gfx::Pen blue(Blue, 2.0f);
        gfx::Pen white(White, 2.0f);
        blue.SetDashStyle(gfx::DashStyle::Dot);
        white.SetDashStyle(gfx::DashStyle::Dot);
        const QRectF n = toRectF(m_position.Normalized());
        graphics.DrawEllipse(blue, n.adjusted(-2, -2, 2, 2));
        graphics.DrawEllipse(white, n.adjusted(-4, -4, 4, 4));
        const QRectF inner = n.adjusted(m_ringX, m_ringY, -m_ringX, -m_ringY);
        graphics.DrawEllipse(blue, inner.adjusted(6, 6, -6, -6));
        graphics.DrawEllipse(white, inner.adjusted(8, 8, -8, -8));
    }

    const gfx::Pen black(gfx::Color(255, 0, 0, 0), 2.0f);
    const gfx::Pen white(White, 2.0f);
    const bool locked = IsAspectLocked();
    for (int handle = 1; handle <= GetHandleCount(); ++handle) {
        const CPoint p = GetHandle(handle);
        // Special handles show a glyph: the resize glyph, or the rotate glyph turned by an angle.
        const gfx::Image* glyph = nullptr;
        float rotation = 0;
        if (shape == RoundRectangle && handle == 9) {
            glyph = HandleImages::Resize();
        } else if ((shape == Halo && handle == 9) || (shape == Arc && handle == 11)) {
            glyph = locked ? HandleImages::Rotate() : HandleImages::Resize();
            rotation = locked ? -45.0f : 0.0f;
        } else if (shape == Arc && handle == 9) {
            glyph = HandleImages::Rotate();
            rotation = m_startAngle;
        } else if (shape == Arc && handle == 10) {
            glyph = HandleImages::Rotate();
            rotation = m_endAngle;
        }
        if (glyph) {
            // The world transform is reset, not put back: a metafile's mirror that held for the
            // rest of the pass ends at the first glyph.
            graphics.TranslateTransform(float(p.x), float(p.y));
            graphics.RotateTransform(rotation);
            graphics.DrawImage(*glyph, QPointF(-(glyph->GetWidth() / 2.0), -(glyph->GetHeight() / 2.0)));
            graphics.ResetTransform();
            continue;
        }
        graphics.DrawRectangle(black, QRectF(p.x - 10, p.y - 10, 20, 20));
        graphics.DrawRectangle(white, QRectF(p.x - 12, p.y - 12, 24, 24));
    }
}

bool CDrawRect::LineBandIntersects(CPoint from, CPoint to, int lineWidth, const CRect& rect)
{
    const int t = (lineWidth + 10) / 2;
    const double dx = double(to.x) - from.x;
    const double dy = double(to.y) - from.y;
    const double length = std::hypot(dx, dy);
    const CRect probe = rect.Normalized();
    const QRect target(probe.left, probe.top, std::max(probe.Width(), 1), std::max(probe.Height(), 1));
    if (length == 0) {
        // A line of no length is picked as a square around its point.
        return QRect(from.x - t, from.y - t, 2 * t, 2 * t).intersects(target);
    }
    // Sideways by t, perpendicular to the segment; computed on the positive extent and turned
    // to the segment's real direction.
    const int ox = truncToInt(t * std::abs(dy) / length);
    const int oy = truncToInt(t * std::abs(dx) / length);
    const int sx = dx < 0 ? -1 : 1;
    const int sy = dy < 0 ? -1 : 1;
    const QPoint side(-sy * ox, sx * oy);
    QPolygon band;
    band << QPoint(from.x, from.y) + side << QPoint(to.x, to.y) + side << QPoint(to.x, to.y) - side
         << QPoint(from.x, from.y) - side;
    return QRegion(band, Qt::WindingFill).intersects(target);
}

bool CDrawRect::Intersects(const CRect& rect)
{
    const CRect a = rect.Normalized();
    const CRect b = m_position.Normalized();
    CRect overlap;
    if (!b.IsRectEmpty() && !overlap.IntersectRect(a, b))
        return false;
    const int shape = ShapeCode();
    if (shape == Line || shape == ArrowLine)
        return LineBandIntersects(CPoint(m_position.left, m_position.top),
                                  CPoint(m_position.right, m_position.bottom), m_lineWidth, a);
    // The outline that was drawn last, with its fill mode: a halo's hole doesn't pick.
    return m_path.Intersects(toRectF(a));
}

CPoint CDrawRect::SnapPoint(CPoint point, CDrawDoc* document, int resolution)
{
    if (!document)
        return point;
    // The screen's resolution for both axes, on purpose.
    const CSize scaled = document->GetLogicalSize(resolution, resolution, document->FindLabelObject());
    const int tenth = resolution / 10;
    if (tenth <= 0)
        return point;
    const int sx = scaled.cx / tenth;
    const int sy = scaled.cy / tenth;
    if (sx > 0)
        point.x = point.x / sx * sx;
    if (sy > 0)
        point.y = point.y / sy * sy;
    return point;
}

CPoint CDrawRect::ConstrainAngle(CPoint point, CPoint o)
{
    // In 64 bits: the other end of a damaged file's line can be further away than an int counts.
    const long long dx = (long long)o.x - point.x;
    const long long dy = (long long)o.y - point.y;
    const double d = std::atan2(double(dx), double(dy)) / 3.14159 * 180;
    const long long m = (std::abs(dx) + std::abs(dy)) / 2;
    const auto diagonal = [&](int sx, int sy) {
        return CPoint(CRect::saturated(o.x + sx * m), CRect::saturated(o.y + sy * m));
    };
    if (d > -157.5 && d <= -112.5)
        return diagonal(1, 1);
    if (d > -112.5 && d <= -67.5)
        return CPoint(point.x, o.y);
    if (d > -67.5 && d <= -22.5)
        return diagonal(1, -1);
    if (d > -22.5 && d <= 22.5)
        return CPoint(o.x, point.y);
    if (d > 22.5 && d <= 67.5)
        return diagonal(-1, -1);
    if (d > 67.5 && d <= 112.5)
        return CPoint(point.x, o.y);
    if (d > 112.5 && d <= 157.5)
        return diagonal(-1, 1);
    return CPoint(o.x, point.y);
}

CRect CDrawRect::AspectRect(CPoint point) const
{
    const CPoint c = m_position.CenterPoint();
    double dx = std::abs(double(point.x) - c.x);
    double dy = std::abs(double(point.y) - c.y);
    // A flat object's aspect is infinite; the corners then stop at the ends of the integer range.
    if (dx > dy)
        dy = truncToInt(dx / m_aspect);
    else
        dx = truncToInt(dy * m_aspect);
    return CRect(truncToInt(c.x - dx), truncToInt(c.y + dy), truncToInt(c.x + dx), truncToInt(c.y - dy));
}

void CDrawRect::ResetRing()
{
    // Any resize of an arc or halo starts the ring again at a sixteenth of the size.
    const CRect n = m_position.Normalized();
    m_ringX = float(n.Width() / 16);
    m_ringY = float(n.Height() / 16);
}

float CDrawRect::HandleAngle(CPoint point) const
{
    const CRect n = m_position.Normalized();
    const CPoint c = n.CenterPoint();
    const double dx = point.x - c.x;
    const double dy = point.y - c.y;
    return float(std::atan2(n.Width() * dy, n.Height() * dx) * DegreesPerRadian);
}

void CDrawRect::MoveRingHandle(float& angle, CPoint point)
{
    const CRect n = m_position.Normalized();
    const CPoint c = n.CenterPoint();
    const int dx = point.x - c.x;
    const int dy = point.y - c.y;
    angle = HandleAngle(point);
    // The reverse of GetHandle, which forces 45 for a locked object; both are kept as they are.
    if (!IsAspectLocked())
        angle = 45;
    const double a = angle / DegreesPerRadian;
    m_ringX = clampRing(n.Width() / 2 - dx / std::cos(a), n.Width() / 2);
    m_ringY = clampRing(n.Height() / 2 - dy / std::sin(a), n.Height() / 2);
}

void CDrawRect::MoveHandleTo(int handle, CPoint point, CView* view)
{
    const int shape = ShapeCode();

    if ((shape == Line || shape == ArrowLine) && (handle == 1 || handle == 2)) {
        const Qt::KeyboardModifiers modifiers = view ? view->Modifiers() : Qt::NoModifier;
        if (modifiers & Qt::AltModifier)
            point = SnapPoint(point, m_pDocument, view->ScreenResolution());
        if (modifiers & Qt::ShiftModifier)
            point = ConstrainAngle(point, GetHandle(handle == 1 ? 2 : 1));
        CDrawObj::MoveHandleTo(handle == 2 ? 5 : handle, point, view);
        return;
    }

    if (handle >= 1 && handle <= 8) {
        if (IsAspectLocked()) {
            const CRect r = AspectRect(point);
            if (r != m_position) {
                Invalidate(view);
                m_position = r;
                Invalidate(view);
            }
        } else {
            CDrawObj::MoveHandleTo(handle, point, view);
        }
        if (shape == Arc || shape == Halo) {
            ResetRing();
            Invalidate(view);
        }
        return;
    }

    if (shape == RoundRectangle && handle == 9) {
        const CRect n = m_position.Normalized();
        // A damaged file's rectangle can be wider than an int counts: the corner stops at the end.
        const int x = std::max(std::min(point.x, CRect::saturated(n.right - 1LL)), n.left + n.Width() / 2);
        const int y = std::max(std::min(point.y, CRect::saturated(n.bottom - 1LL)), n.top + n.Height() / 2);
        m_cornerSize =
            CPoint(CRect::saturated(((long long)n.right - x) * 2), CRect::saturated(((long long)n.bottom - y) * 2));
        Invalidate(view);
        return;
    }
    if (shape == Halo && handle == 9) {
        MoveRingHandle(m_startAngle, point);
        Invalidate(view);
        return;
    }
    if (shape == Arc && handle == 9) {
        // The start handle turns the whole arc.
        const float old = m_startAngle;
        m_startAngle = wrapDegrees(HandleAngle(point));
        m_endAngle = wrapDegrees(m_endAngle - (old - m_startAngle));
        Invalidate(view);
        return;
    }
    if (shape == Arc && handle == 10) {
        m_endAngle = wrapDegrees(HandleAngle(point));
        Invalidate(view);
        return;
    }
    if (shape == Arc && handle == 11) {
        MoveRingHandle(m_ringAngle, point);
        Invalidate(view);
        return;
    }
    CDrawObj::MoveHandleTo(handle, point, view);
}

std::unique_ptr<CDrawObj> CDrawRect::Clone() const
{
    auto copy = std::make_unique<CDrawRect>(m_position);
    CopyInto(*copy);
    return copy;
}

void CDrawRect::CopyProperties(const CDrawObj& source)
{
    CDrawObj::CopyProperties(source);
    if (const auto* rect = dynamic_cast<const CDrawRect*>(&source)) {
        m_shape = rect->m_shape;
        m_cornerSize = rect->m_cornerSize;
        m_startAngle = rect->m_startAngle;
        m_endAngle = rect->m_endAngle;
        m_ringX = rect->m_ringX;
        m_ringY = rect->m_ringY;
    }
}

void CDrawRect::FitToPicture()
{
    m_appearance.LoadPicture(*this);
    const gfx::Image* picture = m_appearance.Picture();
    const int width = picture ? int(picture->GetWidth()) : 0;
    const int height = picture ? int(picture->GetHeight()) : 0;
    m_position.right = CRect::saturated((long long)m_position.left + width);
    m_position.bottom = CRect::saturated((long long)m_position.top - height);
    m_aspect = std::abs(double(m_position.Width())) / std::abs(double(m_position.Height()));
}

void CDrawRect::Serialize(CArchive& ar)
{
    CDrawObj::Serialize(ar);
    // m_ringAngle isn't kept.
    if (ar.IsStoring())
        ar << std::int32_t(m_shape) << m_cornerSize << m_startAngle << m_endAngle << m_ringX << m_ringY;
    else
        ar >> m_shape >> m_cornerSize >> m_startAngle >> m_endAngle >> m_ringX >> m_ringY;
}
