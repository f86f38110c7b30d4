#pragma once

#include <QString>
#include <optional>

// The program's texts by number. A control whose id has a text here shows that text as its
// tooltip; command ids share the numbering, so a tool button and its menu command explain
// themselves alike. Texts are kept exactly as the program has always shown them.
namespace StringTable {

// The text of that number, or nothing when the table has none.
std::optional<QString> LoadString(int nId);

} // namespace StringTable
