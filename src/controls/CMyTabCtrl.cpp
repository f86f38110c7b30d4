#include "controls/CMyTabCtrl.h"

CMyTabCtrl::CMyTabCtrl(QWidget* pParent) : QTabWidget(pParent)
{
}

void CMyTabCtrl::AddPage(QWidget* pPage, const QString& strTitle, int nIndex)
{
    // Inserting before the shown tab must not change which page shows.
    QWidget* pShown = currentWidget();
    insertTab(nIndex, pPage, strTitle);
    if (pShown)
        setCurrentWidget(pShown);
}

void CMyTabCtrl::SelectPage(int nIndex)
{
    if (nIndex >= 0 && nIndex < count())
        setCurrentIndex(nIndex);
}
