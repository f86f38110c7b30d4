#pragma once

#include <QDialog>

class CNetworkView;
class CTemplateButton;
class QComboBox;
class QPushButton;

// The sheet panel: the sheet's preview, in which the areas to print are clicked on and off,
// the choice of the label that the canvas shows, and the template selection.
class CSubForm1_2 : public QDialog {
    Q_OBJECT

public:
    explicit CSubForm1_2(QWidget* parent = nullptr);

    // The view whose document the panel shows; lists the labels of its template.
    void SetView(CNetworkView* view);
    // Lists the labels of the document's template (a run of areas of one label is one entry),
    // shows the sheet, and makes the first label current, fitting the canvas to it.
    void RebuildLabels();

signals:
    // A template was chosen in the selection dialog: the window chooses the template panel
    // that suits it and lays itself out again.
    void templateChanged();

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

private:
    void OnLabelChosen(int index);
    void OnSelectTemplate();
    void FitCanvas();

    CNetworkView* m_pView = nullptr;
    QPushButton* m_pSelectTemplate;
    CTemplateButton* m_pPreview;
    QComboBox* m_pLabels;
};
