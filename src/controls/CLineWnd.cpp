#include "controls/CLineWnd.h"

#include "controls/CColourPopupWnd.h"
#include "controls/CLinePicker.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/Pen.h"

#include <QCloseEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QToolTip>

namespace {

constexpr int EdgeWidth = 2;

const char* const g_styleNames[CLinePicker::StyleCount] = {"Solid", "Dash", "Dot", "Dash Dot", "Dash Dot Dot"};

} // namespace

CLineWnd::CLineWnd(CLinePicker* pPicker, int nIndex)
    : QWidget(pPicker, Qt::Popup), m_nMargin(3 * EdgeWidth), m_nInitial(nIndex), m_nIndex(nIndex)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setMouseTracking(true);
    setAccessibleName(pPicker->accessibleName());
    setFixedSize(RowWidth + 2 * m_nMargin, CLinePicker::StyleCount * RowHeight + 2 * m_nMargin);
    CColourPopupWnd::PlaceBelow(this, pPicker);
    show();
}

QRect CLineWnd::RowRect(int nRow) const
{
    if (nRow < 0 || nRow >= CLinePicker::StyleCount)
        return {};
    return QRect(m_nMargin, m_nMargin + nRow * RowHeight, RowWidth, RowHeight);
}

void CLineWnd::DrawLine(QPainter& painter, const QRect& rect, int nDashStyle)
{
    gfx::DeviceContext dc(painter, 96, 96, false);
    gfx::Graphics graphics(dc);
    graphics.SetSmoothingMode(gfx::SmoothingMode::AntiAlias);
    gfx::Pen pen(gfx::Color(0, 0, 0), 3.0f);
    pen.SetDashStyle(gfx::DashStyle(nDashStyle));
    pen.SetDashCap(gfx::DashCap::Flat);
    const float y = float(rect.top()) + float(rect.height()) / 2;
    graphics.DrawLine(pen, QPointF(rect.left(), y), QPointF(rect.right() + 1, y));
}

int CLineWnd::HitTest(QPoint point) const
{
    for (int nRow = 0; nRow < CLinePicker::StyleCount; ++nRow) {
        if (RowRect(nRow).contains(point))
            return nRow;
    }
    return -1;
}

void CLineWnd::SetCurrent(int nRow)
{
    if (nRow == m_nCurrent)
        return;
    update(RowRect(m_nCurrent));
    m_nCurrent = nRow;
    update(RowRect(m_nCurrent));
}

void CLineWnd::Select(int nRow)
{
    if (nRow == m_nIndex)
        return;
    update(RowRect(m_nIndex));
    m_nIndex = nRow;
    update(RowRect(m_nIndex));
    emit SelChange(m_nIndex);
}

void CLineWnd::EndSelection(bool bCancelled)
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

void CLineWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    const int nRow = HitTest(pEvent->position().toPoint());
    SetCurrent(nRow);
    if (nRow >= 0)
        Select(nRow);
}

void CLineWnd::mousePressEvent(QMouseEvent* pEvent)
{
    // A press outside doesn't close the popup as Qt would: the release decides.
    pEvent->accept();
}

void CLineWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const QPoint point = pEvent->position().toPoint();
    if (!rect().contains(point)) {
        EndSelection(true);
        return;
    }
    if (const int nRow = HitTest(point); nRow >= 0)
        Select(nRow);
    EndSelection(false);
}

void CLineWnd::keyPressEvent(QKeyEvent* pEvent)
{
    const int nCount = CLinePicker::StyleCount;
    // An index the panel set outside the rows starts from the first row.
    const int nFrom = m_nIndex >= 0 && m_nIndex < nCount ? m_nIndex : 0;
    switch (pEvent->key()) {
    case Qt::Key_Down:
    case Qt::Key_Right:
        Select((nFrom + 1) % nCount);
        SetCurrent(m_nIndex);
        break;
    case Qt::Key_Up:
    case Qt::Key_Left:
        Select((nFrom + nCount - 1) % nCount);
        SetCurrent(m_nIndex);
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

void CLineWnd::closeEvent(QCloseEvent* pEvent)
{
    // Closed from outside, as when the application loses activation: the index stays.
    EndSelection(true);
    QWidget::closeEvent(pEvent);
}

bool CLineWnd::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const int nRow = HitTest(pHelp->pos());
        if (nRow >= 0)
            QToolTip::showText(pHelp->globalPos(), QString::fromLatin1(g_styleNames[nRow]), this, RowRect(nRow));
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(pEvent);
}

void CLineWnd::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    painter.fillRect(rect(), CColourPopupWnd::GetSysColor(this, 15));
    for (int nRow = 0; nRow < CLinePicker::StyleCount; ++nRow) {
        const QRect row = RowRect(nRow);
        const bool bHot = nRow == m_nCurrent;
        const bool bChosen = nRow == m_nIndex;
        painter.fillRect(row, CColourPopupWnd::GetSysColor(this, bChosen && !bHot ? 20 : 15));
        DrawLine(painter, row.adjusted(4, 0, -4, 0), nRow);
        if (bHot)
            CColourPopupWnd::DrawEdge(painter, row, CColourPopupWnd::RaisedInner);
        else if (bChosen)
            CColourPopupWnd::DrawEdge(painter, row, CColourPopupWnd::SunkenOuter);
    }
    CColourPopupWnd::DrawEdge(painter, rect(), CColourPopupWnd::RaisedInner);
}
