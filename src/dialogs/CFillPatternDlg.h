#pragma once

#include "dialogs/CFillPage.h"
#include "platform/graphics/Color.h"

class CColourPicker;
class CHatchWellWnd;
class CSampleButton;
class QLabel;

// The Pattern page: one of the 53 hatch patterns in a foreground and a background colour.
class CFillPatternDlg : public CFillPage {
    Q_OBJECT

public:
    explicit CFillPatternDlg(QWidget* parent = nullptr);

    QString Caption() const override;
    bool OnInitDialog() override;
    void DrawSample(QPainter& painter, const QRect& rect) override;

    // The caller's variables: foreground, background, fill kind, hatch style.
    gfx::Color* m_pColor1 = nullptr;
    gfx::Color* m_pColor2 = nullptr;
    int* m_pFillKind = nullptr;
    int* m_pHatchStyle = nullptr;

private:
    void OnColourChosen();
    void OnPatternChosen();
    // The variables take what the controls show.
    void WriteBack();

    CHatchWellWnd* m_pWell;
    CColourPicker* m_pForeground;
    CColourPicker* m_pBackground;
    QLabel* m_pName;
    CSampleButton* m_pSample;
};
