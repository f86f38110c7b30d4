#include "dialogs/CPrinterPropertiesDlg.h"

#include "platform/MessageBox.h"
#include "printing/DEVMODE.h"

#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QGroupBox>
#include <QLabel>
#include <QScreen>
#include <QScrollArea>
#include <QScrollBar>
#include <QVBoxLayout>

#include <algorithm>

namespace {

// Driver texts are shown as they are: an '&' in them is no mnemonic.
QString literal(QString text)
{
    return text.replace(QLatin1Char('&'), QLatin1String("&&"));
}

} // namespace

bool CPrinterPropertiesDlg::Run(QWidget* parent, const QString& queue, const QString& printerName,
                                QByteArray* devMode)
{
    QList<SpoolerChoice> options;
    if (!Spooler::GetOptionChoices(queue, &options)) {
        MessageBox::Show(QStringLiteral("Can't read the options of %1: %2").arg(printerName, Spooler::ErrorText()),
                         MessageBox::IconError);
        return false;
    }
    CPrinterPropertiesDlg dialog(parent, printerName, options, *devMode);
    if (dialog.exec() != QDialog::Accepted)
        return false;
    *devMode = dialog.Result();
    return true;
}

CPrinterPropertiesDlg::CPrinterPropertiesDlg(QWidget* parent, const QString& printerName,
                                             const QList<SpoolerChoice>& options, const QByteArray& devMode)
    : CToolTipDialog(parent), m_options(options), m_devMode(devMode)
{
    setWindowTitle(QStringLiteral("%1 Properties").arg(printerName));
    CreateControls();
}

void CPrinterPropertiesDlg::CreateControls()
{
    auto* layout = new QVBoxLayout(this);
    if (m_options.isEmpty()) {
        layout->addWidget(new QLabel(QStringLiteral("This printer has no options to set."), this));
    } else {
        auto* page = new QWidget;
        auto* pageLayout = new QVBoxLayout(page);
        QFormLayout* form = nullptr;
        QString group;
        QList<QLabel*> labels;
        for (const SpoolerChoice& option : m_options) {
            if (!form || option.group != group) {
                group = option.group;
                auto* box = new QGroupBox(literal(group), page);
                form = new QFormLayout(box);
                form->setFieldGrowthPolicy(QFormLayout::AllNonFixedFieldsGrow);
                pageLayout->addWidget(box);
            }
            auto* combo = new QComboBox(page);
            combo->setAccessibleName(option.label);
            combo->setSizeAdjustPolicy(QComboBox::AdjustToContents);
            for (const SpoolerChoice::Value& choice : option.choices)
                combo->addItem(choice.label, choice.keyword);
            int index = combo->findData(DEVMODE::Option(m_devMode, option.keyword));
            if (index < 0)
                index = combo->findData(option.defaultChoice);
            combo->setCurrentIndex(std::max(index, 0));
            auto* label = new QLabel(literal(option.label) + QLatin1Char(':'), page);
            label->setBuddy(combo);
            labels.append(label);
            form->addRow(label, combo);
            m_combos.append(combo);
            m_initial.append(combo->currentIndex());
        }
        pageLayout->addStretch();
        // The lists of every group start in one column.
        int labelWidth = 0;
        for (const QLabel* label : labels)
            labelWidth = std::max(labelWidth, label->sizeHint().width());
        for (QLabel* label : labels)
            label->setMinimumWidth(labelWidth);

        auto* scroll = new QScrollArea(this);
        scroll->setFrameShape(QFrame::NoFrame);
        scroll->setWidget(page);
        scroll->setWidgetResizable(true);
        scroll->setHorizontalScrollBarPolicy(Qt::ScrollBarAlwaysOff);
        // As tall as the options need, up to two thirds of the screen; wide enough that a
        // scroll bar never hides a list.
        const QSize wanted = page->sizeHint();
        const int frame = 2 * scroll->frameWidth();
        const int room = screen() ? screen()->availableGeometry().height() * 2 / 3 : 600;
        scroll->setMinimumWidth(wanted.width() + frame + scroll->verticalScrollBar()->sizeHint().width());
        scroll->setMinimumHeight(std::min(wanted.height() + frame, room));
        layout->addWidget(scroll);
    }
    auto* buttons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(buttons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(buttons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    layout->addWidget(buttons);
}

QByteArray CPrinterPropertiesDlg::Result() const
{
    QByteArray record = m_devMode;
    for (qsizetype i = 0; i < m_options.size(); ++i) {
        // A value the record holds that no list offers (set by hand, or by another driver of
        // the same name) stays unless the user picks another.
        const QString held = DEVMODE::Option(record, m_options[i].keyword);
        if (!held.isEmpty() && m_combos[i]->currentIndex() == m_initial[i])
            continue;
        const QString chosen = m_combos[i]->currentData().toString();
        DEVMODE::SetOption(record, m_options[i].keyword, chosen);
        // The list leaves out PageRegion, the size a driver uses for a page without a size of
        // its own; a record that holds one keeps it equal to the page size, as the driver expects.
        const QString region = QStringLiteral("PageRegion");
        if (m_options[i].keyword == QLatin1String("PageSize") && !DEVMODE::Option(record, region).isEmpty())
            DEVMODE::SetOption(record, region, chosen);
    }
    return record;
}
