// Clock directions, frequencies and delays.

#include "adapters/KEDAAdapter.h"
#include "adapters/KEDAHints.h"
#include "adapters/KEDATexts.h"
#include "host/SettingsData.h"
#include "platform/UserInterface.h"

#include <algorithm>

using namespace kalvio::keda;

namespace {

constexpr int kFastestClock = 24'576'000; // hertz
constexpr int kClockHints[] = {HINT_KEDA_GEN_CLOCKS_CHANGED, HINT_KEDA_ANA_CLOCKS_CHANGED};
constexpr int kCodesWithoutDelay[] = {1, 2}; // what is stored where no delay is allowed
constexpr int kFirstDelayCode = 1;

std::size_t At(int which) {
    return which == 0 ? kGenerator : kAnalyser;
}

CString DirectionText(bool generator, bool analyser) {
    if (generator && analyser) {
        return kalvio::LoadText(kTextBothDirections);
    }
    return generator ? CString("Generator") : CString("Analyser");
}

CString ClockText(bool bit, bool master) {
    return kalvio::LoadText(bit && master ? kTextBothClocks : bit ? kTextBitClock : kTextMasterClock);
}

// With the limit in megahertz; direction and clock are to be filled in.
CString TooFastText() {
    constexpr double kHertzPerMegahertz = 1e6;
    constexpr std::string_view kPlace = "%.3f";
    CString text = kalvio::LoadText(kTextClockTooFast);
    if (const std::size_t at = text.find(kPlace); at != CString::npos) {
        text.replace(at, kPlace.size(), kalvio::Format("%.3f", kFastestClock / kHertzPerMegahertz));
    }
    return text;
}

} // namespace

int CKEDAAdapter::GetMasterClockDir(int which) const {
    if (Get(kMasterIn[At(which)]) != 0) {
        return CLOCKDIR_IN;
    }
    return Get(kMasterNotOut[At(which)]) != 0 ? CLOCKDIR_NONE : CLOCKDIR_OUT;
}

int CKEDAAdapter::GetSerialClockDir(int which) const {
    return Get(kSerialIn[At(which)]) != 0 ? CLOCKDIR_IN : CLOCKDIR_OUT;
}

void CKEDAAdapter::ChangeMasterClockDir(std::size_t which, int direction) {
    kMasterIn[which].Set(m_image, direction == CLOCKDIR_IN ? 1 : 0);
    kMasterNotOut[which].Set(m_image, direction != CLOCKDIR_OUT ? 1 : 0);
}

void CKEDAAdapter::ChangeSerialClockDir(std::size_t which, int direction) {
    kSerialIn[which].Set(m_image, direction == CLOCKDIR_IN ? 1 : 0);
}

int CKEDAAdapter::ChangeClockDir(int which, void (CKEDAAdapter::*change)(std::size_t, int), int direction) {
    const bool allowedBefore = IsDelayAllowed(which) != 0;
    (this->*change)(At(which), direction);
    if (which == 0) {
        UpdateRefBypass();
    }
    if (!allowedBefore || IsDelayAllowed(which) == 0) {
        SetDelay(which, 0);
    }
    UpdateViews(nullptr, kClockHints[At(which)], nullptr, 0);
    return 1;
}

int CKEDAAdapter::SetMasterClockDir(int which, int direction) {
    return ChangeClockDir(which, &CKEDAAdapter::ChangeMasterClockDir, direction);
}

int CKEDAAdapter::SetSerialClockDir(int which, int direction) {
    return ChangeClockDir(which, &CKEDAAdapter::ChangeSerialClockDir, direction);
}

SyncSource CKEDAAdapter::GetSyncSource(int which) const {
    if (GetSerialClockDir(which) == CLOCKDIR_IN) {
        return SyncSource::SerialClocks;
    }
    return GetMasterClockDir(which) == CLOCKDIR_IN ? SyncSource::MasterClock : SyncSource::DigitalOutput;
}

int CKEDAAdapter::GetMasterClockMultiplier(int which) const {
    return kMultipliers[static_cast<std::size_t>(Get(kMultiplier[At(which)]))];
}

int CKEDAAdapter::SetMasterClockMultiplier(int which, int multiplier) {
    const auto found = std::ranges::find(kMultipliers, multiplier);
    if (found == kMultipliers.end()) {
        return 0;
    }
    kMultiplier[At(which)].Set(m_image, static_cast<int>(found - kMultipliers.begin()));
    ClocksValid(which == 0 ? 1 : 0, which, 0);
    UpdateViews(nullptr, kClockHints[At(which)], nullptr, 0);
    return 1;
}

int CKEDAAdapter::GetFrameClockFreq(int which) const {
    return m_frameRate[At(which)];
}

int CKEDAAdapter::GetBitClockFreq(int which) const {
    return GetFrameClockFreq(which) * GetSubChannelsPerWire(which) * GetSlotLength(which);
}

int CKEDAAdapter::GetMasterClockFreq(int which) const {
    return GetFrameClockFreq(which) * GetMasterClockMultiplier(which);
}

int CKEDAAdapter::BitClockValid(int which) const {
    return GetBitClockFreq(which) <= kFastestClock ? 1 : 0;
}

int CKEDAAdapter::MasterClockValid(int which) const {
    return GetMasterClockFreq(which) <= kFastestClock ? 1 : 0;
}

int CKEDAAdapter::ClocksValid(int generator, int analyser, int warn) {
    bool due = false;
    bool bitInvalid = false;
    bool masterInvalid = false;
    const bool tested[] = {generator != 0, analyser != 0};
    for (const std::size_t which : {kGenerator, kAnalyser}) {
        if (!tested[which]) {
            continue;
        }
        const ClockCheck now{BitClockValid(static_cast<int>(which)) != 0,
                             MasterClockValid(static_cast<int>(which)) != 0};
        const ClockCheck before = m_checks[which];
        due = (before.bit && !now.bit) || (before.master && !now.master); // of the last one tested
        bitInvalid = bitInvalid || !now.bit;
        masterInvalid = masterInvalid || !now.master;
        m_checks[which] = now;
    }
    const bool invalid = bitInvalid || masterInvalid;
    if (warn != 0 && due && invalid) {
        kalvio::ShowMessage(kalvio::FormatText(TooFastText(),
                                               DirectionText(tested[kGenerator], tested[kAnalyser]),
                                               ClockText(bitInvalid, masterInvalid)),
                            kalvio::BoxIcon::Exclamation);
    }
    return invalid ? 0 : 1;
}

int CKEDAAdapter::IsDelayAllowed(int which) const {
    const int wanted = which == 0 ? CLOCKDIR_IN : CLOCKDIR_OUT;
    return GetSerialClockDir(which) == wanted ? 1 : 0;
}

int CKEDAAdapter::GetDelay(int which) const {
    return IsDelayAllowed(which) == 0 ? 0 : kDelayTimes[static_cast<std::size_t>(Get(kDelayCode[At(which)]))];
}

int CKEDAAdapter::SetDelay(int which, int nanoseconds) {
    if (IsDelayAllowed(which) == 0) {
        return nanoseconds != 0
                   ? 0
                   : Store(kDelayCode[At(which)], kCodesWithoutDelay[At(which)], HINT_KEDA_DELAYS_CHANGED);
    }
    const auto* const first = kDelayTimes.begin() + kFirstDelayCode; // code 0 is no delay that is asked for
    const auto* const found = std::find(first, kDelayTimes.end(), nanoseconds);
    if (found == kDelayTimes.end()) {
        return 0;
    }
    return Store(kDelayCode[At(which)], static_cast<int>(found - kDelayTimes.begin()),
                 HINT_KEDA_DELAYS_CHANGED);
}

void CKEDAAdapter::StoreFrameRate(std::size_t which, int code) {
    constexpr int kCodeMask = 7;
    m_frameRate[which] = kFrameRates[static_cast<std::size_t>(code & kCodeMask)];
}
