// Plays the scenarios of filters and watches. Times are milliseconds; a watch, once named, lives to the end.
//
//   settle all|RESULT TIME N TOLERANCE TYPE [average]   the settling parameters
//   no-settling          the host has none
//   watch W RESULT…      adds results to a watch       remove W      crowd W FIRST N   adds results without a
//   field values RESULT V…     each 10 ms after the last, with its wake-up     bring RESULT V   without
//   notify RESULT LIST RESULT…   and the results of the watch "all" that this reaches, wake-ups included
//   detector NAME        notify-fft RESULT DETECTOR RESULT…
//   wake pending|none|timeout|single|block   wait MS   tick HEX   parameters   halt   resume
//   signal W INDEX STATE VALUE   held W INDEX V…   newest first   and what Users.h has
//   disagrees W INDEX DISTANCE ALLOWED DEVIATION NEEDED   needed W INDEX N
//   filter N TOLERANCE TYPE [average]   a filter alone: take V/STABLE/AVERAGE…   offer V   step   reset
//   taken yes|no   value LATEST-OR-AVERAGE AVERAGE

#include "preprocessor/Supervision.h"
#include "preprocessor/Users.h"

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
    void Watch(const std::string& name, Words results) {
        for (const std::string& result : results) {
            EXPECT_EQ(watches[name].AddSignal(ResultNamed(result), NumberOf(result)), 1);
            if (name == "all") {
                all.push_back(result);
            }
        }
    }

    static int NumberOf(const std::string& result) { return result == "fft" ? 1 : kNoDetector; }

    // What a notification reaches of the watch of all results; it starts over then.
    void ExpectReached(const std::function<void()>& notify, Words expected) {
        for (const std::string& result : all) {
            WriteResult(*GetResultFieldFromID(ResultNamed(result), NumberOf(result)), 1.0);
        }
        notify();
        while (preprocessor::RunPendingWakeUp()) {
        }
        std::vector<std::string> reached;
        for (std::size_t i = 0; i < all.size(); ++i) {
            if (!Held(watches["all"], static_cast<int>(i)).empty()) {
                reached.push_back(all[i]);
            }
        }
        EXPECT_EQ(reached, std::vector<std::string>(expected.begin(), expected.end()));
        watches["all"].Start(1);
    }

    SettlingVerdict VerdictOf(Words words) {
        SettlingVerdict verdict;
        EXPECT_TRUE(watches[words[0]].GetVerdict(std::stoi(words[1]), verdict));
        return verdict;
    }

    CSettlingWatcher::Status SignalOf(Words words) {
        std::array<CSettlingWatcher::Status, 4> status;
        watches[words[0]].GetStatus(status.data(), static_cast<int>(status.size()));
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
    std::vector<std::string> all;
    Users<CSettlingWatcher> watches{host};
    const std::map<std::string, std::function<void(Words)>> operations = watches.With({
        {"settle",
         [this](Words w) {
             SettlingParameters& own = w[0] == "all" ? settling.defaults : settling.For(ResultNamed(w[0]));
             own = ParametersIn(w[1], w.subspan(2));
         }},
        {"no-settling", [this](Words) { host.application.settling = nullptr; }},
        {"watch", [this](Words w) { Watch(w[0], w.subspan(1)); }},
        {"remove", [this](Words w) { watches[w[0]].RemoveAllSignals(); }},
        {"crowd",
         [this](Words w) {
             for (int i = 0; i < std::stoi(w[2]); ++i) {
                 watches[w[0]].AddSignal(std::stoi(w[1]) + i, kNoDetector);
             }
         }},
        {"detector", [this](Words w) { host.fftDetectors.Add(w[0]); }},
        {"notify",
         [this](Words w) {
             const int id = std::isdigit(w[0][0]) != 0 ? std::stoi(w[0]) : ResultNamed(w[0]);
             ExpectReached([&] { NotifyNewData(id, std::stoi(w[1])); }, w.subspan(2));
         }},
        {"notify-fft",
         [this](Words w) {
             ExpectReached([&] { NotifyNewFFTData(ResultNamed(w[0]), std::stoi(w[1])); }, w.subspan(2));
         }},
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
        {"signal",
         [this](Words w) {
             EXPECT_EQ(SignalOf(w).status, StateNamed(w[2]));
             EXPECT_EQ(SignalOf(w).value, Number(w[3]));
         }},
        {"held", [this](Words w) { EXPECT_EQ(Held(watches[w[0]], std::stoi(w[1])), Numbers(w.subspan(2))); }},
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
    });
};

} // namespace

TEST_P(ScenarioTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "scenarios")),
                         TestNameOf);

} // namespace kalvio::test
