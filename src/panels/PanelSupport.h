#pragma once

#include <QSize>

class QAbstractSlider;
class QFont;

// What the template and background panels share: their size as a dialog template gives it, and
// the way their sliders step.
namespace PanelSupport {

// A dialog template's size in dialog units, in pixels for the font: a horizontal unit is a
// quarter of the font's average character width, a vertical one an eighth of its height.
QSize DialogUnitsToPixels(const QFont& font, int cx, int cy);

// Where a slider goes for one of its actions (QAbstractSlider::SliderAction), from the position
// it had: the ends for the Home and End actions, and a line or page step only while a step of
// lineTest or pageTest would stay in range, so the keyboard stops short of the ends. A drag
// keeps the position it carries.
int ScrolledPosition(const QAbstractSlider& slider, int action, int lineStep, int lineTest, int pageStep, int pageTest);

// A value as a slider's position in thousandths, truncated and kept within the slider's range.
// Truncation forgives the binary error of the decimal fractions an edit shows: 2.002 x 1000
// is 2001.9999999999998 as a double, and a step to 2002 must not land back on 2001.
int Thousandths(double value, const QAbstractSlider& slider);

} // namespace PanelSupport
