#include "controls/CEditValidate.h"

QString CEditValidate::Validate(QString&)
{
    return {};
}
