#pragma once

#include "platform/graphics/GraphicsPath.h"

namespace gfx {

class Pen;

// The arrow heads a line can end in. A head is named by a line-cap code: the small ones are
// the anchor values of LineCap, 241 (Open) and 242 (Stealth) the program's own. The arrow
// picker offers six of them by an index of its own.
namespace ArrowHeads {

constexpr int NoArrow = 16;
// Stored by older projects for "no head"; it draws as NoArrow.
constexpr int NoArrowAlias = 255;
constexpr int OpenArrow = 241;
constexpr int StealthArrow = 242;
constexpr int PickerCount = 6;

// The head's outline in cap units, before the cap's quarter turn; empty for codes without one.
GraphicsPath Path(int code);
// The picker's index for a code (0 for codes it doesn't offer), and the reverse (NoArrow for
// an index it hasn't).
int PickerIndex(int code);
int CodeAt(int pickerIndex);

// Puts the heads of the two codes on the pen's ends, each size measured in the line's widths.
// A code without a head, or a line of width 0 (whose head would be infinitely large), leaves
// that end without an anchor. The base insets differ between the ends on purpose: a Stealth
// head draws the line into itself, an Open head at either end lengthens the line at the end
// (so an Open start lengthens the other end).
void SetCaps(Pen& pen, int startCode, int startSize, int endCode, int endSize, int lineWidth);

} // namespace ArrowHeads

} // namespace gfx
