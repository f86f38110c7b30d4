#include "controls/CIndexPicker.h"

#include "controls/CIndexPopupWnd.h"
#include "controls/CToolTipDialog.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

CIndexPicker::CIndexPicker(QWidget* pParent) : QAbstractButton(pParent)
{
    setFocusPolicy(Qt::StrongFocus);
    connect(this, &QAbstractButton::clicked, this, &CIndexPicker::OnClicked);
}

void CIndexPicker::SetIndex(int nIndex)
{
    m_nIndex = nIndex;
    update();
}

void CIndexPicker::OnClicked()
{
    if (m_bPopupOpen)
        return;
    m_bPopupOpen = true;
    CIndexPopupWnd* pPopup = CreatePopup();
    connect(pPopup, &CIndexPopupWnd::SelChange, this, &CIndexPicker::SetIndex);
    connect(pPopup, &CIndexPopupWnd::SelEndOK, this, &CIndexPicker::OnPopupSelEndOK);
    connect(pPopup, &CIndexPopupWnd::SelEndCancel, this, &CIndexPicker::OnPopupSelEndCancel);
    update();
}

void CIndexPicker::OnPopupSelEndOK(int nIndex)
{
    m_bPopupOpen = false;
    SetIndex(nIndex);
    emit SelEndOK(nIndex, ControlId(this));
}

void CIndexPicker::OnPopupSelEndCancel(int nIndex)
{
    m_bPopupOpen = false;
    SetIndex(nIndex);
}

void CIndexPicker::DrawFace(QPainter& painter)
{
    QStyleOptionButton option;
    option.initFrom(this);
    option.state |= isDown() || m_bPopupOpen ? QStyle::State_Sunken : QStyle::State_Raised;
    style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
}

void CIndexPicker::DrawFocus(QPainter& painter, const QRect& rect)
{
    if (!hasFocus())
        return;
    QStyleOptionFocusRect focus;
    focus.initFrom(this);
    focus.rect = rect;
    style()->drawPrimitive(QStyle::PE_FrameFocusRect, &focus, &painter, this);
}
