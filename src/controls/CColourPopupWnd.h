#pragma once

#include "platform/graphics/Color.h"

#include <QColor>
#include <QRect>
#include <QString>
#include <QWidget>

class CColourPicker;
class QPainter;

// The popup of CColourPicker: a grid of the 40 named colours, 8 a row, with the text buttons
// "Clear" and the default text above the grid and the custom and effect texts below it (each
// only when its text isn't empty). It takes the mouse and the keyboard while it is open: the
// cell under the mouse or moved to with the arrow keys is raised, the present colour's cell
// sunken; a click inside, Enter or Space ends with a choice, a click outside, Escape or the
// application losing activation cancels. It ends once and then deletes itself.
class CColourPopupWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr int ColourCount = 40;
    static constexpr int Columns = 8;
    // The cells that aren't colours.
    enum Cell { NoCell = -1, CustomCell = -2, DefaultCell = -3, EffectCell = -4, ClearCell = -5 };

    // Opens below the picker, showing crColour as the present choice.
    CColourPopupWnd(CColourPicker* pPicker, gfx::COLORREF crColour, const QString& strDefaultText,
                    const QString& strCustomText, const QString& strEffectText, const QString& strClearText);

    static gfx::COLORREF TableColour(int nIndex);
    static QString TableName(int nIndex);

    // Where a cell lies in the window, empty for a cell the popup hasn't.
    QRect CellRect(int nCell) const;
    int GetCurrentCell() const { return m_nCurrentSel; }

    // Shared with the line and arrow popups. The edge of a cell as the system draws it: raised
    // (4) for the cell under the mouse, sunken (2) for the chosen one.
    enum Edge { SunkenOuter = 2, RaisedInner = 4 };
    static void DrawEdge(QPainter& painter, const QRect& rect, int nEdge);
    // The system colours the popups paint with: 15 face, 16 shadow, 18 text, 20 highlight,
    // 22 light, taken from the widget's palette.
    static QColor GetSysColor(const QWidget* pWidget, int nIndex);
    // Puts a popup below its picker's bottom-left corner, moved left or right to stay on the
    // screen, and above the picker when there is no room below.
    static void PlaceBelow(QWidget* pPopup, const QWidget* pPicker);

signals:
    void SelChange(gfx::COLORREF crColour);
    void SelEndOK(gfx::COLORREF crColour);
    void SelEndCancel(gfx::COLORREF crColour);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mousePressEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void closeEvent(QCloseEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    void SetWindowSize();
    void FindCellFromColour();
    int HitTest(QPoint point) const;
    void ChangeSelection(int nCell);
    void EndSelection(bool bCancelled);
    void DrawCell(QPainter& painter, int nCell);
    bool HasCell(int nCell) const;

    CColourPicker* m_pPicker;
    gfx::COLORREF m_crInitialColour;
    gfx::COLORREF m_crColour;
    QString m_strDefaultText;
    QString m_strCustomText;
    QString m_strEffectText;
    QString m_strClearText;
    int m_nRows;
    int m_nBoxSize = 18;
    int m_nMargin;
    int m_nCurrentSel = NoCell;
    int m_nChosenColourSel = NoCell;
    QRect m_rectGrid;
    QRect m_rectDefault;
    QRect m_rectCustom;
    QRect m_rectEffect;
    QRect m_rectClear;
    bool m_bClosing = false;
};
