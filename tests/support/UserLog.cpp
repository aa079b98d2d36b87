#include "support/UserLog.h"

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

UserLog::UserLog() : m_previous(InstallUserInterface(this)) {}

UserLog::~UserLog() {
    InstallUserInterface(m_previous);
}

BoxAnswer UserLog::MessageBox(const CString& text, BoxButtons buttons, BoxIcon icon, const CString& caption) {
    const std::scoped_lock guard(m_lock);
    m_boxes.push_back({text, buttons, icon, caption});
    return buttons == BoxButtons::Ok ? BoxAnswer::Ok : TakeFirst(m_answers, BoxAnswer::No);
}

CString UserLog::BrowseForFile(const CString&, const CString&) {
    const std::scoped_lock guard(m_lock);
    return TakeFirst(m_files, CString());
}

void UserLog::ShowWaitCursor(bool) {}

void UserLog::DialogShown(CDialog& dialog) {
    if (onDialog) {
        onDialog(dialog);
    }
}

void UserLog::DialogClosed(CDialog&) {}

void UserLog::QueueAnswer(BoxAnswer answer) {
    const std::scoped_lock guard(m_lock);
    m_answers.push_back(answer);
}

void UserLog::QueueFile(const CString& path) {
    const std::scoped_lock guard(m_lock);
    m_files.push_back(path);
}

std::vector<UserLog::Box> UserLog::Boxes() const {
    const std::scoped_lock guard(m_lock);
    return m_boxes;
}

std::vector<CString> UserLog::Texts() const {
    const std::scoped_lock guard(m_lock);
    std::vector<CString> texts;
    std::transform(m_boxes.begin(), m_boxes.end(), std::back_inserter(texts),
                   [](const Box& box) { return box.text; });
    return texts;
}

void UserLog::Clear() {
    const std::scoped_lock guard(m_lock);
    m_boxes.clear();
    m_answers.clear();
    m_files.clear();
}

} // namespace kalvio::test
