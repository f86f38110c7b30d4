#include "dialogs/CTemplateSelector.h"

#include "controls/CAutoEdit.h"
#include "controls/CNumSpinCtrl.h"
#include "controls/CRealValidate.h"
#include "controls/CToolTipDialog.h"
#include "dialogs/CTemplateButton.h"
#include "document/CDrawDoc.h"
#include "platform/NumberText.h"
#include "platform/Profile.h"
#include "templates/CTemplateFile.h"

#include <QDialogButtonBox>
#include <QGridLayout>
#include <QHBoxLayout>
#include <QHeaderView>
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTreeWidget>
#include <QVBoxLayout>

#include <algorithm>

namespace {

constexpr double MillimetresPerInch = 25.4;

// The paper and its areas in the user's units, for a row's tooltip.
QString Description(const CTemplateFile& file, bool metric)
{
    const QString size = metric ? QStringLiteral("%1 x %2 mm")
                                      .arg(file.PaperWidth * MillimetresPerInch, 0, 'f', 1)
                                      .arg(file.PaperHeight * MillimetresPerInch, 0, 'f', 1)
                                : QStringLiteral("%1 x %2 inches")
                                      .arg(file.PaperWidth, 0, 'f', 3)
                                      .arg(file.PaperHeight, 0, 'f', 3);
    const int areas = int(file.Objects.size());
    return QStringLiteral("%1, %2 label %3").arg(size).arg(areas).arg(areas == 1 ? QStringLiteral("area") : QStringLiteral("areas"));
}

} // namespace

CTemplateSelector::CTemplateSelector(QWidget* parent)
    : QDialog(parent)
{
    setWindowTitle(QStringLiteral("Select Template"));

    m_pFilter = new QLineEdit(this);
    m_pFilter->setPlaceholderText(QStringLiteral("Filter"));
    m_pFilter->setAccessibleName(QStringLiteral("Filter"));
    m_pFilter->setToolTip(QStringLiteral("Shows only the templates whose name holds every word typed here"));

    m_pList = new QTreeWidget(this);
    SetControlId(m_pList, 1130);
    m_pList->setColumnCount(1);
    m_pList->setHeaderLabels({QStringLiteral("Template")});
    m_pList->header()->setStretchLastSection(true);
    m_pList->setRootIsDecorated(false);
    m_pList->setSelectionMode(QAbstractItemView::SingleSelection);
    m_pList->setSelectionBehavior(QAbstractItemView::SelectRows);
    m_pList->setAccessibleName(QStringLiteral("Template"));

    m_pPreview = new CTemplateButton(this);
    SetControlId(m_pPreview, 1244);
    m_pPreview->setFixedSize(150, 190);
    m_pPreview->setToolTip(QStringLiteral("Click a label area to print on it or to leave it out"));

    m_pBleedCaption = new QLabel(QStringLiteral("Bleed:"), this);
    m_pBleedEdit = new CAutoEdit(this);
    SetControlId(m_pBleedEdit, 1248);
    m_pBleedEdit->SetCaption(m_pBleedCaption);
    m_pBleedEdit->setFixedWidth(m_pBleedEdit->fontMetrics().horizontalAdvance(QStringLiteral("000000")) + 12);
    m_pBleedSpin = new CNumSpinCtrl(this);
    SetControlId(m_pBleedSpin, 1249);
    m_pBleedSpin->setAccessibleName(QStringLiteral("Bleed"));
    m_pBleedUnits = new QLabel(this);
    SetControlId(m_pBleedUnits, 1254);

    auto* buttons = new QDialogButtonBox(this);
    buttons->addButton(QStringLiteral("OK"), QDialogButtonBox::AcceptRole)->setDefault(true);
    buttons->addButton(QStringLiteral("Cancel"), QDialogButtonBox::RejectRole);
    connect(buttons, &QDialogButtonBox::accepted, this, &CTemplateSelector::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &CTemplateSelector::reject);

    auto* bleed = new QHBoxLayout;
    bleed->addWidget(m_pBleedCaption);
    bleed->addWidget(m_pBleedEdit);
    bleed->addWidget(m_pBleedSpin);
    bleed->addWidget(m_pBleedUnits);
    bleed->addStretch();
    auto* side = new QVBoxLayout;
    side->addWidget(m_pPreview);
    side->addLayout(bleed);
    side->addStretch();
    auto* grid = new QGridLayout(this);
    grid->addWidget(m_pFilter, 0, 0);
    grid->addWidget(m_pList, 1, 0);
    grid->addLayout(side, 0, 1, 2, 1);
    grid->addWidget(buttons, 2, 0, 1, 2);
    grid->setColumnStretch(0, 1);
    resize(520, 320);

    connect(m_pList, &QTreeWidget::itemSelectionChanged, this, &CTemplateSelector::OnSelectionChanged);
    connect(m_pFilter, &QLineEdit::textChanged, this, &CTemplateSelector::OnFilterChanged);
}

CTemplateSelector::~CTemplateSelector() = default;

void CTemplateSelector::SetDocument(CDrawDoc* document)
{
    Document = document;
    TemplateIndex = document ? document->GetTemplate() : 0;
}

void CTemplateSelector::showEvent(QShowEvent* event)
{
    if (!m_bInitialised) {
        m_bInitialised = true;
        OnInitDialog();
    }
    QDialog::showEvent(event);
}

void CTemplateSelector::OnInitDialog()
{
    m_pBleedEdit->SetLimit(5);
    m_pBleedEdit->SetAllowedChars(QStringLiteral(".0123456789"));
    Validator = std::make_unique<CRealValidate>();
    m_pBleedEdit->SetValidator(Validator.get());
    m_pBleedEdit->SetDefaultText(QStringLiteral("0"));
    m_pBleedSpin->SetBuddy(m_pBleedEdit);

    Bleed = Document ? Document->GetTemplateBleed() : 0.0;
    m_bMetric = Profile::GetInt(QStringLiteral("Settings"), QStringLiteral("Units"), 1) == 0;
    if (m_bMetric) {
        m_pBleedEdit->setText(QString::asprintf("%3.1f", Bleed * MillimetresPerInch));
        m_pBleedSpin->SetDecimals(1);
        m_pBleedSpin->SetRangeAndDelta(0, 10.0, 0.1);
        m_pBleedUnits->setText(QStringLiteral("mm"));
    } else {
        m_pBleedEdit->setText(QString::asprintf("%0.3f", Bleed));
        m_pBleedSpin->SetDecimals(3);
        m_pBleedSpin->SetRangeAndDelta(0, 0.5, 0.01);
        m_pBleedUnits->setText(QStringLiteral("inches"));
    }
    // Only what the user types or steps becomes the bleed: the text shown at the start is the
    // document's value rounded, and OK without a change must not move the bleed by that.
    connect(m_pBleedEdit, &QLineEdit::textChanged, this, &CTemplateSelector::OnBleedChanged);

    m_pPreview->SetDocument(Document);
    ApplyBleedRule();

    const int count = Document ? Document->GetTemplateCount() : 0;
    const int wanted = TemplateIndex;
    QTreeWidgetItem* current = nullptr;
    for (int i = 0; i < count; ++i) {
        const CTemplateFile* file = Document->GetTemplateFile(i);
        auto* item = new QTreeWidgetItem(m_pList, {file->TemplateName});
        item->setData(0, Qt::UserRole, i);
        item->setToolTip(0, Description(*file, m_bMetric));
        if (i == wanted)
            current = item;
    }
    if (current) {
        m_pList->setCurrentItem(current);
        m_pList->scrollToItem(current);
    }
    TemplateIndex = wanted;
    m_pPreview->SetTemplateIndex(TemplateIndex);
    CToolTipDialog::AddToolTips(this);
}

void CTemplateSelector::OnSelectionChanged()
{
    if (m_bFiltering)
        return;
    const QList<QTreeWidgetItem*> selected = m_pList->selectedItems();
    if (!selected.isEmpty()) {
        TemplateIndex = selected.front()->data(0, Qt::UserRole).toInt();
        m_pPreview->SetTemplateIndex(TemplateIndex);
    }
    ApplyBleedRule();
}

void CTemplateSelector::ApplyBleedRule()
{
    const bool sheet = Document && !Document->IsPrinterTemplate();
    for (QWidget* widget : {static_cast<QWidget*>(m_pBleedEdit), static_cast<QWidget*>(m_pBleedSpin),
                            static_cast<QWidget*>(m_pBleedCaption), static_cast<QWidget*>(m_pBleedUnits)}) {
        widget->setEnabled(sheet);
        widget->setVisible(sheet);
    }
}

void CTemplateSelector::OnBleedChanged(const QString& text)
{
    const double value = NumberText::ToDouble(text);
    Bleed = m_bMetric ? value / MillimetresPerInch : value;
}

void CTemplateSelector::OnFilterChanged(const QString& text)
{
    const QStringList words = text.split(QLatin1Char(' '), Qt::SkipEmptyParts);
    // Hiding rows may move the list's current row; the choice stays the user's.
    m_bFiltering = true;
    for (int i = 0; i < m_pList->topLevelItemCount(); ++i) {
        QTreeWidgetItem* item = m_pList->topLevelItem(i);
        const QString name = item->text(0);
        const bool shown = std::all_of(words.begin(), words.end(), [&name](const QString& word) {
            return name.contains(word, Qt::CaseInsensitive);
        });
        item->setHidden(!shown);
    }
    m_bFiltering = false;
}

void CTemplateSelector::accept()
{
    if (Document) {
        Document->SetTemplate(TemplateIndex);
        Document->SetTemplateBleed(Bleed);
    }
    QDialog::accept();
}
