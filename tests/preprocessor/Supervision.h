#pragma once

// A pre-processor that the test drives itself: host, settling parameters, and results brought one by one.

#include "preprocessor/PreProcessor.h"
#include "preprocessor/SettledResult.h"
#include "preprocessor/SettlingWatcher.h"
#include "support/FakeSettling.h"
#include "support/Scenarios.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <initializer_list>

namespace kalvio::test {

inline constexpr int kSingle = kResultInputFrameRate; // a result of the single list
inline constexpr int kBlock = kResultRmsA;            // one of the block list

inline double Number(const std::string& word) {
    return word == "invalid"  ? kInvalidResult
           : word == "beside" ? std::nextafter(kInvalidResult, 0.0)
                              : std::stod(word);
}

inline int ResultNamed(const std::string& name) {
    static const std::map<std::string, int> kResults{{"single", kSingle},
                                                     {"block", kBlock},
                                                     {"phase", kResultPhase},
                                                     {"fft", kResultFftDetectorA},
                                                     {"sync", kResultSyncFrameRate},
                                                     {"jitter", kResultCarrierJitter}};
    return kResults.at(name);
}

// N, tolerance, type and perhaps "average".
inline SettlingParameters ParametersIn(const std::string& time, Words words) {
    static const std::map<std::string, int> kTypes{
        {"none", 0}, {"normal", 1}, {"exponential", 2}, {"undefined", 3}};
    return {std::stoul(time), std::stoi(words[0]), Number(words[1]), kTypes.at(words[2]), words.size() > 3};
}

class Supervision : public ::testing::Test {
protected:
    Supervision() {
        host.application.settling = &settling;
        preprocessor::SetThreaded(false);
    }
    ~Supervision() override { preprocessor::SetThreaded(true); }

    static bool IsBlock(int resultID) { return resultID == kBlock || resultID == kResultPhase; }

    // The host has a new value and says so; no wake-up yet.
    static void Bring(int resultID, double value) {
        WriteResult(*GetResultFieldFromID(resultID, kNoDetector), value);
        NPreProcessor::NotifyNewData(resultID, IsBlock(resultID) ? 1 : 0);
    }

    // Each value 10 ms after the one before, with the wake-up that it causes.
    void Deliver(int resultID, std::initializer_list<double> values) {
        for (const double value : values) {
            host.clock.Advance(10);
            Bring(resultID, value);
            preprocessor::RunPendingWakeUp();
        }
    }

    static CSettlingWatcher::Status StatusOf(CSettlingWatcher& watcher) {
        CSettlingWatcher::Status status;
        watcher.GetStatus(&status, 1);
        return status;
    }

    static NPreProcessor::EResult StateOf(CSettlingWatcher& watcher) { return watcher.GetStatus(nullptr, 0); }

    // What the window of a result holds, newest first.
    static std::vector<double> Held(CSettlingWatcher& watcher, int index = 0) {
        SettlingVerdict verdict;
        EXPECT_TRUE(watcher.GetVerdict(index, verdict));
        return {verdict.values.begin(), verdict.values.begin() + verdict.count};
    }

    TestHost host;
    FakeSettling settling;
};

} // namespace kalvio::test
