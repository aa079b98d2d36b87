#pragma once

#include "platform/Text.h"

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>

namespace kalvio::test {

// A folder of its own for one test, removed afterwards.
class ScratchFolder {
public:
    ScratchFolder() {
        CString pattern = (std::filesystem::temp_directory_path() / "kalvio-XXXXXX").string();
        m_path = mkdtemp(pattern.data());
    }
    ~ScratchFolder() { std::filesystem::remove_all(m_path); }
    ScratchFolder(const ScratchFolder&) = delete;
    ScratchFolder& operator=(const ScratchFolder&) = delete;

    [[nodiscard]] CString Path(const CString& name) const { return (m_path / name).string(); }

private:
    std::filesystem::path m_path;
};

inline CString FileText(const CString& path) {
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

inline void WriteText(const CString& path, const CString& text) {
    std::ofstream(path, std::ios::binary) << text;
}

} // namespace kalvio::test
