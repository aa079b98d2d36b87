#include "reference_host/script/ReferenceScriptHost.h"

#include "platform/Json.h"
#include "preprocessor/SettledResult.h"
#include "reference_host/regulation/RegulationSetup.h"
#include "reference_host/results/OutcomeTexts.h"
#include "reference_host/results/ResultCatalogue.h"
#include "reference_host/script/ArraySweep.h"
#include "reference_host/windows/WindowPictures.h"
#include "reference_host/windows/WindowSession.h"

#include <algorithm>

namespace kalvio::reference_host {

namespace {

constexpr std::uint32_t kBlockTimeoutMs = 2000;

struct SourceControl {
    int ctrlID;
    int unit;
};

// In the order of the sources' words.
constexpr SourceControl kSourceControls[] = {{kCtrlGeneratorFrequencyA, kUnitHertz},
                                             {kCtrlGeneratorAmplitudeA, kUnitVolt},
                                             {kCtrlDcOffset, kUnitVolt},
                                             {kCtrlJitterFrequency, kUnitHertz},
                                             {kCtrlJitterAmplitude, kUnitUi}};

// Null for no source.
const SourceControl* FindSource(const std::string& name) {
    const std::vector<std::string> words = ChoiceWords("source");
    const auto index = static_cast<std::size_t>(std::ranges::find(words, name) - words.begin());
    return index < std::size(kSourceControls) ? &kSourceControls[index] : nullptr;
}

std::string Join(const std::vector<std::string>& words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : ", ") + word;
    }
    return text;
}

QuantityReading ReadingOf(double storage, int unit, const SReferences& references) {
    return {ShownValue(storage, unit, references), GetStringForUnit(unit),
            FormatValue(storage, unit, references)};
}

} // namespace

PauseEnd ReferenceScriptHost::Pause(std::uint32_t milliseconds) {
    const WaitEnd end = m_host.TurnUntil([] { return false; }, milliseconds);
    return end == WaitEnd::Interrupted ? PauseEnd::Interrupted : PauseEnd::Done;
}

RegulationEnd ReferenceScriptHost::WaitForRegulation() {
    CRegulationSettings& document = m_host.Regulation();
    const WaitEnd end = m_host.TurnUntil([&document] { return document.IsRegulationRunning() == 0; });
    const NPreProcessor::EResult status = document.GetStatus();
    return {end == WaitEnd::Interrupted, status == NPreProcessor::Succeeded, RegulationText(status)};
}

CString ReferenceScriptHost::RefuseQuantity(const ScriptQuantity& quantity) const {
    if (quantity.kind == QuantityKind::Source) {
        return FindSource(quantity.name) != nullptr
                   ? ""
                   : Format("there is no source \"%s\"; there are %s", quantity.name.c_str(),
                            Join(ChoiceWords("source")).c_str());
    }
    const std::optional<ResultChoice> choice = FindResult(quantity.name);
    if (!choice) {
        return Format("there is no result \"%s\"; there are %s", quantity.name.c_str(),
                      Join(ResultNames()).c_str());
    }
    return GetResultFieldFromID(choice->resultID, choice->detector) != nullptr
               ? ""
               : Format("there is nothing to read for %s", quantity.name.c_str());
}

QuantityReading ReferenceScriptHost::Measure(const ScriptQuantity& quantity) {
    return quantity.kind == QuantityKind::Source ? ReadSource(quantity.name) : MeasureResult(quantity.name);
}

SweepEnd ReferenceScriptHost::Sweep(const CString& array, const ScriptQuantity& quantity) {
    return SweepArray(m_host, array, quantity.name);
}

QuantityReading ReferenceScriptHost::MeasureResult(const std::string& name) {
    const ResultChoice choice = *FindResult(name);
    const std::uint64_t before = m_host.Engine().Blocks();
    const bool measured = m_host.Hardware().IsHardwarePresent() != 0 &&
                          m_host.TurnUntil([&] { return m_host.Engine().Blocks() != before; },
                                           kBlockTimeoutMs) == WaitEnd::Done;
    const double storage =
        measured ? ReadResult(*GetResultFieldFromID(choice.resultID, choice.detector)) : kInvalidResult;
    return ReadingOf(storage, choice.unit, m_host.analyser->references);
}

QuantityReading ReferenceScriptHost::ReadSource(const std::string& name) const {
    const SourceControl& source = *FindSource(name);
    return ReadingOf(m_host.Generator().GetSource(source.ctrlID), source.unit, {});
}

CString ReferenceScriptHost::RefuseWindow(const WindowRequest& request) const {
    if (request.verb != "dialog") {
        if (CString refusal = WindowSession::RefuseName(request.window); !refusal.empty()) {
            return refusal;
        }
    }
    const bool acts = request.verb == "act" || request.verb == "dialog";
    return acts ? WindowSession::RefuseAct({request.control, request.act, request.value}) : CString();
}

WindowAnswer ReferenceScriptHost::Window(const WindowRequest& request) {
    WindowSession& windows = m_host.WindowsByName();
    const ActWords words{request.control, request.act, request.value};
    WindowAnswer answer;
    if (request.verb == "open") {
        answer.fault = windows.Open(request.window);
    } else if (request.verb == "close") {
        answer.fault = windows.Close(request.window);
    } else if (request.verb == "act") {
        answer.fault = windows.Act(request.window, words);
    } else if (request.verb == "dialog") {
        answer.fault = windows.QueueForDialog(words);
    } else if (request.verb == "show") {
        ShowWindow(request.window, answer);
    } else {
        PrintWindow(request.window, answer);
    }
    m_host.DoMessageLoop();
    if (const CString fault = windows.TakeDialogFault(); answer.fault.empty()) {
        answer.fault = fault;
    }
    return answer;
}

void ReferenceScriptHost::ShowWindow(const std::string& window, WindowAnswer& answer) {
    ControlState state;
    answer.fault = m_host.WindowsByName().Show(window, state);
    if (answer.fault.empty()) {
        answer.text = DrawWindowText(state);
        answer.json = WindowJson(state);
    }
}

void ReferenceScriptHost::PrintWindow(const std::string& window, WindowAnswer& answer) {
    std::vector<CString> lines;
    answer.fault = m_host.WindowsByName().Print(window, lines);
    for (const CString& line : lines) {
        answer.text += line + "\n";
        answer.json += (answer.json.empty() ? "[" : ",") + JsonText(line);
    }
    answer.json += lines.empty() ? "[]" : "]";
}

ScriptHost::FileAnswer ReferenceScriptHost::SaveConfiguration(const CString& path) {
    return {ProblemsText(m_host.MakeConfiguration().Save(path)), {}};
}

ScriptHost::FileAnswer ReferenceScriptHost::LoadConfiguration(const CString& path) {
    const LoadOutcome outcome = m_host.MakeConfiguration().Load(path);
    return {ProblemsText(outcome.problems), Join(outcome.notSent)};
}

} // namespace kalvio::reference_host
