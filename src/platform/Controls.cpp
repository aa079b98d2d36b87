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

} // namespace

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

void CSpinButtonCtrl::SetRange(int low, int high) {
    m_low = std::min(low, high);
    m_high = std::max(low, high);
    m_position = std::clamp(m_position, m_low, m_high);
}

void CSpinButtonCtrl::SetPos(int position) {
    m_position = std::clamp(position, m_low, m_high);
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

void CComboBox::ResetContent() {
    m_items.clear();
    m_selection = kNoSelection;
}

int CComboBox::AddString(const CString& text, std::intptr_t itemData) {
    m_items.push_back({text, itemData});
    return GetCount() - 1;
}

void CComboBox::SetItemData(int index, std::intptr_t itemData) {
    if (HasItem(index)) {
        m_items[static_cast<std::size_t>(index)].data = itemData;
    }
}

std::intptr_t CComboBox::GetItemData(int index) const {
    return HasItem(index) ? m_items[static_cast<std::size_t>(index)].data : -1;
}

CString CComboBox::GetLBText(int index) const {
    return HasItem(index) ? m_items[static_cast<std::size_t>(index)].text : CString();
}

void CComboBox::SetCurSel(int index) {
    m_selection = HasItem(index) ? index : kNoSelection;
}

bool CComboBox::SetCurSelFromItemData(std::intptr_t itemData) {
    const auto found =
        std::find_if(m_items.begin(), m_items.end(), [=](const Item& item) { return item.data == itemData; });
    if (found == m_items.end()) {
        return false;
    }
    m_selection = static_cast<int>(found - m_items.begin());
    return true;
}

CString CComboBox::GetText() const {
    return m_selection == kNoSelection ? CWnd::GetText() : GetLBText(m_selection);
}
