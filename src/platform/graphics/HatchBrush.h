#pragma once

#include "platform/graphics/Brush.h"
#include "platform/graphics/Color.h"

#include <QImage>
#include <array>
#include <cstdint>

namespace gfx {

constexpr int HatchStyleTotal = 53;

// One of the 53 hatch patterns: an 8 by 8 tile of device pixels, never transformed by the
// world transform, anchored at the rendering origin. The foreground draws the pattern. A style
// outside 0..52 (from a damaged project) makes a brush that paints nothing.
class HatchBrush : public Brush {
public:
    HatchBrush(int style, Color foreground, Color background);

    int GetHatchStyle() const { return m_style; }
    Color GetForegroundColor() const { return m_foreground; }
    Color GetBackgroundColor() const { return m_background; }

    bool IsValid() const { return m_style >= 0 && m_style < HatchStyleTotal; }

    // Rows 0..7 top to bottom, bit 7 the leftmost pixel, 1 = foreground. Styles outside
    // 0..52 are taken as 0.
    static const std::array<std::uint8_t, 8>& Pattern(int style);
    // The tile in device pixels, with the antialiased diagonals of styles 2, 3 and 5.
    QImage Tile() const;

    std::unique_ptr<Brush> Clone() const override { return std::make_unique<HatchBrush>(*this); }
    void Fill(QPainter& painter, const QPainterPath& path, const FillContext& context) const override;
    QBrush QtBrush(const QPainter& painter, const FillContext& context) const override;

private:
    int m_style;
    Color m_foreground;
    Color m_background;
};

} // namespace gfx
