#include "host/MeasurementHelpers.h"

#include "host/HostApplication.h"
#include "host/ResultCatalogue.h"

namespace {

struct ChannelPair {
    int first;
    int second;
};

// By the channel asked for: A, B, both.
constexpr ChannelPair kChannelPairs[] = {
    {kChannelA, kChannelA}, {kChannelB, kChannelB}, {kChannelA, kChannelB}};

constexpr int kHintEverything = -1;

} // namespace

CFFTDetectorSettings* GetFFTDetectorFromID(int detectorID) {
    const CFFTDetectorList* list = GetHostApplication().fftDetectors;
    return list == nullptr ? nullptr : list->Find(detectorID);
}

void IncFFTUsageCount() {
    ++GetHostApplication().fftUsageCount;
}

void DecFFTUsageCount() {
    std::atomic<int>& count = GetHostApplication().fftUsageCount;
    int seen = count.load();
    while (seen > 0 && !count.compare_exchange_weak(seen, seen - 1)) {
    }
}

int IsMultiChannelResult(int resultID) {
    const kalvio::ResultRow* row = kalvio::FindResultRow(resultID);
    return row != nullptr && row->channelB != kalvio::kNoOtherChannel ? 1 : 0;
}

void GetSWAnalyserChannels(int& first, int& second) {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    if (analyser != nullptr) {
        first = analyser->firstChannel;
        second = analyser->secondChannel;
    }
}

void SetAnalyserChannel(int channel) {
    CAnalyserSettings* analyser = GetHostApplication().analyser;
    if (analyser == nullptr || channel < kChannelA || channel > kChannelBoth) {
        return;
    }
    const ChannelPair& pair = kChannelPairs[channel];
    analyser->firstChannel = pair.first;
    analyser->secondChannel = pair.second;
    analyser->SetModifiedFlag();
    UpdateViews(nullptr, kHintEverything, nullptr, 1);
}

void ToggleTrigger(int on) {
    CHostApplication& application = GetHostApplication();
    if (on != 0) {
        ++application.triggerToggles;
    }
    if (CFFTParametersSettings* parameters = application.fftParameters) {
        const kalvio::LockGuard hold(parameters->lock);
        parameters->pending = on != 0 ? 1 : 0;
    }
}

double ConvertHexToV(double steps, double stepsPerVolt) {
    return steps / stepsPerVolt;
}

bool IsJDO() {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    return analyser != nullptr && analyser->jitterDomain.Get() == 1;
}

bool AreChannelsReversed() {
    const CAnalyserSettings* analyser = GetHostApplication().analyser;
    return analyser != nullptr && analyser->channelsReversed.Get() == 1;
}
