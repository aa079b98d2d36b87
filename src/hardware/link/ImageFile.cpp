#include "hardware/link/ImageFile.h"

#include "hardware/CommandSet.h"
#include "platform/Files.h"

#include <new>

namespace kalvio {

namespace {

std::int16_t StatusOf(FileStatus read) {
    switch (read) {
    case FileStatus::Ok:
        return 0;
    case FileStatus::NoMemory:
        return kImageNoMemory;
    default:
        return kImageNotOpened;
    }
}

} // namespace

std::int16_t ReadImageFile(const CString& path, std::size_t unitBytes, std::vector<std::uint8_t>& image) {
    const std::int16_t status = StatusOf(ReadFile(path, image));
    if (status != 0) {
        return status;
    }
    try {
        image.resize((image.size() + unitBytes - 1) / unitBytes * unitBytes);
    } catch (const std::bad_alloc&) {
        return kImageNoMemory;
    }
    return 0;
}

} // namespace kalvio
