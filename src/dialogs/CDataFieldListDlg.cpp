#include "dialogs/CDataFieldListDlg.h"

#include "controls/CToolTipDialog.h"
#include "dialogs/CDataFieldDlg.h"
#include "fields/DataFields.h"

#include <QGridLayout>
#include <QListWidget>
#include <QPlainTextEdit>
#include <QPushButton>

CDataFieldListDlg::CDataFieldListDlg(QPlainTextEdit* target, QWidget* parent) : QDialog(parent), m_pTarget(target)
{
    setWindowTitle(QStringLiteral("Data Field List"));
    auto* grid = new QGridLayout(this);
    m_pList = new QListWidget(this);
    m_pList->setAccessibleName(QStringLiteral("Data Fields"));
    for (const DATAFIELD& field : g_dataFields)
        m_pList->addItem(field.Tag);
    grid->addWidget(m_pList, 0, 0, 6, 1);

    const auto button = [this, grid](const QString& caption, int row, void (CDataFieldListDlg::*handler)()) {
        auto* pushButton = new QPushButton(caption, this);
        pushButton->setAutoDefault(false);
        connect(pushButton, &QPushButton::clicked, this, handler);
        grid->addWidget(pushButton, row, 1);
        return pushButton;
    };
    button(QStringLiteral("Add"), 0, &CDataFieldListDlg::OnAdd);
    m_pEdit = button(QStringLiteral("Edit"), 1, &CDataFieldListDlg::OnEdit);
    m_pDelete = button(QStringLiteral("Delete"), 2, &CDataFieldListDlg::OnDelete);
    m_pInsert = button(QStringLiteral("Insert Data Field in Text"), 3, &CDataFieldListDlg::OnInsert);
    button(QStringLiteral("Close"), 5, &QDialog::accept);
    grid->setRowStretch(4, 1);

    connect(m_pList, &QListWidget::itemSelectionChanged, this, &CDataFieldListDlg::EnableControls);
    EnableControls();
    CToolTipDialog::AddToolTips(this);
}

void CDataFieldListDlg::InsertInText(QPlainTextEdit* edit, const QString& text)
{
    if (!edit)
        return;
    // Switching the history off and on again empties it, as an edit control's replacement
    // that can't be undone does.
    edit->document()->setUndoRedoEnabled(false);
    edit->textCursor().insertText(text);
    edit->document()->setUndoRedoEnabled(true);
}

void CDataFieldListDlg::EnableControls()
{
    const bool selected = m_pList->count() > 0 && !m_pList->selectedItems().isEmpty();
    m_pEdit->setEnabled(selected);
    m_pDelete->setEnabled(selected);
    m_pInsert->setEnabled(selected);
}

void CDataFieldListDlg::OnAdd()
{
    CDataFieldDlg dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    g_dataFields.push_back(dialog.m_field);
    m_pList->addItem(dialog.m_field.Tag);
    m_pList->setCurrentRow(m_pList->count() - 1);
    EnableControls();
}

void CDataFieldListDlg::OnEdit()
{
    const int row = m_pList->currentRow();
    if (row < 0 || row >= int(g_dataFields.size()))
        return;
    CDataFieldDlg dialog(g_dataFields[size_t(row)], this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    // The line keeps the tag it showed; the list is read anew when the dialog opens next.
    g_dataFields[size_t(row)] = dialog.m_field;
}

void CDataFieldListDlg::OnDelete()
{
    const int row = m_pList->currentRow();
    if (row < 0 || row >= int(g_dataFields.size()))
        return;
    g_dataFields.erase(g_dataFields.begin() + row);
    delete m_pList->takeItem(row);
    // A list box forgets its selection with the line it deleted.
    m_pList->setCurrentRow(-1);
    m_pList->clearSelection();
    EnableControls();
}

void CDataFieldListDlg::OnInsert()
{
    const int row = m_pList->currentRow();
    if (row < 0 || row >= int(g_dataFields.size()))
        return;
    InsertInText(m_pTarget, g_dataFields[size_t(row)].Tag);
}
