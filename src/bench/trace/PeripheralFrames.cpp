#include "bench/trace/PeripheralFrames.h"

#include "bench/trace/AdapterFrames.h"
#include "bench/trace/HexText.h"
#include "bench/trace/SwitcherFrames.h"
#include "peripheral_network/bus/KvNetExchange.h"
#include "peripheral_network/bus/KvNetStatus.h"
#include "platform/formats/Endian.h"

#include <algorithm>

namespace kalvio::bench {

namespace {

constexpr std::size_t kFrameAt = 4;  // in both blocks
constexpr std::size_t kLengthAt = 2; // in a frame
constexpr std::size_t kShownDataBytes = 8;
constexpr std::uint8_t kNoAnswerWanted = 0xA5;

std::string DescribeReset(const BusBytes& frame) {
    return frame.data.empty() ? "" : (frame.data[0] != 0 ? "on" : "standby");
}

std::string DescribeStatus(const BusBytes& frame) {
    if (frame.data.size() < kStatusDataBytes) {
        return {};
    }
    const CKvNetStatus status(0, PackStatusWord(frame.data.first<kStatusDataBytes>()));
    return Format("%s %s, hardware %c, firmware %c, %s", status.ClassName().c_str(),
                  status.TypeName().c_str(), 'A' + status.GetHardwareVersion(),
                  'A' + status.GetFirmwareVersion(), status.IsOn() ? "on" : "standby");
}

std::string DescribeRecord(const BusBytes& frame) {
    if (frame.data.size() < 2) {
        return {};
    }
    const unsigned number = GetBig16(frame.data.data());
    return Format("sector %u, block %u, [%s]", number >> 12U, number & 0x0FFFU,
                  HexText(frame.data.subspan(2), kShownDataBytes).c_str());
}

std::string DescribeStored(const BusBytes& frame) {
    return frame.command == kAnswerSectorAccepted ? "stored" : Format("not stored, 0x%02X", frame.command);
}

// What every device knows.
constexpr BusCommand kCommonCommands[] = {
    {0x00, "GetStatus", nullptr, DescribeStatus},
    {0xFF, "Reset", DescribeReset, DescribeStatus},
    {0xB1, "WriteSector", DescribeRecord, DescribeStored},
};

const BusCommand* FindCommand(std::uint8_t code) {
    const std::span<const BusCommand> kTables[] = {kCommonCommands, SwitcherCommands()};
    for (const std::span<const BusCommand> table : kTables) {
        const auto found = std::ranges::find(table, code, &BusCommand::code);
        if (found != table.end()) {
            return &*found;
        }
    }
    return nullptr;
}

// The frame that begins at its place in a block; empty when the block does not hold it whole.
std::span<const std::uint8_t> FrameOf(std::span<const std::uint8_t> block) {
    if (block.size() < kFrameAt + kKvNetFramingBytes) {
        return {};
    }
    const std::size_t length = block[kFrameAt + kLengthAt] + kKvNetFramingBytes;
    return length <= block.size() - kFrameAt ? block.subspan(kFrameAt, length)
                                             : std::span<const std::uint8_t>();
}

BusBytes BytesOf(std::span<const std::uint8_t> frame) {
    return {frame[3], frame.subspan(kKvNetDataAt, frame.size() - kKvNetFramingBytes)};
}

// The describer's words, those of the adapter's table, or the bytes when there are none.
std::string Describe(std::string (*describe)(const BusBytes&), const BusBytes& bytes) {
    std::string text = describe != nullptr ? describe(bytes) : "";
    if (text.empty() && describe == nullptr && !bytes.data.empty()) {
        text = DecodeAdapterFrame(bytes.command, bytes.data);
    }
    if (text.empty() && !bytes.data.empty()) {
        text = "[" + HexText(bytes.data, kShownDataBytes) + "]";
    }
    return text;
}

std::string Behind(const char* separator, const std::string& text) {
    return text.empty() ? "" : separator + text;
}

} // namespace

std::string DescribeBusCall(std::span<const std::uint8_t> block) {
    const auto frame = FrameOf(block);
    if (frame.empty()) {
        return "frame [" + HexText(block, kShownDataBytes) + "]";
    }
    const BusBytes bytes = BytesOf(frame);
    const BusCommand* command = FindCommand(bytes.command);
    std::string name = command != nullptr ? command->name : DecodeAdapterFrame(bytes.command, {});
    if (name.empty()) {
        name = Format("command 0x%02X", bytes.command);
    }
    const std::string address =
        frame[1] == KVNET_ADDRESS_BROADCAST ? "all addresses" : Format("address %u", frame[1]);
    const std::string data = Describe(command != nullptr ? command->data : nullptr, bytes);
    return name + "(" + address + Behind(", ", data) + ")";
}

std::string DescribeBusAnswer(std::span<const std::uint8_t> sent, std::span<const std::uint8_t> block) {
    if (block.size() < kFrameAt) {
        return "short answer";
    }
    if (const auto status = static_cast<std::int16_t>(GetBig16(block.data())); status != KVNET_OK) {
        return Format("%d, %s", status, LoadText(GetErrorMessageID(status)).c_str());
    }
    const auto frame = FrameOf(sent);
    const auto answer = FrameOf(block);
    if (frame.empty() || answer.empty() || frame.back() == kNoAnswerWanted) {
        return "ok, no answer wanted";
    }
    const BusBytes bytes = BytesOf(answer);
    const BusCommand* command = FindCommand(frame[3]);
    return "ok" + Behind(", ", Describe(command != nullptr ? command->answer : nullptr, bytes));
}

} // namespace kalvio::bench
