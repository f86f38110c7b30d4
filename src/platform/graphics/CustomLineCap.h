#pragma once

#include "platform/graphics/GraphicsPath.h"


namespace gfx {

enum class LineCap {
    Flat = 0,
    Square = 1,
    Round = 2,
    Triangle = 3,
    NoAnchor = 0x10,
    SquareAnchor = 0x11,
    RoundAnchor = 0x12,
    DiamondAnchor = 0x13,
    ArrowAnchor = 0x14,
    Custom = 0xff
};

// A line end drawn from a path in the cap's own frame: the origin at the line's end point, +y
// along the line and outward past the end, x across it. One cap unit is the pen width times the
// width scale. A fill path is filled; a stroke path is outlined with the pen; with both, the
// fill is ignored. The base inset (in cap units) shortens the drawn line when positive and
// lengthens it when negative.
class CustomLineCap {
public:
    CustomLineCap(const GraphicsPath* fillPath, const GraphicsPath* strokePath, LineCap baseCap = LineCap::Flat,
                  float baseInset = 0);

    void SetWidthScale(float scale) { m_widthScale = scale; }
    float GetWidthScale() const { return m_widthScale; }
    void SetBaseInset(float inset) { m_baseInset = inset; }
    float GetBaseInset() const { return m_baseInset; }
    void SetBaseCap(LineCap cap) { m_baseCap = cap; }
    LineCap GetBaseCap() const { return m_baseCap; }

    // The cap's path in its own frame and whether it is filled (otherwise it is stroked).
    const GraphicsPath& path() const { return m_path; }
    bool isFilled() const { return m_filled; }

private:
    GraphicsPath m_path;
    bool m_filled = false;
    LineCap m_baseCap;
    float m_baseInset;
    float m_widthScale = 1.0f;
};

} // namespace gfx
