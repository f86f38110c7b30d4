#include "controls/CInfoWnd.h"

#include <QAccessible>

CInfoWnd::CInfoWnd(QWidget* parent)
    : QLabel(parent, Qt::ToolTip | Qt::FramelessWindowHint)
{
    setAttribute(Qt::WA_ShowWithoutActivating);
    setFocusPolicy(Qt::NoFocus);
    setForegroundRole(QPalette::ToolTipText);
    setBackgroundRole(QPalette::ToolTipBase);
    setAutoFillBackground(true);
    setFrameStyle(QFrame::Box | QFrame::Plain);
    setMargin(3);
    setTextFormat(Qt::PlainText);
}

void CInfoWnd::ShowAt(QWidget* control, const QString& text)
{
    setText(text);
    adjustSize();
    move(control->mapToGlobal(QPoint(0, control->height())));
    show();
    raise();
    // Nothing else draws a screen reader's attention to a popup that never has the focus.
    QAccessibleEvent alert(this, QAccessible::Alert);
    QAccessible::updateAccessibility(&alert);
}
