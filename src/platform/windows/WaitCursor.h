#pragma once

// The wait cursor of the user interface in force, shown while an object of it lives.

#include "platform/UserInterface.h"

namespace kalvio {

class WaitCursor {
public:
    WaitCursor() { CurrentUserInterface().ShowWaitCursor(true); }
    ~WaitCursor() { CurrentUserInterface().ShowWaitCursor(false); }
    WaitCursor(const WaitCursor&) = delete;
    WaitCursor& operator=(const WaitCursor&) = delete;
};

} // namespace kalvio
