#pragma once

#include "fields/DATAFIELD.h"

#include <QString>
#include <vector>

class CDrawDoc;

// The program's one list of data fields, shared by every text of every label.
extern std::vector<DATAFIELD> g_dataFields;

// The text with every field's tag replaced by the field's value for the next printed disc.
QString ExpandTags(const QString& text);
