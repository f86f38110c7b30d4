#pragma once

#include <QRect>
#include <vector>

class QWidget;

// A stack of panels that take turns in one place holder of the main window: at most one shows,
// at the top of the place holder and centred across it.
class CPanelStack {
public:
    // Remembers the parent and the place holder and appends the page, made a child of the
    // parent and hidden. False for a null page.
    bool AddPage(int dialogId, QWidget* parent, QWidget* placeHolder, QWidget* page);
    // Shows a page (-1 hides the one showing). False for an index beyond the last page, and
    // for the page that shows already, which is left as it is: calling it costs a comparison.
    bool Show(int index);
    int Current() const { return m_nCurrent; }
    QWidget* Page(int index) const;
    // Puts the showing page at the top of the place holder, centred, when the holder moved.
    void Layout();

private:
    std::vector<QWidget*> m_pages;
    int m_nCurrent = -1;
    QWidget* m_pParent = nullptr;
    QWidget* m_pPlaceHolder = nullptr;
    QRect m_holderRect;
};
