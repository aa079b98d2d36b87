#include "testing/ScriptedUserInterface.h"

#include <algorithm>
#include <iterator>
#include <utility>

namespace kalvio::test {

namespace {

// The oldest queued item, or the fallback when none is queued.
template<typename T>
T TakeFirst(std::deque<T>& queue, T fallback) {
    if (queue.empty()) {
        return fallback;
    }
    T first = std::move(queue.front());
    queue.pop_front();
    return first;
}

} // namespace

ScriptedUserInterface::ScriptedUserInterface() : m_previous(InstallUserInterface(this)) {}

ScriptedUserInterface::~ScriptedUserInterface() {
    InstallUserInterface(m_previous);
}

BoxAnswer ScriptedUserInterface::ShowBox(const CString& text, BoxButtons buttons, BoxIcon icon,
                                         const CString& caption) {
    const LockGuard guard(m_lock);
    m_boxes.push_back({text, buttons, icon, caption});
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : TakeFirst(m_answers, BoxAnswer::No);
}

CString ScriptedUserInterface::BrowseForFile(const CString&, const CString&) {
    const LockGuard guard(m_lock);
    return TakeFirst(m_files, CString());
}

void ScriptedUserInterface::ShowWaitCursor(bool) {}

void ScriptedUserInterface::DialogShown(CDialog& dialog) {
    if (onDialog) {
        onDialog(dialog);
    } else if (dialog.IsModal()) {
        dialog.PressEscape();
    }
}

void ScriptedUserInterface::DialogClosed(CDialog&) {}

void ScriptedUserInterface::QueueAnswer(BoxAnswer answer) {
    const LockGuard guard(m_lock);
    m_answers.push_back(answer);
}

void ScriptedUserInterface::QueueFile(const CString& path) {
    const LockGuard guard(m_lock);
    m_files.push_back(path);
}

std::vector<ScriptedUserInterface::Box> ScriptedUserInterface::Boxes() const {
    const LockGuard guard(m_lock);
    return m_boxes;
}

std::vector<CString> ScriptedUserInterface::Texts() const {
    const LockGuard guard(m_lock);
    std::vector<CString> texts;
    std::transform(m_boxes.begin(), m_boxes.end(), std::back_inserter(texts),
                   [](const Box& box) { return box.text; });
    return texts;
}

void ScriptedUserInterface::Clear() {
    const LockGuard guard(m_lock);
    m_boxes.clear();
    m_answers.clear();
    m_files.clear();
}

} // namespace kalvio::test
