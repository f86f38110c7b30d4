#include "controls/CLinePicker.h"

#include "controls/CColourPopupWnd.h"
#include "controls/CLineWnd.h"

#include <QPainter>
#include <QStyle>
#include <QStyleOption>

CLinePicker::CLinePicker(QWidget* pParent) : CIndexPicker(pParent) {}

QSize CLinePicker::sizeHint() const
{
    return {CLineWnd::RowWidth + 2 * 6, CLineWnd::RowHeight + 4};
}

CIndexPopupWnd* CLinePicker::CreatePopup()
{
    return new CLineWnd(this, GetIndex());
}

void CLinePicker::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    DrawFace(painter);

    // The line, and beside it the drop-down arrow in a frame of its own.
    const int nArrow = style()->pixelMetric(QStyle::PM_ScrollBarExtent, nullptr, this);
    const QRect arrow(width() - nArrow - 3, 3, nArrow, height() - 6);
    CColourPopupWnd::DrawEdge(painter, arrow, CColourPopupWnd::RaisedInner);
    QStyleOption arrowOption;
    arrowOption.initFrom(this);
    arrowOption.rect = arrow.adjusted(2, 2, -2, -2);
    style()->drawPrimitive(QStyle::PE_IndicatorArrowDown, &arrowOption, &painter, this);

    if (isEnabled() && GetIndex() >= 0 && GetIndex() < StyleCount)
        CLineWnd::DrawLine(painter, QRect(6, 0, arrow.left() - 10, height()), GetIndex());
    DrawFocus(painter, QRect(3, 3, arrow.left() - 5, height() - 6));
}
