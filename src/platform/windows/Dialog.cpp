#include "platform/Dialog.h"

#include "platform/UserInterface.h"
#include "platform/windows/MessageQueue.h"

namespace {

using kalvio::ControlKind;

template<typename Control>
std::unique_ptr<CWnd> MakeControl(int controlId, CWnd* parent) {
    return std::make_unique<Control>(controlId, parent);
}

template<ButtonStyle Style>
std::unique_ptr<CWnd> MakeButton(int controlId, CWnd* parent) {
    return std::make_unique<CButton>(controlId, parent, Style);
}

std::unique_ptr<CWnd> MakeGroup(int controlId, CWnd* parent) {
    auto group = std::make_unique<CStatic>(controlId, parent);
    group->SetIsGroup(true);
    return group;
}

std::unique_ptr<CWnd> MakeEditableCombo(int controlId, CWnd* parent) {
    auto combo = std::make_unique<CComboBox>(controlId, parent);
    combo->SetEditable(true);
    return combo;
}

struct ControlFactory {
    ControlKind kind;
    std::unique_ptr<CWnd> (*make)(int controlId, CWnd* parent);
};

constexpr ControlFactory kFactories[] = {
    {ControlKind::Static, MakeControl<CStatic>},
    {ControlKind::Edit, MakeControl<CMultiBaseEdit>},
    {ControlKind::ComboBox, MakeControl<CComboBox>},
    {ControlKind::CheckBox, MakeButton<ButtonStyle::Check>},
    {ControlKind::RadioButton, MakeButton<ButtonStyle::Radio>},
    {ControlKind::PushButton, MakeButton<ButtonStyle::Push>},
    {ControlKind::Spin, MakeControl<CSpinButtonCtrl>},
    {ControlKind::GroupBox, MakeGroup},
    {ControlKind::EditableCombo, MakeEditableCombo},
    {ControlKind::TextEdit, MakeControl<CEdit>},
    {ControlKind::ListBox, MakeControl<CListBox>},
    {ControlKind::Tabs, MakeControl<CTabCtrl>},
    {ControlKind::ScrollBar, MakeControl<CScrollBar>},
    {ControlKind::Progress, MakeControl<CProgressCtrl>},
    {ControlKind::Picture, MakeControl<CPictureCtrl>},
    {ControlKind::ColorCombo, MakeControl<CColorCombo>},
    {ControlKind::HexEdit, MakeControl<CHexEdit>},
};

constexpr const ControlFactory* FactoryOf(ControlKind kind) {
    const ControlFactory* factory = std::begin(kFactories);
    while (factory->kind != kind) {
        ++factory;
    }
    return factory;
}

} // namespace

CDialog::~CDialog() {
    DestroyWindow();
}

bool CDialog::Create(const kalvio::DialogTemplate& layout, CWnd* parent) {
    if (!CreateControls(layout, parent)) {
        return false;
    }
    m_shown = true;
    kalvio::CurrentUserInterface().DialogShown(*this);
    return true;
}

bool CDialog::CreateControls(const kalvio::DialogTemplate& layout, CWnd* parent) {
    if (m_exists) {
        return false;
    }
    SetParent(parent);
    SetText(layout.title);
    MoveWindow(layout.rect);
    for (const kalvio::ControlTemplate& item : layout.controls) {
        std::unique_ptr<CWnd> control = MakeControl(item);
        if (control == nullptr) {
            control = FactoryOf(item.kind)->make(item.id, this);
        }
        control->SetText(item.text);
        control->MoveWindow(item.rect);
        m_controls.push_back(std::move(control));
    }
    m_templateId = layout.id;
    m_exists = true;
    if (!OnInitDialog()) {
        DropControls();
        return false;
    }
    return true;
}

std::unique_ptr<CWnd> CDialog::MakeControl(const kalvio::ControlTemplate&) {
    return nullptr;
}

void CDialog::DropControls() {
    m_exists = false;
    m_controls.clear();
    SetParent(nullptr);
    kalvio::DiscardMessages(Handle());
}

void CDialog::DestroyWindow() {
    if (!m_exists) {
        return;
    }
    DropControls();
    if (m_shown) {
        m_shown = false;
        kalvio::CurrentUserInterface().DialogClosed(*this);
    }
}

int CDialog::DoModal(const kalvio::DialogTemplate& layout, CWnd* parent) {
    constexpr std::uint32_t kLookAgain = 100; // milliseconds
    const bool parentWasEnabled = parent != nullptr && parent->IsWindowEnabled();
    const WindowHandle parentHandle = parent != nullptr ? parent->Handle() : WindowHandle::None;
    m_result = IDCANCEL;
    m_modal = true;
    if (parentWasEnabled) {
        parent->EnableWindow(false);
    }
    // Not a child of its parent, which is disabled.
    for (bool up = Create(layout, nullptr); up && m_exists;) {
        kalvio::WaitAndPumpMessages(kLookAgain);
    }
    m_modal = false;
    if (parentWasEnabled && kalvio::IsOwnWindow(parentHandle)) {
        parent->EnableWindow(true);
    }
    return m_result;
}

void CDialog::EndDialog(int result) {
    m_result = result;
    DestroyWindow();
}

bool CDialog::PressButton(int controlId) {
    const auto* button = dynamic_cast<const CButton*>(GetDlgItem(controlId));
    if (button == nullptr || !button->IsWindowEnabled()) {
        return false;
    }
    Send(WM_COMMAND, static_cast<WPARAM>(controlId), 0);
    return true;
}

void CDialog::PressEscape() {
    if (m_exists) {
        Send(WM_COMMAND, IDCANCEL, 0);
    }
}

LRESULT CDialog::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != WM_COMMAND) {
        return CWnd::OnMessage(message, wParam, lParam);
    }
    OnCommand(static_cast<int>(wParam));
    return 0;
}

void CDialog::Describe(kalvio::ControlState& state) const {
    CWnd::Describe(state);
    state.role = kalvio::ControlRole::Dialog;
    state.templateId = m_templateId;
}

kalvio::ActAnswer CDialog::Act(const kalvio::UserAct& act) {
    if (act.kind != kalvio::ActKind::Close) {
        return kalvio::ActAnswer::NotPossible;
    }
    PressEscape();
    return kalvio::ActAnswer::Done;
}

void CDialog::OnCommand(int controlId) {
    if (controlId == IDOK || controlId == IDCANCEL) {
        EndDialog(controlId);
    }
}
