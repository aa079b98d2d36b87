#pragma once

// One KEDA adapter: an image of its control registers, the typed accessors of the image, and the commands
// that send it group by group.

#include "adapters/FormatConverter.h"
#include "adapters/KEDARegisters.h"
#include "platform/Export.h"
#include "switching/ChannelArrayDevice.h"

#include <array>
#include <cstdint>
#include <vector>

enum KEDAClockDir : int { CLOCKDIR_NONE = 0, CLOCKDIR_IN = 1, CLOCKDIR_OUT = 2 };
enum KEDARouting : int { ROUTING_OFF = 0, ROUTING_A = 1, ROUTING_B = 2 };
// Where the clocks of a direction come from: the device under test's serial clocks, its master clock, or the
// analyser's own digital output.
enum class SyncSource : int { SerialClocks = 1, MasterClock = 2, DigitalOutput = 3 };

// `which` is 0 for the generator, anything else for the analyser. Setters answer 1 when they took the value,
// 0 when it is refused and nothing changed; they change the image only and tell the views. Wires and slots
// count from 1. Commands answer a KvNetError; a device that does not respond takes every command without a
// frame. User-interface thread.
class KALVIO_API CKEDAAdapter final : public CFormatConverter, public CChannelArrayDevice {
public:
    static constexpr int kBufferBytes = 10;

    CKEDAAdapter() = default;
    CKEDAAdapter(const CKvNetStatus& status, int notResponding) : CFormatConverter(status, notResponding) {}
    // The image, buffers and clocks as they are at first; the device record stays.
    void InitMemberVars();

    // A bypassed path does not go through the adapter.
    [[nodiscard]] int GetGenBypass() const;
    int SetGenBypass(int bypass);
    [[nodiscard]] int GetAnaBypass() const;
    int SetAnaBypass(int bypass);
    [[nodiscard]] int GetRefBypass() const;
    int SetRefBypass(int bypass);
    void UpdateRefBypass(); // by the generator's sync source

    // Outputs and their logic voltages, 0 to 5; `off` turns the outputs off as well.
    [[nodiscard]] int GetAudioOn() const;
    int SetAudioOn(int on);
    [[nodiscard]] int GetCtrlOn() const;
    int SetCtrlOn(int on);
    [[nodiscard]] int GetAudioVoltageSelect() const;
    int SetAudioVoltageSelect(int voltage, int off);
    [[nodiscard]] int GetCtrlVoltageSelect() const;
    int SetCtrlVoltageSelect(int voltage, int off);

    // Format. Lengths in bits: a slot is lead pad, data, trail pad.
    [[nodiscard]] int GetSlotLength(int which) const; // 8, 16, 24 or 32
    int SetSlotLength(int which, int bits);           // keeps the data length where the new slot has room
    [[nodiscard]] int GetSubChannelsPerWire(int which) const; // 2, 4, 8 or 16
    int SetSubChannelsPerWire(int which, int slots);
    [[nodiscard]] int GetNumWires(int which) const;
    [[nodiscard]] int GetLSBFirst(int which) const;
    int SetLSBFirst(int which, int lsbFirst);
    [[nodiscard]] int GetSignExtend(int which) const;
    int SetSignExtend(int which, int extend);
    [[nodiscard]] int GetLeadPadLength(int which) const;
    [[nodiscard]] int GetTrailPadLength(int which) const;
    [[nodiscard]] int GetDataLength(int which) const;
    void GetDataLengthRange(int which, int& minimum, int& maximum) const;
    int SetLeadPadLength(int which, int bits); // 0 to 24; the data length stays, the trail pad gives way
    int SetDataLength(int which, int bits);
    int SetTrailPadLength(int which, int bits); // the data length stays, the lead pad gives way
    int SetDataFormat(int which, int lead, int data, int trail); // together the slot length

    // Routing: a generator slot carries nothing, A or B; an analyser channel (0 A, 1 B) takes one slot.
    [[nodiscard]] int GetGenRouting(int wire, int slot) const;
    int SetGenRouting(int wire, int slot, int routing);
    int GetAnaRouting(int channel, int& wire, int& slot) const;
    int SetAnaRouting(int channel, int wire, int slot);

    // Clocks. Frequencies in hertz; 0 while the frame rate is not known.
    [[nodiscard]] int GetMasterClockDir(int which) const;
    int SetMasterClockDir(int which, int direction);
    [[nodiscard]] int GetSerialClockDir(int which) const; // bit and frame clock together
    int SetSerialClockDir(int which, int direction);
    [[nodiscard]] SyncSource GetSyncSource(int which) const;
    [[nodiscard]] int GetMasterClockMultiplier(int which) const;
    int SetMasterClockMultiplier(int which, int multiplier);
    [[nodiscard]] int GetBitClockInvert(int which) const;
    int SetBitClockInvert(int which, int invert);
    [[nodiscard]] int GetFrameClockInvert(int which) const;
    int SetFrameClockInvert(int which, int invert);
    [[nodiscard]] int GetFrameClock1Bit(int which) const;
    int SetFrameClock1Bit(int which, int oneBit);
    [[nodiscard]] int GetFrameClockEarly(int which) const;
    int SetFrameClockEarly(int which, int early);
    [[nodiscard]] int GetFrameClockFreq(int which) const;
    [[nodiscard]] int GetBitClockFreq(int which) const;
    [[nodiscard]] int GetMasterClockFreq(int which) const;
    [[nodiscard]] int BitClockValid(int which) const; // at most 24.576 MHz
    [[nodiscard]] int MasterClockValid(int which) const;
    // 1 when every clock of the directions asked for is valid. With `warn` a box tells when one was valid at
    // the last check and is not now.
    int ClocksValid(int generator, int analyser, int warn);

    // Delay in nanoseconds: -7 to 35 in steps of 7 where one is allowed, else 0.
    [[nodiscard]] int GetDelay(int which) const;
    int SetDelay(int which, int nanoseconds);
    [[nodiscard]] int IsDelayAllowed(int which) const;

    // The control port: 0 SPI, 1 I2C. A transfer of at most 10 bytes answers 1 when it went through.
    [[nodiscard]] int GetControlMode() const;
    int SetControlMode(int mode);
    [[nodiscard]] int GetSPIClockPhase() const;
    int SetSPIClockPhase(int phase);
    [[nodiscard]] int GetSPIClockPolarity() const;
    int SetSPIClockPolarity(int polarity);
    [[nodiscard]] int GetSlaveAddress() const; // 0 to 127
    int SetSlaveAddress(int address);
    int SendSPIData(int count, const std::uint8_t* bytes);
    int SendI2CData(int count, const std::uint8_t* bytes);
    [[nodiscard]] const std::uint8_t* GetTransmitBuffer() const { return m_transmit.data(); }
    [[nodiscard]] int GetNumTransmitChars() const { return m_transmitCount; }
    [[nodiscard]] const std::uint8_t* GetReceiveBuffer() const { return m_receive.data(); }
    [[nodiscard]] int GetNumReceiveChars() const { return m_receiveCount; }
    [[nodiscard]] int GetI2CStatus() const; // 0 none, 1 acknowledged, 2 not

    // Commands.
    short UpdateRelayCtrl() { return Send(kalvio::keda::kRelayGroup); }
    short UpdateIOCtrl() { return Send(kalvio::keda::kIOGroup); }
    short UpdateGenRouting();
    short UpdateAnaRouting();
    short UpdateGenAnaFormat(int which);
    short UpdateGenAnaClocks(int which);
    short UpdateCtrlMode() { return Send(kalvio::keda::kControlGroup); }
    short UpdateDelays() { return Send(kalvio::keda::kDelaysGroup); }
    short GetUnitStatus();      // the unit's registers replace the image but analyser routing and delays
    short ReadFrameClockFreq(); // both directions
    virtual int UpdateSettingsFromDevice(); // 1, or 0 when the unit's registers could not be read
    int UpdateDeviceFromSettings() override;

    // The device record, then the image, then the transmit buffer behind its count. Loading turns the outputs
    // off and sends everything; a damaged record throws CArchiveException and changes nothing.
    void Serialize(CArchive& archive) override;
    // A record as it stands in an archive, read without touching any adapter.
    struct Record {
        CKvNetStatus status;
        kalvio::keda::Image image{};
        std::vector<std::uint8_t> transmit;
    };
    [[nodiscard]] static Record ReadRecord(CArchive& archive);
    void Apply(const Record& record);

    // As a member of channel arrays: bus 1 is channel A, 2 is B; group 0 the generator, 1 the analyser; a
    // channel is a slot, counted over the wires.
    int ResetChannelArrayDevice() override;
    short BusExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t flags,
                              std::uint8_t on) override;
    short BusGroupExclusiveChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                                   std::uint8_t on) override;
    short BusAll(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short BusGroupAll(std::uint8_t bus, std::uint8_t group, std::uint8_t on) override;
    short BusChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel, std::uint8_t on) override;
    short BusBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short BusLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short StereoPairExclusiveChannel(std::uint8_t group, std::uint8_t channel, std::uint8_t partnerChannel,
                                     std::uint8_t flags, std::uint8_t on) override;
    short StereoPairGroupExclusiveChannel(std::uint8_t group, std::uint8_t channel,
                                          std::uint8_t partnerChannel, std::uint8_t on) override;
    short StereoPairAll(std::uint8_t flags, std::uint8_t on) override;
    short StereoPairGroupAll(std::uint8_t group, std::uint8_t on) override;
    short StereoPairChannel(std::uint8_t bus, std::uint8_t group, std::uint8_t channel,
                            std::uint8_t on) override;
    short StereoPairBalance(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    short StereoPairLoad(std::uint8_t bus, std::uint8_t flags, std::uint8_t on) override;
    void* GetChannelArrayDetails() override; // null: it has none
    short UpdateDeviceWithChannelArrayDetails(void* details) override;
    int AddChannelToChannelArrayDetails(void* details, ChannelDetails* channel) override;

    [[nodiscard]] const kalvio::keda::Image& Registers() const { return m_image; }

private:
    struct Place {
        int wire;
        int slot;
    };
    enum class Found { Slot, Beyond, BeyondQuietly };
    struct ClockCheck {
        bool bit = false;
        bool master = false;
    };

    [[nodiscard]] int Get(const kalvio::keda::BitField& field) const { return field.Get(m_image); }
    int Store(const kalvio::keda::BitField& field, int value, int hint);
    int StoreFlag(const kalvio::keda::BitField& field, int value, int hint) {
        return Store(field, value != 0 ? 1 : 0, hint);
    }
    short Send(const kalvio::keda::Group& group);
    short SendRouting(const kalvio::keda::Group& group, std::uint8_t arrayGroup);
    void StorePads(int which, int lead, int trail);
    [[nodiscard]] bool StoreDataLength(int which, int bits);
    int ChangeClockDir(int which, void (CKEDAAdapter::*change)(std::size_t which, int direction),
                       int direction);
    void ChangeMasterClockDir(std::size_t which, int direction);
    void ChangeSerialClockDir(std::size_t which, int direction);
    void StoreFrameRate(std::size_t which, int code);
    void TellDevice(std::uint8_t bus, std::uint8_t group) const;
    [[nodiscard]] Place DecodeAnaRouting(std::size_t channel) const;
    void EncodeAnaRouting(std::size_t channel, Place place);
    [[nodiscard]] Found FindSlot(int which, int channel, Place& place) const;
    void RouteAllSlots(bool routed);
    void SetBusBits(std::uint8_t bits);
    [[nodiscard]] short Outcome(Found found) const;

    kalvio::keda::Image m_image = kalvio::keda::kDefaults;
    std::array<std::uint8_t, kBufferBytes> m_transmit{};
    std::array<std::uint8_t, kBufferBytes> m_receive{};
    int m_transmitCount = 0;
    int m_receiveCount = 0;
    int m_i2cStatus = 0;
    std::array<int, 2> m_frameRate{};     // hertz
    std::array<ClockCheck, 2> m_checks{}; // what was valid at the last check
};
