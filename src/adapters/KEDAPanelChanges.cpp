// What the user's changes in the adapter's panel do to the adapter and what they send.

#include "adapters/KEDAAdapterControlPanelView.h"
#include "adapters/KEDADataFormatBar.h"
#include "adapters/KEDAPanelLayout.h"
#include "adapters/KEDATexts.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/UserInterface.h"

#include <algorithm>
#include <cmath>
#include <iterator>

using namespace kalvio::keda;
using kalvio::PeripheralNetwork;

namespace {

constexpr int kEverything = -1;

} // namespace

// --- The address ---

int CKEDAAdapterControlPanelView::FillKEDAAdapterCombo() {
    PeripheralNetwork* const network = kalvio::CurrentPeripheralNetwork();
    constexpr std::uint8_t kAdapterType = 1;
    return network == nullptr
               ? 0
               : network->FillKvNetCombo(Find<CComboBox>(kCtrlAddress), kalvio::kClassFormatConverter,
                                         kAdapterType, m_address);
}

int CKEDAAdapterControlPanelView::OnRefillKEDAAdapterList() {
    EnableControl(kCtrlRefresh, false);
    if (PeripheralNetwork* const network = kalvio::CurrentPeripheralNetwork(); network != nullptr) {
        network->FillDeviceList();
    }
    FillKEDAAdapterCombo();
    EnableControl(kCtrlRefresh, true);
    UpdateViews(this, kCtrlRefresh, nullptr, 0);
    return ReselectAfterScan();
}

int CKEDAAdapterControlPanelView::ReselectAfterScan() {
    auto* const combo = Find<CComboBox>(kCtrlAddress);
    if (combo->GetCount() > 0) {
        combo->SetCurSel(0);
        return OnAddressChanged();
    }
    if (m_address == KVNET_ADDRESS_NONE) {
        return 1;
    }
    ShowAddress(m_address);
    return OnAddressChanged();
}

int CKEDAAdapterControlPanelView::OnAddressChanged() {
    CString text = Find<CComboBox>(kCtrlAddress)->GetText();
    const std::uint8_t address = kalvio::StringToAddress(text);
    const std::uint8_t before = m_address;
    ShowAddress(address);
    CKEDAAdapter* const adapter = m_document.GetKEDAAdapter(address);
    const bool accepted =
        adapter != nullptr ? SelectAdapter(*adapter, address) : AcceptUnknownAddress(address);
    if (!accepted) {
        m_address = before;
        ShowAddress(before);
        return 0;
    }
    OnUpdate(this, kEverything, nullptr);
    return 1;
}

bool CKEDAAdapterControlPanelView::SelectAdapter(CKEDAAdapter& adapter, std::uint8_t address) {
    if (address == m_address && adapter.IsNotResponding() == 0) {
        return true;
    }
    m_address = address;
    adapter.RefreshStatus();
    if (!adapter.Status().IsOn()) {
        if (adapter.ResetDevice(1) == 0) {
            return false;
        }
        adapter.UpdateDeviceFromSettings();
    }
    return true;
}

bool CKEDAAdapterControlPanelView::AcceptUnknownAddress(std::uint8_t address) {
    if (address != KVNET_ADDRESS_NONE &&
        !kalvio::AskYesNo(kalvio::LoadText(kTextUseAddress), kalvio::BoxIcon::Question)) {
        return false;
    }
    m_address = address;
    if (address != KVNET_ADDRESS_NONE) {
        m_document.CreateKEDAAdapter(address, 1);
    }
    return true;
}

int CKEDAAdapterControlPanelView::ResetAdapter() {
    CKEDAAdapter* const adapter = Adapter();
    if (adapter == nullptr) {
        return 0;
    }
    if (adapter->ResetDevice(1) != 0) {
        adapter->InitMemberVars();
        adapter->UpdateDeviceFromSettings();
    }
    OnUpdate(this, kEverything, nullptr);
    return 1;
}

int CKEDAAdapterControlPanelView::StandbyAdapter() {
    CKEDAAdapter* const adapter = Adapter();
    if (adapter == nullptr) {
        return 0;
    }
    adapter->ResetDevice(0);
    OnUpdate(this, kEverything, nullptr);
    return 1;
}

// --- Every other control ---

bool CKEDAAdapterControlPanelView::TakePath(CKEDAAdapter& adapter, int controlId) {
    const int bypass = Ticked(controlId) ? 0 : 1;
    return (controlId == kCtrlGenEnabled ? adapter.SetGenBypass(bypass) : adapter.SetAnaBypass(bypass)) != 0;
}

bool CKEDAAdapterControlPanelView::TakeOutputs(CKEDAAdapter& adapter, int controlId) {
    const int on = Ticked(controlId) ? 1 : 0;
    return (controlId == kCtrlAudioOn ? adapter.SetAudioOn(on) : adapter.SetCtrlOn(on)) != 0;
}

bool CKEDAAdapterControlPanelView::TakeVoltage(CKEDAAdapter& adapter, int controlId) {
    const bool audio = controlId <= kCtrlAudioVoltage0;
    return (audio ? adapter.SetAudioVoltageSelect(kCtrlAudioVoltage0 - controlId, 1)
                  : adapter.SetCtrlVoltageSelect(kCtrlControlVoltage0 - controlId, 1)) != 0;
}

namespace {

using Setter = int (CKEDAAdapter::*)(int which, int value);

struct Accessor {
    int controlId;
    Setter set;
};

Setter SetterOf(std::span<const Accessor> accessors, int controlId) {
    return std::ranges::find(accessors, controlId, &Accessor::controlId)->set;
}

} // namespace

bool CKEDAAdapterControlPanelView::TakeChoice(CKEDAAdapter& adapter, int controlId) {
    static constexpr Accessor kAccessors[] = {{kCtrlSlotLength, &CKEDAAdapter::SetSlotLength},
                                              {kCtrlSlotsPerWire, &CKEDAAdapter::SetSubChannelsPerWire},
                                              {kCtrlMultiplier, &CKEDAAdapter::SetMasterClockMultiplier},
                                              {kCtrlDelay, &CKEDAAdapter::SetDelay}};
    return (adapter.*SetterOf(kAccessors, controlId))(Direction(), Chosen(controlId)) != 0;
}

bool CKEDAAdapterControlPanelView::TakeFlag(CKEDAAdapter& adapter, int controlId) {
    static constexpr Accessor kAccessors[] = {{kCtrlLsbFirst, &CKEDAAdapter::SetLSBFirst},
                                              {kCtrlSignExtend, &CKEDAAdapter::SetSignExtend},
                                              {kCtrlFrameInvert, &CKEDAAdapter::SetFrameClockInvert},
                                              {kCtrlFrame1Bit, &CKEDAAdapter::SetFrameClock1Bit},
                                              {kCtrlFrameEarly, &CKEDAAdapter::SetFrameClockEarly},
                                              {kCtrlBitInvert, &CKEDAAdapter::SetBitClockInvert}};
    const int which = controlId == kCtrlSignExtend ? static_cast<int>(GROUP_GENERATOR) : Direction();
    return (adapter.*SetterOf(kAccessors, controlId))(which, Ticked(controlId) ? 1 : 0) != 0;
}

bool CKEDAAdapterControlPanelView::TakeDataLength(CKEDAAdapter& adapter, int) {
    const double typed = Find<CMultiBaseEdit>(kCtrlDataLength)->GetNumericalValue();
    const int bits = std::isnan(typed) ? 0 : static_cast<int>(std::clamp(typed, -1.0, 1000.0));
    if (adapter.SetDataLength(Direction(), bits) != 0) {
        return true;
    }
    int shortest = 0;
    int longest = 0;
    adapter.GetDataLengthRange(Direction(), shortest, longest);
    constexpr int kInteger = 1;
    kalvio::TellOutOfRange(kalvio::LoadText(kTextDataLength), kInteger, shortest, longest, {});
    return false;
}

bool CKEDAAdapterControlPanelView::TakeFormat(CKEDAAdapter& adapter, int) {
    const auto& bar = *Find<CKEDADataFormatBar>(kCtrlFormatBar);
    return adapter.SetDataFormat(Direction(), bar.LeadPad(), bar.DataLength(), bar.TrailPad()) != 0;
}

bool CKEDAAdapterControlPanelView::TakeClockDirection(CKEDAAdapter& adapter, int controlId) {
    if (controlId == kCtrlSerialIn || controlId == kCtrlSerialOut) {
        return adapter.SetSerialClockDir(Direction(), Ticked(kCtrlSerialIn) ? CLOCKDIR_IN : CLOCKDIR_OUT) !=
               0;
    }
    const int direction = Ticked(kCtrlMasterIn)    ? CLOCKDIR_IN
                          : Ticked(kCtrlMasterOut) ? CLOCKDIR_OUT
                                                   : CLOCKDIR_NONE;
    return adapter.SetMasterClockDir(Direction(), direction) != 0;
}

bool CKEDAAdapterControlPanelView::TakeRouting(CKEDAAdapter& adapter, int controlId) {
    const int perWire = std::max(kLeastButtonsPerWire, adapter.GetSubChannelsPerWire(GROUP_GENERATOR));
    const int button = controlId - kCtrlRouting;
    return adapter.SetGenRouting(button / perWire + 1, button % perWire + 1,
                                 Find<CButton>(controlId)->GetCheck()) != 0;
}

bool CKEDAAdapterControlPanelView::TakeRouteAll(CKEDAAdapter& adapter, int controlId) {
    for (int wire = 1; wire <= adapter.GetNumWires(GROUP_GENERATOR); ++wire) {
        for (int slot = 1; slot <= adapter.GetSubChannelsPerWire(GROUP_GENERATOR); ++slot) {
            const int routing = controlId == kCtrlAllToA   ? ROUTING_A
                                : controlId == kCtrlAllToB ? ROUTING_B
                                : controlId == kCtrlAllOff ? ROUTING_OFF
                                : slot % 2 == 1            ? ROUTING_A
                                                           : ROUTING_B;
            adapter.SetGenRouting(wire, slot, routing);
        }
    }
    return true;
}

bool CKEDAAdapterControlPanelView::TakeAnalyserRouting(CKEDAAdapter& adapter, int controlId) {
    const int channel = controlId <= kCtrlAnaSlotA ? 0 : 1;
    const int wireControl = channel == 0 ? kCtrlAnaWireA : kCtrlAnaWireB;
    return adapter.SetAnaRouting(channel, Chosen(wireControl), Chosen(wireControl + 1)) != 0;
}

bool CKEDAAdapterControlPanelView::TakePort(CKEDAAdapter& adapter, int controlId) {
    switch (controlId) {
    case kCtrlModeSpi:
    case kCtrlModeI2c:
        return adapter.SetControlMode(Ticked(kCtrlModeSpi) ? 0 : 1) != 0;
    case kCtrlSpiPolarity:
        return adapter.SetSPIClockPolarity(Ticked(controlId) ? 1 : 0) != 0;
    case kCtrlSpiPhase:
        return adapter.SetSPIClockPhase(Ticked(controlId) ? 1 : 0) != 0;
    case kCtrlSlaveAddress: {
        const double typed = Find<CMultiBaseEdit>(controlId)->GetNumericalValue();
        return !std::isnan(typed) && adapter.SetSlaveAddress(static_cast<int>(typed)) != 0;
    }
    default: // the bytes to transmit are taken when they are sent
        return true;
    }
}

struct CKEDAAdapterControlPanelView::Change {
    ControlRun run;
    bool (CKEDAAdapterControlPanelView::*take)(CKEDAAdapter& adapter, int controlId);

    static const Change* Of(int controlId) {
        using View = CKEDAAdapterControlPanelView;
        static constexpr Change kChanges[] = {
            {{kCtrlGenEnabled, kCtrlAnaEnabled}, &View::TakePath},
            {{kCtrlAudioOn, kCtrlAudioOn}, &View::TakeOutputs},
            {{kCtrlAudioVoltage4, kCtrlAudioVoltage0}, &View::TakeVoltage},
            {{kCtrlControlOn, kCtrlControlOn}, &View::TakeOutputs},
            {{kCtrlControlVoltage4, kCtrlControlVoltage0}, &View::TakeVoltage},
            {{kCtrlSlotLength, kCtrlSlotLength}, &View::TakeChoice},
            {{kCtrlLsbFirst, kCtrlLsbFirst}, &View::TakeFlag},
            {{kCtrlDataLength, kCtrlDataLengthSpin}, &View::TakeDataLength},
            {{kCtrlFormatBar, kCtrlFormatBar}, &View::TakeFormat},
            {{kCtrlSlotsPerWire, kCtrlSlotsPerWire}, &View::TakeChoice},
            {{kCtrlSignExtend, kCtrlSignExtend}, &View::TakeFlag},
            {{kCtrlSerialIn, kCtrlSerialOut}, &View::TakeClockDirection},
            {{kCtrlFrameInvert, kCtrlFrameEarly}, &View::TakeFlag},
            {{kCtrlBitInvert, kCtrlBitInvert}, &View::TakeFlag},
            {{kCtrlMasterIn, kCtrlMasterNone}, &View::TakeClockDirection},
            {{kCtrlMultiplier, kCtrlMultiplier}, &View::TakeChoice},
            {{kCtrlDelay, kCtrlDelay}, &View::TakeChoice},
            {{kCtrlRouting, kCtrlRoutingLast}, &View::TakeRouting},
            {{kCtrlAllToA, kCtrlStereoPairs}, &View::TakeRouteAll},
            {{kCtrlAnaWireA, kCtrlAnaSlotB}, &View::TakeAnalyserRouting},
            {{kCtrlModeSpi, kCtrlSend}, &View::TakePort},
        };
        const auto* const found = std::ranges::find_if(kChanges, [=](const Change& change) {
            return controlId >= change.run.first && controlId <= change.run.last;
        });
        return found == std::end(kChanges) ? nullptr : found;
    }
};

int CKEDAAdapterControlPanelView::OnControlChanged(int controlId) {
    switch (controlId) {
    case kCtrlAddress:
        return OnAddressChanged();
    case kCtrlRefresh:
        return OnRefillKEDAAdapterList();
    case kCtrlReset:
        return ResetAdapter();
    case kCtrlStandby:
        return StandbyAdapter();
    default:
        break;
    }
    CKEDAAdapter* const adapter = Adapter();
    if (adapter == nullptr) {
        return 0;
    }
    if (const Change* const change = Change::Of(controlId); change != nullptr) {
        if (!(this->*change->take)(*adapter, controlId)) {
            OnUpdate(this, controlId, nullptr);
            return 0;
        }
    }
    if (controlId != kCtrlTransmit) { // what is typed there is not the adapter's before it is sent
        OnUpdate(this, controlId, nullptr);
    }
    UpdateViews(this, controlId, nullptr, 0);
    return 1;
}

// --- Commands ---

struct CKEDAAdapterControlPanelView::Command {
    ControlRun run;
    void (*send)(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter);

    static void Mode(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) { adapter.UpdateCtrlMode(); }
    static void Relays(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) { adapter.UpdateRelayCtrl(); }
    static void Outputs(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) { adapter.UpdateIOCtrl(); }
    static void Format(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter) {
        adapter.UpdateGenAnaFormat(view.Direction());
    }
    static void SlotCount(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter) {
        Format(view, adapter);
        if (view.Direction() == GROUP_ANALYSER) {
            adapter.UpdateAnaRouting();
        } else {
            adapter.UpdateGenRouting();
        }
    }
    static void Clocks(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter) {
        adapter.UpdateGenAnaClocks(view.Direction());
    }
    static void ClockDirections(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter) {
        Clocks(view, adapter);
        adapter.UpdateRelayCtrl();
        adapter.UpdateDelays();
    }
    static void Delays(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) { adapter.UpdateDelays(); }
    static void GenRouting(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) {
        adapter.UpdateGenRouting();
    }
    static void AnaRouting(CKEDAAdapterControlPanelView&, CKEDAAdapter& adapter) {
        adapter.UpdateAnaRouting();
    }
    static void Transfer(CKEDAAdapterControlPanelView& view, CKEDAAdapter& adapter) {
        const std::vector<std::uint8_t> bytes = view.Find<CHexEdit>(kCtrlTransmit)->GetBytes();
        const int count = static_cast<int>(bytes.size());
        if (adapter.GetControlMode() == 0) {
            adapter.SendSPIData(count, bytes.data());
        } else {
            adapter.SendI2CData(count, bytes.data());
        }
    }
};

void CKEDAAdapterControlPanelView::OnControlUpdateHardware(int controlId) {
    static constexpr Command kCommands[] = {
        {{2751, 2754}, Command::Mode},
        {{kCtrlModeI2c, kCtrlModeI2c}, Command::Mode},
        {{kCtrlSend, kCtrlSend}, Command::Transfer},
        {{kCtrlGenEnabled, kCtrlAnaEnabled}, Command::Relays},
        {{kCtrlAudioOn, kCtrlControlVoltage0}, Command::Outputs},
        {{kCtrlSlotLength, kCtrlLsbFirst}, Command::Format},
        {{kCtrlDataLength, kCtrlDataLengthSpin}, Command::Format},
        {{kCtrlFormatBar, kCtrlFormatBar}, Command::Format},
        {{kCtrlSlotsPerWire, kCtrlSlotsPerWire}, Command::SlotCount},
        {{kCtrlSignExtend, kCtrlSignExtend}, Command::Format},
        {{kCtrlSerialIn, kCtrlSerialOut}, Command::ClockDirections},
        {{kCtrlMasterIn, kCtrlMasterNone}, Command::ClockDirections},
        {{kCtrlFrameInvert, kCtrlFrameEarly}, Command::Clocks},
        {{kCtrlFrameFreq, kCtrlFrameFreq}, Command::Clocks},
        {{kCtrlBitInvert, kCtrlBitInvert}, Command::Clocks},
        {{kCtrlBitFreq, kCtrlBitFreq}, Command::Clocks},
        {{kCtrlMultiplier, kCtrlMultiplier}, Command::Clocks},
        {{kCtrlMasterFreq, kCtrlMasterFreq}, Command::Clocks},
        {{kCtrlDelay, kCtrlDelay}, Command::Delays},
        {{kCtrlRouting, kCtrlRoutingLast}, Command::GenRouting},
        {{kCtrlAllToA, kCtrlStereoPairs}, Command::GenRouting},
        {{2989, kCtrlAnaSlotB}, Command::AnaRouting},
    };
    CKEDAAdapter* const adapter = Adapter();
    if (adapter == nullptr) {
        return;
    }
    const auto* const command = std::ranges::find_if(kCommands, [=](const Command& row) {
        return controlId >= row.run.first && controlId <= row.run.last;
    });
    if (command != std::end(kCommands)) {
        command->send(*this, *adapter);
    }
}
