#pragma once

#include "controls/CAutoEdit.h"

// The edit beside a pair of CSeekButtons: it shows the whole number they step, repainted at
// once so that the number runs while a button is held.
class CSeekEdit : public CAutoEdit {
    Q_OBJECT

public:
    using CAutoEdit::CAutoEdit;

    int GetValue() const { return m_nValue; }

public slots:
    // Connected to the buttons' valueStepped.
    void SetValue(int nValue);

private:
    int m_nValue = 0;
};
