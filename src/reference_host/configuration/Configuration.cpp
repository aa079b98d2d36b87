#include "reference_host/configuration/Configuration.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "hardware/Hardware.h"
#include "peripheral_network/bus/PeripheralNetwork.h"
#include "platform/Files.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>
#include <set>
#include <utility>

namespace kalvio::reference_host {

namespace {

// What a snapshot holds goes back as a whole, whatever the user chose for files.
class PlainSwitches {
public:
    explicit PlainSwitches(CHostApplication& application)
        : m_application(application),
          m_discard(std::exchange(application.discardStoredValues, false)),
          m_applyUnsaved(std::exchange(application.applyUnsavedGroups, true)) {}
    ~PlainSwitches() {
        m_application.discardStoredValues = m_discard;
        m_application.applyUnsavedGroups = m_applyUnsaved;
    }
    PlainSwitches(const PlainSwitches&) = delete;
    PlainSwitches& operator=(const PlainSwitches&) = delete;

private:
    CHostApplication& m_application;
    bool m_discard;
    bool m_applyUnsaved;
};

const FileSection* FindIn(const ConfigurationFile& file, std::string_view name) {
    const auto found = std::ranges::find(file.sections, name, &FileSection::name);
    return found != file.sections.end() ? &*found : nullptr;
}

} // namespace

bool ReadConfigurationFile(const CString& path, std::vector<std::uint8_t>& bytes,
                           std::vector<Problem>& problems) {
    switch (ReadFile(path, bytes)) {
    case FileStatus::Ok:
        return true;
    case FileStatus::NotOpened:
        problems.push_back({"file", {}, path + " is missing or may not be read"});
        return false;
    case FileStatus::NoMemory:
        problems.push_back({"file", {}, path + " is too large for a configuration"});
        return false;
    case FileStatus::ReadFailed:
        break;
    }
    problems.push_back({"file", {}, path + " could not be read to its end"});
    return false;
}

ConfigurationFile Configuration::StoreSections() const {
    ConfigurationFile file;
    for (const SectionKind& kind : SectionKinds()) {
        CArchive archive;
        archive.SetFileVersion(kArchiveVersion, kArchiveRevision);
        archive.SetConfigVersion(kConfigurationVersion);
        kind.store(m_documents, archive);
        file.sections.push_back({CString(kind.name), archive.Bytes()});
    }
    return file;
}

std::vector<std::uint8_t> Configuration::Store() const {
    return Encode(StoreSections());
}

std::vector<Problem> Configuration::Save(const CString& path) const {
    const std::vector<std::uint8_t> bytes = Store();
    std::vector<Problem> problems = Check(bytes);
    if (problems.empty()) {
        if (const CString reason = SaveFileKeepingOld(path, bytes); !reason.empty()) {
            problems.push_back({"file", {}, path + " cannot be written: " + reason});
        }
    }
    return problems;
}

LoadOutcome Configuration::Load(const CString& path) const {
    LoadOutcome outcome;
    std::vector<std::uint8_t> bytes;
    return ReadConfigurationFile(path, bytes, outcome.problems) ? LoadBytes(bytes) : outcome;
}

std::vector<Problem> Configuration::Check(std::span<const std::uint8_t> bytes) const {
    std::vector<Problem> problems;
    static_cast<void>(DecodeAndCheck(bytes, problems));
    return problems;
}

ConfigurationFile Configuration::DecodeAndCheck(std::span<const std::uint8_t> bytes,
                                                std::vector<Problem>& problems) const {
    ConfigurationFile file = Decode(bytes, problems);
    // Without a header that holds nothing can be said of the sections.
    const bool headerHolds =
        std::ranges::none_of(problems, [](const Problem& problem) { return problem.section == "header"; });
    if (headerHolds) {
        CheckSections(file, problems);
    }
    return file;
}

void Configuration::CheckSections(const ConfigurationFile& file, std::vector<Problem>& problems) const {
    const bool allRead = problems.empty();
    std::set<CString> seen;
    for (const FileSection& section : file.sections) {
        const SectionKind* kind = FindSection(section.name);
        ProblemList list(problems, section.name);
        if (kind == nullptr) {
            list.Add({}, "is no section of a configuration");
            continue;
        }
        if (!seen.insert(section.name).second) {
            list.Add({}, "must be there once");
            continue;
        }
        CArchive archive = file.ArchiveOf(section);
        const std::size_t before = problems.size();
        kind->check(m_documents, archive, list);
        if (problems.size() == before && archive.Remaining() != 0) {
            list.Add("end",
                     Format("must follow the last field; %zu bytes stand between", archive.Remaining()));
        }
    }
    for (const SectionKind& kind : SectionKinds()) {
        if (allRead && kind.required && FindIn(file, kind.name) == nullptr) {
            ProblemList(problems, kind.name).Add({}, "must be there");
        }
    }
}

LoadOutcome Configuration::LoadBytes(std::span<const std::uint8_t> bytes) const {
    LoadOutcome outcome;
    const ConfigurationFile file = DecodeAndCheck(bytes, outcome.problems);
    if (m_documents.application.regulation->IsRegulationRunning() != 0) {
        outcome.problems.push_back({"regulation", "status", "must not be running while a file is loaded"});
    }
    if (!outcome.problems.empty()) {
        return outcome;
    }
    Apply(file, outcome.problems);
    if (!outcome.problems.empty()) {
        return outcome;
    }
    if (!m_documents.application.discardStoredValues) {
        outcome.notSent = SendToDevices();
    }
    UpdateViews(nullptr, -1, nullptr, 0);
    return outcome;
}

// The checks have found nothing, so that a section that refuses to load is a fault of the checks; the
// documents are put back all the same.
void Configuration::Apply(const ConfigurationFile& file, std::vector<Problem>& problems) const {
    const QuietNetwork quiet(m_documents.network);
    const ConfigurationFile before = StoreSections();
    std::vector<const SectionKind*> applied;
    for (const SectionKind& kind : SectionKinds()) {
        const FileSection* section = FindIn(file, kind.name);
        if (section == nullptr) {
            continue;
        }
        try {
            CArchive archive = file.ArchiveOf(*section);
            kind.load(m_documents, archive);
            applied.push_back(&kind);
        } catch (const CArchiveException& refusal) {
            ProblemList(problems, kind.name).Add({}, refusal.what());
            Restore(before, applied);
            return;
        }
    }
}

// A section that refused has changed nothing; those before it are put back.
void Configuration::Restore(const ConfigurationFile& before,
                            std::span<const SectionKind* const> applied) const {
    const PlainSwitches plain(m_documents.application);
    for (const SectionKind* kind : applied) {
        CArchive archive = before.ArchiveOf(*FindIn(before, kind->name));
        kind->load(m_documents, archive);
    }
}

// The network's document has sent while it loaded, after all others; the generator has not yet.
std::vector<CString> Configuration::SendToDevices() const {
    std::vector<CString> notSent;
    if (m_documents.windows != nullptr) {
        for (const CString& name : std::exchange(m_documents.windows->notRestored, {})) {
            notSent.push_back("window \"" + name + "\" (it could not be opened)");
        }
    }
    CGeneratorSettings& generator = *m_documents.application.generator;
    generator.UpdateHardware(kCtrlGeneratorAmplitudeA);
    const CHardware* hardware = m_documents.application.hardware;
    if (hardware == nullptr || hardware->IsHardwarePresent() == 0) {
        return notSent; // there is nobody to send to
    }
    if (const std::int16_t status = generator.LastStatus(); status != 0) {
        notSent.push_back(Format("generator (status %d)", status));
    }
    for (const auto& [name, code] : m_documents.network.ArraysNotSent()) {
        notSent.push_back("array \"" + name + "\" (" + LoadText(GetErrorMessageID(code)) + ")");
    }
    for (const auto& [address, adapter] :
         m_documents.network.GetFormatConverterSettings()->GetKEDAAdapterSettings()->Adapters()) {
        if (adapter->IsNotResponding() != 0) {
            notSent.push_back(Format("adapter %d (it does not respond)", address));
        }
    }
    return notSent;
}

} // namespace kalvio::reference_host
