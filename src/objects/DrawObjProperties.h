#pragma once

#include "platform/graphics/Color.h"

#include <QString>
#include <cstdint>

// The appearance every drawable object has, with the values a new object starts from.
// Drawing meaning: bit 0 of m_flags draws the outline, bit 1 the fill; m_fillKind is
// 0 solid, 1 hatch, 2 picture, 3 path gradient, 4 linear gradient; m_lineKind 4 strokes the
// outline with a gradient; m_transparency (percent) applies to solid and hatch fills.
struct DrawObjProperties {
    std::uint8_t m_flags = 7;
    int m_dashStyle = 0;
    int m_dashCap = 0;
    int m_fillKind = 0;
    int m_lineKind = 0;
    int m_lineReserved = 0; // kept in files and copies, read by nothing
    std::uint8_t m_transparency = 0;
    gfx::Color m_fillColor1{255, 255, 255, 255};
    gfx::Color m_fillColor2{255, 0, 0, 0};
    gfx::Color m_lineColor1{255, 0, 0, 0};
    gfx::Color m_lineColor2{255, 0, 0, 0};
    std::uint8_t m_lineWidth = 1;
    int m_gradientStyle = 2;
    int m_lineGradientMode = 2;
    int m_hatchStyle = 0; // -1 once a picture has been chosen
    std::uint8_t m_startArrowSize = 2;
    std::uint8_t m_endArrowSize = 4;
    int m_startArrow = 241;
    int m_endArrow = 19;
    QString m_pictureFile;
    int m_wrapMode = 4; // clamp, shown as Center
    std::uint8_t m_gradientSwap = 0;
    std::uint8_t m_pictureScale = 1; // 0 none, 1 fit, 2 stretch
};
