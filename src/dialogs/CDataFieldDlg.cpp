#include "dialogs/CDataFieldDlg.h"

#include "controls/CAutoEdit.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CToolTipDialog.h"
#include "fields/DataFields.h"
#include "platform/Folders.h"
#include "platform/NumberText.h"

#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFileDialog>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QRadioButton>

#include <limits>

namespace {

const char* const KindLabels[] = {"Year", "Month", "Day", "Time", "Disc", "Serial Number", "Data File"};

// A 64-bit number as the C runtime reads one: blanks, a sign, digits, and the rest ignored;
// beyond the range it stops at the end that was passed.
std::int64_t ToInt64(const QString& text)
{
    qsizetype i = 0;
    while (i < text.size() && (text[i] == u' ' || text[i] == u'\t'))
        ++i;
    bool negative = false;
    if (i < text.size() && (text[i] == u'+' || text[i] == u'-'))
        negative = text[i++] == u'-';
    constexpr std::uint64_t Limit = std::uint64_t(std::numeric_limits<std::int64_t>::max());
    std::uint64_t value = 0;
    bool overflow = false;
    for (; i < text.size() && text[i].isDigit() && text[i].unicode() < 128; ++i) {
        const unsigned digit = text[i].unicode() - u'0';
        if (value > (Limit + negative - digit) / 10)
            overflow = true;
        else
            value = value * 10 + digit;
    }
    if (overflow)
        return negative ? std::numeric_limits<std::int64_t>::min() : std::numeric_limits<std::int64_t>::max();
    return negative ? std::int64_t(0 - value) : std::int64_t(value);
}

QString Unsigned(std::uint32_t value)
{
    return QString::number(value);
}

} // namespace

CDataFieldDlg::CDataFieldDlg(QWidget* parent) : QDialog(parent)
{
    m_field.Tag = QStringLiteral("/*TAG%1*/").arg(g_dataFields.size() + 1);
    CreateControls();
    LoadControls();
}

CDataFieldDlg::CDataFieldDlg(const DATAFIELD& field, QWidget* parent) : QDialog(parent), m_field(field)
{
    m_nKind = field.Type;
    CreateControls();
    LoadControls();
}

CAutoEdit* CDataFieldDlg::NumberEdit(const QString& name)
{
    auto* edit = new CAutoEdit(this);
    edit->setObjectName(name);
    edit->setAccessibleName(name);
    edit->SetAllowedChars(QStringLiteral("0123456789"));
    // Room for the longest number a field holds, twenty digits.
    edit->setMaximumWidth(edit->fontMetrics().horizontalAdvance(QString(21, QLatin1Char('0'))));
    connect(edit, &QLineEdit::textChanged, this, [this, edit] { OnNumber(edit); });
    return edit;
}

void CDataFieldDlg::CreateControls()
{
    setWindowTitle(QStringLiteral("Data Field"));
    auto* grid = new QGridLayout(this);

    auto* labelCaption = new QLabel(QStringLiteral("Field &Label:"), this);
    m_pLabel = new QLineEdit(this);
    labelCaption->setBuddy(m_pLabel);
    m_pLabel->setAccessibleName(QStringLiteral("Field Label:"));
    grid->addWidget(labelCaption, 0, 0);
    grid->addWidget(m_pLabel, 0, 1, 1, 3);
    connect(m_pLabel, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_bLoading)
            m_field.Tag = text;
    });

    for (int kind = 0; kind < 7; ++kind) {
        m_pKinds[kind] = new QRadioButton(QString::fromLatin1(KindLabels[kind]), this);
        grid->addWidget(m_pKinds[kind], kind + 1, 0);
        connect(m_pKinds[kind], &QRadioButton::clicked, this, [this, kind] { OnKind(kind); });
    }

    const auto check = [this](const QString& caption, int32_t DATAFIELD::*flag) {
        auto* box = new QCheckBox(caption, this);
        connect(box, &QCheckBox::clicked, this, [this, flag](bool checked) { m_field.*flag = checked ? 1 : 0; });
        return box;
    };
    m_pTwoDigit = check(QStringLiteral("Two digit"), &DATAFIELD::TwoDigitYear);
    m_pMonthNames = check(QStringLiteral("Names"), &DATAFIELD::MonthNames);
    m_pMonthNames->setObjectName(QStringLiteral("MonthNames"));
    m_pDayNames = check(QStringLiteral("Names"), &DATAFIELD::DayNames);
    m_pDayNames->setObjectName(QStringLiteral("DayNames"));
    m_pHours24 = check(QStringLiteral("24 hours"), &DATAFIELD::Hours24);
    m_pSeconds = check(QStringLiteral("Seconds"), &DATAFIELD::ShowSeconds);
    // Two boxes read "Names": screen readers tell them apart by what they name.
    m_pMonthNames->setAccessibleName(QStringLiteral("Month Names"));
    m_pDayNames->setAccessibleName(QStringLiteral("Day Names"));
    grid->addWidget(m_pTwoDigit, 1, 1);
    grid->addWidget(m_pMonthNames, 2, 1);
    grid->addWidget(m_pDayNames, 3, 1);
    grid->addWidget(m_pHours24, 4, 1);
    grid->addWidget(m_pSeconds, 4, 2);

    m_pDiscNumber = NumberEdit(QStringLiteral("Disc Number"));
    m_pDiscTotal = NumberEdit(QStringLiteral("Disc Total"));
    auto* disc = new QHBoxLayout;
    disc->addWidget(m_pDiscNumber);
    disc->addWidget(new QLabel(QStringLiteral("of"), this));
    disc->addWidget(m_pDiscTotal);
    disc->addStretch(1);
    grid->addLayout(disc, 5, 1, 1, 2);

    m_pSerial = NumberEdit(QStringLiteral("Serial Number Value"));
    m_pSerialIncrement = NumberEdit(QStringLiteral("Serial Increment"));
    m_pSerialIncrementSpin = new CNumSpinCtrl(this);
    m_pSerialIncrementSpin->SetBuddy(m_pSerialIncrement);
    m_pSerialIncrementSpin->SetDecimals(0);
    m_pSerialIncrementSpin->SetRangeAndDelta(1, 2147483647, 1);
    auto* serialIncrementCaption = new QLabel(QStringLiteral("Increment by:"), this);
    m_pSerialIncrement->SetCaption(serialIncrementCaption);
    m_pSerialIncrement->setAccessibleName(QStringLiteral("Serial Increment by:"));
    m_pSerialIncrementSpin->setAccessibleName(QStringLiteral("Serial Increment"));
    auto* serial = new QHBoxLayout;
    serial->addWidget(serialIncrementCaption);
    serial->addWidget(m_pSerialIncrement);
    serial->addWidget(m_pSerialIncrementSpin);
    serial->addStretch(1);
    grid->addWidget(m_pSerial, 6, 1);
    grid->addLayout(serial, 6, 2, 1, 2);

    m_pFileName = new QLineEdit(this);
    m_pFileName->setAccessibleName(QStringLiteral("Data File Name"));
    connect(m_pFileName, &QLineEdit::textChanged, this, [this](const QString& text) {
        if (!m_bLoading)
            m_field.FileName = text;
    });
    m_pBrowse = new QPushButton(QStringLiteral("Browse"), this);
    connect(m_pBrowse, &QPushButton::clicked, this, &CDataFieldDlg::OnBrowse);
    grid->addWidget(m_pFileName, 7, 1, 1, 2);
    grid->addWidget(m_pBrowse, 7, 3);

    auto* delimiterCaption = new QLabel(QStringLiteral("Delimiter:"), this);
    m_pDelimiter = new QComboBox(this);
    m_pDelimiter->addItems({QStringLiteral("Line"), QStringLiteral("Comma(,)"), QStringLiteral("Semi-Colon(;)")});
    delimiterCaption->setBuddy(m_pDelimiter);
    m_pDelimiter->setAccessibleName(QStringLiteral("Delimiter:"));
    connect(m_pDelimiter, &QComboBox::currentIndexChanged, this, [this](int index) {
        if (!m_bLoading)
            m_field.Delimiter = index;
    });
    m_pFileIndex = NumberEdit(QStringLiteral("Start Index"));
    m_pFileIndexSpin = new CNumSpinCtrl(this);
    m_pFileIndexSpin->SetBuddy(m_pFileIndex);
    m_pFileIndexSpin->SetDecimals(0);
    m_pFileIndexSpin->SetRangeAndDelta(0, 9999, 1);
    auto* indexCaption = new QLabel(QStringLiteral("Start Index:"), this);
    m_pFileIndex->SetCaption(indexCaption);
    m_pFileIndexSpin->setAccessibleName(QStringLiteral("Start Index"));
    m_pFileIncrement = NumberEdit(QStringLiteral("File Increment"));
    m_pFileIncrementSpin = new CNumSpinCtrl(this);
    m_pFileIncrementSpin->SetBuddy(m_pFileIncrement);
    m_pFileIncrementSpin->SetDecimals(0);
    m_pFileIncrementSpin->SetRangeAndDelta(1, 9999, 1);
    auto* fileIncrementCaption = new QLabel(QStringLiteral("Increment by:"), this);
    m_pFileIncrement->SetCaption(fileIncrementCaption);
    m_pFileIncrement->setAccessibleName(QStringLiteral("File Increment by:"));
    m_pFileIncrementSpin->setAccessibleName(QStringLiteral("File Increment"));
    auto* file = new QHBoxLayout;
    file->addWidget(delimiterCaption);
    file->addWidget(m_pDelimiter);
    file->addSpacing(8);
    file->addWidget(indexCaption);
    file->addWidget(m_pFileIndex);
    file->addWidget(m_pFileIndexSpin);
    file->addSpacing(8);
    file->addWidget(fileIncrementCaption);
    file->addWidget(m_pFileIncrement);
    file->addWidget(m_pFileIncrementSpin);
    file->addStretch(1);
    grid->addLayout(file, 8, 1, 1, 3);

    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    m_pOk = buttons->button(QDialogButtonBox::Ok);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    grid->addWidget(buttons, 9, 0, 1, 4);
    grid->setColumnStretch(1, 1);
    grid->setColumnStretch(2, 1);

    CToolTipDialog::AddToolTips(this);
}

void CDataFieldDlg::LoadControls()
{
    m_bLoading = true;
    m_pLabel->setText(m_field.Tag);
    m_pDiscNumber->setText(Unsigned(m_field.DiscNumber));
    m_pDiscTotal->setText(Unsigned(m_field.DiscTotal));
    // Only the low 32 bits show; a larger serial number stays whole in the field until this
    // edit is changed.
    m_pSerial->setText(Unsigned(std::uint32_t(m_field.Serial)));
    m_pSerialIncrementSpin->SetValue(m_field.SerialIncrement);
    m_pFileIndexSpin->SetValue(m_field.FileIndex);
    m_pFileIncrementSpin->SetValue(m_field.FileIncrement);
    m_pFileName->setText(m_field.FileName);
    m_pTwoDigit->setChecked(m_field.TwoDigitYear != 0);
    m_pMonthNames->setChecked(m_field.MonthNames != 0);
    m_pDayNames->setChecked(m_field.DayNames != 0);
    m_pHours24->setChecked(m_field.Hours24 != 0);
    m_pSeconds->setChecked(m_field.ShowSeconds != 0);
    m_pDelimiter->setCurrentIndex(m_field.Delimiter >= 0 && m_field.Delimiter <= 2 ? m_field.Delimiter : -1);
    if (m_nKind >= 0 && m_nKind < 7)
        m_pKinds[m_nKind]->setChecked(true);
    EnableControls();
    m_bLoading = false;
}

void CDataFieldDlg::EnableControls()
{
    const int kind = m_nKind;
    m_pOk->setEnabled(kind >= 0 && kind < 7);
    m_pTwoDigit->setEnabled(kind == DATAFIELD::Year);
    m_pMonthNames->setEnabled(kind == DATAFIELD::Month);
    m_pDayNames->setEnabled(kind == DATAFIELD::Day);
    m_pHours24->setEnabled(kind == DATAFIELD::Time);
    m_pSeconds->setEnabled(kind == DATAFIELD::Time);
    m_pDiscNumber->setEnabled(kind == DATAFIELD::Disc);
    m_pDiscTotal->setEnabled(kind == DATAFIELD::Disc);
    for (QWidget* widget : {static_cast<QWidget*>(m_pSerial), static_cast<QWidget*>(m_pSerialIncrement),
                            static_cast<QWidget*>(m_pSerialIncrementSpin)})
        widget->setEnabled(kind == DATAFIELD::SerialNumber);
    for (QWidget* widget : {static_cast<QWidget*>(m_pFileName), static_cast<QWidget*>(m_pBrowse),
                            static_cast<QWidget*>(m_pDelimiter), static_cast<QWidget*>(m_pFileIndex),
                            static_cast<QWidget*>(m_pFileIndexSpin), static_cast<QWidget*>(m_pFileIncrement),
                            static_cast<QWidget*>(m_pFileIncrementSpin)})
        widget->setEnabled(kind == DATAFIELD::DataFile);
}

void CDataFieldDlg::OnKind(int kind)
{
    m_nKind = kind;
    m_field.Type = kind;
    // The kind takes over what its controls show, whatever it held before.
    switch (kind) {
    case DATAFIELD::Year:
        m_field.TwoDigitYear = m_pTwoDigit->isChecked();
        break;
    case DATAFIELD::Month:
        m_field.MonthNames = m_pMonthNames->isChecked();
        break;
    case DATAFIELD::Day:
        m_field.DayNames = m_pDayNames->isChecked();
        break;
    case DATAFIELD::Time:
        m_field.Hours24 = m_pHours24->isChecked();
        break;
    case DATAFIELD::Disc:
        m_field.DiscNumber = std::uint32_t(NumberText::ToInt(m_pDiscNumber->text()));
        m_field.DiscTotal = std::uint32_t(NumberText::ToInt(m_pDiscTotal->text()));
        break;
    case DATAFIELD::SerialNumber:
        m_field.Serial = std::uint64_t(ToInt64(m_pSerial->text()));
        m_field.SerialIncrement = std::uint32_t(NumberText::ToInt(m_pSerialIncrement->text()));
        break;
    case DATAFIELD::DataFile:
        m_field.FileName = m_pFileName->text();
        m_field.Delimiter = m_pDelimiter->currentIndex();
        m_field.FileIndex = std::uint32_t(NumberText::ToInt(m_pFileIndex->text()));
        m_field.FileIncrement = std::uint32_t(NumberText::ToInt(m_pFileIncrement->text()));
        break;
    default:
        break;
    }
    EnableControls();
}

void CDataFieldDlg::OnNumber(QLineEdit* edit)
{
    if (m_bLoading)
        return;
    const QString text = edit->text();
    if (edit == m_pSerial)
        m_field.Serial = std::uint64_t(ToInt64(text));
    else if (edit == m_pDiscNumber)
        m_field.DiscNumber = std::uint32_t(NumberText::ToInt(text));
    else if (edit == m_pDiscTotal)
        m_field.DiscTotal = std::uint32_t(NumberText::ToInt(text));
    else if (edit == m_pSerialIncrement)
        m_field.SerialIncrement = std::uint32_t(NumberText::ToInt(text));
    else if (edit == m_pFileIndex)
        m_field.FileIndex = std::uint32_t(NumberText::ToInt(text));
    else if (edit == m_pFileIncrement)
        m_field.FileIncrement = std::uint32_t(NumberText::ToInt(text));
}

void CDataFieldDlg::OnBrowse()
{
    QFileDialog dialog(this, QString(), Folders::GetSpecialFolder(QStringLiteral("Personal")),
                       QStringLiteral("Data file (*)"));
    dialog.setFileMode(QFileDialog::ExistingFile);
    dialog.setAcceptMode(QFileDialog::AcceptOpen);
    dialog.resize(600, 400);
    if (dialog.exec() != QDialog::Accepted || dialog.selectedFiles().isEmpty())
        return;
    // The edit's change handler takes the path into the field.
    m_pFileName->setText(dialog.selectedFiles().front());
}
