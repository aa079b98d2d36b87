#include "hardware/results/ResultArrivals.h"

#include "hardware/PreProcessorNotifications.h"
#include "host/HostApplication.h"

#include <algorithm>

namespace kalvio {

namespace {

struct ResultIndexRow {
    int resultID;
    EResIndex index;
};

constexpr ResultIndexRow kResultIndices[] = {
    {kResultSyncFrameRate, kResSyncFrameRate},
    {kResultSyncFrameRateDeviation, kResSyncDeviation},
    {kResultInputFrameRate, kResInputFrameRate},
    {kResultInputFrameRateDeviation, kResInputDeviation},
    {kResultCarrierAmplitude, kResCarrierAmplitude},
    {kResultCarrierJitter, kResCarrierJitter},
    {kResultCarrierPhase, kResCarrierPhase},
    {kResultPhase, kResPhase},
    {kResultPhaseAlias, kResPhase},
    {kResultRmsA, kResRmsA},
    {kResultRmsB, kResRmsB},
    {kResultFrequencyA, kResFrequencyA},
    {kResultFrequencyB, kResFrequencyB},
    {kResultCtDetectorA, kResCtDetectorA},
    {kResultCtDetectorB, kResCtDetectorB},
    {kResultFftDetectorA, kResFftDetectorA},
    {kResultFftDetectorB, kResFftDetectorB},
};

bool IsSlot(int slot) {
    return slot >= 0 && slot < kFftDetectorSlots;
}

int FftChannel(int resultID) {
    return resultID == kResultFftDetectorB ? kChannelB : kChannelA;
}

} // namespace

EResIndex ResultArrivals::IndexOf(int resultID) {
    const auto* row = std::ranges::find(kResultIndices, resultID, &ResultIndexRow::resultID);
    return row == std::end(kResultIndices) ? kResSyncFrameRate : row->index;
}

int ResultArrivals::SlotOf(int detectorID) {
    const CFFTDetectorList* detectors = GetHostApplication().fftDetectors;
    return detectors == nullptr ? -1 : detectors->SlotOf(detectorID);
}

void ResultArrivals::SetReady(int resultID, EResIndex index, bool notify) {
    if (index < 0 || index >= kResultFlagCount) {
        return;
    }
    m_flags.Set(index);
    if (notify && AreNotificationsEnabled()) {
        NPreProcessor::NotifyNewData(resultID, 0);
    }
}

void ResultArrivals::SetFftReady(int resultID, int detectorID, bool notify) {
    const int slot = SlotOf(detectorID);
    if (IsSlot(slot)) {
        m_flags.SetFft(slot, FftChannel(resultID));
    }
    if (notify && AreNotificationsEnabled()) {
        NPreProcessor::NotifyNewFFTData(resultID, detectorID);
    }
}

int ResultArrivals::TakeReady(int resultID, int detectorID) {
    if (resultID != kResultFftDetectorA && resultID != kResultFftDetectorB) {
        return m_flags.Take(IndexOf(resultID));
    }
    const int slot = SlotOf(detectorID);
    return IsSlot(slot) ? m_flags.TakeFft(slot, FftChannel(resultID)) : 0;
}

} // namespace kalvio
