#include "bench/trace/DriverTrace.h"

#include "platform/Clock.h"
#include "platform/Text.h"

#include <algorithm>

namespace kalvio::bench {

DriverTrace::DriverTrace(DeviceDriver& inner, TraceDecoder::Sink sink, bool bytes)
    : m_inner(inner), m_sink(sink), m_decoder(std::move(sink), bytes, GetTickCount()) {}

DeviceHandle DriverTrace::Open(std::string_view name) {
    const DeviceHandle device = m_inner.Open(name);
    Note(Format("open %s -> %s", std::string(name).c_str(),
                device == DeviceHandle::None ? "not there" : "ok"));
    return device;
}

DriverReply DriverTrace::Control(DeviceHandle device, const DriverRequest& request) {
    const std::uint32_t start = GetTickCount();
    const DriverReply reply = m_inner.Control(device, request);
    const std::size_t returned = reply.ok ? reply.bytesReturned : 0;
    const LockGuard guard(m_lock);
    m_decoder.Take({request.code, request.input, request.dataToUnit,
                    request.dataFromUnit.subspan(0, std::min(returned, request.dataFromUnit.size())),
                    reply.ok, reply.error, start, GetTickCount() - start});
    return reply;
}

void DriverTrace::Close(DeviceHandle device) {
    m_inner.Close(device);
    Note("close");
}

void DriverTrace::Note(const std::string& text) {
    const LockGuard guard(m_lock);
    m_sink("           " + text);
}

} // namespace kalvio::bench
