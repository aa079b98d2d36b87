#include "reference_host/measurement/MeasurementEngine.h"

#include "host/FftDetectors.h"
#include "host/ResultCatalogue.h"

#include <algorithm>

namespace kalvio::reference_host {

namespace {

constexpr std::uint8_t kDspA = 0;
constexpr std::uint8_t kDspB = 1;
constexpr std::uint8_t kDataSpace = 'X';
constexpr std::uint32_t kChannelBlock = 0x100;
constexpr std::uint32_t kDigitalBlock = 0x120;

double OrNone(bool valid, double value) {
    return valid ? value : kInvalidResult;
}

// Which part of the spectrum a detector of the list measures: the first the fundamental, and so on.
double HarmonicOf(const ChannelReading& reading, int detectorId) {
    const auto index = static_cast<std::size_t>(detectorId - 1);
    return OrNone(reading.valid && index < kHarmonics, reading.harmonics[std::min(index, kHarmonics - 1)]);
}

} // namespace

bool MeasurementEngine::ReadBlock(std::uint8_t dsp, std::uint32_t address, CDSPMap& words) {
    std::array<std::uint8_t, kDspMapBytes> bytes{};
    return m_hardware.DSPGetMemBlock24(dsp, kDataSpace, address, kDspMapBytes, bytes.data()) == 0 &&
           words.SetDSPWords(bytes.data(), kDspMapBytes) != 0;
}

bool MeasurementEngine::ReadAll(Readings& readings) {
    CDSPMap channelA;
    CDSPMap channelB;
    CDSPMap digital;
    if (!ReadBlock(kDspA, kChannelBlock, channelA) || !ReadBlock(kDspA, kDigitalBlock, digital) ||
        !ReadBlock(kDspB, kChannelBlock, channelB)) {
        return false;
    }
    readings = {ReadChannel(channelA), ReadChannel(channelB), ReadDigital(digital)};
    return m_hardware.ResetHF2Flag(kDspA) == 0 && m_hardware.ResetHF2Flag(kDspB) == 0;
}

bool MeasurementEngine::Poll() {
    const std::uint64_t pass = m_gate.Pass();
    // The unit raises both flags together, so that B's need not be asked for.
    if (m_hardware.IsHardwarePresent() == 0 || m_hardware.IsHF2FlagReady(kDspA) == 0) {
        return false;
    }
    Readings readings;
    if (!ReadAll(readings) || !m_gate.PublishIfCurrent(pass, [this, &readings] { Publish(readings); })) {
        return false;
    }
    ++m_blocks;
    if (onResults) {
        onResults();
    }
    return true;
}

void MeasurementEngine::Publish(const Readings& readings) {
    m_hardware.LockResults();
    Store(readings);
    StoreDetectors(readings);
    m_hardware.UnlockResults();
    MarkReady(readings);
}

void MeasurementEngine::Store(const Readings& readings) {
    const ChannelReading& a = readings.channelA;
    const ChannelReading& b = readings.channelB;
    const DigitalReading& digital = readings.digital;
    WriteResult(m_host.analyserResults.rmsA, OrNone(a.valid, a.rms));
    WriteResult(m_host.analyserResults.frequencyA, OrNone(a.valid, a.frequency));
    WriteResult(m_host.analyserResults.rmsB, OrNone(b.valid, b.rms));
    WriteResult(m_host.analyserResults.frequencyB, OrNone(b.valid, b.frequency));
    WriteResult(m_host.analyserResults.phase, OrNone(a.valid, a.phase));
    WriteResult(m_host.ctDetectorResults.channelA, OrNone(a.valid, a.ctDetector));
    WriteResult(m_host.ctDetectorResults.channelB, OrNone(b.valid, b.ctDetector));
    WriteResult(m_host.carrierResults.amplitude, OrNone(digital.valid, digital.carrierAmplitude));
    WriteResult(m_host.carrierResults.jitter, OrNone(digital.valid, digital.carrierJitter));
    WriteResult(m_host.carrierResults.phase, OrNone(digital.valid, digital.carrierPhase));
    WriteResult(m_host.digitalInputResults.frameRate, OrNone(digital.valid, digital.frameRate));
    WriteResult(m_host.digitalInputResults.deviation, OrNone(digital.valid, digital.frameDeviation));
    WriteResult(m_host.syncResults.frameRate, OrNone(digital.valid, digital.syncRate));
    WriteResult(m_host.syncResults.deviation, OrNone(digital.valid, digital.syncDeviation));
}

std::vector<CFFTDetectorSettings*> MeasurementEngine::Detectors() const {
    return m_host.fftDetectors == nullptr ? std::vector<CFFTDetectorSettings*>() : m_host.fftDetectors->All();
}

void MeasurementEngine::StoreDetectors(const Readings& readings) {
    for (CFFTDetectorSettings* detector : Detectors()) {
        WriteResult(*detector->ResultA(), HarmonicOf(readings.channelA, detector->Id()));
        WriteResult(*detector->ResultB(), HarmonicOf(readings.channelB, detector->Id()));
    }
}

void MeasurementEngine::MarkReady(ResultList list, int noNotify) {
    for (const ResultRow& row : Results()) {
        if (row.list == list && row.name != nullptr && !row.usesDetector) {
            m_hardware.SetResultReady(row.id, CHardware::GetResultIndex(row.id), noNotify);
        }
    }
}

void MeasurementEngine::MarkReady(const Readings& readings) {
    if (readings.channelA.valid && readings.channelB.valid) {
        // The block notice tells of them all.
        MarkReady(ResultList::Block, 1);
        if (m_hardware.IsPreprocessorEnabled()) {
            NPreProcessor::NotifyNewData(kResultRmsA, 1);
        }
        for (const CFFTDetectorSettings* detector : Detectors()) {
            m_hardware.SetFFTResultReady(kResultFftDetectorA, detector->Id(), 1);
            m_hardware.SetFFTResultReady(kResultFftDetectorB, detector->Id(), 1);
        }
    }
    if (readings.digital.valid) {
        MarkReady(ResultList::Single, 0);
    }
}

} // namespace kalvio::reference_host
