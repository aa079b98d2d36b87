#include "host/ViewUpdates.h"

#include <algorithm>
#include <utility>

namespace kalvio {
namespace {

constexpr unsigned kMessagePending = WM_APP + 0x7F00; // only ever sent to the window of a ViewUpdates

} // namespace

int ViewUpdates::Add(Observer observer) {
    m_observers.emplace(++m_lastToken, std::move(observer));
    return m_lastToken;
}

void ViewUpdates::Remove(int token) {
    m_observers.erase(token);
}

void ViewUpdates::Notify(CView* sender, int hint, void* object, int flag) {
    if (std::this_thread::get_id() == m_thread) {
        Deliver(sender, hint, object, flag);
    } else {
        Queue({hint, flag});
    }
}

void ViewUpdates::Deliver(CView* sender, int hint, void* object, int flag) {
    TellViews(sender, hint, object);
    std::vector<int> tokens;
    for (const auto& entry : m_observers) {
        tokens.push_back(entry.first);
    }
    for (const int token : tokens) {
        const auto found = m_observers.find(token);
        if (found != m_observers.end()) {
            const Observer observer = found->second; // it may remove itself
            observer(sender, hint, object, flag);
        }
    }
}

void ViewUpdates::Queue(const Update& update) {
    {
        const LockGuard hold(m_lock);
        // Views read the values themselves, so an update that still waits stands for a later one as well.
        if (std::find(m_pending.begin(), m_pending.end(), update) != m_pending.end()) {
            return;
        }
        m_pending.push_back(update);
        if (m_pending.size() > 1) {
            return; // the message is on its way
        }
    }
    kalvio::PostToWindow(Handle(), kMessagePending, 0, 0);
}

LRESULT ViewUpdates::OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) {
    if (message != kMessagePending) {
        return CWnd::OnMessage(message, wParam, lParam);
    }
    std::vector<Update> updates;
    {
        const LockGuard hold(m_lock);
        updates.swap(m_pending);
    }
    for (const Update& update : updates) {
        Deliver(nullptr, update.hint, nullptr, update.flag);
    }
    return 0;
}

} // namespace kalvio
