#pragma once

// The debug trace of the peripheral network: nobody listens unless a program installs a hook.

#include "platform/Export.h"
#include "platform/Text.h"

#include <cstdint>
#include <functional>
#include <span>

namespace kalvio {

using KvNetTraceHook = std::function<void(const CString& text)>;

// Installs the hook that gets every trace text (none: nowhere, the default). Lines bring their own line end.
// User-interface thread, which is also the one that the hook is called on.
KALVIO_API void SetKvNetTraceHook(KvNetTraceHook hook);

KALVIO_API void TraceKvNet(const CString& text);
// "  Command structure : 55 05 00 00 50 AA \n"
KALVIO_API void TraceKvNetCommand(std::span<const std::uint8_t> frame);
// "  Response          : 55 05 ... \n"
KALVIO_API void TraceKvNetResponse(std::span<const std::uint8_t> frame);

} // namespace kalvio
