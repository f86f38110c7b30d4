#pragma once

#include "controls/CToolTipDialog.h"

class CAutoEdit;
class CArrowPicker;
class CColourPicker;
class CDrawObj;
class CLinePicker;
class CNetworkView;
class CNumSpinCtrl;
struct DrawObjProperties;
class QCheckBox;
class QComboBox;
class QPushButton;
class QSlider;

// The panel of every object but text: shape, fill, outline, arrow heads, centring. It shows
// the selected object, or the defaults of the tool about to draw; every change the user makes
// goes to all selected objects as one step of the history and becomes the default, so what the
// panel shows is what the next new object gets.
class CLineProperty : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CLineProperty(QWidget* parent = nullptr);

    // The view whose selection the panel edits (its m_selection).
    void SetView(CNetworkView* view);
    // Shows the defaults for the tool of that argument: the shape in the low byte, and bit
    // 0x100 for a locked aspect ratio. A picture default is forgotten first.
    void LoadForTool(int toolArgument);
    // Shows the object, and makes its look the default for the next new object.
    void LoadFromObject(CDrawObj* object);
    // Writes the panel to the selected objects (texts excepted), as one step of the history,
    // and to the defaults.
    void Apply();
    // Writes the panel to the defaults for new objects.
    void StoreDefaults();

    // Arrow picker index (0 none, 1 arrow, 2 open, 3 stealth, 4 diamond, 5 oval) and the line
    // cap code objects store, both ways; what the table lacks is no arrow.
    static int ArrowCodeOfIndex(int index);
    static int ArrowIndexOfCode(int code);
    // Cap entry ("Flat End", "Round End", "Triangle End") and the dash cap objects store.
    static int CapOfIndex(int index);
    static int CapIndexOf(int cap);

private:
    void CreateControls();
    // The appearance controls from a record, as both loads share them.
    void LoadAppearance(const DrawObjProperties& source);
    // The shape controls: enabled with a shape (0 to 4) and its lock, or cleared and disabled.
    void LoadShape(int shape, bool locked);
    void ClearShape();
    // Enables the arrow and fill controls by the object's kind.
    void EnableByKind();
    // The panel's values into a record; Apply and StoreDefaults write the same fields.
    void WriteAppearance(DrawObjProperties& target) const;
    void OnCenter();
    void OnDefaults();
    void OnSliderMoved(int position);
    void OnTransparencyEdited();

    CNetworkView* m_pView = nullptr;
    int m_nToolArgument = 0;
    bool m_bArrowControls = false;
    bool m_bFillOff = false;
    // Set while the controls are being filled, when their changes are no edit of the user's.
    bool m_bLoading = false;

    QComboBox* m_pShape;
    QPushButton* m_pCenter;
    QCheckBox* m_pLockAspect;
    CColourPicker* m_pFill;
    CAutoEdit* m_pTransparency;
    CNumSpinCtrl* m_pTransparencySpin;
    QSlider* m_pTransparencySlider;
    CColourPicker* m_pBorder;
    CAutoEdit* m_pBorderSize;
    CNumSpinCtrl* m_pBorderSizeSpin;
    CLinePicker* m_pDashStyle;
    QComboBox* m_pCap;
    CArrowPicker* m_pStartArrow;
    CAutoEdit* m_pStartArrowSize;
    CNumSpinCtrl* m_pStartArrowSpin;
    CArrowPicker* m_pEndArrow;
    CAutoEdit* m_pEndArrowSize;
    CNumSpinCtrl* m_pEndArrowSpin;
    QPushButton* m_pDefaults;
};
