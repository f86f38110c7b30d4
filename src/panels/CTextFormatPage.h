#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/graphics/Color.h"

class CAutoEdit;
class CColourPicker;
class CDrawText;
class CNetworkView;
class CNumSpinCtrl;
class CRealValidate;
class CIntValidate;
class QCheckBox;
class QComboBox;
class QPlainTextEdit;
class QPushButton;
class QSlider;

// The Format page of the text panel: the text itself with its data fields, its colour, path,
// justification, rotation, tracking, leading and transparency. Every change, each keystroke in
// the text included, is written to the selected texts at once as one step of the history, so
// the label shows the text as it is typed; the values are also those of new text.
class CTextFormatPage : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CTextFormatPage(QWidget* parent = nullptr);
    ~CTextFormatPage() override;

    void SetView(CNetworkView* view) { m_pView = view; }
    void LoadFromObject(const CDrawText& text);
    void LoadDefaults();
    void Apply();
    void StoreDefaults();
    // Shows the angle a handle turned the text to, without writing it anywhere: the turn is
    // already the text's, and its own step of the history.
    void ShowAngle(const QString& angle);

    QPlainTextEdit* TextEdit() const { return m_pText; }

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    // The values of the page, each a bit of m_nChanged.
    enum Value {
        Text = 1, PathStyle = 2, LockAspect = 4, Justify = 8, Colour = 16, Transparency = 32, Rotation = 64,
        Tracking = 128, Leading = 256
    };

    // Shows the values; `load` then reads them back as the page's data.
    void ShowValues(const QString& text, int pathKind, int justify, gfx::COLORREF colour, int transparency,
                    float angle, int tracking, int leading);
    // Refills the justify box for a path style: Left, Center, Right or, for spirals, Top, Bottom.
    void FillJustify(int pathStyle);
    // Reads the controls into the values; false when a number is out of its range, which has
    // then been told.
    bool UpdateData();
    void OnChange(int value);
    void OnPathChange();
    void OnCenter();
    void OnInsertDataField();
    void OnDataFieldList();
    void OnTransparencySlider(int position);

    QPlainTextEdit* m_pText = nullptr;
    CColourPicker* m_pColour = nullptr;
    QComboBox* m_pPath = nullptr;
    QComboBox* m_pJustify = nullptr;
    QPushButton* m_pCenter = nullptr;
    QCheckBox* m_pLockAspect = nullptr;
    CAutoEdit* m_pRotation = nullptr;
    CNumSpinCtrl* m_pRotationSpin = nullptr;
    CAutoEdit* m_pTracking = nullptr;
    CNumSpinCtrl* m_pTrackingSpin = nullptr;
    CAutoEdit* m_pLeading = nullptr;
    CNumSpinCtrl* m_pLeadingSpin = nullptr;
    CAutoEdit* m_pTransparency = nullptr;
    CNumSpinCtrl* m_pTransparencySpin = nullptr;
    QSlider* m_pTransparencySlider = nullptr;
    CRealValidate* m_pRealValidate;
    CIntValidate* m_pIntValidate;
    CNetworkView* m_pView = nullptr;

    QString m_strText;
    int m_nPathStyle = 0;
    bool m_bLockAspect = false;
    int m_nJustify = 1;
    gfx::COLORREF m_colour = 0;
    int m_nTransparency = 0;
    float m_fAngle = 90;
    int m_nTracking = 0;
    int m_nLeading = 0;
    // The values the user changed since the page was loaded: only those reach texts of a
    // selection that were not loaded into the page.
    int m_nChanged = 0;
    // Set by a change of path style or by "Center", until the next Apply.
    bool m_bPathChanged = false;
    bool m_bCenterRequested = false;
    bool m_bReady = false;
    bool m_bLoading = false;
};
