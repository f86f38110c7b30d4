#include "dialogs/CPrintPos.h"

#include "controls/CAutoEdit.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CRealValidate.h"
#include "dialogs/CPrintPosButton.h"
#include "document/CDrawDoc.h"
#include "platform/Folders.h"
#include "platform/MessageBox.h"
#include "platform/Profile.h"
#include "printing/CJobWait.h"
#include "printing/CPrintView.h"

#include <QCloseEvent>
#include <QDialogButtonBox>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

#include <algorithm>
#include <cmath>

const QString CPrintPos::NoPrinterMessage = QStringLiteral("Error, No printer selected");
const QString CPrintPos::PrintErrorMessage = QStringLiteral("Error printing alignment image");
const QString CPrintPos::TurnDiscMessage =
    QStringLiteral("Please place disc back into left\r\nbasket with arrow pointing out.\r\nClick OK to continue.");

namespace {

constexpr double MillimetresPerInch = 25.4;
// The offsets' range and step in inches; the profile holds 1/100000 inch biased by the range.
constexpr double Limit = 0.27;
constexpr double Click = 0.00375;
constexpr int NoCorrection = 27000;

const QString PrintCaption = QStringLiteral("Print Alignment Image");

int Stored(double inches)
{
    return int(std::trunc((inches + Limit) * 100000));
}

double InchesOf(int stored)
{
    return stored / 100000.0 - Limit;
}

} // namespace

CPrintPos::CPrintPos(CPrintView& view, QWidget* parent)
    : CToolTipDialog(parent), m_view(view), m_pDocument(&view.GetDocument())
{
    setWindowTitle(QStringLiteral("Calibrate Print Position"));

    m_pPrinterName = new QLabel(QStringLiteral("Printer Name"), this);
    m_pPrinterName->setTextInteractionFlags(Qt::TextSelectableByMouse);

    // One axis: its preview, and the edit and spin of its offset with the units behind them.
    const auto axis = [this](const QString& title, const QString& name, bool horizontal, CPrintPosButton*& preview,
                             CAutoEdit*& edit, CNumSpinCtrl*& spin, QLabel*& units) {
        auto* group = new QGroupBox(title, this);
        preview = new CPrintPosButton(horizontal, group);
        preview->setToolTip(QStringLiteral("The letter read on the printed disc belongs under the arrow"));
        auto* caption = new QLabel(name + QLatin1Char(':'), group);
        edit = new CAutoEdit(group);
        edit->SetCaption(caption);
        edit->setAccessibleName(name);
        edit->setFixedWidth(edit->fontMetrics().horizontalAdvance(QStringLiteral("-0.000000")) + 12);
        spin = new CNumSpinCtrl(group);
        spin->setAccessibleName(name);
        spin->setToolTip(name);
        units = new QLabel(group);
        auto* row = new QHBoxLayout;
        row->addWidget(caption);
        row->addWidget(edit);
        row->addWidget(spin);
        row->addWidget(units);
        row->addStretch();
        auto* column = new QVBoxLayout(group);
        column->addWidget(preview, 0, Qt::AlignHCenter);
        column->addLayout(row);
        return group;
    };
    QGroupBox* xGroup =
        axis(QStringLiteral("X Axis"), QStringLiteral("X Offset"), true, m_pXPreview, m_pXEdit, m_pXSpin, m_pXUnits);
    QGroupBox* yGroup =
        axis(QStringLiteral("Y Axis"), QStringLiteral("Y Offset"), false, m_pYPreview, m_pYEdit, m_pYSpin, m_pYUnits);

    m_pPrintButton = new QPushButton(PrintCaption, this);
    m_pPrintButton->setAutoDefault(false);
    auto* buttons = new QDialogButtonBox(this);
    m_pOkButton = buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole);
    m_pOkButton->setDefault(true);
    m_pCancelButton = buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CPrintPos::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CPrintPos::reject);
    connect(m_pPrintButton, &QPushButton::clicked, this, &CPrintPos::OnPrintAlignment);

    auto* bottom = new QHBoxLayout;
    bottom->addWidget(m_pPrintButton);
    bottom->addStretch();
    bottom->addWidget(buttons);
    auto* grid = new QGridLayout(this);
    grid->addWidget(m_pPrinterName, 0, 0, 1, 2);
    grid->addWidget(xGroup, 1, 0);
    grid->addWidget(yGroup, 1, 1);
    grid->addLayout(bottom, 2, 0, 1, 2);
    grid->setSizeConstraint(QLayout::SetFixedSize);

    // Opening: the printer, the units, then the offsets.
    m_strPrinter = m_pDocument->GetPrinter().GetName(false);
    m_pPrinterName->setText(m_strPrinter);
    m_pValidator = std::make_unique<CRealValidate>();
    for (CAutoEdit* edit : {m_pXEdit, m_pYEdit}) {
        edit->SetAllowedChars(QStringLiteral("-.0123456789"));
        edit->SetAllowSign(true);
        edit->SetSignToFront(true);
        edit->SetValidator(m_pValidator.get());
        edit->SetDefaultText(QStringLiteral("0"));
    }
    m_pXSpin->SetBuddy(m_pXEdit);
    m_pYSpin->SetBuddy(m_pYEdit);
    m_bMetric = Profile::GetInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1) == 0;
    const double scale = m_bMetric ? MillimetresPerInch : 1.0;
    for (CNumSpinCtrl* spin : {m_pXSpin, m_pYSpin}) {
        spin->SetDecimals(m_bMetric ? 3 : 5);
        spin->SetRangeAndDelta(-Limit * scale, Limit * scale, Click * scale);
        spin->SetTrimZeros(true);
    }
    // Its up arrow lowers the value, as the scale under the arrow then moves up.
    m_pYSpin->SetReversed(true);
    for (QLabel* units : {m_pXUnits, m_pYUnits})
        units->setText(m_bMetric ? QStringLiteral("mm") : QStringLiteral("inches"));
    connect(m_pXEdit, &QLineEdit::textChanged, this, [this] { OnOffsetChanged(m_pXSpin, m_pXPreview); });
    connect(m_pYEdit, &QLineEdit::textChanged, this, [this] { OnOffsetChanged(m_pYSpin, m_pYPreview); });
    LoadOffsets();
}

CPrintPos::~CPrintPos() = default;

int CPrintPos::Run(CPrintView& view, QWidget* parent)
{
    if (view.GetDocument().GetPrinter().GetName(false).isEmpty()) {
        MessageBox::Show(NoPrinterMessage);
        return Rejected;
    }
    CPrintPos dialog(view, parent);
    return dialog.exec();
}

void CPrintPos::LoadOffsets()
{
    const QString section = m_pDocument->PrinterSection();
    const double scale = m_bMetric ? MillimetresPerInch : 1.0;
    m_pXSpin->SetValue(InchesOf(Profile::GetInt(section, QStringLiteral("XOffset"), NoCorrection)) * scale);
    m_pYSpin->SetValue(InchesOf(Profile::GetInt(section, QStringLiteral("YOffset"), NoCorrection)) * scale);
}

void CPrintPos::OnOffsetChanged(CNumSpinCtrl* spin, CPrintPosButton* preview)
{
    const float value = float(spin->GetValue());
    preview->Offset = m_bMetric ? value / float(MillimetresPerInch) : value;
    preview->update();
}

double CPrintPos::Inches(const CNumSpinCtrl* spin) const
{
    const double value = spin->GetValue();
    const double inches = m_bMetric ? value / MillimetresPerInch : value;
    // A typed value beyond the range would move every print by more than the printer can be out.
    return std::isnan(inches) ? 0.0 : std::clamp(inches, -Limit, Limit);
}

void CPrintPos::accept()
{
    if (m_bPrinting)
        return;
    const QString section = m_pDocument->PrinterSection();
    Profile::WriteInt(section, QStringLiteral("XOffset"), Stored(Inches(m_pXSpin)));
    Profile::WriteInt(section, QStringLiteral("YOffset"), Stored(Inches(m_pYSpin)));
    CToolTipDialog::accept();
}

void CPrintPos::reject()
{
    if (m_bPrinting)
        return;
    CToolTipDialog::reject();
}

void CPrintPos::closeEvent(QCloseEvent* event)
{
    if (m_bPrinting) {
        event->ignore();
        return;
    }
    CToolTipDialog::closeEvent(event);
}

void CPrintPos::SetPrinting(bool printing)
{
    m_bPrinting = printing;
    for (QPushButton* button : {m_pOkButton, m_pCancelButton, m_pPrintButton})
        button->setEnabled(!printing);
    m_pPrintButton->setText(printing ? QStringLiteral("Printing...") : PrintCaption);
}

bool CPrintPos::PrintAndWait(const QString& picture)
{
    const int job = m_view.PrintJob(Folders::InstallDirectory() + picture, m_strPrinter, true);
    // A job that never started has been explained by the print job itself.
    if (job <= 0)
        return false;
    if (!CJobWait::Wait(m_strPrinter, job)) {
        MessageBox::Show(PrintErrorMessage);
        return false;
    }
    return true;
}

void CPrintPos::OnPrintAlignment()
{
    SetPrinting(true);
    // The images print with no correction, so what the user reads off them is the whole error.
    const QString section = m_pDocument->PrinterSection();
    Profile::WriteInt(section, QStringLiteral("XOffset"), NoCorrection);
    Profile::WriteInt(section, QStringLiteral("YOffset"), NoCorrection);
    LoadOffsets();

    const QString first = m_pDocument->IsPrinterTemplate() ? QStringLiteral("printpos1.jpg") : QStringLiteral("printpos3.jpg");
    if (PrintAndWait(first)) {
        MessageBox::Show(TurnDiscMessage);
        PrintAndWait(QStringLiteral("printpos2.jpg"));
    }
    SetPrinting(false);
}
