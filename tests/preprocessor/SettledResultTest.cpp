// Waits for results. They are played from scenarios:
//
//   settling on|off   settle TIME N TOLERANCE TYPE [average]   averaging FIELD=V…   of the FFT
//   ready RESULT V    with its flag       put V   in the FFT's result, without       restarted   its averages
//   hints N           restarts of the averaging since last asked
//   wait RESULT OUTCOME MS STEP…   and what happens while it pumps messages, the last step ever again: MS
//   pass,
//                     MS:V and a value is ready, MS:+ another one each time, MS:average and one more average
//                     is done, close, never (it does not pump); STEP*N is N of them
//   poll ANSWERS VALUE V…   polling steps on values, an answer each, and the value after the last

#include "preprocessor/SettledResult.h"

#include "hardware/Hardware.h"
#include "preprocessor/Supervision.h"
#include "support/ScriptedDriver.h"

#include <functional>
#include <utility>

namespace kalvio::test {

namespace {

constexpr int kFft = kResultFftDetectorA;
constexpr int kMostPumps = 100000; // of all waits of a test

// Calls back whenever a wait pumps messages.
class PumpedApplication final : public TestApplication {
public:
    std::function<void()> onPump;
    int pumps = 0;
    void DoMessageLoop() override {
        if (++pumps > kMostPumps) {
            closing = true; // a wait without an end is given up
        }
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
    ~SettledResultTest() override {
        InstallHostApplication(&host.application);
        std::thread([this] { // no wait has kept the lock
            hardware.LockResults();
            hardware.UnlockResults();
        })
            .join();
    }

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

class WaitTest : public SettledResultTest, public ::testing::WithParamInterface<Scenario> {
protected:
    void Averaging(const std::string& word) {
        FftAveragingState& state = application.fftAveraging;
        const int value = std::stoi(word.substr(word.find('=') + 1));
        const std::map<std::string, std::function<void()>> fields{
            {"on", [&] { state.on = value != 0; }},
            {"requested", [&] { state.requested = value; }},
            {"done", [&] { state.done = value; }},
            {"active", [&] { state.active = value != 0; }},
        };
        fields.at(word.substr(0, word.find('=')))();
    }

    void Pump(int resultID, const std::string& step) {
        if (step == "never" || step == "close") {
            EXPECT_EQ(step, "close");
            application.closing = true;
            return;
        }
        host.clock.Advance(static_cast<std::uint32_t>(std::stoul(step)));
        const std::string what = step.substr(std::min(step.find(':'), step.size() - 1) + 1);
        if (what == "average") {
            ++application.fftAveraging.done;
        } else if (step.find(':') != std::string::npos) {
            MarkReady(resultID, what == "+" ? ++given : Number(what));
        }
    }

    void Wait(Words w) {
        const int result = ResultNamed(w[0]);
        std::vector<std::string> steps;
        for (const std::string& word : w.subspan(3)) {
            const std::size_t times = word.find('*');
            steps.insert(steps.end(), times == std::string::npos ? 1 : std::stoul(word.substr(times + 1)),
                         word.substr(0, times));
        }
        std::size_t next = 0;
        application.onPump = [&] { Pump(result, steps[std::min(next++, steps.size() - 1)]); };
        const std::uint32_t start = GetTickCount();
        EXPECT_EQ(WaitForResultReady(result, FieldOf(result), NumberOf(result)), std::stoi(w[1]));
        EXPECT_EQ(GetTickCount() - start, std::stoul(w[2]));
        application.closing = false;
        application.onPump = nullptr;
    }

    void Polls(Words w) {
        double field = 0.0;
        Poll poll(settling.defaults.numResults);
        CString answers;
        for (const std::string& value : w.subspan(2)) {
            WriteResult(field, Number(value));
            answers += poll.Step(hardware, &field, GetTickCount(), true, false) != 0 ? '1' : '0';
        }
        EXPECT_EQ(answers, w[0]);
        EXPECT_EQ(poll.value, Number(w[1]));
        EXPECT_EQ(poll.reads, static_cast<int>(answers.size()));
    }

    int given = 0;
    const std::map<std::string, std::function<void(Words)>> operations{
        {"settling", [this](Words w) { application.settlingSwitch = w[0] == "on"; }},
        {"settle", [this](Words w) { settling.defaults = ParametersIn(w[0], w.subspan(1)); }},
        {"averaging",
         [this](Words w) {
             std::for_each(w.begin(), w.end(), [this](const auto& word) { Averaging(word); });
         }},
        {"ready", [this](Words w) { MarkReady(ResultNamed(w[0]), Number(w[1])); }},
        {"put", [this](Words w) { WriteResult(*FieldOf(kFft), Number(w[0])); }},
        {"hints",
         [this](Words w) { EXPECT_EQ(std::exchange(hints, {}), std::vector<int>(std::stoul(w[0]), 3320)); }},
        {"restarted",
         [this](Words) {
             EXPECT_TRUE(application.fftAveraging.restart && application.fftAveraging.clearSpectrum);
         }},
        {"wait", [this](Words w) { Wait(w); }},
        {"poll", [this](Words w) { Polls(w); }},
    };
};

TEST_P(WaitTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Waits, WaitTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "waits")), TestNameOf);

} // namespace

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

} // namespace kalvio::test
