#pragma once

#include <QString>

// Checks the text of a CAutoEdit as it loses the focus. A validator may correct the text in
// place; the message it returns is shown beside the edit, and an empty message means the text
// is good. This base accepts every text.
class CEditValidate {
public:
    virtual ~CEditValidate() = default;

    virtual QString Validate(QString& text);
};
