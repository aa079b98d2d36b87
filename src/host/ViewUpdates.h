#pragma once

// View updates of one application: made at once on its thread, carried over from any other.

#include "host/Views.h"
#include "platform/Sync.h"
#include "platform/Window.h"

#include <functional>
#include <map>
#include <thread>
#include <vector>

namespace kalvio {

// Made and destroyed on the user-interface thread, which is the one that views and observers are called on.
class ViewUpdates final : private CWnd {
public:
    using Observer = std::function<void(CView* sender, int hint, void* object, int flag)>;

    int Add(Observer observer); // a token for Remove; user-interface thread
    void Remove(int token);     // user-interface thread, also from within an observer
    void Notify(CView* sender, int hint, void* object, int flag); // any thread

private:
    struct Update {
        int hint;
        int flag;
        bool operator==(const Update&) const = default;
    };

    void Deliver(CView* sender, int hint, void* object, int flag);
    void Queue(const Update& update);
    LRESULT OnMessage(unsigned message, WPARAM wParam, LPARAM lParam) override;

    const std::thread::id m_thread = std::this_thread::get_id();
    std::map<int, Observer> m_observers; // user-interface thread
    int m_lastToken = 0;                 // user-interface thread
    Mutex m_lock;
    std::vector<Update> m_pending KALVIO_GUARDED_BY(m_lock); // no update stands in it twice
};

} // namespace kalvio
