#include "simulator/commands/CommandFrame.h"

namespace kalvio::simulator {

std::uint32_t CommandFrame::Get(Field field) const {
    for (const FieldPlace& place : shape->fields) {
        if (place.field == field) {
            return ReadBig(parameters, place.offset, place.width);
        }
    }
    return 0;
}

std::uint32_t AnnouncedCommand(ByteView header) {
    if (header.size() < kFrameFixedBytes || ReadBig(header, 0, 4) != kFrameMagic) {
        return 0;
    }
    return ReadBig(header, 4, 4);
}

namespace {

std::string Complain(const CommandShape& shape, const char* what, std::size_t length) {
    return std::string(shape.name) + ": " + what + " of " + std::to_string(length) + " bytes";
}

} // namespace

std::optional<CommandFrame> ParseHeader(ByteView header, std::string& complaint) {
    if (header.size() < kFrameFixedBytes) {
        complaint = "header of only " + std::to_string(header.size()) + " bytes";
        return std::nullopt;
    }
    if (ReadBig(header, 0, 4) != kFrameMagic) {
        complaint = "header without the magic number";
        return std::nullopt;
    }
    const CommandShape* shape = FindCommand(ReadBig(header, 4, 4));
    if (shape == nullptr) {
        complaint = "unknown command code " + std::to_string(ReadBig(header, 4, 4));
        return std::nullopt;
    }
    CommandFrame frame{shape, {}, {}, ReadBig(header, 8, 4), ReadBig(header, 12, 4), 0};
    if (header.size() != shape->headerBytes) {
        complaint = Complain(*shape, "header", header.size());
    } else if (!Allows(shape->outData, frame.outLength)) {
        complaint = Complain(*shape, "out data", frame.outLength);
    } else if (!Allows(shape->inData, frame.inLength)) {
        complaint = Complain(*shape, "in data", frame.inLength);
    }
    if (!complaint.empty()) {
        return std::nullopt;
    }
    frame.parameters.assign(header.begin() + kFrameFixedBytes, header.end());
    return frame;
}

} // namespace kalvio::simulator
