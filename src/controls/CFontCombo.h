#pragma once

#include <QComboBox>

// The font family box: an editable combo box whose list is kept sorted without regard to case
// and draws each family beside the font picture.
class CFontCombo : public QComboBox {
    Q_OBJECT

public:
    // Item data of a family that is an outline (TrueType) font.
    static constexpr int TrueTypeFlag = 4;

    explicit CFontCombo(QWidget* parent = nullptr);

    // Inserts the text at its sorted place, with the data; answers its index.
    int AddString(const QString& text, int data);
    // The index of the entry that reads exactly as the text, case aside; -1 for none.
    int FindStringExact(const QString& text) const;
};
