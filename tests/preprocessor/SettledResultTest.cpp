#include "preprocessor/SettledResult.h"

#include "hardware/Hardware.h"
#include "preprocessor/Supervision.h"
#include "support/ScriptedDriver.h"

#include <functional>

namespace kalvio::test {

namespace {

constexpr int kFft = kResultFftDetectorA;

// Calls back whenever a wait pumps messages.
class PumpedApplication final : public TestApplication {
public:
    std::function<void()> onPump;
    int pumps = 0;
    void DoMessageLoop() override {
        ++pumps;
        TestApplication::DoMessageLoop();
        if (onPump) {
            onPump();
        }
    }
};

class SettledResultTest : public Supervision {
protected:
    SettledResultTest() {
        settling.defaults = {0, 3, 0.0, 1, false};
        InstallHostApplication(&application);
        application.settling = &settling;
        application.hardware = &hardware;
        application.fftDetectors = &host.fftDetectors;
        detector = host.fftDetectors.Add("noise")->Id();
        application.AddViewObserver([this](CView*, int hint, void*, int) { hints.push_back(hint); });
    }
    ~SettledResultTest() override { InstallHostApplication(&host.application); }

    [[nodiscard]] int NumberOf(int resultID) const { return resultID == kFft ? detector : kNoDetector; }
    [[nodiscard]] double* FieldOf(int resultID) const {
        return GetResultFieldFromID(resultID, NumberOf(resultID));
    }

    void MarkReady(int resultID, double value) {
        WriteResult(*FieldOf(resultID), value);
        if (resultID == kFft) {
            hardware.SetFFTResultReady(resultID, detector, 0);
        } else {
            hardware.SetResultReady(resultID, CHardware::GetResultIndex(resultID), 1);
        }
    }

    int Wait(int resultID) { return WaitForResultReady(resultID, FieldOf(resultID), NumberOf(resultID)); }

    // Waits with `step` at every pump; the virtual milliseconds that it took.
    std::pair<int, std::uint32_t> TimedWait(int resultID, std::function<void()> step) {
        application.onPump = std::move(step);
        const std::uint32_t start = GetTickCount();
        const int outcome = Wait(resultID);
        return {outcome, GetTickCount() - start};
    }

    // The first pump takes that long, every further one a millisecond.
    std::function<void()> Jump(std::uint32_t milliseconds) {
        return [this, next = milliseconds]() mutable { host.clock.Advance(std::exchange(next, 1U)); };
    }

    ScriptedDriver driver;
    CHardware hardware{driver};
    PumpedApplication application;
    std::vector<int> hints;
    int detector = 0;
};

} // namespace

TEST_F(SettledResultTest, FieldsAreTheHostsOwn) {
    CHostApplication& app = application;
    CFFTDetectorSettings& fft = *host.fftDetectors.Find(detector);
    const std::tuple<int, int, double*> cases[] = {
        {3208, kNoDetector, &app.analyserResults.rmsA},
        {3209, kNoDetector, &app.analyserResults.frequencyA},
        {3210, kNoDetector, &app.analyserResults.rmsB},
        {3211, kNoDetector, &app.analyserResults.frequencyB},
        {3216, kNoDetector, &app.analyserResults.phase},
        {9991, kNoDetector, &app.analyserResults.phase},
        {3251, 5, &app.ctDetectorResults.channelA},
        {3253, kNoDetector, &app.ctDetectorResults.channelB},
        {3351, detector, fft.ResultA()},
        {3352, detector, fft.ResultB()},
        {3351, detector + 1, nullptr},
        {3352, kNoDetector, nullptr},
        {3008, kNoDetector, &app.digitalInputResults.frameRate},
        {3009, kNoDetector, &app.digitalInputResults.deviation},
        {3051, kNoDetector, &app.carrierResults.amplitude},
        {3054, kNoDetector, &app.carrierResults.jitter},
        {3057, kNoDetector, &app.carrierResults.phase},
        {4008, kNoDetector, &app.syncResults.frameRate},
        {4009, kNoDetector, &app.syncResults.deviation},
        {65535, kNoDetector, nullptr},
        {3212, kNoDetector, nullptr},
        {-1, kNoDetector, nullptr},
    };
    for (const auto& [id, number, field] : cases) {
        EXPECT_EQ(GetResultFieldFromID(id, number), field) << id << " " << number;
    }
    app.fftDetectors = nullptr;
    EXPECT_EQ(GetResultFieldFromID(3351, detector), nullptr);
}

namespace {

// The variables of a caller of the polling step, with a sentinel behind a history of N values.
struct Poll {
    std::vector<double> history;
    int count = 0;
    int reads = 0;
    double sum = 0.0;
    double value = 0.0;

    explicit Poll(int n) : history(static_cast<std::size_t>(n) + 1, 0.0) { history.back() = -77.0; }
    ~Poll() { EXPECT_EQ(history.back(), -77.0); }

    int Step(CHardware& hardware, const double* field, unsigned long start, bool withoutFlag, bool pump) {
        return GetSettledResult(&hardware, kBlock, kNoDetector, field, history.data(), &count, start, &reads,
                                &sum, &value, withoutFlag ? 1 : 0, pump ? 1 : 0);
    }
};

struct PollCase {
    const char* what;
    SettlingParameters parameters;
    std::vector<double> values;
    CString answers; // one digit a value
    double value;    // after the last
};

} // namespace

TEST_F(SettledResultTest, OnePollingStepAtATime) {
    const double invalid = kInvalidResult;
    const double beside = std::nextafter(kInvalidResult, 0.0);
    const PollCase cases[] = {
        {"N = 1: the first valid value", {0, 1, 0.0, 1, false}, {7}, "1", 7},
        {"N = 1: and every further one", {0, 1, 0.0, 1, false}, {7, 8, 9}, "111", 9},
        {"N equal values", {0, 3, 0.0, 1, false}, {7, 7, 7}, "001", 7},
        {"only the oldest is dropped, whichever disagreed",
         {0, 3, 0.0, 1, false},
         {7, 9, 7, 7, 7},
         "00001",
         7},
        {"within the tolerance of the newest", {0, 2, 0.25, 1, false}, {6, 8}, "01", 8},
        {"and averaged", {0, 2, 0.25, 1, true}, {6, 8}, "01", 7},
        {"a dropped value leaves the average", {0, 2, 0.25, 1, true}, {1, 6, 8}, "001", 7},
        {"calls after a success keep N values", {0, 2, 0.25, 1, true}, {6, 8, 8, 8, 1, 1}, "011101", 1},
        {"exponential: the second older may lie twice as far", {0, 3, 0.125, 2, false}, {6, 7, 8}, "001", 8},
        {"no result is never a value", {0, 2, 0.0, 1, false}, {7, invalid, 7}, "001", 7},
        {"its neighbour is", {0, 1, 0.0, 1, false}, {beside}, "1", beside},
    };
    double field = 0.0;
    for (const PollCase& row : cases) {
        SCOPED_TRACE(row.what);
        settling.defaults = row.parameters;
        Poll poll(row.parameters.numResults);
        CString answers;
        for (const double value : row.values) {
            WriteResult(field, value);
            answers += poll.Step(hardware, &field, GetTickCount(), true, false) != 0 ? '1' : '0';
        }
        EXPECT_EQ(answers, row.answers);
        EXPECT_EQ(poll.value, row.value);
        EXPECT_EQ(poll.reads, static_cast<int>(row.values.size()));
    }
}

TEST_F(SettledResultTest, AStepReadsAfterTheSettlingTimeAndTakesTheFlag) {
    settling.defaults = {30, 1, 0.0, 1, false};
    Poll poll(1);
    const unsigned long start = GetTickCount();
    MarkReady(kBlock, 5.0);
    host.clock.Advance(29);
    EXPECT_EQ(poll.Step(hardware, FieldOf(kBlock), start, false, true), 0);
    EXPECT_EQ(application.pumps, 1);
    host.clock.Advance(1);
    EXPECT_EQ(poll.Step(hardware, FieldOf(kBlock), start, false, true), 1);
    EXPECT_EQ(application.pumps, 1);
    EXPECT_EQ(poll.Step(hardware, FieldOf(kBlock), start, false, true), 0); // taken
    EXPECT_EQ(application.pumps, 2);
    EXPECT_EQ(poll.Step(hardware, FieldOf(kBlock), start, false, false), 0);
    EXPECT_EQ(application.pumps, 2);
    EXPECT_EQ(poll.reads, 1);
    EXPECT_EQ(poll.Step(hardware, nullptr, start, true, false), 0); // no field to read
}

TEST_F(SettledResultTest, APlainWaitEndsWithTheFlagOrAfterFiveSeconds) {
    EXPECT_EQ(TimedWait(kBlock, Jump(5000)), std::pair(0, 5001U));
    EXPECT_EQ(TimedWait(kFft, Jump(5000)), std::pair(0, 5001U));
    MarkReady(kBlock, 1.0);
    EXPECT_EQ(TimedWait(kBlock, Jump(1)), std::pair(1, 0U));
    EXPECT_EQ(TimedWait(kBlock,
                        [this] {
                            host.clock.Advance(100);
                            MarkReady(kBlock, 1.0);
                        }),
              std::pair(1, 100U));

    application.fftAveraging.on = true;
    application.fftAveraging.requested = 4;
    MarkReady(kFft, 1.0);
    EXPECT_EQ(TimedWait(kFft, Jump(5000)), std::pair(0, 5001U)); // the flag counts when the averages are done
    EXPECT_EQ(TimedWait(kFft,
                        [this] {
                            host.clock.Advance(1000);
                            ++application.fftAveraging.done;
                        }),
              std::pair(1, 4000U));
}

TEST_F(SettledResultTest, ASettledWaitGivesUpByReadsOrTime) {
    application.settlingSwitch = true;
    EXPECT_EQ(TimedWait(kBlock, Jump(2000)), std::pair(0, 2001U));
    EXPECT_EQ(TimedWait(kFft, Jump(10000)), std::pair(0, 10001U));

    for (const auto& [result, limit] : {std::pair{kBlock, 64}, std::pair{kFft, 16}}) {
        int given = 0;
        const auto outcome = TimedWait(result, [&] {
            host.clock.Advance(100);
            MarkReady(result, ++given);
        });
        EXPECT_EQ(outcome.first, 0);
        EXPECT_EQ(given, limit + 1);
    }

    // The last read that the limit allows may still settle; late by far, but values did come.
    int given = 0;
    EXPECT_EQ(TimedWait(kBlock,
                        [&] {
                            host.clock.Advance(100);
                            MarkReady(kBlock, ++given < 62 ? given : 5.0);
                        }),
              std::pair(1, 6400U));

    // One value is not enough to wait on for, and one that comes late does not count.
    const auto oneValueAfter = [this](std::uint32_t milliseconds) {
        return [this, milliseconds, given = false]() mutable {
            host.clock.Advance(given ? 100 : milliseconds);
            if (!std::exchange(given, true)) {
                MarkReady(kBlock, 5.0);
            }
        };
    };
    EXPECT_EQ(TimedWait(kBlock, oneValueAfter(100)), std::pair(0, 2100U));
    settling.defaults.numResults = 1;
    EXPECT_EQ(TimedWait(kBlock, oneValueAfter(2000)), std::pair(1, 2000U));
    EXPECT_EQ(TimedWait(kBlock, oneValueAfter(2100)), std::pair(0, 2100U));

    // A result that falls silent after two values is not waited for for ever.
    settling.defaults.numResults = 3;
    EXPECT_EQ(TimedWait(kBlock,
                        [this, values = 0]() mutable {
                            host.clock.Advance(100);
                            if (++values <= 2) {
                                MarkReady(kBlock, values);
                            }
                        }),
              std::pair(0, 2300U));

    EXPECT_EQ(TimedWait(kBlock, [&] { application.closing = true; }), std::pair(1, 0U));
}

TEST_F(SettledResultTest, ASettledWaitRestartsTheAveragingForEachReading) {
    application.settlingSwitch = true;
    FftAveragingState& averaging = application.fftAveraging;
    averaging.on = true;
    averaging.requested = 2;
    averaging.done = 2;
    averaging.active = true;
    WriteResult(*FieldOf(kFft), 5.0); // no ready flag: complete averages are read without
    const auto outcome = TimedWait(kFft, [&] { ADD_FAILURE() << "nothing to wait for"; });
    EXPECT_EQ(outcome, std::pair(1, 0U));
    EXPECT_EQ(hints, (std::vector{3320, 3320, 3320}));
    EXPECT_TRUE(averaging.restart && averaging.clearSpectrum);

    // While they run, the wait pumps; a host that restarts counts them anew.
    hints.clear();
    const auto running = TimedWait(kFft, [&] {
        host.clock.Advance(10);
        ++averaging.done;
    });
    EXPECT_EQ(running.first, 1);
    averaging.done = 0;
    EXPECT_EQ(TimedWait(kFft, Jump(10000)), std::pair(0, 10001U));

    averaging.active = false; // averaging stopped: the spectrum stands, and nothing is restarted
    averaging.done = 2;
    hints.clear();
    EXPECT_EQ(TimedWait(kFft, [&] { ADD_FAILURE() << "nothing to wait for"; }), std::pair(1, 0U));
    EXPECT_EQ(hints, std::vector<int>{});

    averaging.requested = 0; // without a number of averages the ready flag counts
    EXPECT_EQ(TimedWait(kFft, Jump(10000)), std::pair(0, 10001U));
}

// However many averages are asked for, done or active: while averaging is off the ready flag alone counts.
TEST_F(SettledResultTest, AnFftWaitWithoutAveragingGoesByTheFlag) {
    application.fftAveraging.requested = 4;
    application.fftAveraging.active = true;
    for (const int done : {0, 4}) {
        application.fftAveraging.done = done;
        application.settlingSwitch = false;
        MarkReady(kFft, 1.0);
        EXPECT_EQ(TimedWait(kFft, Jump(1)), std::pair(1, 0U));
        application.settlingSwitch = true;
        EXPECT_EQ(TimedWait(kFft,
                            [this] {
                                host.clock.Advance(100);
                                MarkReady(kFft, 5.0);
                            }),
                  std::pair(1, 300U));
        EXPECT_EQ(hints, std::vector<int>{}); // nothing to restart
        EXPECT_EQ(TimedWait(kFft, Jump(10000)), std::pair(0, 10001U));
    }
}

} // namespace kalvio::test
