#pragma once

// Control models: what a control holds, not how it looks. Like every window, a control is used on one thread.

#include "platform/Export.h"
#include "platform/Window.h"

#include <cstdint>
#include <vector>

// A static text.
class KALVIO_API CStatic : public CWnd {
public:
    using CWnd::CWnd;
    void SetTextColor(std::uint32_t rgb) { m_color = rgb; }
    [[nodiscard]] std::uint32_t GetTextColor() const { return m_color; }

private:
    std::uint32_t m_color = 0;
};

// A push, check or radio button.
class KALVIO_API CButton : public CWnd {
public:
    using CWnd::CWnd;
    void SetCheck(int state) { m_check = state; }
    [[nodiscard]] int GetCheck() const { return m_check; }

private:
    int m_check = 0;
};

// A numeric edit: its text, its decimal places and number base.
class KALVIO_API CMultiBaseEdit : public CWnd {
public:
    using CWnd::CWnd;
    void SetDecimalPlaces(int places) { m_decimalPlaces = places; }
    [[nodiscard]] int GetDecimalPlaces() const { return m_decimalPlaces; }
    void SetBase(int base) { m_base = base; } // 10 or 16
    void SetUnit(int unit) { m_unit = unit; }
    [[nodiscard]] int GetUnit() const { return m_unit; }
    // The number that the text shows; not-a-number when it shows none.
    [[nodiscard]] double GetNumericalValue() const;
    // The integer at the start of the text in the edit's base; 0 without one.
    [[nodiscard]] int GetIntValue() const;
    void SetIntValue(int value);
    void SetNumericalValue(double value); // with the edit's decimal places; no text when it is not finite

private:
    int m_decimalPlaces = 0;
    int m_base = 10;
    int m_unit = -1;
};

// A spin control with its range, position and buddy edit.
class KALVIO_API CSpinButtonCtrl : public CWnd {
public:
    using CWnd::CWnd;
    void SetRange(int low, int high); // in either order
    void SetPos(int position);        // kept within the range; also writes the buddy's text
    [[nodiscard]] int
    GetPos() const; // the number in the buddy's text, or the last position set; in the range
    void SetBuddy(CWnd* buddy) { m_buddy = buddy; }

private:
    int m_low = 0;
    int m_high = 100;
    int m_position = 0;
    CWnd* m_buddy = nullptr;
};

// A drop-down list whose items carry data.
class KALVIO_API CComboBox : public CWnd {
public:
    static constexpr int kNoSelection = -1;
    using CWnd::CWnd;
    void ResetContent();
    int AddString(const CString& text, std::intptr_t itemData = 0); // the index
    void SetItemData(int index, std::intptr_t itemData);
    [[nodiscard]] std::intptr_t GetItemData(int index) const; // -1 for no such item
    [[nodiscard]] CString GetLBText(int index) const;         // empty for no such item
    [[nodiscard]] int GetCount() const { return static_cast<int>(m_items.size()); }
    void SetCurSel(int index); // an index without an item takes the selection away
    [[nodiscard]] int GetCurSel() const { return m_selection; }
    bool SetCurSelFromItemData(std::intptr_t itemData); // false when no item has it
    // The selected item's text; without a selection the text that was set.
    [[nodiscard]] CString GetText() const override;

private:
    [[nodiscard]] bool HasItem(int index) const { return index >= 0 && index < GetCount(); }

    struct Item {
        CString text;
        std::intptr_t data = 0;
    };
    std::vector<Item> m_items;
    int m_selection = kNoSelection;
};
