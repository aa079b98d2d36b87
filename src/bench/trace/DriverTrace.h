#pragma once

// A driver that writes down what passes through it on the way to another one.

#include "bench/trace/TraceDecoder.h"
#include "platform/Sync.h"

namespace kalvio::bench {

// Any thread; the lines of different threads' requests do not mix.
class DriverTrace final : public DeviceDriver {
public:
    DriverTrace(DeviceDriver& inner, TraceDecoder::Sink sink, bool bytes);

    DeviceHandle Open(std::string_view name) override;
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override;
    void Close(DeviceHandle device) override;

    // A line of another kind, in its place among the others.
    void Note(const std::string& text);

private:
    DeviceDriver& m_inner;
    Mutex m_lock;
    TraceDecoder::Sink m_sink KALVIO_GUARDED_BY(m_lock);
    TraceDecoder m_decoder KALVIO_GUARDED_BY(m_lock);
};

} // namespace kalvio::bench
