#include "update/CMessageDlg.h"

#include <QLabel>
#include <QVBoxLayout>

CMessageDlg::CMessageDlg(QWidget* parent) : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Tessarelle"));
    // Nothing to answer: the window goes when the wait is over.
    setWindowFlags(Qt::Dialog | Qt::CustomizeWindowHint | Qt::WindowTitleHint);
    m_pText = new QLabel(this);
    m_pText->setAlignment(Qt::AlignCenter);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(24, 16, 24, 16);
    layout->addWidget(m_pText);
    setMinimumWidth(240);
}

void CMessageDlg::SetText(const QString& text)
{
    if (text == m_strText)
        return;
    m_strText = text;
    QString shown = text;
    shown.replace(QLatin1String("\r\n"), QLatin1String("\n"));
    m_pText->setText(shown);
    // Shown at once, even when the caller goes on waiting before the next paint.
    m_pText->repaint();
}
