#include "platform/Controls.h"

#include <algorithm>
#include <charconv>
#include <cmath>
#include <limits>

namespace {

constexpr int kHexadecimal = 16;

// A text as the number parser wants it: without white space and a plus sign in front.
std::string_view SkipToNumber(std::string_view text) {
    const std::size_t start = text.find_first_not_of(" \t+");
    return start == std::string_view::npos ? std::string_view() : text.substr(start);
}

std::uint32_t ParseLeadingHex(std::string_view text) {
    std::string_view digits = SkipToNumber(text);
    if (digits.starts_with("0x") || digits.starts_with("0X")) {
        digits.remove_prefix(2);
    }
    std::uint32_t value = 0;
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value, kHexadecimal);
    return result.ec == std::errc::result_out_of_range ? std::numeric_limits<std::uint32_t>::max() : value;
}

bool HasLeadingNumber(std::string_view text, double& value) {
    const std::string_view digits = SkipToNumber(text);
    const auto result = std::from_chars(digits.data(), digits.data() + digits.size(), value);
    return result.ec == std::errc() && std::isfinite(value);
}

bool IsHexDigit(std::string_view text) {
    return !text.empty() && CString("0123456789abcdefABCDEF").find(text.front()) != CString::npos;
}

// The outcome of a change that a user made, told to the window.
using kalvio::ActAnswer;
using kalvio::ActKind;
using kalvio::ControlRole;

bool IsPress(const kalvio::UserAct& act) {
    return act.kind == ActKind::Click || (act.kind == ActKind::Key && act.value == kalvio::kKeySpace);
}

} // namespace

void CStatic::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = m_group ? ControlRole::Group : ControlRole::Text;
    state.textColor = m_color;
    state.backColor = m_backColor;
}

void CButton::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = m_style == ButtonStyle::Push    ? ControlRole::Button
                 : m_style == ButtonStyle::Check ? ControlRole::CheckBox
                                                 : ControlRole::RadioButton;
    state.checked = m_check;
    state.image = m_image;
}

ActAnswer CButton::Act(const kalvio::UserAct& act) {
    if (!IsPress(act)) {
        return ActAnswer::NotPossible;
    }
    if (m_style == ButtonStyle::Check) {
        SetCheck(m_check == 0 ? 1 : 0);
    } else if (m_style == ButtonStyle::Radio) {
        UntickOthers();
        SetCheck(1);
    }
    // A dialog hears of its buttons as commands, any other window as of controls that changed.
    if (CWnd* const owner = GetParent(); owner != nullptr && owner->TakesCommands()) {
        owner->Send(kMessageCommand, static_cast<WPARAM>(GetDlgCtrlID()), 0);
        return ActAnswer::Done;
    }
    return TellChanged();
}

// The radio buttons that follow one another among the children are one group.
void CButton::UntickOthers() {
    if (GetParent() == nullptr) {
        return;
    }
    std::vector<CButton*> group;
    for (CWnd* sibling : GetParent()->Children()) {
        auto* button = dynamic_cast<CButton*>(sibling);
        const bool radio = button != nullptr && button->m_style == ButtonStyle::Radio;
        if (!radio && std::ranges::find(group, this) != group.end()) {
            break;
        }
        if (!radio) {
            group.clear();
        } else {
            group.push_back(button);
        }
    }
    for (CButton* button : group) {
        button->SetCheck(0);
    }
}

void CEdit::SetText(const CString& text) {
    m_typed = false;
    CWnd::SetText(text);
}

void CEdit::SetColors(std::uint32_t text, std::uint32_t background) {
    Set(m_textColor, text);
    Set(m_backColor, background);
}

bool CEdit::IsTypeable(const CString& text) const {
    return m_limit == 0 || text.size() <= m_limit;
}

void CEdit::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = ControlRole::Edit;
    state.readOnly = m_readOnly;
    state.textColor = m_textColor;
    state.backColor = m_backColor;
}

ActAnswer CEdit::Act(const kalvio::UserAct& act) {
    if (m_readOnly) {
        return ActAnswer::NotPossible;
    }
    if (act.kind == ActKind::Type && IsTypeable(act.text)) {
        CWnd::SetText(act.text);
        m_typed = true;
        return ActAnswer::Done;
    }
    if (act.kind == ActKind::Enter) {
        return CommitText() ? ActAnswer::Done : ActAnswer::Refused;
    }
    return act.kind == ActKind::Type ? ActAnswer::Refused : ActAnswer::NotPossible;
}

bool CEdit::CommitText() {
    m_typed = false;
    return TellChanged() == ActAnswer::Done;
}

double CMultiBaseEdit::GetNumericalValue() const {
    const CString text = GetText();
    double value = 0.0;
    if (m_base == kHexadecimal) {
        return IsHexDigit(SkipToNumber(text)) ? static_cast<double>(ParseLeadingHex(text))
                                              : std::numeric_limits<double>::quiet_NaN();
    }
    return HasLeadingNumber(text, value) ? value : std::numeric_limits<double>::quiet_NaN();
}

int CMultiBaseEdit::GetIntValue() const {
    const CString text = GetText();
    return m_base == kHexadecimal ? static_cast<int>(ParseLeadingHex(text)) : kalvio::ParseLeadingInt(text);
}

void CMultiBaseEdit::SetIntValue(int value) {
    SetText(m_base == kHexadecimal ? kalvio::Format("%X", static_cast<unsigned>(value))
                                   : std::to_string(value));
}

void CMultiBaseEdit::SetNumericalValue(double value) {
    if (!std::isfinite(value)) {
        SetText({});
    } else if (m_base == kHexadecimal) {
        const double highest = std::numeric_limits<std::uint32_t>::max();
        SetText(kalvio::Format("%X", static_cast<unsigned>(std::clamp(std::round(value), 0.0, highest))));
    } else {
        SetText(kalvio::Format("%.*f", m_decimalPlaces, value));
    }
}

void CHexEdit::SetBytes(std::span<const std::uint8_t> bytes) {
    CString text;
    for (const std::uint8_t byte : bytes) {
        text += kalvio::Format(text.empty() ? "%02X" : " %02X", static_cast<unsigned>(byte));
    }
    SetText(text);
}

std::vector<std::uint8_t> CHexEdit::GetBytes() const {
    std::vector<std::uint8_t> bytes;
    bool second = false;
    for (const char digit : GetText()) {
        if (digit == ' ') {
            second = false;
            continue;
        }
        const auto value = static_cast<std::uint8_t>(ParseLeadingHex(CString(1, digit)));
        if (second) {
            bytes.back() = static_cast<std::uint8_t>(bytes.back() * kHexadecimal + value);
        } else {
            bytes.push_back(value);
        }
        second = !second;
    }
    return bytes;
}

bool CHexEdit::IsTypeable(const CString& text) const {
    std::size_t digits = 0;
    std::size_t bytes = 0;
    for (const char letter : text) {
        if (letter != ' ' && !IsHexDigit(CString(1, letter))) {
            return false;
        }
        digits = letter == ' ' ? 0 : digits + 1;
        bytes += digits % 2; // the first digit of a pair begins a byte
    }
    return CEdit::IsTypeable(text) && (m_limit == 0 || bytes <= m_limit);
}

void CSpinButtonCtrl::SetRange(int low, int high) {
    m_low = std::min(low, high);
    m_high = std::max(low, high);
    m_position = std::clamp(m_position, m_low, m_high);
    NoteChange();
}

void CSpinButtonCtrl::SetPos(int position) {
    Set(m_position, std::clamp(position, m_low, m_high));
    if (m_buddy != nullptr) {
        m_buddy->SetText(std::to_string(m_position));
    }
}

int CSpinButtonCtrl::GetPos() const {
    double typed = m_position;
    if (m_buddy != nullptr && !HasLeadingNumber(m_buddy->GetText(), typed)) {
        typed = m_position;
    }
    return static_cast<int>(std::clamp(typed, static_cast<double>(m_low), static_cast<double>(m_high)));
}

void CSpinButtonCtrl::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = ControlRole::Spin;
    state.low = m_low;
    state.high = m_high;
    state.position = GetPos();
}

ActAnswer CSpinButtonCtrl::Act(const kalvio::UserAct& act) {
    if (act.kind != ActKind::Scroll) {
        return ActAnswer::NotPossible;
    }
    SetPos(act.value);
    return TellChanged();
}

void CItemControl::ResetContent() {
    m_items.clear();
    m_selection = kNoSelection;
    NoteChange();
}

int CItemControl::AddString(const CString& text, std::intptr_t itemData) {
    m_items.push_back({text, itemData});
    NoteChange();
    return GetCount() - 1;
}

int CItemControl::InsertString(int index, const CString& text, std::intptr_t itemData) {
    if (!HasItem(index)) {
        return AddString(text, itemData);
    }
    m_items.insert(m_items.begin() + index, {text, itemData});
    m_selection += m_selection >= index ? 1 : 0;
    NoteChange();
    return index;
}

void CItemControl::DeleteString(int index) {
    if (!HasItem(index)) {
        return;
    }
    m_items.erase(m_items.begin() + index);
    m_selection = m_selection == index ? kNoSelection : m_selection - (m_selection > index ? 1 : 0);
    NoteChange();
}

void CItemControl::SetItemText(int index, const CString& text) {
    if (HasItem(index)) {
        Set(m_items[static_cast<std::size_t>(index)].text, text);
    }
}

void CItemControl::SetItemColor(int index, std::uint32_t color) {
    if (HasItem(index)) {
        Set(m_items[static_cast<std::size_t>(index)].color, color);
    }
}

void CItemControl::SetItemData(int index, std::intptr_t itemData) {
    if (HasItem(index)) {
        Set(m_items[static_cast<std::size_t>(index)].data, itemData);
    }
}

std::intptr_t CItemControl::GetItemData(int index) const {
    return HasItem(index) ? m_items[static_cast<std::size_t>(index)].data : -1;
}

CString CItemControl::GetLBText(int index) const {
    return HasItem(index) ? m_items[static_cast<std::size_t>(index)].text : CString();
}

void CItemControl::SetCurSel(int index) {
    Set(m_selection, HasItem(index) ? index : kNoSelection);
}

bool CItemControl::SetCurSelFromItemData(std::intptr_t itemData) {
    const auto found = std::ranges::find(m_items, itemData, &kalvio::ControlItem::data);
    if (found == m_items.end()) {
        return false;
    }
    SetCurSel(static_cast<int>(found - m_items.begin()));
    return true;
}

void CItemControl::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.items = m_items;
    state.selected = m_selection;
}

ActAnswer CItemControl::Act(const kalvio::UserAct& act) {
    if (act.kind != ActKind::Choose || !HasItem(act.value)) {
        return ActAnswer::NotPossible;
    }
    SetCurSel(act.value);
    return TellChanged();
}

CString CComboBox::GetText() const {
    return GetCurSel() == kNoSelection ? CWnd::GetText() : GetLBText(GetCurSel());
}

void CComboBox::Describe(kalvio::ControlState& state) const {
    CItemControl::Describe(state);
    state.role = ControlRole::ComboBox;
    state.readOnly = !m_editable;
}

ActAnswer CComboBox::Act(const kalvio::UserAct& act) {
    if (m_editable && act.kind == ActKind::Type) {
        SetCurSel(kNoSelection);
        SetText(act.text);
        m_typed = true;
        return ActAnswer::Done;
    }
    if (m_editable && act.kind == ActKind::Enter) {
        return CommitText() ? ActAnswer::Done : ActAnswer::Refused;
    }
    m_typed = false;
    return CItemControl::Act(act);
}

bool CComboBox::CommitText() {
    m_typed = false;
    return TellChanged() == ActAnswer::Done;
}

int CColorCombo::AddColorString(const CString& text, std::intptr_t itemData, std::uint32_t color) {
    const int index = AddString(text, itemData);
    SetItemColor(index, color);
    return index;
}

std::uint32_t CColorCombo::GetItemColor(int index) const {
    kalvio::ControlState state;
    Describe(state);
    return HasItem(index) ? state.items[static_cast<std::size_t>(index)].color : kalvio::kDefaultColor;
}

void CListBox::SetTabStops(std::vector<int> dialogUnits) {
    m_tabStops = std::move(dialogUnits);
    NoteChange();
}

void CListBox::Describe(kalvio::ControlState& state) const {
    CItemControl::Describe(state);
    state.role = ControlRole::ListBox;
}

ActAnswer CListBox::Act(const kalvio::UserAct& act) {
    if (act.kind == ActKind::DoubleClick && GetParent() != nullptr) {
        SetCurSel(act.value);
        GetParent()->Send(kMessageDoubleClick, static_cast<WPARAM>(GetDlgCtrlID()), 0);
        return ActAnswer::Done;
    }
    return CItemControl::Act(act);
}

void CTabCtrl::Describe(kalvio::ControlState& state) const {
    CItemControl::Describe(state);
    state.role = ControlRole::Tabs;
}

void CScrollBar::SetScrollRange(int low, int high, int page) {
    m_low = std::min(low, high);
    m_high = std::max(low, high);
    m_page = std::max(page, 1);
    SetScrollPos(m_position);
    NoteChange();
}

void CScrollBar::SetScrollPos(int position) {
    Set(m_position, std::clamp(position, m_low, std::max(m_low, m_high - m_page + 1)));
}

void CScrollBar::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = ControlRole::ScrollBar;
    state.low = m_low;
    state.high = m_high;
    state.page = m_page;
    state.position = m_position;
}

int CScrollBar::PositionForKey(int key) const {
    struct Move {
        int key;
        int by;
    };
    const Move moves[] = {{kalvio::kKeyLeft, -1},        {kalvio::kKeyUp, -1},
                          {kalvio::kKeyRight, 1},        {kalvio::kKeyDown, 1},
                          {kalvio::kKeyPageUp, -m_page}, {kalvio::kKeyPageDown, m_page},
                          {kalvio::kKeyHome, -m_high},   {kalvio::kKeyEnd, m_high}};
    const auto* const move = std::ranges::find(moves, key, &Move::key);
    return move == std::end(moves) ? m_position : m_position + move->by;
}

ActAnswer CScrollBar::Act(const kalvio::UserAct& act) {
    const bool key = act.kind == ActKind::Key;
    if (act.kind != ActKind::Scroll && !key) {
        return ActAnswer::NotPossible;
    }
    const int before = m_position;
    SetScrollPos(key ? PositionForKey(act.value) : act.value);
    return m_position == before ? ActAnswer::Done : TellChanged();
}

void CProgressCtrl::SetRange(int low, int high) {
    m_low = std::min(low, high);
    m_high = std::max(low, high);
    NoteChange();
    SetPos(m_position);
}

void CProgressCtrl::SetPos(int position) {
    Set(m_position, std::clamp(position, m_low, m_high));
}

void CProgressCtrl::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = ControlRole::Progress;
    state.low = m_low;
    state.high = m_high;
    state.position = m_position;
}

void CPictureCtrl::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = ControlRole::Picture;
    state.drawing = m_drawing;
}
