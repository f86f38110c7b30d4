#include "controls/CSeekEdit.h"

void CSeekEdit::SetValue(int nValue)
{
    m_nValue = nValue;
    setText(QString::number(nValue));
    repaint();
}
