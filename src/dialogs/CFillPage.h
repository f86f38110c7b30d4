#pragma once

#include <QWidget>

class QPainter;

// One page of fill choices (gradient, pattern or picture). A page works on the caller's
// variables through pointers, set between construction and OnInitDialog, and changes them
// while the user works; the caller copies them to the object when the host ends with OK, and
// Cancel leaves the object alone. A page lives in a host: the tabbed CEffectDlg or the
// single-page "Properties" sheet.
class CFillPage : public QWidget {
    Q_OBJECT

public:
    explicit CFillPage(QWidget* parent = nullptr);

    // The page's tab text.
    virtual QString Caption() const = 0;
    // Fills the controls from the variables. False, after telling the user, when a pointer
    // is missing: the host then doesn't open.
    virtual bool OnInitDialog() = 0;
    // Paints the preview of the fill into the rectangle of the page's sample.
    virtual void DrawSample(QPainter& painter, const QRect& rect) = 0;
};
