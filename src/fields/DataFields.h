#pragma once

#include "fields/DATAFIELD.h"

#include <QChar>
#include <QDateTime>
#include <QString>
#include <cstdint>
#include <vector>

class CDrawDoc;

// The program's one list of data fields, shared by every text of every label.
extern std::vector<DATAFIELD> g_dataFields;

// The text with every field's tag replaced by the field's value for the next printed disc.
// Tags are searched from the start of the text after each replacement, so a value may bring
// in the tags of later fields. A field with an empty tag is passed over, and one expansion
// stops after MaxTagReplacements replacements or once it has grown the text by
// MaxExpansionGrowth characters, leaving the remaining tags as they stand: a value that holds
// its own tag would otherwise be replaced for ever.
QString ExpandTags(const QString& text);
constexpr int MaxTagReplacements = 4096;
constexpr qsizetype MaxExpansionGrowth = qsizetype(1) << 18;

// The value of the field at `index` at the local time `now`; empty for an unknown kind or
// index. ExpandTags takes the time anew for each replacement.
QString FieldValue(int index, const QDateTime& now);

// The record that the Data File field at `index` shows next. The file is read anew each time;
// one that can't be opened is reported (see CFieldMessageScope) and gives an empty record.
QString ReadFieldRecord(int index);

// The character that ends a record of a data file: LF for Line (so a record of a file with
// CR LF line ends keeps its CR), ',' for Comma, ';' for Semi-Colon. An unknown delimiter
// splits by line.
QChar FieldSeparator(int delimiter);

// Record `index` of a data file's content: the text before the separator that ends it. A
// record without a separator behind it (the last one of a file that doesn't end in one, and
// every index past the end) is empty.
QString FieldRecord(const QString& content, QChar separator, uint32_t index);

// Moves every counter one printed disc on; the document is marked modified if a counting
// field (Disc, Serial Number, Data File) exists.
void AdvanceFields(CDrawDoc& doc);
