#pragma once

// The save table: which groups of the documents a saved configuration carries.

#include "reference_host/configuration/Sections.h"

namespace kalvio::reference_host {

// The tree as text: one line an item with its tick and its id, indented under its section. User-interface
// thread.
[[nodiscard]] CString SaveTableText(const Documents& documents);

// Ticks and unticks items: "301=off,901=on", an item by its id, a section by its name, "all" for everything;
// what stands below an item follows it. Empty, or what is wrong with the list, as an item that a document
// saves with the group above it only; nothing is changed then. User-interface thread.
[[nodiscard]] CString ChangeSaveTable(const Documents& documents, const CString& changes);

} // namespace kalvio::reference_host
