#include "host/FftParameters.h"

#include "host/HostTexts.h"

using kalvio::FieldChoice;
using kalvio::FieldKind;
using kalvio::FieldRow;
using kalvio::KeptIn;

namespace {

using Document = CFFTParametersSettings;

constexpr int kDefaultLength = 16384;
constexpr int kLongest = 1 << 20;
constexpr int kLastPosition = 4;
constexpr int kLastSource = 3;
constexpr double kHighestLevel = 0x7FFFFF; // DSP steps
constexpr int kInteger = 1;
constexpr int kReal = 7;

constexpr FieldChoice kSlopes[] = {{0, kalvio::kTextTriggerFalling}, {1, kalvio::kTextTriggerRising}};
constexpr FieldChoice kChannels[] = {{kChannelA, kalvio::kTextChannelA}, {kChannelB, kalvio::kTextChannelB}};

template<std::size_t Channel>
kalvio::Field<double>& Level(CSettingsData& document, const FieldRow&) {
    return static_cast<Document&>(document).triggerLevel[Channel];
}

constexpr FieldRow kRows[] = {
    {.id = 0,
     .ctrlID = kalvio::kCtrlFftLength,
     .details = {kalvio::kTextFftLength, 1, kLongest, kDefaultLength, kInteger, 0},
     .integer = KeptIn<&Document::fftLength>,
     .archivePlace = 0,
     .help = "points of one transform"},
    {.id = 1,
     .ctrlID = kalvio::kCtrlTriggerPosition,
     .details = {kalvio::kTextTriggerPosition, 0, kLastPosition, 0, kInteger, 0},
     .integer = KeptIn<&Document::triggerPosition>,
     .archivePlace = 1,
     .help = "quarters of the buffer that lie before the trigger"},
    {.id = 2,
     .ctrlID = kalvio::kCtrlTriggerLevelA,
     .details = {kalvio::kTextTriggerLevelA, -kHighestLevel - 1, kHighestLevel, 0, kReal, 0},
     .real = Level<0>,
     .archivePlace = 2,
     .help = "the level that triggers on channel A"},
    {.id = 3,
     .ctrlID = kalvio::kCtrlTriggerLevelB,
     .details = {kalvio::kTextTriggerLevelB, -kHighestLevel - 1, kHighestLevel, 0, kReal, 0},
     .real = Level<1>,
     .archivePlace = 3,
     .help = "the level that triggers on channel B"},
    {.id = 4,
     .ctrlID = kalvio::kCtrlTriggerSlope,
     .details = {kalvio::kTextTriggerSlope, 0, 1, 1, 0, 0},
     .kind = FieldKind::Choice,
     .integer = KeptIn<&Document::triggerSlope>,
     .choices = kSlopes,
     .archivePlace = 4,
     .help = "the direction in which the signal passes the level"},
    {.id = 5,
     .ctrlID = kalvio::kCtrlTriggerOn,
     .details = {kalvio::kTextTriggerOn, 0, 1, 0, 0, 0},
     .kind = FieldKind::Flag,
     .integer = KeptIn<&Document::triggerOn>,
     .archivePlace = 5,
     .help = "whether a transform waits for the trigger"},
    {.id = 6,
     .ctrlID = kalvio::kCtrlTriggerSource,
     .details = {kalvio::kTextTriggerSource, 0, kLastSource, 0, kInteger, 0},
     .integer = KeptIn<&Document::triggerSource>,
     .archivePlace = 6,
     .help = "what triggers"},
    {.id = 7,
     .ctrlID = kalvio::kCtrlTriggerChannel,
     .details = {kalvio::kTextTriggerChannel, 0, 1, kChannelA, 0, 0},
     .kind = FieldKind::Choice,
     .integer = KeptIn<&Document::triggerChannel>,
     .choices = kChannels,
     .archivePlace = 7,
     .help = "the channel that is watched for the trigger"},
};

} // namespace

std::span<const FieldRow> CFFTParametersSettings::FieldRows() const {
    return kRows;
}

void CFFTParametersSettings::Serialize(CArchive& archive) {
    const kalvio::LockGuard hold(lock);
    kalvio::SerializeRows(archive, *this, m_saved.flags);
}
