#include "controls/CHatchWellWnd.h"

CHatchWellWnd::CHatchWellWnd(QWidget* pParent) : QWidget(pParent), m_nMargin(2)
{
}

void CHatchWellWnd::SetHatchStyle(int nStyle)
{
    m_nChosen = nStyle;
    update();
}

void CHatchWellWnd::SetColours(gfx::Color foreground, gfx::Color background)
{
    m_foreground = foreground;
    m_background = background;
    update();
}

QString CHatchWellWnd::HatchName(int)
{
    return {};
}

QRect CHatchWellWnd::CellRect(int) const
{
    return {};
}

QSize CHatchWellWnd::sizeHint() const
{
    return {Columns * CellSize + 2 * m_nMargin, 6 * CellSize + 2 * m_nMargin};
}

void CHatchWellWnd::paintEvent(QPaintEvent*) {}
void CHatchWellWnd::mouseMoveEvent(QMouseEvent*) {}
void CHatchWellWnd::mouseReleaseEvent(QMouseEvent*) {}
void CHatchWellWnd::keyPressEvent(QKeyEvent*) {}
void CHatchWellWnd::leaveEvent(QEvent*) {}
bool CHatchWellWnd::event(QEvent* pEvent) { return QWidget::event(pEvent); }
