#pragma once

// A driver that writes down what passes through it on the way to another one.

#include "bench/trace/TraceDecoder.h"

#include <mutex>

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
    std::mutex m_lock; // guards the sink and the decoder
    TraceDecoder::Sink m_sink;
    TraceDecoder m_decoder;
};

} // namespace kalvio::bench
