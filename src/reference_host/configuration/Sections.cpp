#include "reference_host/configuration/Sections.h"

#include "reference_host/configuration/FieldCheck.h"
#include "reference_host/configuration/NetworkCheck.h"
#include "regulation/RegulationSettings.h"
#include "settling/SettlingDetails.h"

#include <algorithm>

namespace kalvio::reference_host {

namespace {

template<auto Document>
CSettingsData& Member(const Documents& documents) {
    return *(documents.application.*Document);
}

template<auto Document>
void Serialize(const Documents& documents, CArchive& archive) {
    Member<Document>(documents).Serialize(archive);
}

template<auto Document>
void Check(const Documents& documents, CArchive& archive, ProblemList& problems) {
    CheckFields(archive, RowsInArchiveOrder(Member<Document>(documents).FieldRows()), problems);
}

// Up to version 100, revision 98, the first of seven groups served the first four of today.
void CheckSettling(const Documents& documents, CArchive& archive, ProblemList& problems) {
    constexpr int kCurrentVersion = 100;
    constexpr int kCurrentRevision = 99;
    constexpr int kServedByFirst = 4;
    std::vector<const FieldRow*> rows =
        RowsInArchiveOrder(documents.application.settlingDetails->FieldRows());
    if (archive.CheckFileVersion(kCurrentVersion, kCurrentRevision) < 0) {
        std::erase_if(rows,
                      [](const FieldRow* row) { return row->group > 0 && row->group < kServedByFirst; });
    }
    CheckFields(archive, rows, problems);
}

void SerializeFft(const Documents& documents, CArchive& archive) {
    documents.application.fftParameters->Serialize(archive);
    documents.application.fftDetectors->Serialize(archive);
}

void CheckFft(const Documents& documents, CArchive& archive, ProblemList& problems) {
    if (!CheckFields(archive, RowsInArchiveOrder(documents.application.fftParameters->FieldRows()),
                     problems)) {
        return;
    }
    try {
        CFFTDetectorList scratch;
        scratch.Serialize(archive);
    } catch (const CArchiveException& damage) {
        problems.Add("detectors", damage.what());
    }
}

void SerializeNetwork(const Documents& documents, CArchive& archive) {
    documents.network.Serialize(archive);
}

void StoreLayouts(const Documents& documents, CArchive& archive) {
    const std::vector<WindowLayout> layouts =
        documents.windows != nullptr ? documents.windows->Collect() : std::vector<WindowLayout>();
    archive.WriteUInt16(static_cast<std::uint16_t>(layouts.size()));
    for (const WindowLayout& layout : layouts) {
        archive.WriteString(layout.name);
        archive.WriteCount(static_cast<std::uint32_t>(layout.bytes.size()));
        archive.WriteBytes(layout.bytes);
    }
}

void CheckLayouts(const Documents&, CArchive& archive, ProblemList& problems) {
    try {
        static_cast<void>(ReadLayouts(archive));
    } catch (const CArchiveException& damage) {
        problems.Add("layouts", damage.what());
    }
}

void LoadLayouts(const Documents& documents, CArchive& archive) {
    const std::vector<WindowLayout> layouts = ReadLayouts(archive);
    if (documents.windows != nullptr && !documents.application.discardStoredValues) {
        documents.windows->notRestored = documents.windows->Restore(layouts);
    }
}

constexpr auto kAnalyser = &CHostApplication::analyser;
constexpr auto kGenerator = &CHostApplication::generator;
constexpr auto kSettling = &CHostApplication::settlingDetails;
constexpr auto kRegulation = &CHostApplication::regulation;
constexpr auto kFft = &CHostApplication::fftParameters;

constexpr SectionKind kKinds[] = {
    {"analyser", false, Serialize<kAnalyser>, Check<kAnalyser>, Serialize<kAnalyser>},
    {"generator", false, Serialize<kGenerator>, Check<kGenerator>, Serialize<kGenerator>},
    {"fft", false, SerializeFft, CheckFft, SerializeFft},
    {"settling", true, Serialize<kSettling>, CheckSettling, Serialize<kSettling>},
    {"regulation", true, Serialize<kRegulation>, Check<kRegulation>, Serialize<kRegulation>},
    {kSectionNetwork, true, SerializeNetwork,
     [](const Documents&, CArchive& archive, ProblemList& problems) { CheckNetwork(archive, problems); },
     SerializeNetwork},
    {"windows", false, StoreLayouts, CheckLayouts, LoadLayouts},
};

constexpr FieldSection kFieldSections[] = {{"analyser", Member<kAnalyser>},
                                           {"generator", Member<kGenerator>},
                                           {"fft", Member<kFft>},
                                           {"settling", Member<kSettling>},
                                           {"regulation", Member<kRegulation>}};

} // namespace

std::span<const SectionKind> SectionKinds() {
    return kKinds;
}

const SectionKind* FindSection(std::string_view name) {
    const auto* found = std::ranges::find(kKinds, name, &SectionKind::name);
    return found != std::end(kKinds) ? found : nullptr;
}

std::span<const FieldSection> FieldSections() {
    return kFieldSections;
}

std::vector<WindowLayout> ReadLayouts(CArchive& archive) {
    std::vector<WindowLayout> layouts;
    const std::uint16_t count = archive.ReadUInt16();
    for (unsigned number = 0; number < count; ++number) {
        WindowLayout& layout = layouts.emplace_back();
        layout.name = archive.ReadString();
        layout.bytes.resize(archive.ReadCount());
        archive.ReadBytes(layout.bytes);
    }
    return layouts;
}

} // namespace kalvio::reference_host
