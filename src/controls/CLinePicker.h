#pragma once

#include "controls/CIndexPicker.h"

// The drop-down button of the line panel that chooses a dash style (0 solid to 4 dash dot
// dot): it shows the present style as a thick black line, and a click opens CLineWnd below it
// with one row per style.
class CLinePicker : public CIndexPicker {
    Q_OBJECT

public:
    static constexpr int StyleCount = 5;

    explicit CLinePicker(QWidget* pParent = nullptr);

    QSize sizeHint() const override;

protected:
    CIndexPopupWnd* CreatePopup() override;
    void paintEvent(QPaintEvent* pEvent) override;
};
