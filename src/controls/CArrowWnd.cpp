#include "controls/CArrowWnd.h"

#include "controls/CArrowPicker.h"

#include <QPainter>

CArrowWnd::CArrowWnd(CArrowPicker* pPicker, int nIndex)
    : CIndexPopupWnd(pPicker, nIndex, pPicker->GetImageCount(), Columns, QSize(CellSize, CellSize)),
      m_pPicker(pPicker)
{
    ShowBelowPicker();
}

QString CArrowWnd::CellName(int nCell) const
{
    return CArrowPicker::ArrowName(nCell);
}

void CArrowWnd::DrawCell(QPainter& painter, const QRect& cell, int nCell) const
{
    const QImage& picture = m_pPicker->GetImage(nCell);
    painter.drawImage(cell.center() - QPoint(picture.width() / 2, picture.height() / 2) + QPoint(1, 1), picture);
}
