#include "switching/IOSwitcherControlPanelView.h"

#include "host/HostApplication.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Archive.h"
#include "switching/IOSwitcher.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"
#include "switching/SwitcherTexts.h"
#include "switching/panels/IOSwitcherControlPanelLayout.h"

#include <algorithm>

namespace {

using namespace kalvio;

constexpr int kWindowType = 32;
constexpr unsigned kFreshPanel = 21760; // how the frame holds the panel
constexpr unsigned kRecreatedPanel = 5120;
constexpr int kTimer = 1;
constexpr std::uint32_t kTimerPeriod = 1000;   // ms
constexpr std::uint8_t kFirstWithVoltages = 2; // hardware version
constexpr std::uint8_t kSwitcherType = 1;
constexpr std::uint32_t kBlack = 0x000000;
constexpr std::uint32_t kWhite = 0xFFFFFF;

constexpr int kLinkedControls[] = {kCtrlSwitcherDetect, kCtrlSwitcherOn, kCtrlSwitcherStandby,
                                   kCtrlSwitcherAddress};
// What changes which controls can be used; -1: everything.
constexpr int kAdjustingControls[] = {-1, kCtrlSwitcherAddress, kCtrlSwitcherOn, kCtrlSwitcherStandby};

constexpr const char* kBusNames[] = {"A", "B"};
constexpr const char* kGroupNames[] = {"X", "Y"};

const SwitcherBox* FindBox(int controlId) {
    const auto* const box = std::ranges::find(kSwitcherBoxes, controlId, &SwitcherBox::id);
    return box == kSwitcherBoxes.end() ? nullptr : box;
}

CString GroupText(std::uint8_t bus, std::uint8_t group) {
    return FormatText(LoadText(kTextPanelGroup), kBusNames[bus], kGroupNames[group]);
}

// A box is called by what it switches; its text is only its number in the row.
class RelayBox final : public CButton {
public:
    RelayBox(int controlId, CWnd* parent) : CButton(controlId, parent, ButtonStyle::Check) {}
    void Describe(ControlState& state) const override {
        CButton::Describe(state);
        state.name = GetTooltip();
    }
};

CString TooltipOf(const SwitcherBox& box) {
    if (box.IsRelay()) {
        return FormatText(LoadText(kTextPanelRelay), GroupText(box.bus, box.part),
                          std::to_string(box.bit + 1));
    }
    return FormatText(LoadText(box.bit == kBalanceBit ? kTextPanelBalance : kTextPanelLoad),
                      kBusNames[box.bus]);
}

} // namespace

CIOSwitcherControlPanelView::CIOSwitcherControlPanelView() : m_address(KVNET_ADDRESS_NONE) {}

CIOSwitcherControlPanelView::~CIOSwitcherControlPanelView() = default;

std::unique_ptr<CView> CIOSwitcherControlPanelView::GetInstance() {
    return std::make_unique<CIOSwitcherControlPanelView>();
}

int CIOSwitcherControlPanelView::InitialiseView(int panel, CPoint) {
    AddPanelToFrame(kSwitcherPanelLayout, panel == kSwitcherPanel ? kRecreatedPanel : kFreshPanel);
    if (CreatePanels() == 0) {
        return 0;
    }
    InitialiseControlPanel();
    AdjustControls(-1);
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->SetWindowType(kWindowType, panel);
    }
    return 1;
}

std::unique_ptr<CWnd> CIOSwitcherControlPanelView::MakeControl(const ControlTemplate& item, CWnd* panel) {
    return FindBox(item.id) != nullptr ? std::make_unique<RelayBox>(item.id, panel) : nullptr;
}

void CIOSwitcherControlPanelView::InitialiseControlPanel() {
    for (const SwitcherBox& box : kSwitcherBoxes) {
        Find<CButton>(box.id)->SetTooltip(TooltipOf(box));
    }
    for (int voltage = 0; voltage < kSwitcherVoltages; ++voltage) {
        auto* const edit = Find<CMultiBaseEdit>(kCtrlPositiveA + voltage);
        edit->SetDecimalPlaces(0);
        edit->SetColors(kBlack, kWhite);
        edit->SetReadOnly(true);
    }
    FillIOSwitcherCombo();
    if (m_timer < 0) {
        m_timer = kTimer;
        SetTimer(Handle(), kTimer, kTimerPeriod);
    }
    GetHostApplication().Updaters().Link(this, kLinkedControls);
}

void CIOSwitcherControlPanelView::OnDestroy() {
    if (m_timer >= 0) {
        KillTimer(Handle(), kTimer);
        m_timer = -1;
    }
    GetHostApplication().Updaters().Unlink(this);
}

CIOSwitcherSettings* CIOSwitcherControlPanelView::GetIOSwitcherSettings() {
    auto* const switchers =
        dynamic_cast<CSwitcherSettings*>(GetHostApplication().GetDocForID(HINT_SWITCHER_CHANGED));
    return switchers != nullptr ? switchers->GetIOSwitcherSettings() : nullptr;
}

CIOSwitcher* CIOSwitcherControlPanelView::GetIOSwitcher() const {
    CIOSwitcherSettings* const settings = GetIOSwitcherSettings();
    return settings != nullptr ? settings->GetIOSwitcher(m_address) : nullptr;
}

bool CIOSwitcherControlPanelView::IsOn() const {
    return m_address != KVNET_ADDRESS_NONE && m_status.IsOn();
}

bool CIOSwitcherControlPanelView::MeasuresVoltages() const {
    return IsOn() && m_status.GetHardwareVersion() >= kFirstWithVoltages;
}

bool CIOSwitcherControlPanelView::IsTicked(int controlId) const {
    const auto* const box = Find<CButton>(controlId);
    return box != nullptr && box->GetCheck() != 0;
}

bool CIOSwitcherControlPanelView::IsSet(std::uint8_t bus, std::uint8_t part, std::uint8_t bit) const {
    const SwitcherBox box{0, bus, part, bit};
    return (m_image[box.Place()] & box.Mask()) != 0;
}

void CIOSwitcherControlPanelView::FillIOSwitcherCombo() {
    PeripheralNetwork* const network = CurrentPeripheralNetwork();
    auto* const combo = Find<CComboBox>(kCtrlSwitcherAddress);
    if (network != nullptr && network->FillKvNetCombo(combo, kClassSwitcher, kSwitcherType, m_address) != 0) {
        // The device in use need not be one of those that were found.
        combo->SetText(AddressToString(m_address));
    }
}

void CIOSwitcherControlPanelView::OnRefillIOSwitcherList() {
    PeripheralNetwork* const network = CurrentPeripheralNetwork();
    if (network != nullptr && network->FillDeviceList() != 0) {
        FillIOSwitcherCombo();
    }
}

void CIOSwitcherControlPanelView::OnAddressChosen() {
    auto* const combo = Find<CComboBox>(kCtrlSwitcherAddress);
    CString text = combo->GetText();
    m_address = StringToAddress(text);
    combo->SetText(AddressToString(m_address));
    UpdateControlsFromSwitcher(kAllBuses, kAllGroups);
}

int CIOSwitcherControlPanelView::UpdateControlsFromSwitcher(std::uint8_t, std::uint8_t) {
    if (m_address == KVNET_ADDRESS_NONE) {
        m_status.Set(0, 0U);
        SetAllCheckBoxes(0);
        AdjustControls(-1);
        return 1;
    }
    PeripheralNetwork* const network = CurrentPeripheralNetwork();
    CIOSwitcherSettings* const settings = GetIOSwitcherSettings();
    VARIANT word;
    bool answered = false;
    if (network != nullptr && settings != nullptr) {
        const QuietNetwork quiet(*network);
        answered = settings->OLEGetStatus(m_address, &word);
    }
    if (!answered) {
        m_address = KVNET_ADDRESS_NONE;
        SetAllCheckBoxes(0);
        AdjustControls(-1);
        return 0;
    }
    m_status.Set(m_address, word);
    if (ReadRelays() == 0) {
        AdjustControls(-1);
        return 0;
    }
    ClearVoltages();
    TickFromImage();
    AdjustControls(-1);
    return 1;
}

int CIOSwitcherControlPanelView::ReadRelays() {
    if (!m_status.IsOn()) {
        m_image.fill(0);
        return 1;
    }
    VARIANT buses[2];
    {
        const QuietNetwork quiet(*CurrentPeripheralNetwork());
        if (!GetIOSwitcherSettings()->OLEGetFullStatus(m_address, &buses[0], &buses[1])) {
            return 0;
        }
    }
    for (std::size_t place = 0; place < m_image.size(); ++place) {
        std::int32_t state = 0;
        buses[place / 3].Get(state);
        m_image[place] = static_cast<std::uint8_t>(static_cast<std::uint32_t>(state) >> place % 3 * 8);
    }
    return 1;
}

void CIOSwitcherControlPanelView::SetAllCheckBoxes(int check) {
    for (const SwitcherBox& box : kSwitcherBoxes) {
        Find<CButton>(box.id)->SetCheck(check);
    }
}

void CIOSwitcherControlPanelView::TickFromImage() {
    for (const SwitcherBox& box : kSwitcherBoxes) {
        Find<CButton>(box.id)->SetCheck(IsSet(box.bus, box.part, box.bit) ? 1 : 0);
    }
}

void CIOSwitcherControlPanelView::AdjustControls(int controlId) {
    if (std::ranges::find(kAdjustingControls, controlId) == std::end(kAdjustingControls)) {
        return;
    }
    const bool present = m_address != KVNET_ADDRESS_NONE;
    EnableControl(kCtrlSwitcherOn, present);
    EnableControl(kCtrlSwitcherStandby, present);
    for (const SwitcherBox& box : kSwitcherBoxes) {
        EnableControl(box.id, IsOn());
    }
    for (int voltage = 0; voltage < kSwitcherVoltages; ++voltage) {
        EnableControl(kCtrlPositiveA + voltage, MeasuresVoltages());
        EnableControl(kCtrlFirstVoltageLabel + voltage, MeasuresVoltages());
        if (!MeasuresVoltages()) {
            SetControlText(kCtrlPositiveA + voltage, {});
        }
    }
}

int CIOSwitcherControlPanelView::OnControlChanged(int controlId) {
    if (const SwitcherBox* const box = FindBox(controlId); box != nullptr) {
        std::uint8_t& part = m_image[box->Place()];
        part = static_cast<std::uint8_t>(IsTicked(controlId) ? part | box->Mask() : part & ~box->Mask());
    } else if (controlId == kCtrlSwitcherAddress) {
        OnAddressChosen();
    } else if (controlId == kCtrlSwitcherDetect) {
        OnRefillIOSwitcherList();
    } else if (controlId == kCtrlSwitcherOn || controlId == kCtrlSwitcherStandby) {
        m_image.fill(0);
        SetAllCheckBoxes(0);
        m_status.SetOn(controlId == kCtrlSwitcherOn);
    }
    AdjustControls(controlId);
    return 1;
}

void CIOSwitcherControlPanelView::OnControlUpdateHardware(int controlId) {
    CIOSwitcher* const device = GetIOSwitcher();
    PeripheralNetwork* const network = CurrentPeripheralNetwork();
    if (device == nullptr || network == nullptr) {
        return;
    }
    if (controlId == kCtrlSwitcherOn || controlId == kCtrlSwitcherStandby) {
        const QuietNetwork quiet(*network);
        network->Reset(m_address, controlId == kCtrlSwitcherOn ? 1 : 0, nullptr);
        return;
    }
    const SwitcherBox* const box = FindBox(controlId);
    if (box == nullptr) {
        return;
    }
    const std::uint8_t on = IsTicked(controlId) ? 1 : 0;
    if (box->IsRelay()) {
        device->BusChannel(box->bus, box->part, box->bit, on);
    } else if (box->bit == kBalanceBit) {
        device->BusBalance(box->bus, IsSet(box->bus, box->part, kLoadBit) ? 2 : 0, on);
    } else {
        device->BusLoad(box->bus, IsSet(box->bus, box->part, kBalanceBit) ? 1 : 0, on);
    }
}

void CIOSwitcherControlPanelView::OnUpdate(CView*, int hint, void* object) {
    if (Panels().empty() || !Panels().front()->Exists()) {
        return;
    }
    if (hint == HINT_SWITCHER_CHANGED) {
        const DeviceWord word = UnpackDeviceWord(HintWord(object));
        if (word.classCode == kClassSwitcher && word.address == m_address) {
            UpdateControlsFromSwitcher(word.bus, word.group);
        }
    }
    AdjustControls(hint);
}

void CIOSwitcherControlPanelView::OnTimer(unsigned timer) {
    CIOSwitcher* const device = GetIOSwitcher();
    if (timer != kTimer || device == nullptr || !MeasuresVoltages()) {
        return;
    }
    std::array<signed char, 4> read{};
    if (device->GetDCMeasurement(&read[0], &read[1], &read[2], &read[3], nullptr) != 0) {
        m_voltages = read;
        ShowVoltages();
    }
}

void CIOSwitcherControlPanelView::ShowVoltages() {
    for (std::size_t voltage = 0; voltage < m_voltages.size(); ++voltage) {
        Find<CMultiBaseEdit>(kCtrlPositiveA + static_cast<int>(voltage))->SetIntValue(m_voltages[voltage]);
    }
}

void CIOSwitcherControlPanelView::ClearVoltages() {
    m_voltages.fill(0);
    for (int voltage = 0; voltage < kSwitcherVoltages; ++voltage) {
        SetControlText(kCtrlPositiveA + voltage, {});
    }
}

void CIOSwitcherControlPanelView::SetPrintTabStops(CDC* context) {
    // The label takes a third of the printable width, the eight relays share the rest.
    const int width = context->HorizontalResolution() - 2 * kLeftMargin;
    std::vector<int> stops(8);
    for (int relay = 0; relay < 8; ++relay) {
        stops[static_cast<std::size_t>(relay)] = width / 3 + relay * (width - width / 3) / 8;
    }
    context->SetTabStops(std::move(stops));
}

void CIOSwitcherControlPanelView::PrintDetails(CDC*) {
    PrintTitle(LoadText(kTextSwitcherPanel));
    PrintField(LoadText(kTextPanelAddress), AddressToString(m_address), {});
    for (const std::uint8_t bus : {std::uint8_t{0}, std::uint8_t{1}}) {
        PrintGroupDetails(bus, 0);
        PrintGroupDetails(bus, 1);
    }
    const struct {
        unsigned text;
        std::uint8_t bit;
    } flags[] = {{kTextPanelBalance, kBalanceBit}, {kTextPanelLoad, kLoadBit}};
    for (const auto& flag : flags) {
        for (const std::uint8_t bus : {std::uint8_t{0}, std::uint8_t{1}}) {
            PrintField(FormatText(LoadText(flag.text), kBusNames[bus]), GetOnOffText(IsSet(bus, 2, flag.bit)),
                       {});
        }
    }
    for (std::size_t voltage = 0; voltage < m_voltages.size(); ++voltage) {
        const unsigned text = voltage % 2 == 0 ? kTextPanelPositive : kTextPanelNegative;
        PrintField(FormatText(LoadText(text), kBusNames[voltage / 2]), std::to_string(m_voltages[voltage]),
                   {});
    }
}

void CIOSwitcherControlPanelView::PrintGroupDetails(std::uint8_t bus, std::uint8_t group) {
    CString numbers = GroupText(bus, group);
    CString states;
    for (std::uint8_t relay = 0; relay < 8; ++relay) {
        numbers += "\t" + std::to_string(relay + 1);
        states += "\t" + GetOnOffText(IsSet(bus, group, relay));
    }
    PrintText(numbers);
    PrintText(states);
}

void CIOSwitcherControlPanelView::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        archive.WriteUInt16(m_address);
        return;
    }
    const std::uint16_t address = archive.ReadUInt16();
    auto* const combo = Find<CComboBox>(kCtrlSwitcherAddress);
    combo->SetCurSel(CComboBox::kNoSelection);
    combo->SetText(std::to_string(address));
    OnAddressChosen();
}
