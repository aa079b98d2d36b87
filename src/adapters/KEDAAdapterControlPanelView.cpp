#include "adapters/KEDAAdapterControlPanelView.h"

#include "adapters/KEDADataFormatBar.h"
#include "adapters/KEDAHints.h"
#include "adapters/KEDAPanelLayout.h"
#include "adapters/KEDARoutingButton.h"
#include "adapters/KEDATexts.h"
#include "adapters/KEDATimingDiagram.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Archive.h"
#include "platform/DebugFile.h"

#include <algorithm>
#include <array>
#include <iterator>

using namespace kalvio::keda;

namespace {

constexpr unsigned kDocked = 5120; // style of the panel in its frame
constexpr int kEverything = -1;
constexpr unsigned kTimer = 1;
constexpr std::uint32_t kTimerPeriod = 1000; // milliseconds
constexpr int kConfigWithTab = 19;
constexpr std::size_t kTransmitBytes = 10;

constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kGreen = 0x00FF00;

enum Tabs { kGeneratorTab, kAnalyserTab, kPortTab };

bool IsIn(std::span<const ControlRun> runs, int id) {
    return std::ranges::any_of(runs,
                               [id](const ControlRun& run) { return id >= run.first && id <= run.last; });
}

bool IsAddressControl(int id) {
    return id >= kCtrlAddress && id <= kCtrlStandby;
}

// What the view is linked to: what the document's own controls and hints are, the address and the notices of
// other devices.
constexpr ControlRun kLinkedRuns[] = {
    {2900, 2914},
    {2917, 2918},
    {2921, 2922},
    {2924, 2924},
    {2926, 2927},
    {2929, 2930},
    {2932, 2934},
    {2936, 2936},
    {2938, 2938},
    {2940, 2940},
    {2942, 2945},
    {2948, 2949},
    {2954, 2954},
    {2956, 2971},
    {2984, 2987},
    {2993, 2996},
    {2752, 2756},
    {2758, 2758},
    {2760, 2760},
    {2763, 2763},
    {2765, 2766},
    {HINT_KEDA_CONTROL_CHANGED, HINT_KEDA_BYPASS_CHANGED},
    {kCtrlAddress, kCtrlAddress},
    {HINT_DEVICE_CHANGED, HINT_DEVICE_CHANGED},
};

std::vector<int> LinkedControls() {
    std::vector<int> ids;
    for (const ControlRun& run : kLinkedRuns) {
        for (int id = run.first; id <= run.last; ++id) {
            ids.push_back(id);
        }
    }
    return ids;
}

int ButtonsPerWire(const CKEDAAdapter& adapter) {
    return std::max(kLeastButtonsPerWire, adapter.GetSubChannelsPerWire(GROUP_GENERATOR));
}

} // namespace

std::unique_ptr<CWnd> CKEDAAdapterControlPanelView::MakeControl(const kalvio::ControlTemplate& item,
                                                                CWnd* panel) {
    if (item.id >= kCtrlRouting && item.id <= kCtrlRoutingLast) {
        return std::make_unique<CKEDARoutingButton>(item.id, panel);
    }
    if (item.id == kCtrlFormatBar) {
        return std::make_unique<CKEDADataFormatBar>(item.id, panel);
    }
    if (item.id == kCtrlTiming) {
        return std::make_unique<CKEDATimingDiagram>(item.id, panel);
    }
    return nullptr;
}

int CKEDAAdapterControlPanelView::InitialiseView(int panel, CPoint) {
    if (panel == -1 || panel == kPanelDialog) {
        AddPanelToFrame(PanelLayout(), kDocked);
    }
    if (Panels().empty() || CreatePanels() == 0 || !InitialisePanel()) {
        TraceError("KEDA Adapter Control Panel", "the panel could not be built");
        return 0;
    }
    if (!m_timerRuns) {
        kalvio::SetTimer(Handle(), kTimer, kTimerPeriod);
        m_timerRuns = true;
    }
    m_initialised = true;
    GetHostApplication().Updaters().Link(this, LinkedControls());
    OnUpdate(this, kEverything, nullptr);
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->SetWindowType(kPanelWindowType, panel);
    }
    return 1;
}

bool CKEDAAdapterControlPanelView::InitialisePanel() {
    auto* const tabs = Find<CTabCtrl>(kCtrlTabs);
    auto* const slave = Find<CMultiBaseEdit>(kCtrlSlaveAddress);
    auto* const transmit = Find<CHexEdit>(kCtrlTransmit);
    if (tabs == nullptr || slave == nullptr || transmit == nullptr) {
        return false;
    }
    for (const unsigned text : {kTextGeneratorTab, kTextAnalyzerTab, kTextControlTab}) {
        tabs->AddString(kalvio::LoadText(text));
    }
    tabs->SetCurSel(kGeneratorTab);
    constexpr int kHexadecimal = 16;
    slave->SetBase(kHexadecimal);
    slave->SetLimitText(2);
    transmit->SetLimit(kTransmitBytes);
    for (const int id : {kCtrlFrameFreq, kCtrlBitFreq, kCtrlMasterFreq, kCtrlI2cStatus, kCtrlReceive}) {
        Find<CEdit>(id)->SetReadOnly(true);
        Find<CEdit>(id)->SetColors(kWhite, kBlack);
    }
    for (int id = kCtrlRouting; id <= kCtrlRoutingLast; ++id) {
        Find<CKEDARoutingButton>(id)->SetImageList(&kalvio::RoutingImages());
    }
    Find<CSpinButtonCtrl>(kCtrlDataLengthSpin)->SetBuddy(Find<CWnd>(kCtrlDataLength));
    for (const int id : {kCtrlSlotLength, kCtrlSlotsPerWire, kCtrlMultiplier}) {
        m_document.FillCombo(nullptr, Find<CComboBox>(id), id);
    }
    m_document.FillColorCombo(nullptr, Find<CColorCombo>(kCtrlDelay), kCtrlDelay);
    FillKEDAAdapterCombo();
    return true;
}

void CKEDAAdapterControlPanelView::OnDestroy() {
    if (m_timerRuns) {
        kalvio::KillTimer(Handle(), kTimer);
        m_timerRuns = false;
    }
    GetHostApplication().Updaters().Unlink(this);
}

CKEDAAdapter* CKEDAAdapterControlPanelView::Adapter() const {
    const auto found = m_document.Adapters().find(m_address);
    return m_address == KVNET_ADDRESS_NONE || found == m_document.Adapters().end() ? nullptr
                                                                                   : found->second.get();
}

int CKEDAAdapterControlPanelView::Tab() const {
    const auto* const tabs = Find<CTabCtrl>(kCtrlTabs);
    return tabs == nullptr ? kGeneratorTab : tabs->GetCurSel();
}

void CKEDAAdapterControlPanelView::SelectTab(int tab) {
    if (auto* const tabs = Find<CTabCtrl>(kCtrlTabs); tabs != nullptr) {
        tabs->SetCurSel(tab >= kGeneratorTab && tab <= kPortTab ? tab : kGeneratorTab);
    }
}

int CKEDAAdapterControlPanelView::Direction() const {
    return Tab() == kAnalyserTab ? GROUP_ANALYSER : GROUP_GENERATOR;
}

void CKEDAAdapterControlPanelView::SetTick(int controlId, bool on) {
    Find<CButton>(controlId)->SetCheck(on ? 1 : 0);
}

bool CKEDAAdapterControlPanelView::Ticked(int controlId) const {
    return Find<CButton>(controlId)->GetCheck() != 0;
}

void CKEDAAdapterControlPanelView::Choose(int controlId, std::intptr_t itemData) {
    auto* const combo = Find<CComboBox>(controlId);
    if (!combo->SetCurSelFromItemData(itemData)) {
        combo->SetCurSel(CComboBox::kNoSelection);
    }
}

int CKEDAAdapterControlPanelView::Chosen(int controlId) const {
    const auto* const combo = Find<CComboBox>(controlId);
    return static_cast<int>(combo->GetItemData(combo->GetCurSel()));
}

// --- What is shown ---

// What a change concerns: each of these shows one part of the adapter.
struct CKEDAAdapterControlPanelView::Refresh {
    enum Part : unsigned {
        Paths = 1,
        Format = 2,
        Routing = 4,
        AnalyserRouting = 8,
        Clocks = 16,
        Delay = 32,
        Port = 64
    };
    static constexpr unsigned kAll = 127;
    ControlRun run;
    unsigned parts;

    static unsigned PartsOf(int hint) {
        static constexpr Refresh kRows[] = {
            {{kEverything, kEverything}, kAll},
            {{kCtrlAddress, kCtrlStandby}, kAll},
            {{kCtrlTabs, kCtrlTabs}, kAll},
            {{HINT_KEDA_IO_CHANGED, HINT_KEDA_BYPASS_CHANGED}, Paths},
            {{kCtrlGenEnabled, kCtrlControlVoltage0}, Paths},
            {{HINT_KEDA_GEN_FORMAT_CHANGED, HINT_KEDA_GEN_FORMAT_CHANGED}, Format | Routing | Clocks},
            {{HINT_KEDA_ANA_FORMAT_CHANGED, HINT_KEDA_ANA_FORMAT_CHANGED}, Format | AnalyserRouting | Clocks},
            {{kCtrlSlotLength, kCtrlSignExtend}, Format | Routing | AnalyserRouting | Clocks},
            {{HINT_KEDA_GEN_ROUTING_CHANGED, HINT_KEDA_GEN_ROUTING_CHANGED}, Routing},
            {{kCtrlRouting, kCtrlStereoPairs}, Routing},
            {{HINT_KEDA_ANA_ROUTING_CHANGED, HINT_KEDA_ANA_ROUTING_CHANGED}, AnalyserRouting},
            {{kCtrlAnaWireA, kCtrlAnaSlotB}, AnalyserRouting},
            {{HINT_KEDA_GEN_CLOCKS_CHANGED, HINT_KEDA_GEN_CLOCKS_CHANGED}, Format | Clocks | Delay},
            {{HINT_KEDA_ANA_CLOCKS_CHANGED, HINT_KEDA_ANA_CLOCKS_CHANGED}, Format | Clocks | Delay},
            {{kCtrlSerialIn, kCtrlMasterFreq}, Format | Clocks | Delay},
            {{HINT_KEDA_DELAYS_CHANGED, HINT_KEDA_DELAYS_CHANGED}, Delay},
            {{kCtrlDelay, kCtrlDelay}, Delay},
            {{HINT_KEDA_CONTROL_CHANGED, HINT_KEDA_CONTROL_CHANGED}, Port},
            {{kCtrlModeSpi, kCtrlModeI2c}, Port},
        };
        unsigned parts = 0;
        for (const Refresh& row : kRows) {
            parts |= hint >= row.run.first && hint <= row.run.last ? row.parts : 0U;
        }
        return parts;
    }
};

void CKEDAAdapterControlPanelView::OnUpdate(CView*, int hint, void*) {
    if (!m_initialised) {
        return;
    }
    const unsigned parts = Refresh::PartsOf(hint);
    if (parts == Refresh::kAll) {
        ShowAddress(m_address);
        for (const int id : {kCtrlI2cStatus, kCtrlTransmit, kCtrlReceive}) {
            DisplayValue(id);
        }
    } else if (hint >= kCtrlSlaveAddress && hint <= kCtrlReceive) {
        DisplayValue(hint);
    }
    if (CKEDAAdapter* const adapter = Adapter(); adapter != nullptr) {
        const auto show = [&](Refresh::Part part, auto member) {
            if ((parts & part) != 0) {
                (this->*member)(*adapter);
            }
        };
        show(Refresh::Paths, &CKEDAAdapterControlPanelView::ShowPaths);
        show(Refresh::Format, &CKEDAAdapterControlPanelView::ShowFormat);
        show(Refresh::Routing, &CKEDAAdapterControlPanelView::ShowRouting);
        show(Refresh::AnalyserRouting, &CKEDAAdapterControlPanelView::ShowAnalyserRouting);
        show(Refresh::Clocks, &CKEDAAdapterControlPanelView::ShowClocks);
        show(Refresh::Delay, &CKEDAAdapterControlPanelView::ShowDelay);
        show(Refresh::Port, &CKEDAAdapterControlPanelView::ShowPort);
    } else if (parts == Refresh::kAll) {
        for (const int id : {kCtrlFrameFreq, kCtrlBitFreq, kCtrlMasterFreq}) {
            DisplayValue(id);
        }
        Find<CKEDATimingDiagram>(kCtrlTiming)->Show({});
    }
    AdjustControls(hint);
}

void CKEDAAdapterControlPanelView::ShowAddress(std::uint8_t address) {
    auto* const combo = Find<CComboBox>(kCtrlAddress);
    Choose(kCtrlAddress, address);
    combo->SetText(kalvio::AddressToString(address));
}

void CKEDAAdapterControlPanelView::ShowPaths(const CKEDAAdapter& adapter) {
    SetTick(kCtrlGenEnabled, adapter.GetGenBypass() == 0);
    SetTick(kCtrlAnaEnabled, adapter.GetAnaBypass() == 0);
    SetTick(kCtrlAudioOn, adapter.GetAudioOn() != 0);
    SetTick(kCtrlControlOn, adapter.GetCtrlOn() != 0);
    for (int voltage = 0; voltage <= kCtrlAudioVoltage0 - kCtrlAudioVoltage4; ++voltage) {
        SetTick(kCtrlAudioVoltage0 - voltage, adapter.GetAudioVoltageSelect() == voltage);
        SetTick(kCtrlControlVoltage0 - voltage, adapter.GetCtrlVoltageSelect() == voltage);
    }
}

void CKEDAAdapterControlPanelView::ShowFormat(const CKEDAAdapter& adapter) {
    const int which = Direction();
    Choose(kCtrlSlotLength, adapter.GetSlotLength(which));
    Choose(kCtrlSlotsPerWire, adapter.GetSubChannelsPerWire(which));
    SetTick(kCtrlLsbFirst, adapter.GetLSBFirst(which) != 0);
    SetTick(kCtrlSignExtend, adapter.GetSignExtend(GROUP_GENERATOR) != 0);
    int shortest = 0;
    int longest = 0;
    adapter.GetDataLengthRange(which, shortest, longest);
    auto* const spin = Find<CSpinButtonCtrl>(kCtrlDataLengthSpin);
    spin->SetRange(shortest, longest);
    spin->SetPos(adapter.GetDataLength(which));
    const int lead = adapter.GetLeadPadLength(which);
    const int trail = adapter.GetTrailPadLength(which);
    Find<CKEDADataFormatBar>(kCtrlFormatBar)->SetFormat(lead, adapter.GetDataLength(which), trail);
    SetControlText(kCtrlLeadPadLabel, kalvio::FormatText(kalvio::LoadText(kTextLeadPadBits), lead));
    SetControlText(kCtrlTrailPadLabel, kalvio::FormatText(kalvio::LoadText(kTextTrailPadBits), trail));
    ShowTiming(adapter);
}

void CKEDAAdapterControlPanelView::ShowTiming(const CKEDAAdapter& adapter) {
    const int which = Direction();
    Find<CKEDATimingDiagram>(kCtrlTiming)
        ->Show({.enabled = true,
                .leadPad = adapter.GetLeadPadLength(which),
                .dataLength = adapter.GetDataLength(which),
                .slotLength = adapter.GetSlotLength(which),
                .slots = adapter.GetSubChannelsPerWire(which),
                .lsbFirst = adapter.GetLSBFirst(which) != 0,
                .bitClockInvert = adapter.GetBitClockInvert(which) != 0,
                .frameClockInvert = adapter.GetFrameClockInvert(which) != 0,
                .frameClock1Bit = adapter.GetFrameClock1Bit(which) != 0,
                .frameClockEarly = adapter.GetFrameClockEarly(which) != 0});
}

void CKEDAAdapterControlPanelView::ShowRouting(const CKEDAAdapter& adapter) {
    const int perWire = ButtonsPerWire(adapter);
    for (int button = 0; button <= kCtrlRoutingLast - kCtrlRouting; ++button) {
        const int slot = button % perWire + 1;
        const int routing = slot <= adapter.GetSubChannelsPerWire(GROUP_GENERATOR)
                                ? adapter.GetGenRouting(button / perWire + 1, slot)
                                : ROUTING_OFF;
        auto& control = *Find<CKEDARoutingButton>(kCtrlRouting + button);
        control.SetCheck(routing);
        control.SetTooltip(kalvio::FormatText(kalvio::LoadText(kTextWire), button / perWire + 1) +
                           kalvio::Format(", slot %d", slot));
    }
    const int groupsPerWire = perWire / kLeastButtonsPerWire;
    for (int group = 0; group <= kCtrlWireLabelLast - kCtrlWireLabel; ++group) {
        const bool first = group % groupsPerWire == 0;
        SetControlText(kCtrlWireLabel + group,
                       first ? kalvio::FormatText(kalvio::LoadText(kTextWire), group / groupsPerWire + 1)
                             : CString());
    }
}

void CKEDAAdapterControlPanelView::ShowAnalyserRouting(CKEDAAdapter& adapter) {
    for (const int channel : {0, 1}) {
        const int wireControl = channel == 0 ? kCtrlAnaWireA : kCtrlAnaWireB;
        for (const int id : {wireControl, wireControl + 1}) {
            m_document.FillCombo(&adapter, Find<CComboBox>(id), id);
        }
        int wire = 0;
        int slot = 0;
        adapter.GetAnaRouting(channel, wire, slot);
        Choose(wireControl, wire);
        Choose(wireControl + 1, slot);
    }
}

void CKEDAAdapterControlPanelView::ShowClocks(const CKEDAAdapter& adapter) {
    const int which = Direction();
    const bool serialIn = adapter.GetSerialClockDir(which) == CLOCKDIR_IN;
    SetTick(kCtrlSerialIn, serialIn);
    SetTick(kCtrlSerialOut, !serialIn);
    const int master = adapter.GetMasterClockDir(which);
    SetTick(kCtrlMasterIn, master == CLOCKDIR_IN);
    SetTick(kCtrlMasterOut, master == CLOCKDIR_OUT);
    SetTick(kCtrlMasterNone, master == CLOCKDIR_NONE);
    SetTick(kCtrlFrameInvert, adapter.GetFrameClockInvert(which) != 0);
    SetTick(kCtrlFrame1Bit, adapter.GetFrameClock1Bit(which) != 0);
    SetTick(kCtrlFrameEarly, adapter.GetFrameClockEarly(which) != 0);
    SetTick(kCtrlBitInvert, adapter.GetBitClockInvert(which) != 0);
    Choose(kCtrlMultiplier, adapter.GetMasterClockMultiplier(which));
    for (const int id : {kCtrlFrameFreq, kCtrlBitFreq, kCtrlMasterFreq}) {
        DisplayValue(id);
    }
}

void CKEDAAdapterControlPanelView::ShowDelay(const CKEDAAdapter& adapter) {
    Choose(kCtrlDelay, adapter.GetDelay(Direction()));
}

void CKEDAAdapterControlPanelView::ShowPort(const CKEDAAdapter& adapter) {
    const bool spi = adapter.GetControlMode() == 0;
    SetTick(kCtrlModeSpi, spi);
    SetTick(kCtrlModeI2c, !spi);
    SetTick(kCtrlSpiPolarity, adapter.GetSPIClockPolarity() != 0);
    SetTick(kCtrlSpiPhase, adapter.GetSPIClockPhase() != 0);
    DisplayValue(kCtrlSlaveAddress);
}

void CKEDAAdapterControlPanelView::ShowFrequency(int controlId, int hertz, bool valid) {
    constexpr int kMegahertz = 1'000'000;
    constexpr double kKilo = 1000.0;
    const CString text = hertz == 0            ? kalvio::LoadText(kalvio::kTextNoFrequency)
                         : hertz <= kMegahertz ? kalvio::Format("%.1fkHz", hertz / kKilo)
                                               : kalvio::Format("%.3fMHz", hertz / (kKilo * kKilo));
    SetControlText(controlId, text);
    Find<CEdit>(controlId)->SetColors(kWhite, valid ? kBlack : kRed);
}

void CKEDAAdapterControlPanelView::DisplayValue(int controlId) {
    const CKEDAAdapter* const adapter = Adapter();
    const int which = Direction();
    switch (controlId) {
    case kCtrlFrameFreq:
        ShowFrequency(controlId, adapter == nullptr ? 0 : adapter->GetFrameClockFreq(which), true);
        return;
    case kCtrlBitFreq:
        ShowFrequency(controlId, adapter == nullptr ? 0 : adapter->GetBitClockFreq(which),
                      adapter == nullptr || adapter->BitClockValid(which) != 0);
        return;
    case kCtrlMasterFreq:
        ShowFrequency(controlId, adapter == nullptr ? 0 : adapter->GetMasterClockFreq(which),
                      adapter == nullptr || adapter->MasterClockValid(which) != 0);
        return;
    default:
        break;
    }
    if (adapter == nullptr) {
        return;
    }
    if (controlId == kCtrlSlaveAddress) {
        Find<CMultiBaseEdit>(controlId)->SetIntValue(adapter->GetSlaveAddress());
    } else if (controlId == kCtrlTransmit) {
        Find<CHexEdit>(controlId)->SetBytes(
            {adapter->GetTransmitBuffer(), static_cast<std::size_t>(adapter->GetNumTransmitChars())});
    } else if (controlId == kCtrlReceive) {
        Find<CHexEdit>(controlId)->SetBytes(
            {adapter->GetReceiveBuffer(), static_cast<std::size_t>(adapter->GetNumReceiveChars())});
    } else if (controlId == kCtrlI2cStatus) {
        const int status = adapter->GetI2CStatus();
        SetControlText(controlId, status == 1   ? kalvio::LoadText(kTextAck)
                                  : status == 2 ? kalvio::LoadText(kTextNack)
                                                : CString());
        Find<CEdit>(controlId)->SetColors(status == 1 ? kGreen : kRed, kBlack);
    }
}

// --- What is enabled and shown ---

void CKEDAAdapterControlPanelView::AdjustControls(int controlId) {
    if (!m_initialised) {
        return;
    }
    const CKEDAAdapter* const adapter = Adapter();
    const bool all = controlId == kEverything || IsAddressControl(controlId);
    const auto concerns = [&](std::initializer_list<int> ids) {
        return all || std::ranges::find(ids, controlId) != ids.end();
    };
    if (all) {
        for (CWnd* control : Panels().front()->Children()) {
            if (control->GetDlgCtrlID() != 0 && !IsAddressControl(control->GetDlgCtrlID())) {
                EnableControl(control->GetDlgCtrlID(), adapter != nullptr);
            }
        }
    }
    if (concerns({kCtrlTabs, kCtrlSlotsPerWire, HINT_KEDA_GEN_FORMAT_CHANGED})) {
        ShowTab(adapter);
    }
    if (adapter == nullptr) {
        return;
    }
    for (int id = kCtrlAudioVoltage4; id <= kCtrlAudioVoltage0; ++id) {
        Find<CWnd>(id)->SetGreyed(adapter->GetAudioOn() == 0);
        Find<CWnd>(id - kCtrlAudioVoltage4 + kCtrlControlVoltage4)->SetGreyed(adapter->GetCtrlOn() == 0);
    }
    if (concerns({kCtrlTabs, kCtrlSerialIn, kCtrlSerialOut, kCtrlMasterIn, kCtrlMasterOut, kCtrlMasterNone,
                  HINT_KEDA_GEN_CLOCKS_CHANGED, HINT_KEDA_ANA_CLOCKS_CHANGED})) {
        EnableControl(kCtrlDelay, adapter->IsDelayAllowed(Direction()) != 0);
    }
    if (concerns({kCtrlTabs, kCtrlModeSpi, kCtrlModeI2c, HINT_KEDA_CONTROL_CHANGED})) {
        const bool i2c = adapter->GetControlMode() != 0;
        for (const int id : {kCtrlSpiPolarity, kCtrlSpiPhase, kCtrlReceive}) {
            Find<CWnd>(id)->SetGreyed(i2c);
        }
        for (const int id : {kCtrlSlaveAddress, kCtrlI2cStatus}) {
            Find<CWnd>(id)->SetGreyed(!i2c);
        }
        if (!i2c && controlId != HINT_KEDA_CONTROL_CHANGED) {
            SetControlText(kCtrlReceive, {});
        }
    }
}

void CKEDAAdapterControlPanelView::ShowTab(const CKEDAAdapter* adapter) {
    const int tab = Tab();
    const bool narrow = adapter != nullptr && adapter->GetSubChannelsPerWire(GROUP_GENERATOR) <= 2;
    for (CWnd* control : Panels().front()->Children()) {
        const int id = control->GetDlgCtrlID();
        if (IsIn(GeneratorControls(), id)) {
            // With two slots a wire, only the first two buttons of its four stand for one.
            const bool button = id >= kCtrlRouting && id <= kCtrlRoutingLast;
            const bool used = !(button && narrow) || (id - kCtrlRouting) % kLeastButtonsPerWire < 2;
            control->ShowWindow(tab == kGeneratorTab && used);
        } else if (IsIn(AnalyserControls(), id)) {
            control->ShowWindow(tab == kAnalyserTab);
        } else if (IsIn(FormatControls(), id)) {
            control->ShowWindow(tab != kPortTab);
        } else if (IsIn(PortControls(), id)) {
            control->ShowWindow(tab == kPortTab);
        }
    }
}

// --- Timer, print-out, layout ---

void CKEDAAdapterControlPanelView::OnTimer(unsigned timer) {
    CKEDAAdapter* const adapter = Adapter();
    if (timer != kTimer || adapter == nullptr || !adapter->Status().IsOn()) {
        return;
    }
    adapter->ReadFrameClockFreq();
    for (const int id : {kCtrlFrameFreq, kCtrlBitFreq, kCtrlMasterFreq}) {
        DisplayValue(id);
    }
}

void CKEDAAdapterControlPanelView::PrintDetails(CDC*) {
    PrintTitle(kalvio::LoadText(kTextPanelTitle));
    if (Adapter() != nullptr) {
        PrintText(kalvio::LoadText(kTextAddress) + "\t" + kalvio::Format("%d", m_address));
        PrintEmptyLine();
    }
}

void CKEDAAdapterControlPanelView::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteByte(m_address);
        archive.WriteInt32(Tab());
        return;
    }
    const std::uint8_t address = archive.ReadByte();
    const int tab = archive.GetConfigVersion() >= kConfigWithTab ? archive.ReadInt32() : kGeneratorTab;
    m_address = address;
    SelectTab(tab);
    if (address != KVNET_ADDRESS_NONE && Adapter() == nullptr) {
        m_document.CreateKEDAAdapter(address, 1);
    }
    OnUpdate(this, kEverything, nullptr);
}
