#pragma once

#include <QDialog>

#include <atomic>

class CBusyIndicator;
class QProgressBar;

// The download's window: a task-bar entry of its own, minimised, whose title and progress bar
// carry the percentage, with an animation that shows the download is alive and a Cancel
// button. It belongs to the interface thread; the worker that downloads reads m_bCancelled.
class CDownload : public QDialog {
    Q_OBJECT

public:
    CDownload();

    // Shows the window minimised, its animation running, at 0 percent.
    void Start();
    // The progress bar, and the title "Downloading %u%%".
    void SetPercent(unsigned percent);
    bool IsCancelled() const { return m_bCancelled != 0; }

    // Cancel and the window's close button: the download stops after its current read.
    void reject() override;

signals:
    // The user cancelled; a worker waiting for data wakes up.
    void Cancelled();

private:
    QProgressBar* m_pProgress = nullptr;
    CBusyIndicator* m_pAnimation = nullptr;
    std::atomic<int> m_bCancelled{0};
};
