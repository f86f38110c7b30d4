#pragma once

#include "controls/CToolTipDialog.h"

#include <memory>

class CAutoEdit;
class CIntValidate;
class CNetworkView;
class CNumSpinCtrl;
class CRealValidate;
class CSeekButton;
class CSeekEdit;
class QSlider;

// The hand adjustment of the showing label's background: its offset, typed or stepped with the
// four arrow buttons, and, for a picture, its scale, typed, stepped or slid. The window opens
// one step of the history before the panel shows; the changes made here join it, and "Finish"
// (or any press elsewhere, which the window handles) records it.
class CSubForm2_2 : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CSubForm2_2(QWidget* parent = nullptr);
    ~CSubForm2_2() override;

    void SetView(CNetworkView* view);
    // Whether the scale can be changed: set by the window as it opens the adjustment, true
    // when the label has a picture, false for a pattern alone. Applied when the panel shows.
    void SetScaleFlag(bool scale) { m_bScale = scale; }

signals:
    // "Finish" has recorded the adjustment; the window leaves the adjusting state.
    void finished();

protected:
    void showEvent(QShowEvent* event) override;
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    // The label's offset and scale into the controls, as the panel shows.
    void LoadFromDocument();
    void OnPositionChanged();
    void OnScaleChanged();
    void OnSliderAction(int action);
    void OnFinish();
    void SetAdjust(int x, int y, double scale);

    CNetworkView* m_pView = nullptr;
    bool m_bScale = false;
    // The values the seek buttons step.
    int m_nX = 0;
    int m_nY = 0;
    std::unique_ptr<CIntValidate> m_pXValidator;
    std::unique_ptr<CIntValidate> m_pYValidator;
    std::unique_ptr<CRealValidate> m_pScaleValidator;
    CSeekEdit* m_pX;
    CSeekEdit* m_pY;
    CAutoEdit* m_pScale;
    CNumSpinCtrl* m_pScaleSpin;
    QSlider* m_pScaleSlider;
};
