#pragma once

#include <QFrame>

class CFillPage;

// The preview on a fill page. It draws nothing of its own: the page it sits on paints the fill
// it is choosing, so the preview always shows the page's present values.
class CSampleButton : public QFrame {
    Q_OBJECT

public:
    explicit CSampleButton(CFillPage* page);

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    CFillPage* m_pPage;
};
