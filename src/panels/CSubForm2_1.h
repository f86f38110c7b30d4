#pragma once

#include "controls/CToolTipDialog.h"
#include "document/LabelBackground.h"
#include "platform/graphics/Color.h"

#include <QString>
#include <cstdint>

class CColourPicker;
class CNetworkView;
class QPushButton;

// The background panel of the showing label: a picture, a pattern, a colour, and the hand
// adjustment of the picture or pattern. The picture, the pattern and the adjustment are the
// window's operations, asked for by signals; the colour button's choice goes to the window as
// the new background, which makes it one step of the history.
class CSubForm2_1 : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CSubForm2_1(QWidget* parent = nullptr);

    void SetView(CNetworkView* view);
    // The colour button takes the showing label's background: after a project was opened, and
    // after each change of the background.
    void LoadFromDocument();

signals:
    // "Background Image": a picture from the Backgrounds folder.
    void selectBackgroundRequested();
    // "Background Pattern": the pattern dialog.
    void patternRequested();
    // "Adjust Background": the adjustment panel, with a step of the history opened.
    void adjustRequested();
    // The colour button's choice, as the label's new colour, pattern colours, picture and
    // placement (the offset and scale are not part of it).
    void backgroundChosen(const LabelBackground& choice);

protected:
    void showEvent(QShowEvent* event) override;
    void hideEvent(QHideEvent* event) override;
    // While the panel shows, every event of the program refreshes the adjust button, so that
    // it follows undo, redo and opened projects without being told.
    bool eventFilter(QObject* watched, QEvent* event) override;
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    void UpdateAdjustButton();
    void OnDropDown(gfx::COLORREF colour, int id);
    void OnSelEndOK(gfx::COLORREF colour, int id);
    // The picker shows the background as the panel holds it.
    void PrimePicker(gfx::COLORREF foreground, gfx::COLORREF background);

    CNetworkView* m_pView = nullptr;
    // The background's picture and pattern as the colour button holds them between its
    // opening and its choice.
    QString m_strImageFile;
    int m_nHatchStyle = -1;
    int m_nWrapMode = 4;
    std::uint8_t m_nFitMode = 1;

    QPushButton* m_pAdjust;
    CColourPicker* m_pColour;
};
