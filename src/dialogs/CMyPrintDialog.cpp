#include "dialogs/CMyPrintDialog.h"

#include "controls/CRealValidate.h"
#include "controls/CSeekEdit.h"
#include "dialogs/CAdjustColorButton.h"
#include "dialogs/CPrinterPropertiesDlg.h"
#include "document/CDrawDoc.h"
#include "platform/MessageBox.h"
#include "platform/NumberText.h"
#include "platform/Profile.h"
#include "platform/RenderQuality.h"
#include "platform/graphics/Graphics.h"
#include "printing/AppPrinter.h"
#include "printing/CPrinterSettings.h"
#include "printing/DEVMODE.h"
#include "printing/DEVNAMES.h"
#include "printing/DiscTray.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGridLayout>
#include <QGroupBox>
#include <QHBoxLayout>
#include <QLabel>
#include <QPushButton>
#include <QSlider>
#include <QSpinBox>
#include <QVBoxLayout>

#include <cmath>

namespace {

const QString NoPrinters = QStringLiteral(
    "No printers are installed. Add a printer in the system's printer settings, then try again.");

QString StateText(const SpoolerPrinter& printer)
{
    QString text;
    switch (printer.state) {
    case 4: text = QStringLiteral("Printing"); break;
    case 5: text = QStringLiteral("Stopped"); break;
    default: text = QStringLiteral("Ready"); break;
    }
    if (!printer.acceptingJobs)
        text += QStringLiteral(", not accepting jobs");
    return text;
}

// The name the program knows a printer by: its description, or the queue's name.
QString DeviceName(const SpoolerPrinter& printer)
{
    return DEVNAMES::Device(DEVNAMES::For(printer));
}

QString TwoDecimals(double value)
{
    return QString::asprintf("%1.2f", value);
}

} // namespace

CMyPrintDialog::CMyPrintDialog(Kind kind, QWidget* parent) : CToolTipDialog(parent), m_nKind(kind)
{
    setWindowTitle(kind == Print ? QStringLiteral("Print") : QStringLiteral("Print Setup"));
    if (kind == Print)
        AppPrinter::GetPrinterDeviceDefaults(&m_pd);

    m_pPrinter = new QComboBox(this);
    SetControlId(m_pPrinter, 1139);
    m_pPrinter->setAccessibleName(QStringLiteral("Printer Name"));
    m_pPrinter->setMinimumContentsLength(28);
    m_pPrinter->setSizeAdjustPolicy(QComboBox::AdjustToMinimumContentsLengthWithIcon);
    auto* properties = new QPushButton(QStringLiteral("&Properties"), this);
    m_pStatus = new QLabel(this);
    m_pType = new QLabel(this);
    m_pWhere = new QLabel(this);
    m_pWhere->setTextInteractionFlags(Qt::TextSelectableByMouse);

    auto* printerBox = new QGroupBox(QStringLiteral("Printer"), this);
    auto* printerGrid = new QGridLayout(printerBox);
    auto* nameLabel = new QLabel(QStringLiteral("&Name:"), printerBox);
    nameLabel->setBuddy(m_pPrinter);
    printerGrid->addWidget(nameLabel, 0, 0);
    printerGrid->addWidget(m_pPrinter, 0, 1);
    printerGrid->addWidget(properties, 0, 2);
    printerGrid->addWidget(new QLabel(QStringLiteral("Status:"), printerBox), 1, 0);
    printerGrid->addWidget(m_pStatus, 1, 1, 1, 2);
    printerGrid->addWidget(new QLabel(QStringLiteral("Type:"), printerBox), 2, 0);
    printerGrid->addWidget(m_pType, 2, 1, 1, 2);
    printerGrid->addWidget(new QLabel(QStringLiteral("Where:"), printerBox), 3, 0);
    printerGrid->addWidget(m_pWhere, 3, 1, 1, 2);
    printerGrid->setColumnStretch(1, 1);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_pOk = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &CMyPrintDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CMyPrintDialog::reject);
    connect(properties, &QPushButton::clicked, this, &CMyPrintDialog::OnProperties);

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(printerBox);

    m_pTrayNote = new QLabel(QStringLiteral("This printer has no disc tray; the label prints on its paper."), this);
    m_pTrayNote->setWordWrap(true);
    m_pTrayNote->hide();
    printerGrid->addWidget(m_pTrayNote, 5, 0, 1, 3);

    if (kind == Print) {
        m_pPrintToFile = new QCheckBox(QStringLiteral("Print to fi&le"), printerBox);
        printerGrid->addWidget(m_pPrintToFile, 4, 2);

        auto* copiesBox = new QGroupBox(QStringLiteral("Copies"), this);
        m_pCopies = new QSpinBox(copiesBox);
        m_pCopies->setRange(1, 9999);
        m_pCopies->setAccessibleName(QStringLiteral("Number of copies"));
        auto* copiesLabel = new QLabel(QStringLiteral("Number of &copies:"), copiesBox);
        copiesLabel->setBuddy(m_pCopies);
        auto* copiesRow = new QHBoxLayout(copiesBox);
        copiesRow->addWidget(copiesLabel);
        copiesRow->addWidget(m_pCopies);
        copiesRow->addStretch(1);

        m_pPreview = new CAdjustColorButton(this);
        SetControlId(m_pPreview, 1168);
        m_pPreview->setAccessibleName(QStringLiteral("Preview"));
        auto makeValue = [this](int sliderId, int editId, const QString& caption, QSlider** slider, CSeekEdit** edit,
                                QGridLayout* grid, int row) {
            *slider = new QSlider(Qt::Horizontal, this);
            SetControlId(*slider, sliderId);
            (*slider)->setRange(5, 300);
            (*slider)->setSingleStep(5);
            (*slider)->setPageStep(20);
            *edit = new CSeekEdit(this);
            SetControlId(*edit, editId);
            (*edit)->setFixedWidth((*edit)->fontMetrics().horizontalAdvance(QStringLiteral("00.000")) + 12);
            auto* label = new QLabel(caption, this);
            (*edit)->SetCaption(label);
            (*slider)->setAccessibleName(label->text().remove(QLatin1Char('&')).remove(QLatin1Char(':')));
            grid->addWidget(label, row, 0);
            grid->addWidget(*edit, row, 1);
            grid->addWidget(*slider, row, 2);
        };
        auto* adjustBox = new QGroupBox(QStringLiteral("Color"), this);
        auto* adjustGrid = new QGridLayout(adjustBox);
        adjustGrid->addWidget(m_pPreview, 0, 0, 1, 3, Qt::AlignCenter);
        makeValue(1162, 1163, QStringLiteral("&Gamm:"), &m_pGammaSlider, &m_pGammaEdit, adjustGrid, 1);
        makeValue(1160, 1165, QStringLiteral("&Saturation:"), &m_pSaturationSlider, &m_pSaturationEdit, adjustGrid, 2);
        adjustGrid->setColumnStretch(2, 1);

        connect(m_pGammaEdit, &QLineEdit::textChanged, this, [this](const QString& text) {
            OnValueChanged(QStringLiteral("Gamma"), m_pGammaSlider, &m_pPreview->m_fGamma, text);
        });
        connect(m_pSaturationEdit, &QLineEdit::textChanged, this, [this](const QString& text) {
            OnValueChanged(QStringLiteral("Saturation"), m_pSaturationSlider, &m_pPreview->m_fSaturation, text);
        });
        connect(m_pGammaSlider, &QSlider::actionTriggered, this,
                [this](int action) { OnSliderAction(m_pGammaSlider, m_pGammaEdit, action); });
        connect(m_pSaturationSlider, &QSlider::actionTriggered, this,
                [this](int action) { OnSliderAction(m_pSaturationSlider, m_pSaturationEdit, action); });

        auto* lower = new QHBoxLayout;
        auto* left = new QVBoxLayout;
        left->addWidget(copiesBox);
        left->addStretch(1);
        lower->addLayout(left, 1);
        lower->addWidget(adjustBox, 1);
        layout->addLayout(lower);
    }
    layout->addWidget(buttons);
    layout->setSizeConstraint(QLayout::SetFixedSize);

    connect(m_pPrinter, &QComboBox::currentIndexChanged, this, &CMyPrintDialog::OnPrinterChanged);
}

CMyPrintDialog::~CMyPrintDialog() = default;

bool CMyPrintDialog::RunSetup(PRINTDLG& pd, QObject* parent)
{
    CMyPrintDialog dialog(Setup, qobject_cast<QWidget*>(parent));
    dialog.m_pd = pd;
    if (dialog.exec() != Accepted)
        return false;
    pd = dialog.m_pd;
    return true;
}

int CMyPrintDialog::exec()
{
    if (!OnInitDialog())
        return Rejected;
    return CToolTipDialog::exec();
}

bool CMyPrintDialog::OnInitDialog()
{
    int error = 0;
    if (!Spooler::Destinations(&m_printers, &error)) {
        MessageBox::Show(QStringLiteral("The print spooler can't be reached: %1").arg(Spooler::ErrorText()));
        return false;
    }
    if (m_printers.isEmpty()) {
        MessageBox::Show(NoPrinters);
        return false;
    }

    // The printer the records name, else the spooler's default, else the first.
    const QString wanted = m_pd.hDevNames ? DEVNAMES::Device(*m_pd.hDevNames) : QString();
    int start = -1;
    int fallback = 0;
    {
        const QSignalBlocker blocker(m_pPrinter);
        for (int i = 0; i < m_printers.size(); ++i) {
            const QString name = DeviceName(m_printers[i]);
            m_pPrinter->addItem(name);
            if (name == wanted && start < 0)
                start = i;
            if (m_printers[i].isDefault)
                fallback = i;
        }
        m_pPrinter->setCurrentIndex(start >= 0 ? start : fallback);
    }
    if (start >= 0) {
        // The job's own set-up, with what Properties chose last time.
        m_hDevMode = m_pd.hDevMode;
        m_hDevNames = m_pd.hDevNames;
        OnPrinterChanged(-1);
    } else {
        OnPrinterChanged(m_pPrinter->currentIndex());
    }
    if (m_nKind == Setup)
        return true;

    m_pPrintToFile->setChecked(m_pd.Flags & PRINTDLG::PD_PRINTTOFILE);
    for (CSeekEdit* edit : {m_pGammaEdit, m_pSaturationEdit}) {
        edit->SetLimit(4);
        edit->SetAllowedChars(QStringLiteral(".0123456789"));
    }
    m_pGammaValidate = std::make_unique<CRealValidate>();
    m_pSaturationValidate = std::make_unique<CRealValidate>();
    m_pGammaEdit->SetValidator(m_pGammaValidate.get());
    m_pSaturationEdit->SetValidator(m_pSaturationValidate.get());
    m_pGammaEdit->SetDefaultText(QStringLiteral("1.0"));
    m_pSaturationEdit->SetDefaultText(QStringLiteral("0"));

    BuildPreview();

    // Read once: a printer chosen later gets the values the user sets next.
    const QString section = SectionName();
    m_pPreview->m_fGamma = NumberText::ToDouble(Profile::GetString(section, QStringLiteral("Gamma"), QStringLiteral("1.0")));
    m_pPreview->m_fSaturation =
        NumberText::ToDouble(Profile::GetString(section, QStringLiteral("Saturation"), QStringLiteral("1.0")));
    m_pGammaEdit->SetText(TwoDecimals(m_pPreview->m_fGamma));
    m_pSaturationEdit->SetText(TwoDecimals(m_pPreview->m_fSaturation));
    return true;
}

void CMyPrintDialog::BuildPreview()
{
    if (!m_pDocument)
        return;
    const std::unique_ptr<gfx::Bitmap> sheet = m_pDocument->RenderBitmap(300, 300, true, true);
    if (!sheet)
        return;
    // The paper fitted into 140 by 140, keeping its proportions.
    const double paperWidth = sheet->GetWidth();
    const double paperHeight = sheet->GetHeight();
    const double rw = paperWidth / 140;
    const double rh = paperHeight / 140;
    const QSize size = rw <= rh ? QSize(std::max(1, int(paperWidth / rh)), 140)
                                : QSize(140, std::max(1, int(paperHeight / rw)));
    gfx::Bitmap preview(size.width(), size.height());
    {
        gfx::Graphics graphics(preview);
        RenderQuality::Apply(graphics);
        graphics.DrawImage(*sheet, QRectF(0, 0, size.width(), size.height()));
    }
    m_pPreview->SetBitmap(preview.image());
}

void CMyPrintDialog::OnPrinterChanged(int index)
{
    if (index >= 0) {
        SpoolerPrinter printer;
        int error = 0;
        if (Spooler::GetPrinter(m_printers[index].name, &printer, &error)) {
            printer.isDefault = m_printers[index].isDefault;
            m_printers[index] = printer;
            m_hDevMode = DEVMODE::For(printer);
            m_hDevNames = DEVNAMES::For(printer);
        } else {
            // No records of another printer may stand for this one: OK waits for a printer
            // that answers.
            m_hDevMode.reset();
            m_hDevNames.reset();
            MessageBox::Show(QStringLiteral("Can't read the printer %1: %2").arg(m_pPrinter->itemText(index),
                                                                                   Spooler::ErrorText()));
        }
    }
    m_pOk->setEnabled(m_hDevNames.has_value());
    const SpoolerPrinter& printer = m_printers[m_pPrinter->currentIndex()];
    PutDiscTray(printer.name);
    m_pStatus->setText(StateText(printer));
    m_pType->setText(printer.makeAndModel);
    m_pWhere->setText(printer.deviceUri);
    if (m_pCopies)
        m_pCopies->setValue(m_hDevMode ? DEVMODE::Copies(*m_hDevMode) : 1);
}

void CMyPrintDialog::PutDiscTray(const QString& queue)
{
    bool noTray = false;
    if (m_pDocument && m_pDocument->IsPrinterTemplate() && m_hDevMode) {
        // A queue whose options can't be read says nothing either way.
        QList<SpoolerChoice> offered;
        if (Spooler::GetOptionChoices(queue, &offered)) {
            noTray = !DiscTray::Offers(offered);
            DiscTray::Apply(*m_hDevMode, offered, *m_pDocument);
        }
    }
    m_pTrayNote->setVisible(noTray);
}

void CMyPrintDialog::OnProperties()
{
    const int index = m_pPrinter->currentIndex();
    if (index < 0)
        return;
    QByteArray devMode = m_hDevMode.value_or(QByteArray());
    if (CPrinterPropertiesDlg::Run(this, m_printers[index].name, m_pPrinter->currentText(), &devMode))
        m_hDevMode = devMode;
}

QString CMyPrintDialog::SectionName() const
{
    return CPrinterSettings::SanitiseName(m_pPrinter->currentText());
}

void CMyPrintDialog::OnValueChanged(const QString& key, QSlider* slider, double* previewValue, const QString& text)
{
    // Stored as typed, not formatted: "2.5" stays "2.5". A value beyond the slider's range is
    // kept too, and leaves the slider at its end.
    Profile::WriteString(SectionName(), key, text);
    const double value = NumberText::ToDouble(text);
    slider->setValue(int(value * 100));
    *previewValue = value;
    m_pPreview->repaint();
}

void CMyPrintDialog::OnSliderAction(QSlider* slider, CSeekEdit* edit, int action)
{
    // A small step near an end does nothing: the step must fit twice over.
    const int pos = slider->value();
    const int min = slider->minimum();
    const int max = slider->maximum();
    int newPos = pos;
    switch (action) {
    case QAbstractSlider::SliderSingleStepSub: newPos = pos - 10 >= min ? pos - 5 : pos; break;
    case QAbstractSlider::SliderSingleStepAdd: newPos = pos + 10 <= max ? pos + 5 : pos; break;
    case QAbstractSlider::SliderPageStepSub: newPos = pos - 100 >= min ? pos - 20 : pos; break;
    case QAbstractSlider::SliderPageStepAdd: newPos = pos + 100 <= max ? pos + 20 : pos; break;
    case QAbstractSlider::SliderMove: newPos = slider->sliderPosition(); break;
    case QAbstractSlider::SliderToMinimum: newPos = min; break;
    case QAbstractSlider::SliderToMaximum: newPos = max; break;
    default: return;
    }
    slider->setSliderPosition(newPos);
    edit->SetText(TwoDecimals(newPos / 100.0));
}

void CMyPrintDialog::accept()
{
    const int index = m_pPrinter->currentIndex();
    if (index < 0 || !m_hDevNames)
        return;
    if (m_pCopies) {
        QByteArray devMode = m_hDevMode.value_or(QByteArray());
        DEVMODE::SetCopies(devMode, m_pCopies->value());
        m_hDevMode = devMode;
    }
    m_pd.hDevMode = m_hDevMode;
    m_pd.hDevNames = m_hDevNames;
    if (m_pPrintToFile) {
        if (m_pPrintToFile->isChecked())
            m_pd.Flags |= PRINTDLG::PD_PRINTTOFILE;
        else
            m_pd.Flags &= ~PRINTDLG::PD_PRINTTOFILE;
    }
    CToolTipDialog::accept();
}
