#pragma once

#include "controls/CIndexPopupWnd.h"

class CArrowPicker;

// The popup of CArrowPicker: one 30-pixel cell per arrow head, three a row, showing the
// picker's images, chosen as CIndexPopupWnd does.
class CArrowWnd : public CIndexPopupWnd {
    Q_OBJECT

public:
    static constexpr int Columns = 3;
    static constexpr int CellSize = 30;

    CArrowWnd(CArrowPicker* pPicker, int nIndex);

protected:
    QString CellName(int nCell) const override;
    void DrawCell(QPainter& painter, const QRect& cell, int nCell) const override;

private:
    CArrowPicker* m_pPicker;
};
