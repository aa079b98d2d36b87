#pragma once

// The file of a configuration: a header with the versions of the archives, then one section a document.
// docs/configurations.md shows the bytes.

#include "platform/Archive.h"
#include "reference_host/configuration/Problem.h"

#include <cstdint>
#include <span>
#include <vector>

namespace kalvio::reference_host {

// The versions of what is saved now.
inline constexpr std::uint16_t kArchiveVersion = 101;
inline constexpr std::uint16_t kArchiveRevision = 99;
inline constexpr std::uint16_t kConfigurationVersion = 21;

struct FileSection {
    CString name; // at most 255 bytes
    std::vector<std::uint8_t> bytes;
};

struct ConfigurationFile {
    std::uint16_t version = kArchiveVersion; // with the revision, for CheckFileVersion of the archives
    std::uint16_t revision = kArchiveRevision;
    std::uint16_t configuration = kConfigurationVersion; // for their GetConfigVersion
    std::vector<FileSection> sections;

    // An archive that loads from the section and knows the versions; the section must outlive it.
    [[nodiscard]] CArchive ArchiveOf(const FileSection& section) const;
};

// Any thread.
[[nodiscard]] std::vector<std::uint8_t> Encode(const ConfigurationFile& file);
// Takes the file apart and checks lengths, checksums and versions; what is wrong is added to `problems`. A
// section whose checksum is wrong, or that could not be told from the others, is left out. Any thread.
[[nodiscard]] ConfigurationFile Decode(std::span<const std::uint8_t> bytes, std::vector<Problem>& problems);

} // namespace kalvio::reference_host
