#pragma once

#include "controls/CToolTipDialog.h"

#include <array>
#include <memory>

class CAutoEdit;
class CDrawDoc;
class CNetworkView;
class CNumSpinCtrl;
class CRealValidate;
class QComboBox;
class QLabel;
class QPushButton;
class QSlider;

// The disc panel of a printer's tray: the disc's size from the tray's list of sizes, or its
// inner, outer and business-card edge diameters typed, stepped or slid; and the template
// selection. Sizes the user chose are also kept for the printer, so its next start shows them;
// sizes only shown are not written back.
class CSubForm1_1 : public CToolTipDialog {
    Q_OBJECT

public:
    explicit CSubForm1_1(QWidget* parent = nullptr);
    ~CSubForm1_1() override;

    // The view whose document the panel edits; shows the document's units and diameters.
    void SetView(CNetworkView* view);

    // The spins' ranges and the unit texts for the Units setting, as it is now.
    void LoadUnits();
    // The document's three diameters into the edits (the edge first, then the outer and the
    // inner) and the sizes of the template into the list; what follows from the edits (the
    // sliders, the matching size, the canvas's size) is brought up to date, but nothing is
    // kept for the printer.
    void LoadFromDocument();

    // A diameter in inches as the user reads it: "%3.1f" millimetres for Units 0, "%1.3f"
    // inches for Units 1, nothing for any other value. And back: text in the user's unit, as
    // inches (0 for another unit, and for text that is no finite number).
    static QString FormatDiameter(double inches);
    static double ParseDiameter(const QString& text);

protected:
    // Escape in a panel leaves it showing: a panel is no dialog to be cancelled.
    void reject() override {}

signals:
    // A template was chosen in the selection dialog: the window chooses the template panel
    // that suits it and lays itself out again.
    void templateChanged();

private:
    enum Row { Inner, Outer, Edge };
    struct DiameterRow {
        CAutoEdit* edit;
        QSlider* slider;
        CNumSpinCtrl* spin;
        QLabel* units;
        std::unique_ptr<CRealValidate> validator;
    };

    void OnSliderAction(Row row, int action);
    void OnDiameterChanged(Row row);
    // Writes the edit as the program does, which the edit's change then carries on.
    void WriteDiameter(Row row, const QString& text);
    void OnSizeChosen(int index);
    void OnSelectTemplate();
    // Shows the tray's size that the three diameters match, or "Custom".
    void MatchTemplate();
    // The tray's sizes, then "Custom".
    void FillSizes();
    CDrawDoc* Document() const;

    CNetworkView* m_pView = nullptr;
    bool m_bKeepDiameter = false;
    QPushButton* m_pSelectTemplate;
    QComboBox* m_pSize;
    std::array<DiameterRow, 3> m_rows;
};
