#pragma once

// The settings document that says, for each kind of result, when it counts as settled.

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
    CSettlingDetails();

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

    // Index 5 * group + field, 0 to 49; 0.0 outside.
    [[nodiscard]] double GetMinValue(int index) override;
    [[nodiscard]] double GetMaxValue(int index) override;
    [[nodiscard]] double GetDefaultValue(int index) override;

    // Takes a control's value into the document: 1, or 0 when the value was refused (the user was told, the
    // focus is back on the edit, and a refused time or count is restored).
    int OnViewChanged(CView* view, int ctrlID) override;

    // Opens the settling window or moves the open one; null when the host cannot make it (the user was told).
    CTypedFrameWnd* OpenSettlingDetails(int show, const CPoint* where);
    CTypedFrameWnd* OpenSettingsWindow(int panel, int show, int windowType, const CPoint* where) override;
    // Makes the view that OpenSettlingDetails puts into the window.
    using ViewFactory = std::function<std::unique_ptr<CView>()>;
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
            return Group(group).Tolerance;
        } else if constexpr (std::is_same_v<T, bool>) {
            return IntField(group, field) != 0;
        } else {
            return static_cast<T>(IntField(group, field));
        }
    }
    void SetField(SettlingGroup group, SettlingField field, double value);
    void SetField(SettlingGroup group, SettlingField field, std::int32_t value);

    // The same field by field, under the names that callers know.
    std::int16_t GetSignalAnalyserAmplitudeToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserAmplitude, SettlingField::ToleranceType);
    }
    void SetSignalAnalyserAmplitudeToleranceType(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserAmplitude, SettlingField::ToleranceType, value);
    }
    double GetSignalAnalyserAmplitudeTolerance() {
        return GetField<double>(SettlingGroup::SignalAnalyserAmplitude, SettlingField::Tolerance);
    }
    void SetSignalAnalyserAmplitudeTolerance(double value) {
        SetField(SettlingGroup::SignalAnalyserAmplitude, SettlingField::Tolerance, value);
    }
    std::int32_t GetSignalAnalyserAmplitudeSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::SignalAnalyserAmplitude, SettlingField::SettlingTime);
    }
    void SetSignalAnalyserAmplitudeSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::SignalAnalyserAmplitude, SettlingField::SettlingTime, value);
    }
    std::int16_t GetSignalAnalyserAmplitudeNumResults() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserAmplitude, SettlingField::NumResults);
    }
    void SetSignalAnalyserAmplitudeNumResults(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserAmplitude, SettlingField::NumResults, value);
    }
    bool GetSignalAnalyserAmplitudeAverage() {
        return GetField<bool>(SettlingGroup::SignalAnalyserAmplitude, SettlingField::Average);
    }
    void SetSignalAnalyserAmplitudeAverage(bool value) {
        SetField(SettlingGroup::SignalAnalyserAmplitude, SettlingField::Average, value);
    }
    std::int16_t GetSignalAnalyserFrequencyToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserFrequency, SettlingField::ToleranceType);
    }
    void SetSignalAnalyserFrequencyToleranceType(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserFrequency, SettlingField::ToleranceType, value);
    }
    double GetSignalAnalyserFrequencyTolerance() {
        return GetField<double>(SettlingGroup::SignalAnalyserFrequency, SettlingField::Tolerance);
    }
    void SetSignalAnalyserFrequencyTolerance(double value) {
        SetField(SettlingGroup::SignalAnalyserFrequency, SettlingField::Tolerance, value);
    }
    std::int32_t GetSignalAnalyserFrequencySettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::SignalAnalyserFrequency, SettlingField::SettlingTime);
    }
    void SetSignalAnalyserFrequencySettlingTime(std::int32_t value) {
        SetField(SettlingGroup::SignalAnalyserFrequency, SettlingField::SettlingTime, value);
    }
    std::int16_t GetSignalAnalyserFrequencyNumResults() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserFrequency, SettlingField::NumResults);
    }
    void SetSignalAnalyserFrequencyNumResults(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserFrequency, SettlingField::NumResults, value);
    }
    bool GetSignalAnalyserFrequencyAverage() {
        return GetField<bool>(SettlingGroup::SignalAnalyserFrequency, SettlingField::Average);
    }
    void SetSignalAnalyserFrequencyAverage(bool value) {
        SetField(SettlingGroup::SignalAnalyserFrequency, SettlingField::Average, value);
    }
    std::int16_t GetSignalAnalyserPhaseToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserPhase, SettlingField::ToleranceType);
    }
    void SetSignalAnalyserPhaseToleranceType(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserPhase, SettlingField::ToleranceType, value);
    }
    double GetSignalAnalyserPhaseTolerance() {
        return GetField<double>(SettlingGroup::SignalAnalyserPhase, SettlingField::Tolerance);
    }
    void SetSignalAnalyserPhaseTolerance(double value) {
        SetField(SettlingGroup::SignalAnalyserPhase, SettlingField::Tolerance, value);
    }
    std::int32_t GetSignalAnalyserPhaseSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::SignalAnalyserPhase, SettlingField::SettlingTime);
    }
    void SetSignalAnalyserPhaseSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::SignalAnalyserPhase, SettlingField::SettlingTime, value);
    }
    std::int16_t GetSignalAnalyserPhaseNumResults() {
        return GetField<std::int16_t>(SettlingGroup::SignalAnalyserPhase, SettlingField::NumResults);
    }
    void SetSignalAnalyserPhaseNumResults(std::int16_t value) {
        SetField(SettlingGroup::SignalAnalyserPhase, SettlingField::NumResults, value);
    }
    bool GetSignalAnalyserPhaseAverage() {
        return GetField<bool>(SettlingGroup::SignalAnalyserPhase, SettlingField::Average);
    }
    void SetSignalAnalyserPhaseAverage(bool value) {
        SetField(SettlingGroup::SignalAnalyserPhase, SettlingField::Average, value);
    }
    std::int16_t GetCTDetectorToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::CTDetector, SettlingField::ToleranceType);
    }
    void SetCTDetectorToleranceType(std::int16_t value) {
        SetField(SettlingGroup::CTDetector, SettlingField::ToleranceType, value);
    }
    double GetCTDetectorTolerance() {
        return GetField<double>(SettlingGroup::CTDetector, SettlingField::Tolerance);
    }
    void SetCTDetectorTolerance(double value) {
        SetField(SettlingGroup::CTDetector, SettlingField::Tolerance, value);
    }
    std::int32_t GetCTDetectorSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::CTDetector, SettlingField::SettlingTime);
    }
    void SetCTDetectorSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::CTDetector, SettlingField::SettlingTime, value);
    }
    std::int16_t GetCTDetectorNumResults() {
        return GetField<std::int16_t>(SettlingGroup::CTDetector, SettlingField::NumResults);
    }
    void SetCTDetectorNumResults(std::int16_t value) {
        SetField(SettlingGroup::CTDetector, SettlingField::NumResults, value);
    }
    bool GetCTDetectorAverage() { return GetField<bool>(SettlingGroup::CTDetector, SettlingField::Average); }
    void SetCTDetectorAverage(bool value) {
        SetField(SettlingGroup::CTDetector, SettlingField::Average, value);
    }
    std::int16_t GetFFTDetectorToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::FFTDetector, SettlingField::ToleranceType);
    }
    void SetFFTDetectorToleranceType(std::int16_t value) {
        SetField(SettlingGroup::FFTDetector, SettlingField::ToleranceType, value);
    }
    double GetFFTDetectorTolerance() {
        return GetField<double>(SettlingGroup::FFTDetector, SettlingField::Tolerance);
    }
    void SetFFTDetectorTolerance(double value) {
        SetField(SettlingGroup::FFTDetector, SettlingField::Tolerance, value);
    }
    std::int32_t GetFFTDetectorSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::FFTDetector, SettlingField::SettlingTime);
    }
    void SetFFTDetectorSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::FFTDetector, SettlingField::SettlingTime, value);
    }
    std::int16_t GetFFTDetectorNumResults() {
        return GetField<std::int16_t>(SettlingGroup::FFTDetector, SettlingField::NumResults);
    }
    void SetFFTDetectorNumResults(std::int16_t value) {
        SetField(SettlingGroup::FFTDetector, SettlingField::NumResults, value);
    }
    bool GetFFTDetectorAverage() {
        return GetField<bool>(SettlingGroup::FFTDetector, SettlingField::Average);
    }
    void SetFFTDetectorAverage(bool value) {
        SetField(SettlingGroup::FFTDetector, SettlingField::Average, value);
    }
    std::int16_t GetCarrierInputAmplitudeToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputAmplitude, SettlingField::ToleranceType);
    }
    void SetCarrierInputAmplitudeToleranceType(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputAmplitude, SettlingField::ToleranceType, value);
    }
    double GetCarrierInputAmplitudeTolerance() {
        return GetField<double>(SettlingGroup::CarrierInputAmplitude, SettlingField::Tolerance);
    }
    void SetCarrierInputAmplitudeTolerance(double value) {
        SetField(SettlingGroup::CarrierInputAmplitude, SettlingField::Tolerance, value);
    }
    std::int32_t GetCarrierInputAmplitudeSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::CarrierInputAmplitude, SettlingField::SettlingTime);
    }
    void SetCarrierInputAmplitudeSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::CarrierInputAmplitude, SettlingField::SettlingTime, value);
    }
    std::int16_t GetCarrierInputAmplitudeNumResults() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputAmplitude, SettlingField::NumResults);
    }
    void SetCarrierInputAmplitudeNumResults(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputAmplitude, SettlingField::NumResults, value);
    }
    bool GetCarrierInputAmplitudeAverage() {
        return GetField<bool>(SettlingGroup::CarrierInputAmplitude, SettlingField::Average);
    }
    void SetCarrierInputAmplitudeAverage(bool value) {
        SetField(SettlingGroup::CarrierInputAmplitude, SettlingField::Average, value);
    }
    std::int16_t GetCarrierInputJitterToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputJitter, SettlingField::ToleranceType);
    }
    void SetCarrierInputJitterToleranceType(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputJitter, SettlingField::ToleranceType, value);
    }
    double GetCarrierInputJitterTolerance() {
        return GetField<double>(SettlingGroup::CarrierInputJitter, SettlingField::Tolerance);
    }
    void SetCarrierInputJitterTolerance(double value) {
        SetField(SettlingGroup::CarrierInputJitter, SettlingField::Tolerance, value);
    }
    std::int32_t GetCarrierInputJitterSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::CarrierInputJitter, SettlingField::SettlingTime);
    }
    void SetCarrierInputJitterSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::CarrierInputJitter, SettlingField::SettlingTime, value);
    }
    std::int16_t GetCarrierInputJitterNumResults() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputJitter, SettlingField::NumResults);
    }
    void SetCarrierInputJitterNumResults(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputJitter, SettlingField::NumResults, value);
    }
    bool GetCarrierInputJitterAverage() {
        return GetField<bool>(SettlingGroup::CarrierInputJitter, SettlingField::Average);
    }
    void SetCarrierInputJitterAverage(bool value) {
        SetField(SettlingGroup::CarrierInputJitter, SettlingField::Average, value);
    }
    std::int16_t GetCarrierInputPhaseToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputPhase, SettlingField::ToleranceType);
    }
    void SetCarrierInputPhaseToleranceType(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputPhase, SettlingField::ToleranceType, value);
    }
    double GetCarrierInputPhaseTolerance() {
        return GetField<double>(SettlingGroup::CarrierInputPhase, SettlingField::Tolerance);
    }
    void SetCarrierInputPhaseTolerance(double value) {
        SetField(SettlingGroup::CarrierInputPhase, SettlingField::Tolerance, value);
    }
    std::int32_t GetCarrierInputPhaseSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::CarrierInputPhase, SettlingField::SettlingTime);
    }
    void SetCarrierInputPhaseSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::CarrierInputPhase, SettlingField::SettlingTime, value);
    }
    std::int16_t GetCarrierInputPhaseNumResults() {
        return GetField<std::int16_t>(SettlingGroup::CarrierInputPhase, SettlingField::NumResults);
    }
    void SetCarrierInputPhaseNumResults(std::int16_t value) {
        SetField(SettlingGroup::CarrierInputPhase, SettlingField::NumResults, value);
    }
    bool GetCarrierInputPhaseAverage() {
        return GetField<bool>(SettlingGroup::CarrierInputPhase, SettlingField::Average);
    }
    void SetCarrierInputPhaseAverage(bool value) {
        SetField(SettlingGroup::CarrierInputPhase, SettlingField::Average, value);
    }
    std::int16_t GetInputFrameRateToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::InputFrameRate, SettlingField::ToleranceType);
    }
    void SetInputFrameRateToleranceType(std::int16_t value) {
        SetField(SettlingGroup::InputFrameRate, SettlingField::ToleranceType, value);
    }
    double GetInputFrameRateTolerance() {
        return GetField<double>(SettlingGroup::InputFrameRate, SettlingField::Tolerance);
    }
    void SetInputFrameRateTolerance(double value) {
        SetField(SettlingGroup::InputFrameRate, SettlingField::Tolerance, value);
    }
    std::int32_t GetInputFrameRateSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::InputFrameRate, SettlingField::SettlingTime);
    }
    void SetInputFrameRateSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::InputFrameRate, SettlingField::SettlingTime, value);
    }
    std::int16_t GetInputFrameRateNumResults() {
        return GetField<std::int16_t>(SettlingGroup::InputFrameRate, SettlingField::NumResults);
    }
    void SetInputFrameRateNumResults(std::int16_t value) {
        SetField(SettlingGroup::InputFrameRate, SettlingField::NumResults, value);
    }
    bool GetInputFrameRateAverage() {
        return GetField<bool>(SettlingGroup::InputFrameRate, SettlingField::Average);
    }
    void SetInputFrameRateAverage(bool value) {
        SetField(SettlingGroup::InputFrameRate, SettlingField::Average, value);
    }
    std::int16_t GetSyncSourceToleranceType() {
        return GetField<std::int16_t>(SettlingGroup::SyncSource, SettlingField::ToleranceType);
    }
    void SetSyncSourceToleranceType(std::int16_t value) {
        SetField(SettlingGroup::SyncSource, SettlingField::ToleranceType, value);
    }
    double GetSyncSourceTolerance() {
        return GetField<double>(SettlingGroup::SyncSource, SettlingField::Tolerance);
    }
    void SetSyncSourceTolerance(double value) {
        SetField(SettlingGroup::SyncSource, SettlingField::Tolerance, value);
    }
    std::int32_t GetSyncSourceSettlingTime() {
        return GetField<std::int32_t>(SettlingGroup::SyncSource, SettlingField::SettlingTime);
    }
    void SetSyncSourceSettlingTime(std::int32_t value) {
        SetField(SettlingGroup::SyncSource, SettlingField::SettlingTime, value);
    }
    std::int16_t GetSyncSourceNumResults() {
        return GetField<std::int16_t>(SettlingGroup::SyncSource, SettlingField::NumResults);
    }
    void SetSyncSourceNumResults(std::int16_t value) {
        SetField(SettlingGroup::SyncSource, SettlingField::NumResults, value);
    }
    bool GetSyncSourceAverage() { return GetField<bool>(SettlingGroup::SyncSource, SettlingField::Average); }
    void SetSyncSourceAverage(bool value) {
        SetField(SettlingGroup::SyncSource, SettlingField::Average, value);
    }

    // The convergence types, as scripts read them.
    std::int16_t GetTOLERANCETYPE_NONE() { return TOLERANCETYPE_NONE; }
    std::int16_t GetTOLERANCETYPE_NORMAL() { return TOLERANCETYPE_NORMAL; }
    std::int16_t GetTOLERANCETYPE_EXPONENTIAL() { return TOLERANCETYPE_EXPONENTIAL; }

protected:
    void* DispatchObject() override { return this; }

private:
    struct Loaded;

    [[nodiscard]] const kalvio::Field<std::int32_t>& IntField(SettlingGroup group, SettlingField field) const;
    [[nodiscard]] kalvio::Field<std::int32_t>& IntField(SettlingGroup group, SettlingField field);
    [[nodiscard]] static int GetIndexForResultID(int resultID);
    [[nodiscard]] const SettlingGroupDetails& GroupOf(int resultID) const;
    bool TakeTolerance(CView* view, int ctrlID, int group);
    bool TakeSettlingTime(CView* view, int ctrlID, int group);
    bool TakeCount(CView* view, int group);
    void StoreGroups(CArchive& archive) const;
    void LoadGroups(CArchive& archive);
    void Apply(const Loaded& loaded, int group);

    std::array<SettlingGroupDetails, kSettlingGroups> m_groups;
    std::array<std::int32_t, kSettlingGroups> m_saveFlags; // user-interface thread
    ViewFactory m_viewFactory;                             // user-interface thread
    // The window opened last and its view, which goes first; user-interface thread.
    std::unique_ptr<CTypedFrameWnd> m_frame;
    std::unique_ptr<CView> m_view;
};
