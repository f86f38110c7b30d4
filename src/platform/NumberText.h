#pragma once

#include <QString>

// Numbers read from text the way the C runtime reads them: the longest leading part that
// forms a number counts, the rest is ignored, and text without one reads as 0. The decimal
// point is always '.', whatever the user's locale.
namespace NumberText {

// Optional blanks, an optional sign, digits; clamped to the range of int.
int ToInt(const QString& text);
// Optional blanks, then what C's strtod reads: a decimal or hexadecimal number with an
// optional exponent, "inf" or "nan"; overflow gives infinity, underflow zero.
double ToDouble(const QString& text);

} // namespace NumberText
