#pragma once

#include <QWidget>

// The preview of one axis of the print position: the alignment images' scale of letters C to K,
// each letter in a cell of yellow, red, blue and green bars, moving under a black arrow as the
// offset changes. 16 clicks of the offset move the scale by one cell, so the letter read off a
// printed disc is the letter to bring under the arrow; at offset 0 the arrow points at G.
class CPrintPosButton : public QWidget {
    Q_OBJECT

public:
    explicit CPrintPosButton(bool horizontal, QWidget* parent = nullptr);

    QSize sizeHint() const override;

    // The axis's offset in inches; a positive one moves the scale left or up.
    float Offset = 0.0f;
    // 1: the scale runs left to right (X axis); 0: top to bottom (Y axis).
    int Horizontal = 1;

protected:
    void paintEvent(QPaintEvent* event) override;
};
