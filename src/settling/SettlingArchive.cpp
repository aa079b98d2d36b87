// The settling document in an archive: ten groups of 29 bytes, or seven in archives of earlier versions.

#include "host/HostApplication.h"
#include "settling/SettlingDetails.h"
#include "settling/SettlingFields.h"

namespace {

constexpr int kCurrentVersion = 100;
constexpr int kCurrentRevision = 99;
constexpr int kEarlierGroups = 7;
constexpr int kServedByFirstGroup =
    4; // the first earlier group served amplitude, frequency, phase and CT detector

} // namespace

// One group as it stands in an archive.
struct CSettlingDetails::Loaded {
    std::array<std::uint8_t, kSettlingFieldsPerGroup> flags{};
    std::array<double, kSettlingFieldsPerGroup> values{};

    [[nodiscard]] static Loaded Read(CArchive& archive) {
        Loaded loaded;
        for (std::size_t field = 0; field < loaded.values.size(); ++field) {
            loaded.flags[field] = archive.ReadByte();
            loaded.values[field] = field == static_cast<std::size_t>(SettlingField::Tolerance)
                                       ? archive.ReadDouble()
                                       : static_cast<double>(archive.ReadInt32());
        }
        return loaded;
    }

    [[nodiscard]] static bool Applies(std::uint8_t flag) {
        const CHostApplication& host = GetHostApplication();
        return !host.discardStoredValues && (flag != 0 || host.applyUnsavedGroups);
    }

    // A value that would be applied must lie within its field's limits, which are the same in every group.
    void Check() const {
        for (std::size_t field = 0; field < values.size(); ++field) {
            const FieldDetails& limits = kalvio::SettlingFieldTable()[field];
            const bool within = values[field] >= limits.minimum && values[field] <= limits.maximum;
            if (Applies(flags[field]) && !within) {
                throw CArchiveException(kalvio::Format(
                    "The archive holds %g for \"%s\", which must lie between %g and %g.", values[field],
                    kalvio::AutomationSuffixOf(static_cast<int>(field)), limits.minimum, limits.maximum));
            }
        }
    }
};

void CSettlingDetails::Serialize(CArchive& archive) {
    if (archive.IsStoring()) {
        StoreGroups(archive);
    } else {
        LoadGroups(archive);
    }
}

void CSettlingDetails::StoreGroups(CArchive& archive) const {
    for (std::size_t group = 0; group < m_groups.size(); ++group) {
        const auto flag = static_cast<std::uint8_t>(m_saveFlags[group]);
        const SettlingGroupDetails& details = m_groups[group];
        archive.WriteByte(flag);
        archive.WriteInt32(details.ToleranceType);
        archive.WriteByte(flag);
        archive.WriteDouble(details.Tolerance);
        archive.WriteByte(flag);
        archive.WriteInt32(details.SettlingTime);
        archive.WriteByte(flag);
        archive.WriteInt32(details.NumResults);
        archive.WriteByte(flag);
        archive.WriteInt32(details.Average);
    }
}

void CSettlingDetails::Apply(const Loaded& loaded, int group) {
    SettlingGroupDetails& details = m_groups[static_cast<std::size_t>(group)];
    for (std::size_t field = 0; field < loaded.values.size(); ++field) {
        if (!Loaded::Applies(loaded.flags[field])) {
            continue;
        }
        if (field == static_cast<std::size_t>(SettlingField::Tolerance)) {
            details.Tolerance = loaded.values[field];
        } else {
            IntField(static_cast<SettlingGroup>(group), static_cast<SettlingField>(field)) =
                static_cast<std::int32_t>(loaded.values[field]);
        }
    }
}

void CSettlingDetails::LoadGroups(CArchive& archive) {
    const bool current = archive.CheckFileVersion(kCurrentVersion, kCurrentRevision) >= 0;
    const int stored = current ? kSettlingGroups : kEarlierGroups;
    std::array<Loaded, kSettlingGroups> loaded{};
    for (int group = 0; group < stored; ++group) {
        loaded[static_cast<std::size_t>(group)] = Loaded::Read(archive);
        loaded[static_cast<std::size_t>(group)].Check();
    }
    if (current) {
        for (int group = 0; group < kSettlingGroups; ++group) {
            const Loaded& values = loaded[static_cast<std::size_t>(group)];
            m_saveFlags[static_cast<std::size_t>(group)] = values.flags.back();
            Apply(values, group);
        }
        return;
    }
    for (int group = 0; group < kSettlingGroups; ++group) {
        const int source = group < kServedByFirstGroup ? 0 : group - kServedByFirstGroup + 1;
        const Loaded& values = loaded[static_cast<std::size_t>(source)];
        // An earlier group is copied as a whole, and only when its last flag is set.
        if (values.flags.back() != 0) {
            Apply(values, group);
        }
    }
}
