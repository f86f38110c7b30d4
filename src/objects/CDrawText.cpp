#include "objects/CDrawText.h"

#include "document/CArchive.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawRect.h"
#include "objects/CGaussBlur.h"
#include "objects/DefaultProperties.h"
#include "platform/HandleImages.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Font.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/SolidBrush.h"

#include <algorithm>
#include <cmath>
#include <limits>
#include <type_traits>

namespace {

constexpr double Pi = 3.141592653589793;
constexpr double Radians = Pi / 180;

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

// How far from the origin a coordinate computed here may go: rectangles within it can still be
// measured in int.
constexpr long long CoordinateLimit = std::numeric_limits<int>::max() / 2;

// A coordinate computed in 64 bits, held to where rectangles can still be measured in int.
int clampCoordinate(long long value)
{
    return int(std::clamp(value, -CoordinateLimit, CoordinateLimit));
}

float wrapDegrees(double angle)
{
    double wrapped = std::fmod(angle, 360.0);
    if (wrapped < 0)
        wrapped += 360.0;
    return wrapped >= 360.0 || std::isnan(wrapped) ? 0.0f : float(wrapped);
}

double aspectOf(const CRect& r)
{
    return std::abs(double(r.Width())) / std::abs(double(r.Height()));
}

QRectF normalisedF(const CRect& rect)
{
    const CRect n = rect.Normalized();
    return QRectF(n.left, n.top, double(n.right) - n.left, double(n.bottom) - n.top);
}

// A colour with the alpha of a transparency in percent.
gfx::Color withTransparency(gfx::Color color, int transparency)
{
    return gfx::Color((100 - transparency) * 255 / 100, color.GetR(), color.GetG(), color.GetB());
}

} // namespace

// Glyph paths gathered 20 at a time before they join the text's outline, as the layout has
// always done it; the last batch joins when the line is done.
class CDrawText::GlyphBatch {
public:
    explicit GlyphBatch(gfx::GraphicsPath& target) : m_target(target) {}
    ~GlyphBatch() { m_target.AddPath(m_batch, false); }
    void Add(const gfx::GraphicsPath& glyph)
    {
        m_batch.AddPath(glyph, false);
        if (++m_count % 20 == 0) {
            m_target.AddPath(m_batch, false);
            m_batch.Reset();
        }
    }

private:
    gfx::GraphicsPath& m_target;
    gfx::GraphicsPath m_batch;
    int m_count = 0;
};

// Where a layout measures, with the font and the line height it uses.
struct CDrawText::Setting {
    Setting(const CDrawText& text, int resolution)
        : canvas(1, 1), graphics(canvas), font(text.MakeFont(resolution)), family(font.GetFamily()),
          fh(font.GetHeight(graphics))
    {
    }
    gfx::Bitmap canvas;
    gfx::Graphics graphics;
    gfx::Font font;
    gfx::FontFamily family;
    float fh;
};

CDrawText::CDrawText()
{
    CopyTextFields(g_defaultProperties);
}

CDrawText::CDrawText(const CRect& position) : CDrawObj(position)
{
    CopyTextFields(g_defaultProperties);
}

template <typename Source>
void CDrawText::CopyTextFields(const Source& s)
{
    m_text = s.m_text;
    m_angle = s.m_angle;
    m_textColor = s.m_textColor;
    m_fontName = s.m_fontName;
    m_fontSize = s.m_fontSize;
    m_fontStyle = s.m_fontStyle;
    m_textPathKind = s.m_textPathKind;
    m_justify = s.m_justify;
    m_textTransparency = s.m_textTransparency;
    m_textStyle = s.m_textStyle;
    m_edgeColor = s.m_edgeColor;
    m_edgeSize = s.m_edgeSize;
    m_edgeBlur = s.m_edgeBlur;
    m_edgeTransparency = s.m_edgeTransparency;
    m_shadowOn = s.m_shadowOn;
    m_shadowX = s.m_shadowX;
    m_shadowY = s.m_shadowY;
    m_shadowBlur = s.m_shadowBlur;
    m_shadowTransparency = s.m_shadowTransparency;
    m_tracking = s.m_tracking;
    m_leading = s.m_leading;
    if constexpr (std::is_same_v<Source, CDrawText>) {
        m_aux1 = s.m_aux1;
        m_auxColor1 = s.m_auxColor1;
        m_auxByte1 = s.m_auxByte1;
        m_auxInt1 = s.m_auxInt1;
        m_auxByte2 = s.m_auxByte2;
        m_aux2 = s.m_aux2;
        m_auxColor2 = s.m_auxColor2;
        m_auxByte3 = s.m_auxByte3;
        m_auxInt2 = s.m_auxInt2;
    }
}

void CDrawText::SetTextProperties(const QString& text, int pathKind, int justify, gfx::Color textColor,
                                  std::uint8_t textTransparency, float angle, int tracking, int leading)
{
    m_text = text;
    m_textPathKind = pathKind;
    m_justify = justify;
    m_textColor = textColor;
    m_textTransparency = textTransparency;
    m_angle = angle;
    m_tracking = tracking;
    m_leading = leading;
    Layout();
}

void CDrawText::SetFont(const QString& fontName, int fontSize, int fontStyle)
{
    m_fontName = fontName;
    m_fontSize = fontSize;
    m_fontStyle = fontStyle;
    Layout();
}

void CDrawText::SetEffects(gfx::Color edgeColor, std::uint8_t textStyle, std::uint8_t edgeSize, std::uint8_t edgeBlur,
                           std::uint8_t edgeTransparency, int shadowOn, int shadowX, int shadowY,
                           std::uint8_t shadowBlur, std::uint8_t shadowTransparency)
{
    m_edgeColor = edgeColor;
    m_textStyle = textStyle;
    m_edgeSize = edgeSize;
    m_edgeBlur = edgeBlur;
    m_edgeTransparency = edgeTransparency;
    m_shadowOn = shadowOn;
    m_shadowX = shadowX;
    m_shadowY = shadowY;
    m_shadowBlur = shadowBlur;
    m_shadowTransparency = shadowTransparency;
}

// ---- Measures ---------------------------------------------------------------------------------

gfx::Font CDrawText::MakeFont(int resolution) const
{
    // Unsigned, as the size has always been computed: a negative size becomes a huge one.
    const auto pixels = std::uint32_t(std::int64_t(m_fontSize) * resolution) / 72u;
    gfx::Font font(gfx::FontFamily(m_fontName), float(pixels), m_fontStyle);
    if (!font.IsAvailable())
        font = gfx::Font(gfx::FontFamily::GenericSansSerif(), float(pixels), m_fontStyle);
    return font;
}

float CDrawText::MeasureLine(const gfx::Graphics& graphics, const gfx::Font& font, const QString& text) const
{
    const QRectF box = graphics.MeasureDriverString(text, font, QPointF(0, 0),
                                                    gfx::DriverStringOptionsCmapLookup
                                                        | gfx::DriverStringOptionsRealizedAdvance);
    const double width = box.width() + double(text.size()) * m_tracking;
    return float(std::max(width, 0.1));
}

QStringList CDrawText::ExpandedLines() const
{
    QString text = m_text.isEmpty() ? m_text : ExpandTags(m_text);
    text.truncate(MaxLaidOutCharacters);
    return text.split(QStringLiteral("\r\n"));
}

// ---- Layout -----------------------------------------------------------------------------------

void CDrawText::Layout()
{
    const Setting s(*this, LayoutResolution);
    const QStringList lines = ExpandedLines();

    if (IsStraight()) {
        // The rectangle fits the content about its centre, the widest line plus the point size.
        float widest = 0;
        for (const QString& line : lines) {
            const float w = MeasureLine(s.graphics, s.font, line);
            if (w > widest)
                widest = w + float(m_fontSize);
        }
        const float pitch = std::max(s.fh + float(m_leading), 0.1f);
        const double height = double(lines.size()) * pitch;
        const CPoint c = m_position.CenterPoint();
        const long long hw = truncToInt(widest / 2.0 + 1), hh = truncToInt(height / 2 + 1);
        // A box that would reach beyond the coordinates' range moves in whole instead of being
        // cut: it keeps its centre, so laying it out again (the next open) gives the same box.
        // (A negative font size from a damaged file makes the half-width negative.)
        const long long ahw = std::llabs(hw), ahh = std::llabs(hh);
        const long long cx = std::clamp<long long>(c.x, std::min(ahw - CoordinateLimit, 0LL),
                                                   std::max(CoordinateLimit - ahw, 0LL));
        const long long cy = std::clamp<long long>(c.y, std::min(ahh - CoordinateLimit, 0LL),
                                                   std::max(CoordinateLimit - ahh, 0LL));
        m_position = CRect(clampCoordinate(cx - hw), clampCoordinate(cy + hh), clampCoordinate(cx + hw),
                           clampCoordinate(cy - hh));
        m_aspect = aspectOf(m_position);
    }

    m_textPath.Reset();
    const CRect n = m_position.Normalized();
    // Measured in double: a curved text's box from a damaged file may span more than int holds.
    const float w = float(double(n.right) - n.left), h = float(double(n.bottom) - n.top);
    if (IsStraight())
        LayoutStraight(s, lines, w, h);
    else
        LayoutCurved(s, lines, w, h);
}

void CDrawText::LayoutStraight(const Setting& s, const QStringList& lines, float w, float h)
{
    const float q = std::max(h / float(lines.size()), 0.1f);
    float y = 0;
    for (const QString& line : lines) {
        LayoutLine(s, line, 0, y, w, q);
        y += q;
    }
    // The glyphs were set in rows downward; one matrix turns them about the box's centre and
    // into the label's upward y.
    gfx::Matrix m(1, 0, 0, -1, 0, 0);
    m.Translate(w / 2, -h / 2);
    m.Rotate(90 - m_angle);
    m.Translate(-w / 2, h / 2);
    m.Translate(0, -h);
    m_textPath.Transform(m);
}

void CDrawText::LayoutLine(const Setting& s, const QString& line, float x, float y, float w, float q)
{
    const QString text = m_justify == Centered ? line.trimmed() : line;
    const float lw = MeasureLine(s.graphics, s.font, text);
    // x ends up negative for a line shorter than the box; it is subtracted below.
    if (m_justify == Centered)
        x -= ((w - lw) - float(m_fontSize)) / 2;
    else if (m_justify == Right)
        x -= (w - lw) - float(m_fontSize);

    GlyphBatch batch(m_textPath);
    float advance = 0;
    for (const QChar c : text) {
        const QString one(c);
        const float cw = MeasureLine(s.graphics, s.font, one);
        gfx::GraphicsPath glyph;
        glyph.AddString(one, s.family, m_fontStyle, s.font.GetSize(), QPointF(0, 0));
        // Centred on the line's middle, after the advances so far.
        glyph.Transform(gfx::Matrix(1, 0, 0, 1, -x + advance, -s.fh / 2 + q / 2 + y));
        batch.Add(glyph);
        advance += cw;
    }
}

void CDrawText::LayoutCurved(const Setting& s, const QStringList& lines, float w, float h)
{
    const int kind = GetPathKind();
    const float count = float(lines.size());
    const float pitch = std::max(s.fh + float(m_leading), 0.1f);
    m_ringWidth = count * pitch - float(m_leading);
    float x = 0, y = 0;
    if (kind == CurvedCCW || kind == SpiralCCW) {
        // The first line runs innermost.
        x += (count - 1) * pitch;
        y += (count - 1) * pitch;
        w -= 2 * (count - 1) * pitch;
        h -= 2 * (count - 1) * pitch;
    }

    // The start: the ellipse parameter of the point one line across the ellipse from the
    // handle's point, negated.
    const double cx = x + w / 2.0, cy = y + h / 2.0;
    const auto onEllipse = [&](double degrees) {
        return QPointF(cx + std::cos(degrees * Radians) * w / 2, cy + std::sin(degrees * Radians) * h / 2);
    };
    const QPointF p = onEllipse(m_angle);
    const QPointF d = onEllipse(m_angle + 0.1) - onEllipse(m_angle - 0.1);
    const double normal = std::atan2(d.y(), d.x()) + Pi / 2;
    const QPointF q = p + pitch * QPointF(std::cos(normal), std::sin(normal));
    const float start = float(-std::atan2((q.y() - cy) * w, (q.x() - cx) * h) / Radians);

    const int cw = kind == CurvedCW || kind == SpiralCW ? 1 : 0;
    for (const QString& line : lines) {
        const QRectF rect(x, y, w, h);
        switch (kind) {
        case CurvedCW:
        case CurvedCCW:
            LayoutOnEllipse(s, line, rect, cw, start);
            break;
        case SpiralCW:
        case SpiralCCW:
            // A right-justified spiral lays out nothing.
            if (m_justify == Left || m_justify == Centered)
                LayoutOnSpiral(s, line, rect, cw, pitch, start);
            break;
        default:
            return;
        }
        if (kind == CurvedCW || (kind == SpiralCW && m_justify != Centered)) {
            x += pitch;
            y += pitch;
            w -= 2 * pitch;
            h -= 2 * pitch;
        } else if (kind == CurvedCCW || kind == SpiralCCW) {
            x -= pitch;
            y -= pitch;
            w += 2 * pitch;
            h += 2 * pitch;
        }
        // A centred "Spiral CW" takes no step: its lines overprint.
    }
}

float CDrawText::AdvanceOnEllipse(float px, float py, float w, float h, float chord, float angle, float progress,
                                  float pitch, int dir, float& nx, float& ny, float& tangent)
{
    float step = dir == 1 ? 180 : -180;
    float delta = 180;
    for (int i = 0; i < 24; ++i) {
        const float shrink = (progress + step) / 360 * pitch;
        const double a = double(angle + step) * Radians;
        nx = float(std::cos(a) * (w - shrink) / 2);
        ny = float(-std::sin(a) * (h - shrink) / 2);
        const float d = std::hypot(nx - px, ny - py);
        delta /= 2;
        // Away from zero while the chord is longer than the distance, toward it otherwise.
        const float grow = chord > d ? delta : -delta;
        step += step > 0 ? grow : -grow;
    }
    tangent = float(std::atan2(double(ny) - py, double(nx) - px) / Radians);
    return step;
}

void CDrawText::LayoutOnEllipse(const Setting& s, QString line, QRectF rect, int cw, float start)
{
    // The baseline ellipse lies half a line inside the rectangle.
    const float w = float(rect.width()) - s.fh, h = float(rect.height()) - s.fh;
    const bool right = m_justify == Right;
    // Backward runs set each glyph at the end of its chord, turned half round.
    const bool atEnd = (right && cw == 1) || (!right && cw == 0);
    const float turn = atEnd ? 180 : 0;
    float angle = start;
    float nx, ny, tangent;

    if (m_justify == Centered) {
        // Walk back half the line, in steps of the mean advance.
        line = line.trimmed();
        if (!line.isEmpty()) {
            const float mean = MeasureLine(s.graphics, s.font, line) / float(line.size());
            const auto back = [&](float chord) {
                angle += AdvanceOnEllipse(float(std::cos(angle * Radians) * w / 2),
                                          float(-std::sin(angle * Radians) * h / 2), w, h, chord, angle, 0, 0, 0, nx,
                                          ny, tangent);
            };
            for (int i = 0; i < line.size() / 2; ++i)
                back(mean);
            if (line.size() % 2)
                back(mean / 2);
        }
    }

    const int n = int(line.size());
    const bool forward = (cw == 1 && !right) || (cw == 0 && right);
    const int dir = right ? 0 : 1;
    GlyphBatch batch(m_textPath);
    float px = float(std::cos(angle * Radians) * w / 2), py = float(-std::sin(angle * Radians) * h / 2);
    for (int i = 0; i < n; ++i) {
        const QChar c = line[forward ? i : n - 1 - i];
        const float advance = MeasureLine(s.graphics, s.font, QString(c));
        const float step = AdvanceOnEllipse(px, py, w, h, advance, angle, 0, 0, dir, nx, ny, tangent);
        if (atEnd) {
            px = nx;
            py = ny;
        }
        PlaceOnCurve(s, c, advance, px, py, tangent, turn, rect, batch);
        if (!atEnd) {
            px = nx;
            py = ny;
        }
        angle += step;
    }
}

void CDrawText::LayoutOnSpiral(const Setting& s, const QString& line, QRectF rect, int cw, float pitch, float start)
{
    const float w = float(rect.width()) - s.fh, h = float(rect.height()) - s.fh;
    // Left: forward, in the direction of the path, each glyph at the start of its chord.
    // Centred: from the end, against it, each glyph at the end of its chord, turned half round.
    const bool centred = m_justify == Centered;
    const int dir = centred ? 1 - cw : cw;
    const float turn = centred ? 180 : 0;
    // The progress grows either way, and the diameter loses one line per turn.
    const float sense = (!centred && cw == 0) || (centred && cw == 1) ? -1 : 1;
    float progress = 0;
    float angle = start;
    float nx, ny, tangent;
    const int n = int(line.size());
    GlyphBatch batch(m_textPath);
    float px = float(std::cos(angle * Radians) * w / 2), py = float(-std::sin(angle * Radians) * h / 2);
    for (int i = 0; i < n; ++i) {
        const QChar c = line[centred ? n - 1 - i : i];
        const float advance = MeasureLine(s.graphics, s.font, QString(c));
        const float step = AdvanceOnEllipse(px, py, w, h, advance, angle, progress, pitch, dir, nx, ny, tangent);
        if (centred) {
            px = nx;
            py = ny;
        }
        PlaceOnCurve(s, c, advance, px, py, tangent, turn, rect, batch);
        if (!centred) {
            px = nx;
            py = ny;
        }
        angle += step;
        progress += sense * step;
    }
    m_ringWidth += progress / 360 * pitch;
}

void CDrawText::PlaceOnCurve(const Setting& s, QChar c, float advance, float px, float py, float tangent, float turn,
                             const QRectF& rect, GlyphBatch& batch)
{
    const QString one(c);
    gfx::GraphicsPath glyph;
    glyph.AddString(one, s.family, m_fontStyle, s.font.GetSize(), QPointF(0, 0));
    const QRectF box = s.graphics.MeasureString(one, s.font, QPointF(0, 0));
    gfx::Matrix m;
    // Centred on its advance and on the line, turned along the chord, at the chord's point.
    m.Translate(float(-(box.width() - advance) / 2), float(-(box.height() - s.fh) / 2), gfx::MatrixOrder::Append);
    m.Translate(0, -s.fh / 2, gfx::MatrixOrder::Append);
    m.Rotate(360 - ((tangent - 180) + turn), gfx::MatrixOrder::Append);
    m.Translate(-px, py, gfx::MatrixOrder::Append);
    m.Translate(float(-(rect.width() / 2 + rect.x())), float(rect.height() / 2 + rect.y()), gfx::MatrixOrder::Append);
    m.Multiply(gfx::Matrix(-1, 0, 0, 1, 0, 0), gfx::MatrixOrder::Append);
    glyph.Transform(m);
    batch.Add(glyph);
}

// ---- Drawing ----------------------------------------------------------------------------------

void CDrawText::Draw(gfx::Graphics& graphics, int cx, int, CView*)
{
    const gfx::GraphicsState state = graphics.Save();
    // The glyphs are those of the last Layout; expanding here still reads a field's data file,
    // and reports a bad one, whenever the text is drawn.
    if (!m_text.isEmpty())
        ExpandTags(m_text);
    const gfx::SolidBrush textBrush(withTransparency(m_textColor, m_textTransparency));
    const QRectF r = normalisedF(m_position);

    if (m_shadowOn != 0) {
        // Up on the label is down in the shadow's offset.
        DrawBlurred(graphics, r, m_shadowLayer, withTransparency(gfx::Color(255, 0, 0, 0), m_shadowTransparency), false,
                    0, m_shadowBlur, QPointF(m_shadowX, -m_shadowY));
    }

    gfx::GraphicsPath path = m_textPath;
    path.Transform(gfx::Matrix(1, 0, 0, 1, float(r.x()), float(r.y())));
    const gfx::Color edge = withTransparency(m_edgeColor, m_edgeTransparency);
    const gfx::Pen edgePen(edge, m_edgeSize);
    switch (m_textStyle) {
    case Normal:
        graphics.FillPath(textBrush, path);
        break;
    case Outline:
        graphics.DrawPath(edgePen, path);
        graphics.FillPath(textBrush, path);
        break;
    case Embossed:
    case Chiseled: {
        // Three fills, each a little off the one before. The light one takes the object's fill
        // colour, not the text colour.
        const gfx::SolidBrush light(withTransparency(m_fillColor1, m_edgeTransparency));
        const gfx::SolidBrush edgeBrush(edge);
        const gfx::SolidBrush dark(gfx::Color(edge.GetA(), edge.GetR() / 2, edge.GetG() / 2, edge.GetB() / 2));
        const bool embossed = m_textStyle == Embossed;
        // Making the font asks the font configuration for its face, on every draw: only these
        // styles need its height.
        const float fh = MakeFont(cx).GetHeight(graphics);
        graphics.FillPath(embossed ? edgeBrush : dark, path);
        path.Transform(gfx::Matrix(1, 0, 0, 1, fh / 32, fh / 32));
        graphics.FillPath(embossed ? dark : edgeBrush, path);
        path.Transform(gfx::Matrix(1, 0, 0, 1, -fh / 64, -fh / 64));
        graphics.FillPath(light, path);
        break;
    }
    case Glowing:
    case Neon:
        DrawBlurred(graphics, r, m_edgeLayer, edge, true, edgePen.GetWidth(), m_edgeBlur, QPointF());
        if (m_textStyle == Glowing)
            graphics.FillPath(textBrush, path);
        break;
    default:
        break;
    }
    graphics.Restore(state);
}

void CDrawText::DrawBlurred(gfx::Graphics& graphics, const QRectF& r, BlurredLayer& layer, gfx::Color color,
                            bool stroked, float penWidth, std::uint8_t blur, QPointF offset)
{
    QRectF box = r;
    gfx::GraphicsPath path = m_textPath;
    if (IsStraight()) {
        const double d = std::hypot(r.width(), r.height());
        box = QRectF(r.center().x() - d / 2, r.center().y() - d / 2, d, d);
        path.Transform(gfx::Matrix(1, 0, 0, 1, float((d - r.width()) / 2), float((d - r.height()) / 2)));
    }
    // (A bitmap that can't be made would draw nothing either.)
    const int width = truncToInt(box.width() / 2), height = truncToInt(box.height() / 2);
    if (double(width) * height > MaxEffectPixels)
        return;
    path.Transform(gfx::Matrix(0.5f, 0, 0, 0.5f, 0, 0));
    // Every input of the composition is compared, not tracked: the undo actions write the fields
    // directly, and a layer kept from before any change would show stale pixels.
    const bool same = layer.composed && layer.width == width && layer.height == height && layer.color == color
                      && layer.stroked == stroked && layer.penWidth == penWidth && layer.blur == blur
                      && layer.smoothing == RenderQuality::smoothing && layer.pixelOffset == RenderQuality::pixelOffset
                      && layer.path.IsIdentical(path);
    if (!same) {
        gfx::Bitmap sharp(width, height);
        {
            gfx::Graphics canvas(sharp);
            RenderQuality::Apply(canvas);
            if (stroked)
                canvas.DrawPath(gfx::Pen(color, penWidth), path);
            else
                canvas.FillPath(gfx::SolidBrush(color), path);
        }
        // Blue is copied, not blurred: a glow keeps a sharp blue component.
        CGaussBlur gauss;
        layer.bitmap = gauss.Blur(sharp, float(blur) / 32, 14, true);
        layer.path = std::move(path);
        layer.width = width;
        layer.height = height;
        layer.color = color;
        layer.stroked = stroked;
        layer.penWidth = penWidth;
        layer.blur = blur;
        layer.smoothing = RenderQuality::smoothing;
        layer.pixelOffset = RenderQuality::pixelOffset;
        layer.composed = true;
    }
    if (layer.bitmap)
        graphics.DrawImage(*layer.bitmap, box.translated(offset));
}

void CDrawText::DrawTracker(gfx::Graphics& graphics, int state, int, int)
{
    if (state != 1 && state != 2)
        return;
    const gfx::Pen blue(gfx::Color(255, 0, 0, 255), 2.0f);
    const gfx::Pen red(gfx::Color(255, 255, 0, 0), 2.0f);
    gfx::Pen blueDots(blue), redDots(red);
    blueDots.SetDashStyle(gfx::DashStyle::Dot);
    redDots.SetDashStyle(gfx::DashStyle::Dot);
    const gfx::Image* rotate = HandleImages::Rotate();
    for (int handle = 1; handle <= GetHandleCount(); ++handle) {
        const CPoint p = GetHandle(handle);
        const bool turns = IsStraight() ? handle == 1 : handle == 9;
        if (turns && rotate) {
            const gfx::Matrix saved = graphics.GetTransform();
            graphics.TranslateTransform(float(p.x), float(p.y));
            graphics.RotateTransform(IsStraight() ? m_angle + 90 : m_angle);
            graphics.DrawImage(*rotate, QPointF(-(rotate->GetWidth() / 2.0), -(rotate->GetHeight() / 2.0)));
            graphics.SetTransform(saved);
            continue;
        }
        graphics.DrawRectangle(blue, QRectF(p.x - 10, p.y - 10, 20, 20));
        graphics.DrawRectangle(red, QRectF(p.x - 12, p.y - 12, 24, 24));
    }
    graphics.DrawPath(blueDots, FramePath(0));
    graphics.DrawPath(redDots, FramePath(2));
}

// ---- Handles ----------------------------------------------------------------------------------

int CDrawText::GetHandleCount() const
{
    return IsStraight() ? 1 : 9;
}

CPoint CDrawText::GetHandle(int handle) const
{
    const CRect n = m_position.Normalized();
    const CPoint c = n.CenterPoint();
    const int w2 = n.Width() / 2, h2 = n.Height() / 2;
    if (IsStraight()) {
        if (handle > 1)
            return {0, 0};
        // The width for y as well: the handle circles the centre.
        const double b = (m_angle + 90.0) * Radians;
        return {truncToInt(c.x + w2 * std::cos(b)), truncToInt(c.y + w2 * std::sin(b))};
    }
    if (handle == 9) {
        const double a = m_angle * Radians;
        return {truncToInt(c.x + w2 * std::cos(a)), truncToInt(c.y + h2 * std::sin(a))};
    }
    return CDrawObj::GetHandle(handle);
}

CRect CDrawText::GetHandleRect(int handle, CView* view) const
{
    const gfx::Image* glyph = HandleImages::Text();
    if (IsStraight() || handle != 9 || !glyph)
        return CDrawObj::GetHandleRect(handle, view);
    const CPoint p = GetHandle(handle);
    const int w = int(glyph->GetWidth()), h = int(glyph->GetHeight());
    CRect r(-(w / 2), -(h / 2), w - w / 2, h - h / 2);
    r.OffsetRect(p.x, p.y);
    return r;
}

Qt::CursorShape CDrawText::GetHandleCursor(int handle) const
{
    if (IsStraight() || handle == 9)
        return Qt::SizeAllCursor;
    switch (handle) {
    case 2:
    case 6: return Qt::SizeVerCursor;
    case 3:
    case 7: return Qt::SizeFDiagCursor;
    case 4:
    case 8: return Qt::SizeHorCursor;
    case 1:
    case 5: return Qt::SizeBDiagCursor;
    default: return Qt::ArrowCursor;
    }
}

void CDrawText::NotifyAngle()
{
    if (s_angleChanged)
        s_angleChanged(*this, QString::asprintf("%.1f", double(m_angle)));
}

void CDrawText::MoveHandleTo(int handle, CPoint point, CView* view)
{
    const CRect n = m_position.Normalized();
    const CPoint c = n.CenterPoint();
    const double dx = double(point.x) - c.x, dy = double(point.y) - c.y;
    if (IsStraight()) {
        if (handle != 1) {
            CDrawObj::MoveHandleTo(handle, point, view);
            return;
        }
        m_angle = wrapDegrees(std::atan2(dy, dx) / Radians - 90);
        Invalidate(view);
        Layout();
        NotifyAngle();
        return;
    }
    if (IsAspectLocked() && handle >= 1 && handle <= 8) {
        // The resize of a locked rectangle: about the centre, in proportion.
        CDrawRect locked(m_position);
        locked.m_aspect = m_aspect;
        const CRect r = locked.AspectRect(point);
        if (r != m_position) {
            Invalidate(view);
            m_position = r;
            Invalidate(view);
        }
        Layout();
        return;
    }
    if (handle == 9) {
        m_angle = wrapDegrees(std::atan2(n.Width() * dy, n.Height() * dx) / Radians);
        Invalidate(view);
        Layout();
        NotifyAngle();
        return;
    }
    CDrawObj::MoveHandleTo(handle, point, view);
    Layout();
}

// ---- Picking and bounds -----------------------------------------------------------------------

gfx::GraphicsPath CDrawText::FramePath(float grow) const
{
    const QRectF r = normalisedF(m_position).adjusted(-grow, -grow, grow, grow);
    gfx::GraphicsPath frame;
    if (!IsStraight()) {
        frame.AddEllipse(r);
        frame.AddEllipse(r.adjusted(m_ringWidth, m_ringWidth, -m_ringWidth, -m_ringWidth));
        return frame;
    }
    frame.AddRectangle(r);
    gfx::Matrix turn;
    turn.Translate(float(r.center().x()), float(r.center().y()));
    turn.Rotate(m_angle + 90);
    turn.Translate(float(-r.center().x()), float(-r.center().y()));
    frame.Transform(turn);
    return frame;
}

bool CDrawText::Intersects(const CRect& rect)
{
    const CRect a = rect.Normalized();
    const CRect b = m_position.Normalized();
    CRect overlap;
    if (!b.IsRectEmpty() && !overlap.IntersectRect(a, b))
        return false;
    const QRectF probe(a.left, a.top, std::max(a.Width(), 1), std::max(a.Height(), 1));
    return FramePath(0).Intersects(probe);
}

bool CDrawText::IsInside(const CRect& rect)
{
    const CRect n = m_position.Normalized();
    const QRectF bounds = m_textPath.GetBounds().translated(n.left, n.top);
    return normalisedF(rect).contains(bounds);
}

CRect CDrawText::GetDrawBounds(CRect rect) const
{
    CRect r = CDrawObj::GetDrawBounds(rect.Normalized());
    if (IsStraight()) {
        // A square about the centre that holds the rectangle at any angle.
        const CRect n = r.Normalized();
        const CPoint c = n.CenterPoint();
        const long long half = truncToInt(std::hypot(double(n.Width()), double(n.Height())) / 2);
        r = CRect(clampCoordinate(c.x - half), clampCoordinate(c.y - half), clampCoordinate(c.x + half),
                  clampCoordinate(c.y + half));
    }
    r = r.Normalized();
    // The shadow's offset is the file's: its size need not fit an int.
    r.InflateRect(CRect::saturated(std::abs((long long)m_shadowX)),
                  CRect::saturated(std::abs((long long)m_shadowY)));
    r.InflateRect(m_shadowBlur / 16, m_shadowBlur / 16);
    r.InflateRect(m_edgeBlur / 16, m_edgeBlur / 16);
    return r;
}

// ---- Copies -----------------------------------------------------------------------------------

std::unique_ptr<CDrawObj> CDrawText::Clone() const
{
    auto copy = std::make_unique<CDrawText>(m_position);
    CopyInto(*copy);
    return copy;
}

void CDrawText::CopyProperties(const CDrawObj& source)
{
    CDrawObj::CopyProperties(source);
    m_position = source.m_position;
    m_aspect = source.m_aspect;
    if (const auto* text = dynamic_cast<const CDrawText*>(&source))
        CopyTextFields(*text);
    Layout();
}

void CDrawText::SetTextColor(gfx::COLORREF color)
{
    m_textColor = gfx::Color::FromCOLORREF(color);
    Invalidate();
}

void CDrawText::Serialize(CArchive& ar)
{
    CDrawObj::Serialize(ar);
    // The file's order isn't the class's; style and justification take one byte.
    if (ar.IsStoring()) {
        ar << m_angle << m_text << m_textColor << m_aux1 << m_auxColor1 << m_auxByte1 << std::int32_t(m_auxInt1)
           << m_fontName << std::int32_t(m_fontSize) << std::int32_t(m_textPathKind) << std::uint8_t(m_fontStyle)
           << m_auxByte2 << std::uint8_t(m_justify) << m_textTransparency << m_textStyle << m_edgeColor << m_aux2
           << m_auxColor2 << m_auxByte3 << std::int32_t(m_auxInt2) << m_edgeSize << m_edgeBlur << m_edgeTransparency
           << std::int32_t(m_shadowOn) << std::int32_t(m_shadowX) << std::int32_t(m_shadowY) << m_shadowBlur
           << m_shadowTransparency << std::int32_t(m_tracking) << std::int32_t(m_leading);
        return;
    }
    ar >> m_angle >> m_text >> m_textColor >> m_aux1 >> m_auxColor1 >> m_auxByte1 >> m_auxInt1 >> m_fontName
        >> m_fontSize >> m_textPathKind;
    m_fontStyle = ar.Read<std::uint8_t>();
    ar >> m_auxByte2;
    m_justify = ar.Read<std::uint8_t>();
    ar >> m_textTransparency >> m_textStyle >> m_edgeColor >> m_aux2 >> m_auxColor2 >> m_auxByte3 >> m_auxInt2
        >> m_edgeSize >> m_edgeBlur >> m_edgeTransparency >> m_shadowOn >> m_shadowX >> m_shadowY >> m_shadowBlur
        >> m_shadowTransparency;
    // The version is the document's: 1.5 and 1.6 end the record here, any other reads on.
    const auto* doc = dynamic_cast<const CDrawDoc*>(ar.m_pDocument);
    if (doc && (doc->m_strFileId == CDrawDoc::FileId15 || doc->m_strFileId == CDrawDoc::FileId16)) {
        m_tracking = 0;
        m_leading = 0;
    } else {
        ar >> m_tracking >> m_leading;
    }
    Layout();
}
