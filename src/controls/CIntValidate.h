#pragma once

#include "controls/CEditValidate.h"

// Whole numbers: an empty text reads as "0", and a minus sign may only lead. Which characters
// can be typed at all is the edit's allowed set, not the validator's concern.
class CIntValidate : public CEditValidate {
public:
    QString Validate(QString& text) override;
};
