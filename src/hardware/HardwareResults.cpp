// Which results have arrived, and who is told.

#include "hardware/Hardware.h"

#include "host/HostApplication.h"

#include <algorithm>

using namespace kalvio;

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

EResIndex CHardware::GetResultIndex(int resultID) {
    const auto* row = std::ranges::find(kResultIndices, resultID, &ResultIndexRow::resultID);
    return row == std::end(kResultIndices) ? kResSyncFrameRate : row->index;
}

int CHardware::GetIndexForFFTDetectorID(int detectorID) const {
    const CFFTDetectorList* detectors = GetHostApplication().fftDetectors;
    return detectors == nullptr ? -1 : detectors->SlotOf(detectorID);
}

void CHardware::SetResultReady(int resultID, EResIndex index, int noNotify) {
    if (index < 0 || index >= kResultFlagCount) {
        return;
    }
    m_flags.Set(index);
    if (noNotify == 0 && IsPreprocessorEnabled()) {
        NPreProcessor::NotifyNewData(resultID, 0);
    }
}

void CHardware::SetFFTResultReady(int resultID, int detectorID, int notify) {
    const int slot = GetIndexForFFTDetectorID(detectorID);
    if (IsSlot(slot)) {
        m_flags.SetFft(slot, FftChannel(resultID));
    }
    if (notify != 0 && IsPreprocessorEnabled()) {
        NPreProcessor::NotifyNewFFTData(resultID, detectorID);
    }
}

int CHardware::IsResultReady(int resultID, int detectorID) {
    if (resultID != kResultFftDetectorA && resultID != kResultFftDetectorB) {
        return m_flags.Take(GetResultIndex(resultID));
    }
    const int slot = GetIndexForFFTDetectorID(detectorID);
    return IsSlot(slot) ? m_flags.TakeFft(slot, FftChannel(resultID)) : 0;
}

int CHardware::InitialiseResultReadyFlags() {
    m_flags.Clear();
    return 1;
}

void CHardware::TerminateResultReadyFlags() {}

int CHardware::LockResults() {
    m_results.Lock();
    return 1;
}

int CHardware::UnlockResults() {
    m_results.Unlock();
    return 1;
}
