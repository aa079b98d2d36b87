#include "reference_host/measurement/ResultWords.h"

#include "host/Units.h"

namespace kalvio::reference_host {

namespace {

constexpr double kFractionScale = 16777216.0; // 2^24
constexpr double kDegreeScale = 32768.0;
constexpr double kPpmScale = 256.0;
constexpr int kStatusWord = 14;
constexpr unsigned long kValidBit = 1;
constexpr long kSignBit = 0x800000;

// An unsigned figure: integer part, then fraction.
double Split(const CDSPMap& words, int index) {
    return static_cast<double>(DSPWordToULong(words.GetAt(index))) +
           static_cast<double>(DSPWordToULong(words.GetAt(index + 1))) / kFractionScale;
}

double Signed(const CDSPMap& words, int index, double scale) {
    const long value = DSPWordToLong(words.GetAt(index));
    return static_cast<double>((value ^ kSignBit) - kSignBit) / scale;
}

double Stored(double value, Unit unit) {
    return CPhysicalValue::UnitToStorage(value, unit, {});
}

bool IsValid(const CDSPMap& words) {
    return (DSPWordToULong(words.GetAt(kStatusWord)) & kValidBit) != 0;
}

} // namespace

ChannelReading ReadChannel(const CDSPMap& words) {
    ChannelReading reading;
    reading.valid = IsValid(words);
    reading.rms = Stored(Split(words, 0), kUnitVolt);
    reading.frequency = Stored(Split(words, 2), kUnitHertz);
    reading.phase = Stored(Signed(words, 4, kDegreeScale), kUnitDegree);
    reading.ctDetector = Stored(Split(words, 5), kUnitVolt);
    for (std::size_t i = 0; i < kHarmonics; ++i) {
        reading.harmonics[i] = Stored(Split(words, 7 + 2 * static_cast<int>(i)), kUnitVolt);
    }
    return reading;
}

DigitalReading ReadDigital(const CDSPMap& words) {
    DigitalReading reading;
    reading.valid = IsValid(words);
    reading.carrierAmplitude = Stored(Split(words, 0), kUnitCarrierVolt);
    reading.carrierJitter = Stored(Split(words, 2), kUnitUi);
    reading.carrierPhase = Stored(Signed(words, 4, kDegreeScale), kUnitDegree);
    reading.frameRate = Stored(Split(words, 5), kUnitHertz);
    reading.frameDeviation = Stored(Signed(words, 7, kPpmScale), kUnitPpm);
    reading.syncRate = Stored(Split(words, 8), kUnitHertz);
    reading.syncDeviation = Stored(Signed(words, 10, kPpmScale), kUnitPpm);
    return reading;
}

} // namespace kalvio::reference_host
