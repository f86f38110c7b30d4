#pragma once

#include <QAbstractButton>

class CLineWnd;

// The drop-down button of the line panel that chooses a dash style (0 solid to 4 dash dot
// dot): it shows the present style as a thick black line, and a click opens CLineWnd below it
// with one row per style. SelEndOK carries the chosen index and the control id given with
// SetControlId.
class CLinePicker : public QAbstractButton {
    Q_OBJECT

public:
    static constexpr int StyleCount = 5;

    explicit CLinePicker(QWidget* pParent = nullptr);

    int GetIndex() const { return m_nIndex; }
    // Any value is kept as it is given, so that a panel's choice for a mixed selection stays.
    void SetIndex(int nIndex);
    bool IsPopupOpen() const { return m_bPopupOpen; }

    QSize sizeHint() const override;

signals:
    void SelEndOK(int nIndex, int nId);

protected:
    void paintEvent(QPaintEvent* pEvent) override;

private:
    friend class CLineWnd;

    void OnClicked();
    void OnPopupSelChange(int nIndex);
    void OnPopupSelEndOK(int nIndex);
    void OnPopupSelEndCancel(int nIndex);

    bool m_bPopupOpen = false;
    int m_nIndex = 0;
};
