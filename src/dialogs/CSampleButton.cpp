#include "dialogs/CSampleButton.h"

#include "dialogs/CFillPage.h"

#include <QPainter>

CSampleButton::CSampleButton(CFillPage* page) : QFrame(page), m_pPage(page)
{
    setFrameStyle(QFrame::Panel | QFrame::Sunken);
    setAccessibleName(QStringLiteral("Sample"));
}

QSize CSampleButton::sizeHint() const
{
    return QSize(120, 90);
}

void CSampleButton::paintEvent(QPaintEvent* event)
{
    QFrame::paintEvent(event);
    QPainter painter(this);
    const QRect inside = contentsRect();
    painter.setClipRect(inside);
    painter.fillRect(inside, Qt::white);
    m_pPage->DrawSample(painter, inside);
}
