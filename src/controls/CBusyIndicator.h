#pragma once

#include <QTimer>
#include <QWidget>

// A ring of dots whose bright spot goes round while it runs: shows that a job without an
// end in sight is alive.
class CBusyIndicator : public QWidget {
    Q_OBJECT

public:
    explicit CBusyIndicator(QWidget* parent = nullptr);

    // Goes round from the first step, over and over, until stopped.
    void Play();
    void Stop();
    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QTimer m_timer;
    int m_nStep = 0;
};
