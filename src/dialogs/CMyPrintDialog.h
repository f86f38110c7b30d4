#pragma once

#include "controls/CToolTipDialog.h"
#include "platform/Spooler.h"
#include "printing/PRINTDLG.h"

#include <QList>
#include <memory>

class CAdjustColorButton;
class CDrawDoc;
class CRealValidate;
class CSeekEdit;
class QCheckBox;
class QComboBox;
class QLabel;
class QPushButton;
class QSlider;
class QSpinBox;

// The print dialog over the spooler's queues: the printer, its own options under
// "Properties", the number of discs and print to file, and beside them a picture of what will
// print with the printer's gamma and saturation, which are stored for the printer as they
// change. Without a document it is the printer set-up dialog: printer and Properties alone.
// It starts on the printer that the records of m_pd name and hands the chosen printer's
// records back in m_pd on OK.
class CMyPrintDialog : public CToolTipDialog {
    Q_OBJECT

public:
    // The print dialog starts on the application's printer; the set-up dialog on the records
    // given in m_pd.
    enum Kind { Print, Setup };

    explicit CMyPrintDialog(Kind kind, QWidget* parent = nullptr);
    ~CMyPrintDialog() override;

    // The set-up dialog over pd, as the printer settings call it: true on OK, pd then holding
    // the chosen printer's records.
    static bool RunSetup(PRINTDLG& pd, QObject* parent);

    // Set before the dialog runs; the print dialog shows its label.
    void SetDocument(CDrawDoc* document) { m_pDocument = document; }

    // Asks the spooler for its queues first: without any, says so and answers Rejected.
    int exec() override;
    void accept() override;

    PRINTDLG m_pd;

private:
    // Fills the printer list and, for printing, the preview and the two values; false when
    // there is no printer to choose.
    bool OnInitDialog();
    void BuildPreview();
    void OnPrinterChanged(int index);
    // For a disc template, puts the queue's disc tray into the record shown, so that Properties
    // shows it, or notes that the queue has none.
    void PutDiscTray(const QString& queue);
    void OnProperties();
    // A change of an edit's text stores it under the key for the printer in the combo box, as
    // it stands, and moves the slider and the preview to it.
    void OnValueChanged(const QString& key, QSlider* slider, double* previewValue, const QString& text);
    void OnSliderAction(QSlider* slider, CSeekEdit* edit, int action);
    QString SectionName() const;

    Kind m_nKind;
    CDrawDoc* m_pDocument = nullptr;
    QList<SpoolerPrinter> m_printers;
    // The records of the printer shown, as Properties leaves them.
    HGLOBAL m_hDevMode;
    HGLOBAL m_hDevNames;

    QComboBox* m_pPrinter;
    QPushButton* m_pOk;
    QLabel* m_pStatus;
    QLabel* m_pType;
    QLabel* m_pWhere;
    QLabel* m_pTrayNote;
    QCheckBox* m_pPrintToFile = nullptr;
    QSpinBox* m_pCopies = nullptr;
    CAdjustColorButton* m_pPreview = nullptr;
    QSlider* m_pGammaSlider = nullptr;
    CSeekEdit* m_pGammaEdit = nullptr;
    QSlider* m_pSaturationSlider = nullptr;
    CSeekEdit* m_pSaturationEdit = nullptr;
    std::unique_ptr<CRealValidate> m_pGammaValidate;
    std::unique_ptr<CRealValidate> m_pSaturationValidate;
};
