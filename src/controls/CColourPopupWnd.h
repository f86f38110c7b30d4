#pragma once

#include "controls/CPickerPopupWnd.h"
#include "platform/graphics/Color.h"

#include <QColor>
#include <QRect>
#include <QString>

class CColourPicker;
class QPainter;

// The popup of CColourPicker: a grid of the 40 named colours, 8 a row, with the text buttons
// "Clear" and the default text above the grid and the custom and effect texts below it (each
// only when its text isn't empty). The cell under the mouse or moved to with the arrow keys is
// raised, the present colour's cell sunken; it opens and ends as CPickerPopupWnd does.
class CColourPopupWnd : public CPickerPopupWnd {
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
    QRect CellRect(int nCell) const override;
    int GetCurrentCell() const { return m_nCurrentSel; }

    // Shared with the other pickers' popups. The edge of a cell as the system draws it: raised
    // (4) for the cell under the mouse, sunken (2) for the chosen one.
    enum Edge { SunkenOuter = 2, RaisedInner = 4 };
    static void DrawEdge(QPainter& painter, const QRect& rect, int nEdge);
    // The system colours the popups paint with: 15 face, 16 shadow, 18 text, 20 highlight,
    // 22 light, taken from the widget's palette.
    static QColor GetSysColor(const QWidget* pWidget, int nIndex);

signals:
    void SelChange(gfx::COLORREF crColour);
    void SelEndOK(gfx::COLORREF crColour);
    void SelEndCancel(gfx::COLORREF crColour);

protected:
    int HitTest(QPoint point) const override;
    QString CellName(int nCell) const override;
    void TrackCell(int nCell) override;
    bool MoveByKey(int nKey) override;
    void OnEndSelection(bool bCancelled) override;
    void paintEvent(QPaintEvent* pEvent) override;

private:
    void SetWindowSize();
    void FindCellFromColour();
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
};
