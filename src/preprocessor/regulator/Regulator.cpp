#include "preprocessor/regulator/Regulator.h"

#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettledResult.h"
#include "preprocessor/regulator/ErrorChoice.h"
#include "preprocessor/regulator/RegulatorWatch.h"

#include <algorithm>
#include <utility>

using namespace kalvio::preprocessor;
using NPreProcessor::EResult;
using NPreProcessor::RegulationRule;

namespace {

constexpr double kPhaseShift = 180.0; // degrees; makes phases comparable in size
constexpr std::uint32_t kMillisecondsPerSecond = 1000;

CRegulator* theRegulator KALVIO_UNDER_PREPROCESSOR_LOCK = nullptr;

} // namespace

CRegulator::CRegulator() : CSettlingWatch(nullptr, nullptr, nullptr) {}

CRegulator* CRegulator::Acquire(CRegulatorWatch* user) {
    if (theRegulator == nullptr) {
        theRegulator = new CRegulator;
    }
    theRegulator->m_users.push_back(user);
    return theRegulator;
}

std::unique_ptr<CRegulator> CRegulator::Release(CRegulatorWatch* user) {
    std::erase(theRegulator->m_users, user);
    if (!theRegulator->m_users.empty()) {
        return nullptr;
    }
    std::unique_ptr<CRegulator> last(std::exchange(theRegulator, nullptr));
    last->m_status.store(EResult::Aborted);
    last->RemoveAllSignals();
    RemoveWatch(last.get()); // the thread must not meet it half destroyed
    if (last->m_reports != 0) {
        CRegulator& reporting = *last;
        reporting.m_self = std::move(last);
    }
    return last;
}

void CRegulator::Start(int on) {
    if (on == 0) {
        m_status.store(EResult::Aborted);
        DropSignals(); // what it watched may go away now
        return;
    }
    if (Status() == EResult::Working) {
        return;
    }
    NPreProcessor::RegulationDetailsProvider* provider = GetHostApplication().regulationDetails;
    m_details = {};
    if (provider == nullptr || provider->GetRegulationDetails(m_details) == 0 ||
        m_details.sourceSettings == nullptr) {
        m_status.store(EResult::Failed);
        return;
    }
    AddResults();
    if (!Signals().empty()) {
        Begin();
    }
}

void CRegulator::AddResults() {
    DropSignals();
    const bool both = m_details.channelMode == kChannelBoth || m_details.channelMode == kChannelEither;
    if (both || m_details.channelMode == kChannelA) {
        AddResult(m_details.resultA);
    }
    if (both || m_details.channelMode == kChannelB) {
        AddResult(m_details.resultB);
    }
}

void CRegulator::AddResult(int resultID) {
    // Notifications read the result where it lives, so it must live somewhere.
    if (GetResultFieldFromID(resultID, m_details.detector) != nullptr) {
        AddSignal(resultID, m_details.detector);
    }
}

void CRegulator::Begin() {
    m_regulationStart = kalvio::GetTickCount();
    m_timeout = static_cast<std::uint32_t>(std::max(m_details.timeout, 0)) * kMillisecondsPerSecond;
    m_cycles = 0;
    m_search = MakeSearch(m_details);
    m_point = {.source = ReadSource()};
    m_status.store(EResult::Working);
    CSettlingWatch::Start(1);
}

bool CRegulator::Evaluate(bool newData) {
    if (Status() != EResult::Working) {
        return true;
    }
    EResult outcome = EResult::Working;
    if (LastTick() - m_regulationStart > m_timeout) {
        outcome = EResult::TimedOut;
    } else if (EvaluateSettling(newData)) {
        outcome = Advance();
    }
    if (outcome == EResult::Working) {
        return false;
    }
    m_status.store(outcome);
    ReportToUsers(outcome);
    return true;
}

EResult CRegulator::Advance() {
    if (State() != EResult::Settled && State() != EResult::NotSettled) {
        return State();
    }
    const EResult outcome = TakeSettledResult();
    if (outcome == EResult::Working) {
        CSettlingWatch::Start(1);
    }
    return outcome;
}

EResult CRegulator::TakeSettledResult() {
    ++m_cycles;
    const double measuredAt = m_point.source;
    RegulationDecision decision = Decide();
    const bool moves = decision.outcome == EResult::Working;
    if (moves) {
        MoveSource(decision);
    }
    TellObserver({.iteration = m_cycles,
                  .phase = m_search->Phase(),
                  .source = measuredAt,
                  .result = m_point.result,
                  .settling = State(),
                  .rule = decision.rule,
                  .nextSource = moves ? m_point.source : measuredAt,
                  .outcome = decision.outcome});
    return decision.outcome;
}

// A source that cannot be moved ends the run where the document stands.
void CRegulator::MoveSource(RegulationDecision& decision) {
    m_point.source = decision.nextSource;
    if (!WriteSource()) {
        m_point.source = ReadSource();
        decision.outcome = EResult::Failed;
    }
}

RegulationDecision CRegulator::Decide() {
    const Signal& first = Signals().front();
    if (IsExtremum(m_details.algorithm)) {
        m_point.result = first.value;
        if (first.filter->ResultId() == kalvio::kResultPhase) {
            m_point.result += kPhaseShift;
        }
        return m_search->Next(m_point, 0.0);
    }
    std::vector<double> values;
    for (const Signal& signal : Signals()) {
        values.push_back(signal.value);
    }
    const ErrorChoice choice = ChooseError(values, m_details.channelMode, m_details.lower, m_details.upper);
    m_point.result = choice.result;
    if (choice.succeeded) {
        return {EResult::Succeeded, RegulationRule::InsideWindow, m_point.source};
    }
    return m_search->Next(m_point, choice.error);
}

double CRegulator::ReadSource() const {
    CPhyValueMessenger messenger;
    messenger.ctrlID = m_details.sourceCtrlID;
    messenger.get = true;
    messenger.unit = m_details.sourceReferences;
    m_details.sourceSettings->OnMessenger(&messenger);
    return messenger.value;
}

bool CRegulator::WriteSource() const {
    const bool taken = WriteSource(m_details.sourceCtrlID);
    return (m_details.secondSourceCtrlID == -1 || WriteSource(m_details.secondSourceCtrlID)) && taken;
}

bool CRegulator::WriteSource(int ctrlID) const {
    CPhyValueMessenger messenger;
    messenger.ctrlID = ctrlID;
    messenger.value = m_point.source;
    messenger.unit = m_details.sourceReferences;
    m_details.sourceSettings->OnMessenger(&messenger);
    return !messenger.refused;
}

void CRegulator::ReportToUsers(EResult outcome) {
    // An owner on this thread may start again, or drop its own watch or another's, on being told.
    const std::vector<CRegulatorWatch*> users = m_users;
    ++m_reports;
    for (CRegulatorWatch* user : users) {
        if (std::ranges::find(m_users, user) != m_users.end()) {
            user->OnFinished(outcome);
        }
    }
    if (--m_reports == 0) {
        const std::unique_ptr<CRegulator> last = std::move(m_self);
    }
}
