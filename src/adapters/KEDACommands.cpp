// The adapter's commands, control port and archive.

#include "adapters/KEDAAdapter.h"
#include "hardware/Hardware.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetErrors.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "platform/Archive.h"

#include <algorithm>
#include <utility>

using namespace kalvio::keda;

namespace {

constexpr int kHintReceived = 2765; // panel controls: received SPI data, state of the I2C transfer
constexpr int kHintI2cStatus = 2760;
constexpr int kAcknowledged = 1;
constexpr int kNotAcknowledged = 2;
constexpr int kConfigWithoutDeviceWords = 19; // earlier ones held two more 32-bit values

std::size_t At(int which) {
    return which == 0 ? kGenerator : kAnalyser;
}

} // namespace

short CKEDAAdapter::Send(const Group& group) {
    if (IsNotResponding() != 0) {
        return KVNET_OK;
    }
    const std::span bytes = std::span(std::as_const(m_image)).subspan(group.first, group.command.dataBytes);
    return kalvio::KvNetExchange(GetAddress()).Send(group.command, bytes, group.operation);
}

short CKEDAAdapter::SendRouting(const Group& group, std::uint8_t arrayGroup) {
    const short status = Send(group);
    if (status == KVNET_OK && IsNotResponding() == 0) {
        TellDevice(kalvio::kAllBuses, arrayGroup);
    }
    return status;
}

short CKEDAAdapter::UpdateGenRouting() {
    return SendRouting(kGenRoutingGroup, 0);
}

short CKEDAAdapter::UpdateAnaRouting() {
    return SendRouting(kAnaRoutingGroup, 1);
}

short CKEDAAdapter::UpdateGenAnaFormat(int which) {
    return Send(kFormatGroups[At(which)]);
}

short CKEDAAdapter::UpdateGenAnaClocks(int which) {
    if (IsNotResponding() != 0) {
        return KVNET_OK;
    }
    const Group& group = kClockGroups[At(which)];
    Image sent = m_image;
    // With the serial clocks coming in, the unit must not be given a master clock as well.
    if (GetSerialClockDir(which) == CLOCKDIR_IN && GetMasterClockDir(which) == CLOCKDIR_IN) {
        kMasterIn[At(which)].Set(sent, 0);
    }
    return kalvio::KvNetExchange(GetAddress())
        .Send(group.command, std::span(sent).subspan(group.first, group.command.dataBytes), group.operation);
}

short CKEDAAdapter::GetUnitStatus() {
    if (IsNotResponding() != 0) {
        return KVNET_OK;
    }
    kalvio::KvNetExchange exchange(GetAddress());
    const short status = exchange.Send(kReadStatus, {}, "CKEDAAdapter::GetUnitStatus\n");
    if (status != KVNET_OK) {
        return status;
    }
    const std::span<const std::uint8_t> data = exchange.AnswerData();
    for (std::size_t i = 0; i < kStatusOrder.size(); ++i) {
        if (kStatusOrder[i] != kByteCount) {
            m_image[kStatusOrder[i]] = data[i];
        }
    }
    for (const std::size_t which : {kGenerator, kAnalyser}) {
        StoreFrameRate(which, Get(kRateCode[which]));
    }
    ClocksValid(1, 1, 0);
    return KVNET_OK;
}

short CKEDAAdapter::ReadFrameClockFreq() {
    if (IsNotResponding() != 0) {
        return KVNET_OK;
    }
    kalvio::KvNetExchange exchange(GetAddress());
    const short status = exchange.Send(kReadFrameClocks, {}, "CKEDAAdapter::ReadFrameClockFreq\n");
    if (status != KVNET_OK) {
        return status;
    }
    const int codes = exchange.AnswerData()[0];
    StoreFrameRate(kGenerator, codes & 0x0F);
    StoreFrameRate(kAnalyser, codes >> 4);
    ClocksValid(1, 1, 0);
    return KVNET_OK;
}

int CKEDAAdapter::UpdateSettingsFromDevice() {
    return GetUnitStatus() == KVNET_OK ? 1 : 0;
}

int CKEDAAdapter::UpdateDeviceFromSettings() {
    const bool done = CKvNetDevice::UpdateDeviceFromSettings() != 0 && UpdateRelayCtrl() == KVNET_OK &&
                      UpdateIOCtrl() == KVNET_OK && UpdateGenAnaFormat(0) == KVNET_OK &&
                      UpdateGenAnaFormat(1) == KVNET_OK && UpdateGenAnaClocks(0) == KVNET_OK &&
                      UpdateGenAnaClocks(1) == KVNET_OK && UpdateGenRouting() == KVNET_OK &&
                      UpdateAnaRouting() == KVNET_OK && UpdateDelays() == KVNET_OK &&
                      UpdateCtrlMode() == KVNET_OK;
    return done ? 1 : 0;
}

int CKEDAAdapter::SendSPIData(int count, const std::uint8_t* bytes) {
    if (count < 0 || count > kBufferBytes || GetControlMode() != 0) {
        return 0;
    }
    std::copy_n(bytes, count, m_transmit.begin());
    m_transmitCount = count;
    m_receive.fill(0);
    m_receiveCount = 0;
    const auto length = static_cast<std::uint8_t>(count);
    const bool done = CHardware::SendKvNetData(GetAddress(), kSpiTransfer, length, m_transmit.data(), length,
                                               m_receive.data()) == KVNET_OK;
    m_receiveCount = done ? count : 0;
    UpdateViews(nullptr, kHintReceived, nullptr, 0);
    return done ? 1 : 0;
}

int CKEDAAdapter::SendI2CData(int count, const std::uint8_t* bytes) {
    if (count < 0 || count > kBufferBytes || GetControlMode() != 1) {
        return 0;
    }
    std::copy_n(bytes, count, m_transmit.begin());
    m_transmitCount = count;
    m_receive.fill(0);
    m_receiveCount = 0;
    std::array<std::uint8_t, kBufferBytes + 1> message{};
    message[0] = static_cast<std::uint8_t>(m_image[kSlaveAddress] << 1U); // a write
    std::copy_n(bytes, count, message.begin() + 1);
    const bool done =
        CHardware::SendKvNetData(GetAddress(), kI2cTransfer, static_cast<std::uint8_t>(count + 1),
                                 message.data(), 0, nullptr) == KVNET_OK;
    m_i2cStatus = done ? kAcknowledged : kNotAcknowledged;
    UpdateViews(nullptr, kHintI2cStatus, nullptr, 0);
    return done ? 1 : 0;
}

void CKEDAAdapter::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        Apply(ReadRecord(archive));
        return;
    }
    CFormatConverter::Serialize(archive);
    archive.WriteBytes(m_image);
    archive.WriteByte(static_cast<std::uint8_t>(m_transmitCount));
    archive.WriteBytes(std::span(m_transmit).first(static_cast<std::size_t>(m_transmitCount)));
}

CKEDAAdapter::Record CKEDAAdapter::ReadRecord(CArchive& archive) {
    Record record;
    record.status.Serialize(archive);
    archive.ReadBytes(record.image);
    if (archive.GetConfigVersion() < kConfigWithoutDeviceWords) {
        archive.ReadUInt32();
        archive.ReadUInt32();
    }
    const std::uint8_t count = archive.ReadByte();
    if (count > kBufferBytes) {
        throw CArchiveException(
            kalvio::Format("The archive holds %d bytes to transmit for the adapter at %d; an "
                           "adapter holds at most %d.",
                           count, record.status.GetAddress(), kBufferBytes));
    }
    record.transmit.resize(count);
    archive.ReadBytes(record.transmit);
    return record;
}

void CKEDAAdapter::Apply(const Record& record) {
    Status() = record.status;
    m_image = record.image;
    m_transmit.fill(0);
    std::ranges::copy(record.transmit, m_transmit.begin());
    m_transmitCount = static_cast<int>(record.transmit.size());
    kAudioOn.Set(m_image, 0);
    kCtrlOn.Set(m_image, 0);
    UpdateDeviceFromSettings();
}
