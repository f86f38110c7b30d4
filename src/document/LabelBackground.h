#pragma once

#include "platform/graphics/Color.h"

#include <QString>
#include <cstdint>

class CArchive;

// One label's background: a solid colour, a hatch, or a picture placed by an offset, a scale
// and a wrap mode (0 tile, 1 flip X, 2 flip Y, 3 flip both, 4 clamp; with clamp, FitMode
// 0 centre, 1 fit, 2 stretch).
struct LabelBackground {
    gfx::COLORREF BackColor = 0xFFFFFF;
    gfx::COLORREF BackColor2 = 0;
    int HatchStyle = -1; // -1: solid colour
    QString ImageFile;
    int OffsetX = 0;
    int OffsetY = 0;
    int WrapMode = 4;
    std::uint8_t FitMode = 1;
    double Scale = 1.0;

    // The record in a project file, in the file's own order.
    void Serialize(CArchive& ar);
};
