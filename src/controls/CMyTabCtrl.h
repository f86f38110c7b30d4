#pragma once

#include <QTabWidget>

// The tab control of the text panel and the fill dialog: each tab shows one page, a child
// window the owner builds and hands over with AddPage. Choosing a tab, by the user or by
// SelectPage, shows its page and hides the others.
class CMyTabCtrl : public QTabWidget {
    Q_OBJECT

public:
    explicit CMyTabCtrl(QWidget* pParent = nullptr);

    // Inserts a tab with the title at the index and takes the page into it. The first page
    // added is the one shown until another is selected.
    void AddPage(QWidget* pPage, const QString& strTitle, int nIndex);
    // Shows the page of that tab; an index without a tab changes nothing.
    void SelectPage(int nIndex);
};
