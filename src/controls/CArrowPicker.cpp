#include "controls/CArrowPicker.h"

#include "controls/CArrowWnd.h"

CArrowPicker::CArrowPicker(QWidget* pParent) : QAbstractButton(pParent)
{
}

CArrowPicker::~CArrowPicker() = default;

void CArrowPicker::SetIndex(int nIndex)
{
    m_nIndex = nIndex;
    update();
}

QString CArrowPicker::ArrowName(int)
{
    return {};
}

QSize CArrowPicker::sizeHint() const
{
    return {60, 30};
}

void CArrowPicker::paintEvent(QPaintEvent*)
{
}
