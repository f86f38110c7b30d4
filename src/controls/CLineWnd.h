#pragma once

#include "controls/CIndexPopupWnd.h"

class CLinePicker;

// The popup of CLinePicker: five rows, one per dash style, each a thick black line in that
// style, chosen as CIndexPopupWnd does.
class CLineWnd : public CIndexPopupWnd {
    Q_OBJECT

public:
    static constexpr int RowWidth = 85;
    static constexpr int RowHeight = 20;

    CLineWnd(CLinePicker* pPicker, int nIndex);

    QRect RowRect(int nRow) const { return CellRect(nRow); }
    // The row's line, as the picker's own face draws it too.
    static void DrawLine(QPainter& painter, const QRect& rect, int nDashStyle);

protected:
    QString CellName(int nCell) const override;
    void DrawCell(QPainter& painter, const QRect& cell, int nCell) const override;
};
