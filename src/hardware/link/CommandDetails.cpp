#include "hardware/link/CommandDetails.h"

namespace kalvio::details {

namespace {

CString Micro(std::uint8_t space, std::uint16_t address) {
    return Format("Params: memspace 0x%X, memadr 0x%X", unsigned{space}, unsigned{address});
}

CString Dsp(std::uint8_t dsp, std::uint8_t space, std::uint32_t address) {
    return Format("Params: DSP %s, memspace 0x%X, memadr 0x%X", dsp == 0 ? "A" : "B", unsigned{space},
                  address);
}

} // namespace

CString MicroMemory(std::uint8_t space, std::uint16_t address, std::uint8_t data) {
    return Micro(space, address) + Format(", memdat 0x%X\n", unsigned{data});
}

CString MicroBit(std::uint8_t space, std::uint32_t bitAddress) {
    return Format("Params: memspace 0x%X, bitadr 0x%X\n", unsigned{space}, bitAddress);
}

CString MicroBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits, std::uint8_t onBits) {
    return Micro(space, address) +
           Format(", offbits 0x%X, onbits 0x%X\n", unsigned{offBits}, unsigned{onBits});
}

CString MicroBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length) {
    return Micro(space, address) + Format(", length %d\n", static_cast<int>(length));
}

CString DspAddress(std::uint8_t dsp, std::uint8_t space, std::uint32_t address) {
    return Dsp(dsp, space, address) + "\n";
}

CString DspData(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t data) {
    return Dsp(dsp, space, address) + Format(", memdat 0x%X\n", data);
}

CString DspMask(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask) {
    return Dsp(dsp, space, address) + Format(", bitmask 0x%X\n", mask);
}

CString DspMaskState(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                     std::uint8_t state) {
    return Dsp(dsp, space, address) + Format(", bitmask 0x%X, state %d\n", mask, int{state});
}

CString DspBlock(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t length) {
    return Dsp(dsp, space, address) + Format(", length %d\n", static_cast<int>(length));
}

CString DspCommand(std::uint8_t command) {
    return Format("(Command 0x%X)\n", unsigned{command});
}

CString GeneralCommand(std::uint8_t id, std::uint8_t first, std::uint8_t second) {
    return Format("(Command ID %d - 1st 2 bytes of data are 0x%X and 0x%X)\n", int{id}, unsigned{first},
                  unsigned{second});
}

} // namespace kalvio::details
