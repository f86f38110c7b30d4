#include "controls/CNumSpinCtrl.h"

#include "platform/NumberText.h"

#include <QLineEdit>
#include <QMouseEvent>
#include <QPainter>
#include <QStyle>
#include <QStyleOptionButton>

#include <algorithm>
#include <cmath>

namespace {

// The most positions a spin has, as a 16-bit range allows.
constexpr double MaxIntRange = 32767;

} // namespace

CNumSpinCtrl::CNumSpinCtrl(QWidget* parent)
    : QWidget(parent)
{
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Preferred);
}

void CNumSpinCtrl::SetBuddy(QLineEdit* buddy)
{
    m_pBuddy = buddy;
}

void CNumSpinCtrl::SetRangeAndDelta(double fMin, double fMax, double fDelta)
{
    m_fMinValue = fMin;
    m_fMaxValue = fMax;
    m_fDelta = fDelta;
    if (fDelta == 0)
        return;
    m_nIntRange = static_cast<int>(std::min(std::abs((fMax - fMin) / fDelta), MaxIntRange));
    SetPosFor(GetValue());
}

void CNumSpinCtrl::SetValue(double fValue)
{
    if (m_pBuddy)
        m_pBuddy->setText(FormatValue(fValue));
    SetPosFor(fValue);
}

double CNumSpinCtrl::GetValue() const
{
    return m_pBuddy ? NumberText::ToDouble(m_pBuddy->text()) : 0;
}

void CNumSpinCtrl::SetDecimals(int nDecimals)
{
    m_nDecimals = nDecimals;
}

void CNumSpinCtrl::SetFormat(const QString& format)
{
    m_strFormat = format;
}

void CNumSpinCtrl::SetTrimZeros(bool bTrim)
{
    m_bTrimZeros = bTrim;
}

void CNumSpinCtrl::SetReversed(bool bReversed)
{
    m_bReversed = bReversed;
}

void CNumSpinCtrl::SetWrap(bool bWrap)
{
    m_bWrap = bWrap;
}

void CNumSpinCtrl::SetPosFor(double fValue)
{
    if (m_fMinValue == m_fMaxValue)
        return;
    if (fValue <= m_fMinValue)
        m_nPos = 0;
    else if (fValue >= m_fMaxValue)
        m_nPos = m_nIntRange;
    else
        m_nPos = static_cast<int>(m_nIntRange * (fValue - m_fMinValue) / (m_fMaxValue - m_fMinValue) + 0.5);
}

QString CNumSpinCtrl::FormatValue(double fValue) const
{
    // Numbers are written with '.' whatever the locale, as the edits read them back.
    QString text;
    if (!m_strFormat.isEmpty())
        text = QString::asprintf(m_strFormat.toUtf8().constData(), fValue);
    else if (m_nDecimals < 0)
        text = QString::asprintf("%g", fValue);
    else
        text = QString::asprintf("%.*f", m_nDecimals, fValue);
    if (!m_bTrimZeros)
        return text;
    const qsizetype nPoint = text.indexOf(QLatin1Char('.'));
    if (nPoint < 0)
        return text;
    qsizetype nExponent = nPoint + 1;
    while (nExponent < text.size() && text[nExponent] != QLatin1Char('e') && text[nExponent] != QLatin1Char('E'))
        ++nExponent;
    qsizetype nCut = nExponent;
    while (nCut > nPoint + 1 && text[nCut - 1] == QLatin1Char('0'))
        --nCut;
    text.remove(nCut, nExponent - nCut);
    return text;
}

void CNumSpinCtrl::Step(int nDirection)
{
    if (!m_pBuddy)
        return;
    const int d = m_bReversed ? -nDirection : nDirection;
    double fValue = GetValue() + m_fDelta * d;
    // Sums of decimal steps miss the limit by a rounding error, which must not count as
    // passing it: ten steps of 0.1 reach 1, they don't wrap past it.
    const double fLimit = d > 0 ? m_fMaxValue : m_fMinValue;
    const double fEps = std::max(1e-9 * std::max(std::abs(fValue), std::abs(fLimit)), 1e-9);
    if (d > 0 && fValue > m_fMaxValue + fEps)
        fValue = m_bWrap ? m_fMinValue : m_fMaxValue;
    else if (d < 0 && fValue < m_fMinValue - fEps)
        fValue = m_bWrap ? m_fMaxValue : m_fMinValue;
    m_pBuddy->setText(FormatValue(fValue));
}

QSize CNumSpinCtrl::sizeHint() const
{
    return QSize(16, 24);
}

void CNumSpinCtrl::paintEvent(QPaintEvent*)
{
    QPainter painter(this);
    const int nHalf = height() / 2;
    const QRect halves[2] = {QRect(0, 0, width(), nHalf), QRect(0, nHalf, width(), height() - nHalf)};
    for (int i = 0; i < 2; ++i) {
        const int nDirection = i == 0 ? 1 : -1;
        QStyleOptionButton option;
        option.initFrom(this);
        option.rect = halves[i];
        option.state |= m_nHeld == nDirection ? QStyle::State_Sunken : QStyle::State_Raised;
        style()->drawPrimitive(QStyle::PE_PanelButtonCommand, &option, &painter, this);
        option.rect = halves[i].adjusted(3, 2, -3, -2);
        style()->drawPrimitive(i == 0 ? QStyle::PE_IndicatorArrowUp : QStyle::PE_IndicatorArrowDown, &option, &painter, this);
    }
}

void CNumSpinCtrl::mousePressEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mousePressEvent(event);
        return;
    }
    m_nHeld = event->position().y() < height() / 2 ? 1 : -1;
    Step(m_nHeld);
    m_repeat.start(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatThreshold, nullptr, this), this);
    update();
}

void CNumSpinCtrl::mouseReleaseEvent(QMouseEvent* event)
{
    if (event->button() != Qt::LeftButton) {
        QWidget::mouseReleaseEvent(event);
        return;
    }
    m_repeat.stop();
    m_nHeld = 0;
    update();
}

void CNumSpinCtrl::timerEvent(QTimerEvent* event)
{
    if (event->timerId() != m_repeat.timerId()) {
        QWidget::timerEvent(event);
        return;
    }
    Step(m_nHeld);
    m_repeat.start(style()->styleHint(QStyle::SH_SpinBox_ClickAutoRepeatRate, nullptr, this), this);
}
