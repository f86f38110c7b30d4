#include "controls/CArrowWnd.h"

#include "controls/CArrowPicker.h"
#include "controls/CColourPopupWnd.h"

#include <QCloseEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int EdgeWidth = 2;

} // namespace

CArrowWnd::CArrowWnd(CArrowPicker* pPicker, int nIndex)
    : QWidget(pPicker, Qt::Popup), m_pPicker(pPicker), m_nCount(pPicker->GetImageCount()),
      m_nRows(m_nCount / Columns + (m_nCount % Columns ? 1 : 0)), m_nMargin(3 * EdgeWidth), m_nInitial(nIndex),
      m_nIndex(nIndex)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setMouseTracking(true);
    setAccessibleName(pPicker->accessibleName());
    setFixedSize(Columns * CellSize + 2 * m_nMargin, m_nRows * CellSize + 2 * m_nMargin);
    CColourPopupWnd::PlaceBelow(this, pPicker);
    show();
}

QRect CArrowWnd::CellRect(int nCell) const
{
    if (nCell < 0 || nCell >= m_nCount)
        return {};
    return QRect(m_nMargin + nCell % Columns * CellSize, m_nMargin + nCell / Columns * CellSize, CellSize, CellSize);
}

int CArrowWnd::HitTest(QPoint point) const
{
    for (int nCell = 0; nCell < m_nCount; ++nCell) {
        if (CellRect(nCell).contains(point))
            return nCell;
    }
    return -1;
}

void CArrowWnd::SetCurrent(int nCell)
{
    if (nCell == m_nCurrent)
        return;
    update(CellRect(m_nCurrent));
    m_nCurrent = nCell;
    update(CellRect(m_nCurrent));
}

void CArrowWnd::Select(int nCell)
{
    if (nCell == m_nIndex)
        return;
    update(CellRect(m_nIndex));
    m_nIndex = nCell;
    update(CellRect(m_nIndex));
    emit SelChange(m_nIndex);
}

void CArrowWnd::EndSelection(bool bCancelled)
{
    if (m_bClosing)
        return;
    m_bClosing = true;
    hide();
    if (bCancelled) {
        m_nIndex = m_nInitial;
        emit SelEndCancel(m_nIndex);
    } else {
        emit SelEndOK(m_nIndex);
    }
    close();
}

void CArrowWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    const int nCell = HitTest(pEvent->position().toPoint());
    SetCurrent(nCell);
    if (nCell >= 0)
        Select(nCell);
}

void CArrowWnd::mousePressEvent(QMouseEvent* pEvent)
{
    // A press outside doesn't close the popup as Qt would: the release decides.
    pEvent->accept();
}

void CArrowWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const QPoint point = pEvent->position().toPoint();
    if (!rect().contains(point)) {
        EndSelection(true);
        return;
    }
    if (const int nCell = HitTest(point); nCell >= 0)
        Select(nCell);
    EndSelection(false);
}

void CArrowWnd::keyPressEvent(QKeyEvent* pEvent)
{
    // The cells run left to right, top to bottom, and the keys wrap at the ends.
    const int nFrom = m_nIndex >= 0 && m_nIndex < m_nCount ? m_nIndex : 0;
    auto move = [&](int nStep) {
        Select(((nFrom + nStep) % m_nCount + m_nCount) % m_nCount);
        SetCurrent(m_nIndex);
    };
    switch (pEvent->key()) {
    case Qt::Key_Right:
        move(1);
        break;
    case Qt::Key_Left:
        move(-1);
        break;
    case Qt::Key_Down:
        move(Columns);
        break;
    case Qt::Key_Up:
        move(-Columns);
        break;
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        EndSelection(false);
        break;
    case Qt::Key_Escape:
        EndSelection(true);
        break;
    default:
        QWidget::keyPressEvent(pEvent);
        break;
    }
}

void CArrowWnd::closeEvent(QCloseEvent* pEvent)
{
    // Closed from outside, as when the application loses activation: the index stays.
    EndSelection(true);
    QWidget::closeEvent(pEvent);
}

bool CArrowWnd::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const int nCell = HitTest(pHelp->pos());
        if (nCell >= 0)
            QToolTip::showText(pHelp->globalPos(), CArrowPicker::ArrowName(nCell), this, CellRect(nCell));
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(pEvent);
}

void CArrowWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CColourPopupWnd::GetSysColor(this, 15));
    for (int nCell = 0; nCell < m_nCount; ++nCell) {
        const QRect cell = CellRect(nCell);
        const bool bHot = nCell == m_nCurrent;
        const bool bChosen = nCell == m_nIndex;
        painter.fillRect(cell, CColourPopupWnd::GetSysColor(this, bChosen && !bHot ? 20 : 15));
        const QImage& picture = m_pPicker->GetImage(nCell);
        painter.drawImage(cell.center() - QPoint(picture.width() / 2, picture.height() / 2) + QPoint(1, 1), picture);
        if (bHot)
            CColourPopupWnd::DrawEdge(painter, cell, CColourPopupWnd::RaisedInner);
        else if (bChosen)
            CColourPopupWnd::DrawEdge(painter, cell, CColourPopupWnd::SunkenOuter);
    }
    CColourPopupWnd::DrawEdge(painter, rect(), CColourPopupWnd::RaisedInner);
}
