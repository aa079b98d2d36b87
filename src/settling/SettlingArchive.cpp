// The settling document in an archive: ten groups of 29 bytes, or seven in archives of earlier versions.

#include "settling/SettlingDetails.h"
#include "settling/SettlingFields.h"

namespace {

constexpr int kCurrentVersion = 100;
constexpr int kCurrentRevision = 99;
constexpr int kEarlierGroups = 7;
constexpr int kServedByFirstGroup =
    4; // the first earlier group served amplitude, frequency, phase and CT detector

using LoadedGroup = std::array<kalvio::LoadedField, kSettlingFieldsPerGroup>;

std::span<const kalvio::FieldRow> RowsOf(std::size_t group) {
    return kalvio::SettlingRows().subspan(group * kSettlingFieldsPerGroup, kSettlingFieldsPerGroup);
}

// Reads a group and checks what would be applied; limits are the same in every group.
LoadedGroup ReadGroup(CArchive& archive, std::size_t group) {
    LoadedGroup loaded;
    for (std::size_t field = 0; field < loaded.size(); ++field) {
        loaded[field] = kalvio::ReadField(archive, RowsOf(group)[field]);
    }
    for (std::size_t field = 0; field < loaded.size(); ++field) {
        kalvio::CheckLoadedField(loaded[field], RowsOf(group)[field]);
    }
    return loaded;
}

void ApplyGroup(CSettlingDetails& document, const LoadedGroup& loaded, std::size_t group) {
    for (std::size_t field = 0; field < loaded.size(); ++field) {
        kalvio::ApplyLoadedField(document, loaded[field], RowsOf(group)[field]);
    }
}

} // namespace

void CSettlingDetails::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        LoadGroups(archive);
        return;
    }
    for (const kalvio::FieldRow& row : FieldRows()) {
        archive.WriteByte(static_cast<std::uint8_t>(m_saveFlags[static_cast<std::size_t>(row.group)]));
        kalvio::StoreField(archive, *this, row);
    }
}

void CSettlingDetails::LoadGroups(CArchive& archive) {
    const bool current = archive.CheckFileVersion(kCurrentVersion, kCurrentRevision) >= 0;
    const std::size_t stored = current ? kSettlingGroups : kEarlierGroups;
    std::array<LoadedGroup, kSettlingGroups> loaded{};
    for (std::size_t group = 0; group < stored; ++group) {
        loaded[group] = ReadGroup(archive, group);
    }
    for (std::size_t group = 0; group < m_saveFlags.size(); ++group) {
        if (current) {
            m_saveFlags[group] = loaded[group].back().saveFlag;
            ApplyGroup(*this, loaded[group], group);
            continue;
        }
        const LoadedGroup& earlier =
            loaded[group < kServedByFirstGroup ? 0 : group - kServedByFirstGroup + 1];
        // An earlier group is copied as a whole, and only when its last flag is set.
        if (earlier.back().saveFlag != 0) {
            ApplyGroup(*this, earlier, group);
        }
    }
}
