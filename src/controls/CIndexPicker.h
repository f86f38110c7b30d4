#pragma once

#include <QAbstractButton>

class CIndexPopupWnd;
class QPainter;

// A drop-down button that chooses an index: it shows the present one, and a click opens the
// picker's CIndexPopupWnd below it. The index follows the popup while it is open and goes
// back when it is cancelled. SelEndOK carries the chosen index and the control id given with
// SetControlId.
class CIndexPicker : public QAbstractButton {
    Q_OBJECT

public:
    int GetIndex() const { return m_nIndex; }
    // Any value is kept as it is given, so that a panel's choice for a mixed selection stays.
    void SetIndex(int nIndex);
    bool IsPopupOpen() const { return m_bPopupOpen; }

signals:
    void SelEndOK(int nIndex, int nId);

protected:
    explicit CIndexPicker(QWidget* pParent);

    // The popup, a window of its own that deletes itself when it ends (or with the picker).
    virtual CIndexPopupWnd* CreatePopup() = 0;

    // The button's face, sunken while it is pressed or its popup is open.
    void DrawFace(QPainter& painter);
    void DrawFocus(QPainter& painter, const QRect& rect);

private:
    void OnClicked();
    void OnPopupSelEndOK(int nIndex);
    void OnPopupSelEndCancel(int nIndex);

    bool m_bPopupOpen = false;
    int m_nIndex = 0;
};
