#pragma once

#include "templates/CTemplateFile.h"

#include <QByteArray>
#include <QString>

// A sheet 8.5 by 11 inches with two discs of one label and a perforated card of a second.
extern const QByteArray TwoDiscsAndACard;

// The header of a sheet with the given label count, ready for a body.
QByteArray SheetHeader(int labelCount = 2);
// The header of a printer template.
QByteArray PrinterHeader();

// Writes the text to a temporary file and loads it; the error, if any, stays in the result.
CTemplateFile LoadText(const QByteArray& text, bool* loaded = nullptr);
