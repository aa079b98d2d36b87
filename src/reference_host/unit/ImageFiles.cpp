#include "reference_host/unit/ImageFiles.h"

#include "platform/Files.h"
#include "platform/Registry.h"
#include "platform/Text.h"

#include <algorithm>
#include <iterator>
#include <random>
#include <vector>

namespace kalvio::reference_host {

namespace {

struct Image {
    const char* registryName;
    const char* fileName;
    std::size_t bytes;
};

// The DSP images are whole 24-bit words.
constexpr Image kImages[] = {
    {"FPGAFile", "gate-array.bin", 4096},
    {"DSPAFile", "dsp-a.bin", 1536},
    {"DSPBFile", "dsp-b.bin", 1536},
};

constexpr int kAttempts = 16;

// A new directory of a name that nobody else has; with an error where it would have been.
std::filesystem::path MakeTemporaryDirectory(std::error_code& error) {
    std::filesystem::path base = std::filesystem::temp_directory_path(error);
    std::random_device random;
    for (int attempt = 0; attempt < kAttempts; ++attempt) {
        std::filesystem::path directory = base / Format("kalvio-bench-%08x", random());
        if (std::filesystem::create_directory(directory, error)) {
            return directory;
        }
    }
    if (!error) {
        error = std::make_error_code(std::errc::file_exists);
    }
    return base;
}

std::filesystem::path MakeDirectoryBeside(const std::string& registryFile, std::error_code& error) {
    std::filesystem::path directory = GetFullPathName(registryFile + ".images");
    std::filesystem::create_directory(directory, error);
    return directory;
}

CString MakeContent(const Image& image) {
    CString content(image.bytes, '\0');
    for (std::size_t i = 0; i < content.size(); ++i) {
        content[i] = static_cast<char>(i * 31 + image.bytes);
    }
    return content;
}

bool IsNamed(const Image& image) {
    return !CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", image.registryName, "").empty();
}

} // namespace

ImageFiles::~ImageFiles() {
    std::error_code ignored;
    if (!m_temporary.empty()) {
        std::filesystem::remove_all(m_temporary, ignored);
    }
}

bool ImageFiles::Create(const std::string& registryFile) {
    if (std::all_of(std::begin(kImages), std::end(kImages), IsNamed)) {
        return true;
    }
    std::error_code error;
    const std::filesystem::path directory =
        registryFile.empty() ? MakeTemporaryDirectory(error) : MakeDirectoryBeside(registryFile, error);
    if (error) {
        m_failure = Format("no directory for them in \"%s\": %s", directory.c_str(), error.message().c_str());
        return false;
    }
    if (registryFile.empty()) {
        m_temporary = directory;
    }
    for (const Image& image : kImages) {
        if (IsNamed(image)) {
            continue;
        }
        const CString path = (directory / image.fileName).string();
        if (!WriteFileAtomically(path, MakeContent(image))) {
            m_failure = Format("\"%s\" cannot be written", path.c_str());
            return false;
        }
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", image.registryName, path);
    }
    if (!registryFile.empty()) {
        m_note = Format("program images of the simulated unit are in \"%s\" and named in \"%s\"",
                        directory.c_str(), registryFile.c_str());
    }
    return true;
}

std::string ImageFiles::Unreadable() {
    for (const Image& image : kImages) {
        const CString path =
            CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", image.registryName, "");
        std::vector<std::uint8_t> bytes;
        if (ReadFile(path, bytes) != FileStatus::Ok) {
            return Format(
                "the program image \"%s\" cannot be read (registry: machine, key Hardware, value %s)",
                path.c_str(), image.registryName);
        }
    }
    return {};
}

} // namespace kalvio::reference_host
