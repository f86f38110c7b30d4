#pragma once

#include "fields/DATAFIELD.h"

#include <QDialog>

class CAutoEdit;
class CNumSpinCtrl;
class QAbstractButton;
class QCheckBox;
class QComboBox;
class QLineEdit;
class QPushButton;
class QRadioButton;

// Edits one data field: its label (the tag that stands in label text), its kind and the
// settings of that kind. The dialog works on its own copy, m_field, which the caller takes over
// on OK; nothing is checked, so an empty label or a disc number above the total pass as typed.
class CDataFieldDlg : public QDialog {
    Q_OBJECT

public:
    // A new field, labelled by the number of fields present plus one.
    explicit CDataFieldDlg(QWidget* parent = nullptr);
    // A copy of an existing field.
    CDataFieldDlg(const DATAFIELD& field, QWidget* parent = nullptr);

    DATAFIELD m_field;

private:
    void CreateControls();
    // Writes the working copy into the controls, with the change handlers held off.
    void LoadControls();
    // Enables the controls of the chosen kind, and OK once a kind is chosen.
    void EnableControls();
    void OnKind(int kind);
    void OnBrowse();
    // A numeric edit's change, while the dialog is not filling its controls.
    void OnNumber(QLineEdit* edit);

    CAutoEdit* NumberEdit(const QString& name);

    QLineEdit* m_pLabel = nullptr;
    QRadioButton* m_pKinds[7] = {};
    QCheckBox* m_pTwoDigit = nullptr;
    QCheckBox* m_pMonthNames = nullptr;
    QCheckBox* m_pDayNames = nullptr;
    QCheckBox* m_pHours24 = nullptr;
    QCheckBox* m_pSeconds = nullptr;
    CAutoEdit* m_pDiscNumber = nullptr;
    CAutoEdit* m_pDiscTotal = nullptr;
    CAutoEdit* m_pSerial = nullptr;
    CAutoEdit* m_pSerialIncrement = nullptr;
    CNumSpinCtrl* m_pSerialIncrementSpin = nullptr;
    QLineEdit* m_pFileName = nullptr;
    QPushButton* m_pBrowse = nullptr;
    QComboBox* m_pDelimiter = nullptr;
    CAutoEdit* m_pFileIndex = nullptr;
    CNumSpinCtrl* m_pFileIndexSpin = nullptr;
    CAutoEdit* m_pFileIncrement = nullptr;
    CNumSpinCtrl* m_pFileIncrementSpin = nullptr;
    QPushButton* m_pOk = nullptr;
    // The radio group: -1 until a kind is chosen.
    int m_nKind = -1;
    // Set while the controls are being filled, so that their change handlers keep still.
    bool m_bLoading = false;
};
