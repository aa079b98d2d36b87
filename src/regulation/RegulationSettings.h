#pragma once

// The document that says what to regulate and how, and that starts, stops and reports a regulation.

#include "host/Measurement.h"
#include "host/PanelWindows.h"
#include "host/SettingsData.h"
#include "platform/Controls.h"
#include "platform/Export.h"
#include "preprocessor/EResult.h"
#include "preprocessor/RegulationDetails.h"
#include "preprocessor/RegulatorWatcher.h"
#include "regulation/RegulationFields.h"

#include <cstdint>
#include <span>

// User-interface thread, all of it; the regulator reads the details under the pre-processor lock in the
// thread that starts it, which is this one. Constructed with the main window of the host application, to
// which the host routes kMessageWatchFinished back as OnRegulationResult. It enters its controls in the
// host's control item list while it lives; the program sets CHostApplication::regulation and
// regulationDetails.
//
// Values are kept in storage units, except the offset tolerance (result unit, dB for a level), the step size
// (source unit, dB for a level), the sensitivity (percent) and the time-out (seconds).
class KALVIO_API CRegulationSettings : public CSettingsData, public NPreProcessor::RegulationDetailsProvider {
public:
    using RegulationDetails = NPreProcessor::RegulationDetails;

    explicit CRegulationSettings(CHostApplication* host = nullptr);
    ~CRegulationSettings() override; // stops a regulation that runs

    // Each getter returns the stored value, but RegulateTo, Tolerance, the source limits and StepSize, which
    // are in the unit that the field shows. Each setter goes through the field's messenger handler, as a
    // script's does: a value that the field cannot take is refused and changes nothing.
    short GetResult() { return Short(kalvio::regulation::kResult); } // a result id
    void SetResult(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlResult); }
    short GetResultFFTDetector() { return Short(kalvio::regulation::kResultFftDetector); } // 0: none
    void SetResultFFTDetector(short value) {
        OLESetIntValue(value, kalvio::regulation::kCtrlResultFftDetector);
    }
    short GetChannel() { return Short(kalvio::regulation::kChannel); } // 0 to 6
    void SetChannel(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlChannel); }
    short GetRegulationType() { return Short(kalvio::regulation::kRegulationType); } // 0 to 2
    void SetRegulationType(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlRegulationType); }
    double GetRegulateTo() { return OLEGetPhyValue(kalvio::regulation::kCtrlRegulateTo); }
    void SetRegulateTo(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlRegulateTo); }
    short GetResultUnit() { return Short(kalvio::regulation::kResultUnit); } // a unit code
    void SetResultUnit(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlResultUnit); }
    short GetToleranceType() { return Short(kalvio::regulation::kToleranceType); } // 0 or 1
    void SetToleranceType(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlToleranceType); }
    double GetTolerance() { return OLEGetPhyValue(kalvio::regulation::kCtrlTolerance); }
    void SetTolerance(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlTolerance); }
    short GetToleranceUnit() { return Short(kalvio::regulation::kToleranceUnit); } // a unit code
    void SetToleranceUnit(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlToleranceUnit); }
    double GetSensitivity() { return Real(kalvio::regulation::kSensitivity); } // percent
    void SetSensitivity(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlSensitivity); }
    short GetTrend() { return Short(kalvio::regulation::kTrend); } // 0 to 3
    void SetTrend(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlTrend); }
    int GetUseSettling() { return Int(kalvio::regulation::kUseSettling); }
    void SetUseSettling(int value) { OLESetIntValue(value, kalvio::regulation::kCtrlUseSettling); }
    short GetSource() { return Short(kalvio::regulation::kSource); } // 0 to 4
    void SetSource(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlSource); }
    short GetSourceFFTDetector() { return Short(kalvio::regulation::kSourceFftDetector); } // 0: none
    void SetSourceFFTDetector(short value) {
        OLESetIntValue(value, kalvio::regulation::kCtrlSourceFftDetector);
    }
    int GetOppositeChannel() { return Int(kalvio::regulation::kOppositeChannel); }
    void SetOppositeChannel(int value) { OLESetIntValue(value, kalvio::regulation::kCtrlOppositeChannel); }
    double GetSourceMinLimit() { return OLEGetPhyValue(kalvio::regulation::kCtrlSourceMinLimit); }
    void SetSourceMinLimit(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlSourceMinLimit); }
    double GetSourceMaxLimit() { return OLEGetPhyValue(kalvio::regulation::kCtrlSourceMaxLimit); }
    void SetSourceMaxLimit(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlSourceMaxLimit); }
    short GetSourceUnit() { return Short(kalvio::regulation::kSourceUnit); } // a unit code
    void SetSourceUnit(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlSourceUnit); }
    double GetStepSize() { return OLEGetPhyValue(kalvio::regulation::kCtrlStepSize); }
    void SetStepSize(double value) { OLESetPhyValue(value, kalvio::regulation::kCtrlStepSize); }
    int GetStepSizeAuto() { return Int(kalvio::regulation::kStepSizeAuto); }
    void SetStepSizeAuto(int value) { OLESetIntValue(value, kalvio::regulation::kCtrlStepSizeAuto); }
    short GetDirection() { return Short(kalvio::regulation::kDirection); } // 0 to 2
    void SetDirection(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlDirection); }
    short GetTimeout() { return Short(kalvio::regulation::kTimeout); } // 1 to 3600 seconds
    void SetTimeout(short value) { OLESetIntValue(value, kalvio::regulation::kCtrlTimeout); }
    int GetContinuous() { return Int(kalvio::regulation::kContinuous); }
    void SetContinuous(int value) { OLESetIntValue(value, kalvio::regulation::kCtrlContinuous); }

    // The value of a field by its index as it is kept, whatever its unit; 0 for no such field.
    [[nodiscard]] double GetStoredValue(int index) const;

    // Fields.
    [[nodiscard]] std::span<const kalvio::FieldRow> FieldRows() const override;
    [[nodiscard]] static std::span<const kalvio::FieldRow> Rows();
    // The index of the field; 2646 is the offset tolerance in dB with unit 37, the ratio with unit 38.
    int GetFieldIndexForCtrlID(int ctrlID, int unit) override;
    // Limits are in the unit that the field shows, but the ratio tolerance's, which are fractions; a default
    // is as the field keeps it.
    int OnViewChanged(CView* view, int ctrlID) override; // 1
    void UpdateHardware(int ctrlID) override;            // nothing of this document goes to the hardware

    // Change handlers, one per field: apply the messenger's value, bring what depends on it up to date, and
    // tell the views. On get they fill the messenger.
    void OnResult(CIntValueMessenger* messenger);
    void OnResultFFTDetector(CIntValueMessenger* messenger);
    void OnChannel(CIntValueMessenger* messenger);
    void OnRegulationType(CIntValueMessenger* messenger);
    void OnRegulateTo(CPhyValueMessenger* messenger);
    void OnResultUnit(CIntValueMessenger* messenger);
    void OnToleranceType(CIntValueMessenger* messenger);
    void OnTolerance(CPhyValueMessenger* messenger);
    void OnToleranceUnit(CIntValueMessenger* messenger);
    void OnSensitivity(CPhyValueMessenger* messenger);
    void OnTrend(CIntValueMessenger* messenger);
    void OnUseSettling(CIntValueMessenger* messenger);
    void OnSource(CIntValueMessenger* messenger);
    void OnSourceFFTDetector(CIntValueMessenger* messenger);
    void OnOppositeChannel(CIntValueMessenger* messenger);
    void OnMinLimit(CPhyValueMessenger* messenger);
    void OnMaxLimit(CPhyValueMessenger* messenger);
    void OnSourceUnit(CIntValueMessenger* messenger);
    void OnStepSize(CPhyValueMessenger* messenger); // kAutomaticStep sets StepSizeAuto instead
    void OnStepSizeAuto(CIntValueMessenger* messenger);
    void OnDirection(CIntValueMessenger* messenger);
    void OnTimeout(CIntValueMessenger* messenger);
    void OnContinuous(CIntValueMessenger* messenger);

    // Opens a window with one panel (262 result, 263 source, 264 operation) or all three (-1), or moves the
    // open one; null when the host cannot make it (the user was told).
    CTypedFrameWnd* OpenSettingsWindow(int panel, int show, int windowType, const CPoint* where) override;
    // Makes the view that OpenSettingsWindow puts into the window; a CRegulationView by default.
    void SetViewFactory(kalvio::PanelWindows::ViewFactory factory) { m_viewFactory = std::move(factory); }
    void PrintDetails(CPrintView* view) override;
    // What the edit of a numeric field shows; an automatic step size has no text.
    [[nodiscard]] CString GetNumberText(int ctrlID);
    // The unit that a numeric field is shown in; kUnitNone for others.
    [[nodiscard]] int GetShownUnit(int ctrlID) const;

    // Choices. A packed choice is detector * 65536 + (choice & 0xFFFF).
    [[nodiscard]] std::uint32_t GetResultItemData() const;
    [[nodiscard]] static std::uint32_t GetResultItemData(int result, int detector);
    [[nodiscard]] std::uint32_t GetSourceItemData() const;
    [[nodiscard]] static std::uint32_t GetSourceItemData(int source, int detector);
    // 1 when both parts are choices that the document takes, else 0; the parts are given either way.
    int ExtractResultFromItemData(std::uint32_t data, int* result, int* detector);
    int ExtractSourceFromItemData(std::uint32_t data, int* source, int* detector);
    // Refills a combo with the choices of a field. 1, or 0 for no combo or an id outside 2640 to 2663.
    int FillCombo(CComboBox* combo, int ctrlID);
    // The text of a choice; the result's and the source's may be packed. Empty for no such choice.
    [[nodiscard]] CString GetComboItemText(int ctrlID, int value);
    // "FFT Detector n: name"; empty for null.
    [[nodiscard]] CString GetFFTDetectorName(const CFFTDetectorSettings* detector) const;

    // What the choices stand for in the host.
    // 1, or 0 for an unknown result. b is -1 and the channel A for results that have no channel B; the
    // detector is 65535 for all but the FFT detector's.
    int GetResultIDs(int& a, int& b, int& detector, ChannelNumber& channel);
    [[nodiscard]] ChannelNumber GetActualChannel() const;
    // The source's control id; *second is the other channel's when both channels are regulated, else -1.
    int GetSourceCtrlID(int* second, int* detector) const;
    void GetSourceCtrlIDs(int& id, int& second, int& detector) const;                  // detector 65535: none
    [[nodiscard]] CSettingsData* GetSettingsForCtrlID(int ctrlID, int detector) const; // null: none
    [[nodiscard]] bool IsFFTDetectorUsed(int detector) const;
    [[nodiscard]] bool IsResultFromGenerator() const;
    [[nodiscard]] bool IsSourceFromAnalyser() const { return false; }

    // The unit references now in force for the result (1) or the source (0); they are remembered as those
    // that AdjustValues starts from.
    void GetReferences(SReferences& references, int result);
    [[nodiscard]] const SReferences& ResultReferences() const { return m_resultReferences; } // remembered
    [[nodiscard]] const SReferences& SourceReferences() const { return m_sourceReferences; } // remembered
    // Re-expresses the stored values after the references changed, so that the values shown stay the same.
    void AdjustValues(int result, int source);

    // What happened outside, told by the host.
    void OnAnalyserDomainChanged();
    void OnDetectorRelativityChanged(int detector, int relative); // 65535: the CT detector
    void OnJDOChanged();
    void OnADLineUpUpdated();
    void RemoveFFTDetector(int detector); // call while the detector still exists

    // What the regulator is told. 0 for a trend or direction outside 0 to 3, or an unknown result. In
    // storage units. May write the lower source limit to the source (an unknown direction).
    int GetRegulationDetails(RegulationDetails& details) override;
    void GetResultRange(double& lower, double& target, double& upper, int& references);
    void GetSourceRange(double& minimum, double& step, double& maximum, int& references);

    // A run.
    int StartRegulation(int showMessages); // 1 when a regulation was started
    int StopRegulation();                  // 1; status Aborted when one was running
    [[nodiscard]] NPreProcessor::EResult GetStatus() const { return m_status; }
    [[nodiscard]] int IsRegulationRunning() const;
    // The handler of kMessageWatchFinished. Reports of a run that was stopped since are dropped.
    void OnRegulationResult(unsigned result, long unused);
    [[nodiscard]] int IsMonotonic() const;
    int OLEStart();
    void OLEStop();
    short OLEGetStatus(); // 0 none, 1 in progress, 3 OK, 4 failed

    // Archive, save table and trees.
    void Serialize(CArchive& archive) override;
    void PopulateConfigTreeCtrl(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateSaveTable(CConfigTreeCtrl* tree, HTREEITEM parent) override;
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent) override;

    const kalvio::DispatchTable& GetDispatchMap() const override;

private:
    using IntField = kalvio::Field<std::int32_t>;
    using RealField = kalvio::Field<double>;
    struct RowQueries;

    [[nodiscard]] int Int(int index) const { return static_cast<int>(GetStoredValue(index)); }
    [[nodiscard]] short Short(int index) const { return static_cast<short>(Int(index)); }
    [[nodiscard]] double Real(int index) const { return GetStoredValue(index); }
    void SetStoredValue(int index, double value);
    void SetToDefault(int index);

    bool StartByScript() { return OLEStart() != 0; }

    // Where the result's and the source's own settings are; null while the host has none.
    [[nodiscard]] CSettingsData* ResultDocument() const;
    [[nodiscard]] CSettingsData* ResultsTable() const; // limits and defaults of the result
    [[nodiscard]] CSettingsData* SourceDocument() const;
    void RefreshReferences(int result);

    // The host's details of a field that takes its limits from there; null for the others.
    [[nodiscard]] const FieldDetails* HostDetails(int index) const;
    [[nodiscard]] FieldDetails DetailsOf(int index) const;
    [[nodiscard]] double DefaultRegulateTo() const;
    [[nodiscard]] int DefaultResultUnit() const;
    [[nodiscard]] double DefaultToleranceOffset() const;
    [[nodiscard]] int DefaultToleranceUnit() const;
    [[nodiscard]] double DefaultSourceLimit(int index) const;
    [[nodiscard]] int DefaultSourceUnit() const;
    [[nodiscard]] double DefaultStepSize() const;
    [[nodiscard]] int IsResultValid(int result) const;
    [[nodiscard]] int IsDetectorValid(int detector) const;
    [[nodiscard]] int IsChannelValid(int channel) const;
    [[nodiscard]] int IsResultUnitValid(int unit) const;
    [[nodiscard]] int IsToleranceUnitValid(int unit) const;
    [[nodiscard]] int IsSourceUnitValid(int unit) const;
    [[nodiscard]] int IsDirectionValid(int direction) const;
    [[nodiscard]] std::span<const int> ResultUnits();
    [[nodiscard]] std::span<const int> ToleranceUnits();
    [[nodiscard]] std::span<const int> SourceUnits();
    [[nodiscard]] bool IsOffset() const;
    [[nodiscard]] bool IsAbsolute() const;

    // What the handlers have in common; true when the field changed.
    bool StoreEnum(IntField& member, CIntValueMessenger* messenger);
    void StoreFlag(IntField& member, CIntValueMessenger* messenger);
    void StoreReal(RealField& member, CPhyValueMessenger* messenger, const FieldDetails& limits,
                   int fieldUnit, int storedUnit, const SReferences& references);
    void StoreDifference(RealField& member, CPhyValueMessenger* messenger, const FieldDetails& limits,
                         int shownUnit, const SReferences& references);
    bool StoreDetectorChoice(IntField& member, CIntValueMessenger* messenger, int detector, unsigned refusal);
    void FollowResultUnit();
    void CheckResultUnit();
    void ForgetDetector(int detectorCtrlID, int choiceCtrlID, int choiceIndex);

    int ExtractChoice(std::uint32_t data, int ctrlID, int detectorCtrlID, int* choice, int* detector);
    [[nodiscard]] bool IsOffered(int ctrlID, int value);
    void AddDetectors(CComboBox& combo) const;
    static void AddUnits(CComboBox& combo, std::span<const int> units);
    [[nodiscard]] CString ResultText(int result, int detector) const;

    [[nodiscard]] bool IsSplit(); // both channels, one after the other
    [[nodiscard]] bool IsSecondPass();
    void SplitPasses(RegulationDetails& d);
    void ChooseAlgorithm(RegulationDetails& d);
    void SourceRange(int ctrlID, double& minimum, double& step, double& maximum, int& references) const;
    [[nodiscard]] CPhyValueMessenger ReadSource(int ctrlID, int unit) const;
    void WriteSource(int ctrlID, double storageValue) const;

    int ValidateEntries(int showMessages);
    // Whether the host has a value for what the next pass watches.
    [[nodiscard]] bool IsResultThere();
    int EnsureSetupCorrect();
    void SwitchGeneratorsOn() const;
    void ClampSource(int ctrlID) const;
    [[nodiscard]] bool IsReportOfStoppedRun(NPreProcessor::EResult outcome);
    void OnRegulationFinished();
    void LoadFields(CArchive& archive);
    [[nodiscard]] std::uint8_t& SaveFlag(int group);

    IntField m_result;
    IntField m_resultFftDetector;
    IntField m_channel;
    IntField m_regulationType;
    RealField m_regulateTo;
    IntField m_resultUnit;
    IntField m_toleranceType;
    RealField m_toleranceOffset;
    RealField m_toleranceRatio;
    IntField m_toleranceUnit;
    RealField m_sensitivity;
    IntField m_trend;
    IntField m_useSettling;
    IntField m_source;
    IntField m_sourceFftDetector;
    IntField m_oppositeChannel;
    RealField m_sourceMinLimit;
    RealField m_sourceMaxLimit;
    IntField m_sourceUnit;
    RealField m_stepSize;
    IntField m_stepSizeAuto;
    IntField m_direction;
    IntField m_timeout;
    IntField m_continuous;

    int m_offsetUnit = kUnitNone; // what ToleranceUnits answers for an offset

    std::uint8_t m_saveResultGroup = 1;
    std::uint8_t m_saveSourceGroup = 1;
    SReferences m_resultReferences;
    SReferences m_sourceReferences;

    NPreProcessor::EResult m_status = NPreProcessor::None;
    NPreProcessor::EResult m_firstPassResult = NPreProcessor::None;
    int m_passCounter = 1;          // passes still to run
    bool m_usesFft = false;         // this run raised the FFT usage count
    int m_reportsOfStoppedRuns = 0; // on their way although their run was stopped
    CRegulatorWatcher m_watcher;
    kalvio::PanelWindows::ViewFactory m_viewFactory;
    kalvio::PanelWindows m_windows; // goes first: its views show the document
};
