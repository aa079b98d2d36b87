#include "hardware/CommandSet.h"

#include "hardware/CommandDetails.h"
#include "hardware/ImageFile.h"
#include "platform/Files.h"

#include <array>
#include <mutex>

namespace kalvio {

namespace {

// The unit keeps the data of the general command that failed here, in 'X'.
constexpr std::uint16_t kCommandBuffer = 0x7900;
constexpr std::size_t kDspWordBytes = 3;

constexpr std::uint8_t LowByte(int value) {
    return static_cast<std::uint8_t>(value);
}

} // namespace

template<typename Detail>
std::int16_t CommandSet::Run(CommandFrame& frame, Detail detail) {
    const std::uint16_t code = m_transport.USBTransfer(frame.Exchange());
    return code == kUsbOk ? std::int16_t{0} : m_transport.ReportUSBError(code, frame.Name(), detail());
}

std::int16_t CommandSet::Run(CommandFrame& frame) {
    return Run(frame, [] { return CString(); });
}

template<typename Detail>
std::int16_t CommandSet::RunIfActive(CommandFrame& frame, Detail detail) {
    return IsActive() ? Run(frame, detail) : std::int16_t{0};
}

template<typename Detail>
std::int16_t CommandSet::RunForBit(CommandFrame& frame, int& value, Detail detail) {
    if (!IsActive()) {
        return 0;
    }
    const std::int16_t status = Run(frame, detail);
    value = frame.ResultByte();
    return status;
}

template<typename Write>
std::int16_t CommandSet::ArmAndWrite(std::uint16_t address, int check, Write write) {
    if (!IsActive()) {
        return 0;
    }
    if (check == 0) {
        return write();
    }
    const std::scoped_lock pair(m_hardwareAccess);
    const std::int16_t status = InitMemAddress(address);
    return status != 0 ? status : write();
}

std::int16_t CommandSet::StartOrStop(CommandCode code, std::uint16_t parameter, int force) {
    if (!m_transport.IsOpen() || (IsSuspended() && force == 0)) {
        return 0;
    }
    CommandFrame frame(code);
    frame.Put16(0, parameter);
    return Run(frame);
}

std::int16_t CommandSet::Initialise(std::uint16_t parameter, int force) {
    return StartOrStop(CommandCode::Initialise, parameter, force);
}

std::int16_t CommandSet::Terminate(std::uint16_t parameter, int force) {
    return StartOrStop(CommandCode::Terminate, parameter, force);
}

std::int16_t CommandSet::MicroGetMem(std::uint8_t space, std::uint16_t address, std::uint8_t& data) {
    if (!IsActive()) {
        return 0;
    }
    CommandFrame frame(CommandCode::MicroGetMem);
    frame.Put16(0, address).Put8(2, space);
    const std::int16_t status =
        Run(frame, [&] { return details::MicroMemory(space, address, frame.ResultByte()); });
    data = frame.ResultByte();
    return status;
}

std::int16_t CommandSet::MicroGetBit(std::uint8_t space, std::uint32_t bitAddress, int& value) {
    CommandFrame frame(CommandCode::MicroGetBit);
    frame.Put32(0, bitAddress).Put8(4, space);
    return RunForBit(frame, value, [=] { return details::MicroBit(space, bitAddress); });
}

std::int16_t CommandSet::DSPGetMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                     std::uint32_t& data) {
    if (!IsActive()) {
        return 0;
    }
    CommandFrame frame(CommandCode::DSPGetMem24);
    frame.Put32(0, address).Put8(4, dsp).Put8(5, space);
    const std::int16_t status = Run(frame, [=] { return details::DspAddress(dsp, space, address); });
    data = frame.ResultWord();
    return status;
}

std::int16_t CommandSet::DSPGetBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, int& value) {
    CommandFrame frame(CommandCode::DSPGetBit);
    frame.Put32(0, address).Put32(4, mask).Put8(8, dsp).Put8(9, space);
    return RunForBit(frame, value, [=] { return details::DspMask(dsp, space, address, mask); });
}

std::int16_t CommandSet::MicroPutMem(std::uint8_t space, std::uint16_t address, std::uint8_t data,
                                     int check) {
    return ArmAndWrite(address, check, [&] {
        CommandFrame frame(CommandCode::MicroPutMem);
        frame.Put16(0, address).Put8(2, space).Put8(3, data).Put8(4, LowByte(check));
        return Run(frame, [=] { return details::MicroMemory(space, address, data); });
    });
}

std::int16_t CommandSet::MicroPutBit(std::uint8_t space, std::uint32_t bitAddress, int value) {
    CommandFrame frame(CommandCode::MicroPutBit);
    frame.Put32(0, bitAddress).Put8(4, space).Put8(5, LowByte(value));
    return RunIfActive(frame, [=] { return details::MicroBit(space, bitAddress); });
}

std::int16_t CommandSet::DSPPutMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                     std::uint32_t data) {
    CommandFrame frame(CommandCode::DSPPutMem24);
    frame.Put32(0, address).Put32(4, data).Put8(8, dsp).Put8(9, space);
    return RunIfActive(frame, [=] { return details::DspData(dsp, space, address, data); });
}

std::int16_t CommandSet::DSPPutBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, int state) {
    CommandFrame frame(CommandCode::DSPPutBit);
    frame.Put32(0, address).Put32(4, mask).Put8(8, dsp).Put8(9, space).Put8(10, LowByte(state));
    return RunIfActive(frame, [=] { return details::DspMask(dsp, space, address, mask); });
}

std::int16_t CommandSet::MicroGetMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                          std::uint8_t* buffer, int evenIfSuspended) {
    if (!m_transport.IsOpen() || (IsSuspended() && evenIfSuspended == 0)) {
        return 0;
    }
    CommandFrame frame(CommandCode::MicroGetMemBlock);
    frame.Put16(0, address).Put8(2, space).Receive(buffer, length);
    return Run(frame, [=] { return details::MicroBlock(space, address, length); });
}

std::int16_t CommandSet::DSPGetMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                          std::uint32_t length, std::uint8_t* buffer) {
    CommandFrame frame(CommandCode::DSPGetMemBlock24);
    frame.Put32(0, address).Put8(4, dsp).Put8(5, space).Receive(buffer, length);
    return RunIfActive(frame, [=] { return details::DspBlock(dsp, space, address, length); });
}

std::int16_t CommandSet::MicroPutMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                          const std::uint8_t* buffer, int check) {
    return ArmAndWrite(address, check, [&] {
        CommandFrame frame(CommandCode::MicroPutMemBlock);
        frame.Put16(0, address).Put8(2, space).Put8(3, LowByte(check)).Send(buffer, length);
        return Run(frame, [=] { return details::MicroBlock(space, address, length); });
    });
}

std::int16_t CommandSet::DSPPutMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                          std::uint32_t length, const std::uint8_t* buffer) {
    CommandFrame frame(CommandCode::DSPPutMemBlock24);
    frame.Put32(0, address).Put8(4, dsp).Put8(5, space).Send(buffer, length);
    return RunIfActive(frame, [=] { return details::DspBlock(dsp, space, address, length); });
}

std::int16_t CommandSet::MicroFillMemBlock(std::uint8_t space, std::uint16_t address, std::uint16_t length,
                                           std::uint8_t value) {
    CommandFrame frame(CommandCode::MicroFillMemBlock);
    frame.Put16(0, address).Put16(2, length).Put8(4, space).Put8(5, value);
    return RunIfActive(frame, [=] { return details::MicroBlock(space, address, length); });
}

std::int16_t CommandSet::DSPFillMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                           std::uint32_t length, std::uint32_t value) {
    CommandFrame frame(CommandCode::DSPFillMemBlock24);
    frame.Put32(0, address).Put32(4, length).Put32(8, value).Put8(12, dsp).Put8(13, space);
    return RunIfActive(frame, [=] { return details::DspBlock(dsp, space, address, length); });
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
    frame.Send(image.data(), static_cast<std::uint32_t>(image.size()));
    return Run(frame);
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
    frame.Send(image.data(), static_cast<std::uint32_t>(image.size()));
    const std::uint16_t code = m_transport.USBTransfer(frame.Exchange());
    if (code == kUsbOk) {
        return 0;
    }
    return frame.HasUnitError() ? static_cast<std::int16_t>(code)
                                : m_transport.ReportUSBError(code, frame.Name(), {});
}

std::int16_t CommandSet::DoCommand(std::uint8_t id, std::uint32_t outLength, const std::uint8_t* outData,
                                   std::uint32_t inLength, std::uint8_t* inData) {
    if (!IsActive()) {
        return 0;
    }
    CommandFrame frame(CommandCode::DoCommand);
    frame.Put8(0, id).Send(outData, outLength).Receive(inData, inLength);
    const std::uint16_t code = m_transport.USBTransfer(frame.Exchange());
    return code == kUsbOk ? std::int16_t{0} : ReportGeneralCommand(code, id);
}

std::int16_t CommandSet::ReportGeneralCommand(std::uint16_t code, std::uint8_t id) {
    std::array<std::uint8_t, 2> data{};
    const std::int16_t status = MicroGetMemBlock(kSpaceX, kCommandBuffer, data.size(), data.data(), 0);
    if (status != 0) {
        return status;
    }
    return m_transport.ReportUSBError(code, ShapeOf(CommandCode::DoCommand).name,
                                      details::GeneralCommand(id, data[0], data[1]));
}

std::int16_t CommandSet::DSPSendCommand(std::uint8_t dsp, std::uint8_t command) {
    CommandFrame frame(CommandCode::DSPSendCommand);
    frame.Put8(0, dsp).Put8(1, command);
    return RunIfActive(frame, [=] { return details::DspCommand(command); });
}

std::int16_t CommandSet::MicroPutBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                                      std::uint8_t onBits) {
    CommandFrame frame(CommandCode::MicroPutBits);
    frame.Put16(4, address).Put8(6, space).Put8(7, offBits).Put8(8, onBits);
    return RunIfActive(frame, [=] { return details::MicroBits(space, address, offBits, onBits); });
}

std::int16_t CommandSet::InitMemAddress(std::uint16_t address) {
    if (!IsActive()) {
        return 0;
    }
    const std::array<std::uint8_t, 2> bytes{static_cast<std::uint8_t>(address >> 8), LowByte(address)};
    CommandFrame frame(CommandCode::DoCommand);
    frame.Put8(0, kCommandArmAddressCheck).Send(bytes.data(), bytes.size());
    const std::uint16_t code = m_transport.USBTransfer(frame.Exchange());
    return code == kUsbOk ? std::int16_t{0} : m_transport.ReportUSBError(code, "InitMemAddress", {});
}

} // namespace kalvio
