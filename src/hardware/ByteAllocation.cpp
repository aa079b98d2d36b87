#include "hardware/ByteAllocation.h"

#include <atomic>
#include <new>
#include <stdexcept>

namespace kalvio {

namespace {

std::atomic<AllocationGate> installedGate{nullptr};

} // namespace

AllocationGate InstallAllocationGate(AllocationGate gate) {
    return installedGate.exchange(gate);
}

bool AllocateBytes(std::vector<std::uint8_t>& buffer, std::size_t count) {
    std::vector<std::uint8_t>().swap(buffer); // a replaced buffer goes before the new one comes
    const AllocationGate gate = installedGate.load();
    if (gate != nullptr && !gate(count)) {
        return false;
    }
    try {
        buffer.resize(count);
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

} // namespace kalvio
