#include "controls/CPickerPopupWnd.h"

#include <QCloseEvent>
#include <QHelpEvent>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QScreen>
#include <QToolTip>

CPickerPopupWnd::CPickerPopupWnd(QWidget* pPicker) : QWidget(pPicker, Qt::Popup), m_pPicker(pPicker)
{
    setAttribute(Qt::WA_DeleteOnClose);
    setMouseTracking(true);
    setAccessibleName(pPicker->accessibleName());
}

void CPickerPopupWnd::ShowBelowPicker()
{
    const QPoint topLeft = m_pPicker->mapToGlobal(QPoint(0, 0));
    QPoint place = m_pPicker->mapToGlobal(QPoint(0, m_pPicker->height()));
    const QSize extent = size();
    if (const QScreen* pScreen = m_pPicker->screen()) {
        const QRect screen = pScreen->availableGeometry();
        if (place.x() + extent.width() > screen.x() + screen.width())
            place.setX(screen.x() + screen.width() - extent.width());
        if (place.x() < screen.x())
            place.setX(screen.x());
        if (place.y() + extent.height() > screen.y() + screen.height())
            place.setY(topLeft.y() - extent.height());
    }
    // A popup has no frame: its client area goes where the picker ends.
    setGeometry(QRect(place, extent));
    show();
}

void CPickerPopupWnd::EndSelection(bool bCancelled)
{
    if (m_bClosing)
        return;
    m_bClosing = true;
    // An ending may open a modal dialog of its own; the popup makes way for it first.
    hide();
    OnEndSelection(bCancelled);
    close();
}

void CPickerPopupWnd::mouseMoveEvent(QMouseEvent* pEvent)
{
    TrackCell(HitTest(pEvent->position().toPoint()));
}

void CPickerPopupWnd::mousePressEvent(QMouseEvent* pEvent)
{
    // A press outside doesn't close the popup as Qt would: the release decides.
    pEvent->accept();
}

void CPickerPopupWnd::mouseReleaseEvent(QMouseEvent* pEvent)
{
    const QPoint point = pEvent->position().toPoint();
    if (!rect().contains(point)) {
        EndSelection(true);
        return;
    }
    TrackCell(HitTest(point));
    EndSelection(false);
}

void CPickerPopupWnd::keyPressEvent(QKeyEvent* pEvent)
{
    switch (pEvent->key()) {
    case Qt::Key_Return:
    case Qt::Key_Enter:
    case Qt::Key_Space:
        EndSelection(false);
        break;
    case Qt::Key_Escape:
        EndSelection(true);
        break;
    default:
        if (!MoveByKey(pEvent->key()))
            QWidget::keyPressEvent(pEvent);
        break;
    }
}

void CPickerPopupWnd::closeEvent(QCloseEvent* pEvent)
{
    // Closed from outside, as when the application loses activation: what was there stays.
    EndSelection(true);
    QWidget::closeEvent(pEvent);
}

bool CPickerPopupWnd::event(QEvent* pEvent)
{
    if (pEvent->type() == QEvent::ToolTip) {
        const auto* pHelp = static_cast<QHelpEvent*>(pEvent);
        const int nCell = HitTest(pHelp->pos());
        if (nCell >= 0)
            QToolTip::showText(pHelp->globalPos(), CellName(nCell), this, CellRect(nCell));
        else
            QToolTip::hideText();
        return true;
    }
    return QWidget::event(pEvent);
}
