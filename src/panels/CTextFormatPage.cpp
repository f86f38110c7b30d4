#include "panels/CTextFormatPage.h"

#include "controls/CAutoEdit.h"
#include "controls/CColourPicker.h"
#include "controls/CIntValidate.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CRealValidate.h"
#include "dialogs/CDataFieldDlg.h"
#include "dialogs/CDataFieldListDlg.h"
#include "document/CDrawDoc.h"
#include "fields/DataFields.h"
#include "objects/CDrawText.h"
#include "objects/DefaultProperties.h"
#include "panels/CTextForm.h"
#include "platform/MessageBox.h"
#include "platform/NumberText.h"
#include "view/CNetworkView.h"

#include <QCheckBox>
#include <QComboBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QPlainTextEdit>
#include <QPushButton>
#include <QSlider>

#include <cmath>

namespace {

const char* const PathStyles[] = {"Straight", "Curved Clockwise", "Curved CCW", "Spiral CW", "Spiral CCW"};

// The edit shows lines as the user types them; the text keeps them apart by CR LF.
QString ToEdit(QString text)
{
    return text.replace(QStringLiteral("\r\n"), QStringLiteral("\n"));
}

QString FromEdit(QString text)
{
    return text.replace(QLatin1Char('\n'), QStringLiteral("\r\n"));
}

} // namespace

CTextFormatPage::CTextFormatPage(QWidget* parent)
    : CToolTipDialog(parent), m_pRealValidate(new CRealValidate), m_pIntValidate(new CIntValidate)
{
    setWindowFlags(Qt::Widget);
    auto* grid = new QGridLayout(this);
    grid->setContentsMargins(4, 4, 4, 4);
    int row = 0;

    m_pText = new QPlainTextEdit(this);
    SetControlId(m_pText, 1083);
    m_pText->setTabChangesFocus(true);
    grid->addWidget(m_pText, row++, 0, 1, 2);

    auto* insert = new QPushButton(QStringLiteral("Insert Data Field"), this);
    SetControlId(insert, 1120);
    auto* list = new QPushButton(QStringLiteral("Data Field List"), this);
    SetControlId(list, 1128);
    // Enter in a field of the panel presses none of its buttons.
    for (QPushButton* button : {insert, list})
        button->setAutoDefault(false);
    grid->addWidget(insert, row++, 0, 1, 2);
    grid->addWidget(list, row++, 0, 1, 2);

    const auto caption = [this, grid, &row](const QString& text, QWidget* control) {
        auto* label = new QLabel(text, this);
        label->setBuddy(control);
        control->setAccessibleName(QString(text).remove(QLatin1Char('&')));
        grid->addWidget(label, row, 0);
        grid->addWidget(control, row++, 1);
    };
    m_pColour = new CColourPicker(this);
    SetControlId(m_pColour, 1008);
    caption(QStringLiteral("Color:"), m_pColour);
    m_pPath = new QComboBox(this);
    SetControlId(m_pPath, 1104);
    for (const char* style : PathStyles)
        m_pPath->addItem(QString::fromLatin1(style));
    caption(QStringLiteral("&Path:"), m_pPath);
    m_pJustify = new QComboBox(this);
    SetControlId(m_pJustify, 1070);
    m_pJustify->addItems({QStringLiteral("Left"), QStringLiteral("Centered"), QStringLiteral("Right")});
    caption(QStringLiteral("&Justify:"), m_pJustify);
    // The narrow panel column sets the boxes' width; their lists open as wide as they need.
    for (QComboBox* box : {m_pPath, m_pJustify}) {
        box->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
        box->setMinimumContentsLength(4);
    }

    m_pCenter = new QPushButton(QStringLiteral("Center"), this);
    SetControlId(m_pCenter, 1152);
    m_pCenter->setAutoDefault(false);
    m_pLockAspect = new QCheckBox(QStringLiteral("Lock Aspect Ratio"), this);
    SetControlId(m_pLockAspect, 1227);
    // Each on a row of its own, so that the caption shows whole in the narrow panel column.
    grid->addWidget(m_pCenter, row++, 0);
    grid->addWidget(m_pLockAspect, row++, 0, 1, 2);

    // A number's edit with its spin; the spin's own id would find another control's tooltip.
    const auto number = [this, grid, &row](const QString& text, int id, CNumSpinCtrl*& spin) {
        auto* edit = new CAutoEdit(this);
        SetControlId(edit, id);
        auto* label = new QLabel(text, this);
        edit->SetCaption(label);
        // Five characters need little room; the panel column is narrow.
        edit->setMinimumWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("00000")));
        spin = new CNumSpinCtrl(this);
        spin->SetBuddy(edit);
        spin->setAccessibleName(edit->accessibleName().chopped(1));
        auto* pair = new QHBoxLayout;
        pair->setSpacing(0);
        pair->addWidget(edit);
        pair->addWidget(spin);
        grid->addWidget(label, row, 0);
        grid->addLayout(pair, row++, 1);
        return edit;
    };
    m_pRotation = number(QStringLiteral("&Rotation:"), 1265, m_pRotationSpin);
    m_pRotation->SetLimit(5);
    m_pRotation->SetAllowedChars(QStringLiteral(".0123456789"));
    m_pRotation->SetValidator(m_pRealValidate);
    m_pRotationSpin->SetDecimals(1);
    m_pRotationSpin->SetFormat(QStringLiteral("%.1f"));
    m_pRotationSpin->SetRangeAndDelta(0.0, 359.9, 0.1);
    m_pTracking = number(QStringLiteral("&Tracking:"), 1263, m_pTrackingSpin);
    m_pLeading = number(QStringLiteral("&Leading:"), 1264, m_pLeadingSpin);
    for (auto [edit, spin] : {std::pair{m_pTracking, m_pTrackingSpin}, std::pair{m_pLeading, m_pLeadingSpin}}) {
        edit->SetAllowedChars(QStringLiteral("-0123456789"));
        edit->SetAllowSign(true);
        edit->SetSignToFront(true);
        edit->SetValidator(m_pIntValidate);
        spin->SetDecimals(0);
        spin->SetRangeAndDelta(-1000, 1000, 1);
    }
    m_pTransparency = number(QStringLiteral("Tr&ansparency:"), 1085, m_pTransparencySpin);
    m_pTransparency->SetAllowedChars(QStringLiteral("0123456789"));
    m_pTransparency->SetValidator(m_pIntValidate);
    m_pTransparencySpin->SetDecimals(0);
    m_pTransparencySpin->SetRangeAndDelta(0, 100, 1);
    m_pTransparencySlider = new QSlider(Qt::Horizontal, this);
    SetControlId(m_pTransparencySlider, 1238);
    m_pTransparencySlider->setRange(0, 100);
    m_pTransparencySlider->setSingleStep(10);
    m_pTransparencySlider->setPageStep(20);
    m_pTransparencySlider->setAccessibleName(QStringLiteral("Transparency"));
    grid->addWidget(m_pTransparencySlider, row++, 0, 1, 2);
    grid->setRowStretch(row, 1);
    grid->setRowStretch(0, 0);

    connect(m_pText, &QPlainTextEdit::textChanged, this, [this] { OnChange(Text); });
    connect(m_pColour, &CColourPicker::SelEndOK, this, [this] { OnChange(Colour); });
    connect(m_pPath, &QComboBox::activated, this, &CTextFormatPage::OnPathChange);
    connect(m_pJustify, &QComboBox::activated, this, [this] { OnChange(Justify); });
    connect(m_pLockAspect, &QCheckBox::clicked, this, [this] { OnChange(LockAspect); });
    connect(m_pCenter, &QPushButton::clicked, this, &CTextFormatPage::OnCenter);
    connect(m_pRotation, &QLineEdit::textChanged, this, [this] { OnChange(Rotation); });
    connect(m_pTracking, &QLineEdit::textChanged, this, [this] { OnChange(Tracking); });
    connect(m_pLeading, &QLineEdit::textChanged, this, [this] { OnChange(Leading); });
    connect(m_pTransparency, &QLineEdit::textChanged, this, [this] {
        // The slider follows a typed value it can show.
        const int value = NumberText::ToInt(m_pTransparency->text());
        if (!m_bLoading && value >= 0 && value <= 100) {
            const QSignalBlocker blocker(m_pTransparencySlider);
            m_pTransparencySlider->setValue(value);
        }
        OnChange(Transparency);
    });
    connect(m_pTransparencySlider, &QSlider::valueChanged, this, &CTextFormatPage::OnTransparencySlider);
    connect(insert, &QPushButton::clicked, this, &CTextFormatPage::OnInsertDataField);
    connect(list, &QPushButton::clicked, this, &CTextFormatPage::OnDataFieldList);

    m_bReady = true;
}

CTextFormatPage::~CTextFormatPage()
{
    delete m_pRealValidate;
    delete m_pIntValidate;
}

void CTextFormatPage::FillJustify(int pathStyle)
{
    if (pathStyle >= 0 && pathStyle <= 2) {
        m_pJustify->clear();
        m_pJustify->addItems({QStringLiteral("Left"), QStringLiteral("Center"), QStringLiteral("Right")});
    } else if (pathStyle == 3 || pathStyle == 4) {
        m_pJustify->clear();
        m_pJustify->addItems({QStringLiteral("Top"), QStringLiteral("Bottom")});
    }
}

void CTextFormatPage::ShowValues(const QString& text, int pathKind, int justify, gfx::COLORREF colour,
                                 int transparency, float angle, int tracking, int leading)
{
    m_bLoading = true;
    m_pRotation->setText(QString::asprintf("%.1f", double(angle)));
    m_pText->setPlainText(ToEdit(text));
    const int pathStyle = pathKind & 0xFF;
    m_pPath->setCurrentIndex(pathStyle < m_pPath->count() ? pathStyle : -1);
    m_pColour->SetColour(colour);
    m_pTransparencySpin->SetValue(transparency);
    m_pTransparencySlider->setValue(transparency);
    m_pTrackingSpin->SetValue(tracking);
    m_pLeadingSpin->SetValue(leading);
    m_pLockAspect->setChecked(pathKind & CDrawText::AspectLock);
    m_pLockAspect->setEnabled(pathStyle > 0);
    FillJustify(pathStyle);
    m_pJustify->setCurrentIndex(justify >= 0 && justify < m_pJustify->count() ? justify : -1);
    m_bLoading = false;

    m_strText = text;
    m_nPathStyle = pathStyle;
    m_bLockAspect = pathKind & CDrawText::AspectLock;
    m_nJustify = justify;
    m_colour = colour;
    m_nTransparency = transparency;
    m_fAngle = angle;
    m_nTracking = tracking;
    m_nLeading = leading;
    m_nChanged = 0;
    m_bPathChanged = m_bCenterRequested = false;
}

void CTextFormatPage::LoadFromObject(const CDrawText& text)
{
    ShowValues(text.m_text, text.m_textPathKind, text.m_justify, text.m_textColor.ToCOLORREF(),
               text.m_textTransparency, text.m_angle, text.m_tracking, text.m_leading);
    StoreDefaults();
}

void CTextFormatPage::LoadDefaults()
{
    const DefaultProperties& d = g_defaultProperties;
    ShowValues(d.m_text, d.m_textPathKind, d.m_justify, d.m_textColor.ToCOLORREF(), d.m_textTransparency, d.m_angle,
               d.m_tracking, d.m_leading);
}

void CTextFormatPage::ShowAngle(const QString& angle)
{
    m_bLoading = true;
    m_pRotation->setText(angle);
    m_bLoading = false;
    m_fAngle = float(NumberText::ToDouble(angle));
}

bool CTextFormatPage::UpdateData()
{
    const int transparency = NumberText::ToInt(m_pTransparency->text());
    if (transparency < 0 || transparency > 100) {
        MessageBox::Show(QStringLiteral("Please enter an integer between 0 and 100."), MessageBox::IconWarning);
        m_pTransparency->setFocus();
        m_pTransparency->selectAll();
        return false;
    }
    m_nTransparency = transparency;
    m_strText = FromEdit(m_pText->toPlainText());
    if (m_pPath->currentIndex() >= 0)
        m_nPathStyle = m_pPath->currentIndex();
    m_bLockAspect = m_pLockAspect->isChecked();
    if (m_pJustify->currentIndex() >= 0)
        m_nJustify = m_pJustify->currentIndex();
    m_colour = m_pColour->GetColour();
    m_fAngle = float(NumberText::ToDouble(m_pRotation->text()));
    m_nTracking = NumberText::ToInt(m_pTracking->text());
    m_nLeading = NumberText::ToInt(m_pLeading->text());
    return true;
}

void CTextFormatPage::OnChange(int value)
{
    if (m_bLoading)
        return;
    m_nChanged |= value;
    Apply();
}

void CTextFormatPage::OnPathChange()
{
    const int oldStyle = m_nPathStyle;
    const int newStyle = m_pPath->currentIndex();
    if (newStyle != oldStyle && newStyle >= 0) {
        m_bLoading = true;
        const int justify = m_pJustify->currentIndex();
        FillJustify(newStyle);
        if (newStyle == 0) {
            m_pJustify->setCurrentIndex(justify);
            m_pLockAspect->setEnabled(false);
        } else {
            m_bPathChanged = true;
            // A spiral runs from its top or its bottom only.
            const bool dropped = (newStyle == 3 || newStyle == 4) && justify >= 2;
            m_pJustify->setCurrentIndex(dropped ? 0 : justify);
            if (dropped)
                m_nJustify = 0;
            m_pLockAspect->setEnabled(true);
        }
        m_bLoading = false;
    }
    OnChange(PathStyle | Justify | LockAspect);
}

void CTextFormatPage::OnCenter()
{
    m_bCenterRequested = true;
    Apply();
}

void CTextFormatPage::OnTransparencySlider(int position)
{
    if (m_bLoading)
        return;
    // The edit's change applies the value.
    m_pTransparency->setText(QString::asprintf("%d", position));
}

void CTextFormatPage::OnInsertDataField()
{
    CDataFieldDlg dialog(this);
    if (dialog.exec() != QDialog::Accepted)
        return;
    g_dataFields.push_back(dialog.m_field);
    // The text's change applies it, and the label shows the field's value at once.
    CDataFieldListDlg::InsertInText(m_pText, dialog.m_field.Tag);
}

void CTextFormatPage::OnDataFieldList()
{
    CDataFieldListDlg dialog(m_pText, this);
    dialog.exec();
}

void CTextFormatPage::Apply()
{
    if (!m_bReady || m_bLoading)
        return;
    if (!UpdateData()) {
        m_bPathChanged = m_bCenterRequested = false;
        return;
    }
    if (m_bPathChanged && m_nPathStyle != 0) {
        // A text that turns onto the disc's edge starts at the top, running clockwise from
        // the left or anticlockwise from the right.
        m_fAngle = m_nPathStyle % 2 == 1 ? 90.0f : -90.0f;
        m_bLoading = true;
        m_pRotation->setText(QString::asprintf("%.1f", double(m_fAngle)));
        m_bLoading = false;
        m_nChanged |= Rotation;
    }
    CDrawDoc* doc = m_pView ? m_pView->GetDocument() : nullptr;
    CTextForm::EditSelectedTexts(m_pView, [this, doc](CDrawText& text) {
        if (m_bPathChanged && doc) {
            const int d = int(doc->GetOuterDia() * 300);
            text.m_position = CRect(-(d / 2), d / 2, d / 2, -(d / 2));
            text.m_aspect = std::abs(double(text.m_position.Width())) / std::abs(double(text.m_position.Height()));
            doc->UpdateAllViews(nullptr, 0, nullptr);
        }
        if (m_bCenterRequested) {
            const int w = text.m_position.Width(), h = text.m_position.Height();
            text.m_position = CRect(-w / 2, -h / 2, w / 2, h / 2);
            text.m_aspect = std::abs(double(w)) / std::abs(double(h));
            if (doc)
                doc->UpdateAllViews(nullptr, 0, nullptr);
        }
        const int pathStyle = m_nChanged & PathStyle ? m_nPathStyle : text.GetPathKind();
        const bool lock = m_nChanged & LockAspect ? m_bLockAspect : text.IsAspectLocked();
        text.SetTextProperties(
            m_nChanged & Text ? m_strText : text.m_text, pathStyle | (lock ? CDrawText::AspectLock : 0),
            m_nChanged & Justify ? m_nJustify : text.m_justify,
            m_nChanged & Colour ? gfx::Color::FromCOLORREF(m_colour) : text.m_textColor,
            m_nChanged & Transparency ? std::uint8_t(m_nTransparency) : text.m_textTransparency,
            m_nChanged & Rotation ? m_fAngle : text.m_angle, m_nChanged & Tracking ? m_nTracking : text.m_tracking,
            m_nChanged & Leading ? m_nLeading : text.m_leading);
    });
    m_bPathChanged = m_bCenterRequested = false;
    StoreDefaults();
}

void CTextFormatPage::StoreDefaults()
{
    DefaultProperties& d = g_defaultProperties;
    d.m_text = m_strText;
    d.m_textPathKind = m_nPathStyle | (m_bLockAspect ? CDrawText::AspectLock : 0);
    d.m_justify = m_nJustify;
    d.m_textColor = gfx::Color::FromCOLORREF(m_colour);
    d.m_textTransparency = std::uint8_t(m_nTransparency);
    d.m_angle = m_fAngle;
    d.m_tracking = m_nTracking;
    d.m_leading = m_nLeading;
}
