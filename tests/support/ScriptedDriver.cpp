#include "support/ScriptedDriver.h"

#include "platform/Text.h"
#include "platform/formats/Endian.h"

#include <algorithm>

namespace kalvio::test {

namespace {

constexpr std::uint16_t kOutPipe = 1;
constexpr std::uint16_t kInPipe = 8;
constexpr std::uint32_t kTransferTimeout = 3000;
constexpr std::uint32_t kDrainTimeout = 10;
constexpr std::uint32_t kDrainBytes = 65472;

std::vector<std::uint8_t> TransferBlock(std::uint16_t pipe, std::uint32_t timeout) {
    std::vector<std::uint8_t> block(8);
    PutLittle16(block.data(), pipe);
    PutLittle32(block.data() + 4, timeout);
    return block;
}

std::vector<std::uint8_t> VendorBlock(std::uint8_t request, std::uint16_t value) {
    std::vector<std::uint8_t> block{0, 2, 0, 0, request, 0, 0, 0, 0, 0};
    PutLittle16(&block[6], value);
    return block;
}

int Digit(char digit) {
    return digit <= '9' ? digit - '0' : (digit | 0x20) - 'a' + 10;
}

} // namespace

std::vector<std::uint8_t> Hex(std::string_view digits) {
    std::string compact;
    std::copy_if(digits.begin(), digits.end(), std::back_inserter(compact), [](char c) { return c != ' '; });
    std::vector<std::uint8_t> bytes;
    for (std::size_t at = 0; at + 1 < compact.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(Digit(compact[at]) * 16 + Digit(compact[at + 1])));
    }
    return bytes;
}

std::string ToHex(std::span<const std::uint8_t> bytes) {
    std::string digits;
    for (const std::uint8_t byte : bytes) {
        digits += Format("%02X", unsigned{byte});
    }
    return digits;
}

ScriptedDriver& ScriptedDriver::Add(Step step) {
    m_steps.push_back(std::move(step));
    return *this;
}

ScriptedDriver& ScriptedDriver::Write(std::string_view hex) {
    Step step{.code = kControlBulkWrite, .input = TransferBlock(kOutPipe, kTransferTimeout)};
    step.toUnit = Hex(hex);
    step.length = static_cast<std::uint32_t>(step.toUnit.size());
    return Add(std::move(step));
}

ScriptedDriver& ScriptedDriver::WriteBytes(std::uint32_t length) {
    return Add({.code = kControlBulkWrite,
                .input = TransferBlock(kOutPipe, kTransferTimeout),
                .length = length,
                .anyBytes = true});
}

ScriptedDriver& ScriptedDriver::Read(std::string_view hex) {
    Step step{.code = kControlBulkRead, .input = TransferBlock(kInPipe, kTransferTimeout)};
    step.fromUnit = Hex(hex);
    step.length = static_cast<std::uint32_t>(step.fromUnit.size());
    return Add(std::move(step));
}

ScriptedDriver& ScriptedDriver::ReadBytes(std::uint32_t length) {
    return Add({.code = kControlBulkRead,
                .input = TransferBlock(kInPipe, kTransferTimeout),
                .fromUnit = std::vector<std::uint8_t>(length),
                .length = length});
}

ScriptedDriver& ScriptedDriver::DrainRead() {
    return Add({.code = kControlBulkRead,
                .input = TransferBlock(kInPipe, kDrainTimeout),
                .fromUnit = {0xEE},
                .length = kDrainBytes});
}

ScriptedDriver& ScriptedDriver::ResetEndpoint(int endpoint) {
    return Add(
        {.code = kControlVendorRequest, .input = VendorBlock(0xB0, static_cast<std::uint16_t>(endpoint))});
}

ScriptedDriver& ScriptedDriver::Pairing(std::uint16_t word) {
    return Add({.code = kControlVendorRequest, .input = VendorBlock(0xB1, word)});
}

ScriptedDriver& ScriptedDriver::ResetPipe(int pipe) {
    std::vector<std::uint8_t> number(4);
    PutLittle32(number.data(), static_cast<std::uint32_t>(pipe));
    return Add({.code = kControlResetPipe, .input = std::move(number)});
}

ScriptedDriver& ScriptedDriver::ResetDevice() {
    return Add({.code = kControlResetDevice});
}

ScriptedDriver& ScriptedDriver::LastError(std::uint32_t status) {
    std::vector<std::uint8_t> bytes(4);
    PutLittle32(bytes.data(), status);
    return Add({.code = kControlLastUsbError, .fromUnit = std::move(bytes), .length = 4});
}

ScriptedDriver& ScriptedDriver::Descriptor(std::string_view hex) {
    return Add({.code = kControlGetDescriptor, .fromUnit = Hex(hex), .length = 18});
}

ScriptedDriver& ScriptedDriver::Fails(std::uint32_t error) {
    m_steps.back().ok = false;
    m_steps.back().error = error;
    return *this;
}

std::string ScriptedDriver::Describe(const Step& step) {
    return Format("request 0x%08X, input %s, %u bytes of data", step.code, ToHex(step.input).c_str(),
                  step.length);
}

std::string ScriptedDriver::Compare(const Step& step, const DriverRequest& request) {
    const Step got{.code = request.code,
                   .input = {request.input.begin(), request.input.end()},
                   .toUnit = {request.dataToUnit.begin(), request.dataToUnit.end()},
                   .fromUnit = {},
                   .length =
                       static_cast<std::uint32_t>(request.dataToUnit.size() + request.dataFromUnit.size())};
    if (Describe(got) != Describe(step)) {
        return "expected " + Describe(step) + ", got " + Describe(got);
    }
    if (!step.anyBytes && got.toUnit != step.toUnit) {
        return "expected bytes " + ToHex(step.toUnit) + ", got " + ToHex(got.toUnit);
    }
    return {};
}

std::vector<std::string> ScriptedDriver::Mismatches() const {
    std::vector<std::string> all = m_mismatches;
    for (const Step& step : m_steps) {
        all.push_back("never came: " + Describe(step));
    }
    return all;
}

DeviceHandle ScriptedDriver::Open(std::string_view name) {
    openedNames.emplace_back(name);
    return openFails ? DeviceHandle::None : DeviceHandle{1};
}

DriverReply ScriptedDriver::Control(DeviceHandle, const DriverRequest& request) {
    if (m_steps.empty()) {
        m_mismatches.push_back(Format("beyond the script: request 0x%08X", request.code));
        return {};
    }
    const Step step = std::move(m_steps.front());
    m_steps.pop_front();
    const std::string mismatch = Compare(step, request);
    if (!mismatch.empty()) {
        m_mismatches.push_back(mismatch);
        return {};
    }
    const std::size_t count = std::min(step.fromUnit.size(), request.dataFromUnit.size());
    if (step.ok) {
        std::copy_n(step.fromUnit.begin(), count, request.dataFromUnit.begin());
    }
    const std::size_t moved = request.dataToUnit.empty() ? count : request.dataToUnit.size();
    return {step.ok, static_cast<std::uint32_t>(step.ok ? moved : 0), step.error};
}

void ScriptedDriver::Close(DeviceHandle) {
    ++closed;
}

} // namespace kalvio::test
