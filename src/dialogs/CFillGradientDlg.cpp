#include "dialogs/CFillGradientDlg.h"

#include "controls/CAutoEdit.h"
#include "controls/CColourPicker.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CSampleButton.h"
#include "platform/MessageBox.h"
#include "platform/graphics/DeviceContext.h"
#include "platform/graphics/Graphics.h"
#include "platform/graphics/LinearGradientBrush.h"
#include "platform/graphics/PathGradientBrush.h"

#include <QButtonGroup>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QRadioButton>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

const char* const ShadingTexts[6] = {
    "Hori&zontal", "&Vertical", "Diagonal &up", "Diagonal &down", "&From corner", "Fro&m center",
};

QScrollBar* percentBar(QWidget* parent, int id)
{
    auto* bar = new QScrollBar(Qt::Horizontal, parent);
    SetControlId(bar, id);
    bar->setRange(0, 100);
    bar->setSingleStep(1);
    bar->setPageStep(10);
    bar->setMinimumWidth(100);
    return bar;
}

void keepPlaceWhenHidden(QWidget* widget)
{
    QSizePolicy policy = widget->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    widget->setSizePolicy(policy);
}

} // namespace

CFillGradientDlg::CFillGradientDlg(QWidget* parent) : CFillPage(parent)
{
    auto* layout = new QGridLayout(this);

    // Colours: one shaded towards a grey between Dark and Light, or two.
    auto* colours = new QGroupBox(QStringLiteral("Colors"), this);
    auto* coloursLayout = new QGridLayout(colours);
    m_pOneColour = new QRadioButton(QStringLiteral("O&ne color"), colours);
    SetControlId(m_pOneColour, 1215);
    m_pTwoColours = new QRadioButton(QStringLiteral("&Two colors"), colours);
    SetControlId(m_pTwoColours, 1216);
    auto* modes = new QButtonGroup(this);
    modes->addButton(m_pOneColour, 1);
    modes->addButton(m_pTwoColours, 2);
    connect(modes, &QButtonGroup::idClicked, this, &CFillGradientDlg::OnColourMode);
    m_pColour1 = new CColourPicker(colours);
    SetControlId(m_pColour1, 1099);
    m_pColour1->setAccessibleName(QStringLiteral("Color 1"));
    m_pColour2 = new CColourPicker(colours);
    SetControlId(m_pColour2, 1047);
    m_pColour2->setAccessibleName(QStringLiteral("Color 2"));
    connect(m_pColour1, &CColourPicker::SelEndOK, this, &CFillGradientDlg::Apply);
    connect(m_pColour2, &CColourPicker::SelEndOK, this, &CFillGradientDlg::Apply);
    m_pLevel = percentBar(colours, 1170);
    m_pLevel->setAccessibleName(QStringLiteral("Dark to light"));
    connect(m_pLevel, &QScrollBar::valueChanged, this, [this] {
        if (!m_pLevel->isSliderDown())
            Apply();
    });
    connect(m_pLevel, &QScrollBar::sliderReleased, this, &CFillGradientDlg::Apply);
    m_pDark = new QLabel(QStringLiteral("Dark"), colours);
    m_pLight = new QLabel(QStringLiteral("Light"), colours);
    m_pLight->setAlignment(Qt::AlignRight | Qt::AlignVCenter);
    for (QWidget* widget : std::initializer_list<QWidget*>{m_pColour1, m_pColour2, m_pLevel, m_pDark, m_pLight})
        keepPlaceWhenHidden(widget);
    coloursLayout->addWidget(m_pOneColour, 0, 0);
    coloursLayout->addWidget(m_pTwoColours, 1, 0);
    coloursLayout->addWidget(m_pColour1, 0, 1, 1, 2);
    coloursLayout->addWidget(m_pColour2, 1, 1, 1, 2);
    coloursLayout->addWidget(m_pLevel, 2, 1, 1, 2);
    coloursLayout->addWidget(m_pDark, 3, 1);
    coloursLayout->addWidget(m_pLight, 3, 2);
    coloursLayout->setColumnStretch(1, 1);
    coloursLayout->setColumnStretch(2, 1);
    coloursLayout->setRowStretch(4, 1);

    // Transparency at the start and at the end of the shading.
    auto* transparency = new QGroupBox(QStringLiteral("Transparency"), this);
    auto* transparencyLayout = new QGridLayout(transparency);
    const auto percentRow = [this, transparency, transparencyLayout](int row, const QString& caption, int barId,
                                                                     int editId, QScrollBar*& bar, CAutoEdit*& edit,
                                                                     CNumSpinCtrl*& spin) {
        auto* label = new QLabel(caption, transparency);
        bar = percentBar(transparency, barId);
        edit = new CAutoEdit(transparency);
        SetControlId(edit, editId);
        edit->SetAllowedChars(QStringLiteral("0123456789"));
        edit->setMaxLength(3);
        edit->SetCaption(label);
        edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("0000")) + 8);
        bar->setAccessibleName(label->text().remove(QLatin1Char('&')));
        spin = new CNumSpinCtrl(transparency);
        spin->setAccessibleName(bar->accessibleName());
        spin->SetBuddy(edit);
        spin->SetDecimals(0);
        transparencyLayout->addWidget(label, row, 0);
        transparencyLayout->addWidget(bar, row, 1);
        transparencyLayout->addWidget(edit, row, 2);
        transparencyLayout->addWidget(spin, row, 3);
        QScrollBar* const scroll = bar;
        CAutoEdit* const buddy = edit;
        connect(bar, &QScrollBar::valueChanged, this, [this, scroll, buddy] {
            if (!scroll->isSliderDown())
                OnScrolled(scroll, buddy);
        });
        connect(bar, &QScrollBar::sliderReleased, this, [this, scroll, buddy] { OnScrolled(scroll, buddy); });
        connect(edit, &QLineEdit::textChanged, this, [this, scroll, buddy] {
            if (m_bLoading)
                return;
            const QSignalBlocker blocker(scroll);
            scroll->setValue(EditValue(buddy));
            Apply();
        });
    };
    percentRow(0, QStringLiteral("F&rom:"), 1167, 1139, m_pFromBar, m_pFromEdit, m_pFromSpin);
    percentRow(1, QStringLiteral("T&o:"), 1169, 1138, m_pToBar, m_pToEdit, m_pToSpin);
    transparencyLayout->setColumnStretch(1, 1);

    // The shadings.
    auto* shadings = new QGroupBox(QStringLiteral("Shading styles"), this);
    auto* shadingsLayout = new QVBoxLayout(shadings);
    auto* shadingGroup = new QButtonGroup(this);
    for (int index = 0; index < 6; ++index) {
        m_pShadings[index] = new QRadioButton(QString::fromLatin1(ShadingTexts[index]), shadings);
        SetControlId(m_pShadings[index], 1217 + index);
        shadingGroup->addButton(m_pShadings[index], index);
        shadingsLayout->addWidget(m_pShadings[index]);
    }
    connect(shadingGroup, &QButtonGroup::idClicked, this, &CFillGradientDlg::OnShading);

    m_pSample = new CSampleButton(this);
    m_pSample->setMinimumSize(120, 90);

    layout->addWidget(colours, 0, 0);
    layout->addWidget(transparency, 1, 0);
    layout->addWidget(shadings, 0, 1);
    layout->addWidget(m_pSample, 1, 1);
    layout->setColumnStretch(0, 1);
}

QString CFillGradientDlg::Caption() const
{
    return QStringLiteral("Gradient");
}

int CFillGradientDlg::TransparencyOf(gfx::Color color)
{
    return 99 - (color.GetA() * 100 >> 8);
}

int CFillGradientDlg::AlphaOf(int transparency)
{
    return (100 - transparency) * 255 / 100;
}

int CFillGradientDlg::EditValue(const CAutoEdit* edit)
{
    return std::clamp(edit->text().toInt(), 0, 100);
}

bool CFillGradientDlg::OnInitDialog()
{
    if (!m_pGradientStyle || !m_pColor2 || !m_pColor1 || !m_pFillKind || !m_pShading || !m_pColorMode) {
        MessageBox::Show(QStringLiteral("Invalid pointers in CFillPattern"));
        return false;
    }
    m_bLoading = true;
    m_pColour1->SetColour(m_pColor1->ToCOLORREF());
    m_pColour2->SetColour(m_pColor2->ToCOLORREF());
    m_pLevel->setValue((m_pColor2->GetR() * 100 + 127) / 255);
    const int from = TransparencyOf(*m_pColor1);
    const int to = TransparencyOf(*m_pColor2);
    m_pFromSpin->SetRangeAndDelta(0, 100, 1);
    m_pToSpin->SetRangeAndDelta(0, 100, 1);
    m_pFromSpin->SetValue(from);
    m_pToSpin->SetValue(to);
    m_pFromBar->setValue(from);
    m_pToBar->setValue(to);
    if (*m_pShading < 6)
        m_pShadings[*m_pShading]->setChecked(true);
    m_bLoading = false;
    ShowColourControls();
    return true;
}

void CFillGradientDlg::ShowColourControls()
{
    const bool gradient = *m_pFillKind == 3 || *m_pFillKind == 4;
    const bool one = gradient && *m_pColorMode == 1;
    const bool two = gradient && *m_pColorMode == 2;
    m_pColour1->setVisible(gradient);
    m_pColour2->setVisible(two);
    m_pLevel->setVisible(one);
    m_pDark->setVisible(one);
    m_pLight->setVisible(one);
    if (one)
        m_pOneColour->setChecked(true);
    if (two)
        m_pTwoColours->setChecked(true);
}

void CFillGradientDlg::OnColourMode(int mode)
{
    *m_pColorMode = std::uint8_t(mode);
    Apply();
}

void CFillGradientDlg::OnShading(int index)
{
    *m_pShading = std::uint8_t(index);
    Apply();
}

void CFillGradientDlg::OnScrolled(QScrollBar* bar, CAutoEdit* edit)
{
    if (m_bLoading)
        return;
    // The edit's change applies the value.
    edit->setText(QString::number(bar->value()));
}

void CFillGradientDlg::Apply()
{
    if (m_bLoading)
        return;
    const int shading = *m_pShading;
    *m_pFillKind = shading >= 4 ? 3 : 4;
    if (shading < 4)
        *m_pGradientStyle = shading;
    *m_pColor1 = gfx::Color::FromCOLORREF(m_pColour1->GetColour(), AlphaOf(EditValue(m_pFromEdit)));
    const int alpha2 = AlphaOf(EditValue(m_pToEdit));
    if (*m_pColorMode == 1) {
        const int level = m_pLevel->value() * 255 / 100;
        *m_pColor2 = gfx::Color(alpha2, level, level, level);
    } else {
        *m_pColor2 = gfx::Color::FromCOLORREF(m_pColour2->GetColour(), alpha2);
    }
    ShowColourControls();
    m_pSample->update();
}

void CFillGradientDlg::DrawSample(QPainter& painter, const QRect& rect)
{
    const int shading = *m_pShading;
    const QRectF sample(rect);
    gfx::DeviceContext dc(painter, logicalDpiX(), logicalDpiY(), false);
    gfx::Graphics graphics(dc);

    // The sample shows the colours in the page's order; the label exchanges them for some
    // linear styles.
    gfx::GraphicsPath path;
    path.AddRectangle(sample);
    gfx::PathGradientBrush pathBrush(path);
    pathBrush.SetCenterColor(shading == 4 ? *m_pColor1 : *m_pColor2);
    const gfx::Color surround = shading == 4 ? *m_pColor2 : *m_pColor1;
    int count = 1;
    pathBrush.SetSurroundColors(&surround, &count);
    pathBrush.SetGammaCorrection(false);
    gfx::LinearGradientBrush linearBrush(sample, *m_pColor2, *m_pColor1,
                                         gfx::LinearGradientMode(shading < 4 ? shading : 0));
    linearBrush.SetGammaCorrection(false);

    if (*m_pFillKind == 3)
        graphics.FillRectangle(pathBrush, sample);
    else if (*m_pFillKind == 4)
        graphics.FillRectangle(linearBrush, sample);
}
