#include "controls/CImageButton.h"

#include <QCursor>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionFocusRect>
#include <QTimerEvent>
#include <algorithm>

namespace {

constexpr int HoverCheckInterval = 100; // milliseconds

} // namespace

CImageButton::CImageButton(const QIcon& picture, const QString& caption, QWidget* parent)
    : QAbstractButton(parent)
{
    setIcon(picture);
    setAccessibleName(caption);
    // The pressed state is a checked state, so that accessibility reports it; clicks don't
    // toggle it (see nextCheckState).
    setCheckable(true);
    // Reachable with Tab, but a click keeps the focus where it was: the canvas's arrow keys
    // must still move the selection after a tool is chosen.
    setFocusPolicy(Qt::TabFocus);
}

void CImageButton::SetPressed(bool pressed)
{
    // setChecked returns at once, without a repaint, when the state is unchanged.
    setChecked(pressed);
}

bool CImageButton::IsPressed() const
{
    return isChecked();
}

QSize CImageButton::sizeHint() const
{
    return QSize(24, 24);
}

void CImageButton::nextCheckState()
{
}

void CImageButton::enterEvent(QEnterEvent* event)
{
    m_bHover = true;
    m_hoverTimer.start(HoverCheckInterval, this);
    update();
    QAbstractButton::enterEvent(event);
}

void CImageButton::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_hoverTimer.timerId()) {
        QAbstractButton::timerEvent(event);
        return;
    }
    // Leave events go missing now and then (a popup or another window taking the pointer,
    // a fast move out of the window), so the highlight also goes once the cursor itself is
    // seen elsewhere.
    if (underMouse() && rect().contains(mapFromGlobal(QCursor::pos())))
        return;
    m_hoverTimer.stop();
    m_bHover = false;
    update();
}

void CImageButton::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const bool pressed = isChecked() || isDown();
    const bool hover = m_bHover && isEnabled();
    if (pressed || hover) {
        const QColor accent = palette().color(QPalette::Highlight);
        QColor back = accent;
        back.setAlphaF(pressed ? (hover ? 0.45f : 0.32f) : 0.16f);
        QColor edge = accent;
        edge.setAlphaF(pressed ? 1.0f : 0.6f);
        painter.setRenderHint(QPainter::Antialiasing);
        painter.setPen(QPen(edge, 1));
        painter.setBrush(back);
        painter.drawRoundedRect(QRectF(rect()).adjusted(0.5, 0.5, -0.5, -0.5), 2, 2);
    }

    // The picture is square, centred, with a margin that grows with the button.
    const int side = std::min(width(), height());
    const int margin = std::max(2, side / 12);
    QRect picture(0, 0, side - 2 * margin, side - 2 * margin);
    picture.moveCenter(rect().center());
    icon().paint(&painter, picture, Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled,
                 pressed ? QIcon::On : QIcon::Off);

    if (hasFocus()) {
        QStyleOptionFocusRect option;
        option.initFrom(this);
        option.rect = rect().adjusted(1, 1, -1, -1);
        style()->drawPrimitive(QStyle::PE_FrameFocusRect, &option, &painter, this);
    }
}
