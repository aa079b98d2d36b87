// Plays regulations.
//
//   details FIELD=V…   source V   transfer NAME [NAME of channel B]   settle TIME N TOLERANCE TYPE
//   refuse-above V   run W STATE, from a start to its end   measure N   wait MS, with a wake-up after it
//   writes N   sources A B   unit CODE of the last access   steps N   step INDEX FIELD=V…   asked N
//   answer 0|1   no-provider   listen   heard N   halt   resume   and what Users.h has
//   path ALGORITHM TARGET TOLERANCE TREND DIRECTION STEP START TRANSFER OUTCOME SOURCE…

#include "preprocessor/RegulatorWatcher.h"
#include "preprocessor/Supervision.h"
#include "preprocessor/Users.h"
#include "support/RegulationRig.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;

class RegulatorTest : public RegulationRig, public ::testing::WithParamInterface<Scenario> {
protected:
    RegulatorTest() {
        host.application.regulationDetails = &provider;
        provider.details = AmplitudeDetails(source);
        source.Set(kControl, 100.0);
        measure = [this] {
            Put(kResultRmsA, Transferred(transferA, source.Get(kControl)));
            Put(kResultRmsB, Transferred(transferB, source.Get(kControl)));
        };
        users.beforeAgain = [this] { source.Set(kControl, 100.0); };
    }

    double Transferred(const std::string& transfer, double s) {
        return transfer == "falling" ? 1000.0 - s
               : transfer == "five"  ? 5.0
               : transfer == "noise" ? 2.0 * s + (turn++ % 2 == 0 ? 10.0 : -10.0)
                                     : std::stod(transfer.substr(1)) * s;
    }

    void Run(const std::string& name, const std::string& state) {
        constexpr int kMostMeasurements = 400;
        users[name].Start(1);
        for (int i = 0; i < kMostMeasurements && users[name].GetStatus() == Working; ++i) {
            MeasureOnce();
        }
        EXPECT_EQ(users[name].GetStatus(), StateNamed(state));
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

    FixedDetails provider;
    FakeSource source;
    StepRecord record;
    CSettlingWatcher listener{nullptr, nullptr, nullptr};
    std::string transferA = "x2";
    std::string transferB = "x2";
    int turn = 0;
    Users<CRegulatorWatcher> users{host};
    const std::map<std::string, std::function<void(Words)>> operations = users.With({
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
    });
};

} // namespace

TEST_P(RegulatorTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Regulator, RegulatorTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "regulator")),
                         TestNameOf);

} // namespace kalvio::test
