#pragma once

#include <QBasicTimer>
#include <QString>
#include <QWidget>

class QLineEdit;

// The up and down arrows beside a number's edit (its buddy). The value lives in the buddy's
// text alone: an arrow reads the text, steps it by the delta, keeps it within the range and
// writes it back, so a typed value steps on from where the user left it, and the buddy's own
// change signal tells the panel. The spin's integer position only follows the values it is
// given; with a range finer than its 32767 positions the steps still land exactly.
class CNumSpinCtrl : public QWidget {
    Q_OBJECT

public:
    explicit CNumSpinCtrl(QWidget* parent = nullptr);

    void SetBuddy(QLineEdit* buddy);
    QLineEdit* GetBuddy() const { return m_pBuddy; }

    // A delta of 0 stores the range but leaves the position alone.
    void SetRangeAndDelta(double fMin, double fMax, double fDelta);
    // Writes the value into the buddy and moves the position to it.
    void SetValue(double fValue);
    // The buddy's text read as a number; 0 without a buddy.
    double GetValue() const;
    // Digits behind the point; -1 for the shortest form ("%g").
    void SetDecimals(int nDecimals);
    // A printf format taking one double, used instead of the decimals when not empty.
    void SetFormat(const QString& format);
    // Drops the zeros that end the decimals, keeping the point and any exponent.
    void SetTrimZeros(bool bTrim);
    // The up arrow then decreases the value.
    void SetReversed(bool bReversed);
    // Stepping past one end then goes on at the other instead of stopping.
    void SetWrap(bool bWrap);
    // From 0 to the number of steps in the range, at most 32767.
    int GetPos() const { return m_nPos; }

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void timerEvent(QTimerEvent* event) override;

private:
    // One arrow step: +1 up, -1 down.
    void Step(int nDirection);
    void SetPosFor(double fValue);
    QString FormatValue(double fValue) const;

    QLineEdit* m_pBuddy = nullptr;
    bool m_bReversed = false;
    bool m_bWrap = false;
    double m_fMinValue = 0;
    double m_fMaxValue = 100;
    double m_fDelta = 1;
    int m_nIntRange = 100;
    int m_nPos = 0;
    int m_nDecimals = -1;
    QString m_strFormat;
    bool m_bTrimZeros = false;
    // The arrow held down (+1 up, -1 down, 0 none) and its repeat.
    int m_nHeld = 0;
    QBasicTimer m_repeat;
};
