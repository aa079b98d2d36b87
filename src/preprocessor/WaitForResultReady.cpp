#include "hardware/Hardware.h"
#include "host/HostApplication.h"
#include "platform/Clock.h"
#include "preprocessor/SettledResult.h"
#include "preprocessor/SettlingFilter.h"
#include "preprocessor/thread/MessagePump.h"

#include <array>
#include <cstdint>

namespace {

using namespace kalvio;

constexpr std::uint32_t kPlainLimitMs = 5000;
constexpr std::uint32_t kFftAveragingLimitMs = 5001;
constexpr int kFewestReads = 2; // before the time limit counts
constexpr int kHintAveragingRestarted = 3320;

// One call of the wait: what is waited for, since when, and what was read so far.
class ResultWait {
public:
    ResultWait(int resultID, const double* field, int detector);

    bool Plain();
    bool Settled();

private:
    enum class Outcome { Waiting, Ready, GaveUp };

    Outcome LookPlainly();
    Outcome LookForSettled();
    Outcome Read(bool withoutFlag);
    [[nodiscard]] std::uint32_t Elapsed() const { return GetTickCount() - m_start; }
    // Too few values in the time allowed, or a result that fell silent for as long.
    [[nodiscard]] bool IsLate() const {
        return (m_reads < kFewestReads && Elapsed() > m_timeLimit) ||
               GetTickCount() - m_lastRead > m_timeLimit;
    }
    [[nodiscard]] bool AveragesDone() const;
    [[nodiscard]] bool CountsAverages() const; // averaging is on, with a number of averages
    void RestartAveraging();

    CHostApplication& m_host = GetHostApplication();
    FftAveragingState& m_averaging = m_host.fftAveraging;
    const int m_resultID;
    const double* const m_field;
    const int m_detector;
    const bool m_isFft;
    const std::uint32_t m_timeLimit; // ms
    const int m_readLimit;
    const bool m_averagingWasActive = m_averaging.active.load();
    const std::uint32_t m_start = GetTickCount();
    std::uint32_t m_lastRead = m_start; // tick
    std::array<double, kSettlingWindow> m_history{};
    int m_count = 0;
    int m_reads = 0;
    double m_sum = 0.0;
    double m_value = 0.0;
};

ResultWait::ResultWait(int resultID, const double* field, int detector)
    : m_resultID(resultID),
      m_field(field),
      m_detector(detector),
      m_isFft(resultID == kResultFftDetectorA || resultID == kResultFftDetectorB),
      m_timeLimit(m_isFft ? 10000 : 2000),
      m_readLimit(m_isFft ? 16 : 64) {}

bool ResultWait::AveragesDone() const {
    return m_averaging.done.load() >= m_averaging.requested.load();
}

bool ResultWait::CountsAverages() const {
    return m_averaging.on.load() && m_averaging.requested.load() != 0;
}

bool ResultWait::Plain() {
    Outcome outcome = Outcome::Waiting;
    while (outcome == Outcome::Waiting) {
        outcome = LookPlainly();
    }
    return outcome == Outcome::Ready;
}

ResultWait::Outcome ResultWait::LookPlainly() {
    if (m_isFft && m_averaging.on.load() && !AveragesDone()) {
        PumpOnce();
        return Elapsed() >= kFftAveragingLimitMs ? Outcome::GaveUp : Outcome::Waiting;
    }
    if (CHardware* hardware = m_host.hardware; hardware != nullptr) {
        hardware->LockResults();
        const bool ready = hardware->IsResultReady(m_resultID, m_detector) != 0;
        hardware->UnlockResults();
        if (ready) {
            return Outcome::Ready;
        }
    }
    if (Elapsed() > kPlainLimitMs) {
        return Outcome::GaveUp;
    }
    PumpOnce();
    return Outcome::Waiting;
}

bool ResultWait::Settled() {
    Outcome outcome = Outcome::Waiting;
    while (outcome == Outcome::Waiting && !m_host.closing.load()) {
        outcome = LookForSettled();
    }
    return outcome != Outcome::GaveUp;
}

ResultWait::Outcome ResultWait::LookForSettled() {
    if (!m_isFft || !m_averaging.on.load()) {
        return Read(false);
    }
    if (AveragesDone() || !m_averaging.active.load()) {
        return Read(CountsAverages());
    }
    PumpOnce();
    return IsLate() ? Outcome::GaveUp : Outcome::Waiting;
}

ResultWait::Outcome ResultWait::Read(bool withoutFlag) {
    const int readsBefore = m_reads;
    const bool settled =
        GetSettledResult(m_host.hardware, m_resultID, m_detector, m_field, m_history.data(), &m_count,
                         m_start, &m_reads, &m_sum, &m_value, withoutFlag ? 1 : 0, 1) != 0;
    if (m_reads != readsBefore) {
        m_lastRead = GetTickCount();
    }
    const bool gaveUp = (!settled && m_reads > m_readLimit) || IsLate();
    if (m_isFft && m_averagingWasActive && CountsAverages() && AveragesDone()) {
        RestartAveraging();
    }
    if (gaveUp) {
        return Outcome::GaveUp;
    }
    return settled ? Outcome::Ready : Outcome::Waiting;
}

void ResultWait::RestartAveraging() {
    m_averaging.active.store(true);
    m_averaging.restart.store(true);
    m_averaging.clearSpectrum.store(true);
    m_host.NotifyViews(nullptr, kHintAveragingRestarted, nullptr, 0);
}

} // namespace

int WaitForResultReady(int resultID, const double* field, int detector) {
    ResultWait wait(resultID, field, detector);
    const bool ready = GetHostApplication().settlingSwitch.load() ? wait.Settled() : wait.Plain();
    return ready ? 1 : 0;
}
