#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/graphics/Color.h"

#include <QString>
#include <cstdint>

class CColourPicker;
class CFillGradientDlg;
class CFillPatternDlg;
class CFillPictureDlg;
class CMyTabCtrl;

// The fill dialog of the colour pickers' "Picture/Gradient/Pattern" button: the gradient,
// pattern and picture pages under tabs, working on the dialog's own copy of a fill. The caller
// sets the copy and the page mask, runs DoModal, and takes the copy back on OK.
class CEffectDlg : public CToolTipDialog {
    Q_OBJECT

public:
    enum PageBits { GradientPage = 1, PatternPage = 2, PicturePage = 4 };

    explicit CEffectDlg(QWidget* parent = nullptr);

    // Builds the pages the mask asks for and opens the dialog modally. Rejected at once when a
    // page can't start.
    int DoModal();

    int m_nPageMask = GradientPage | PatternPage | PicturePage;

    // The pickers' effect button: the pages of the mask on the picker's fill, which takes the
    // choice on OK. True on OK.
    static bool RunForPicker(CColourPicker& picker, int pageMask);

    // The fill, with the meaning of the objects' appearance fields.
    gfx::Color m_color1{255, 255, 255};
    gfx::Color m_color2{0, 0, 0};
    int m_fillKind = 0;
    int m_gradientStyle = 2;
    int m_hatchStyle = 0;
    int m_wrapMode = 4;
    std::uint8_t m_gradientSwap = 0;
    std::uint8_t m_pictureScale = 1;
    QString m_pictureFile;

    CFillGradientDlg* GradientPageWidget() const { return m_pGradientPage; }
    CFillPatternDlg* PatternPageWidget() const { return m_pPatternPage; }
    CFillPictureDlg* PicturePageWidget() const { return m_pPicturePage; }

protected:
    void accept() override;

private:
    bool OnInitDialog();

    CMyTabCtrl* m_pTabs;
    CFillGradientDlg* m_pGradientPage = nullptr;
    CFillPatternDlg* m_pPatternPage = nullptr;
    CFillPictureDlg* m_pPicturePage = nullptr;
    // The gradient page's own values, derived from the fill.
    std::uint8_t m_shading = 0;
    std::uint8_t m_colorMode = 1;
};
