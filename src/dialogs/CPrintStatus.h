#pragma once

#include <QDialog>

class CBusyIndicator;
class QLabel;
class QProgressBar;

// The window a print job shows while it runs: what is printed where, the discs done so far
// and a Cancel that stops the job after the page being printed. Made as the job starts (which
// clears the cancel flag) and shown once the job knows its printer. The job disables its main
// window meanwhile; this window is no child of it, so that its Cancel stays in use, and sits
// on top of it, centred.
class CPrintStatus : public QDialog {
    Q_OBJECT

public:
    explicit CPrintStatus(QWidget* owner);

    // Control 1058: "Printing ... on ...".
    void SetText(const QString& text);
    // The bar over the discs to print, and text 1055: "50 %".
    void SetRange(int total);
    void SetProgress(int page, const QString& percent);

    void reject() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    QWidget* m_pOwner;
    CBusyIndicator* m_pAnimation;
    QLabel* m_pText;
    QProgressBar* m_pProgress;
    QLabel* m_pPercent;
};
