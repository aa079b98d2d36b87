#pragma once

// What is wrong with a configuration.

#include "platform/Text.h"

#include <string_view>
#include <vector>

namespace kalvio::reference_host {

struct Problem {
    CString section; // "header", "file", or the name of a section
    CString field;   // empty: the section as a whole
    CString what;    // what it should be and what it is

    // "section: field: what".
    [[nodiscard]] CString ToText() const;
    bool operator==(const Problem&) const = default;
};

// All of them in one line, each after "; "; empty when there are none.
[[nodiscard]] CString ProblemsText(const std::vector<Problem>& problems);

// Gathers the problems of one section.
class ProblemList {
public:
    ProblemList(std::vector<Problem>& problems, std::string_view section)
        : m_problems(problems), m_section(section) {}
    void Add(const CString& field, const CString& what) { m_problems.push_back({m_section, field, what}); }
    // Unless the value lies within the limits.
    void Require(const CString& field, double value, double low, double high);

private:
    std::vector<Problem>& m_problems;
    CString m_section;
};

} // namespace kalvio::reference_host
