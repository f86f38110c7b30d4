#pragma once

#include <QBasicTimer>
#include <QPushButton>

// A button that moves a whole number on while it is held: one step at once on the press, one
// more after the first delay, then a step at each repeat that grows by one each time, so a
// long hold covers a wide range quickly. The value stays within its limits.
class CSeekButton : public QPushButton {
    Q_OBJECT

public:
    // The caption is the button's text and its accessible name.
    explicit CSeekButton(const QString& caption = {}, QWidget* parent = nullptr);

    // The value it moves (not owned), downwards when bDecrease, the step, the limits, and the
    // delays in milliseconds before the first repeat and between repeats.
    void Init(int* pValue, bool bDecrease, int nStep, int nMin, int nMax, int nFirstDelay, int nRepeatDelay);

signals:
    // The value after each step, for the control that shows it.
    void valueStepped(int value);

protected:
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    void Apply(int nStep);

    int* m_pValue = nullptr;
    bool m_bDecrease = false;
    int m_nStep = 1;
    int m_nMin = 0;
    int m_nMax = 0;
    int m_nFirstDelay = 0;
    int m_nRepeatDelay = 0;
    QBasicTimer m_timer;
    int m_nCurStep = 0;
};
