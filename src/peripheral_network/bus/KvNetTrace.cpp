#include "peripheral_network/bus/KvNetTrace.h"

#include <utility>

namespace kalvio {
namespace {

KvNetTraceHook& Hook() {
    static KvNetTraceHook hook;
    return hook;
}

// Composed only when somebody listens, since every exchange passes here.
void TraceBytes(const char* caption, std::span<const std::uint8_t> bytes) {
    if (!Hook()) {
        return;
    }
    CString line = caption;
    for (const std::uint8_t byte : bytes) {
        line += Format("%02X ", byte);
    }
    Hook()(line + "\n");
}

} // namespace

void SetKvNetTraceHook(KvNetTraceHook hook) {
    Hook() = std::move(hook);
}

void TraceKvNet(const CString& text) {
    if (Hook()) {
        Hook()(text);
    }
}

void TraceKvNetCommand(std::span<const std::uint8_t> frame) {
    TraceBytes("  Command structure : ", frame);
}

void TraceKvNetResponse(std::span<const std::uint8_t> frame) {
    TraceBytes("  Response          : ", frame);
}

} // namespace kalvio
