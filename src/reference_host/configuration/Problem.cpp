#include "reference_host/configuration/Problem.h"

#include "platform/Json.h"

namespace kalvio::reference_host {

CString Problem::ToText() const {
    return section + ": " + (field.empty() ? CString() : field + ": ") + what;
}

CString ProblemsText(const std::vector<Problem>& problems) {
    CString text;
    for (const Problem& problem : problems) {
        text += (text.empty() ? "" : "; ") + problem.ToText();
    }
    return text;
}

void ProblemList::Require(const CString& field, double value, double low, double high) {
    if (!(value >= low && value <= high)) {
        Add(field, Format("must lie between %s and %s, is %g", ShortestText(low).c_str(),
                          ShortestText(high).c_str(), value));
    }
}

} // namespace kalvio::reference_host
