#pragma once

#include <QDialog>

class QLabel;

// A small window of one text, shown over its parent while the program waits for something
// the user can't hurry, such as the end of the update check.
class CMessageDlg : public QDialog {
    Q_OBJECT

public:
    explicit CMessageDlg(QWidget* parent);

    // The text as the program has it; "\r\n" ends a line.
    void SetText(const QString& text);
    const QString& Text() const { return m_strText; }

private:
    QLabel* m_pText = nullptr;
    QString m_strText;
};
