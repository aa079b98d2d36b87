#include "host/FftDetectors.h"

#include "host/FieldTable.h"
#include "host/HostApplication.h"
#include "host/HostTexts.h"
#include "host/Quantities.h"

#include <algorithm>
#include <array>
#include <cmath>

using kalvio::kFftDetectorSlots;

SReferences CFFTDetectorSettings::References() const {
    const CAnalyserSettings* analyser = Host().analyser;
    SReferences references = analyser == nullptr ? SReferences{} : analyser->references;
    references.unit = kUnitVolt;
    references.reference = m_relativeReference;
    return references;
}

std::span<const int> CFFTDetectorSettings::GetUnitsForCtrlID(int) {
    const CAnalyserSettings* analyser = Host().analyser;
    const kalvio::Quantity& amplitude =
        analyser == nullptr ? kalvio::kAnalogueAmplitude : analyser->AmplitudeQuantity();
    return UnitsOf(amplitude,
                   IsRelativeUnit(m_unit) ? kalvio::Relativity::Relative : kalvio::Relativity::Absolute);
}

int CFFTDetectorSettings::IsEnumValueValid(int ctrlID, int value) {
    const std::span<const int> units = GetUnitsForCtrlID(ctrlID);
    return std::find(units.begin(), units.end(), value) != units.end() ? 1 : 0;
}

struct CFFTDetectorSettings::Rows {
    static std::span<const int> Units(CSettingsData&) { return kalvio::kGeneratorAmplitudeUnits; }
    static constexpr int kReal = 7;
    static constexpr kalvio::FieldRow kRows[] = {
        {.id = 0,
         .ctrlID = kalvio::kCtrlFftDetectorUnit,
         .details = {kalvio::kTextDetectorUnit, 0, kUnitRatio, kUnitVolt, 0, 0},
         .kind = kalvio::FieldKind::Choice,
         .integer = kalvio::KeptIn<&CFFTDetectorSettings::m_unit>,
         .units = Units,
         .archivePlace = 0,
         .help = "the unit that the detector shows"},
        {.id = 1,
         .ctrlID = kalvio::kCtrlFftDetectorReference,
         .details = {kalvio::kTextDetectorReference, 0, 200.0 * kStepsPerVolt, kStepsPerVolt, kReal, 0},
         .real = kalvio::KeptIn<&CFFTDetectorSettings::m_relativeReference>,
         .archivePlace = 1,
         .help = "what 0 dB and 100 % of the detector refer to, in DSP steps"},
    };
};

std::span<const kalvio::FieldRow> CFFTDetectorSettings::FieldRows() const {
    return Rows::kRows;
}

bool CFFTDetectorSettings::OnMessenger(CPhyValueMessenger* messenger) {
    const int ctrlID = messenger->ctrlID;
    if (ctrlID != kalvio::kResultFftDetectorA && ctrlID != kalvio::kResultFftDetectorB &&
        ctrlID != kalvio::kCtrlFftDetector) {
        return CSettingsData::OnMessenger(messenger);
    }
    if (!messenger->get) {
        messenger->refused = true;
        return true;
    }
    messenger->references = References();
    messenger->hasReferences = true;
    const double& result = ctrlID == kalvio::kResultFftDetectorB ? m_resultB : m_resultA;
    const int unit = messenger->unit == kUnitNone ? m_unit.Get() : messenger->unit;
    messenger->value = CPhysicalValue::StorageToUnit(kalvio::ReadResult(result), unit, messenger->references);
    return true;
}

// A detector's slot is its id less one.
struct CFFTDetectorList::Snapshot {
    std::array<std::shared_ptr<CFFTDetectorSettings>, kFftDetectorSlots> detectors;

    [[nodiscard]] CFFTDetectorSettings* Find(int id) const {
        return id >= 1 && id <= kFftDetectorSlots ? detectors[static_cast<std::size_t>(id - 1)].get()
                                                  : nullptr;
    }
};

CFFTDetectorList::CFFTDetectorList(CHostApplication* host)
    : m_host(host), m_snapshot(std::make_shared<const Snapshot>()) {}

CFFTDetectorList::~CFFTDetectorList() = default;

void CFFTDetectorList::Publish(std::shared_ptr<const Snapshot> snapshot) {
    // The old snapshot goes after the lock was let go.
    const kalvio::LockGuard hold(m_lock);
    m_snapshot.swap(snapshot);
}

std::shared_ptr<const CFFTDetectorList::Snapshot> CFFTDetectorList::Current() const {
    const kalvio::LockGuard hold(m_lock);
    return m_snapshot;
}

CFFTDetectorSettings* CFFTDetectorList::Add(const CString& name) {
    auto next = std::make_shared<Snapshot>(*Current());
    const auto free = std::find(next->detectors.begin(), next->detectors.end(), nullptr);
    if (free == next->detectors.end()) {
        return nullptr;
    }
    const int id = static_cast<int>(free - next->detectors.begin()) + 1;
    *free = std::make_shared<CFFTDetectorSettings>(id, name, m_host);
    CFFTDetectorSettings* added = free->get();
    Publish(std::move(next));
    return added;
}

bool CFFTDetectorList::Remove(int id) {
    if (Find(id) == nullptr) {
        return false;
    }
    auto next = std::make_shared<Snapshot>(*Current());
    next->detectors[static_cast<std::size_t>(id - 1)].reset();
    Publish(std::move(next));
    return true;
}

CFFTDetectorSettings* CFFTDetectorList::Find(int id) const {
    return Current()->Find(id);
}

int CFFTDetectorList::SlotOf(int id) const {
    return Find(id) == nullptr ? kFftDetectorSlots : id - 1;
}

std::vector<CFFTDetectorSettings*> CFFTDetectorList::All() const {
    std::vector<CFFTDetectorSettings*> found;
    for (const auto& detector : Current()->detectors) {
        if (detector != nullptr) {
            found.push_back(detector.get());
        }
    }
    return found;
}

struct CFFTDetectorList::Loaded {
    int id = 0;
    CString name;
    int unit = kUnitNone;
    double reference = 0.0;
};

std::vector<CFFTDetectorList::Loaded> CFFTDetectorList::ReadDetectors(CArchive& archive) {
    std::vector<Loaded> detectors(archive.ReadUInt16());
    int before = 0;
    for (Loaded& detector : detectors) {
        detector.id = archive.ReadByte();
        detector.name = archive.ReadString();
        detector.unit = archive.ReadInt32();
        detector.reference = archive.ReadDouble();
        if (detector.id <= before || detector.id > kalvio::kFftDetectorSlots) {
            throw CArchiveException(kalvio::Format("detector ids must ascend from 1 to %d, found %d after %d",
                                                   kalvio::kFftDetectorSlots, detector.id, before));
        }
        if (GetStringIDForUnit(detector.unit, 1) == 0) {
            throw CArchiveException(
                kalvio::Format("detector %d must have a unit, not %d", detector.id, detector.unit));
        }
        if (!std::isfinite(detector.reference) || detector.reference < 0.0) {
            throw CArchiveException(kalvio::Format("detector %d must have a reference of 0 or more, not %g",
                                                   detector.id, detector.reference));
        }
        before = detector.id;
    }
    return detectors;
}

void CFFTDetectorList::Serialize(CArchive& archive) {
    if (archive.IsLoading()) {
        const std::uint8_t saved = archive.ReadByte();
        const std::vector<Loaded> detectors = ReadDetectors(archive);
        m_saved = saved;
        if (kalvio::AppliesOnLoad(saved)) {
            Replace(detectors);
        }
        return;
    }
    archive.WriteByte(m_saved);
    const std::vector<CFFTDetectorSettings*> detectors = All();
    archive.WriteUInt16(static_cast<std::uint16_t>(detectors.size()));
    for (const CFFTDetectorSettings* detector : detectors) {
        archive.WriteByte(static_cast<std::uint8_t>(detector->Id()));
        archive.WriteString(detector->Name());
        archive.WriteInt32(detector->Unit());
        archive.WriteDouble(detector->RelativeReference());
    }
}

void CFFTDetectorList::Replace(const std::vector<Loaded>& detectors) {
    const std::shared_ptr<const Snapshot> before = Current();
    auto next = std::make_shared<Snapshot>();
    for (const Loaded& loaded : detectors) {
        const auto slot = static_cast<std::size_t>(loaded.id - 1);
        next->detectors[slot] = before->detectors[slot] != nullptr
                                    ? before->detectors[slot]
                                    : std::make_shared<CFFTDetectorSettings>(loaded.id, loaded.name, m_host);
        next->detectors[slot]->SetName(loaded.name);
        next->detectors[slot]->SetUnit(loaded.unit);
        next->detectors[slot]->SetRelativeReference(loaded.reference);
    }
    Publish(std::move(next));
}
