#pragma once

// A driver that accepts everything: writes vanish, every response echoes its command, in data is zero. It
// allocates nothing and may be called from any thread.

#include "platform/DeviceDriver.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <atomic>
#include <functional>

namespace kalvio::test {

class EchoDriver final : public DeviceDriver {
public:
    DeviceHandle Open(std::string_view) override { return DeviceHandle{1}; }
    void Close(DeviceHandle) override {}
    DriverReply Control(DeviceHandle, const DriverRequest& request) override {
        if (request.code == kControlBulkWrite) {
            if (onWrite) {
                onWrite(request.dataToUnit);
            }
            if (request.dataToUnit.size() >= 16 && GetBig32(request.dataToUnit.data()) == 0xABCD) {
                m_command.store(GetBig32(&request.dataToUnit[4]));
            }
        } else if (request.code == kControlBulkRead) {
            std::fill(request.dataFromUnit.begin(), request.dataFromUnit.end(), std::uint8_t{0});
            if (request.dataFromUnit.size() >= 8) {
                PutBig32(&request.dataFromUnit[4], m_command.load());
            }
        }
        return {true, static_cast<std::uint32_t>(request.dataToUnit.size() + request.dataFromUnit.size()), 0};
    }

    std::function<void(std::span<const std::uint8_t>)> onWrite; // set before other threads start

private:
    std::atomic<std::uint32_t> m_command{0};
};

} // namespace kalvio::test
