#pragma once

// The host's analyser document, as far as the library reads and drives it.

#include "host/Quantities.h"
#include "host/SettingsData.h"

#include <array>

namespace kalvio {

enum class InputType : std::int32_t { Analogue = 0, Digital = 1 };

// Controls of the analyser document's own fields.
inline constexpr int kCtrlInputType = 3101;
inline constexpr int kCtrlJitterDomain = 3102;
inline constexpr int kCtrlFirstChannel = 3103;
inline constexpr int kCtrlSecondChannel = 3104;
inline constexpr int kCtrlChannelsReversed = 3105;
inline constexpr int kCtrlInputSampleRate = 3106;
inline constexpr int kCtrlOutputSampleRate = 3107;
inline constexpr int kCtrlLineUpVoltage = 3108;
inline constexpr int kCtrlReferenceA = 3109;
inline constexpr int kCtrlReferenceB = 3110;
inline constexpr int kCtrlCtDetectorUnit = 3111;
inline constexpr int kCtrlRmsUnitAnalogue = 3112;
inline constexpr int kCtrlRmsUnitDigital = 3113;
inline constexpr int kCtrlWindowFunction = 3305;

// Whether the id is one of the results that the analyser measures (all but the reference sync's).
[[nodiscard]] KALVIO_API bool IsAnalyserResult(int resultID);

} // namespace kalvio

// The analyser document: inputs, channels, units of its results. User-interface thread; the Field members
// are read from other threads too.
class KALVIO_API CAnalyserSettings : public CSettingsData {
public:
    explicit CAnalyserSettings(CHostApplication* host = nullptr);

    kalvio::Field<std::int32_t> inputType;               // kalvio::InputType
    kalvio::Field<std::int32_t> jitterDomain;            // 1: jitter-domain operation
    kalvio::Field<std::int32_t> firstChannel;            // software channel pair: 0 A, 1 B
    kalvio::Field<std::int32_t> secondChannel;           // 0 A, 1 B
    kalvio::Field<std::int32_t> windowFunction;          // 0 rectangular; 12 and 13 correct the frequency
    kalvio::Field<std::int32_t> channelsReversed;        // 1: A and B are swapped
    kalvio::Field<double> inputSampleRate;               // hertz, -1.0 unset
    kalvio::Field<double> outputSampleRate;              // hertz, -1.0 unset
    kalvio::Field<double> lineUpVoltage;                 // A/D line-up, volts at full scale
    std::array<kalvio::Field<double>, 2> referenceValue; // per channel, same scale as the line-up voltage
    kalvio::Field<std::int32_t> jitterAveragingState;    // 4: restart
    kalvio::Field<double> jitterAverage;
    kalvio::Field<std::int32_t> jitterAverageCount;
    SReferences references; // reference amplitude, load, full scale; user-interface thread

    CString ctDetectorName = "Wideband"; // user-interface thread
    kalvio::Field<std::int32_t> ctDetectorUnit{kUnitVolt};
    kalvio::Field<std::int32_t> rmsUnitAnalogue{kUnitVolt};
    kalvio::Field<std::int32_t> rmsUnitDigital{kUnitDbfs};

    std::span<const kalvio::FieldRow> FieldRows() const override;
    void Serialize(CArchive& archive) override; // the rows, each behind the flag of the one save group
    // Whether the save group goes into configurations: one flag. User-interface thread.
    std::span<std::uint8_t> SaveFlags() { return m_saved.flags; }

    // Fields with a result id as control id (3208, 3209, 3210, 3211, 3216, 3251, 3253, 3351, 3352, 3008,
    // 3009, 3051, 3054, 3057). Details of the result's own setting, with limits and default in the unit given
    // (kUnitNone: its default unit); the document's own fields; null for other ids. The pointer holds while
    // the document lives.
    const FieldDetails* GetDefaultFieldDetails(int ctrlID, int unit) override;
    // 1 when the result may be shown in the unit with that code. Amplitudes offer the units of the input in
    // use; a CT detector that shows a relative unit offers only relative ones, any other only absolute ones.
    int IsEnumValueValid(int ctrlID, int value) override;
    // A get hands over the result's references; the value is the measurement's and reads "no result" here.
    // Results refuse to be set.
    bool OnMessenger(CPhyValueMessenger* messenger) override;
    using CSettingsData::OnMessenger;
    std::span<const int> GetUnitsForCtrlID(int ctrlID) override;

    // The value that a result is regulated to by default, in the unit of GetResultDefaultUnit. 0 for other
    // ids.
    [[nodiscard]] double GetResultDefault(int resultID) const;
    // The unit that a result is shown in by default; kUnitNone for other ids. An FFT detector's own unit
    // goes to GetAmplitudeUnit instead.
    [[nodiscard]] int GetResultDefaultUnit(int resultID) const;
    // The unit that an amplitude shows when its own setting says `ownUnit`: that one when it is relative or
    // belongs to the input in use; otherwise UI in jitter-domain operation, else the RMS amplitude's unit
    // (the input's first when that one is relative and the amplitude is not).
    [[nodiscard]] int GetAmplitudeUnit(int ownUnit) const;
    // What amplitudes are just now: jitter in jitter-domain operation, else by the input type.
    [[nodiscard]] const kalvio::Quantity& AmplitudeQuantity() const;

private:
    [[nodiscard]] const kalvio::Quantity* QuantityOf(int resultID) const;
    kalvio::DetailsCache m_details;
    kalvio::GroupFlags<1> m_saved; // user-interface thread
};
