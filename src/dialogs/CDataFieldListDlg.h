#pragma once

#include <QDialog>

class QListWidget;
class QPlainTextEdit;
class QPushButton;

// The program's list of data fields, one line per field showing its tag. Fields are added,
// edited and deleted in place: the list is changed at once, so Close is the only way out. A
// field's tag can be put into the text being edited.
class CDataFieldListDlg : public QDialog {
    Q_OBJECT

public:
    // The text edit that "Insert Data Field in Text" writes into; may be null.
    explicit CDataFieldListDlg(QPlainTextEdit* target, QWidget* parent = nullptr);

    // Replaces the selection of the edit with the text. The edit's own undo can't take it
    // back: the change is the label's, and the label's history has it.
    static void InsertInText(QPlainTextEdit* edit, const QString& text);

private:
    void OnAdd();
    void OnEdit();
    void OnDelete();
    void OnInsert();
    // Edit, Delete and Insert need a selected line.
    void EnableControls();

    QPlainTextEdit* m_pTarget;
    QListWidget* m_pList = nullptr;
    QPushButton* m_pEdit = nullptr;
    QPushButton* m_pDelete = nullptr;
    QPushButton* m_pInsert = nullptr;
};
