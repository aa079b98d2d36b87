#include "reference_host/script/ScriptAnswers.h"

#include "platform/Json.h"

namespace kalvio::reference_host {

void ScriptAnswers::Show(const ScriptAnswer& answer) {
    if (m_output.onlyPrints && !answer.always) {
        return;
    }
    if (!m_output.json) {
        if (answer.text) {
            m_output.stream << *answer.text << std::endl;
        }
        return;
    }
    m_output.stream << "{\"sequence\":" << ++m_sequence << ",\"line\":" << answer.line;
    for (const auto& [name, value] : answer.members) {
        m_output.stream << "," << JsonText(name) << ":" << value;
    }
    m_output.stream << "}" << std::endl;
}

} // namespace kalvio::reference_host
