#pragma once

// Saves all settings of a program in one file and loads them from one, whole or not at all.

#include "reference_host/configuration/ConfigurationFile.h"
#include "reference_host/configuration/Sections.h"

#include <span>
#include <vector>

namespace kalvio::reference_host {

struct LoadOutcome {
    std::vector<Problem> problems; // any: the file was refused, and all is as it was
    std::vector<CString> notSent;  // loaded, but these did not reach their devices, with the reason

    [[nodiscard]] bool Ok() const { return problems.empty(); }
};

// The documents must outlive it. The load switches of the application hold. User-interface thread; hold no
// lock.
class Configuration {
public:
    explicit Configuration(const Documents& documents) : m_documents(documents) {}

    // Writes the file in one step and keeps the one before as `path` + "~". Any problem: what stood there
    // stands there still. Documents that no file may hold are refused, so that what was saved can be loaded.
    [[nodiscard]] std::vector<Problem> Save(const CString& path) const;
    // Reads and checks the whole file before anything is applied. What is sent to devices is sent last. Views
    // are told at the end, with the hint -1. Refused while a regulation runs.
    LoadOutcome Load(const CString& path) const;

    // The same with the bytes of a file.
    [[nodiscard]] std::vector<std::uint8_t> Store() const;
    LoadOutcome LoadBytes(std::span<const std::uint8_t> bytes) const;
    // All that LoadBytes would refuse of the file itself; nothing is touched.
    [[nodiscard]] std::vector<Problem> Check(std::span<const std::uint8_t> bytes) const;

    [[nodiscard]] const Documents& Parts() const { return m_documents; }

private:
    [[nodiscard]] ConfigurationFile StoreSections() const;
    [[nodiscard]] ConfigurationFile DecodeAndCheck(std::span<const std::uint8_t> bytes,
                                                   std::vector<Problem>& problems) const;
    void CheckSections(const ConfigurationFile& file, std::vector<Problem>& problems) const;
    void Apply(const ConfigurationFile& file, std::vector<Problem>& problems) const;
    void Restore(const ConfigurationFile& before, std::span<const SectionKind* const> applied) const;
    [[nodiscard]] std::vector<CString> SendToDevices() const;

    Documents m_documents;
};

// Reads a file for Check and LoadBytes; false with a problem when it cannot be read.
bool ReadConfigurationFile(const CString& path, std::vector<std::uint8_t>& bytes,
                           std::vector<Problem>& problems);

} // namespace kalvio::reference_host
