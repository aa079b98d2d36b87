#pragma once

// What statements answer, as lines for people or as JSON records, one a statement, numbered in their order.

#include "platform/Text.h"

#include <cstdint>
#include <optional>
#include <ostream>
#include <utility>
#include <vector>

namespace kalvio::reference_host {

struct ScriptOutput {
    std::ostream& stream;
    bool json = false;
    bool onlyPrints = false; // answers of calls are not shown
};

// Of a record: names, and values that are JSON.
using AnswerMembers = std::vector<std::pair<const char*, CString>>;

// What one statement has to say.
struct ScriptAnswer {
    int line = 0;
    bool always = false;           // shown even when answers of calls are not
    std::optional<CString> text{}; // for people; none: nothing
    AnswerMembers members{};       // after the sequence number and the line
};

// User-interface thread.
class ScriptAnswers {
public:
    explicit ScriptAnswers(ScriptOutput output) : m_output(output) {}

    void Show(const ScriptAnswer& answer);
    [[nodiscard]] bool IsJson() const { return m_output.json; }

private:
    ScriptOutput m_output;
    std::uint64_t m_sequence = 0; // of the last record
};

} // namespace kalvio::reference_host
