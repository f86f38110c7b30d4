#include "panels/CSubForm1_1.h"

#include "controls/CAutoEdit.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CRealValidate.h"
#include "dialogs/CTemplateSelector.h"
#include "document/CDrawDoc.h"
#include "panels/PanelSupport.h"
#include "platform/NumberText.h"
#include "platform/Profile.h"
#include "templates/CTemplateFile.h"
#include "view/CNetworkView.h"

#include <QComboBox>
#include <QGridLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

namespace {

constexpr double MillimetresPerInch = 25.4;

int Units()
{
    return Profile::GetInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1);
}

// To two decimals, as the tray's sizes are compared.
double Rounded(double value)
{
    return std::round(value * 100) / 100;
}

struct RowSetup {
    const char* caption;
    int editId, sliderId, spinId, unitsId;
    int sliderMin, sliderMax; // thousandths of an inch
    double millimetresMin, millimetresMax;
};
constexpr RowSetup RowSetups[3] = {
    {"Inner Diameter:", 1013, 1010, 1234, 1251, 500, 2000, 10.0, 50.0},
    {"Outer Diameter:", 1016, 1015, 1235, 1252, 2000, 4720, 50.0, 120.0},
    {"Edge Diameter:", 1035, 1033, 1236, 1253, 2000, 4720, 50.0, 120.0},
};

} // namespace

CSubForm1_1::CSubForm1_1(QWidget* parent)
    : CToolTipDialog(parent)
{
    setWindowFlags(Qt::Widget);
    m_pSelectTemplate = new QPushButton(QStringLiteral("Select Template"), this);
    SetControlId(m_pSelectTemplate, 1057);
    m_pSelectTemplate->setAutoDefault(false);
    m_pSize = new QComboBox(this);
    SetControlId(m_pSize, 1056);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pSelectTemplate);
    layout->addWidget(m_pSize);
    for (int i = 0; i < 3; ++i) {
        const RowSetup& setup = RowSetups[i];
        DiameterRow& row = m_rows[size_t(i)];
        auto* caption = new QLabel(QString::fromLatin1(setup.caption), this);
        row.edit = new CAutoEdit(this);
        SetControlId(row.edit, setup.editId);
        row.edit->SetCaption(caption);
        row.edit->SetLimit(5);
        row.edit->SetAllowedChars(QStringLiteral(".0123456789"));
        row.validator = std::make_unique<CRealValidate>();
        row.edit->SetValidator(row.validator.get());
        row.spin = new CNumSpinCtrl(this);
        SetControlId(row.spin, setup.spinId);
        row.spin->setAccessibleName(caption->text().chopped(1));
        row.spin->SetBuddy(row.edit);
        row.units = new QLabel(this);
        SetControlId(row.units, setup.unitsId);
        row.slider = new QSlider(Qt::Horizontal, this);
        SetControlId(row.slider, setup.sliderId);
        row.slider->setRange(setup.sliderMin, setup.sliderMax);
        row.slider->setSingleStep(1);
        row.slider->setPageStep(10);

        auto* line = new QGridLayout;
        line->addWidget(caption, 0, 0, 1, 4);
        line->addWidget(row.edit, 1, 0);
        line->addWidget(row.spin, 1, 1);
        line->addWidget(row.units, 1, 2);
        line->setColumnStretch(3, 1);
        line->addWidget(row.slider, 2, 0, 1, 4);
        line->setVerticalSpacing(2);
        layout->addLayout(line);

        const Row which = Row(i);
        connect(row.slider, &QSlider::actionTriggered, this,
                [this, which](int action) { OnSliderAction(which, action); });
        connect(row.edit, &QLineEdit::textChanged, this, [this, which] { OnDiameterChanged(which); });
    }
    layout->addStretch();
    setFixedSize(PanelSupport::DialogUnitsToPixels(font(), 128, 154));

    connect(m_pSize, &QComboBox::activated, this, &CSubForm1_1::OnSizeChosen);
    connect(m_pSelectTemplate, &QPushButton::clicked, this, &CSubForm1_1::OnSelectTemplate);
}

CSubForm1_1::~CSubForm1_1() = default;

CDrawDoc* CSubForm1_1::Document() const
{
    return m_pView ? m_pView->GetDocument() : nullptr;
}

void CSubForm1_1::SetView(CNetworkView* view)
{
    m_pView = view;
    LoadUnits();
    LoadFromDocument();
}

QString CSubForm1_1::FormatDiameter(double inches)
{
    switch (Units()) {
    case 0:
        return QString::asprintf("%3.1f", inches * MillimetresPerInch);
    case 1:
        return QString::asprintf("%1.3f", inches);
    default:
        return {};
    }
}

double CSubForm1_1::ParseDiameter(const QString& text)
{
    const double value = NumberText::ToDouble(text);
    // Pasted text may say "inf" or "nan", which no size can be.
    if (!std::isfinite(value))
        return 0.0;
    switch (Units()) {
    case 0:
        return value / MillimetresPerInch;
    case 1:
        return value;
    default:
        return 0.0;
    }
}

void CSubForm1_1::LoadUnits()
{
    const bool metric = Units() == 0;
    for (int i = 0; i < 3; ++i) {
        DiameterRow& row = m_rows[size_t(i)];
        const RowSetup& setup = RowSetups[i];
        if (metric) {
            row.spin->SetDecimals(1);
            row.spin->SetRangeAndDelta(setup.millimetresMin, setup.millimetresMax, 0.1);
        } else {
            row.spin->SetDecimals(3);
            row.spin->SetRangeAndDelta(setup.sliderMin / 1000.0, setup.sliderMax / 1000.0, 0.01);
        }
        row.units->setText(metric ? QStringLiteral("mm") : QStringLiteral("inches"));
    }
}

void CSubForm1_1::FillSizes()
{
    m_pSize->clear();
    CDrawDoc* document = Document();
    if (document && document->IsPrinterTemplate()) {
        for (int i = 0; i < document->GetObjectCount(); ++i)
            m_pSize->addItem(document->GetObject(i)->ObjectName);
    }
    m_pSize->addItem(QStringLiteral("Custom"));
}

void CSubForm1_1::LoadFromDocument()
{
    CDrawDoc* document = Document();
    if (!document)
        return;
    m_bKeepDiameter = false;
    FillSizes();
    // Showing the document's sizes is no change to it.
    const bool modified = document->IsModified();
    WriteDiameter(Edge, FormatDiameter(document->GetBusDia()));
    WriteDiameter(Outer, FormatDiameter(document->GetOuterDia()));
    WriteDiameter(Inner, FormatDiameter(document->GetInnerDia()));
    document->SetModifiedFlag(modified);
}

void CSubForm1_1::OnSliderAction(Row row, int action)
{
    QSlider* slider = m_rows[row].slider;
    const int position = PanelSupport::ScrolledPosition(*slider, action, 1, 10, 10, 100);
    slider->setSliderPosition(position);
    m_bKeepDiameter = true;
    WriteDiameter(row, FormatDiameter(position / 1000.0));
}

void CSubForm1_1::WriteDiameter(Row row, const QString& text)
{
    // The edit's change does the rest, also when the text stays as it was.
    CAutoEdit* edit = m_rows[row].edit;
    if (edit->text() == text)
        OnDiameterChanged(row);
    else
        edit->setText(text);
}

void CSubForm1_1::OnDiameterChanged(Row row)
{
    CDrawDoc* document = Document();
    if (!document)
        return;
    const double value = ParseDiameter(m_rows[row].edit->text());
    QSlider* slider = m_rows[row].slider;
    slider->setValue(PanelSupport::Thousandths(value, *slider));
    switch (row) {
    case Inner: document->SetInnerDia(value, m_bKeepDiameter); break;
    case Outer: document->SetOuterDia(value, m_bKeepDiameter); break;
    case Edge: document->SetBusDia(value, m_bKeepDiameter); break;
    }
    MatchTemplate();
    if (row == Outer && m_pView) {
        // The canvas is sized to the outer diameter.
        m_pView->SetLogicalSizes();
        m_pView->ZoomFull();
    }
}

void CSubForm1_1::MatchTemplate()
{
    CDrawDoc* document = Document();
    if (!document || !document->IsPrinterTemplate())
        return;
    const double inner = Rounded(ParseDiameter(m_rows[Inner].edit->text()));
    const double outer = Rounded(ParseDiameter(m_rows[Outer].edit->text()));
    const double edge = Rounded(ParseDiameter(m_rows[Edge].edit->text()));
    const int count = document->GetObjectCount();
    int match = count; // "Custom"
    for (int i = 0; i < count; ++i) {
        const CTemplateObject* record = document->GetObject(i);
        // The last match wins.
        if (record->InnerDia == inner && record->OuterDia == outer && record->EdgeDia == edge)
            match = i;
    }
    m_pSize->setCurrentIndex(std::min(match, m_pSize->count() - 1));
}

void CSubForm1_1::OnSizeChosen(int index)
{
    CDrawDoc* document = Document();
    if (!document || !document->IsPrinterTemplate() || index >= document->GetObjectCount())
        return;
    const CTemplateObject record = *document->GetObject(index);
    m_bKeepDiameter = true;
    WriteDiameter(Edge, FormatDiameter(record.EdgeDia));
    WriteDiameter(Outer, FormatDiameter(record.OuterDia));
    WriteDiameter(Inner, FormatDiameter(record.InnerDia));
}

void CSubForm1_1::OnSelectTemplate()
{
    CDrawDoc* document = Document();
    if (!document)
        return;
    CTemplateSelector selector(this);
    selector.SetDocument(document);
    if (selector.exec() != QDialog::Accepted)
        return;
    FillSizes();
    MatchTemplate();
    emit templateChanged();
    if (m_pView) {
        m_pView->SetLogicalSizes();
        m_pView->ZoomFull();
    }
}
