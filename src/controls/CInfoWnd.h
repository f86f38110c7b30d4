#pragma once

#include <QLabel>

// A small popup that shows a message just below a control until it is hidden. It never takes
// the focus, so the control it explains keeps the keyboard.
class CInfoWnd : public QLabel {
    Q_OBJECT

public:
    // The popup is a window of its own, but it lives and dies with its parent.
    explicit CInfoWnd(QWidget* parent = nullptr);

    void ShowAt(QWidget* control, const QString& text);
};
