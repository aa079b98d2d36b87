#pragma once

// Control models: what a control holds and what a user can do to it, not how it looks. Like every window, a
// control is used on one thread.

#include "platform/ControlState.h"
#include "platform/Export.h"
#include "platform/Window.h"

#include <cstdint>
#include <span>
#include <vector>

#include "platform/MacroNamesBegin.h"

// A static text, or a group's frame with its caption.
class KALVIO_API CStatic : public CWnd {
public:
    using CWnd::CWnd;
    void SetTextColor(std::uint32_t rgb) { Set(m_color, rgb); }
    [[nodiscard]] std::uint32_t GetTextColor() const { return m_color; }
    void SetBackColor(std::uint32_t rgb) { Set(m_backColor, rgb); }
    void SetIsGroup(bool group) { Set(m_group, group); }
    void Describe(kalvio::ControlState& state) const override;

private:
    std::uint32_t m_color = 0;
    std::uint32_t m_backColor = kalvio::kDefaultColor;
    bool m_group = false;
};

enum class ButtonStyle { Push, Check, Radio };

// A push, check or radio button. A click ticks or unticks a check box; a radio button that is clicked is
// ticked and unticks those of its parent that stand in one run with it.
class KALVIO_API CButton : public CWnd {
public:
    using CWnd::CWnd;
    CButton(int controlId, CWnd* parent, ButtonStyle style) : CWnd(controlId, parent), m_style(style) {}
    void SetCheck(int state) { Set(m_check, state); }
    [[nodiscard]] int GetCheck() const { return m_check; }
    [[nodiscard]] ButtonStyle Style() const { return m_style; }
    void SetImage(int index) { Set(m_image, index); } // of the button's image list; kNothingSelected: none
    [[nodiscard]] int GetImage() const { return m_image; }
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

private:
    void UntickOthers();

    ButtonStyle m_style = ButtonStyle::Push;
    int m_check = 0;
    int m_image = kalvio::kNothingSelected;
};

// An edit: what is typed into it is told to its window when the focus leaves or Enter is typed.
class KALVIO_API CEdit : public CWnd {
public:
    using CWnd::CWnd;
    void SetText(const CString& text) override;
    void SetReadOnly(bool readOnly) { Set(m_readOnly, readOnly); }
    [[nodiscard]] bool IsReadOnly() const { return m_readOnly; }
    void SetLimitText(std::size_t characters) { m_limit = characters; } // 0: none
    void SetColors(std::uint32_t text, std::uint32_t background);
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;
    [[nodiscard]] bool HasUncommittedText() const override { return m_typed; }
    bool CommitText() override;

protected:
    // Whether a text may be typed at all; any by default.
    [[nodiscard]] virtual bool IsTypeable(const CString& text) const;

private:
    bool m_readOnly = false;
    bool m_typed = false;
    std::size_t m_limit = 0;
    std::uint32_t m_textColor = kalvio::kDefaultColor;
    std::uint32_t m_backColor = kalvio::kDefaultColor;
};

// A numeric edit: its text, its decimal places and number base.
class KALVIO_API CMultiBaseEdit : public CEdit {
public:
    using CEdit::CEdit;
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

// An edit of bytes, shown as pairs of hexadecimal digits with blanks between.
class KALVIO_API CHexEdit : public CEdit {
public:
    using CEdit::CEdit;
    void SetLimit(std::size_t bytes) { m_limit = bytes; } // 0: none
    void SetBytes(std::span<const std::uint8_t> bytes);
    // The bytes of the text; a last digit without its second one is a byte of its own.
    [[nodiscard]] std::vector<std::uint8_t> GetBytes() const;

protected:
    [[nodiscard]] bool IsTypeable(const CString& text) const override;

private:
    std::size_t m_limit = 0;
};

// A spin control with its range, position and buddy edit.
class KALVIO_API CSpinButtonCtrl : public CWnd {
public:
    using CWnd::CWnd;
    void SetRange(int low, int high); // in either order
    void SetPos(int position);        // kept within the range; also writes the buddy's text
    // The number in the buddy's text, or the last position set; in the range.
    [[nodiscard]] int GetPos() const;
    void SetBuddy(CWnd* buddy) { m_buddy = buddy; }
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

private:
    int m_low = 0;
    int m_high = 100;
    int m_position = 0;
    CWnd* m_buddy = nullptr;
};

// Items with data, of which one may be selected; what combos, list boxes and tabs have in common.
class KALVIO_API CItemControl : public CWnd {
public:
    static constexpr int kNoSelection = kalvio::kNothingSelected;
    using CWnd::CWnd;
    void ResetContent();
    int AddString(const CString& text, std::intptr_t itemData = 0);               // the index
    int InsertString(int index, const CString& text, std::intptr_t itemData = 0); // before it, or at the end
    void DeleteString(int index);                                                 // nothing for no such item
    void SetItemText(int index, const CString& text);
    void SetItemData(int index, std::intptr_t itemData);
    [[nodiscard]] std::intptr_t GetItemData(int index) const; // -1 for no such item
    [[nodiscard]] CString GetLBText(int index) const;         // empty for no such item
    [[nodiscard]] int GetCount() const { return static_cast<int>(m_items.size()); }
    void SetCurSel(int index); // an index without an item takes the selection away
    [[nodiscard]] int GetCurSel() const { return m_selection; }
    bool SetCurSelFromItemData(std::intptr_t itemData); // false when no item has it
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override; // Choose, by index

protected:
    [[nodiscard]] bool HasItem(int index) const { return index >= 0 && index < GetCount(); }
    void SetItemColor(int index, std::uint32_t color);

private:
    std::vector<kalvio::ControlItem> m_items;
    int m_selection = kNoSelection;
};

// A drop-down list; an editable one also takes typed text, which takes the selection away.
class KALVIO_API CComboBox : public CItemControl {
public:
    using CItemControl::CItemControl;
    void SetEditable(bool editable) { m_editable = editable; }
    // The selected item's text; without a selection the text that was set.
    [[nodiscard]] CString GetText() const override;
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;
    [[nodiscard]] bool HasUncommittedText() const override { return m_typed; }
    bool CommitText() override;

private:
    bool m_editable = false;
    bool m_typed = false;
};

// A drop-down list whose entries have colours.
class KALVIO_API CColorCombo : public CComboBox {
public:
    using CComboBox::CComboBox;
    int AddColorString(const CString& text, std::intptr_t itemData, std::uint32_t color); // the index
    [[nodiscard]] std::uint32_t GetItemColor(int index) const; // kDefaultColor for no such item
};

// A list whose texts may hold tabs; a double click is told to the window as WM_COMMAND.
class KALVIO_API CListBox : public CItemControl {
public:
    using CItemControl::CItemControl;
    void SetTabStops(std::vector<int> dialogUnits);
    [[nodiscard]] const std::vector<int>& TabStops() const { return m_tabStops; }
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

private:
    std::vector<int> m_tabStops;
};

// The tabs of a tabbed window.
class KALVIO_API CTabCtrl : public CItemControl {
public:
    using CItemControl::CItemControl;
    void Describe(kalvio::ControlState& state) const override;
};

// A scroll bar with a range and a page, whose end of travel is `high` less `page` plus 1. Keys move it by
// one, by a page or to an end.
class KALVIO_API CScrollBar : public CWnd {
public:
    using CWnd::CWnd;
    void SetScrollRange(int low, int high, int page = 1);
    void SetScrollPos(int position);
    [[nodiscard]] int GetScrollPos() const { return m_position; }
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override;

protected:
    // Where a key takes the bar; where it is for a key that does not move it.
    [[nodiscard]] virtual int PositionForKey(int key) const;

private:
    int m_low = 0;
    int m_high = 100;
    int m_page = 1;
    int m_position = 0;
};

// A bar that shows how far something has come.
class KALVIO_API CProgressCtrl : public CWnd {
public:
    using CWnd::CWnd;
    void SetRange(int low, int high);
    void SetPos(int position);
    [[nodiscard]] int GetPos() const { return m_position; }
    void Describe(kalvio::ControlState& state) const override;

private:
    int m_low = 0;
    int m_high = 100;
    int m_position = 0;
};

// A control that draws itself: its display list is what it shows.
class KALVIO_API CPictureCtrl : public CWnd {
public:
    using CWnd::CWnd;
    void SetDrawing(std::vector<kalvio::DrawnItem> drawing) { Set(m_drawing, drawing); }
    void Describe(kalvio::ControlState& state) const override;

private:
    std::vector<kalvio::DrawnItem> m_drawing;
};

#include "platform/MacroNamesEnd.h"
