#include "switching/IOSwitcherSettings.h"

#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "switching/ChannelArray.h"
#include "switching/Creation.h"
#include "switching/IOSwitcherControlPanelView.h"
#include "switching/SwitcherSettings.h"
#include "switching/SwitcherTexts.h"

namespace {

using namespace kalvio;

constexpr std::uint8_t kChannelsInGroup = 8;

constexpr BrowserEntry kEntries[] = {
    {kTextGetBusStatus, 10620}, {kTextGetFullStatus, 10621},  {kTextSwitchGroup, 10622},
    {kTextLoadBus, 10623},      {kTextBalanceBus, 10624},     {kTextGetBusDC, 10627},
    {kTextAddGroup, 10625},     {kTextAddStereoGroup, 10626},
};

std::uint8_t Other(std::uint8_t group) {
    return group == 0 ? 1 : 0;
}

// The array that channels of I/O switchers are to be added to, or the code that says why not.
CChannelArray* FindArray(const char* name, short& code) {
    PeripheralNetwork* network = CurrentPeripheralNetwork();
    CChannelArray* array = network != nullptr ? network->GetChannelArray(name) : nullptr;
    if (array == nullptr) {
        code = KVNET_ERR_ARRAY_NOT_DEFINED;
    } else if (array->OtherClassTypesExistInArray(kClassTypeIOSwitcher) != 0) {
        code = KVNET_ERR_CONFLICT;
    }
    return code == KVNET_OK ? array : nullptr;
}

void TellArrayChanged(CChannelArray* array) {
    UpdateViews(nullptr, HINT_ARRAY_CHANGED, array, 0);
}

} // namespace

CIOSwitcherSettings::CIOSwitcherSettings(CSwitcherSettings& switchers)
    : CSettingsData(switchers.GivenHost()),
      m_switchers(switchers),
      m_viewFactory(CIOSwitcherControlPanelView::GetInstance) {}

int CIOSwitcherSettings::Initialise() {
    return 1;
}

CIOSwitcher* CIOSwitcherSettings::GetIOSwitcher(std::uint8_t address) {
    if (address == KVNET_ADDRESS_NONE) {
        return nullptr;
    }
    m_switcher.Status().Set(address, m_switcher.Status().GetStatusWord());
    return &m_switcher;
}

CIOSwitcher* CIOSwitcherSettings::CreateIOSwitcher(std::uint8_t address, int force) {
    PeripheralNetwork* network = CurrentPeripheralNetwork();
    if (network == nullptr) {
        return nullptr;
    }
    const QuietNetwork quiet(*network);
    VARIANT word;
    const bool answered = network->GetStatus(address, &word) == KVNET_OK;
    const CKvNetStatus status = answered ? CKvNetStatus(address, word) : CKvNetStatus(address, 0U);
    if (force == 0 && status.GetDeviceClassType() != kClassTypeIOSwitcher) {
        return nullptr;
    }
    return MakeOrPost<CIOSwitcher>(status, answered ? 0 : 1).release();
}

template<typename BusOfChannel>
short CIOSwitcherSettings::AppendChannels(CChannelArray& array, std::uint8_t address, std::uint8_t group,
                                          BusOfChannel busOfChannel) {
    for (std::uint8_t channel = 0; channel < kChannelsInGroup; ++channel) {
        const ChannelDetails details{address, kClassTypeIOSwitcher, busOfChannel(channel), group, channel, 0,
                                     0};
        if (array.AddChannel(details) == 0) {
            return KVNET_ERR_PARAMETER;
        }
    }
    return KVNET_OK;
}

short CIOSwitcherSettings::AddBusGroupToArray(const char* name, std::uint8_t address, std::uint8_t bus,
                                              std::uint8_t group) {
    short code = KVNET_OK;
    CChannelArray* array = FindArray(name, code);
    if (array == nullptr) {
        return code;
    }
    code = AppendChannels(*array, address, group, [bus](std::uint8_t) { return bus; });
    if (code != KVNET_OK) {
        return code;
    }
    const bool otherUsed =
        CurrentPeripheralNetwork()->IsBusGroupPartOfAnyArray(address, bus, Other(group)) != 0;
    CIOSwitcher* switcher = GetIOSwitcher(address);
    if (switcher == nullptr) {
        return KVNET_ERR_DEVICE_TYPE;
    }
    code = otherUsed ? switcher->BusGroupAll(bus, group, 0) : switcher->BusAll(bus, 0, 0);
    TellArrayChanged(array);
    return code;
}

short CIOSwitcherSettings::AddGroupToStereoArray(const char* name, std::uint8_t address, std::uint8_t group) {
    short code = KVNET_OK;
    CChannelArray* array = FindArray(name, code);
    if (array == nullptr) {
        return code;
    }
    code = AppendChannels(*array, address, group, [](std::uint8_t channel) -> std::uint8_t {
        return channel & 1U; // even channels lie on bus A
    });
    if (code != KVNET_OK) {
        return code;
    }
    PeripheralNetwork& network = *CurrentPeripheralNetwork();
    const bool otherUsed = network.IsBusGroupPartOfAnyArray(address, 0, Other(group)) != 0 ||
                           network.IsBusGroupPartOfAnyArray(address, 1, Other(group)) != 0;
    CIOSwitcher* switcher = GetIOSwitcher(address);
    if (switcher == nullptr) {
        return KVNET_ERR_DEVICE_TYPE;
    }
    code = otherUsed ? switcher->StereoPairGroupAll(group, 0) : switcher->StereoPairAll(0, 0);
    if (code == KVNET_OK) {
        TellArrayChanged(array);
    }
    return code;
}

void CIOSwitcherSettings::Serialize(CArchive&) {}

void CIOSwitcherSettings::PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) {
    tree->AddEntries(parent, kEntries);
}

void CIOSwitcherSettings::OnIOSwitcherControlPanel() {
    OpenIOSwitcherControlPanel();
}

CTypedFrameWnd* CIOSwitcherSettings::OpenIOSwitcherControlPanel() {
    return m_windows.Open(m_viewFactory, kTextSwitcherPanel);
}
