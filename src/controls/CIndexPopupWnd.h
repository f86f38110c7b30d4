#pragma once

#include "controls/CPickerPopupWnd.h"

#include <QSize>

// A picker popup of equal cells, nColumns a row, taken left to right and top to bottom, that
// chooses a cell's index. The cell under the mouse is raised and the present one sunken.
// Moving over a cell or to it with the arrow keys (which wrap at the ends) makes it the
// present one and says so with SelChange; cancelling puts the index from before back.
class CIndexPopupWnd : public CPickerPopupWnd {
    Q_OBJECT

public:
    QRect CellRect(int nCell) const override;

signals:
    void SelChange(int nIndex);
    void SelEndOK(int nIndex);
    void SelEndCancel(int nIndex);

protected:
    // Sized here; the popup shows itself with ShowBelowPicker once it is whole.
    CIndexPopupWnd(QWidget* pPicker, int nIndex, int nCount, int nColumns, QSize cell);

    // What a cell shows, inside its edge.
    virtual void DrawCell(QPainter& painter, const QRect& cell, int nCell) const = 0;

    int HitTest(QPoint point) const override;
    void TrackCell(int nCell) override;
    bool MoveByKey(int nKey) override;
    void OnEndSelection(bool bCancelled) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    void SetCurrent(int nCell);
    void Select(int nCell);

    int m_nCount;
    int m_nColumns;
    QSize m_cell;
    int m_nMargin;
    int m_nInitial;
    int m_nIndex;
    int m_nCurrent = -1;
};
