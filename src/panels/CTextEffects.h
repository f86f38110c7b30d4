#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/graphics/Color.h"

class CAutoEdit;
class CColourPicker;
class CDrawText;
class CIntValidate;
class CNetworkView;
class CNumSpinCtrl;
class QCheckBox;
class QComboBox;
class QSlider;

// The Effects page of the text panel: the edge style with its colour, size, blur and
// transparency, and the shadow with its offset, blur and transparency. Changes reach the
// selected texts at once, as one step of the history each, and are the values of new text.
class CTextEffects : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CTextEffects(QWidget* parent = nullptr);
    ~CTextEffects() override;

    void SetView(CNetworkView* view) { m_pView = view; }
    void LoadFromObject(const CDrawText& text);
    void LoadDefaults();
    void Apply();
    void StoreDefaults();

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    enum Value {
        EdgeStyle = 1, EdgeColour = 2, EdgeSize = 4, EdgeBlur = 8, EdgeTransparency = 16, ShadowOn = 32,
        ShadowX = 64, ShadowY = 128, ShadowBlur = 256, ShadowTransparency = 512
    };

    void ShowValues(int edgeStyle, gfx::COLORREF edgeColour, int edgeSize, int edgeBlur, int edgeTransparency,
                    int shadowOn, int shadowX, int shadowY, int shadowBlur, int shadowTransparency);
    // Reads the controls into the values; false when a number is out of its range, which has
    // then been told.
    bool UpdateData();
    void OnChange(int value);

    QComboBox* m_pEdgeStyle = nullptr;
    CColourPicker* m_pEdgeColour = nullptr;
    CAutoEdit* m_pEdgeSize = nullptr;
    CNumSpinCtrl* m_pEdgeSizeSpin = nullptr;
    QSlider* m_pEdgeBlur = nullptr;
    CAutoEdit* m_pEdgeTransparency = nullptr;
    CNumSpinCtrl* m_pEdgeTransparencySpin = nullptr;
    QSlider* m_pEdgeTransparencySlider = nullptr;
    QCheckBox* m_pShadowOn = nullptr;
    QSlider* m_pShadowX = nullptr;
    QSlider* m_pShadowY = nullptr;
    QSlider* m_pShadowBlur = nullptr;
    CAutoEdit* m_pShadowTransparency = nullptr;
    CNumSpinCtrl* m_pShadowTransparencySpin = nullptr;
    QSlider* m_pShadowTransparencySlider = nullptr;
    CIntValidate* m_pIntValidate;
    CNetworkView* m_pView = nullptr;

    int m_nEdgeStyle = 0;
    gfx::COLORREF m_edgeColour = 0;
    int m_nEdgeSize = 1;
    int m_nEdgeBlur = 0;
    int m_nEdgeTransparency = 0;
    bool m_bShadowOn = false;
    int m_nShadowX = 0;
    int m_nShadowY = 0;
    int m_nShadowBlur = 0;
    int m_nShadowTransparency = 0;
    // The values the user changed since the page was loaded: only those reach texts of a
    // selection that were not loaded into the page.
    int m_nChanged = 0;
    bool m_bReady = false;
    bool m_bLoading = false;
};
