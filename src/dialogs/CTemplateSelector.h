#pragma once

#include <QDialog>
#include <memory>

class CAutoEdit;
class CDrawDoc;
class CNumSpinCtrl;
class CRealValidate;
class CTemplateButton;
class QLabel;
class QLineEdit;
class QTreeWidget;

// The modal choice of a template from the document's list, with its preview (where a sheet's
// areas are clicked in and out of printing) and, for a sheet, the bleed around each label. A
// filter above the list hides the templates whose name lacks any of the typed words; each
// row's tooltip gives the paper's size and the number of label areas. OK hands the template
// and the bleed to the document; Cancel changes neither (areas clicked stay as clicked).
class CTemplateSelector : public QDialog {
    Q_OBJECT

public:
    explicit CTemplateSelector(QWidget* parent = nullptr);
    ~CTemplateSelector() override;

    // Before the dialog opens: the template chosen starts as the document's current one.
    void SetDocument(CDrawDoc* document);

    // The bleed in inches, and the template selected in the list.
    double Bleed = 0.0;
    int TemplateIndex = 0;

    void accept() override;

protected:
    void showEvent(QShowEvent* event) override;

private:
    // Reads the bleed and the units, fills the list and selects the current template.
    void OnInitDialog();
    void OnSelectionChanged();
    void OnBleedChanged(const QString& text);
    void OnFilterChanged(const QString& text);
    // The bleed's controls show for a sheet only. They follow the document's template, not
    // the row just selected, so they change when the dialog opens after OK has moved on.
    void ApplyBleedRule();

    CDrawDoc* Document = nullptr;
    // Checks the bleed's edit; made as the dialog opens.
    std::unique_ptr<CRealValidate> Validator;
    bool m_bInitialised = false;
    bool m_bMetric = false;
    bool m_bFiltering = false;

    QLineEdit* m_pFilter;
    QTreeWidget* m_pList;
    CTemplateButton* m_pPreview;
    QLabel* m_pBleedCaption;
    CAutoEdit* m_pBleedEdit;
    CNumSpinCtrl* m_pBleedSpin;
    QLabel* m_pBleedUnits;
};
