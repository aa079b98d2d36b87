#include "preprocessor/thread/NotificationGate.h"

#include "platform/Clock.h"

namespace kalvio {

namespace {

constexpr std::uint32_t kLookAgainMs = 1;

} // namespace

void NotificationGate::Close() {
    m_closed.store(true);
    while (m_inside.load() != 0) {
        Sleep(kLookAgainMs);
    }
}

} // namespace kalvio
