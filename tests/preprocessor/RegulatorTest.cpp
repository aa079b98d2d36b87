// Plays regulations.
//
//   details FIELD=V…   source V   transfer NAME [NAME of channel B]   settle TIME N TOLERANCE TYPE
//   refuse-above V user W [told] [noted]   by the main window, by event and status     start W, abort W, ask
//   W, request W, drop W run W STATE             from a start to its end                     measure N   wait
//   MS, with a wake-up after it on N drop|again W       at the Nth report                           reported
//   N   reports STATE…, since last state W STATE   noted W STATE   not-noted W   writes N   sources A B unit
//   CODE of the last access steps N   step INDEX FIELD=V…   asked N   answer 0|1   no-provider   listen heard
//   N   halt   resume path ALGORITHM TARGET TOLERANCE TREND DIRECTION STEP START TRANSFER OUTCOME SOURCE…

#include "preprocessor/RegulatorWatcher.h"
#include "preprocessor/Supervision.h"
#include "support/RegulationRig.h"
#include "support/StateNames.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

class RegulatorTest : public RegulationRig, public ::testing::WithParamInterface<Scenario> {
protected:
    struct User {
        CEvent done;
        int status = -1;
        std::unique_ptr<CRegulatorWatcher> watcher;
    };

    RegulatorTest() {
        host.application.regulationDetails = &provider;
        provider.details = AmplitudeDetails(source);
        source.Set(kControl, 100.0);
        measure = [this] {
            Put(kResultRmsA, Transferred(transferA, source.Get(kControl)));
            Put(kResultRmsB, Transferred(transferB, source.Get(kControl)));
        };
        host.mainWindow.onMessage = [this](const RecordingWindow::Message& message) {
            EXPECT_EQ(message.id, kMessageWatchFinished);
            ++reported;
            const auto& [act, user] = acts[reported];
            if (act == "drop") {
                users[user].watcher.reset();
            } else if (act == "again") {
                source.Set(kControl, 100.0);
                Watcher(user).Start(1);
            }
        };
    }

    double Transferred(const std::string& transfer, double s) {
        return transfer == "falling" ? 1000.0 - s
               : transfer == "five"  ? 5.0
               : transfer == "noise" ? 2.0 * s + (turn++ % 2 == 0 ? 10.0 : -10.0)
                                     : std::stod(transfer.substr(1)) * s;
    }

    CRegulatorWatcher& Watcher(const std::string& name) { return *users[name].watcher; }

    void Run(const std::string& name, const std::string& state) {
        constexpr int kMostMeasurements = 400;
        Watcher(name).Start(1);
        for (int i = 0; i < kMostMeasurements && Watcher(name).GetStatus() == Working; ++i) {
            MeasureOnce();
        }
        EXPECT_EQ(Watcher(name).GetStatus(), StateNamed(state));
    }

    void SetDetail(const std::string& name, double value) {
        RegulationDetails& d = provider.details;
        const std::map<std::string, double*> numbers{{"step", &d.initialStep},
                                                     {"target", &d.target},
                                                     {"lower", &d.lower},
                                                     {"upper", &d.upper},
                                                     {"sensitivity", &d.sensitivity}};
        const std::map<std::string, int*> integers{
            {"mode", &d.channelMode},  {"second", &d.secondSourceCtrlID}, {"algorithm", &d.algorithm},
            {"trend", &d.trend},       {"direction", &d.direction},       {"result", &d.resultA},
            {"detector", &d.detector}, {"unit", &d.sourceReferences},     {"timeout", &d.timeout}};
        if (name == "has-source") {
            d.sourceSettings = value != 0.0 ? &source : nullptr;
        } else if (const auto number = numbers.find(name); number != numbers.end()) {
            *number->second = value;
        } else {
            *integers.at(name) = static_cast<int>(value);
        }
    }

    void Path(Words w) {
        provider.details.algorithm = std::stoi(w[0]);
        SetDetail("target", Number(w[1]));
        SetDetail("lower", Number(w[1]) - Number(w[2]));
        SetDetail("upper", Number(w[1]) + Number(w[2]));
        SetDetail("trend", Number(w[3]));
        SetDetail("direction", Number(w[4]));
        SetDetail("step", w[5] == "auto" ? kAutomaticStep : Number(w[5]));
        SetDetail("sensitivity", 0.5);
        source.Set(kControl, Number(w[6]));
        transferA = w[7];
        users["w"].watcher = std::make_unique<CRegulatorWatcher>(nullptr, nullptr, nullptr);
        Run("w", w[8]);
        std::vector<double> expected;
        std::transform(w.begin() + 9, w.end(), std::back_inserter(expected), Number);
        std::vector<double> written;
        for (const auto& [ctrlID, value] : source.Written()) {
            written.push_back(value);
        }
        EXPECT_EQ(written, expected);
    }

    void ExpectStep(Words w) {
        const RegulationStep& step = record.steps.at(std::stoul(w[0]));
        const std::map<std::string, double> fields{
            {"iteration", step.iteration}, {"phase", step.phase},
            {"source", step.source},       {"result", step.result},
            {"next", step.nextSource},     {"settling", step.settling},
            {"outcome", step.outcome},     {"rule", static_cast<double>(step.rule)}};
        const std::map<std::string, RegulationRule> rules{{"Proportional", RegulationRule::Proportional},
                                                          {"InsideWindow", RegulationRule::InsideWindow}};
        for (const std::string& word : w.subspan(1)) {
            const std::string value = word.substr(word.find('=') + 1);
            double expected = 0.0;
            if (const auto rule = rules.find(value); rule != rules.end()) {
                expected = static_cast<double>(rule->second);
            } else {
                expected =
                    std::isdigit(value[0]) != 0 ? Number(value) : static_cast<double>(StateNamed(value));
            }
            EXPECT_EQ(fields.at(word.substr(0, word.find('='))), expected) << word;
        }
    }

    // The states in the reports that came since they were last asked for.
    void ExpectReports(Words w) {
        PumpMessages();
        std::vector<int> expected;
        std::transform(w.begin(), w.end(), std::back_inserter(expected), StateNamed);
        std::vector<int> states;
        for (const RecordingWindow::Message& message : std::exchange(host.mainWindow.messages, {})) {
            states.push_back(static_cast<int>(message.wParam));
        }
        EXPECT_EQ(states, expected);
    }

    FixedDetails provider;
    FakeSource source;
    StepRecord record;
    CSettlingWatcher listener{nullptr, nullptr, nullptr};
    std::string transferA = "x2";
    std::string transferB = "x2";
    int turn = 0;
    int reported = 0;
    std::map<int, std::pair<std::string, std::string>> acts; // at which report
    std::map<std::string, User> users;
    const std::map<std::string, std::function<void(Words)>> operations{
        {"details",
         [this](Words w) {
             for (const std::string& word : w) {
                 SetDetail(word.substr(0, word.find('=')), Number(word.substr(word.find('=') + 1)));
             }
         }},
        {"source", [this](Words w) { source.Set(kControl, Number(w[0])); }},
        {"transfer",
         [this](Words w) {
             transferA = w.front();
             transferB = w.back();
         }},
        {"settle", [this](Words w) { settling.defaults = ParametersIn(w[0], w.subspan(1)); }},
        {"refuse-above", [this](Words w) { source.RefuseAbove(Number(w[0])); }},
        {"user",
         [this](Words w) {
             const auto has = [w](const char* word) {
                 return std::find(w.begin(), w.end(), word) != w.end();
             };
             User& user = users[w[0]];
             user.watcher = std::make_unique<CRegulatorWatcher>(has("told") ? &host.mainWindow : nullptr,
                                                                has("noted") ? &user.done : nullptr,
                                                                has("noted") ? &user.status : nullptr);
         }},
        {"start", [this](Words w) { Watcher(w[0]).Start(1); }},
        {"abort", [this](Words w) { Watcher(w[0]).Start(0); }},
        {"ask", [this](Words w) { Watcher(w[0]).StartAndRequestNotification(); }},
        {"request", [this](Words w) { Watcher(w[0]).RequestNotification(); }},
        {"drop", [this](Words w) { users[w[0]].watcher.reset(); }},
        {"run", [this](Words w) { Run(w[0], w[1]); }},
        {"measure",
         [this](Words w) {
             for (int i = std::stoi(w[0]); i > 0; --i) {
                 MeasureOnce();
             }
         }},
        {"wait",
         [this](Words w) {
             host.clock.Advance(static_cast<std::uint32_t>(std::stoul(w[0])));
             preprocessor::WakeUp(preprocessor::ListIndex::TimedOut);
         }},
        {"on",
         [this](Words w) {
             acts[std::stoi(w[0])] = {w[1], w[2]};
         }},
        {"reported", [this](Words w) { EXPECT_EQ(reported, std::stoi(w[0])); }},
        {"reports", [this](Words w) { ExpectReports(w); }},
        {"state", [this](Words w) { EXPECT_EQ(Watcher(w[0]).GetStatus(), StateNamed(w[1])); }},
        {"noted",
         [this](Words w) {
             EXPECT_TRUE(users[w[0]].done.TryTake());
             EXPECT_EQ(std::exchange(users[w[0]].status, -1), StateNamed(w[1]));
         }},
        {"not-noted", [this](Words w) { EXPECT_FALSE(users[w[0]].done.TryTake()); }},
        {"writes", [this](Words w) { EXPECT_EQ(source.Written().size(), std::stoul(w[0])); }},
        {"sources",
         [this](Words w) {
             EXPECT_EQ(source.Get(kControl), Number(w[0]));
             EXPECT_EQ(source.Get(kSecondControl), Number(w[1]));
         }},
        {"unit",
         [this](Words w) {
             EXPECT_EQ(source.LastUnit(), std::stoi(w[0]));
             CPhyValueMessenger other; // in none
             source.OnMessenger(&other);
         }},
        {"steps", [this](Words w) { EXPECT_EQ(record.steps.size(), std::stoul(w[0])); }},
        {"step", [this](Words w) { ExpectStep(w); }},
        {"asked", [this](Words w) { EXPECT_EQ(provider.asked, std::stoi(w[0])); }},
        {"answer", [this](Words w) { provider.answer = std::stoi(w[0]); }},
        {"no-provider", [this](Words) { host.application.regulationDetails = nullptr; }},
        {"listen", [this](Words) { listener.AddSignal(kResultRmsA, kNoDetector); }},
        {"heard",
         [this](Words w) {
             SettlingVerdict verdict;
             EXPECT_TRUE(listener.GetVerdict(0, verdict));
             EXPECT_EQ(verdict.count, std::stoi(w[0]));
         }},
        {"halt", [](Words) { Halt(); }},
        {"resume", [](Words) { Resume(); }},
        {"path", [this](Words w) { Path(w); }},
    };
};

} // namespace

TEST_P(RegulatorTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Regulator, RegulatorTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "regulator")),
                         TestNameOf);

} // namespace kalvio::test
