#include "peripheral_network/KvNetSetupChannelArrayPage.h"

#include "host/HostApplication.h"
#include "peripheral_network/ArrayDetailItem.h"
#include "peripheral_network/KvNetSettings.h"
#include "peripheral_network/KvNetSetupLayout.h"
#include "peripheral_network/KvNetTexts.h"
#include "peripheral_network/bus/KvNetHints.h"
#include "platform/UserInterface.h"
#include "switching/Creation.h"
#include "switching/SwitcherTexts.h"

#include <algorithm>
#include <new>
#include <utility>

namespace {

using namespace kalvio;

constexpr int kLowestAddress = 0;
constexpr int kHighestAddress = 63;

bool IsArrayDevice(std::uint8_t classType) {
    return classType == kClassTypeIOSwitcher || classType == kClassTypeKedaAdapter;
}

} // namespace

// Hears of arrays that go while the page works on them.
class CKvNetSetupChannelArrayPage::Watch final : public CView {
public:
    explicit Watch(CKvNetSetupChannelArrayPage& page) : m_page(page) {}
    void OnUpdate(CView*, int hint, void*) override { m_page.FollowArrays(hint); }

private:
    CKvNetSetupChannelArrayPage& m_page;
};

// What a button does.
struct CKvNetSetupChannelArrayPage::Command {
    int controlId;
    void (CKvNetSetupChannelArrayPage::*run)();
};

CKvNetSetupChannelArrayPage::CKvNetSetupChannelArrayPage() : CPropertyPage(kSetupArraysLayout) {}

CKvNetSetupChannelArrayPage::~CKvNetSetupChannelArrayPage() = default;

CKvNetSettings* CKvNetSetupChannelArrayPage::Network() {
    return dynamic_cast<CKvNetSettings*>(GetHostApplication().kvNet);
}

template<typename Control>
Control* CKvNetSetupChannelArrayPage::Find(int controlId) const {
    return dynamic_cast<Control*>(GetDlgItem(controlId));
}

std::vector<ArrayDetailItem> CKvNetSetupChannelArrayPage::Items(int listId) const {
    const auto* const list = Find<CListBox>(listId);
    std::vector<ArrayDetailItem> items(static_cast<std::size_t>(list->GetCount()));
    for (int line = 0; ArrayDetailItem & item : items) {
        item = ArrayDetailItem::Unpack(list->GetItemData(line++));
    }
    return items;
}

bool CKvNetSetupChannelArrayPage::OnInitDialog() {
    m_address = KVNET_ADDRESS_NONE;
    if (!MakeRecords()) {
        ShowMessage(LoadText(kTextSetupFailed), BoxIcon::Exclamation);
        return false;
    }
    Find<CListBox>(kCtrlAvailable)->SetTabStops({40});
    Find<CListBox>(kCtrlDetails)->SetTabStops({20, 60});
    FillArrayList();
    FillDeviceTypeCombo();
    SelectArray(0);
    return true;
}

bool CKvNetSetupChannelArrayPage::OnSetActive() {
    CKvNetSettings* const network = Network();
    auto* const combo = Find<CComboBox>(kCtrlDeviceAddress);
    if (network == nullptr || network->FillKvNetCombo(combo, 0, 0, m_address) == 0) {
        ShowMessage(LoadText(kTextSetupFailed), BoxIcon::Exclamation);
        return false;
    }
    // The address need not be one of those that were found.
    combo->SetText(CKvNetSettings::AddressToString(m_address));
    return true;
}

bool CKvNetSetupChannelArrayPage::MakeRecords() {
    CKvNetSettings* const network = Network();
    DropRecords();
    if (network == nullptr) {
        return false;
    }
    try {
        const CChannelArrayList& arrays = *network->GetChannelArrayList();
        for (int index = 0; index < arrays.GetCount(); ++index) {
            CChannelArray* const live = arrays.GetAt(index);
            ChannelArrayDetails record;
            record.live = live;
            record.liveName = live->GetName();
            record.copy = std::make_unique<CChannelArray>(live->GetName().c_str());
            *record.copy = *live;
            m_records.push_back(std::move(record));
        }
        m_watch = std::make_unique<Watch>(*this);
    } catch (const std::bad_alloc&) {
        DropRecords();
        return false;
    }
    return true;
}

void CKvNetSetupChannelArrayPage::DropRecords() {
    m_watch.reset();
    m_records.clear();
    m_current = nullptr;
}

void CKvNetSetupChannelArrayPage::OnCancel() {
    DropRecords();
}

CKvNetSetupChannelArrayPage::ChannelArrayDetails*
CKvNetSetupChannelArrayPage::RecordOf(const CChannelArray* copy) {
    const auto found =
        std::ranges::find_if(m_records, [=](const auto& record) { return record.copy.get() == copy; });
    return copy != nullptr && found != m_records.end() ? &*found : nullptr;
}

void CKvNetSetupChannelArrayPage::FollowArrays(int hint) {
    CKvNetSettings* const network = Network();
    if (network == nullptr || (hint != HINT_ARRAY_REMOVED && hint != -1)) {
        return;
    }
    for (ChannelArrayDetails& record : m_records) {
        if (network->GetChannelArrayList()->GetChannelArrayIndex(record.live) < 0) {
            record.live = hint == -1 ? network->GetChannelArray(record.liveName.c_str()) : nullptr;
        }
    }
}

void CKvNetSetupChannelArrayPage::FillArrayList() {
    auto* const list = Find<CListBox>(kCtrlArrayList);
    list->ResetContent();
    for (const ChannelArrayDetails& record : m_records) {
        if (record.copy != nullptr) {
            list->AddString(record.copy->GetName(), reinterpret_cast<std::intptr_t>(record.copy.get()));
        }
    }
}

void CKvNetSetupChannelArrayPage::FillDeviceTypeCombo() {
    const struct {
        unsigned text;
        std::uint8_t classType;
    } types[] = {{kTextDeviceTypeUnknown, 0},
                 {kTextTypeIOSwitcher, kClassTypeIOSwitcher},
                 {kTextTypeKedaAdapter, kClassTypeKedaAdapter}};
    auto* const combo = Find<CComboBox>(kCtrlDeviceType);
    for (const auto& type : types) {
        combo->AddString(LoadText(type.text), type.classType);
    }
    combo->SetCurSel(0);
}

// Puts the array of a line, or of the last one, in front.
void CKvNetSetupChannelArrayPage::SelectArray(int line) {
    auto* const list = Find<CListBox>(kCtrlArrayList);
    list->SetCurSel(std::min(line, list->GetCount() - 1));
    ShowCurrentArray();
}

void CKvNetSetupChannelArrayPage::ShowCurrentArray() {
    AdjustControlsOnArraySelectionChanged();
    FillDetailsList();
    FillAvailableList();
    UpdateDescription();
}

void CKvNetSetupChannelArrayPage::EnableItem(int controlId, bool enable) {
    GetDlgItem(controlId)->EnableWindow(enable);
}

void CKvNetSetupChannelArrayPage::AdjustControlsOnArraySelectionChanged() {
    const auto* const list = Find<CListBox>(kCtrlArrayList);
    const int line = list->GetCurSel();
    const bool selected = line != CListBox::kNoSelection;
    m_current = selected ? reinterpret_cast<CChannelArray*>(list->GetItemData(line)) : nullptr;
    for (const int control :
         {kCtrlEditArray, kCtrlDeleteArray, kCtrlDeviceAddress, kCtrlAvailable, kCtrlDetails}) {
        EnableItem(control, selected);
    }
    EnableItem(kCtrlArrayUp, selected && line > 0);
    EnableItem(kCtrlArrayDown, selected && line < list->GetCount() - 1);
    EnableItem(kCtrlDeviceType, selected && m_address != KVNET_ADDRESS_NONE);
    OnChannelsAvailableSelChanged();
    OnChannelsUsedSelChanged();
}

void CKvNetSetupChannelArrayPage::OnChannelsAvailableSelChanged() {
    EnableItem(kCtrlAddDetail,
               m_current != nullptr && Find<CListBox>(kCtrlAvailable)->GetCurSel() != CListBox::kNoSelection);
}

void CKvNetSetupChannelArrayPage::OnChannelsUsedSelChanged() {
    const auto* const list = Find<CListBox>(kCtrlDetails);
    const int line = list->GetCurSel();
    const bool selected = m_current != nullptr && line != CListBox::kNoSelection;
    EnableItem(kCtrlRemoveDetail, selected);
    EnableItem(kCtrlDetailUp, selected && line > 0);
    EnableItem(kCtrlDetailDown, selected && line < list->GetCount() - 1);
}

void CKvNetSetupChannelArrayPage::FillDetailsList() {
    auto* const list = Find<CListBox>(kCtrlDetails);
    list->ResetContent();
    if (m_current != nullptr) {
        for (const ArrayDetailItem& item : ItemsOfArray(*m_current)) {
            list->AddString(item.TextWithAddress(), item.Pack());
        }
    }
    OnChannelsUsedSelChanged();
}

void CKvNetSetupChannelArrayPage::FillAvailableList() {
    auto* const list = Find<CListBox>(kCtrlAvailable);
    const auto* const type = Find<CComboBox>(kCtrlDeviceType);
    list->ResetContent();
    if (m_current != nullptr && m_address != KVNET_ADDRESS_NONE) {
        const std::vector<ArrayDetailItem> used = Items(kCtrlDetails);
        const auto classType = static_cast<std::uint8_t>(type->GetItemData(type->GetCurSel()));
        for (const ArrayDetailItem& item :
             ItemsOfDevice(m_address, classType, m_current->IsStereoArray() != 0)) {
            if (std::ranges::none_of(used, [&](const auto& other) { return other.IsSamePlace(item); })) {
                list->AddString(item.Text(), item.Pack());
            }
        }
    }
    OnChannelsAvailableSelChanged();
}

void CKvNetSetupChannelArrayPage::UpdateDescription() {
    int channels = 0;
    for (const ArrayDetailItem& item : Items(kCtrlDetails)) {
        channels += item.Channels();
    }
    GetDlgItem(kCtrlDescription)
        ->SetText(m_current != nullptr ? DescribeArray(m_current->IsStereoArray() != 0, channels)
                                       : CString());
}

void CKvNetSetupChannelArrayPage::MarkEdited() {
    if (ChannelArrayDetails* const record = RecordOf(m_current); record != nullptr) {
        record->edited = true;
    }
    SetModified();
}

int CKvNetSetupChannelArrayPage::OnChannelArraySelectionChanged() {
    const auto* const list = Find<CListBox>(kCtrlArrayList);
    const std::intptr_t chosen = list->GetItemData(list->GetCurSel());
    if (reinterpret_cast<std::intptr_t>(m_current) != chosen && !SaveCurrentArrayDetails()) {
        return 0;
    }
    ShowCurrentArray();
    return 1;
}

void CKvNetSetupChannelArrayPage::WriteAddress(std::uint8_t address) {
    auto* const combo = Find<CComboBox>(kCtrlDeviceAddress);
    combo->SetCurSel(CComboBox::kNoSelection);
    combo->SetText(CKvNetSettings::AddressToString(address));
    combo->SetCurSelFromItemData(address);
}

int CKvNetSetupChannelArrayPage::OnDeviceAddressKillFocus() {
    CKvNetSettings* const network = Network();
    CString text = GetDlgItem(kCtrlDeviceAddress)->GetText();
    const std::uint8_t address = CKvNetSettings::StringToAddress(text);
    if (address == KVNET_ADDRESS_NONE || network == nullptr) {
        return 1;
    }
    if (IsValidAddress(address, 0) == 0) {
        ShowMessage(FormatNumbers(kTextBadAddress, kLowestAddress, kHighestAddress), BoxIcon::Exclamation);
        WriteAddress(m_address);
        return 0;
    }
    VARIANT word = VARIANT::Long(0);
    {
        const QuietNetwork quiet(*network);
        network->GetStatus(address, &word);
    }
    const std::uint8_t classType = CKvNetStatus(address, word).GetDeviceClassType();
    if (!IsArrayDevice(classType) && !AskYesNo(LoadText(kTextAskUseAddress), BoxIcon::Question)) {
        WriteAddress(m_address);
        GetDlgItem(kCtrlDeviceAddress)->SetFocus();
        return 0;
    }
    m_address = address;
    auto* const type = Find<CComboBox>(kCtrlDeviceType);
    type->SetCurSel(0);
    type->SetCurSelFromItemData(classType);
    EnableItem(kCtrlDeviceType, m_current != nullptr);
    FillAvailableList();
    return 1;
}

void CKvNetSetupChannelArrayPage::OnDeviceTypeSelChanged() {
    FillAvailableList();
}

void CKvNetSetupChannelArrayPage::OnAddDeviceDetails() {
    auto* const available = Find<CListBox>(kCtrlAvailable);
    const int line = available->GetCurSel();
    if (m_current == nullptr || line == CListBox::kNoSelection) {
        return;
    }
    const ArrayDetailItem item = ArrayDetailItem::Unpack(available->GetItemData(line));
    if (std::ranges::any_of(Items(kCtrlDetails), [&](const ArrayDetailItem& used) {
            return used.classType != item.classType || used.IsSamePlace(item) ||
                   used.classType == kClassTypeKedaAdapter;
        })) {
        ShowMessage(LoadText(kTextDetailConflict), BoxIcon::Exclamation);
        return;
    }
    if (item.IsAnalyser()) {
        m_current->SetExclusiveOnly(1);
    }
    Find<CListBox>(kCtrlDetails)->AddString(item.TextWithAddress(), item.Pack());
    available->DeleteString(line);
    available->SetCurSel(std::min(line, available->GetCount() - 1));
    UpdateDescription();
    OnChannelsAvailableSelChanged();
    OnChannelsUsedSelChanged();
    MarkEdited();
}

void CKvNetSetupChannelArrayPage::OnRemoveDeviceDetails() {
    auto* const details = Find<CListBox>(kCtrlDetails);
    const int line = details->GetCurSel();
    if (m_current == nullptr || line == CListBox::kNoSelection) {
        return;
    }
    const ArrayDetailItem item = ArrayDetailItem::Unpack(details->GetItemData(line));
    details->DeleteString(line);
    details->SetCurSel(std::min(line, details->GetCount() - 1));
    if (item.address == m_address) {
        GiveBackToAvailable(item);
    }
    UpdateDescription();
    OnChannelsUsedSelChanged();
    MarkEdited();
}

void CKvNetSetupChannelArrayPage::GiveBackToAvailable(const ArrayDetailItem& item) {
    const std::vector<ArrayDetailItem> items = Items(kCtrlAvailable);
    const auto before = std::ranges::find_if(items, [&](const ArrayDetailItem& other) {
        return std::pair(other.bus, other.group) >= std::pair(item.bus, item.group);
    });
    Find<CListBox>(kCtrlAvailable)
        ->InsertString(static_cast<int>(before - items.begin()), item.Text(), item.Pack());
}

void CKvNetSetupChannelArrayPage::MoveDeviceDetails(int by) {
    auto* const list = Find<CListBox>(kCtrlDetails);
    const int line = list->GetCurSel();
    const int target = line + by;
    if (line == CListBox::kNoSelection || target < 0 || target >= list->GetCount()) {
        return;
    }
    const CString text = list->GetLBText(line);
    const std::intptr_t data = list->GetItemData(line);
    list->SetItemText(line, list->GetLBText(target));
    list->SetItemData(line, list->GetItemData(target));
    list->SetItemText(target, text);
    list->SetItemData(target, data);
    list->SetCurSel(target);
    OnChannelsUsedSelChanged();
    MarkEdited();
}

bool CKvNetSetupChannelArrayPage::SaveCurrentArrayDetails() {
    ChannelArrayDetails* const record = RecordOf(m_current);
    if (record == nullptr) {
        return true;
    }
    if (Find<CListBox>(kCtrlDetails)->GetCount() == 0) {
        Find<CListBox>(kCtrlArrayList)->SetCurSelFromItemData(reinterpret_cast<std::intptr_t>(m_current));
        ShowMessage(LoadText(kTextArrayEmpty), BoxIcon::Exclamation);
        return false;
    }
    return !record->edited || RebuildChannels();
}

bool CKvNetSetupChannelArrayPage::RebuildChannels() {
    m_current->RemoveAllChannels();
    for (const ArrayDetailItem& item : Items(kCtrlDetails)) {
        for (int channel = 0; channel < item.Channels(); ++channel) {
            if (m_current->AddChannel(item.Channel(static_cast<std::uint8_t>(channel))) == 0) {
                return false;
            }
        }
    }
    return true;
}

void CKvNetSetupChannelArrayPage::OnNewChannelArray() {
    if (!SaveCurrentArrayDetails()) {
        return;
    }
    CChannelArrayDetailsDlg dialog(*this, nullptr, {}, true, true);
    if (dialog.DoModal(Sheet()) == IDOK && Exists() && !AddArray(dialog.Identity())) {
        ShowMessage(LoadText(kTextNewArrayFailed), BoxIcon::Exclamation);
    }
}

bool CKvNetSetupChannelArrayPage::AddArray(const ArrayIdentity& identity) {
    try {
        ChannelArrayDetails record;
        record.copy = std::make_unique<CChannelArray>(identity.name.c_str());
        record.copy->SetStereoArray(identity.stereo);
        record.copy->SetExclusiveOnly(identity.exclusiveOnly);
        const auto data = reinterpret_cast<std::intptr_t>(record.copy.get());
        m_records.push_back(std::move(record));
        SelectArray(Find<CListBox>(kCtrlArrayList)->AddString(identity.name, data));
    } catch (const std::bad_alloc&) {
        return false;
    }
    SetModified();
    return true;
}

void CKvNetSetupChannelArrayPage::OnEditChannelArray() {
    if (m_current == nullptr || !SaveCurrentArrayDetails()) {
        return;
    }
    const std::vector<ArrayDetailItem> items = Items(kCtrlDetails);
    const bool analyser = !items.empty() && items.front().IsAnalyser();
    CChannelArrayDetailsDlg dialog(
        *this, m_current, {m_current->GetName(), m_current->IsStereoArray(), m_current->GetExclusiveOnly()},
        items.empty(), !analyser);
    if (dialog.DoModal(Sheet()) == IDOK && Exists()) {
        TakeIdentity(dialog.Identity());
    }
}

void CKvNetSetupChannelArrayPage::TakeIdentity(const ArrayIdentity& identity) {
    if (identity.name != m_current->GetName()) {
        auto* const list = Find<CListBox>(kCtrlArrayList);
        m_current->SetName(identity.name);
        list->SetItemText(list->GetCurSel(), identity.name);
        RecordOf(m_current)->nameEdited = true;
        SetModified();
    }
    if (identity.stereo != m_current->IsStereoArray()) {
        m_current->SetStereoArray(identity.stereo);
        MarkEdited();
        ShowCurrentArray();
    }
    if (identity.exclusiveOnly != m_current->GetExclusiveOnly()) {
        m_current->SetExclusiveOnly(identity.exclusiveOnly);
        MarkEdited();
    }
}

int CKvNetSetupChannelArrayPage::IsNameUnique(const CString& name, CChannelArray* except) {
    const bool taken = std::ranges::any_of(m_records, [&](const ChannelArrayDetails& record) {
        return record.copy != nullptr && record.copy.get() != except && record.copy->GetName() == name;
    });
    if (taken) {
        ShowMessage(LoadText(kTextNameTaken), BoxIcon::Exclamation);
    }
    return taken ? 0 : 1;
}

void CKvNetSetupChannelArrayPage::OnDeleteChannelArray() {
    ChannelArrayDetails* const record = RecordOf(m_current);
    if (record == nullptr) {
        return;
    }
    if (record->live != nullptr && CKvNetSettings::CanRemoveArray(record->live) == 0) {
        ShowMessage(LoadText(kTextArrayBusy), BoxIcon::Information);
        return;
    }
    if (!AskYesNo(LoadText(kTextAskDelete), BoxIcon::Question) || !Exists()) {
        return;
    }
    auto* const list = Find<CListBox>(kCtrlArrayList);
    const int line = list->GetCurSel();
    record->copy.reset();
    list->DeleteString(line);
    SelectArray(line);
    SetModified();
}

void CKvNetSetupChannelArrayPage::MoveChannelArray(int by) {
    auto* const list = Find<CListBox>(kCtrlArrayList);
    const int line = list->GetCurSel();
    const int target = line + by;
    if (line == CListBox::kNoSelection || target < 0 || target >= list->GetCount()) {
        return;
    }
    // Records of deleted arrays, which have no line, stay where they are.
    const std::intptr_t neighbour = list->GetItemData(target);
    std::swap(*RecordOf(m_current), *RecordOf(reinterpret_cast<const CChannelArray*>(neighbour)));
    const CString text = list->GetLBText(line);
    const std::intptr_t data = list->GetItemData(line);
    list->DeleteString(line);
    list->InsertString(target, text, data);
    list->SetCurSel(target);
    AdjustControlsOnArraySelectionChanged();
    SetModified();
}

bool CKvNetSetupChannelArrayPage::OnApply() {
    CKvNetSettings* const network = Network();
    if (GetDlgItem(kCtrlDeviceAddress)->HasFocus() || network == nullptr || !SaveCurrentArrayDetails() ||
        !ApplyRecords(*network)) {
        return false;
    }
    // The sheet may stay open, and then goes on with new copies.
    const int line = Find<CListBox>(kCtrlArrayList)->GetCurSel();
    if (!MakeRecords()) {
        return false;
    }
    FillArrayList();
    SelectArray(line);
    return CPropertyPage::OnApply();
}

bool CKvNetSetupChannelArrayPage::ApplyRecords(CKvNetSettings& network) {
    int target = 0;
    for (ChannelArrayDetails& record : m_records) {
        if (record.copy == nullptr) {
            ApplyDeletion(network, record);
            continue;
        }
        if (record.live != nullptr) {
            ApplyToArray(network, record, target);
        } else if (!ApplyNewArray(network, record, target)) {
            return false;
        }
        ++target;
    }
    return true;
}

void CKvNetSetupChannelArrayPage::ApplyToArray(CKvNetSettings& network, ChannelArrayDetails& record,
                                               int target) {
    CChannelArray* const array = record.live;
    *array = *record.copy;
    if (std::exchange(record.edited, false)) {
        array->ClearChannels(1);
        UpdateViews(nullptr, HINT_ARRAY_CHANGED, array, 0);
    }
    if (std::exchange(record.nameEdited, false)) {
        UpdateViews(nullptr, HINT_ARRAY_NAME_CHANGED, array, 0);
    }
    const int index = network.GetChannelArrayList()->GetChannelArrayIndex(array);
    if (index != target && network.GetChannelArrayList()->MoveArray(index, target - index) > 0) {
        UpdateViews(nullptr, HINT_ARRAY_MOVED, array, 0);
    }
}

void CKvNetSetupChannelArrayPage::ApplyDeletion(CKvNetSettings& network, ChannelArrayDetails& record) {
    if (CChannelArray* const array = std::exchange(record.live, nullptr); array != nullptr) {
        network.OnArrayRemoved(array);
        network.GetChannelArrayList()->RemoveArray(array);
    }
}

bool CKvNetSetupChannelArrayPage::ApplyNewArray(CKvNetSettings& network, ChannelArrayDetails& record,
                                                int target) {
    std::unique_ptr<CChannelArray> array = MakeOrPost<CChannelArray>(record.copy->GetName().c_str());
    if (array == nullptr) {
        return false;
    }
    record.live = array.get();
    record.liveName = record.copy->GetName();
    network.GetChannelArrayList()->InsertAt(target, std::move(array));
    *record.live = *record.copy;
    UpdateViews(nullptr, HINT_ARRAY_ADDED, record.live, 0);
    return true;
}

int CKvNetSetupChannelArrayPage::OnControlChanged(int controlId) {
    switch (controlId) {
    case kCtrlArrayList:
        return OnChannelArraySelectionChanged();
    case kCtrlDeviceAddress:
        return OnDeviceAddressSelChanged();
    case kCtrlDeviceType:
        OnDeviceTypeSelChanged();
        return 1;
    case kCtrlAvailable:
        OnChannelsAvailableSelChanged();
        return 1;
    case kCtrlDetails:
        OnChannelsUsedSelChanged();
        return 1;
    default:
        return 1;
    }
}

void CKvNetSetupChannelArrayPage::OnCommand(int controlId) {
    using Page = CKvNetSetupChannelArrayPage;
    static constexpr Command kCommands[] = {
        {kCtrlNewArray, &Page::OnNewChannelArray},         {kCtrlEditArray, &Page::OnEditChannelArray},
        {kCtrlDeleteArray, &Page::OnDeleteChannelArray},   {kCtrlArrayUp, &Page::OnMoveChannelArrayUp},
        {kCtrlArrayDown, &Page::OnMoveChannelArrayDown},   {kCtrlAddDetail, &Page::OnAddDeviceDetails},
        {kCtrlRemoveDetail, &Page::OnRemoveDeviceDetails}, {kCtrlDetailUp, &Page::OnMoveDeviceDetailsUp},
        {kCtrlDetailDown, &Page::OnMoveDeviceDetailsDown},
    };
    const auto* const found = std::ranges::find(kCommands, controlId, &Command::controlId);
    if (found != std::end(kCommands)) {
        (this->*found->run)();
    }
}

LRESULT CKvNetSetupChannelArrayPage::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != kMessageDoubleClick) {
        return CPropertyPage::OnMessage(message, wParam, lParam);
    }
    if (static_cast<int>(wParam) == kCtrlAvailable) {
        OnChannelsAvailableDoubleClicked();
    } else if (static_cast<int>(wParam) == kCtrlArrayList && OnChannelArraySelectionChanged() != 0) {
        OnEditChannelArray();
    }
    return 0;
}
