#include "update/CDownload.h"

#include "controls/CToolTipDialog.h"
#include "controls/CBusyIndicator.h"

#include <QGuiApplication>
#include <QHBoxLayout>
#include <QProgressBar>
#include <QPushButton>
#include <QScreen>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr int ProgressId = 1140;
constexpr int AnimationId = 1052;
constexpr int CancelId = 2;

} // namespace

CDownload::CDownload() : QDialog(nullptr, Qt::Window | Qt::WindowTitleHint | Qt::WindowMinimizeButtonHint | Qt::WindowCloseButtonHint)
{
    setWindowTitle(QStringLiteral("Downloading..."));
    m_pAnimation = new CBusyIndicator(this);
    SetControlId(m_pAnimation, AnimationId);
    m_pAnimation->setAccessibleName(QStringLiteral("Downloading"));
    m_pProgress = new QProgressBar(this);
    SetControlId(m_pProgress, ProgressId);
    m_pProgress->setRange(0, 100);
    m_pProgress->setTextVisible(false);
    m_pProgress->setAccessibleName(QStringLiteral("Download progress"));
    auto* cancel = new QPushButton(QStringLiteral("Cancel"), this);
    SetControlId(cancel, CancelId);
    cancel->setAutoDefault(false);
    connect(cancel, &QPushButton::clicked, this, &CDownload::reject);

    auto* layout = new QVBoxLayout(this);
    auto* top = new QHBoxLayout;
    top->addWidget(m_pAnimation);
    top->addWidget(m_pProgress, 1);
    layout->addLayout(top);
    auto* buttons = new QHBoxLayout;
    buttons->addStretch(1);
    buttons->addWidget(cancel);
    layout->addLayout(buttons);
    setFixedSize(320, 100);
}

void CDownload::Start()
{
    m_bCancelled = 0;
    if (const QScreen* screen = QGuiApplication::primaryScreen()) {
        QRect place = geometry();
        place.moveCenter(screen->availableGeometry().center());
        move(place.topLeft());
    }
    m_pAnimation->Play();
    SetPercent(0);
    // A task-bar entry, not a window over the user's work: the download goes on in the
    // background, and whoever wants to watch or cancel it brings it up.
    showMinimized();
}

void CDownload::SetPercent(unsigned percent)
{
    m_pProgress->setValue(int(std::min(percent, 100u)));
    setWindowTitle(QStringLiteral("Downloading %1%").arg(percent));
}

void CDownload::reject()
{
    m_bCancelled = 1;
    m_pAnimation->Stop();
    emit Cancelled();
    QDialog::reject();
}
