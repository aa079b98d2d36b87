#pragma once

// Checks of a document's fields as an archive holds them.

#include "host/FieldTable.h"
#include "reference_host/configuration/Problem.h"

#include <vector>

namespace kalvio::reference_host {

// Reads the fields of the rows, each behind its save flag, and lists every value that would be applied and
// that is no number, out of its limits or none of its choices. False when the archive ends too early, which
// is listed with the field at which it does.
bool CheckFields(CArchive& archive, const std::vector<const FieldRow*>& rows, ProblemList& problems);

} // namespace kalvio::reference_host
