#pragma once

#include <QWidget>

class CLinePicker;

// The popup of CLinePicker: five rows, one per dash style, each a thick black line in that
// style. It takes the mouse and the keyboard while it is open; the row under the mouse is
// raised and the present one sunken. Moving over a row or to it with the arrow keys makes it
// the present one; a click inside, Enter or Space ends with it, and a click outside, Escape or
// the application losing activation puts the index from before back. It ends once and then
// deletes itself.
class CLineWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr int RowWidth = 85;
    static constexpr int RowHeight = 20;

    CLineWnd(CLinePicker* pPicker, int nIndex);

    QRect RowRect(int nRow) const;
    // The row's line, as the picker's own face draws it too.
    static void DrawLine(QPainter& painter, const QRect& rect, int nDashStyle);

signals:
    void SelChange(int nIndex);
    void SelEndOK(int nIndex);
    void SelEndCancel(int nIndex);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    int HitTest(QPoint point) const;
    void SetCurrent(int nRow);
    void Select(int nRow);
    void EndSelection(bool bCancelled);

    int m_nMargin;
    int m_nInitial;
    int m_nIndex;
    int m_nCurrent = -1;
    bool m_bClosing = false;
};
