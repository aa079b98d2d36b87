#pragma once

// A unit on whose bus every address answers with the data that it was sent, and a firmware block with what
// says that it is stored; or on which nobody answers.

#include "NullDriver.h"

#include "hardware/KvNetFrame.h"

#include <array>

namespace kalvio::benchmarks {

class AnsweringBus final : public DeviceDriver {
public:
    DeviceHandle Open(std::string_view name) override { return m_unit.Open(name); }
    void Close(DeviceHandle device) override { m_unit.Close(device); }
    DriverReply Control(DeviceHandle device, const DriverRequest& request) override {
        ++requests;
        const DriverReply reply = m_unit.Control(device, request);
        if (request.dataToUnit.size() == kBlockBytes) {
            std::ranges::copy(request.dataToUnit, m_block.begin());
            if (recording) {
                commands.push_back(m_block[kCommandAt]);
            }
        } else if (request.dataFromUnit.size() == kBlockBytes) {
            Answer(request.dataFromUnit);
        }
        return reply;
    }

    int requests = 0;
    std::uint16_t status = 0; // of every exchange
    bool recording = false;   // the frames' command bytes
    std::vector<std::uint8_t> commands;

private:
    static constexpr std::size_t kBlockBytes = 44; // of a frame on its way to the unit, and of the answer
    static constexpr std::size_t kFrameAt = 4;
    static constexpr std::size_t kCommandAt = kFrameAt + 3;
    static constexpr std::size_t kAnswerBytes = kKvNetFramingBytes + 3;
    static constexpr std::uint8_t kWriteSector = 0xB1;
    static constexpr std::uint8_t kStored = 0xCF;

    void Answer(std::span<std::uint8_t> block) const {
        std::ranges::fill(block, std::uint8_t{0});
        PutBig16(block.data(), status);
        if (status != 0) {
            return;
        }
        std::copy_n(m_block.begin() + kFrameAt, kAnswerBytes, block.begin() + kFrameAt);
        if (block[kCommandAt] == kWriteSector) {
            block[kCommandAt] = kStored;
        }
    }

    NullDriver m_unit{1U << 20};
    std::array<std::uint8_t, kBlockBytes> m_block{};
};

} // namespace kalvio::benchmarks
