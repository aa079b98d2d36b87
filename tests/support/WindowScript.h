#pragma once

// Windows as a user and a recorder see them: a file holds acts, each behind "> ", and below each what came of
// it: frames sent, boxes shown, refusals, and the line of every control that changed. The acts are read from
// the file, carried out and written down anew; the two must agree (KALVIO_RECORD writes them instead).
//
// Acts: click ID, choose ID ITEM, double ID ITEM, type ID TEXT, enter ID, focus ID, scroll ID POSITION,
// default ID, range ID, close, dump, layout, yes (the answer to the next question), leave (a dialog stays
// while the program goes on), wait MS, window N (of the open ones; the acts go there), every ID... (each act
// with some values on each control but these, as far as it does anything; dialogs that come up are left),
// beside (from here on what changes in other open windows is told too), and a test's own words.

#include "platform/ControlState.h"
#include "platform/Dialog.h"
#include "support/Golden.h"
#include "support/LayoutChecks.h"
#include "support/TestHost.h"

#include <functional>
#include <map>
#include <set>
#include <sstream>
#include <utility>

namespace kalvio::test {

// Where every control is, in dialog units, and its tooltip.
inline std::string LayoutText(const ControlState& state) {
    const CRect& at = state.rect;
    std::string text = Format("  %d: %d %d %d %d %s\n", state.id, at.left, at.top, at.right, at.bottom,
                              state.tooltip.c_str());
    for (const ControlState& child : state.children) {
        text += LayoutText(child);
    }
    return text;
}

class WindowScript {
public:
    using Word = std::function<void(const std::string& rest)>;

    // `source` is the test's __FILE__, `name` the file beside it.
    WindowScript(TestHost& host, const char* source, const char* name)
        : m_host(host), m_source(source), m_name(name) {
        std::ifstream file(std::filesystem::path(source).parent_path() / name);
        for (std::string line; std::getline(file, line);) {
            if (line.starts_with('>') || line.starts_with('#')) {
                m_lines.push_back(line);
            }
        }
        m_host.user.onDialog = [this](CDialog& dialog) { PlayDialog(dialog); };
    }
    ~WindowScript() { m_host.user.onDialog = nullptr; }
    WindowScript(const WindowScript&) = delete;
    WindowScript& operator=(const WindowScript&) = delete;

    std::map<std::string, Word> words;
    std::function<std::string()> frames; // since it was last asked
    std::function<void()> look;          // after every act, to note what else came of it
    CWnd* window = nullptr;              // that acts go to

    void Note(const std::string& line) { m_text += "  " + line + "\n"; }
    void Play() {
        while (m_next < m_lines.size()) {
            Step();
        }
        ASSERT_FALSE(m_lines.empty()) << m_name;
        ExpectGolden(m_source, m_name, m_text);
    }

private:
    void PlayDialog(CDialog& dialog) {
        if (m_every) {
            m_text += "  shown and left: " + dialog.GetText() + "\n";
            dialog.PressEscape();
            return;
        }
        CWnd* const before = std::exchange(window, &dialog);
        const std::string dump = Look(dialog);
        m_text += "  shown" + (m_shown.insert(dump).second ? ":\n" + dump : " as before\n");
        m_seen = CurrentRevision();
        m_left = false;
        const WindowHandle handle = dialog.Handle();
        while (m_next < m_lines.size() && !m_left && SnapshotOf(handle).handle == handle && dialog.Exists()) {
            Step();
        }
        m_left = false;
        window = before;
    }

    void Step() {
        const std::string line = m_lines[m_next++];
        m_text += line + "\n";
        if (line.starts_with('#')) {
            return;
        }
        std::istringstream stream(line.substr(1));
        std::string word;
        stream >> word;
        std::string rest;
        std::getline(stream >> std::ws, rest);
        CWnd* const target = window;
        const WindowHandle handle = target != nullptr ? target->Handle() : WindowHandle::None;
        if (word == "every") {
            DoEvery(Numbers(rest), handle);
            return;
        }
        Do(word, rest);
        Tell();
        if (!IsThere(handle) && target == window) {
            window = nullptr;
        } else if (target == window && target != nullptr) {
            TellWindows(*target);
        }
        m_seen = CurrentRevision();
    }

    static bool IsThere(WindowHandle handle) {
        return handle != WindowHandle::None && SnapshotOf(handle).handle == handle;
    }
    static std::set<int> Numbers(const std::string& text) {
        std::istringstream stream(text);
        return {std::istream_iterator<int>(stream), {}};
    }

    void DoEvery(const std::set<int>& but, WindowHandle handle) {
        std::vector<const ControlState*> controls;
        const ControlState whole = DescribeWindow(*window);
        Gather(whole, controls);
        m_every = true;
        for (const ControlState* control : controls) {
            if (control->id != 0 && !but.contains(control->id)) {
                for (const std::string& act : ActsOn(*control)) {
                    if (IsThere(handle)) {
                        TryAct(act, handle);
                    }
                }
            }
        }
        m_every = false;
    }

    static std::vector<std::string> ActsOn(const ControlState& control) {
        static const char* const kActs[] = {"focus",      "click",        "double % 0", "type % 3",
                                            "enter",      "type % 1e9",   "enter",      "type % zz",
                                            "enter",      "type % 0.25",  "enter",      "scroll % 2",
                                            "scroll % 0", "scroll % 999", "default",    "range"};
        std::vector<std::string> acts;
        for (std::string act : kActs) {
            const std::size_t place = act.find('%');
            acts.push_back(place == std::string::npos ? act + " " + std::to_string(control.id)
                                                      : act.replace(place, 1, std::to_string(control.id)));
        }
        for (std::size_t item = 0; item < control.items.size(); ++item) {
            acts.push_back(Format("choose %d %zu", control.id, item));
        }
        return acts;
    }

    // An act that does and says nothing new leaves no line.
    void TryAct(const std::string& act, WindowHandle handle) {
        const std::size_t before = m_text.size();
        const std::size_t place = act.find(' ');
        Do(act.substr(0, place), act.substr(place + 1));
        PumpMessages();
        Tell();
        if (IsThere(handle)) {
            TellWindows(*window);
        }
        m_seen = CurrentRevision();
        const std::string came = m_text.substr(before);
        m_text.resize(before);
        if (came != m_came && !came.empty() && came.find(" cannot do that.") == std::string::npos &&
            came.find(" is hidden.") == std::string::npos &&
            came.find(" is disabled.") == std::string::npos) {
            m_text += "- " + act + "\n" + came;
            m_came = came;
        }
    }

    void Do(const std::string& word, const std::string& rest) {
        static const std::map<std::string, ActKind> kActs{
            {"click", ActKind::Click},        {"choose", ActKind::Choose},      {"type", ActKind::Type},
            {"double", ActKind::DoubleClick}, {"enter", ActKind::Enter},        {"focus", ActKind::Focus},
            {"scroll", ActKind::Scroll},      {"default", ActKind::SetDefault}, {"range", ActKind::ShowRange},
            {"close", ActKind::Close}};
        if (const auto own = words.find(word); own != words.end()) {
            own->second(rest);
        } else if (word == "yes") {
            m_host.user.QueueAnswer(BoxAnswer::Yes);
        } else if (word == "beside") {
            m_beside = true;
        } else if (word == "leave") {
            m_left = true;
        } else if (word == "wait") {
            m_host.clock.Advance(static_cast<std::uint32_t>(std::stoul(rest)));
            PumpMessages();
        } else if (word == "window") {
            window = OpenFrames().at(std::stoul(rest));
        } else if (word == "dump") {
            m_text += Look(*window);
        } else if (word == "layout") {
            m_text += LayoutText(DescribeWindow(*window));
        } else if (const auto act = kActs.find(word); act != kActs.end() && window != nullptr) {
            int id = 0;
            std::istringstream words_(rest);
            words_ >> id >> std::ws;
            std::string text;
            std::getline(words_, text);
            const ActOutcome outcome = PerformAct(*window, {act->second, id, text, std::atoi(text.c_str())});
            if (!outcome.Ok()) {
                Note(outcome.text);
            }
        } else {
            ADD_FAILURE() << m_name << ": " << word;
        }
    }

    void Tell() {
        if (const std::string sent = frames ? frames() : std::string(); !sent.empty()) {
            Note("sent " + sent);
        }
        const auto boxes = m_host.user.Boxes();
        for (; m_boxes < boxes.size(); ++m_boxes) {
            static constexpr const char* kIcons[] = {"", "! ", "i ", "? "};
            Note("[" + CString(kIcons[static_cast<int>(boxes[m_boxes].icon)]) + boxes[m_boxes].text + "]");
        }
        if (look) {
            look();
        }
    }

    void TellWindows(const CWnd& target) {
        TellChanges(DescribeChanges(target, m_seen));
        for (CTypedFrameWnd* frame : m_beside ? OpenFrames() : std::vector<CTypedFrameWnd*>()) {
            if (frame != &target) {
                const std::size_t before = m_text.size();
                TellChanges(DescribeChanges(*frame, m_seen));
                m_text.insert(before, m_text.size() == before ? "" : "  beside:\n");
            }
        }
    }

    // Every changed control in tab order; neighbours by number that are alike share a line.
    void TellChanges(const ControlState& whole) {
        std::vector<const ControlState*> changed;
        Gather(whole, changed);
        std::set<const ControlState*> told;
        for (const ControlState* first : changed) {
            if (!told.insert(first).second) {
                continue;
            }
            const ControlState* last = first;
            for (const ControlState* next : changed) {
                if (first->id != 0 && next->id == last->id + 1 && Likeness(*next) == Likeness(*first)) {
                    last = next;
                    told.insert(next);
                }
            }
            m_text += "  " + (last == first ? DumpWindow(*first)
                                            : Format("%d-%d \"%s\"-\"%s\"", first->id, last->id,
                                                     first->text.c_str(), last->text.c_str()) +
                                                  Likeness(*first).substr(1));
        }
    }

    static void Gather(const ControlState& state, std::vector<const ControlState*>& controls) {
        if (state.children.empty() && state.role != ControlRole::Window &&
            state.role != ControlRole::Unknown && state.role != ControlRole::Dialog) {
            controls.push_back(&state);
        }
        for (const ControlState& child : state.children) {
            Gather(child, controls);
        }
    }

    // What a control is but for its number; a text of words is its own.
    static std::string Likeness(ControlState state) {
        state.id = 0;
        if (state.text.find_first_not_of("0123456789") == std::string::npos) {
            state.text.clear();
            state.name.clear();
        }
        return DumpWindow(state);
    }

    // The whole window, whose layout has to be sound too.
    static std::string Look(const CWnd& window_) {
        const ControlState state = DescribeWindow(window_);
        ExpectSoundLayout(state);
        std::istringstream lines(DumpWindow(state));
        std::string indented;
        for (std::string line; std::getline(lines, line);) {
            indented += "  " + line + "\n";
        }
        return indented;
    }

    TestHost& m_host;
    const char* m_source;
    const char* m_name;
    std::vector<std::string> m_lines;
    std::size_t m_next = 0;
    std::size_t m_boxes = 0;
    bool m_left = false;
    bool m_beside = false;
    bool m_every = false;          // acts are tried one after the other
    std::string m_came;            // of the last of them that told something
    std::set<std::string> m_shown; // dumps of dialogs
    std::uint64_t m_seen = CurrentRevision();
    std::string m_text;
};

// What a view prints, a line a line, columns apart by bars.
inline void NotePrint(WindowScript& script, CPrintView& view) {
    CDC paper;
    view.Print(paper);
    std::vector<int> stops;
    for (const CDC::TextLine& line : paper.Lines()) {
        if (line.tabStops != stops) {
            stops = line.tabStops;
            std::string text = "| stops";
            for (const int stop : stops) {
                text += " " + std::to_string(stop);
            }
            script.Note(text);
        }
        std::string text = line.text;
        for (std::size_t at = 0; (at = text.find('\t', at)) != std::string::npos;) {
            text.replace(at, 1, "|");
        }
        script.Note((line.title ? "|| " : "| ") + text);
    }
}

} // namespace kalvio::test
