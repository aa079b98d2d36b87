#include "platform/Files.h"

#include <filesystem>
#include <system_error>

namespace kalvio {

CString GetFullPathName(const CString& path) {
    if (path.empty()) {
        return {};
    }
    std::error_code error;
    const std::filesystem::path full = std::filesystem::absolute(path, error);
    return error ? path : full.lexically_normal().string();
}

} // namespace kalvio
