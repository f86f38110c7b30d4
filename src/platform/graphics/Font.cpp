#include "platform/graphics/Font.h"

#include <QFont>
#include <QHash>
#include <QRawFont>
#include <QTransform>
#include <cmath>
#include <map>
#include <utility>
#include <vector>

namespace gfx {

namespace {

// Font engines keep this size exactly; every other size is scaled from it.
constexpr double ReferenceSize = 2048;

} // namespace

// One face at the reference size, with the outlines and advances of the glyphs used so far.
struct Font::Face {
    QRawFont raw;
    QHash<quint32, QPainterPath> outlines;
    QHash<quint32, qreal> advances;

    // Glyph indexes of the characters (a surrogate pair gives one).
    std::vector<quint32> Glyphs(QStringView text) const
    {
        std::vector<quint32> glyphs(std::size_t(text.size()));
        int count = int(glyphs.size());
        if (count == 0 || !raw.glyphIndexesForChars(text.data(), int(text.size()), glyphs.data(), &count))
            count = 0;
        glyphs.resize(std::size_t(count));
        return glyphs;
    }

    qreal AdvanceOf(quint32 glyph)
    {
        auto it = advances.constFind(glyph);
        if (it != advances.constEnd())
            return *it;
        QPointF advance;
        if (!raw.advancesForGlyphIndexes(&glyph, &advance, 1))
            advance = QPointF();
        advances.insert(glyph, advance.x());
        return advance.x();
    }

    const QPainterPath& OutlineOf(quint32 glyph)
    {
        auto it = outlines.constFind(glyph);
        if (it == outlines.constEnd())
            it = outlines.insert(glyph, raw.pathForGlyph(glyph));
        return *it;
    }
};

namespace {

// Faces by family and by bold and italic; the program uses a handful, so they are all kept.
std::shared_ptr<Font::Face> faceFor(const QString& family, int style)
{
    thread_local std::map<std::pair<QString, int>, std::shared_ptr<Font::Face>> faces;
    const auto key = std::make_pair(family, style & (FontStyleBold | FontStyleItalic));
    auto it = faces.find(key);
    if (it != faces.end())
        return it->second;
    QFont font(family);
    font.setPixelSize(int(ReferenceSize));
    font.setBold((style & FontStyleBold) != 0);
    font.setItalic((style & FontStyleItalic) != 0);
    font.setHintingPreference(QFont::PreferNoHinting);
    auto face = std::make_shared<Font::Face>();
    face->raw = QRawFont::fromFont(font);
    if (!face->raw.isValid())
        face = nullptr;
    faces.emplace(key, face);
    return face;
}

} // namespace

Font::Font(const FontFamily& family, float emSize, int style) : m_emSize(emSize), m_style(style)
{
    if (!family.IsAvailable() || !(emSize >= 0) || !std::isfinite(emSize))
        return;
    m_face = faceFor(family.GetFamilyName(), style);
    m_scale = emSize / ReferenceSize;
}

QString Font::GetFamilyName() const
{
    return m_face ? m_face->raw.familyName() : QString();
}

float Font::GetHeight(const Graphics&) const
{
    // Sizes are in pixels and the program's Graphics measure in pixels, so the answer doesn't
    // depend on the Graphics.
    return float(LineSpacing());
}

qreal Font::Ascent() const
{
    return m_face ? m_face->raw.ascent() * m_scale : 0;
}

qreal Font::Descent() const
{
    return m_face ? m_face->raw.descent() * m_scale : 0;
}

qreal Font::LineSpacing() const
{
    return m_face ? (m_face->raw.ascent() + m_face->raw.descent() + m_face->raw.leading()) * m_scale : 0;
}

qreal Font::Advance(QStringView text) const
{
    if (!m_face)
        return 0;
    qreal sum = 0;
    for (quint32 glyph : m_face->Glyphs(text))
        sum += m_face->AdvanceOf(glyph);
    return sum * m_scale;
}

QPainterPath Font::Outline(QStringView text, QPointF baseline) const
{
    QPainterPath outline;
    if (!m_face || m_scale == 0)
        return outline;
    const QRawFont& raw = m_face->raw;
    qreal x = 0; // in reference units
    for (quint32 glyph : m_face->Glyphs(text)) {
        const QPainterPath& shape = m_face->OutlineOf(glyph);
        if (!shape.isEmpty())
            outline.addPath(QTransform::fromTranslate(x, 0).map(shape));
        x += m_face->AdvanceOf(glyph);
    }
    if (x > 0 && (m_style & (FontStyleUnderline | FontStyleStrikeout))) {
        const qreal thickness = raw.lineThickness();
        if (m_style & FontStyleUnderline)
            outline.addRect(QRectF(0, raw.underlinePosition(), x, thickness));
        if (m_style & FontStyleStrikeout)
            outline.addRect(QRectF(0, -raw.ascent() / 3, x, thickness));
    }
    return QTransform(m_scale, 0, 0, m_scale, baseline.x(), baseline.y()).map(outline);
}

} // namespace gfx
