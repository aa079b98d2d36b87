#pragma once

// What a regulation needs around it: a source whose value makes results, details to hand out, and a record
// of the steps.

#include "host/HostApplication.h"
#include "preprocessor/PreProcessor.h"
#include "preprocessor/RegulationDetails.h"
#include "preprocessor/RegulationObserver.h"
#include "preprocessor/SettledResult.h"
#include "support/FakeSettling.h"
#include "support/TestHost.h"

#include <gtest/gtest.h>

#include <functional>
#include <thread>
#include <vector>

namespace kalvio::test {

// A document with sources, storage units; any control id is one. Any thread.
class FakeSource final : public CSettingsData {
public:
    bool OnMessenger(CPhyValueMessenger* messenger) override {
        const std::scoped_lock hold(m_lock);
        m_unit = messenger->unit;
        if (messenger->get) {
            messenger->value = m_values[messenger->ctrlID];
        } else if (messenger->value > m_highest) {
            messenger->refused = true;
        } else {
            m_values[messenger->ctrlID] = messenger->value;
            m_written.emplace_back(messenger->ctrlID, messenger->value);
        }
        return true;
    }
    using CSettingsData::OnMessenger;

    void Set(int ctrlID, double value) {
        const std::scoped_lock hold(m_lock);
        m_values[ctrlID] = value;
        m_written.clear();
    }
    void RefuseAbove(double highest) {
        const std::scoped_lock hold(m_lock);
        m_highest = highest;
    }
    double Get(int ctrlID) {
        const std::scoped_lock hold(m_lock);
        return m_values[ctrlID];
    }
    int LastUnit() {
        const std::scoped_lock hold(m_lock);
        return m_unit;
    }
    std::vector<std::pair<int, double>> Written() {
        const std::scoped_lock hold(m_lock);
        return m_written;
    }

private:
    std::mutex m_lock;
    double m_highest = 1e300;                      // guarded by m_lock
    int m_unit = kUnitNone;                        // guarded by m_lock; of the last messenger
    std::map<int, double> m_values;                // guarded by m_lock
    std::vector<std::pair<int, double>> m_written; // guarded by m_lock
};

// Hands out the details it holds, as often as asked.
struct FixedDetails final : NPreProcessor::RegulationDetailsProvider {
    NPreProcessor::RegulationDetails details;
    int answer = 1;
    int asked = 0;
    int GetRegulationDetails(NPreProcessor::RegulationDetails& out) override {
        ++asked;
        out = details;
        return answer;
    }
};

inline constexpr int kControl = 7001; // of a FakeSource
inline constexpr int kSecondControl = 7002;

// Regulates the RMS amplitude to 499 to 501 by a source of 0 to 1000, monotonically.
inline NPreProcessor::RegulationDetails AmplitudeDetails(FakeSource& source) {
    NPreProcessor::RegulationDetails d;
    d.resultA = kResultRmsA;
    d.resultB = kResultRmsB;
    d.sourceCtrlID = kControl;
    d.sourceSettings = &source;
    d.sourceMaximum = 1000.0;
    d.lower = 499.0;
    d.target = 500.0;
    d.upper = 501.0;
    return d;
}

// Records every step while it lives.
class StepRecord final : public NPreProcessor::RegulationObserver {
public:
    StepRecord() : m_previous(NPreProcessor::InstallRegulationObserver(this)) {}
    ~StepRecord() override { NPreProcessor::InstallRegulationObserver(m_previous); }
    StepRecord(const StepRecord&) = delete;
    StepRecord& operator=(const StepRecord&) = delete;
    void OnRegulationStep(const NPreProcessor::RegulationStep& step) override { steps.push_back(step); }
    std::vector<NPreProcessor::RegulationStep> steps; // under the pre-processor lock

private:
    NPreProcessor::RegulationObserver* m_previous;
};

// A thread that measures without pause while it lives, one block a millisecond of the manual clock; runs the
// pre-processor's own thread meanwhile.
class BackgroundMeasurement final {
public:
    BackgroundMeasurement(ManualClock& clock, std::function<void()> measure) {
        preprocessor::SetThreaded(true);
        m_thread = std::jthread([&clock, measure = std::move(measure)](const std::stop_token& stop) {
            while (!stop.stop_requested()) {
                measure();
                NPreProcessor::NotifyNewData(kResultRmsA, 1);
                clock.Advance(1);
                std::this_thread::yield();
            }
        });
    }
    ~BackgroundMeasurement() {
        m_thread = {};
        preprocessor::SetThreaded(false);
    }
    BackgroundMeasurement(const BackgroundMeasurement&) = delete;
    BackgroundMeasurement& operator=(const BackgroundMeasurement&) = delete;

private:
    std::jthread m_thread;
};

// Wake-ups come from the test; results settle at once.
class RegulationRig : public ::testing::Test {
protected:
    RegulationRig() {
        settling.defaults = {.settlingTime = 0, .numResults = 1, .tolerance = 0.0, .toleranceType = 0};
        host.application.settling = &settling;
        preprocessor::SetThreaded(false);
    }
    ~RegulationRig() override {
        host.application.regulationDetails = nullptr;
        preprocessor::SetThreaded(true);
    }

    // One block of measurements: what `measure` puts into the host's results, and the wake-up it causes.
    void MeasureOnce() {
        host.clock.Advance(10);
        if (measure) {
            measure();
        }
        NPreProcessor::NotifyNewData(kResultRmsA, 1);
        preprocessor::RunPendingWakeUp();
    }

    static void Put(int resultID, double value) {
        WriteResult(*GetResultFieldFromID(resultID, 65535), value);
    }

    TestHost host;
    FakeSettling settling;
    std::function<void()> measure;
};

} // namespace kalvio::test
