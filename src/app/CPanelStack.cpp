#include "app/CPanelStack.h"

#include <QWidget>

bool CPanelStack::AddPage(int dialogId, QWidget* parent, QWidget* placeHolder, QWidget* page)
{
    if (!page)
        return false;
    m_pParent = parent;
    m_pPlaceHolder = placeHolder;
    page->setParent(parent);
    page->setProperty("dialogId", dialogId);
    page->hide();
    m_pages.push_back(page);
    return true;
}

QWidget* CPanelStack::Page(int index) const
{
    return index >= 0 && index < int(m_pages.size()) ? m_pages[size_t(index)] : nullptr;
}

bool CPanelStack::Show(int index)
{
    if (index >= int(m_pages.size()) || index == m_nCurrent)
        return false;
    if (QWidget* old = Page(m_nCurrent))
        old->hide();
    m_nCurrent = index;
    QWidget* page = Page(index);
    if (!page)
        return true;
    // A new page goes where the holder is now, wherever the last one stood.
    m_holderRect = QRect();
    Layout();
    page->show();
    page->raise();
    return true;
}

void CPanelStack::Layout()
{
    QWidget* page = Page(m_nCurrent);
    if (!page || !m_pPlaceHolder)
        return;
    const QRect holder = m_pPlaceHolder->geometry();
    if (holder == m_holderRect)
        return;
    m_holderRect = holder;
    page->move((holder.width() - page->width()) / 2 + holder.left(), holder.top());
}
