// The background operations the panels start: a colour, hatch or picture chosen in the
// background picker, a picture chosen from the Backgrounds folder, a pattern chosen in the
// pattern page, and the hand adjustment.
// Each change of the showing label's background is one step of the history.

#include "app/CSendrillDlg.h"

#include "app/CSendrillApp.h"
#include "dialogs/CFillPropertySheet.h"
#include "document/CDrawDoc.h"
#include "panels/CSubForm2_1.h"
#include "panels/CSubForm2_2.h"
#include "undo/CPaperAction.h"
#include "view/CNetworkView.h"

#include <QFileDialog>

namespace {

constexpr std::uint32_t BackgroundLabel = 61463;

} // namespace

CPaperAction* CSendrillDlg::BeginBackgroundChange()
{
    m_pView->CloseCurrentAction();
    auto* action = new CPaperAction(m_pView, BackgroundLabel);
    m_pView->SetCurrentAction(action);
    return action;
}

void CSendrillDlg::OnBackgroundChosen(const LabelBackground& choice)
{
    CPaperAction* action = BeginBackgroundChange();
    m_pDoc->SetHatchStyle(choice.HatchStyle);
    // A colour, or a hatch's two colours.
    m_pDoc->SetBackColor(choice.BackColor);
    if (choice.HatchStyle != -1)
        m_pDoc->SetBackColor2(choice.BackColor2);
    m_pDoc->SetImageFile(choice.ImageFile);
    m_pDoc->SetWrapMode(choice.WrapMode);
    m_pDoc->SetFitMode(choice.FitMode);
    m_pView->viewport()->update();
    action->Do();
    m_pSubForm2_1->LoadFromDocument();
}

void CSendrillDlg::OnSelectBackground()
{
    QFileDialog dialog(this, QString(), m_app.m_strInstallDir + QStringLiteral("Backgrounds/"),
                       CNetworkView::PictureFilter);
    dialog.setFileMode(QFileDialog::ExistingFile);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    CPaperAction* action = BeginBackgroundChange();
    m_pDoc->SetBackgroundAdjust(0, 0, 1.0);
    m_pDoc->SetImageFile(dialog.selectedFiles().front());
    m_pDoc->SetWrapMode(4);
    m_pDoc->SetFitMode(1);
    m_pDoc->SetHatchStyle(-1);
    m_pDoc->SetBackColor(0xFFFFFF);
    m_pView->viewport()->update();
    action->Do();
    m_pSubForm2_1->LoadFromDocument();
}

void CSendrillDlg::OnBackgroundPattern()
{
    LabelBackground choice = m_pDoc->GetBackground();
    // A label without a pattern offers the first one, in its own colour on white.
    if (choice.HatchStyle == -1) {
        choice.HatchStyle = 0;
        choice.BackColor2 = 0xFFFFFF;
    }
    gfx::Color foreground = gfx::Color::FromCOLORREF(choice.BackColor);
    gfx::Color background = gfx::Color::FromCOLORREF(choice.BackColor2);
    int fillKind = 1;
    if (!CFillPropertySheet::RunPattern(this, foreground, background, fillKind, choice.HatchStyle))
        return;
    choice.BackColor = foreground.ToCOLORREF();
    choice.BackColor2 = background.ToCOLORREF();
    choice.ImageFile.clear();
    OnBackgroundChosen(choice);
}

void CSendrillDlg::OnAdjustBackground()
{
    // The step stays open while the adjust panel shows; any press in the window ends it. The
    // scale is for a picture; a pattern alone only moves.
    m_pSubForm2_2->SetScaleFlag(!m_pDoc->GetImageFile().isEmpty());
    BeginBackgroundChange();
    m_nPanelBack = 1;
}
