#include "dialogs/CFillPropertySheet.h"

#include "dialogs/CFillGradientDlg.h"
#include "dialogs/CFillPatternDlg.h"

#include <QDialogButtonBox>
#include <QTabWidget>
#include <QVBoxLayout>

CFillPropertySheet::CFillPropertySheet(QWidget* parent) : CToolTipDialog(parent)
{
    setWindowTitle(QStringLiteral("Properties"));
    auto* layout = new QVBoxLayout(this);
    m_pTabs = new QTabWidget(this);
    layout->addWidget(m_pTabs);
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

void CFillPropertySheet::AddPage(CFillPage* page)
{
    m_pPage = page;
    m_pTabs->addTab(page, page->Caption());
    m_pTabs->setAccessibleName(page->Caption());
}

int CFillPropertySheet::DoModal()
{
    if (!m_pPage || !m_pPage->OnInitDialog())
        return QDialog::Rejected;
    return exec();
}

bool CFillPropertySheet::RunPattern(QWidget* parent, gfx::Color& color1, gfx::Color& color2, int& fillKind,
                                    int& hatchStyle)
{
    gfx::Color foreground = color1;
    gfx::Color background = color2;
    int kind = fillKind;
    int style = hatchStyle;
    CFillPropertySheet sheet(parent);
    auto* page = new CFillPatternDlg;
    page->m_pColor1 = &foreground;
    page->m_pColor2 = &background;
    page->m_pFillKind = &kind;
    page->m_pHatchStyle = &style;
    sheet.AddPage(page);
    if (sheet.DoModal() != QDialog::Accepted)
        return false;
    color1 = foreground;
    color2 = background;
    fillKind = kind;
    hatchStyle = style;
    return true;
}

bool CFillPropertySheet::RunGradient(QWidget* parent, Gradient& values)
{
    Gradient working = values;
    CFillPropertySheet sheet(parent);
    auto* page = new CFillGradientDlg;
    page->m_pGradientStyle = &working.gradientStyle;
    page->m_pColor2 = &working.color2;
    page->m_pColor1 = &working.color1;
    page->m_pFillKind = &working.fillKind;
    page->m_pShading = &working.shading;
    page->m_pColorMode = &working.colorMode;
    sheet.AddPage(page);
    if (sheet.DoModal() != QDialog::Accepted)
        return false;
    values = working;
    return true;
}
