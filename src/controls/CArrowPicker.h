#pragma once

#include "controls/CIndexPicker.h"

#include <QImage>
#include <QString>
#include <vector>

// The drop-down button of the line panel that chooses an arrow head by the picker's index:
// 0 "No Arrow", 1 "Arrow", 2 "Open", 3 "Stealth", 4 "Diamond", 5 "Oval" (the panel turns the
// index into the objects' line-cap code). It shows the present head, and a click opens
// CArrowWnd below it with one cell per head.
class CArrowPicker : public CIndexPicker {
    Q_OBJECT

public:
    static constexpr int ImageSize = 30;

    explicit CArrowPicker(QWidget* pParent = nullptr);

    // The image of each head, drawn with the label's own arrow heads, and its name.
    int GetImageCount() const { return int(m_images.size()); }
    const QImage& GetImage(int nIndex) const { return m_images[nIndex]; }
    static QString ArrowName(int nIndex);

    QSize sizeHint() const override;

protected:
    CIndexPopupWnd* CreatePopup() override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    std::vector<QImage> m_images;
};
