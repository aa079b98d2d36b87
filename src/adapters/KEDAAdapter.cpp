// The image and its accessors.

#include "adapters/KEDAAdapter.h"

#include "adapters/KEDAHints.h"
#include "adapters/KEDATexts.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetHints.h"

#include <algorithm>

using namespace kalvio::keda;

namespace {

constexpr int kHighestVoltage = 5;
constexpr int kShortestData = 8;
constexpr int kLongestData = 24;
constexpr int kLongestLeadPad = 24;
constexpr int kSlots = 16;
constexpr int kSlotsInByte = 8;
constexpr int kHighestSlaveAddress = 127;
constexpr int kHintSignExtend = 2927; // the one control that both directions share
constexpr int kFormatHints[] = {HINT_KEDA_GEN_FORMAT_CHANGED, HINT_KEDA_ANA_FORMAT_CHANGED};
constexpr int kClockHints[] = {HINT_KEDA_GEN_CLOCKS_CHANGED, HINT_KEDA_ANA_CLOCKS_CHANGED};

std::size_t At(int which) {
    return which == 0 ? kGenerator : kAnalyser;
}

// The code of a value in a table of codes, or -1.
template<std::size_t Count>
int CodeOf(const std::array<int, Count>& values, int value) {
    const auto found = std::ranges::find(values, value);
    return found == values.end() ? -1 : static_cast<int>(found - values.begin());
}

template<std::size_t Count>
int ValueOf(const std::array<int, Count>& values, int code) {
    return values[static_cast<std::size_t>(code)];
}

void Tell(int hint) {
    UpdateViews(nullptr, hint, nullptr, 0);
}

} // namespace

void CKEDAAdapter::InitMemberVars() {
    m_image = kDefaults;
    m_transmit.fill(0);
    m_receive.fill(0);
    m_transmitCount = m_receiveCount = m_i2cStatus = 0;
    m_frameRate = {};
    m_checks = {};
}

int CKEDAAdapter::Store(const BitField& field, int value, int hint) {
    field.Set(m_image, value);
    Tell(hint);
    return 1;
}

int CKEDAAdapter::GetGenBypass() const {
    return Get(kGenThroughAdapter) == 0 ? 1 : 0;
}
int CKEDAAdapter::SetGenBypass(int bypass) {
    return Store(kGenThroughAdapter, bypass == 0 ? 1 : 0, HINT_KEDA_BYPASS_CHANGED);
}
int CKEDAAdapter::GetAnaBypass() const {
    return Get(kAnaThroughAdapter) == 0 ? 1 : 0;
}
int CKEDAAdapter::SetAnaBypass(int bypass) {
    return Store(kAnaThroughAdapter, bypass == 0 ? 1 : 0, HINT_KEDA_BYPASS_CHANGED);
}
int CKEDAAdapter::GetRefBypass() const {
    return Get(kRefThroughAdapter) == 0 ? 1 : 0;
}
int CKEDAAdapter::SetRefBypass(int bypass) {
    kRefThroughAdapter.Set(m_image, bypass == 0 ? 1 : 0);
    return 1;
}
void CKEDAAdapter::UpdateRefBypass() {
    SetRefBypass(GetSyncSource(0) == SyncSource::DigitalOutput ? 1 : 0);
}

int CKEDAAdapter::GetAudioOn() const {
    return Get(kAudioOn);
}
int CKEDAAdapter::SetAudioOn(int on) {
    return StoreFlag(kAudioOn, on, HINT_KEDA_IO_CHANGED);
}
int CKEDAAdapter::GetCtrlOn() const {
    return Get(kCtrlOn);
}
int CKEDAAdapter::SetCtrlOn(int on) {
    return StoreFlag(kCtrlOn, on, HINT_KEDA_IO_CHANGED);
}
int CKEDAAdapter::GetAudioVoltageSelect() const {
    return Get(kAudioVoltage);
}
int CKEDAAdapter::GetCtrlVoltageSelect() const {
    return Get(kCtrlVoltage);
}

int CKEDAAdapter::SetAudioVoltageSelect(int voltage, int off) {
    if (voltage < 0 || voltage > kHighestVoltage) {
        return 0;
    }
    if (off != 0) {
        kAudioOn.Set(m_image, 0);
    }
    return Store(kAudioVoltage, voltage, HINT_KEDA_IO_CHANGED);
}

int CKEDAAdapter::SetCtrlVoltageSelect(int voltage, int off) {
    if (voltage < 0 || voltage > kHighestVoltage) {
        return 0;
    }
    if (off != 0) {
        kCtrlOn.Set(m_image, 0);
    }
    return Store(kCtrlVoltage, voltage, HINT_KEDA_IO_CHANGED);
}

int CKEDAAdapter::GetSlotLength(int which) const {
    return ValueOf(kSlotLengths, Get(kSlotLength[At(which)]));
}

int CKEDAAdapter::SetSlotLength(int which, int bits) {
    const int code = CodeOf(kSlotLengths, bits);
    if (code < 0) {
        return 0;
    }
    const int data = GetDataLength(which);
    kSlotLength[At(which)].Set(m_image, code);
    int minimum = 0;
    int maximum = 0;
    GetDataLengthRange(which, minimum, maximum);
    static_cast<void>(StoreDataLength(which, std::clamp(data, minimum, maximum)));
    ClocksValid(which == 0 ? 1 : 0, which, 0);
    Tell(kFormatHints[At(which)]);
    return 1;
}

int CKEDAAdapter::GetSubChannelsPerWire(int which) const {
    return ValueOf(kSlotCounts, Get(kSlotsPerWire[At(which)]));
}

int CKEDAAdapter::GetNumWires(int which) const {
    return ValueOf(kWireCounts, Get(kSlotsPerWire[At(which)]));
}

int CKEDAAdapter::SetSubChannelsPerWire(int which, int slots) {
    const int code = CodeOf(kSlotCounts, slots);
    if (code < 0) {
        return 0;
    }
    const Place before[] = {DecodeAnaRouting(0), DecodeAnaRouting(1)};
    kSlotsPerWire[At(which)].Set(m_image, code);
    if (which != 0) {
        for (const std::size_t channel : {0U, 1U}) {
            const Place place = before[channel];
            EncodeAnaRouting(channel, {place.wire > GetNumWires(which) ? 1 : place.wire,
                                       place.slot > slots ? 1 : place.slot});
        }
    } else if (slots == kSlotCounts.front()) {
        m_image[kGenRouting1] = 0; // slots 8 to 15 are no more
    }
    ClocksValid(which == 0 ? 1 : 0, which, 0);
    Tell(kFormatHints[At(which)]);
    return 1;
}

int CKEDAAdapter::GetLSBFirst(int which) const {
    return Get(kLsbFirst[At(which)]);
}
int CKEDAAdapter::SetLSBFirst(int which, int lsbFirst) {
    return StoreFlag(kLsbFirst[At(which)], lsbFirst, kFormatHints[At(which)]);
}
int CKEDAAdapter::GetSignExtend(int which) const {
    return Get(kSignExtend[At(which)]);
}
int CKEDAAdapter::SetSignExtend(int which, int extend) {
    return StoreFlag(kSignExtend[At(which)], extend, kHintSignExtend);
}
int CKEDAAdapter::GetLeadPadLength(int which) const {
    return Get(kLeadPad[At(which)]);
}
int CKEDAAdapter::GetTrailPadLength(int which) const {
    return Get(kTrailPad[At(which)]);
}
int CKEDAAdapter::GetDataLength(int which) const {
    return GetSlotLength(which) - GetLeadPadLength(which) - GetTrailPadLength(which);
}

void CKEDAAdapter::GetDataLengthRange(int which, int& minimum, int& maximum) const {
    minimum = kShortestData;
    maximum = std::min(GetSlotLength(which), kLongestData);
}

void CKEDAAdapter::StorePads(int which, int lead, int trail) {
    kLeadPad[At(which)].Set(m_image, lead);
    kTrailPad[At(which)].Set(m_image, trail);
}

bool CKEDAAdapter::StoreDataLength(int which, int bits) {
    int minimum = 0;
    int maximum = 0;
    GetDataLengthRange(which, minimum, maximum);
    if (bits < minimum || bits > maximum) {
        return false;
    }
    const int slot = GetSlotLength(which);
    const int lead = std::min(GetLeadPadLength(which), slot - bits);
    StorePads(which, lead, slot - bits - lead);
    return true;
}

int CKEDAAdapter::SetLeadPadLength(int which, int bits) {
    const int data = GetDataLength(which);
    const int trail = GetSlotLength(which) - bits - data;
    return bits < 0 || bits > kLongestLeadPad ? 0 : SetDataFormat(which, bits, data, trail);
}

int CKEDAAdapter::SetTrailPadLength(int which, int bits) {
    const int data = GetDataLength(which);
    return SetDataFormat(which, GetSlotLength(which) - bits - data, data, bits);
}

int CKEDAAdapter::SetDataLength(int which, int bits) {
    if (!StoreDataLength(which, bits)) {
        return 0;
    }
    Tell(kFormatHints[At(which)]);
    return 1;
}

int CKEDAAdapter::SetDataFormat(int which, int lead, int data, int trail) {
    if (lead < 0 || data < 0 || trail < 0 || lead + data + trail != GetSlotLength(which)) {
        return 0;
    }
    StorePads(which, lead, trail);
    Tell(kFormatHints[At(which)]);
    return 1;
}

int CKEDAAdapter::GetGenRouting(int wire, int slot) const {
    const int index = GetSubChannelsPerWire(0) * (wire - 1) + slot - 1;
    if (index < 0 || index >= kSlots) {
        return ROUTING_OFF;
    }
    const bool high = index >= kSlotsInByte;
    const unsigned bit = 1U << static_cast<unsigned>(index % kSlotsInByte);
    if ((m_image[high ? kGenRouting1 : kGenRouting2] & bit) == 0) {
        return ROUTING_OFF;
    }
    return (m_image[high ? kGenRouting3 : kGenRouting4] & bit) != 0 ? ROUTING_B : ROUTING_A;
}

int CKEDAAdapter::SetGenRouting(int wire, int slot, int routing) {
    const int index = GetSubChannelsPerWire(0) * (wire - 1) + slot - 1;
    if (index < 0 || index >= kSlots || routing < ROUTING_OFF || routing > ROUTING_B) {
        return 0;
    }
    const bool high = index >= kSlotsInByte;
    const auto bit = static_cast<unsigned>(index % kSlotsInByte);
    BitField{high ? kGenRouting1 : kGenRouting2, bit, 1}.Set(m_image, routing != ROUTING_OFF ? 1 : 0);
    BitField{high ? kGenRouting3 : kGenRouting4, bit, 1}.Set(m_image, routing == ROUTING_B ? 1 : 0);
    Tell(HINT_KEDA_GEN_ROUTING_CHANGED);
    if (routing == ROUTING_OFF) {
        TellDevice(0, kalvio::kAllGroups);
    } else {
        TellDevice(static_cast<std::uint8_t>(routing), 0);
    }
    return 1;
}

// The unit counts analyser slots in steps of the slots per wire, but of 4 where there are only 2.
CKEDAAdapter::Place CKEDAAdapter::DecodeAnaRouting(std::size_t channel) const {
    const int stored = m_image[kAnaRoutingA + channel];
    const int step = std::max(GetSubChannelsPerWire(1), 4);
    return {stored / step + 1, stored % step + 1};
}

void CKEDAAdapter::EncodeAnaRouting(std::size_t channel, Place place) {
    const int step = std::max(GetSubChannelsPerWire(1), 4);
    m_image[kAnaRoutingA + channel] = static_cast<std::uint8_t>((place.wire - 1) * step + place.slot - 1);
}

int CKEDAAdapter::GetAnaRouting(int channel, int& wire, int& slot) const {
    if (channel != 0 && channel != 1) {
        return 0;
    }
    const Place place = DecodeAnaRouting(static_cast<std::size_t>(channel));
    wire = place.wire;
    slot = place.slot;
    TellDevice(channel == 0 ? ROUTING_A : ROUTING_B, 1);
    return 1;
}

int CKEDAAdapter::SetAnaRouting(int channel, int wire, int slot) {
    if ((channel != 0 && channel != 1) || wire < 1 || wire > GetNumWires(1) || slot < 1 ||
        slot > GetSubChannelsPerWire(1)) {
        return 0;
    }
    EncodeAnaRouting(static_cast<std::size_t>(channel), {wire, slot});
    Tell(HINT_KEDA_ANA_ROUTING_CHANGED);
    return 1;
}

int CKEDAAdapter::GetBitClockInvert(int which) const {
    return Get(kBitInvert[At(which)]);
}
int CKEDAAdapter::SetBitClockInvert(int which, int invert) {
    return StoreFlag(kBitInvert[At(which)], invert, kClockHints[At(which)]);
}
int CKEDAAdapter::GetFrameClockInvert(int which) const {
    return Get(kFrameInvert[At(which)]);
}
int CKEDAAdapter::SetFrameClockInvert(int which, int invert) {
    return StoreFlag(kFrameInvert[At(which)], invert, kClockHints[At(which)]);
}
int CKEDAAdapter::GetFrameClock1Bit(int which) const {
    return Get(kFrame1Bit[At(which)]);
}
int CKEDAAdapter::SetFrameClock1Bit(int which, int oneBit) {
    return StoreFlag(kFrame1Bit[At(which)], oneBit, kClockHints[At(which)]);
}
int CKEDAAdapter::GetFrameClockEarly(int which) const {
    return Get(kFrameEarly[At(which)]);
}
int CKEDAAdapter::SetFrameClockEarly(int which, int early) {
    return StoreFlag(kFrameEarly[At(which)], early, kClockHints[At(which)]);
}

int CKEDAAdapter::GetControlMode() const {
    return Get(kPortMode);
}

int CKEDAAdapter::SetControlMode(int mode) {
    if (mode != 0 && mode != 1) {
        return 0;
    }
    if (mode == 1) {
        m_receive.fill(0);
        m_receiveCount = 0;
    } else {
        m_i2cStatus = 0;
    }
    return Store(kPortMode, mode, HINT_KEDA_CONTROL_CHANGED);
}

int CKEDAAdapter::GetSPIClockPhase() const {
    return Get(kSpiPhase);
}
int CKEDAAdapter::SetSPIClockPhase(int phase) {
    return StoreFlag(kSpiPhase, phase, HINT_KEDA_CONTROL_CHANGED);
}
int CKEDAAdapter::GetSPIClockPolarity() const {
    return Get(kSpiPolarity);
}
int CKEDAAdapter::SetSPIClockPolarity(int polarity) {
    return StoreFlag(kSpiPolarity, polarity, HINT_KEDA_CONTROL_CHANGED);
}
int CKEDAAdapter::GetSlaveAddress() const {
    return m_image[kSlaveAddress];
}

int CKEDAAdapter::SetSlaveAddress(int address) {
    if (address < 0 || address > kHighestSlaveAddress) {
        return 0;
    }
    m_image[kSlaveAddress] = static_cast<std::uint8_t>(address);
    Tell(HINT_KEDA_CONTROL_CHANGED);
    return 1;
}

int CKEDAAdapter::GetI2CStatus() const {
    return GetControlMode() == 1 ? m_i2cStatus : 0;
}

void CKEDAAdapter::TellDevice(std::uint8_t bus, std::uint8_t group) const {
    const kalvio::DeviceWord word{kalvio::kClassTypeKedaAdapter, GetAddress(), bus, group};
    UpdateViews(nullptr, HINT_DEVICE_CHANGED, kalvio::HintObject(kalvio::PackDeviceWord(word)), 0);
}
