#pragma once

#include "platform/graphics/FontFamily.h"

#include <QPainterPath>
#include <QPointF>
#include <QStringView>
#include <memory>

namespace gfx {

class Graphics;

enum FontStyle { FontStyleRegular = 0, FontStyleBold = 1, FontStyleItalic = 2, FontStyleUnderline = 4,
                 FontStyleStrikeout = 8 };

// A face at an em size in world units (GDI+'s UnitPixel). Characters are looked up in the
// face's character map one by one and set at their design advances: no hinting, kerning or
// shaping, so a string measures the sum of its characters. Outlines and metrics are read at one
// reference size and scaled, which keeps them exact at sizes far beyond what font engines
// handle (their fixed-point metrics overflow near 30,000 pixels).
class Font {
public:
    // An unavailable family, or a size that is negative or not a number, makes an unavailable
    // font, which measures and outlines nothing.
    Font(const FontFamily& family, float emSize, int style);

    bool IsAvailable() const { return m_face != nullptr; }
    float GetSize() const { return m_emSize; }
    int GetStyle() const { return m_style; }
    QString GetFamilyName() const;

    // The line spacing: ascent, descent and line gap.
    float GetHeight(const Graphics& graphics) const;
    qreal Ascent() const;
    qreal Descent() const;
    qreal LineSpacing() const;
    // The sum of the characters' advances.
    qreal Advance(QStringView text) const;
    // The outline of one line of text whose baseline starts at the point, with underline and
    // strikeout as the style asks.
    QPainterPath Outline(QStringView text, QPointF baseline) const;
    // The blank GDI+ leaves before the first glyph of a laid-out string and after its last: a
    // sixth of an em. AddString and MeasureString use the same, so that glyphs can be centred.
    qreal Padding() const { return m_emSize / 6.0; }

    struct Face;

private:
    std::shared_ptr<Face> m_face;
    float m_emSize = 0;
    int m_style = 0;
    double m_scale = 0; // world units per reference unit
};

} // namespace gfx
