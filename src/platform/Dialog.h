#pragma once

// Dialogs made from templates, which are data.

#include "platform/Controls.h"
#include "platform/Export.h"

#include <memory>
#include <span>
#include <vector>

namespace kalvio {

enum class ControlKind {
    Static,
    Edit,
    ComboBox,
    CheckBox,
    RadioButton,
    PushButton,
    Spin,
    GroupBox,
    EditableCombo,
    TextEdit,
    ListBox,
    Tabs,
    ScrollBar,
    Progress,
    Picture
};

// One control of a dialog template; the rectangle is in dialog units.
struct ControlTemplate {
    ControlKind kind;
    int id;
    const char* text;
    CRect rect;
};

struct DialogTemplate {
    int id;
    const char* title;
    CRect rect;
    std::span<const ControlTemplate> controls;
};

} // namespace kalvio

inline constexpr unsigned WM_COMMAND = kMessageCommand;
inline constexpr int IDOK = 1;
inline constexpr int IDCANCEL = 2; // what Esc sends

// A dialog. Used on one thread.
class KALVIO_API CDialog : public CWnd {
public:
    CDialog() = default;
    ~CDialog() override;

    // Makes the controls of the template and tells the user interface. False when it exists already.
    bool Create(const kalvio::DialogTemplate& layout, CWnd* parent = nullptr);
    // Takes the dialog away and tells the user interface. Nothing when it does not exist.
    void DestroyWindow();
    [[nodiscard]] bool Exists() const { return m_exists; }
    [[nodiscard]] int TemplateId() const { return m_templateId; }

    // What a user does.
    bool PressButton(int controlId); // false when there is no such enabled button
    void PressEscape();

    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;
    void Describe(kalvio::ControlState& state) const override;
    kalvio::ActAnswer Act(const kalvio::UserAct& act) override; // Close is Esc
    [[nodiscard]] bool TakesCommands() const override { return true; }

protected:
    // A button was pressed, or Esc (IDCANCEL). As it is, IDOK and IDCANCEL take the dialog away. What a
    // check box or radio button does to its state is the dialog's own affair.
    virtual void OnCommand(int controlId);

private:
    bool m_exists = false;
    int m_templateId = 0;
    std::vector<std::unique_ptr<CWnd>> m_controls;
};
