#include "panels/CTextEffects.h"

#include "controls/CAutoEdit.h"
#include "controls/CColourPicker.h"
#include "controls/CIntValidate.h"
#include "controls/CNumSpinCtrl.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "panels/CTextForm.h"
#include "platform/MessageBox.h"
#include "platform/NumberText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QSlider>
#include <QVBoxLayout>

namespace {

const char* const EdgeStyles[] = {"Normal", "Outline", "Embossed", "Chiseled", "Glowing", "Neon"};

QSlider* Slider(QWidget* parent, int id, int minimum, int maximum)
{
    auto* slider = new QSlider(Qt::Horizontal, parent);
    SetControlId(slider, id);
    slider->setRange(minimum, maximum);
    slider->setSingleStep(10);
    slider->setPageStep((maximum - minimum) / 5);
    return slider;
}

// A value the user typed, read as a whole number within its range; outside it the user is
// told, as a dialog's data exchange does.
bool ReadRange(CAutoEdit* edit, int& value)
{
    const int typed = NumberText::ToInt(edit->text());
    if (typed < 0 || typed > 100) {
        MessageBox::Show(QStringLiteral("Please enter an integer between 0 and 100."), MessageBox::IconWarning);
        edit->setFocus();
        edit->selectAll();
        return false;
    }
    value = typed;
    return true;
}

} // namespace

CTextEffects::CTextEffects(QWidget* parent) : CToolTipDialog(parent), m_pIntValidate(new CIntValidate)
{
    setWindowFlags(Qt::Widget);
    auto* layout = new QVBoxLayout(this);
    layout->setContentsMargins(2, 4, 2, 4);

    auto* edge = new QGroupBox(QStringLiteral("Edge"), this);
    auto* edgeGrid = new QGridLayout(edge);
    edgeGrid->setContentsMargins(4, 4, 4, 4);
    edgeGrid->setHorizontalSpacing(4);
    auto* shadow = new QGroupBox(QStringLiteral("Shadow"), this);
    auto* shadowGrid = new QGridLayout(shadow);
    shadowGrid->setContentsMargins(4, 4, 4, 4);
    shadowGrid->setHorizontalSpacing(4);
    layout->addWidget(edge);
    layout->addWidget(shadow);
    layout->addStretch(1);

    const auto row = [this](QGridLayout* grid, const QString& text, QWidget* control, QLayout* pair = nullptr) {
        auto* label = new QLabel(text, this);
        label->setBuddy(control);
        if (control->accessibleName().isEmpty())
            control->setAccessibleName(QString(text).remove(QLatin1Char('&')).remove(QLatin1Char(':')));
        const int r = grid->rowCount();
        grid->addWidget(label, r, 0);
        if (pair)
            grid->addLayout(pair, r, 1);
        else
            grid->addWidget(control, r, 1);
    };
    const auto withSpin = [](CAutoEdit* edit, CNumSpinCtrl* spin) {
        // Three digits need little room; the panel column is narrow.
        edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("00000")));
        spin->setAccessibleName(edit->accessibleName());
        auto* pair = new QHBoxLayout;
        pair->setSpacing(0);
        pair->addWidget(edit);
        pair->addWidget(spin);
        return pair;
    };

    m_pEdgeStyle = new QComboBox(edge);
    SetControlId(m_pEdgeStyle, 1072);
    for (const char* style : EdgeStyles)
        m_pEdgeStyle->addItem(QString::fromLatin1(style));
    // The narrow panel column sets the box's width; its list opens as wide as it needs.
    m_pEdgeStyle->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    m_pEdgeStyle->setMinimumContentsLength(3);
    row(edgeGrid, QStringLiteral("St&yle:"), m_pEdgeStyle);
    m_pEdgeColour = new CColourPicker(edge);
    SetControlId(m_pEdgeColour, 1012);
    m_pEdgeColour->setAccessibleName(QStringLiteral("Edge Color"));
    row(edgeGrid, QStringLiteral("Color:"), m_pEdgeColour);
    m_pEdgeSize = new CAutoEdit(edge);
    SetControlId(m_pEdgeSize, 1049);
    m_pEdgeSize->SetAllowedChars(QStringLiteral("0123456789"));
    m_pEdgeSize->SetValidator(m_pIntValidate);
    m_pEdgeSize->setAccessibleName(QStringLiteral("Edge Size"));
    m_pEdgeSizeSpin = new CNumSpinCtrl(edge);
    m_pEdgeSizeSpin->SetBuddy(m_pEdgeSize);
    m_pEdgeSizeSpin->SetDecimals(0);
    m_pEdgeSizeSpin->SetRangeAndDelta(0, 100, 1);
    row(edgeGrid, QStringLiteral("Si&ze:"), m_pEdgeSize, withSpin(m_pEdgeSize, m_pEdgeSizeSpin));
    m_pEdgeBlur = Slider(edge, 1112, 0, 255);
    m_pEdgeBlur->setAccessibleName(QStringLiteral("Edge Blur"));
    row(edgeGrid, QStringLiteral("Blur:"), m_pEdgeBlur);
    m_pEdgeTransparency = new CAutoEdit(edge);
    SetControlId(m_pEdgeTransparency, 1118);
    m_pEdgeTransparency->setAccessibleName(QStringLiteral("Edge Transparency"));
    m_pEdgeTransparencySpin = new CNumSpinCtrl(edge);
    m_pEdgeTransparencySlider = Slider(edge, 1113, 0, 100);
    m_pEdgeTransparencySlider->setAccessibleName(QStringLiteral("Edge Transparency"));
    row(edgeGrid, QStringLiteral("Transparency:"), m_pEdgeTransparency,
        withSpin(m_pEdgeTransparency, m_pEdgeTransparencySpin));
    edgeGrid->addWidget(m_pEdgeTransparencySlider, edgeGrid->rowCount(), 0, 1, 2);

    m_pShadowOn = new QCheckBox(QStringLiteral("Enable"), shadow);
    SetControlId(m_pShadowOn, 1114);
    m_pShadowOn->setAccessibleName(QStringLiteral("Shadow Enable"));
    shadowGrid->addWidget(m_pShadowOn, 0, 0, 1, 2);
    m_pShadowX = Slider(shadow, 1109, -127, 128);
    m_pShadowX->setAccessibleName(QStringLiteral("Shadow X Position"));
    row(shadowGrid, QStringLiteral("X:"), m_pShadowX);
    m_pShadowY = Slider(shadow, 1110, -127, 128);
    m_pShadowY->setAccessibleName(QStringLiteral("Shadow Y Position"));
    row(shadowGrid, QStringLiteral("Y:"), m_pShadowY);
    m_pShadowBlur = Slider(shadow, 1108, 0, 255);
    m_pShadowBlur->setAccessibleName(QStringLiteral("Shadow Blur"));
    row(shadowGrid, QStringLiteral("Blur:"), m_pShadowBlur);
    m_pShadowTransparency = new CAutoEdit(shadow);
    SetControlId(m_pShadowTransparency, 1082);
    m_pShadowTransparency->setAccessibleName(QStringLiteral("Shadow Transparency"));
    m_pShadowTransparencySpin = new CNumSpinCtrl(shadow);
    m_pShadowTransparencySlider = Slider(shadow, 1111, 0, 100);
    m_pShadowTransparencySlider->setAccessibleName(QStringLiteral("Shadow Transparency"));
    row(shadowGrid, QStringLiteral("Transparency:"), m_pShadowTransparency,
        withSpin(m_pShadowTransparency, m_pShadowTransparencySpin));
    shadowGrid->addWidget(m_pShadowTransparencySlider, shadowGrid->rowCount(), 0, 1, 2);

    // Each transparency has an edit, its spin and a slider that writes "%d" into the edit; the
    // edit's change applies the value.
    const auto transparency = [this](CAutoEdit* edit, CNumSpinCtrl* spin, QSlider* slider, int value) {
        edit->SetAllowedChars(QStringLiteral("0123456789"));
        edit->SetValidator(m_pIntValidate);
        spin->SetBuddy(edit);
        spin->SetDecimals(0);
        spin->SetRangeAndDelta(0, 100, 1);
        connect(slider, &QSlider::valueChanged, this, [this, edit](int position) {
            if (!m_bLoading)
                edit->setText(QString::asprintf("%d", position));
        });
        connect(edit, &QLineEdit::textChanged, this, [this, edit, slider, value] {
            const int typed = NumberText::ToInt(edit->text());
            if (!m_bLoading && typed >= 0 && typed <= 100) {
                const QSignalBlocker blocker(slider);
                slider->setValue(typed);
            }
            OnChange(value);
        });
    };
    transparency(m_pEdgeTransparency, m_pEdgeTransparencySpin, m_pEdgeTransparencySlider, EdgeTransparency);
    transparency(m_pShadowTransparency, m_pShadowTransparencySpin, m_pShadowTransparencySlider, ShadowTransparency);

    connect(m_pEdgeStyle, &QComboBox::activated, this, [this] { OnChange(EdgeStyle); });
    connect(m_pEdgeColour, &CColourPicker::SelEndOK, this, [this] { OnChange(EdgeColour); });
    connect(m_pEdgeSize, &QLineEdit::textChanged, this, [this] { OnChange(EdgeSize); });
    connect(m_pShadowOn, &QCheckBox::clicked, this, [this] { OnChange(ShadowOn); });
    for (auto [slider, value] : {std::pair{m_pEdgeBlur, EdgeBlur}, std::pair{m_pShadowX, ShadowX},
                                 std::pair{m_pShadowY, ShadowY}, std::pair{m_pShadowBlur, ShadowBlur}}) {
        const int changed = value;
        connect(slider, &QSlider::valueChanged, this, [this, changed] { OnChange(changed); });
    }

    m_bReady = true;
}

CTextEffects::~CTextEffects()
{
    delete m_pIntValidate;
}

void CTextEffects::ShowValues(int edgeStyle, gfx::COLORREF edgeColour, int edgeSize, int edgeBlur,
                              int edgeTransparency, int shadowOn, int shadowX, int shadowY, int shadowBlur,
                              int shadowTransparency)
{
    m_bLoading = true;
    m_pEdgeStyle->setCurrentIndex(edgeStyle >= 0 && edgeStyle < m_pEdgeStyle->count() ? edgeStyle : -1);
    m_pEdgeColour->SetColour(edgeColour);
    m_pEdgeSizeSpin->SetValue(edgeSize);
    m_pEdgeBlur->setValue(edgeBlur);
    m_pEdgeTransparencySpin->SetValue(edgeTransparency);
    m_pEdgeTransparencySlider->setValue(edgeTransparency);
    m_pShadowOn->setChecked(shadowOn != 0);
    m_pShadowX->setValue(shadowX);
    m_pShadowY->setValue(shadowY);
    m_pShadowBlur->setValue(shadowBlur);
    m_pShadowTransparencySpin->SetValue(shadowTransparency);
    m_pShadowTransparencySlider->setValue(shadowTransparency);
    m_bLoading = false;

    m_nEdgeStyle = edgeStyle;
    m_edgeColour = edgeColour;
    m_nEdgeSize = edgeSize;
    m_nEdgeBlur = edgeBlur;
    m_nEdgeTransparency = edgeTransparency;
    m_bShadowOn = shadowOn != 0;
    m_nShadowX = shadowX;
    m_nShadowY = shadowY;
    m_nShadowBlur = shadowBlur;
    m_nShadowTransparency = shadowTransparency;
    m_nChanged = 0;
}

void CTextEffects::LoadFromObject(const CDrawText& t)
{
    ShowValues(t.m_textStyle, t.m_edgeColor.ToCOLORREF(), t.m_edgeSize, t.m_edgeBlur, t.m_edgeTransparency,
               t.m_shadowOn, t.m_shadowX, t.m_shadowY, t.m_shadowBlur, t.m_shadowTransparency);
    StoreDefaults();
}

void CTextEffects::LoadDefaults()
{
    const DefaultProperties& d = g_defaultProperties;
    ShowValues(d.m_textStyle, d.m_edgeColor.ToCOLORREF(), d.m_edgeSize, d.m_edgeBlur, d.m_edgeTransparency,
               d.m_shadowOn, d.m_shadowX, d.m_shadowY, d.m_shadowBlur, d.m_shadowTransparency);
}

bool CTextEffects::UpdateData()
{
    int edgeSize = 0, edgeTransparency = 0, shadowTransparency = 0;
    if (!ReadRange(m_pEdgeSize, edgeSize) || !ReadRange(m_pEdgeTransparency, edgeTransparency)
        || !ReadRange(m_pShadowTransparency, shadowTransparency))
        return false;
    m_nEdgeSize = edgeSize;
    m_nEdgeTransparency = edgeTransparency;
    m_nShadowTransparency = shadowTransparency;
    if (m_pEdgeStyle->currentIndex() >= 0)
        m_nEdgeStyle = m_pEdgeStyle->currentIndex();
    m_edgeColour = m_pEdgeColour->GetColour();
    m_nEdgeBlur = m_pEdgeBlur->value();
    m_bShadowOn = m_pShadowOn->isChecked();
    m_nShadowX = m_pShadowX->value();
    m_nShadowY = m_pShadowY->value();
    m_nShadowBlur = m_pShadowBlur->value();
    return true;
}

void CTextEffects::OnChange(int value)
{
    if (m_bLoading)
        return;
    m_nChanged |= value;
    Apply();
}

void CTextEffects::Apply()
{
    if (!m_bReady || m_bLoading || !UpdateData())
        return;
    CTextForm::EditSelectedTexts(m_pView, [this](CDrawText& t) {
        const auto pick = [this](int value, auto mine, auto theirs) {
            return m_nChanged & value ? decltype(theirs)(mine) : theirs;
        };
        t.SetEffects(pick(EdgeColour, gfx::Color::FromCOLORREF(m_edgeColour), t.m_edgeColor),
                     pick(EdgeStyle, m_nEdgeStyle, t.m_textStyle), pick(EdgeSize, m_nEdgeSize, t.m_edgeSize),
                     pick(EdgeBlur, m_nEdgeBlur, t.m_edgeBlur),
                     pick(EdgeTransparency, m_nEdgeTransparency, t.m_edgeTransparency),
                     pick(ShadowOn, int(m_bShadowOn), t.m_shadowOn), pick(ShadowX, m_nShadowX, t.m_shadowX),
                     pick(ShadowY, m_nShadowY, t.m_shadowY), pick(ShadowBlur, m_nShadowBlur, t.m_shadowBlur),
                     pick(ShadowTransparency, m_nShadowTransparency, t.m_shadowTransparency));
    });
    StoreDefaults();
}

void CTextEffects::StoreDefaults()
{
    DefaultProperties& d = g_defaultProperties;
    d.m_edgeColor = gfx::Color::FromCOLORREF(m_edgeColour);
    d.m_textStyle = std::uint8_t(m_nEdgeStyle);
    d.m_edgeSize = std::uint8_t(m_nEdgeSize);
    d.m_edgeBlur = std::uint8_t(m_nEdgeBlur);
    d.m_edgeTransparency = std::uint8_t(m_nEdgeTransparency);
    d.m_shadowOn = m_bShadowOn ? 1 : 0;
    d.m_shadowX = m_nShadowX;
    d.m_shadowY = m_nShadowY;
    d.m_shadowBlur = std::uint8_t(m_nShadowBlur);
    d.m_shadowTransparency = std::uint8_t(m_nShadowTransparency);
}
