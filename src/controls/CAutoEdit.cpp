#include "controls/CAutoEdit.h"

#include "controls/CEditValidate.h"
#include "controls/CInfoWnd.h"

#include <QAbstractButton>
#include <QApplication>
#include <QDialogButtonBox>
#include <QKeyEvent>
#include <QLabel>

namespace {

bool IsSign(char32_t c)
{
    return c == U'+' || c == U'-';
}

// A dialog's Cancel: the rejecting button of a button box that sits directly in it.
const QAbstractButton* CancelButtonOf(const QWidget* dialog)
{
    if (!dialog)
        return nullptr;
    for (QDialogButtonBox* box : dialog->findChildren<QDialogButtonBox*>(Qt::FindDirectChildrenOnly)) {
        for (QAbstractButton* button : box->buttons()) {
            if (box->buttonRole(button) == QDialogButtonBox::RejectRole)
                return button;
        }
    }
    return nullptr;
}

} // namespace

CAutoEdit::CAutoEdit(QWidget* parent)
    : QLineEdit(parent)
{
}

void CAutoEdit::SetAllowedChars(const QString& chars)
{
    m_strAllowedChars = chars;
}

void CAutoEdit::SetLimit(int nMaxChars)
{
    m_nMaxChars = nMaxChars;
    // A line edit's own default limit stands for "no limit".
    setMaxLength(nMaxChars < 0 ? 32767 : nMaxChars);
}

void CAutoEdit::SetValidator(CEditValidate* pValidator)
{
    m_pValidator = pValidator;
}

void CAutoEdit::SetDefaultText(const QString& text)
{
    m_strDefaultText = text;
}

void CAutoEdit::SetText(const QString& text)
{
    setText(text.isEmpty() ? m_strDefaultText : text);
}

void CAutoEdit::SetTerminatorChar(char32_t c)
{
    m_nTerminatorChar = c;
}

void CAutoEdit::SetAllowSign(bool bAllow)
{
    m_bAllowSign = bAllow;
}

void CAutoEdit::SetSignToFront(bool bToFront)
{
    m_bSignToFront = bToFront;
}

void CAutoEdit::SetCaption(QLabel* label)
{
    label->setBuddy(this);
    const QString caption = label->text();
    QString name;
    for (qsizetype i = 0; i < caption.size(); ++i) {
        // "&&" is a literal ampersand, a single one marks the mnemonic.
        if (caption[i] == QLatin1Char('&') && i + 1 < caption.size())
            ++i;
        name += caption[i];
    }
    setAccessibleName(name);
}

void CAutoEdit::keyPressEvent(QKeyEvent* event)
{
    // Keys that type nothing (arrows, Home, Delete) are the line edit's alone.
    const QList<uint> typed = event->text().toUcs4();
    if (typed.isEmpty()) {
        QLineEdit::keyPressEvent(event);
        return;
    }
    const char32_t c = typed.first();
    if (m_nTerminatorChar != 0 && c == m_nTerminatorChar) {
        focusNextChild();
        return;
    }
    // Backspace, Enter and keys held with Ctrl, Alt or Meta (copy, paste, mnemonics) type no
    // character.
    const bool bControl = !QChar::isPrint(c) || (event->modifiers() & (Qt::ControlModifier | Qt::AltModifier | Qt::MetaModifier));
    if (!m_strAllowedChars.isNull() && !bControl && !m_strAllowedChars.toUcs4().contains(c)) {
        QApplication::beep();
        return;
    }
    if (!bControl && m_bAllowSign && IsSign(c)) {
        const QString current = text();
        const qsizetype nSigns = current.count(QLatin1Char('+')) + current.count(QLatin1Char('-'));
        const bool bReplacesAll = selectionStart() == 0 && selectionLength() >= current.size();
        if (nSigns > 0 && !bReplacesAll) {
            QApplication::beep();
            return;
        }
    }
    QLineEdit::keyPressEvent(event);
    if (m_bSignToFront)
        MoveSignToFront();
    if (m_nMaxChars != -1 && text().size() >= m_nMaxChars)
        focusNextChild();
}

void CAutoEdit::MoveSignToFront()
{
    QString current = text();
    for (qsizetype i = 1; i < current.size(); ++i) {
        if (IsSign(current[i].unicode())) {
            const QChar sign = current[i];
            const int nCaret = cursorPosition();
            current.remove(i, 1);
            current.prepend(sign);
            setText(current);
            setCursorPosition(nCaret);
            return;
        }
    }
}

bool CAutoEdit::IsCancelButton(const QWidget* widget) const
{
    const QWidget* parent = parentWidget();
    const QAbstractButton* cancel = CancelButtonOf(parent);
    if (!cancel && parent)
        cancel = CancelButtonOf(parent->parentWidget());
    return cancel && cancel == widget;
}

void CAutoEdit::focusOutEvent(QFocusEvent* event)
{
    QLineEdit::focusOutEvent(event);
    // Only a move to another control is checked. A switch to another window or into a menu
    // brings the focus back here later, and pulling it back at once would fight the window
    // manager.
    if (event->reason() == Qt::ActiveWindowFocusReason || event->reason() == Qt::PopupFocusReason)
        return;
    const QWidget* next = QApplication::focusWidget();
    if (!next || !m_pValidator || IsCancelButton(next))
        return;
    QString checked = text();
    const QString message = m_pValidator->Validate(checked);
    if (checked != text())
        setText(checked);
    if (m_pInfoWindow)
        m_pInfoWindow->hide();
    if (message.isEmpty())
        return;
    setFocus(Qt::OtherFocusReason);
    selectAll();
    if (!m_pInfoWindow)
        m_pInfoWindow = new CInfoWnd(this);
    m_pInfoWindow->ShowAt(this, message);
}

void CAutoEdit::hideEvent(QHideEvent* event)
{
    QLineEdit::hideEvent(event);
    if (m_pInfoWindow)
        m_pInfoWindow->hide();
}
