#pragma once

#include <QString>
#include <QWidget>

// What the popups of the drop-down pickers do alike. A popup opens below its picker (above it
// when there is no room below) and takes the mouse and the keyboard while it is open. The cell
// under the mouse follows it; a click inside, Enter or Space ends with a choice, and a click
// outside, Escape or the application losing activation cancels. It ends once and then deletes
// itself. The cells, their names and what a key or an ending does are the popup's own.
class CPickerPopupWnd : public QWidget {
    Q_OBJECT

public:
    // Where a cell lies in the window, empty for a cell the popup hasn't.
    virtual QRect CellRect(int nCell) const = 0;

protected:
    explicit CPickerPopupWnd(QWidget* pPicker);

    // Shows the popup, sized already, below its picker's bottom-left corner, moved left or right
    // to stay on the screen, and above the picker when there is no room below.
    void ShowBelowPicker();
    void EndSelection(bool bCancelled);

    // The cell at a point in the window, negative where there is none that is named.
    virtual int HitTest(QPoint point) const = 0;
    virtual QString CellName(int nCell) const = 0;
    // The mouse moved to nCell (negative: to no cell).
    virtual void TrackCell(int nCell) = 0;
    // An arrow key; false for a key the popup doesn't move on.
    virtual bool MoveByKey(int nKey) = 0;
    // The popup is hidden already; signals the choice, or puts back what was there before.
    virtual void OnEndSelection(bool bCancelled) = 0;

    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    QWidget* m_pPicker;
    bool m_bClosing = false;
};
