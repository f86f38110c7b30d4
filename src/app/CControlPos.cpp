#include "app/CControlPos.h"

#include <QWidget>

#include <algorithm>

void CControlPos::SetParent(QWidget* parent)
{
    m_pParent = parent;
    m_leastSize = parent->size();
    m_size = m_leastSize;
}

void CControlPos::AddControl(QWidget* child, int flags)
{
    if (child)
        m_entries.push_back({child, flags});
}

void CControlPos::MoveControls()
{
    if (!m_pParent)
        return;
    // Below the least size nothing moves or shrinks any further.
    const QSize now(std::max(m_pParent->width(), m_leastSize.width()),
                    std::max(m_pParent->height(), m_leastSize.height()));
    const int dx = now.width() - m_size.width();
    const int dy = now.height() - m_size.height();
    if (dx == 0 && dy == 0)
        return;
    for (const Entry& entry : m_entries) {
        if (!entry.widget)
            continue;
        QRect r = entry.widget->geometry();
        if (entry.flags & MoveX)
            r.translate(dx, 0);
        if (entry.flags & MoveY)
            r.translate(0, dy);
        if (entry.flags & GrowX)
            r.setWidth(r.width() + dx);
        if (entry.flags & GrowY)
            r.setHeight(r.height() + dy);
        entry.widget->setGeometry(r);
    }
    m_size = now;
}
