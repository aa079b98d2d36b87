#pragma once

// The host's FFT detectors.

#include "host/ResultIds.h"
#include "host/SettingsData.h"
#include "host/Units.h"
#include "platform/Sync.h"

#include <memory>
#include <vector>

namespace kalvio {

inline constexpr int kFftDetectorSlots = 40;
// Control id of a detector's own settings; its results' ids are controls of it as well.
inline constexpr int kCtrlFftDetector = 3359;
inline constexpr int kCtrlFftDetectorUnit = 3360;
inline constexpr int kCtrlFftDetectorReference = 3361;

} // namespace kalvio

// One FFT detector of the host's list. Fields: user-interface thread; results through ReadResult, any thread.
class KALVIO_API CFFTDetectorSettings : public CSettingsData {
public:
    CFFTDetectorSettings(int id, CString name, CHostApplication* host = nullptr)
        : CSettingsData(host), m_id(id), m_name(std::move(name)) {}
    [[nodiscard]] int Id() const { return m_id; }
    [[nodiscard]] const CString& Name() const { return m_name; }
    void SetName(CString name) { m_name = std::move(name); }
    // The unit and the reference; they follow the detector's own controls.
    std::span<const kalvio::FieldRow> FieldRows() const override;
    [[nodiscard]] int Unit() const { return m_unit; }
    void SetUnit(int unit) { m_unit = unit; }
    [[nodiscard]] double RelativeReference() const { return m_relativeReference; } // storage units
    void SetRelativeReference(double reference) { m_relativeReference = reference; }
    double* ResultA() { return &m_resultA; }
    double* ResultB() { return &m_resultB; }

    // What 0 dB and 100 % refer to: the relative reference, with the analyser's load and full scale.
    [[nodiscard]] SReferences References() const;

    // The detector's results as fields of it (control ids 3351, 3352 and 3359). A detector that shows a
    // relative unit offers only relative ones, any other only absolute ones of the analyser's domain.
    std::span<const int> GetUnitsForCtrlID(int ctrlID) override;
    int IsEnumValueValid(int ctrlID, int value) override; // a unit code
    // A get hands over the references, and the current value of 3351 and 3352. Results refuse to be set.
    bool OnMessenger(CPhyValueMessenger* messenger) override;
    using CSettingsData::OnMessenger;

private:
    int m_id;
    CString m_name;
    struct Rows;

    kalvio::Field<std::int32_t> m_unit{kUnitVolt};
    kalvio::Field<double> m_relativeReference{kStepsPerVolt};
    double m_resultA = kalvio::kInvalidResult;
    double m_resultB = kalvio::kInvalidResult;
};

// The host's FFT detectors: 40 slots. The list itself may be absent (no FFT document open). Edited on the
// user-interface thread; looked up from any thread, each time in one unchanging snapshot of the list.
class KALVIO_API CFFTDetectorList {
public:
    // The host application that the detectors ask; null: the one in force.
    explicit CFFTDetectorList(CHostApplication* host = nullptr);
    ~CFFTDetectorList();
    CFFTDetectorSettings* Add(const CString& name); // with the lowest free id from 1; null when full
    // Deletes a detector; false when there is none of that id. Whoever holds its pointer on another thread
    // must have let go before: halt the pre-processor's notifications first.
    bool Remove(int id);
    [[nodiscard]] CFFTDetectorSettings* Find(int id) const;       // null: none
    [[nodiscard]] int SlotOf(int id) const;                       // 0 to 39, or 40
    [[nodiscard]] std::vector<CFFTDetectorSettings*> All() const; // in the order of their slots

    // The save flag (8 bits), the number of detectors (16 bits), then by ascending id: id (8 bits), name,
    // unit (32 bits), relative reference (64 bits). Loading replaces the list when the flag read and the load
    // switches say so; a detector whose id stays is the same object with other values. Throws
    // CArchiveException for a damaged archive, and has changed nothing then. As Remove, it must not meet a
    // detector that another thread holds. User-interface thread.
    void Serialize(CArchive& archive);
    std::uint8_t& SaveFlag() { return m_saved; } // user-interface thread

private:
    struct Snapshot;
    struct Loaded;
    [[nodiscard]] static std::vector<Loaded> ReadDetectors(CArchive& archive);
    void Replace(const std::vector<Loaded>& detectors);
    void Publish(std::shared_ptr<const Snapshot> snapshot);
    [[nodiscard]] std::shared_ptr<const Snapshot> Current() const;

    CHostApplication* m_host;     // set once; null: the one in force
    mutable kalvio::Mutex m_lock; // held only while the pointer is copied
    std::shared_ptr<const Snapshot> m_snapshot KALVIO_GUARDED_BY(m_lock); // what it points at never changes
    std::uint8_t m_saved = 1;
};
