#include "dialogs/CPrintStatus.h"

#include "controls/CBusyIndicator.h"
#include "controls/CToolTipDialog.h"
#include "printing/CPrintView.h"

#include <QDialogButtonBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QProgressBar>
#include <QPushButton>
#include <QVBoxLayout>
#include <QWindow>

CPrintStatus::CPrintStatus(QWidget* owner) : m_pOwner(owner)
{
    g_bPrintCancel = false;
    setWindowTitle(QStringLiteral("Printing"));

    m_pAnimation = new CBusyIndicator(this);
    SetControlId(m_pAnimation, 1052);
    m_pAnimation->setAccessibleName(QStringLiteral("Printing"));
    m_pText = new QLabel(this);
    SetControlId(m_pText, 1058);
    m_pText->setMinimumWidth(260);
    m_pProgress = new QProgressBar(this);
    SetControlId(m_pProgress, 1140);
    m_pProgress->setTextVisible(false);
    m_pProgress->setAccessibleName(QStringLiteral("Discs printed"));
    m_pPercent = new QLabel(QStringLiteral("100 %"), this);
    SetControlId(m_pPercent, 1055);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Cancel, this);
    buttons->button(QDialogButtonBox::Cancel)->setText(QStringLiteral("cancel"));
    connect(buttons, &QDialogButtonBox::rejected, this, &CPrintStatus::reject);

    auto* top = new QHBoxLayout;
    top->addWidget(m_pAnimation);
    top->addWidget(m_pText, 1);
    auto* progress = new QHBoxLayout;
    progress->addWidget(m_pProgress, 1);
    progress->addWidget(m_pPercent);
    auto* layout = new QVBoxLayout(this);
    layout->addLayout(top);
    layout->addLayout(progress);
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);
    CToolTipDialog::AddToolTips(this);
}

void CPrintStatus::SetText(const QString& text)
{
    m_pText->setText(text);
}

void CPrintStatus::SetRange(int total)
{
    m_pProgress->setRange(0, total);
    m_pProgress->setValue(0);
}

void CPrintStatus::SetProgress(int page, const QString& percent)
{
    m_pProgress->setValue(page);
    m_pPercent->setText(percent);
}

void CPrintStatus::reject()
{
    // The job sees the flag between pages and stops there.
    g_bPrintCancel = true;
    QDialog::reject();
}

void CPrintStatus::showEvent(QShowEvent* event)
{
    QDialog::showEvent(event);
    if (m_pOwner) {
        QWidget* mainWindow = m_pOwner->window();
        if (windowHandle() && mainWindow->windowHandle())
            windowHandle()->setTransientParent(mainWindow->windowHandle());
        move(mainWindow->frameGeometry().center() - rect().center());
    }
    m_pAnimation->Play();
}
