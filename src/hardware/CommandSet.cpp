#include "hardware/CommandSet.h"

#include "hardware/link/CommandDetails.h"
#include "hardware/link/CommandFrame.h"
#include "hardware/link/Holding.h"
#include "hardware/link/ImageFile.h"
#include "hardware/link/QuietLock.h"
#include "platform/Files.h"

#include <array>

namespace kalvio {

namespace {

// The unit keeps the data of the general command that failed here, in 'X'.
constexpr std::uint16_t kCommandBuffer = 0x7900;
constexpr std::size_t kDspWordBytes = 3;

constexpr std::uint8_t LowByte(int value) {
    return static_cast<std::uint8_t>(value);
}

CString NoDetail() {
    return {};
}

// Parameter layouts that several commands share.
CommandFrame& PutMicroByte(CommandFrame& frame, std::uint8_t space, std::uint16_t address) {
    return frame.Put16(0, address).Put8(2, space);
}

CommandFrame& PutMicroBit(CommandFrame& frame, std::uint8_t space, std::uint32_t bitAddress) {
    return frame.Put32(0, bitAddress).Put8(4, space);
}

CommandFrame& PutDspWord(CommandFrame& frame, std::uint8_t dsp, std::uint8_t space, std::uint32_t address) {
    return frame.Put32(0, address).Put8(4, dsp).Put8(5, space);
}

CommandFrame& PutDspWordAndValue(CommandFrame& frame, std::uint8_t dsp, std::uint8_t space,
                                 std::uint32_t address, std::uint32_t value) {
    return frame.Put32(0, address).Put32(4, value).Put8(8, dsp).Put8(9, space);
}

} // namespace

CommandSet::CommandSet(UsbTransport& transport)
    : m_transport(transport), m_hardwareAccess(std::make_unique<QuietLock>()) {}

CommandSet::~CommandSet() = default;

ExchangeOutcome CommandSet::Send(const CommandFrame& frame, bool evenIfSuspended) {
    if (IsSuspended() && !evenIfSuspended) {
        return CommandNotSent{};
    }
    return m_transport.Exchange(frame.Exchange());
}

template<typename Detail>
std::int16_t CommandSet::Finish(const ExchangeOutcome& outcome, const CommandFrame& frame, Detail detail) {
    return outcome.HasFailed() ? m_transport.Report(outcome, frame.Name(), detail()) : std::int16_t{0};
}

template<typename Detail>
std::int16_t CommandSet::Run(const CommandFrame& frame, Detail detail) {
    return Finish(Send(frame), frame, detail);
}

template<typename Detail>
std::int16_t CommandSet::RunForBit(const CommandFrame& frame, int& value, Detail detail) {
    const ExchangeOutcome outcome = Send(frame);
    if (outcome.WasSent()) {
        value = frame.ResultByte();
    }
    return Finish(outcome, frame, detail);
}

template<typename Write>
std::int16_t CommandSet::ArmAndWrite(std::uint16_t address, int check, Write write) {
    if (check == 0) {
        return write();
    }
    if (!IsActive()) {
        return 0;
    }
    const Holding pair(*m_hardwareAccess);
    const std::int16_t status = InitMemAddress(address);
    return status != 0 ? status : write();
}

std::int16_t CommandSet::StartOrStop(CommandFrame& frame, std::uint16_t parameter, int force) {
    frame.Put16(0, parameter);
    return Finish(Send(frame, force != 0), frame, NoDetail);
}

std::int16_t CommandSet::Initialise(std::uint16_t parameter, int force) {
    CommandFrame frame(CommandCode::Initialise);
    return StartOrStop(frame, parameter, force);
}

std::int16_t CommandSet::Terminate(std::uint16_t parameter, int force) {
    CommandFrame frame(CommandCode::Terminate);
    return StartOrStop(frame, parameter, force);
}

std::int16_t CommandSet::MicroGetMem(std::uint8_t space, std::uint16_t address, std::uint8_t& data) {
    CommandFrame frame(CommandCode::MicroGetMem);
    PutMicroByte(frame, space, address);
    const ExchangeOutcome outcome = Send(frame);
    if (outcome.WasSent()) {
        data = frame.ResultByte();
    }
    return Finish(outcome, frame, [&] { return details::MicroMemory(space, address, frame.ResultByte()); });
}

std::int16_t CommandSet::MicroGetBit(std::uint8_t space, std::uint32_t bitAddress, int& value) {
    CommandFrame frame(CommandCode::MicroGetBit);
    PutMicroBit(frame, space, bitAddress);
    return RunForBit(frame, value, [=] { return details::MicroBit(space, bitAddress); });
}

std::int16_t CommandSet::DSPGetMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                     std::uint32_t& data) {
    CommandFrame frame(CommandCode::DSPGetMem24);
    PutDspWord(frame, dsp, space, address);
    const ExchangeOutcome outcome = Send(frame);
    if (outcome.WasSent()) {
        data = frame.ResultWord();
    }
    return Finish(outcome, frame, [=] { return details::DspAddress(dsp, space, address); });
}

std::int16_t CommandSet::DSPGetBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, int& value) {
    CommandFrame frame(CommandCode::DSPGetBit);
    PutDspWordAndValue(frame, dsp, space, address, mask);
    return RunForBit(frame, value, [=] { return details::DspMask(dsp, space, address, mask); });
}

std::int16_t CommandSet::MicroPutMem(std::uint8_t space, std::uint16_t address, std::uint8_t data,
                                     int check) {
    return ArmAndWrite(address, check, [&] {
        CommandFrame frame(CommandCode::MicroPutMem);
        PutMicroByte(frame, space, address).Put8(3, data).Put8(4, LowByte(check));
        return Run(frame, [=] { return details::MicroMemory(space, address, data); });
    });
}

std::int16_t CommandSet::MicroPutBit(std::uint8_t space, std::uint32_t bitAddress, int value) {
    CommandFrame frame(CommandCode::MicroPutBit);
    PutMicroBit(frame, space, bitAddress).Put8(5, LowByte(value));
    return Run(frame, [=] { return details::MicroBit(space, bitAddress); });
}

std::int16_t CommandSet::DSPPutMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                     std::uint32_t data) {
    CommandFrame frame(CommandCode::DSPPutMem24);
    PutDspWordAndValue(frame, dsp, space, address, data);
    return Run(frame, [=] { return details::DspData(dsp, space, address, data); });
}

std::int16_t CommandSet::DSPPutBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, int state) {
    CommandFrame frame(CommandCode::DSPPutBit);
    PutDspWordAndValue(frame, dsp, space, address, mask).Put8(10, LowByte(state));
    return Run(frame, [=] { return details::DspMask(dsp, space, address, mask); });
}

std::int16_t CommandSet::MicroGetMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                          std::uint8_t* buffer, int evenIfSuspended) {
    CommandFrame frame(CommandCode::MicroGetMemBlock);
    PutMicroByte(frame, space, address).Into(buffer, length);
    return Finish(Send(frame, evenIfSuspended != 0), frame,
                  [=] { return details::MicroBlock(space, address, length); });
}

std::int16_t CommandSet::DSPGetMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                          std::uint32_t length, std::uint8_t* buffer) {
    CommandFrame frame(CommandCode::DSPGetMemBlock24);
    PutDspWord(frame, dsp, space, address).Into(buffer, length);
    return Run(frame, [=] { return details::DspBlock(dsp, space, address, length); });
}

std::int16_t CommandSet::MicroPutMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                          const std::uint8_t* buffer, int check) {
    return ArmAndWrite(address, check, [&] {
        CommandFrame frame(CommandCode::MicroPutMemBlock);
        PutMicroByte(frame, space, address).Put8(3, LowByte(check)).WithData(buffer, length);
        return Run(frame, [=] { return details::MicroBlock(space, address, length); });
    });
}

std::int16_t CommandSet::DSPPutMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                          std::uint32_t length, const std::uint8_t* buffer) {
    CommandFrame frame(CommandCode::DSPPutMemBlock24);
    PutDspWord(frame, dsp, space, address).WithData(buffer, length);
    return Run(frame, [=] { return details::DspBlock(dsp, space, address, length); });
}

std::int16_t CommandSet::MicroFillMemBlock(std::uint8_t space, std::uint16_t address, std::uint16_t length,
                                           std::uint8_t value) {
    CommandFrame frame(CommandCode::MicroFillMemBlock);
    frame.Put16(0, address).Put16(2, length).Put8(4, space).Put8(5, value);
    return Run(frame, [=] { return details::MicroBlock(space, address, length); });
}

std::int16_t CommandSet::DSPFillMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                           std::uint32_t length, std::uint32_t value) {
    CommandFrame frame(CommandCode::DSPFillMemBlock24);
    frame.Put32(0, address).Put32(4, length).Put32(8, value).Put8(12, dsp).Put8(13, space);
    return Run(frame, [=] { return details::DspBlock(dsp, space, address, length); });
}

std::int16_t CommandSet::MicroWaitBit(std::uint8_t space, std::uint32_t bitAddress, std::uint8_t state,
                                      std::uint16_t timeout, int& value) {
    CommandFrame frame(CommandCode::MicroWaitBit);
    frame.Put32(0, bitAddress).Put16(4, timeout).Put8(6, space).Put8(7, state);
    return RunForBit(frame, value, [=] { return details::MicroBit(space, bitAddress); });
}

std::int16_t CommandSet::DSPWaitBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                    std::uint32_t mask, std::uint8_t state, std::uint16_t timeout,
                                    int& value) {
    CommandFrame frame(CommandCode::DSPWaitBit);
    frame.Put32(0, address).Put32(4, mask).Put16(8, timeout).Put8(10, dsp).Put8(11, space).Put8(12, state);
    return RunForBit(frame, value, [=] { return details::DspMaskState(dsp, space, address, mask, state); });
}

std::int16_t CommandSet::DownloadImage(CommandFrame& frame, const CString& path) {
    if (!IsActive()) {
        return 0;
    }
    std::vector<std::uint8_t> image;
    const std::int16_t status = ReadImageFile(path, 1, image);
    if (status != 0) {
        return status;
    }
    frame.WithData(image.data(), static_cast<std::uint32_t>(image.size()));
    return Run(frame, NoDetail);
}

std::int16_t CommandSet::MicroLoad(std::uint8_t which, const CString& path) {
    CommandFrame frame(CommandCode::MicroLoad);
    frame.Put8(0, which);
    return DownloadImage(frame, path);
}

std::int16_t CommandSet::FPGALoad(const CString& path) {
    CommandFrame frame(CommandCode::FPGALoad);
    return DownloadImage(frame, path);
}

std::int16_t CommandSet::DSPLoad(std::uint8_t dsp, const CString& path, int flag) {
    if (!IsActive()) {
        return 0;
    }
    std::vector<std::uint8_t> image;
    const std::int16_t status = ReadImageFile(GetFullPathName(path), kDspWordBytes, image);
    if (status != 0) {
        return status;
    }
    CommandFrame frame(CommandCode::DSPLoad);
    frame.Put8(0, dsp).Put8(1, LowByte(flag));
    frame.WithData(image.data(), static_cast<std::uint32_t>(image.size()));
    const ExchangeOutcome outcome = Send(frame);
    return outcome.HasFailed() && frame.HasUnitError() ? static_cast<std::int16_t>(outcome.Code())
                                                       : Finish(outcome, frame, NoDetail);
}

std::optional<std::int16_t> CommandSet::DoCommandIfActive(std::uint8_t id, std::uint32_t outLength,
                                                          const std::uint8_t* outData, std::uint32_t inLength,
                                                          std::uint8_t* inData) {
    CommandFrame frame(CommandCode::DoCommand);
    frame.Put8(0, id).WithData(outData, outLength).Into(inData, inLength);
    const ExchangeOutcome outcome = Send(frame);
    if (!outcome.WasSent()) {
        return std::nullopt;
    }
    return outcome.HasFailed() ? ReportGeneralCommand(outcome, id) : std::int16_t{0};
}

std::int16_t CommandSet::DoCommand(std::uint8_t id, std::uint32_t outLength, const std::uint8_t* outData,
                                   std::uint32_t inLength, std::uint8_t* inData) {
    return DoCommandIfActive(id, outLength, outData, inLength, inData).value_or(std::int16_t{0});
}

std::int16_t CommandSet::ReportGeneralCommand(const ExchangeOutcome& outcome, std::uint8_t id) {
    std::array<std::uint8_t, 2> data{};
    const std::int16_t status = MicroGetMemBlock(kSpaceX, kCommandBuffer, data.size(), data.data(), 0);
    return status != 0
               ? status
               : m_transport.Report(outcome, "DoCommand", details::GeneralCommand(id, data[0], data[1]));
}

std::int16_t CommandSet::DSPSendCommand(std::uint8_t dsp, std::uint8_t command) {
    CommandFrame frame(CommandCode::DSPSendCommand);
    frame.Put8(0, dsp).Put8(1, command);
    return Run(frame, [=] { return details::DspCommand(command); });
}

std::int16_t CommandSet::MicroPutBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                                      std::uint8_t onBits) {
    CommandFrame frame(CommandCode::MicroPutBits);
    frame.Put16(4, address).Put8(6, space).Put8(7, offBits).Put8(8, onBits);
    return Run(frame, [=] { return details::MicroBits(space, address, offBits, onBits); });
}

std::int16_t CommandSet::InitMemAddress(std::uint16_t address) {
    std::array<std::uint8_t, 2> bytes{};
    PutBig16(bytes.data(), address);
    CommandFrame frame(CommandCode::DoCommand);
    frame.Put8(0, kCommandArmAddressCheck).WithData(bytes.data(), bytes.size());
    const ExchangeOutcome outcome = Send(frame);
    return outcome.HasFailed() ? m_transport.Report(outcome, "InitMemAddress", {}) : std::int16_t{0};
}

} // namespace kalvio
