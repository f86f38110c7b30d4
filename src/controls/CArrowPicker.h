#pragma once

#include <QAbstractButton>
#include <QImage>
#include <QString>
#include <vector>

class CArrowWnd;

// The drop-down button of the line panel that chooses an arrow head by the picker's index:
// 0 "No Arrow", 1 "Arrow", 2 "Open", 3 "Stealth", 4 "Diamond", 5 "Oval" (the panel turns the
// index into the objects' line-cap code). It shows the present head, and a click opens
// CArrowWnd below it with one cell per head. SelEndOK carries the chosen index and the
// control id given with SetControlId.
class CArrowPicker : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int ImageSize = 30;

    explicit CArrowPicker(QWidget* pParent = nullptr);

    int GetIndex() const { return m_nIndex; }
    void SetIndex(int nIndex);
    bool IsPopupOpen() const { return m_bPopupOpen; }

    // The image of each head, drawn with the label's own arrow heads, and its name.
    int GetImageCount() const { return int(m_images.size()); }
    const QImage& GetImage(int nIndex) const { return m_images[nIndex]; }
    static QString ArrowName(int nIndex);

    QSize sizeHint() const override;

signals:
    void SelEndOK(int nIndex, int nId);

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    friend class CArrowWnd;

    void OnClicked();
    void OnPopupSelChange(int nIndex);
    void OnPopupSelEndOK(int nIndex);
    void OnPopupSelEndCancel(int nIndex);

    bool m_bPopupOpen = false;
    int m_nIndex = 0;
    std::vector<QImage> m_images;
};
