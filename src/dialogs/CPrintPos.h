#pragma once

#include "controls/CToolTipDialog.h"

#include <memory>

class CAutoEdit;
class CDrawDoc;
class CNumSpinCtrl;
class CPrintPosButton;
class CPrintView;
class CRealValidate;
class QCloseEvent;
class QLabel;
class QPushButton;

// "Calibrate Print Position": the offsets of the printer's section (XOffset, YOffset, in
// 1/100000 inch biased by 27000) in the user's units, each axis with a preview of the
// alignment images' scale, and the alignment print that puts them on a disc. OK writes both
// offsets; Cancel writes nothing, though an alignment print has already set both to no
// correction.
class CPrintPos : public CToolTipDialog {
    Q_OBJECT

public:
    // The profile's offsets are read at once.
    explicit CPrintPos(CPrintView& view, QWidget* parent = nullptr);
    ~CPrintPos() override;

    // Opens the dialog modally for the document's printer and answers how it ended. Without a
    // printer chosen it says so and answers Rejected without opening.
    static int Run(CPrintView& view, QWidget* parent = nullptr);

    static const QString NoPrinterMessage;
    static const QString PrintErrorMessage;
    static const QString TurnDiscMessage;

    void accept() override;
    void reject() override;

protected:
    // The dialog can't be closed while its alignment print is under way.
    void closeEvent(QCloseEvent* event) override;

private:
    // Shows the profile's offsets in the user's units.
    void LoadOffsets();
    void OnOffsetChanged(CNumSpinCtrl* spin, CPrintPosButton* preview);
    void OnPrintAlignment();
    // Prints the picture of the install directory and waits for it; false when nothing came of it.
    bool PrintAndWait(const QString& picture);
    void SetPrinting(bool printing);
    // The spin's value in inches, within the offsets' range.
    double Inches(const CNumSpinCtrl* spin) const;

    CPrintView& m_view;
    CDrawDoc* m_pDocument;
    QString m_strPrinter;
    bool m_bMetric = false;
    bool m_bPrinting = false;
    std::unique_ptr<CRealValidate> m_pValidator;

    QLabel* m_pPrinterName;
    CPrintPosButton* m_pXPreview;
    CPrintPosButton* m_pYPreview;
    CAutoEdit* m_pXEdit;
    CAutoEdit* m_pYEdit;
    CNumSpinCtrl* m_pXSpin;
    CNumSpinCtrl* m_pYSpin;
    QLabel* m_pXUnits;
    QLabel* m_pYUnits;
    QPushButton* m_pPrintButton;
    QPushButton* m_pOkButton;
    QPushButton* m_pCancelButton;
};
