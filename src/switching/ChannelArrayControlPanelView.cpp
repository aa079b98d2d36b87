#include "switching/ChannelArrayControlPanelView.h"

#include "host/HostApplication.h"
#include "host/SettingsData.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Archive.h"
#include "platform/UserInterface.h"
#include "platform/windows/MessageQueue.h"
#include "switching/ChannelArray.h"
#include "switching/ChannelArrayList.h"
#include "switching/SwitcherTexts.h"
#include "switching/panels/ChannelArrayControlPanelLayout.h"

#include <algorithm>

namespace {

using namespace kalvio;

constexpr int kWindowType = 31;
constexpr unsigned kFreshPanel = 21760; // how the frame holds the panel
constexpr unsigned kRecreatedPanel = 5120;
constexpr int kNoText = -1;
constexpr std::uint32_t kRed = 0xFF0000;
constexpr std::uint32_t kBlack = 0x000000;
constexpr short kPrintedInLine = 16;

constexpr int kLinkedHints[] = {
    HINT_BALANCE_CHANGED, HINT_ARRAY_REMOVED,      HINT_ARRAY_CHANGED, HINT_EXCLUSIVE_MODE_CHANGED,
    HINT_ARRAY_MOVED,     HINT_ARRAY_NAME_CHANGED, HINT_ARRAY_ADDED,   HINT_DEVICE_CHANGED};

bool IsBox(int controlId) {
    return controlId >= kCtrlFirstBox && controlId < kCtrlFirstBox + kArrayBoxes;
}

bool IsMode(int controlId) {
    return controlId >= kCtrlExclusivelyOn && controlId <= kCtrlIndependent;
}

// The state that a single channel has in an exclusive mode.
std::uint8_t LoneState(std::uint8_t mode) {
    return mode == CChannelArrayControlPanelView::ExclusivelyOn ? 1 : 0;
}

} // namespace

CChannelArrayControlPanelView::CChannelArrayControlPanelView() = default;

CChannelArrayControlPanelView::~CChannelArrayControlPanelView() = default;

std::unique_ptr<CView> CChannelArrayControlPanelView::GetInstance() {
    return std::make_unique<CChannelArrayControlPanelView>();
}

int CChannelArrayControlPanelView::InitialiseView(int panel, CPoint) {
    AddPanelToFrame(kArrayPanelLayout, panel == kArrayPanel ? kRecreatedPanel : kFreshPanel);
    if (CreatePanels() == 0) {
        return 0;
    }
    InitialiseControlPanel();
    if (CTypedFrameWnd* const frame = GetParentFrame(); frame != nullptr) {
        frame->SetWindowType(kWindowType, panel);
    }
    return 1;
}

void CChannelArrayControlPanelView::InitialiseControlPanel() {
    m_arrayCombo = Find<CComboBox>(kCtrlArray);
    m_rangeCombo = Find<CComboBox>(kCtrlArrayRange);
    for (std::size_t box = 0; box < kBoxes; ++box) {
        m_boxes[box] = Find<CButton>(kCtrlFirstBox + static_cast<int>(box));
        m_numbers[box] = Find<CWnd>(kCtrlFirstNumber + static_cast<int>(box));
    }
    SetExclusiveMode(m_mode);
    FillChannelArrayDropList();
    SetupChannelControls();
    GetHostApplication().Updaters().Link(this, kLinkedHints);
}

void CChannelArrayControlPanelView::OnDestroy() {
    GetHostApplication().Updaters().Unlink(this);
}

CChannelArrayList* CChannelArrayControlPanelView::Arrays() {
    PeripheralNetwork* const network = CurrentPeripheralNetwork();
    return network != nullptr ? &network->ChannelArrays() : nullptr;
}

CChannelArray* CChannelArrayControlPanelView::GetChannelArray() const {
    const CChannelArrayList* const arrays = Arrays();
    return arrays != nullptr && arrays->GetChannelArrayIndex(m_array) >= 0 ? m_array : nullptr;
}

bool CChannelArrayControlPanelView::IsUsable() const {
    return GetChannelArray() != nullptr && m_rangeCombo->GetCurSel() != CComboBox::kNoSelection && !m_error;
}

bool CChannelArrayControlPanelView::IsShown(std::size_t box) const {
    return m_first + static_cast<int>(box) <= m_last;
}

void CChannelArrayControlPanelView::FillChannelArrayDropList() {
    if (const PeripheralNetwork* const network = CurrentPeripheralNetwork(); network != nullptr) {
        network->FillChannelArrayDropList(m_arrayCombo, GetChannelArray());
    }
}

void CChannelArrayControlPanelView::OnChannelArraySelChanged(int updateDevices, int resetRange) {
    const int selected = m_arrayCombo->GetCurSel();
    m_array = selected == CComboBox::kNoSelection
                  ? nullptr
                  : reinterpret_cast<CChannelArray*>(m_arrayCombo->GetItemData(selected));
    if (CChannelArray* const array = GetChannelArray(); array != nullptr) {
        ShowArray(*array, updateDevices, resetRange);
    } else {
        ShowNoArray();
    }
}

void CChannelArrayControlPanelView::ShowArray(CChannelArray& array, int updateDevices, int resetRange) {
    m_arrayName = array.GetName();
    m_error = false;
    UpdateArrayDescription();
    UpdateWarningText(kNoText);
    if (updateDevices != 0 && array.UpdateDevicesFromSettings() != KVNET_OK) {
        m_error = true;
    }
    if (GetChannelArray() != &array) {
        return; // whoever was told of a frame took it away, and this panel was told in turn
    }
    SetExclusiveModeControlsFromArray();
    SetBalanceFromArray();
    m_first = resetRange != 0 ? std::int16_t{0} : m_first;
    FillChannelRangeDropList();
    SetupChannelControls();
}

void CChannelArrayControlPanelView::ShowNoArray() {
    m_array = nullptr;
    m_arrayName.clear();
    m_first = 0;
    m_last = 0;
    m_rangeCombo->ResetContent();
    UpdateArrayDescription();
    SetupChannelControls();
}

void CChannelArrayControlPanelView::UpdateArrayDescription() {
    const CChannelArray* const array = GetChannelArray();
    SetControlText(kCtrlArrayDescription,
                   array != nullptr ? DescribeArray(array->IsStereoArray() != 0, array->GetNumChannels())
                                    : CString());
}

void CChannelArrayControlPanelView::FillChannelRangeDropList() {
    m_rangeCombo->ResetContent();
    const int channels = GetChannelArray()->GetNumChannels();
    for (int first = 0; first < channels; first += kArrayBoxes) {
        const int last = std::min(first + kArrayBoxes, channels) - 1;
        const int item = m_rangeCombo->AddString(FormatNumbers(kTextArrayRange, first + 1, last + 1),
                                                 std::intptr_t{last} << 16 | first);
        if (first == m_first) {
            m_rangeCombo->SetCurSel(item);
        }
    }
    if (m_rangeCombo->GetCurSel() == CComboBox::kNoSelection) {
        m_rangeCombo->SetCurSel(0); // the array has become shorter
    }
    TakeRange();
}

void CChannelArrayControlPanelView::TakeRange() {
    const int selected = m_rangeCombo->GetCurSel();
    const std::intptr_t range = selected == CComboBox::kNoSelection ? 0 : m_rangeCombo->GetItemData(selected);
    m_first = static_cast<std::int16_t>(range & 0xFFFF);
    m_last = static_cast<std::int16_t>(range >> 16);
}

void CChannelArrayControlPanelView::OnChannelRangeSelChanged() {
    TakeRange();
    SetupChannelControls();
}

void CChannelArrayControlPanelView::SetupChannelControls() {
    const bool usable = IsUsable();
    const CChannelArray* const array = GetChannelArray();
    const bool modes = usable && array->GetExclusiveOnly() == 0;
    for (int mode = kCtrlExclusivelyOn; mode <= kCtrlIndependent; ++mode) {
        EnableControl(mode, modes);
    }
    EnableControl(kCtrlArrayBalance, usable);
    EnableControl(kCtrlArrayRange, usable);
    for (std::size_t box = 0; box < kBoxes; ++box) {
        SetupBox(box, usable);
    }
    m_error = !usable;
    UpdateWarningText(usable ? kNoText : static_cast<int>(ReasonForNoControls()));
    EnableSetAndClearAllButtons();
    SetChannelControlsFromArray();
}

void CChannelArrayControlPanelView::SetupBox(std::size_t box, bool usable) {
    const bool shown = !usable || IsShown(box);
    const int number = (usable ? m_first : 0) + static_cast<int>(box) + 1;
    m_numbers[box]->SetText(shown ? std::to_string(number) : CString());
    m_boxes[box]->ShowWindow(shown);
    for (CWnd* const control : {static_cast<CWnd*>(m_boxes[box]), m_numbers[box]}) {
        control->EnableWindow(usable);
        control->SetGreyed(!usable);
    }
}

unsigned CChannelArrayControlPanelView::ReasonForNoControls() const {
    const CChannelArrayList* const arrays = Arrays();
    if (arrays == nullptr || arrays->GetCount() == 0) {
        return kTextNoArrays;
    }
    return GetChannelArray() == nullptr ? kTextNoSelection : kTextDeviceError;
}

void CChannelArrayControlPanelView::UpdateWarningText(int stringId) {
    auto* const warning = Find<CStatic>(kCtrlArrayWarning);
    warning->SetText(stringId == kNoText ? CString() : LoadText(static_cast<unsigned>(stringId)));
    warning->SetTextColor(stringId == kNoText ? kBlack : kRed);
}

void CChannelArrayControlPanelView::EnableSetAndClearAllButtons() {
    const bool usable = IsUsable();
    EnableControl(kCtrlSetAll, usable && m_mode != ExclusivelyOn);
    EnableControl(kCtrlClearAll, usable && m_mode != ExclusivelyOff);
}

void CChannelArrayControlPanelView::SetChannelControlsFromArray() {
    const CChannelArray* const array = IsUsable() ? GetChannelArray() : nullptr;
    for (std::size_t box = 0; box < kBoxes; ++box) {
        ChannelDetails channel;
        const auto index = static_cast<short>(m_first + static_cast<int>(box));
        const bool known = array != nullptr && IsShown(box) && array->GetChannelDetails(index, channel) != 0;
        m_boxes[box]->SetCheck(known && channel.state == 1 ? 1 : 0);
    }
}

int CChannelArrayControlPanelView::CountChannelsOfState(std::uint8_t state) const {
    const CChannelArray* const array = GetChannelArray();
    int count = 0;
    ChannelDetails channel;
    for (short index = 0; array != nullptr && array->GetChannelDetails(index, channel) != 0; ++index) {
        count += channel.state == state ? 1 : 0;
    }
    return count;
}

std::int16_t CChannelArrayControlPanelView::GetFirstChannelOfState(std::uint8_t state) const {
    const CChannelArray* const array = GetChannelArray();
    ChannelDetails channel;
    for (short index = 0; array != nullptr && array->GetChannelDetails(index, channel) != 0; ++index) {
        if (channel.state == state) {
            return index;
        }
    }
    return -1;
}

void CChannelArrayControlPanelView::SetExclusiveModeControlsFromArray() {
    const int channels = GetChannelArray()->GetNumChannels();
    const int on = CountChannelsOfState(1);
    if (GetChannelArray()->GetExclusiveOnly() != 0 || on <= 1) {
        SetExclusiveMode(ExclusivelyOn);
    } else {
        SetExclusiveMode(on == channels - 1 ? ExclusivelyOff : Independent);
    }
}

void CChannelArrayControlPanelView::SetExclusiveMode(std::uint8_t mode) {
    m_mode = mode;
    for (int radio = kCtrlExclusivelyOn; radio <= kCtrlIndependent; ++radio) {
        Find<CButton>(radio)->SetCheck(radio - kCtrlExclusivelyOn == mode ? 1 : 0);
    }
}

void CChannelArrayControlPanelView::SetBalanceFromArray() {
    ChannelDetails channel;
    GetChannelArray()->GetChannelDetails(0, channel);
    m_balance = (channel.flags & kChannelBalanced) != 0 ? 1 : 0;
    Find<CButton>(kCtrlArrayBalance)->SetCheck(m_balance);
}

int CChannelArrayControlPanelView::OnControlChanged(int controlId) {
    if (controlId == kCtrlArray) {
        OnChannelArraySelChanged(1, 1);
    } else if (controlId == kCtrlArrayRange) {
        OnChannelRangeSelChanged();
    } else if (controlId == kCtrlArrayBalance) {
        m_balance = Find<CButton>(kCtrlArrayBalance)->GetCheck();
    } else if (controlId == kCtrlSetAll) {
        return OnSetAllChannels();
    } else if (controlId == kCtrlClearAll) {
        OnClearAllChannels();
    } else if (IsMode(controlId)) {
        OnExclusiveModeChanged();
    } else if (IsBox(controlId)) {
        UpdateCheckBoxesOnChannelSelection(controlId);
    }
    return 1;
}

void CChannelArrayControlPanelView::OnControlUpdateHardware(int controlId) {
    CChannelArray* const array = GetChannelArray();
    if (array == nullptr) {
        m_error = true;
    } else if (controlId == kCtrlArrayBalance) {
        array->Balance(m_balance);
    } else if (controlId == kCtrlSetAll) {
        array->SetAllChannels();
    } else if (controlId == kCtrlClearAll) {
        array->ClearChannels(0);
    } else if (IsBox(controlId)) {
        UpdateHardwareOnChannelSelection(*array, controlId);
    }
}

void CChannelArrayControlPanelView::UpdateHardwareOnChannelSelection(CChannelArray& array, int controlId) {
    const int box = controlId - kCtrlFirstBox;
    const auto channel = static_cast<short>(m_first + box + 1);
    const bool ticked = m_boxes[static_cast<std::size_t>(box)]->GetCheck() != 0;
    if (m_mode == Independent) {
        array.AddRemoveChannel(channel, ticked ? 1 : 0);
    } else if (ticked == (m_mode == ExclusivelyOn)) {
        array.ExclusiveChannel(channel, LoneState(m_mode));
    } else if (m_mode == ExclusivelyOn) {
        array.ClearChannels(0);
    } else {
        array.SetAllChannels();
    }
}

void CChannelArrayControlPanelView::UpdateCheckBoxesOnChannelSelection(int controlId) {
    const CChannelArray* const array = GetChannelArray();
    const int channel = m_first + (controlId - kCtrlFirstBox) + 1;
    int partner = controlId;
    if (array != nullptr && array->IsStereoArray() != 0) {
        partner = channel % 2 == 0 ? controlId - 1 : controlId + 1;
        m_boxes[static_cast<std::size_t>(partner - kCtrlFirstBox)]->SetCheck(
            m_boxes[static_cast<std::size_t>(controlId - kCtrlFirstBox)]->GetCheck());
    }
    if (m_mode != Independent) {
        SetAllCheckBoxes(m_mode == ExclusivelyOff ? 1 : 0, controlId, partner);
    }
}

void CChannelArrayControlPanelView::SetAllCheckBoxes(int check, int exceptId1, int exceptId2) {
    for (std::size_t box = 0; box < kBoxes; ++box) {
        const int id = kCtrlFirstBox + static_cast<int>(box);
        if (id != exceptId1 && id != exceptId2 && IsShown(box)) {
            m_boxes[box]->SetCheck(check);
        }
    }
}

int CChannelArrayControlPanelView::OnSetAllChannels() {
    if (m_mode == ExclusivelyOn) {
        const WindowHandle self = Handle();
        const bool agreed = AskYesNo(LoadText(kTextAskSetAll), BoxIcon::Question);
        // While the question stood the panel may have been closed, or its array taken away.
        if (!agreed || !IsOwnWindow(self) || GetChannelArray() == nullptr) {
            return 0;
        }
        SetExclusiveMode(Independent);
        EnableSetAndClearAllButtons();
    }
    SetAllCheckBoxes(1, 0, 0);
    return 1;
}

void CChannelArrayControlPanelView::OnClearAllChannels() {
    SetAllCheckBoxes(0, 0, 0);
}

void CChannelArrayControlPanelView::OnExclusiveModeChanged() {
    const std::uint8_t previous = m_mode;
    for (int radio = kCtrlExclusivelyOn; radio <= kCtrlIndependent; ++radio) {
        if (Find<CButton>(radio)->GetCheck() != 0) {
            m_mode = static_cast<std::uint8_t>(radio - kCtrlExclusivelyOn);
        }
    }
    if (CChannelArray* const array = GetChannelArray(); array != nullptr) {
        ConvertStates(*array, previous);
    }
    SetChannelControlsFromArray();
    EnableSetAndClearAllButtons();
    UpdateViews(this, HINT_EXCLUSIVE_MODE_CHANGED, nullptr, 0);
}

// Leaves a single channel in the state that the new mode allows to one: the channel that stood out in the
// other exclusive mode, or else the first that has the state already.
void CChannelArrayControlPanelView::ConvertStates(CChannelArray& array, std::uint8_t previous) {
    const std::uint8_t lone = LoneState(m_mode);
    if (m_mode == Independent || m_mode == previous ||
        (previous == Independent && CountChannelsOfState(lone) == 1)) {
        return;
    }
    const std::int16_t kept = GetFirstChannelOfState(previous == Independent ? lone : LoneState(previous));
    if (m_mode == ExclusivelyOff) {
        array.SetAllChannels();
    } else {
        array.ClearChannels(0);
    }
    if (kept >= 0 && GetChannelArray() == &array) {
        array.ExclusiveChannel(static_cast<short>(kept + 1), lone);
    }
}

bool CChannelArrayControlPanelView::AreDetailsVisible(std::uint8_t address, std::uint8_t bus,
                                                      std::uint8_t group) const {
    const CChannelArray* const array = GetChannelArray();
    ChannelDetails channel;
    for (short index = m_first; array != nullptr && index <= m_last; ++index) {
        if (array->GetChannelDetails(index, channel) != 0 && channel.address == address &&
            (channel.bus == bus || bus == kAllBuses || channel.group == group || group == kAllGroups)) {
            return true;
        }
    }
    return false;
}

void CChannelArrayControlPanelView::OnUpdate(CView* sender, int hint, void* object) {
    if (Panels().empty() || !Panels().front()->Exists() || Arrays() == nullptr) {
        return;
    }
    // An update from another thread brings no object: it may be about any array.
    CChannelArray* const shown = GetChannelArray();
    const bool mine = shown != nullptr && (object == shown || object == nullptr);
    switch (hint) {
    case -1:
        FollowArray();
        break;
    case HINT_ARRAY_ADDED:
    case HINT_ARRAY_NAME_CHANGED:
    case HINT_ARRAY_MOVED:
        FillChannelArrayDropList();
        m_arrayName = shown != nullptr ? shown->GetName() : CString();
        if (shown == nullptr) {
            ShowNoArray();
        }
        break;
    case HINT_ARRAY_REMOVED:
        OnArrayRemoved(object);
        break;
    case HINT_ARRAY_CHANGED:
        if (mine) {
            OnChannelArraySelChanged(0, 1);
        }
        break;
    case HINT_EXCLUSIVE_MODE_CHANGED:
        if (const auto* const other = dynamic_cast<CChannelArrayControlPanelView*>(sender);
            other != nullptr && other != this && (shown == nullptr || shown->GetExclusiveOnly() == 0)) {
            SetExclusiveMode(other->m_mode);
            EnableSetAndClearAllButtons();
        }
        break;
    case HINT_BALANCE_CHANGED:
        if (mine) {
            SetBalanceFromArray();
        }
        break;
    case HINT_DEVICE_CHANGED:
        if (const DeviceWord word = UnpackDeviceWord(HintWord(object));
            AreDetailsVisible(word.address, word.bus, word.group)) {
            SetChannelControlsFromArray();
        }
        break;
    default:
        break;
    }
}

void CChannelArrayControlPanelView::OnArrayRemoved(const void* array) {
    const bool shown = m_array != nullptr && (array == m_array || GetChannelArray() == nullptr);
    if (shown) {
        m_array = nullptr;
    }
    FillChannelArrayDropList();
    OnChannelArraySelChanged(1, shown ? 1 : 0);
}

// The arrays were replaced: the one of the same name takes the place of the one that was shown.
void CChannelArrayControlPanelView::FollowArray() {
    if (GetChannelArray() == nullptr) {
        m_array = m_arrayName.empty() ? nullptr : Arrays()->GetChannelArray(m_arrayName.c_str());
    }
    FillChannelArrayDropList();
    OnChannelArraySelChanged(0, 0);
}

void CChannelArrayControlPanelView::SetPrintTabStops(CDC* context) {
    const int width = context->HorizontalResolution() - 2 * kLeftMargin;
    std::vector<int> stops;
    for (int stop = 1; stop <= kPrintedInLine; ++stop) {
        stops.push_back(width * stop / kPrintedInLine);
    }
    context->SetTabStops(std::move(stops));
}

void CChannelArrayControlPanelView::PrintDetails(CDC*) {
    const CChannelArray* const array = GetChannelArray();
    PrintTitle(LoadText(kTextArrayTitle));
    PrintField(LoadText(kTextPrintArrayName), array != nullptr ? array->GetName() : CString(), {});
    PrintField(LoadText(kTextPrintMode), Find<CButton>(kCtrlExclusivelyOn + m_mode)->GetText(), {});
    PrintField(LoadText(kTextPrintBalance), GetOnOffText(m_balance != 0), {});
    if (array == nullptr) {
        return;
    }
    PrintEmptyLine();
    const int channels = array->GetNumChannels();
    for (int first = 0; first < channels; first += kPrintedInLine) {
        CString numbers;
        CString states;
        for (int index = first; index < std::min(first + kPrintedInLine, channels); ++index) {
            ChannelDetails channel;
            array->GetChannelDetails(static_cast<short>(index), channel);
            const char* const separator = index == first ? "" : "\t";
            numbers += separator + std::to_string(index + 1);
            states += separator + GetOnOffText(channel.state == 1);
        }
        PrintText(numbers);
        PrintText(states);
        PrintEmptyLine();
    }
}

void CChannelArrayControlPanelView::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        const CChannelArray* const array = GetChannelArray();
        archive.WriteString(array != nullptr ? array->GetName() : CString());
        archive.WriteInt16(m_first);
        archive.WriteInt16(m_last);
        archive.WriteByte(m_mode);
        archive.WriteInt32(m_balance);
        return;
    }
    const CString name = archive.ReadString();
    const std::int16_t first = archive.ReadInt16();
    archive.ReadInt16(); // the last index follows from the array
    archive.ReadByte();  // and so does the mode
    const std::int32_t balance = archive.ReadInt32();
    const CChannelArrayList* const arrays = Arrays();
    m_array = arrays != nullptr && !name.empty() ? arrays->GetChannelArray(name.c_str()) : nullptr;
    m_first = first;
    FillChannelArrayDropList();
    OnChannelArraySelChanged(0, 0);
    m_balance = balance != 0 ? 1 : 0;
    Find<CButton>(kCtrlArrayBalance)->SetCheck(m_balance);
}
