#include "fields/DataFields.h"

std::vector<DATAFIELD> g_dataFields;

QString ExpandTags(const QString& text)
{
    return text;
}
