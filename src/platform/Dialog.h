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
    Picture,
    ColorCombo,
    HexEdit
};

// A rectangle by its corner and its size, as templates state them.
[[nodiscard]] constexpr CRect Area(int x, int y, int width, int height) {
    return {x, y, x + width, y + height};
}

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
    // Creates the dialog and lets the thread's messages run until it is ended; the parent (null: none) is
    // disabled meanwhile. What EndDialog was given, or IDCANCEL when the dialog could not start or was taken
    // away otherwise.
    int DoModal(const kalvio::DialogTemplate& layout, CWnd* parent = nullptr);
    [[nodiscard]] bool IsModal() const { return m_modal; } // DoModal shows it
    // Takes the dialog away with the answer of its DoModal.
    void EndDialog(int result);
    void SetContextHelpId(int id) { m_helpId = id; }
    [[nodiscard]] int GetContextHelpId() const { return m_helpId; }
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
    // Makes the controls of the template without telling the user interface, for windows that are parts of
    // others. False when it exists already or does not want to start.
    bool CreateControls(const kalvio::DialogTemplate& layout, CWnd* parent);
    // A control of a class of the dialog's own; null: one of the library's, by its kind.
    virtual std::unique_ptr<CWnd> MakeControl(const kalvio::ControlTemplate& item);
    // The controls exist, nobody sees them yet. False: the dialog does not start.
    virtual bool OnInitDialog() { return true; }
    // A button was pressed, or Esc (IDCANCEL). As it is, IDOK and IDCANCEL end the dialog. What a
    // check box or radio button does to its state is the dialog's own affair.
    virtual void OnCommand(int controlId);

private:
    void DropControls();

    bool m_exists = false;
    bool m_shown = false; // the user interface knows of it
    int m_templateId = 0;
    int m_helpId = 0;
    int m_result = IDCANCEL;
    bool m_modal = false;
    std::vector<std::unique_ptr<CWnd>> m_controls;
};
