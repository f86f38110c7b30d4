#include "panels/CSubForm1_2.h"

#include "controls/CToolTipDialog.h"
#include "dialogs/CTemplateButton.h"
#include "dialogs/CTemplateSelector.h"
#include "document/CDrawDoc.h"
#include "panels/PanelSupport.h"
#include "templates/CTemplateFile.h"
#include "view/CNetworkView.h"

#include <QComboBox>
#include <QLabel>
#include <QPushButton>
#include <QVBoxLayout>

CSubForm1_2::CSubForm1_2(QWidget* parent)
    : QDialog(parent)
{
    setWindowFlags(Qt::Widget);
    m_pSelectTemplate = new QPushButton(QStringLiteral("Select Template"), this);
    SetControlId(m_pSelectTemplate, 1057);
    m_pSelectTemplate->setAutoDefault(false);
    m_pPreview = new CTemplateButton(this);
    SetControlId(m_pPreview, 1244);
    m_pPreview->setToolTip(QStringLiteral("Click a label area to print on it or to leave it out"));
    m_pPreview->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Expanding);
    auto* caption = new QLabel(QStringLiteral("Label:"), this);
    m_pLabels = new QComboBox(this);
    SetControlId(m_pLabels, 1245);
    caption->setBuddy(m_pLabels);
    m_pLabels->setAccessibleName(QStringLiteral("Label"));

    auto* layout = new QVBoxLayout(this);
    layout->addWidget(m_pSelectTemplate);
    layout->addWidget(m_pPreview, 1);
    layout->addWidget(caption);
    layout->addWidget(m_pLabels);
    setFixedSize(PanelSupport::DialogUnitsToPixels(font(), 128, 154));
    CToolTipDialog::AddToolTips(this);

    connect(m_pLabels, &QComboBox::activated, this, &CSubForm1_2::OnLabelChosen);
    connect(m_pSelectTemplate, &QPushButton::clicked, this, &CSubForm1_2::OnSelectTemplate);
}

void CSubForm1_2::SetView(CNetworkView* view)
{
    m_pView = view;
    m_pPreview->SetDocument(view ? view->GetDocument() : nullptr);
    RebuildLabels();
}

void CSubForm1_2::RebuildLabels()
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    m_pLabels->clear();
    m_pPreview->SetTemplateIndex(document->GetTemplate());
    int previous = 0;
    for (int i = 0; i < document->GetObjectCount(); ++i) {
        const CTemplateObject* record = document->GetObject(i);
        // The entry carries the label it stands for, which a template listing its areas out of
        // order would otherwise confuse with the entry's place.
        if (record->LabelNumber != previous)
            m_pLabels->addItem(record->ObjectName, record->LabelNumber - 1);
        previous = record->LabelNumber;
    }
    document->SetCurLabel(0);
    m_pLabels->setCurrentIndex(0);
    FitCanvas();
}

void CSubForm1_2::OnLabelChosen(int index)
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document || index < 0)
        return;
    document->SetCurLabel(m_pLabels->itemData(index).toInt());
    FitCanvas();
}

void CSubForm1_2::FitCanvas()
{
    m_pView->SetLogicalSizes();
    m_pView->ZoomFull();
    m_pView->viewport()->update();
}

void CSubForm1_2::OnSelectTemplate()
{
    CDrawDoc* document = m_pView ? m_pView->GetDocument() : nullptr;
    if (!document)
        return;
    CTemplateSelector selector(this);
    selector.SetDocument(document);
    if (selector.exec() != QDialog::Accepted)
        return;
    RebuildLabels();
    emit templateChanged();
}
