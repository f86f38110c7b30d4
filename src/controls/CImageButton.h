#pragma once

#include <QAbstractButton>
#include <QBasicTimer>

// A flat square button that shows a picture, as in the tool column. Its owner decides whether
// it is pressed (the current tool's button stays down); a click only reports itself. While the
// mouse is over it a highlight shows, which a 100 millisecond timer takes away once it finds
// the mouse gone. The caption is the button's accessible name; the owner sets the tooltip.
class CImageButton : public QAbstractButton {
    Q_OBJECT

public:
    CImageButton(const QIcon& picture, const QString& caption, QWidget* parent = nullptr);

    // Repaints only when the state changes, so that the owner may set it on every update.
    void SetPressed(bool pressed);
    bool IsPressed() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void timerEvent(QTimerEvent* event) override;
    // A click leaves the pressed state to the owner.
    void nextCheckState() override;

private:
    QBasicTimer m_hoverTimer;
    bool m_bHover = false;
};
