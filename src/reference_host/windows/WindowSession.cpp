#include "reference_host/windows/WindowSession.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "host/ProgressWnd.h"
#include "host/SettingsView.h"
#include "peripheral_network/KvNetSetupPropertySheet.h"
#include "peripheral_network/KvNetTexts.h"
#include "platform/Dialog.h"
#include "preprocessor/PPDebugView.h"
#include "reference_host/application/ReferenceHost.h"
#include "switching/IOSwitcherSettings.h"
#include "switching/SwitcherSettings.h"

#include <algorithm>
#include <charconv>
#include <iterator>

namespace kalvio::reference_host {
namespace {

struct WindowKind {
    const char* name;
    CTypedFrameWnd* (*open)(ReferenceHost& host); // null: the setup sheet
};

constexpr char kSetup[] = "setup";

constexpr WindowKind kWindows[] = {
    {"settling", [](ReferenceHost& host) { return host.Settling().OpenSettlingDetails(-1, nullptr); }},
    {"regulation",
     [](ReferenceHost& host) { return host.Regulation().OpenSettingsWindow(-1, -1, 0, nullptr); }},
    {"arrays", [](ReferenceHost& host) { return host.Network().OpenChannelArrayControlPanel(); }},
    {"switcher",
     [](ReferenceHost& host) {
         return host.Network().GetSwitcherSettings()->GetIOSwitcherSettings()->OpenIOSwitcherControlPanel();
     }},
    {"adapter",
     [](ReferenceHost& host) {
         return host.Network()
             .GetFormatConverterSettings()
             ->GetKEDAAdapterSettings()
             ->OpenKEDAAdapterControlPanel();
     }},
    {"debug",
     [](ReferenceHost& host) {
         CreatePPDebugWindow();
         return host.FindSettingsWindow(CPPDebugView::kWindowType, CPPDebugView::kPanel);
     }},
    {kSetup, nullptr},
};

struct ActKindName {
    const char* name;
    ActKind kind;
};

constexpr ActKindName kActs[] = {
    {"focus", ActKind::Focus},
    {"click", ActKind::Click},
    {"double-click", ActKind::DoubleClick},
    {"choose", ActKind::Choose},
    {"type", ActKind::Type},
    {"enter", ActKind::Enter},
    {"key", ActKind::Key},
    {"scroll", ActKind::Scroll},
    {"close", ActKind::Close},
    {"default", ActKind::SetDefault},
    {"range", ActKind::ShowRange},
};

struct KeyName {
    const char* name;
    int key;
};

constexpr KeyName kKeys[] = {
    {"space", kKeySpace}, {"page-up", kKeyPageUp}, {"page-down", kKeyPageDown},
    {"end", kKeyEnd},     {"home", kKeyHome},      {"left", kKeyLeft},
    {"up", kKeyUp},       {"right", kKeyRight},    {"down", kKeyDown},
};

template<typename Table>
std::string NamesOf(const Table& table) {
    std::string names;
    for (const auto& row : table) {
        names += (names.empty() ? "" : ", ") + std::string(row.name);
    }
    return names;
}

template<typename Table>
auto FindNamed(const Table& table, const std::string& name) {
    return std::ranges::find_if(table, [&](const auto& row) { return name == row.name; });
}

bool ToInt(const std::string& text, int& number) {
    const auto result = std::from_chars(text.data(), text.data() + text.size(), number);
    return result.ec == std::errc() && result.ptr == text.data() + text.size();
}

// A control by id or by name; null when there is none.
const ControlState* FindState(const ControlState& window, const std::string& control) {
    int id = 0;
    const bool byId = ToInt(control, id);
    for (const ControlState& child : window.children) {
        if (byId ? child.id == id : child.visible && child.id != 0 && child.name == control) {
            return &child;
        }
        if (const ControlState* found = FindState(child, control); found != nullptr) {
            return found;
        }
    }
    return nullptr;
}

// What the words mean for the window as it is; a text says what they do not mean.
CString MakeAct(const CWnd& window, const ActWords& words, UserAct& act) {
    act.kind = FindNamed(kActs, words.act)->kind;
    if (act.kind == ActKind::Close) {
        return {};
    }
    const ControlState state = DescribeWindow(window);
    const ControlState* const control = FindState(state, words.control);
    if (control == nullptr) {
        return Format("there is no control \"%s\" in \"%s\"", words.control.c_str(), state.text.c_str());
    }
    act.control = control->id;
    act.text = words.value;
    if (act.kind == ActKind::Key) {
        const auto key = FindNamed(kKeys, words.value);
        if (key == std::end(kKeys)) {
            return Format("\"%s\" is no key; known are %s", words.value.c_str(), NamesOf(kKeys).c_str());
        }
        act.value = key->key;
        return {};
    }
    const auto item = std::ranges::find(control->items, words.value, &ControlItem::text);
    if (item != control->items.end()) {
        act.value = static_cast<int>(item - control->items.begin());
        return {};
    }
    const bool wantsNumber = act.kind == ActKind::Choose || act.kind == ActKind::Scroll;
    if (!ToInt(words.value, act.value) && wantsNumber) {
        return Format("control %d has no item \"%s\"", act.control, words.value.c_str());
    }
    return {};
}

CString Perform(CWnd& window, const ActWords& words) {
    UserAct act;
    if (CString fault = MakeAct(window, words, act); !fault.empty()) {
        return fault;
    }
    return PerformAct(window, act).text;
}

} // namespace

// Gets its messages from whatever loop runs, a dialog's own too.
class WindowSession::Driver final : public CWnd {
public:
    explicit Driver(WindowSession& session) : m_session(session) {}
    LRESULT OnMessage(unsigned, WPARAM, LPARAM) override {
        m_session.DriveDialog();
        return 0;
    }

private:
    WindowSession& m_session;
};

WindowSession::WindowSession(ReferenceHost& host) : m_host(host), m_driver(std::make_unique<Driver>(*this)) {}

WindowSession::~WindowSession() = default;

std::vector<std::string> WindowSession::Names() {
    std::vector<std::string> names;
    std::ranges::transform(kWindows, std::back_inserter(names), &WindowKind::name);
    return names;
}

std::vector<std::string> WindowSession::ActNames() {
    std::vector<std::string> names;
    std::ranges::transform(kActs, std::back_inserter(names), &ActKindName::name);
    return names;
}

CString WindowSession::RefuseName(const std::string& window) {
    return FindNamed(kWindows, window) != std::end(kWindows)
               ? CString()
               : Format("there is no window \"%s\"; known are %s", window.c_str(), NamesOf(kWindows).c_str());
}

CString WindowSession::RefuseAct(const ActWords& words) {
    return FindNamed(kActs, words.act) != std::end(kActs)
               ? CString()
               : Format("\"%s\" is no act; known are %s", words.act.c_str(), NamesOf(kActs).c_str());
}

CWnd* WindowSession::Find(const std::string& window) const {
    if (window == kSetup) {
        return m_setup != nullptr && m_setup->Exists() ? m_setup.get() : nullptr;
    }
    const auto kept = m_frames.find(window);
    if (kept == m_frames.end()) {
        return nullptr;
    }
    const std::vector<CTypedFrameWnd*> open = OpenFrames();
    return std::ranges::find(open, kept->second) != open.end() ? kept->second : nullptr;
}

CString WindowSession::Open(const std::string& window) {
    if (Find(window) != nullptr) {
        return {};
    }
    const auto kind = FindNamed(kWindows, window);
    if (kind->open == nullptr) {
        return OpenSetup();
    }
    CTypedFrameWnd* const frame = kind->open(m_host);
    if (frame == nullptr) {
        return Format("the window \"%s\" could not be opened", window.c_str());
    }
    m_frames[window] = frame;
    return {};
}

// The documents' own sheet is modal: it would keep a script from going on.
CString WindowSession::OpenSetup() {
    m_setup = std::make_unique<CKvNetSetupPropertySheet>(LoadText(kTextSetupCaption));
    return m_setup->CreateModeless() ? CString() : CString("the setup sheet could not be opened");
}

namespace {

CString NotOpen(const std::string& window) {
    return Format("the window \"%s\" is not open", window.c_str());
}

} // namespace

CString WindowSession::Close(const std::string& window) {
    CWnd* const frame = Find(window);
    if (frame == nullptr) {
        return NotOpen(window);
    }
    return PerformAct(*frame, {ActKind::Close, 0, {}, 0}).text;
}

CString WindowSession::Act(const std::string& window, const ActWords& words) {
    CWnd* const frame = Find(window);
    return frame == nullptr ? NotOpen(window) : Perform(*frame, words);
}

CString WindowSession::Show(const std::string& window, ControlState& state) {
    const CWnd* const frame = Find(window);
    if (frame == nullptr) {
        return NotOpen(window);
    }
    state = DescribeWindow(*frame);
    return {};
}

CString WindowSession::Print(const std::string& window, std::vector<CString>& lines) {
    const CWnd* const frame = Find(window);
    if (frame == nullptr) {
        return NotOpen(window);
    }
    for (CWnd* child : frame->Children()) {
        if (auto* view = dynamic_cast<CPrintView*>(child); view != nullptr) {
            CDC paper;
            view->Print(paper);
            std::ranges::transform(paper.Lines(), std::back_inserter(lines), &CDC::TextLine::text);
        }
    }
    return {};
}

CString WindowSession::QueueForDialog(const ActWords& words) {
    m_dialogActs.push_back(words);
    return {};
}

void WindowSession::DialogShown(CDialog& dialog) {
    if (dynamic_cast<const CProgressWnd*>(&dialog) != nullptr || &dialog == m_setup.get()) {
        return;
    }
    m_dialogs.push_back(&dialog);
    m_driver->Post(WM_APP, 0, 0);
}

void WindowSession::DialogClosed(const CDialog& dialog) {
    std::erase(m_dialogs, &dialog);
}

void WindowSession::DriveDialog() {
    if (m_dialogs.empty()) {
        return;
    }
    CDialog& dialog = *m_dialogs.back();
    m_driver->Post(WM_APP, 0, 0); // for what comes after
    if (m_dialogActs.empty()) {
        dialog.PressEscape();
        return;
    }
    const ActWords words = m_dialogActs.front();
    m_dialogActs.pop_front();
    if (CString fault = Perform(dialog, words); !fault.empty()) {
        m_dialogFault = std::move(fault);
    }
}

CString WindowSession::TakeDialogFault() {
    return std::exchange(m_dialogFault, CString());
}

} // namespace kalvio::reference_host
