#include "reference_host/measurement/SettlingRun.h"

#include "platform/Clock.h"
#include "preprocessor/SettledResult.h"

namespace kalvio::reference_host {

SettlingRun::SettlingRun(ReferenceHost& host, std::vector<ResultChoice> choices)
    : m_host(host), m_choices(std::move(choices)), m_watcher(nullptr, &m_done, &m_status) {
    m_host.Engine().onResults = [this] { TakeSample(); };
}

SettlingRun::~SettlingRun() {
    m_host.Engine().onResults = nullptr;
}

std::string SettlingRun::Prepare() {
    for (const ResultChoice& choice : m_choices) {
        const double* field = GetResultFieldFromID(choice.resultID, choice.detector);
        if (field == nullptr) {
            return Format("there is nothing to watch for %s", choice.name.c_str());
        }
        m_fields.push_back(field);
    }
    m_start = GetTickCount();
    return {};
}

void SettlingRun::TakeSample() {
    SettlingSample sample;
    sample.time = GetTickCount() - m_start;
    for (const double* field : m_fields) {
        sample.values.push_back(ReadResult(*field));
    }
    m_samples.push_back(sample);
    if (onSample) {
        onSample(m_samples.back());
    }
}

NPreProcessor::EResult SettlingRun::Run(std::uint32_t milliseconds) {
    // A restart alone would leave the former verdicts standing.
    m_watcher.RemoveAllSignals();
    for (const ResultChoice& choice : m_choices) {
        m_watcher.AddSignal(choice.resultID, choice.detector);
    }
    m_watcher.StartAndRequestNotification();
    const WaitEnd end = m_host.TurnUntil([this] { return m_done.TryTake(); }, milliseconds);
    m_decidedAt = GetTickCount() - m_start;
    Judge();
    const NPreProcessor::EResult result = m_watcher.GetStatus(nullptr, 0);
    if (end != WaitEnd::Done) {
        m_watcher.Start(0);
    }
    if (end == WaitEnd::Interrupted) {
        return NPreProcessor::Aborted;
    }
    return end == WaitEnd::TimedOut ? NPreProcessor::TimedOut : result;
}

void SettlingRun::Judge() {
    std::vector<CSettlingWatcher::Status> states(m_choices.size());
    m_watcher.GetStatus(states.data(), static_cast<int>(states.size()));
    m_judgements.assign(m_choices.size(), {});
    for (std::size_t i = 0; i < states.size(); ++i) {
        m_judgements[i].value = states[i].value;
        m_judgements[i].status = states[i].status;
        m_watcher.GetVerdict(static_cast<int>(i), m_judgements[i].verdict);
    }
}

} // namespace kalvio::reference_host
