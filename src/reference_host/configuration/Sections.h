#pragma once

// The sections of a configuration: which document each is the archive of, how it is checked and loaded.

#include "host/HostApplication.h"
#include "peripheral_network/KvNetSettings.h"
#include "reference_host/configuration/Problem.h"
#include "reference_host/configuration/WindowLayouts.h"

#include <span>
#include <string_view>

namespace kalvio::reference_host {

// What a configuration is made of. The application has all its documents but, perhaps, the windows.
struct Documents {
    CHostApplication& application;
    CKvNetSettings& network;
    WindowLayouts* windows = nullptr;
};

struct SectionKind {
    std::string_view name;
    bool required; // by a file
    void (*store)(const Documents& documents, CArchive& archive);
    // Reads the section and lists all that is wrong with it, without touching a document.
    void (*check)(const Documents& documents, CArchive& archive, ProblemList& problems);
    // Loads it; throws CArchiveException for damage, and has changed nothing then. That of the network sends
    // to devices.
    void (*load)(const Documents& documents, CArchive& archive);
};

// In the order in which they are stored, checked and loaded: what others refer to first, then the network,
// which sends to its devices, then the windows, which show what was loaded.
[[nodiscard]] std::span<const SectionKind> SectionKinds();
// Null for no section.
[[nodiscard]] const SectionKind* FindSection(std::string_view name);

inline constexpr std::string_view kSectionNetwork = "network";

// The documents that are made of fields.
struct FieldSection {
    std::string_view name;
    CSettingsData& (*document)(const Documents& documents);
};
[[nodiscard]] std::span<const FieldSection> FieldSections();
// By its name in scripts, or its title.
[[nodiscard]] CString FieldName(const FieldRow& row);

// The layouts of a window section. Throws CArchiveException for damage.
[[nodiscard]] std::vector<WindowLayout> ReadLayouts(CArchive& archive);

} // namespace kalvio::reference_host
