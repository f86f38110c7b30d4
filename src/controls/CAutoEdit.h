#pragma once

#include <QLineEdit>

class CEditValidate;
class CInfoWnd;
class QLabel;

// The edit of every number in the panels: it filters what is typed, moves the focus on by
// itself once a field is complete, and checks its text with a validator when the focus leaves
// for another control. A text the validator refuses keeps the focus and shows the validator's
// message beside the edit; leaving for the dialog's Cancel button skips the check, so a dialog
// can always be abandoned. The Cancel button is the rejecting button of a QDialogButtonBox that
// sits directly in the edit's parent or, failing that, in the parent's parent.
class CAutoEdit : public QLineEdit {
    Q_OBJECT

public:
    explicit CAutoEdit(QWidget* parent = nullptr);

    // What may be typed; a null string allows anything. Refused printable characters beep,
    // control characters (Backspace, copy and paste keys) always pass.
    void SetAllowedChars(const QString& chars);
    // At this many characters the focus moves on to the next control; -1 for never. It is also
    // the most the edit takes.
    void SetLimit(int nMaxChars);
    // Not owned; null for no check.
    void SetValidator(CEditValidate* pValidator);
    // What SetText shows for an empty text.
    void SetDefaultText(const QString& text);
    void SetText(const QString& text);
    // A character that, typed, moves the focus on instead of entering the text; 0 for none.
    void SetTerminatorChar(char32_t c);
    // "+" or "-" is then only taken while the text has no sign, or replaces all of it.
    void SetAllowSign(bool bAllow);
    // A sign typed anywhere moves to the front of the text.
    void SetSignToFront(bool bToFront);
    // The label that names this edit: it becomes the edit's accessible name (without its
    // mnemonic), and its mnemonic key focuses the edit.
    void SetCaption(QLabel* label);

protected:
    void keyPressEvent(QKeyEvent* event) override;
    void focusOutEvent(QFocusEvent* event) override;
    // The message is a window of its own, which would otherwise stay on screen after the
    // dialog holding the edit has gone.
    void hideEvent(QHideEvent* event) override;

private:
    void MoveSignToFront();
    bool IsCancelButton(const QWidget* widget) const;

    char32_t m_nTerminatorChar = 0;
    int m_nMaxChars = -1;
    QString m_strAllowedChars;
    bool m_bAllowSign = false;
    bool m_bSignToFront = false;
    QString m_strDefaultText;
    CEditValidate* m_pValidator = nullptr;
    CInfoWnd* m_pInfoWindow = nullptr;
};
