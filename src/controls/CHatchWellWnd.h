#pragma once

#include "platform/graphics/Color.h"

#include <QString>
#include <QWidget>

// The grid of the 53 hatch patterns on the pattern page: 9 columns of 30-pixel cells, each
// filled with the very hatch brush the label is drawn with, in the page's two colours. The
// cell under the mouse (or moved to with the arrow keys) is raised, the chosen one sunken; a
// click, Enter or Space chooses, Escape goes back to the pattern chosen before.
class CHatchWellWnd : public QWidget {
    Q_OBJECT

public:
    static constexpr int Columns = 9;
    static constexpr int CellSize = 30;

    explicit CHatchWellWnd(QWidget* pParent = nullptr);

    // The chosen pattern, a hatch style 0..52, or -1 for none.
    int GetHatchStyle() const { return m_nChosen; }
    void SetHatchStyle(int nStyle);
    // The colours the cells are drawn in; blue on green until the page sets them.
    void SetColours(gfx::Color foreground, gfx::Color background);
    gfx::Color GetForeground() const { return m_foreground; }
    gfx::Color GetBackground() const { return m_background; }

    // The name the program gives a hatch style, with "No" after the last; empty past that.
    static QString HatchName(int nStyle);
    // Where a style's cell lies in the widget.
    QRect CellRect(int nStyle) const;

    QSize sizeHint() const override;

signals:
    // A pattern was chosen.
    void SelEndOK(int nStyle);
    // Escape: the pattern chosen before stays.
    void SelEndCancel(int nStyle);

protected:
    void paintEvent(QPaintEvent* pEvent) override;
    void mouseMoveEvent(QMouseEvent* pEvent) override;
    void mouseReleaseEvent(QMouseEvent* pEvent) override;
    void keyPressEvent(QKeyEvent* pEvent) override;
    void leaveEvent(QEvent* pEvent) override;
    bool event(QEvent* pEvent) override;

private:
    int HitTest(QPoint point) const;
    void SetCurrent(int nStyle);
    void Choose(int nStyle);

    int m_nMargin;
    int m_nCurrent = -1;
    int m_nChosen = 0;
    gfx::Color m_foreground{0, 0, 255};
    gfx::Color m_background{0, 255, 0};
};
