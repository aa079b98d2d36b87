#pragma once

// A driver with nothing behind it: every command is answered with its echo, bulk data is copied into and out
// of one buffer, everything else is zero.

#include "platform/DeviceDriver.h"
#include "platform/formats/Endian.h"

#include <algorithm>
#include <cstring>
#include <vector>

namespace kalvio::benchmarks {

inline constexpr std::size_t kLongestHeader = 32;
inline constexpr std::size_t kLongestResponse = 16;

// One request at a time. Allocates nothing once it is made.
class NullDriver final : public DeviceDriver {
public:
    explicit NullDriver(std::size_t bulkBytes) : m_bulk(bulkBytes) {}

    DeviceHandle Open(std::string_view) override { return DeviceHandle{1}; }
    void Close(DeviceHandle) override {}
    DriverReply Control(DeviceHandle, const DriverRequest& request) override {
        switch (request.code) {
        case kControlBulkWrite:
            Take(request.dataToUnit);
            break;
        case kControlBulkRead:
            Give(request.dataFromUnit);
            break;
        case kControlGetDescriptor:
            PutLittle16(&request.dataFromUnit[kReleaseNumberAt], kReleaseNumber);
            break;
        default:
            break;
        }
        return {true, static_cast<std::uint32_t>(request.dataToUnit.size() + request.dataFromUnit.size()), 0};
    }

private:
    static constexpr std::size_t kReleaseNumberAt = 12;
    static constexpr std::uint16_t kReleaseNumber = 267;
    static constexpr std::uint32_t kMagic = 0x0000ABCD;
    static constexpr std::uint32_t kDone = 0x0000600D;

    void Take(std::span<const std::uint8_t> bytes) {
        if (bytes.size() > kLongestHeader) {
            std::memcpy(Next(bytes.size()), bytes.data(), bytes.size());
        } else if (bytes.size() >= kLongestResponse && GetBig32(bytes.data()) == kMagic) {
            m_command = GetBig32(&bytes[4]);
            m_at = 0;
        }
    }

    void Give(std::span<std::uint8_t> bytes) {
        if (bytes.size() > kLongestResponse) {
            std::memcpy(bytes.data(), Next(bytes.size()), bytes.size());
            return;
        }
        std::fill(bytes.begin(), bytes.end(), std::uint8_t{0});
        if (bytes.size() >= 8) {
            PutBig32(bytes.data(), kDone);
            PutBig32(&bytes[4], m_command);
        }
    }

    // Where the next chunk of the exchange goes to or comes from; from the start again at the end.
    std::uint8_t* Next(std::size_t bytes) {
        m_at = m_at + bytes <= m_bulk.size() ? m_at : 0;
        std::uint8_t* const place = m_bulk.data() + m_at;
        m_at += bytes;
        return place;
    }

    std::vector<std::uint8_t> m_bulk; // never smaller than a chunk
    std::size_t m_at = 0;
    std::uint32_t m_command = 0;
};

} // namespace kalvio::benchmarks
