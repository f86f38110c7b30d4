#pragma once

#include "controls/CEditValidate.h"

// Decimal numbers: an empty text reads as "0", there is at most one decimal point, and a minus
// sign may only lead.
class CRealValidate : public CEditValidate {
public:
    QString Validate(QString& text) override;
};
