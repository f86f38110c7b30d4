#include "platform/graphics/ArrowHeads.h"

#include "platform/graphics/CustomLineCap.h"
#include "platform/graphics/Matrix.h"
#include "platform/graphics/Pen.h"

#include <QPointF>
#include <cmath>
#include <iterator>
#include <optional>

namespace gfx::ArrowHeads {

namespace {

// The picker's entries, by index.
constexpr int PickerCodes[PickerCount] = {NoArrow, 20, OpenArrow, StealthArrow, 19, 18};

// The cap of one end, or nothing when that end has none.
std::optional<CustomLineCap> MakeCap(int code, int size, int lineWidth, float inset)
{
    if (code == NoArrow || code == NoArrowAlias)
        return std::nullopt;
    const float scale = float(size) / float(lineWidth);
    if (!std::isfinite(scale))
        return std::nullopt;
    GraphicsPath path = Path(code);
    Matrix turn;
    turn.Rotate(90);
    path.Transform(turn);
    const bool stroked = code == OpenArrow;
    CustomLineCap cap(stroked ? nullptr : &path, stroked ? &path : nullptr, LineCap::Flat, 0);
    cap.SetWidthScale(scale);
    cap.SetBaseInset(inset);
    return cap;
}

} // namespace

GraphicsPath Path(int code)
{
    GraphicsPath path;
    switch (code) {
    case 17:
        path.AddRectangle(QRectF(-1, -1, 2, 2));
        break;
    case 18:
        path.AddEllipse(QRectF(-1, -1, 2, 2));
        break;
    case 19: {
        const QPointF diamond[] = {{-2, 0}, {0, -1}, {2, 0}, {0, 1}};
        path.AddPolygon(diamond, 4);
        break;
    }
    case 20: {
        const QPointF arrow[] = {{-1, -1}, {1, 0}, {-1, 1}};
        path.AddPolygon(arrow, 3);
        break;
    }
    case OpenArrow: {
        const QPointF open[] = {{-2, -2}, {2, 0}, {-2, 2}, {2, 0}};
        path.AddPolygon(open, 4);
        break;
    }
    case StealthArrow: {
        const QPointF stealth[] = {{-1, 0}, {-2, 2}, {2, 0}, {-2, -2}};
        path.AddPolygon(stealth, 4);
        break;
    }
    default:
        break;
    }
    return path;
}

int PickerIndex(int code)
{
    for (int index = 0; index < PickerCount; ++index) {
        if (PickerCodes[index] == code)
            return index;
    }
    return 0;
}

int CodeAt(int pickerIndex)
{
    return pickerIndex >= 0 && pickerIndex < PickerCount ? PickerCodes[pickerIndex] : NoArrow;
}

void SetCaps(Pen& pen, int startCode, int startSize, int endCode, int endSize, int lineWidth)
{
    float startInset = 0;
    float endInset = 0;
    if (startCode == StealthArrow)
        startInset = 1;
    else if (startCode == OpenArrow)
        endInset = -1;
    if (auto cap = MakeCap(startCode, startSize, lineWidth, startInset))
        pen.SetCustomStartCap(*cap);
    else
        pen.SetStartCap(LineCap::NoAnchor);

    if (endCode == OpenArrow)
        endInset = -1;
    else if (endCode == StealthArrow)
        endInset = 1;
    if (auto cap = MakeCap(endCode, endSize, lineWidth, endInset))
        pen.SetCustomEndCap(*cap);
    else
        pen.SetEndCap(LineCap::NoAnchor);
}

} // namespace gfx::ArrowHeads
