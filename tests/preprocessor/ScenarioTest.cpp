// Plays the scenarios of filters and watches. Times are milliseconds; a watch, once named, lives to the end.
//
//   settle all|RESULT TIME N TOLERANCE TYPE [average]   the settling parameters
//   watch W RESULT…      adds results to a watch       start W, abort W, remove W, drop W
//   values RESULT V…     each 10 ms after the last, with its wake-up     bring RESULT V   without
//   wake pending|none|timeout|single|block   wait MS   tick HEX   parameters   halt   resume
//   state W STATE   signal W INDEX STATE VALUE   held W INDEX V…   newest first
//   disagrees W INDEX DISTANCE ALLOWED DEVIATION NEEDED   needed W INDEX N
//   filter N TOLERANCE TYPE [average]   a filter alone: take V/STABLE/AVERAGE…   offer V   step   reset
//   taken yes|no   value LATEST-OR-AVERAGE AVERAGE

#include "preprocessor/Supervision.h"
#include "support/StateNames.h"

namespace kalvio::test {
namespace {

using namespace NPreProcessor;
using preprocessor::ListIndex;

std::vector<double> Numbers(Words words) {
    std::vector<double> numbers;
    std::transform(words.begin(), words.end(), std::back_inserter(numbers), Number);
    return numbers;
}

ListIndex ListNamed(const std::string& name) {
    return name == "single" ? ListIndex::Single : name == "block" ? ListIndex::Block : ListIndex::TimedOut;
}

class ScenarioTest : public Supervision, public ::testing::WithParamInterface<Scenario> {
protected:
    CSettlingWatcher& Watch(const std::string& name) {
        auto& watch = watches[name];
        if (watch == nullptr) {
            watch = std::make_unique<CSettlingWatcher>(nullptr, nullptr, nullptr);
        }
        return *watch;
    }

    SettlingVerdict VerdictOf(Words words) {
        SettlingVerdict verdict;
        EXPECT_TRUE(Watch(words[0]).GetVerdict(std::stoi(words[1]), verdict));
        return verdict;
    }

    CSettlingWatcher::Status SignalOf(Words words) {
        std::array<CSettlingWatcher::Status, 4> status;
        Watch(words[0]).GetStatus(status.data(), static_cast<int>(status.size()));
        return status[std::stoul(words[1])];
    }

    void Offer(const std::string& value) {
        WriteResult(host.application.analyserResults.rmsA, Number(value));
        EXPECT_TRUE(filter.Offer());
        WriteResult(host.application.analyserResults.rmsA, 99.0);
        EXPECT_FALSE(filter.Offer()); // the first one stands
    }

    void Take(const std::string& word) {
        const std::size_t stable = word.find('/');
        const std::size_t average = word.find('/', stable + 1);
        Offer(word.substr(0, stable));
        filter.Step();
        EXPECT_EQ(filter.IsStable(), word[stable + 1] == '1') << word;
        if (average != std::string::npos) {
            const double mean = Number(word.substr(average + 1));
            EXPECT_EQ(filter.Value(true), mean) << word;
            EXPECT_EQ(filter.Value(false), settling.defaults.averaging ? mean : Number(word)) << word;
        }
    }

    CSettlingFilter filter{kBlock, kNoDetector};
    std::map<std::string, std::unique_ptr<CSettlingWatcher>> watches;
    const std::map<std::string, std::function<void(Words)>> operations{
        {"settle",
         [this](Words w) {
             SettlingParameters& own = w[0] == "all" ? settling.defaults : settling.For(ResultNamed(w[0]));
             own = ParametersIn(w[1], w.subspan(2));
         }},
        {"watch",
         [this](Words w) {
             for (const std::string& result : w.subspan(1)) {
                 EXPECT_EQ(Watch(w[0]).AddSignal(ResultNamed(result), kNoDetector), 1);
             }
             Watch(w[0]);
         }},
        {"start", [this](Words w) { Watch(w[0]).Start(1); }},
        {"abort", [this](Words w) { Watch(w[0]).Start(0); }},
        {"remove", [this](Words w) { Watch(w[0]).RemoveAllSignals(); }},
        {"drop", [this](Words w) { watches.erase(w[0]); }},
        {"values",
         [this](Words w) {
             for (const double value : Numbers(w.subspan(1))) {
                 Deliver(ResultNamed(w[0]), {value});
             }
         }},
        {"bring", [](Words w) { Bring(ResultNamed(w[0]), Number(w[1])); }},
        {"wake",
         [](Words w) {
             if (w[0] == "pending") {
                 EXPECT_TRUE(preprocessor::RunPendingWakeUp());
             } else if (w[0] == "none") {
                 EXPECT_FALSE(preprocessor::RunPendingWakeUp());
             } else {
                 preprocessor::WakeUp(ListNamed(w[0]));
             }
         }},
        {"wait", [this](Words w) { host.clock.Advance(static_cast<std::uint32_t>(std::stoul(w[0]))); }},
        {"tick",
         [this](Words w) { host.clock.SetTick(static_cast<std::uint32_t>(std::stoul(w[0], nullptr, 16))); }},
        {"parameters", [](Words) { NotifyNewSettlingParams(); }},
        {"halt", [](Words) { Halt(); }},
        {"resume", [](Words) { Resume(); }},
        {"state", [this](Words w) { EXPECT_EQ(StateOf(Watch(w[0])), StateNamed(w[1])); }},
        {"signal",
         [this](Words w) {
             EXPECT_EQ(SignalOf(w).status, StateNamed(w[2]));
             EXPECT_EQ(SignalOf(w).value, Number(w[3]));
         }},
        {"held", [this](Words w) { EXPECT_EQ(Held(Watch(w[0]), std::stoi(w[1])), Numbers(w.subspan(2))); }},
        {"disagrees",
         [this](Words w) {
             const SettlingVerdict v = VerdictOf(w);
             const std::vector<double> found{1.0 * v.disagreeing, v.allowed, v.deviation, 1.0 * v.needed};
             EXPECT_EQ(found, Numbers(w.subspan(2)));
             EXPECT_EQ(v.stable, v.disagreeing == 0);
         }},
        {"needed", [this](Words w) { EXPECT_EQ(VerdictOf(w).needed, std::stoi(w[2])); }},
        {"filter",
         [this](Words w) {
             settling.defaults = ParametersIn("0", w);
             filter.LoadParameters();
         }},
        {"take",
         [this](Words w) { std::for_each(w.begin(), w.end(), [this](const auto& word) { Take(word); }); }},
        {"offer", [this](Words w) { Offer(w[0]); }},
        {"step", [this](Words) { filter.Step(); }},
        {"reset", [this](Words) { filter.Reset(); }},
        {"taken", [this](Words w) { EXPECT_EQ(filter.WasTaken(), w[0] == "yes"); }},
        {"value",
         [this](Words w) {
             EXPECT_EQ((std::vector{filter.Value(false), filter.Value(true)}), Numbers(w));
         }},
    };
};

} // namespace

TEST_P(ScenarioTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "scenarios")),
                         TestNameOf);

} // namespace kalvio::test
