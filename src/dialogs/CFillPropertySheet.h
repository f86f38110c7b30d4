#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/graphics/Color.h"

#include <cstdint>

class CFillPage;
class QTabWidget;

// The plain "Properties" sheet that holds a single fill page under its tab, with OK and
// Cancel. The page works on the caller's variables; the Run functions give it copies and hand
// them back only on OK, so Cancel changes nothing.
class CFillPropertySheet : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CFillPropertySheet(QWidget* parent = nullptr);

    // Takes the page, whose pointers are set, as the sheet's one page.
    void AddPage(CFillPage* page);
    // Opens the sheet modally. Rejected at once, without showing, when the page can't start.
    int DoModal();

    CFillPage* Page() const { return m_pPage; }

    // The pattern page on two colours (foreground and background), a fill kind and a hatch
    // style. True on OK, with the values as chosen.
    static bool RunPattern(QWidget* parent, gfx::Color& color1, gfx::Color& color2, int& fillKind, int& hatchStyle);

    // The values of the gradient page: the shading index (0 to 3 the linear styles Horizontal,
    // Vertical, Diagonal up, Diagonal down; 4 From corner, 5 From center) and the colour mode
    // (1 one colour shaded to a grey, 2 two colours) are the page's own.
    struct Gradient {
        gfx::Color color1;
        gfx::Color color2;
        int fillKind = 0;
        int gradientStyle = 0;
        std::uint8_t shading = 0;
        std::uint8_t colorMode = 1;
    };
    // The gradient page on the values. True on OK, with the values as chosen.
    static bool RunGradient(QWidget* parent, Gradient& values);

private:
    QTabWidget* m_pTabs;
    CFillPage* m_pPage = nullptr;
};
