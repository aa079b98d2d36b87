#pragma once

// Objects whose lack of memory is fatal to the host.

#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "platform/Window.h"

#include <memory>
#include <new>
#include <utility>

namespace kalvio {

// A new object, or null when memory ran out, which is posted to the main window.
template<typename T, typename... Arguments>
std::unique_ptr<T> MakeOrPost(Arguments&&... arguments) {
    constexpr unsigned kMessageFatal = WM_APP; // wParam: the text of what happened
    try {
        return std::make_unique<T>(std::forward<Arguments>(arguments)...);
    } catch (const std::bad_alloc&) {
        if (CWnd* window = GetHostApplication().mainWindow; window != nullptr) {
            window->Post(kMessageFatal, kTextOutOfMemory, 0);
        }
        return nullptr;
    }
}

} // namespace kalvio
