#pragma once

// The settings document that says, for each kind of result, when it counts as settled.

#include "host/FieldTable.h"
#include "host/PanelWindows.h"
#include "host/SettingsData.h"
#include "host/SettlingQueries.h"
#include "platform/Export.h"

#include <array>
#include <cstdint>
#include <functional>
#include <memory>
#include <type_traits>

enum SettlingToleranceType : int {
    TOLERANCETYPE_NONE = 0,
    TOLERANCETYPE_NORMAL = 1,
    TOLERANCETYPE_EXPONENTIAL = 2
};

// The kinds of results; archive order, control ids and automation names follow it.
enum class SettlingGroup : int {
    SignalAnalyserAmplitude = 0,
    SignalAnalyserFrequency = 1,
    SignalAnalyserPhase = 2,
    CTDetector = 3,
    FFTDetector = 4,
    CarrierInputAmplitude = 5,
    CarrierInputJitter = 6,
    CarrierInputPhase = 7,
    InputFrameRate = 8,
    SyncSource = 9,
};

enum class SettlingField : int {
    ToleranceType = 0,
    Tolerance = 1,
    SettlingTime = 2,
    NumResults = 3,
    Average = 4
};

inline constexpr int kSettlingGroups = 10;
inline constexpr int kSettlingFieldsPerGroup = 5;

// Control ids of a group are these plus its index; a field's id is also the view hint of its change.
inline constexpr int kCtrlSettlingType = 2800;
inline constexpr int kCtrlSettlingTolerance = 2810;
inline constexpr int kCtrlSettlingTime = 2820;
inline constexpr int kCtrlSettlingCount = 2830;
inline constexpr int kCtrlSettlingCountSpin = 2840;
inline constexpr int kCtrlSettlingAverage = 2850;

// The parameters of one group. Written on the user-interface thread, read from any; each field is one
// relaxed atomic.
struct SettlingGroupDetails {
    kalvio::Field<std::int32_t>
        ToleranceType;               // 0 none, 1 normal, 2 exponential; 3 is accepted and acts as none
    kalvio::Field<double> Tolerance; // percent, 0 to 100
    kalvio::Field<std::int32_t> SettlingTime; // milliseconds, 0 to 5000
    kalvio::Field<std::int32_t> NumResults;   // 1 to 10
    kalvio::Field<std::int32_t> Average;      // 1: the settled value is the mean
};

// The queries may be called from any thread; everything else runs on the user-interface thread. A change made
// through a view is announced to the pre-processor, one made through automation is not.
class KALVIO_API CSettlingDetails : public CSettingsData, public kalvio::SettlingQueries {
public:
    explicit CSettlingDetails(CHostApplication* host = nullptr);

    // Registers the document as its own base settings; 1.
    int Initialise();
    bool OnNewDocument() override;
    void UpdateHardware(int ctrlID) override; // settling parameters never reach the hardware

    [[nodiscard]] unsigned long GetSettlingTime(int resultID) const override;
    [[nodiscard]] int GetNumResults(int resultID) const override;
    [[nodiscard]] double GetTolerance(int resultID) const override;
    [[nodiscard]] int GetToleranceType(int resultID) const override;
    // Never under the exponential test, whatever the flag says.
    [[nodiscard]] int GetAveraging(int resultID) const override;
    // The allowance is relative to the reference: the tolerance for the normal test, doubled for each step of
    // distance beyond the first for the exponential one. Distance 0 and the other types are always within; a
    // NaN never is.
    [[nodiscard]] int IsWithinTolerance(int resultID, double value, double reference,
                                        int distance) const override;

    // Indices are 5 * group + field, 0 to 49.
    [[nodiscard]] std::span<const kalvio::FieldRow> FieldRows() const override;

    // Takes a control's value into the document: 1, or 0 when the value was refused (the user was told, the
    // focus is back on the edit, and a refused time or count is restored).
    int OnViewChanged(CView* view, int ctrlID) override;

    // Opens the settling window or moves the open one; null when the host cannot make it (the user was told).
    CTypedFrameWnd* OpenSettlingDetails(int show, const CPoint* where);
    CTypedFrameWnd* OpenSettingsWindow(int panel, int show, int windowType, const CPoint* where) override;
    // Makes the view that OpenSettlingDetails puts into the window; a CSettlingView by default.
    using ViewFactory = kalvio::PanelWindows::ViewFactory;
    void SetViewFactory(ViewFactory factory) { m_viewFactory = std::move(factory); }

    // 290 bytes: ten groups of five values, each behind the group's save flag as one byte. Archives before
    // version 100, revision 99 hold seven groups. Throws CArchiveException for a short archive or a value
    // outside its limits; nothing has changed then.
    void Serialize(CArchive& archive) override;

    void PrintDetails(CPrintView* view) override;
    // The save table: ten check items with ids 301 + 10 * group.
    void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;

    [[nodiscard]] const SettlingGroupDetails& Group(SettlingGroup group) const {
        return m_groups[static_cast<std::size_t>(group)];
    }
    [[nodiscard]] int SaveFlag(SettlingGroup group) const {
        return m_saveFlags[static_cast<std::size_t>(group)];
    }

    // One field of a group in automation's types; a value outside the field's limits is refused.
    template<typename T>
    [[nodiscard]] T GetField(SettlingGroup group, SettlingField field) const {
        if constexpr (std::is_same_v<T, double>) {
            return Kept(group, SettlingField::Tolerance);
        } else if constexpr (std::is_same_v<T, bool>) {
            return Kept(group, field) != 0.0;
        } else {
            return static_cast<T>(Kept(group, field));
        }
    }
    kalvio::SetOutcome SetField(SettlingGroup group, SettlingField field, double value);
    kalvio::SetOutcome SetField(SettlingGroup group, SettlingField field, std::int32_t value);
    // For the rows of the fields; changes made this way are neither checked nor told.
    [[nodiscard]] SettlingGroupDetails& MutableGroup(SettlingGroup group) {
        return m_groups[static_cast<std::size_t>(group)];
    }

    // The same field by field, under the names that callers know.
    // clang-format off
    std::int16_t GetSignalAnalyserAmplitudeToleranceType() { return Read<SettlingGroup::SignalAnalyserAmplitude, SettlingField::ToleranceType, std::int16_t>(); }
    void SetSignalAnalyserAmplitudeToleranceType(std::int16_t value) { Write<SettlingGroup::SignalAnalyserAmplitude, SettlingField::ToleranceType>(value); }
    double GetSignalAnalyserAmplitudeTolerance() { return Read<SettlingGroup::SignalAnalyserAmplitude, SettlingField::Tolerance, double>(); }
    void SetSignalAnalyserAmplitudeTolerance(double value) { Write<SettlingGroup::SignalAnalyserAmplitude, SettlingField::Tolerance>(value); }
    std::int32_t GetSignalAnalyserAmplitudeSettlingTime() { return Read<SettlingGroup::SignalAnalyserAmplitude, SettlingField::SettlingTime, std::int32_t>(); }
    void SetSignalAnalyserAmplitudeSettlingTime(std::int32_t value) { Write<SettlingGroup::SignalAnalyserAmplitude, SettlingField::SettlingTime>(value); }
    std::int16_t GetSignalAnalyserAmplitudeNumResults() { return Read<SettlingGroup::SignalAnalyserAmplitude, SettlingField::NumResults, std::int16_t>(); }
    void SetSignalAnalyserAmplitudeNumResults(std::int16_t value) { Write<SettlingGroup::SignalAnalyserAmplitude, SettlingField::NumResults>(value); }
    bool GetSignalAnalyserAmplitudeAverage() { return Read<SettlingGroup::SignalAnalyserAmplitude, SettlingField::Average, bool>(); }
    void SetSignalAnalyserAmplitudeAverage(bool value) { Write<SettlingGroup::SignalAnalyserAmplitude, SettlingField::Average>(value); }
    std::int16_t GetSignalAnalyserFrequencyToleranceType() { return Read<SettlingGroup::SignalAnalyserFrequency, SettlingField::ToleranceType, std::int16_t>(); }
    void SetSignalAnalyserFrequencyToleranceType(std::int16_t value) { Write<SettlingGroup::SignalAnalyserFrequency, SettlingField::ToleranceType>(value); }
    double GetSignalAnalyserFrequencyTolerance() { return Read<SettlingGroup::SignalAnalyserFrequency, SettlingField::Tolerance, double>(); }
    void SetSignalAnalyserFrequencyTolerance(double value) { Write<SettlingGroup::SignalAnalyserFrequency, SettlingField::Tolerance>(value); }
    std::int32_t GetSignalAnalyserFrequencySettlingTime() { return Read<SettlingGroup::SignalAnalyserFrequency, SettlingField::SettlingTime, std::int32_t>(); }
    void SetSignalAnalyserFrequencySettlingTime(std::int32_t value) { Write<SettlingGroup::SignalAnalyserFrequency, SettlingField::SettlingTime>(value); }
    std::int16_t GetSignalAnalyserFrequencyNumResults() { return Read<SettlingGroup::SignalAnalyserFrequency, SettlingField::NumResults, std::int16_t>(); }
    void SetSignalAnalyserFrequencyNumResults(std::int16_t value) { Write<SettlingGroup::SignalAnalyserFrequency, SettlingField::NumResults>(value); }
    bool GetSignalAnalyserFrequencyAverage() { return Read<SettlingGroup::SignalAnalyserFrequency, SettlingField::Average, bool>(); }
    void SetSignalAnalyserFrequencyAverage(bool value) { Write<SettlingGroup::SignalAnalyserFrequency, SettlingField::Average>(value); }
    std::int16_t GetSignalAnalyserPhaseToleranceType() { return Read<SettlingGroup::SignalAnalyserPhase, SettlingField::ToleranceType, std::int16_t>(); }
    void SetSignalAnalyserPhaseToleranceType(std::int16_t value) { Write<SettlingGroup::SignalAnalyserPhase, SettlingField::ToleranceType>(value); }
    double GetSignalAnalyserPhaseTolerance() { return Read<SettlingGroup::SignalAnalyserPhase, SettlingField::Tolerance, double>(); }
    void SetSignalAnalyserPhaseTolerance(double value) { Write<SettlingGroup::SignalAnalyserPhase, SettlingField::Tolerance>(value); }
    std::int32_t GetSignalAnalyserPhaseSettlingTime() { return Read<SettlingGroup::SignalAnalyserPhase, SettlingField::SettlingTime, std::int32_t>(); }
    void SetSignalAnalyserPhaseSettlingTime(std::int32_t value) { Write<SettlingGroup::SignalAnalyserPhase, SettlingField::SettlingTime>(value); }
    std::int16_t GetSignalAnalyserPhaseNumResults() { return Read<SettlingGroup::SignalAnalyserPhase, SettlingField::NumResults, std::int16_t>(); }
    void SetSignalAnalyserPhaseNumResults(std::int16_t value) { Write<SettlingGroup::SignalAnalyserPhase, SettlingField::NumResults>(value); }
    bool GetSignalAnalyserPhaseAverage() { return Read<SettlingGroup::SignalAnalyserPhase, SettlingField::Average, bool>(); }
    void SetSignalAnalyserPhaseAverage(bool value) { Write<SettlingGroup::SignalAnalyserPhase, SettlingField::Average>(value); }
    std::int16_t GetCTDetectorToleranceType() { return Read<SettlingGroup::CTDetector, SettlingField::ToleranceType, std::int16_t>(); }
    void SetCTDetectorToleranceType(std::int16_t value) { Write<SettlingGroup::CTDetector, SettlingField::ToleranceType>(value); }
    double GetCTDetectorTolerance() { return Read<SettlingGroup::CTDetector, SettlingField::Tolerance, double>(); }
    void SetCTDetectorTolerance(double value) { Write<SettlingGroup::CTDetector, SettlingField::Tolerance>(value); }
    std::int32_t GetCTDetectorSettlingTime() { return Read<SettlingGroup::CTDetector, SettlingField::SettlingTime, std::int32_t>(); }
    void SetCTDetectorSettlingTime(std::int32_t value) { Write<SettlingGroup::CTDetector, SettlingField::SettlingTime>(value); }
    std::int16_t GetCTDetectorNumResults() { return Read<SettlingGroup::CTDetector, SettlingField::NumResults, std::int16_t>(); }
    void SetCTDetectorNumResults(std::int16_t value) { Write<SettlingGroup::CTDetector, SettlingField::NumResults>(value); }
    bool GetCTDetectorAverage() { return Read<SettlingGroup::CTDetector, SettlingField::Average, bool>(); }
    void SetCTDetectorAverage(bool value) { Write<SettlingGroup::CTDetector, SettlingField::Average>(value); }
    std::int16_t GetFFTDetectorToleranceType() { return Read<SettlingGroup::FFTDetector, SettlingField::ToleranceType, std::int16_t>(); }
    void SetFFTDetectorToleranceType(std::int16_t value) { Write<SettlingGroup::FFTDetector, SettlingField::ToleranceType>(value); }
    double GetFFTDetectorTolerance() { return Read<SettlingGroup::FFTDetector, SettlingField::Tolerance, double>(); }
    void SetFFTDetectorTolerance(double value) { Write<SettlingGroup::FFTDetector, SettlingField::Tolerance>(value); }
    std::int32_t GetFFTDetectorSettlingTime() { return Read<SettlingGroup::FFTDetector, SettlingField::SettlingTime, std::int32_t>(); }
    void SetFFTDetectorSettlingTime(std::int32_t value) { Write<SettlingGroup::FFTDetector, SettlingField::SettlingTime>(value); }
    std::int16_t GetFFTDetectorNumResults() { return Read<SettlingGroup::FFTDetector, SettlingField::NumResults, std::int16_t>(); }
    void SetFFTDetectorNumResults(std::int16_t value) { Write<SettlingGroup::FFTDetector, SettlingField::NumResults>(value); }
    bool GetFFTDetectorAverage() { return Read<SettlingGroup::FFTDetector, SettlingField::Average, bool>(); }
    void SetFFTDetectorAverage(bool value) { Write<SettlingGroup::FFTDetector, SettlingField::Average>(value); }
    std::int16_t GetCarrierInputAmplitudeToleranceType() { return Read<SettlingGroup::CarrierInputAmplitude, SettlingField::ToleranceType, std::int16_t>(); }
    void SetCarrierInputAmplitudeToleranceType(std::int16_t value) { Write<SettlingGroup::CarrierInputAmplitude, SettlingField::ToleranceType>(value); }
    double GetCarrierInputAmplitudeTolerance() { return Read<SettlingGroup::CarrierInputAmplitude, SettlingField::Tolerance, double>(); }
    void SetCarrierInputAmplitudeTolerance(double value) { Write<SettlingGroup::CarrierInputAmplitude, SettlingField::Tolerance>(value); }
    std::int32_t GetCarrierInputAmplitudeSettlingTime() { return Read<SettlingGroup::CarrierInputAmplitude, SettlingField::SettlingTime, std::int32_t>(); }
    void SetCarrierInputAmplitudeSettlingTime(std::int32_t value) { Write<SettlingGroup::CarrierInputAmplitude, SettlingField::SettlingTime>(value); }
    std::int16_t GetCarrierInputAmplitudeNumResults() { return Read<SettlingGroup::CarrierInputAmplitude, SettlingField::NumResults, std::int16_t>(); }
    void SetCarrierInputAmplitudeNumResults(std::int16_t value) { Write<SettlingGroup::CarrierInputAmplitude, SettlingField::NumResults>(value); }
    bool GetCarrierInputAmplitudeAverage() { return Read<SettlingGroup::CarrierInputAmplitude, SettlingField::Average, bool>(); }
    void SetCarrierInputAmplitudeAverage(bool value) { Write<SettlingGroup::CarrierInputAmplitude, SettlingField::Average>(value); }
    std::int16_t GetCarrierInputJitterToleranceType() { return Read<SettlingGroup::CarrierInputJitter, SettlingField::ToleranceType, std::int16_t>(); }
    void SetCarrierInputJitterToleranceType(std::int16_t value) { Write<SettlingGroup::CarrierInputJitter, SettlingField::ToleranceType>(value); }
    double GetCarrierInputJitterTolerance() { return Read<SettlingGroup::CarrierInputJitter, SettlingField::Tolerance, double>(); }
    void SetCarrierInputJitterTolerance(double value) { Write<SettlingGroup::CarrierInputJitter, SettlingField::Tolerance>(value); }
    std::int32_t GetCarrierInputJitterSettlingTime() { return Read<SettlingGroup::CarrierInputJitter, SettlingField::SettlingTime, std::int32_t>(); }
    void SetCarrierInputJitterSettlingTime(std::int32_t value) { Write<SettlingGroup::CarrierInputJitter, SettlingField::SettlingTime>(value); }
    std::int16_t GetCarrierInputJitterNumResults() { return Read<SettlingGroup::CarrierInputJitter, SettlingField::NumResults, std::int16_t>(); }
    void SetCarrierInputJitterNumResults(std::int16_t value) { Write<SettlingGroup::CarrierInputJitter, SettlingField::NumResults>(value); }
    bool GetCarrierInputJitterAverage() { return Read<SettlingGroup::CarrierInputJitter, SettlingField::Average, bool>(); }
    void SetCarrierInputJitterAverage(bool value) { Write<SettlingGroup::CarrierInputJitter, SettlingField::Average>(value); }
    std::int16_t GetCarrierInputPhaseToleranceType() { return Read<SettlingGroup::CarrierInputPhase, SettlingField::ToleranceType, std::int16_t>(); }
    void SetCarrierInputPhaseToleranceType(std::int16_t value) { Write<SettlingGroup::CarrierInputPhase, SettlingField::ToleranceType>(value); }
    double GetCarrierInputPhaseTolerance() { return Read<SettlingGroup::CarrierInputPhase, SettlingField::Tolerance, double>(); }
    void SetCarrierInputPhaseTolerance(double value) { Write<SettlingGroup::CarrierInputPhase, SettlingField::Tolerance>(value); }
    std::int32_t GetCarrierInputPhaseSettlingTime() { return Read<SettlingGroup::CarrierInputPhase, SettlingField::SettlingTime, std::int32_t>(); }
    void SetCarrierInputPhaseSettlingTime(std::int32_t value) { Write<SettlingGroup::CarrierInputPhase, SettlingField::SettlingTime>(value); }
    std::int16_t GetCarrierInputPhaseNumResults() { return Read<SettlingGroup::CarrierInputPhase, SettlingField::NumResults, std::int16_t>(); }
    void SetCarrierInputPhaseNumResults(std::int16_t value) { Write<SettlingGroup::CarrierInputPhase, SettlingField::NumResults>(value); }
    bool GetCarrierInputPhaseAverage() { return Read<SettlingGroup::CarrierInputPhase, SettlingField::Average, bool>(); }
    void SetCarrierInputPhaseAverage(bool value) { Write<SettlingGroup::CarrierInputPhase, SettlingField::Average>(value); }
    std::int16_t GetInputFrameRateToleranceType() { return Read<SettlingGroup::InputFrameRate, SettlingField::ToleranceType, std::int16_t>(); }
    void SetInputFrameRateToleranceType(std::int16_t value) { Write<SettlingGroup::InputFrameRate, SettlingField::ToleranceType>(value); }
    double GetInputFrameRateTolerance() { return Read<SettlingGroup::InputFrameRate, SettlingField::Tolerance, double>(); }
    void SetInputFrameRateTolerance(double value) { Write<SettlingGroup::InputFrameRate, SettlingField::Tolerance>(value); }
    std::int32_t GetInputFrameRateSettlingTime() { return Read<SettlingGroup::InputFrameRate, SettlingField::SettlingTime, std::int32_t>(); }
    void SetInputFrameRateSettlingTime(std::int32_t value) { Write<SettlingGroup::InputFrameRate, SettlingField::SettlingTime>(value); }
    std::int16_t GetInputFrameRateNumResults() { return Read<SettlingGroup::InputFrameRate, SettlingField::NumResults, std::int16_t>(); }
    void SetInputFrameRateNumResults(std::int16_t value) { Write<SettlingGroup::InputFrameRate, SettlingField::NumResults>(value); }
    bool GetInputFrameRateAverage() { return Read<SettlingGroup::InputFrameRate, SettlingField::Average, bool>(); }
    void SetInputFrameRateAverage(bool value) { Write<SettlingGroup::InputFrameRate, SettlingField::Average>(value); }
    std::int16_t GetSyncSourceToleranceType() { return Read<SettlingGroup::SyncSource, SettlingField::ToleranceType, std::int16_t>(); }
    void SetSyncSourceToleranceType(std::int16_t value) { Write<SettlingGroup::SyncSource, SettlingField::ToleranceType>(value); }
    double GetSyncSourceTolerance() { return Read<SettlingGroup::SyncSource, SettlingField::Tolerance, double>(); }
    void SetSyncSourceTolerance(double value) { Write<SettlingGroup::SyncSource, SettlingField::Tolerance>(value); }
    std::int32_t GetSyncSourceSettlingTime() { return Read<SettlingGroup::SyncSource, SettlingField::SettlingTime, std::int32_t>(); }
    void SetSyncSourceSettlingTime(std::int32_t value) { Write<SettlingGroup::SyncSource, SettlingField::SettlingTime>(value); }
    std::int16_t GetSyncSourceNumResults() { return Read<SettlingGroup::SyncSource, SettlingField::NumResults, std::int16_t>(); }
    void SetSyncSourceNumResults(std::int16_t value) { Write<SettlingGroup::SyncSource, SettlingField::NumResults>(value); }
    bool GetSyncSourceAverage() { return Read<SettlingGroup::SyncSource, SettlingField::Average, bool>(); }
    void SetSyncSourceAverage(bool value) { Write<SettlingGroup::SyncSource, SettlingField::Average>(value); }
    // clang-format on

    // The convergence types, as scripts read them.
    std::int16_t GetTOLERANCETYPE_NONE() { return TOLERANCETYPE_NONE; }
    std::int16_t GetTOLERANCETYPE_NORMAL() { return TOLERANCETYPE_NORMAL; }
    std::int16_t GetTOLERANCETYPE_EXPONENTIAL() { return TOLERANCETYPE_EXPONENTIAL; }

private:
    [[nodiscard]] static const kalvio::FieldRow& RowOf(SettlingGroup group, SettlingField field);
    [[nodiscard]] double Kept(SettlingGroup group, SettlingField field) const {
        return kalvio::GetKept(*this, RowOf(group, field));
    }
    template<SettlingGroup Group, SettlingField Field, typename T>
    [[nodiscard]] T Read() const {
        return GetField<T>(Group, Field);
    }
    template<SettlingGroup Group, SettlingField Field, typename T>
    void Write(T value) {
        SetField(Group, Field, value);
    }
    [[nodiscard]] static int GetIndexForResultID(int resultID);
    [[nodiscard]] const SettlingGroupDetails& GroupOf(int resultID) const;
    bool TakeTolerance(CView* view, int ctrlID, int group);
    bool TakeSettlingTime(CView* view, int ctrlID, int group);
    bool TakeCount(CView* view, int group);
    void LoadGroups(CArchive& archive);

    std::array<SettlingGroupDetails, kSettlingGroups> m_groups;
    std::array<std::int32_t, kSettlingGroups> m_saveFlags; // user-interface thread
    ViewFactory m_viewFactory;                             // user-interface thread
    kalvio::PanelWindows m_windows;                        // user-interface thread
};
