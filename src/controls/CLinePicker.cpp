#include "controls/CLinePicker.h"

#include "controls/CLineWnd.h"

CLinePicker::CLinePicker(QWidget* pParent) : QAbstractButton(pParent)
{
}

CLinePicker::~CLinePicker() = default;

void CLinePicker::SetIndex(int nIndex)
{
    m_nIndex = nIndex;
    update();
}

QSize CLinePicker::sizeHint() const
{
    return {100, 22};
}

void CLinePicker::paintEvent(QPaintEvent*)
{
}
