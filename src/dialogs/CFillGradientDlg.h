#pragma once

#include "dialogs/CFillPage.h"
#include "platform/graphics/Color.h"

#include <cstdint>

class CAutoEdit;
class CColourPicker;
class CNumSpinCtrl;
class CSampleButton;
class QLabel;
class QRadioButton;
class QScrollBar;

// The Gradient page: one colour shaded towards a grey, or two colours; a transparency at each
// end, kept in the colours' alpha; and one of six shadings, four linear and two from the
// shape's outline toward its centre.
class CFillGradientDlg : public CFillPage {
    Q_OBJECT

public:
    explicit CFillGradientDlg(QWidget* parent = nullptr);

    QString Caption() const override;
    bool OnInitDialog() override;
    void DrawSample(QPainter& painter, const QRect& rect) override;

    // The caller's variables, all of which must be set. The shading index is 0 to 3 for the
    // linear styles (Horizontal, Vertical, Diagonal up, Diagonal down), 4 From corner and
    // 5 From center; the colour mode 1 for one colour, 2 for two.
    int* m_pGradientStyle = nullptr;
    gfx::Color* m_pColor2 = nullptr;
    gfx::Color* m_pColor1 = nullptr;
    int* m_pFillKind = nullptr;
    std::uint8_t* m_pShading = nullptr;
    std::uint8_t* m_pColorMode = nullptr;

    // The transparency an edit shows for a colour's alpha: 0 for opaque, 99 for clear.
    static int TransparencyOf(gfx::Color color);
    // The alpha a transparency in per cent gives.
    static int AlphaOf(int transparency);

private:
    void OnColourMode(int mode);
    void OnShading(int index);
    // A scroll bar's value, once the user has let go of it, goes to its edit.
    void OnScrolled(QScrollBar* bar, CAutoEdit* edit);
    // The variables take what the controls show, and the sample shows them.
    void Apply();
    // The colour controls of the present kind and mode.
    void ShowColourControls();
    static int EditValue(const CAutoEdit* edit);

    QRadioButton* m_pOneColour;
    QRadioButton* m_pTwoColours;
    CColourPicker* m_pColour1;
    CColourPicker* m_pColour2;
    QScrollBar* m_pLevel;
    QLabel* m_pDark;
    QLabel* m_pLight;
    QScrollBar* m_pFromBar;
    QScrollBar* m_pToBar;
    CAutoEdit* m_pFromEdit;
    CAutoEdit* m_pToEdit;
    CNumSpinCtrl* m_pFromSpin;
    CNumSpinCtrl* m_pToSpin;
    QRadioButton* m_pShadings[6];
    CSampleButton* m_pSample;
    bool m_bLoading = false;
};
