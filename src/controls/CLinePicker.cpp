#include "controls/CLinePicker.h"

#include "controls/CColourPopupWnd.h"
#include "controls/CLineWnd.h"
#include "controls/CToolTipDialog.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

CLinePicker::CLinePicker(QWidget* pParent) : QAbstractButton(pParent)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, &CLinePicker::OnClicked);
}

void CLinePicker::SetIndex(int nIndex)
{
    m_nIndex = nIndex;
    update();
}

QSize CLinePicker::sizeHint() const
{
    return {CLineWnd::RowWidth + 2 * 6, CLineWnd::RowHeight + 4};
}

void CLinePicker::OnClicked()
{
    if (m_bPopupOpen)
        return;
    m_bPopupOpen = true;
    // The popup is a window of its own, deleted when it ends (or with the picker).
    auto* pPopup = new CLineWnd(this, m_nIndex);
    connect(pPopup, &CLineWnd::SelChange, this, &CLinePicker::OnPopupSelChange);
    connect(pPopup, &CLineWnd::SelEndOK, this, &CLinePicker::OnPopupSelEndOK);
    connect(pPopup, &CLineWnd::SelEndCancel, this, &CLinePicker::OnPopupSelEndCancel);
    update();
}

void CLinePicker::OnPopupSelChange(int nIndex)
{
    SetIndex(nIndex);
}

void CLinePicker::OnPopupSelEndOK(int nIndex)
{
    m_bPopupOpen = false;
    SetIndex(nIndex);
    emit SelEndOK(nIndex, ControlId(this));
}

void CLinePicker::OnPopupSelEndCancel(int nIndex)
{
    m_bPopupOpen = false;
    SetIndex(nIndex);
}

void CLinePicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    QStyleOptionButton option;
    option.initFrom(this);
    option.state |= isDown() || m_bPopupOpen ? QStyle::State_Sunken : QStyle::State_Raised;
    style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);

    // The line, and beside it the drop-down arrow in a frame of its own.
    const int nArrow = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const QRect arrow(width() - nArrow - 3, 3, nArrow, height() - 6);
    CColourPopupWnd::DrawEdge(painter, arrow, CColourPopupWnd::RaisedInner);
    QStyleOption arrowOption;
    arrowOption.initFrom(this);
    arrowOption.rect = arrow.adjusted(2, 2, -2, -2);
    style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrowOption, &painter, this);

    if (isEnabled() && m_nIndex >= 0 && m_nIndex < StyleCount)
        CLineWnd::DrawLine(painter, QRect(6, 0, arrow.left() - 10, height()), m_nIndex);
    if (hasFocus()) {
        QStyleOptionFocusRect focus;
        focus.initFrom(this);
        focus.rect = QRect(3, 3, arrow.left() - 5, height() - 6);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
    }
}
