#pragma once

#include "controls/CToolTipDialog.h"

#include <functional>

class CDrawText;
class CMyTabCtrl;
class CNetworkView;
class CTextEffects;
class CTextFontPage;
class CTextFormatPage;
class QShowEvent;

// The panel that shows for text: the pages Format, Font and Effects on a tab control. All three
// show the selected text (or the values of new text) together; each writes its changes to the
// selected texts as one step of the history and keeps them as the values of the next new text.
class CTextForm : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CTextForm(QWidget* parent = nullptr);
    ~CTextForm() override;

    // The view whose selection the pages change.
    void SetView(CNetworkView* view);
    // The values of new text, in all three pages.
    void LoadDefaults();
    // The text's values, in all three pages; they become the values of new text.
    void LoadFromObject(CDrawText* text);

    CMyTabCtrl* TabCtrl() const { return m_pTab; }
    CTextFormatPage* FormatPage() const { return m_pFormat; }
    CTextFontPage* FontPage() const { return m_pFont; }
    CTextEffects* EffectsPage() const { return m_pEffects; }

    // Runs the change on every selected text, as one step of the history that also covers the
    // other selected objects, which it leaves alone. Nothing happens without a selection.
    static void EditSelectedTexts(CNetworkView* view, const std::function<void(CDrawText&)>& change);

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}
    // The panel comes back on its first page.
    void showEvent(QShowEvent* event) override;

private:
    CMyTabCtrl* m_pTab;
    CTextFormatPage* m_pFormat;
    CTextFontPage* m_pFont;
    CTextEffects* m_pEffects;
};
