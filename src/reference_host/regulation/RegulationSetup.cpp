#include "reference_host/regulation/RegulationSetup.h"

#include "reference_host/results/ResultCatalogue.h"

#include <algorithm>
#include <iterator>
#include <span>

namespace kalvio::reference_host {

namespace {

constexpr ChoiceWord kSources[] = {
    {"gen-freq", 0}, {"gen-ampl", 1}, {"dc-offset", 2}, {"jitter-freq", 3}, {"jitter-ampl", 4}};
constexpr ChoiceWord kTypes[] = {{"absolute", 0}, {"max", 1}, {"min", 2}};
constexpr ChoiceWord kTrends[] = {{"increasing", 0}, {"decreasing", 1}, {"unknown", 2}, {"non-monotonic", 3}};
constexpr ChoiceWord kToleranceTypes[] = {{"offset", 0}, {"ratio", 1}};
constexpr ChoiceWord kChannels[] = {{"a", 0},    {"b", 1},    {"sel", 2},   {"nonsel", 3},
                                    {"both", 4}, {"tied", 5}, {"either", 6}};
constexpr ChoiceWord kDirections[] = {{"up", 0}, {"down", 1}, {"unknown", 2}};

struct Choice {
    const char* option;
    const char* property;
    std::span<const ChoiceWord> words;
};

constexpr Choice kChoices[] = {
    {"source", "REG_Source", kSources},    {"type", "REG_RegulationType", kTypes},
    {"trend", "REG_Trend", kTrends},       {"tolerance-type", "REG_ToleranceType", kToleranceTypes},
    {"channel", "REG_Channel", kChannels}, {"direction", "REG_Direction", kDirections},
};

const Choice& FindChoice(std::string_view option) {
    return *std::find_if(std::begin(kChoices), std::end(kChoices),
                         [option](const Choice& each) { return each.option == option; });
}

// Sets fields one after the other and stops at the first that the document refuses.
class Setter {
public:
    explicit Setter(CRegulationSettings& document) : m_document(document) {}

    void Set(const char* property, const VARIANT& value) {
        if (!m_error.empty()) {
            return;
        }
        const AutomationResult result = m_document.SetProperty(property, value);
        if (!result.Ok()) {
            m_error = result.text;
        }
    }

    void SetReal(const char* property, const std::optional<double>& value) {
        if (value) {
            Set(property, VARIANT::Double(*value));
        }
    }

    void SetUnit(const char* property, const std::string& text) {
        if (text.empty()) {
            return;
        }
        const int unit = GetUnitForString(text);
        if (unit == kUnitNone) {
            Fail(Format("\"%s\" is no unit", text.c_str()));
        } else {
            Set(property, VARIANT::Long(unit));
        }
    }

    void SetChoice(const char* option, const std::string& text) {
        if (text.empty()) {
            return;
        }
        const Choice& choice = FindChoice(option);
        const auto word = std::find_if(choice.words.begin(), choice.words.end(),
                                       [&text](const ChoiceWord& each) { return each.word == text; });
        if (word == choice.words.end()) {
            Fail(Format("\"%s\" is no %s", text.c_str(), option));
        } else {
            Set(choice.property, VARIANT::Long(word->value));
        }
    }

    void SetResult(const std::string& name) {
        const std::optional<ResultChoice> result = FindResult(name);
        if (!result) {
            Fail(Format("\"%s\" is no result", name.c_str()));
            return;
        }
        if (result->detector != kNoDetector) {
            Set("REG_ResultFFTDetector", VARIANT::Long(result->detector));
        }
        Set("REG_Result", VARIANT::Long(result->resultID));
    }

    [[nodiscard]] const std::string& Error() const { return m_error; }

private:
    void Fail(const std::string& error) {
        if (m_error.empty()) {
            m_error = error;
        }
    }

    CRegulationSettings& m_document;
    std::string m_error;
};

} // namespace

std::vector<std::string> ChoiceWords(const char* option) {
    std::vector<std::string> words;
    const std::span<const ChoiceWord> choices = FindChoice(option).words;
    std::transform(choices.begin(), choices.end(), std::back_inserter(words),
                   [](const ChoiceWord& each) { return each.word; });
    return words;
}

std::string ApplySetup(const RegulationSetup& setup, CRegulationSettings& document) {
    Setter setter(document);
    // What a choice resets comes after it.
    setter.SetResult(setup.result);
    setter.SetChoice("type", setup.type);
    setter.SetChoice("channel", setup.channel);
    setter.SetUnit("REG_ResultUnit", setup.unit);
    setter.SetReal("REG_RegulateTo", setup.to);
    setter.SetChoice("tolerance-type", setup.toleranceType);
    if (setup.toleranceType == "ratio") {
        setter.SetUnit("REG_ToleranceUnit", "%");
    }
    setter.SetReal("REG_Tolerance", setup.tolerance);
    setter.SetChoice("trend", setup.trend);
    setter.SetReal("REG_Sensitivity", setup.sensitivity);
    setter.SetChoice("source", setup.source);
    setter.SetUnit("REG_SourceUnit", setup.sourceUnit);
    setter.SetReal("REG_SourceMinLimit", setup.minimum);
    setter.SetReal("REG_SourceMaxLimit", setup.maximum);
    if (setup.step) {
        setter.Set("REG_StepSizeAuto", VARIANT::Bool(false));
    }
    setter.SetReal("REG_StepSize", setup.step);
    setter.SetChoice("direction", setup.direction);
    if (setup.timeout) {
        setter.Set("REG_Timeout", VARIANT::Long(*setup.timeout));
    }
    return setter.Error();
}

} // namespace kalvio::reference_host
