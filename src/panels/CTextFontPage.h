#pragma once

#include "controls/CToolTipDialog.h"

class CDrawText;
class CFontCombo;
class CNetworkView;
class QCheckBox;
class QComboBox;

// The Font page of the text panel: family, style, size, strikeout and underline. It shows the
// selected text's font, writes each change to every selected text as one step of the history,
// and keeps the font of new text.
class CTextFontPage : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CTextFontPage(QWidget* parent = nullptr);

    void SetView(CNetworkView* view) { m_pView = view; }
    void LoadFromObject(const CDrawText& text);
    void LoadDefaults();
    void Apply();
    void StoreDefaults();

    // The sizes offered: 8 to 12, the even sizes to 200, every tenth to 300, 320 and 340.
    static QList<int> SizeList();

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    enum Value { FontName = 1, FontSize = 2, FontStyle = 4 };

    void FillFonts();
    // Shows a font: the family and size selected when listed, else typed in; the style by
    // its value and bits.
    void ShowFont(const QString& name, int size, int style);
    // Reads the controls into the values.
    void UpdateData();
    // A change of the user's: the value is marked as the user's and applied.
    void OnChange(int value);
    // Typing in a combo box selects the entry that reads as typed.
    void OnEditChange(QComboBox* combo, int value);

    CFontCombo* m_pFont = nullptr;
    QComboBox* m_pStyle = nullptr;
    QComboBox* m_pSize = nullptr;
    QCheckBox* m_pStrikeout = nullptr;
    QCheckBox* m_pUnderline = nullptr;
    CNetworkView* m_pView = nullptr;

    QString m_strFontName;
    int m_nFontSize = 12;
    int m_nFontStyle = 0;
    // The values the user changed since the page was loaded: only those reach texts of a
    // selection that were not loaded into the page.
    int m_nChanged = 0;
    bool m_bReady = false;
    bool m_bLoading = false;
};
