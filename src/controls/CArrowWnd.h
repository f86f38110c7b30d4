#pragma once

#include <QWidget>

class CArrowPicker;

// The popup of CArrowPicker: one 30-pixel cell per arrow head, three a row, showing the
// picker's images. It works as CLineWnd does, with the cells taken left to right, top to
// bottom.
class CArrowWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr int Columns = 3;
    static constexpr int CellSize = 30;

    CArrowWnd(CArrowPicker* pPicker, int nIndex);

    QRect CellRect(int nCell) const;

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
    void SetCurrent(int nCell);
    void Select(int nCell);
    void EndSelection(bool bCancelled);

    CArrowPicker* m_pPicker;
    int m_nCount;
    int m_nRows;
    int m_nMargin;
    int m_nInitial;
    int m_nIndex;
    int m_nCurrent = -1;
    bool m_bClosing = false;
};
