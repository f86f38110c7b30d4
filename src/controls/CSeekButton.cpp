#include "controls/CSeekButton.h"

#include <QMouseEvent>

#include <algorithm>

CSeekButton::CSeekButton(const QString& caption, QWidget* parent)
    : QPushButton(caption, parent)
{
    setAccessibleName(caption);
    // Enter in the dialog belongs to its own buttons, never to a step.
    setAutoDefault(false);
}

void CSeekButton::Init(int* pValue, bool bDecrease, int nStep, int nMin, int nMax, int nFirstDelay, int nRepeatDelay)
{
    m_pValue = pValue;
    m_bDecrease = bDecrease;
    m_nStep = nStep;
    m_nMin = nMin;
    m_nMax = nMax;
    m_nFirstDelay = nFirstDelay;
    m_nRepeatDelay = nRepeatDelay;
}

void CSeekButton::Apply(int nStep)
{
    // In 64 bits, so that a long hold near the end of int's range clamps instead of wrapping.
    const long long nValue = static_cast<long long>(*m_pValue) + (m_bDecrease ? -nStep : nStep);
    *m_pValue = static_cast<int>(std::clamp<long long>(nValue, m_nMin, m_nMax));
    emit valueStepped(*m_pValue);
}

void CSeekButton::mousePressEvent(QMouseEvent* event)
{
    QPushButton::mousePressEvent(event);
    if (event->button() != Qt::LeftButton || !m_pValue)
        return;
    Apply(m_nStep);
    m_timer.start(m_nFirstDelay, this);
    m_nCurStep = m_nStep;
}

void CSeekButton::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() == Qt::LeftButton)
        m_timer.stop();
    QPushButton::mouseReleaseEvent(event);
}

void CSeekButton::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_timer.timerId()) {
        QPushButton::timerEvent(event);
        return;
    }
    m_timer.start(m_nRepeatDelay, this);
    Apply(m_nCurStep++);
}
