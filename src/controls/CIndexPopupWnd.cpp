#include "controls/CIndexPopupWnd.h"

#include "controls/CColourPopupWnd.h"

#include <QPainter>

namespace {

constexpr int EdgeWidth = 2;

} // namespace

CIndexPopupWnd::CIndexPopupWnd(QWidget* pPicker, int nIndex, int nCount, int nColumns, QSize cell)
    : CPickerPopupWnd(pPicker), m_nCount(nCount), m_nColumns(nColumns), m_cell(cell), m_nMargin(3 * EdgeWidth),
      m_nInitial(nIndex), m_nIndex(nIndex)
{
    const int nRows = nCount / nColumns + (nCount % nColumns ? 1 : 0);
    setFixedSize(nColumns * cell.width() + 2 * m_nMargin, nRows * cell.height() + 2 * m_nMargin);
}

QRect CIndexPopupWnd::CellRect(int nCell) const
{
    if (nCell < 0 || nCell >= m_nCount)
        return {};
    return QRect(QPoint(m_nMargin + nCell % m_nColumns * m_cell.width(), m_nMargin + nCell / m_nColumns * m_cell.height()),
                 m_cell);
}

int CIndexPopupWnd::HitTest(QPoint point) const
{
    for (int nCell = 0; nCell < m_nCount; ++nCell) {
        if (CellRect(nCell).contains(point))
            return nCell;
    }
    return -1;
}

void CIndexPopupWnd::SetCurrent(int nCell)
{
    if (nCell == m_nCurrent)
        return;
    update(CellRect(m_nCurrent));
    m_nCurrent = nCell;
    update(CellRect(m_nCurrent));
}

void CIndexPopupWnd::Select(int nCell)
{
    if (nCell == m_nIndex)
        return;
    update(CellRect(m_nIndex));
    m_nIndex = nCell;
    update(CellRect(m_nIndex));
    emit SelChange(m_nIndex);
}

void CIndexPopupWnd::TrackCell(int nCell)
{
    SetCurrent(nCell);
    if (nCell >= 0)
        Select(nCell);
}

bool CIndexPopupWnd::MoveByKey(int nKey)
{
    int nStep = 0;
    switch (nKey) {
    case Qt::Key_Right:
        nStep = 1;
        break;
    case Qt::Key_Left:
        nStep = -1;
        break;
    case Qt::Key_Down:
        nStep = m_nColumns;
        break;
    case Qt::Key_Up:
        nStep = -m_nColumns;
        break;
    default:
        return false;
    }
    // An index the panel set outside the cells starts from the first one.
    const int nFrom = m_nIndex >= 0 && m_nIndex < m_nCount ? m_nIndex : 0;
    Select(((nFrom + nStep) % m_nCount + m_nCount) % m_nCount);
    SetCurrent(m_nIndex);
    return true;
}

void CIndexPopupWnd::OnEndSelection(bool bCancelled)
{
    if (bCancelled) {
        m_nIndex = m_nInitial;
        emit SelEndCancel(m_nIndex);
    } else {
        emit SelEndOK(m_nIndex);
    }
}

void CIndexPopupWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CColourPopupWnd::GetSysColor(this, 15));
    for (int nCell = 0; nCell < m_nCount; ++nCell) {
        const QRect cell = CellRect(nCell);
        const bool bHot = nCell == m_nCurrent;
        const bool bChosen = nCell == m_nIndex;
        painter.fillRect(cell, CColourPopupWnd::GetSysColor(this, bChosen && !bHot ? 20 : 15));
        DrawCell(painter, cell, nCell);
        if (bHot)
            CColourPopupWnd::DrawEdge(painter, cell, CColourPopupWnd::RaisedInner);
        else if (bChosen)
            CColourPopupWnd::DrawEdge(painter, cell, CColourPopupWnd::SunkenOuter);
    }
    CColourPopupWnd::DrawEdge(painter, rect(), CColourPopupWnd::RaisedInner);
}
