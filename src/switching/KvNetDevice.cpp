#include "switching/KvNetDevice.h"

#include "peripheral_network/bus/PeripheralNetwork.h"

CKvNetDevice::CKvNetDevice(const CKvNetStatus& status, int notResponding)
    : m_status(status), m_notResponding(notResponding) {}

int CKvNetDevice::UpdateDeviceFromSettings() {
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (GetAddress() == KVNET_ADDRESS_NONE || network == nullptr) {
        return 0;
    }
    const kalvio::QuietNetwork quiet(*network);
    VARIANT statusWord;
    if (network->GetStatus(GetAddress(), &statusWord) != KVNET_OK) {
        return 0;
    }
    if (m_status.IsOn() && !CKvNetStatus(GetAddress(), statusWord).IsOn()) {
        return network->Reset(GetAddress(), 1, nullptr) == KVNET_OK ? 1 : 0;
    }
    return 1;
}

void CKvNetDevice::Serialize(CArchive& archive) {
    m_status.Serialize(archive);
}

int CKvNetDevice::IsChannelArrayDevice() {
    const std::uint8_t classType = m_status.GetDeviceClassType();
    return classType == kalvio::kClassTypeIOSwitcher || classType == kalvio::kClassTypeKedaAdapter ? 1 : 0;
}

int CKvNetDevice::CanDownloadFirmware() {
    return m_notResponding == 0 ? 1 : 0;
}

int CKvNetDevice::ResetDevice(int on) {
    if (on == 0 && m_notResponding != 0) {
        return 1;
    }
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (GetAddress() == KVNET_ADDRESS_NONE || network == nullptr) {
        m_notResponding = 1;
        return 0;
    }
    VARIANT statusWord;
    return network->Reset(GetAddress(), on, &statusWord) == KVNET_OK ? Answered(statusWord) : DidNotAnswer();
}

int CKvNetDevice::RefreshStatus() {
    if (GetAddress() == KVNET_ADDRESS_NONE) {
        m_status.Set(KVNET_ADDRESS_NONE, std::uint32_t{0});
    }
    kalvio::PeripheralNetwork* network = kalvio::CurrentPeripheralNetwork();
    if (network == nullptr) {
        return DidNotAnswer();
    }
    const kalvio::QuietNetwork quiet(*network);
    VARIANT statusWord;
    return network->GetStatus(GetAddress(), &statusWord) == KVNET_OK ? Answered(statusWord) : DidNotAnswer();
}

int CKvNetDevice::Answered(const VARIANT& statusWord) {
    m_status.Set(GetAddress(), statusWord);
    m_notResponding = 0;
    return 1;
}

int CKvNetDevice::DidNotAnswer() {
    m_status.Set(GetAddress(), std::uint32_t{0});
    m_notResponding = 1;
    return 0;
}
