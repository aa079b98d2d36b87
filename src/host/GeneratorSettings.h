#pragma once

// The host's generator document: the sources that a regulation varies.

#include "host/Quantities.h"
#include "host/SettingsData.h"
#include "platform/Sync.h"

#include <array>

namespace kalvio {

// Controls of the generator document.
inline constexpr int kCtrlDcOffset = 4021;
inline constexpr int kCtrlJitterFrequency = 4117;
inline constexpr int kCtrlJitterAmplitude = 4118;
inline constexpr int kCtrlGeneratorIndependent = 4300; // 0: channel B follows A; 1: each its own
inline constexpr int kCtrlGeneratorOnA = 4302;
inline constexpr int kCtrlGeneratorAmplitudeA = 4306;
inline constexpr int kCtrlGeneratorFrequencyA = 4310;
inline constexpr int kCtrlGeneratorOnB = 4333;
inline constexpr int kCtrlGeneratorAmplitudeB = 4339;
inline constexpr int kCtrlGeneratorFrequencyB = 4343;
inline constexpr int kCtrlGeneratorSampleRate = 4350;

inline constexpr std::size_t kGeneratorSources = 7;
inline constexpr std::size_t kGeneratorSwitches = 3;

// What the generator is to put out, in storage units; index 0 is channel A.
struct GeneratorState {
    std::array<double, 2> frequency{};
    std::array<double, 2> amplitude{};
    std::array<bool, 2> on{};
    double dcOffset = 0.0;
    double jitterFrequency = 0.0;
    double jitterAmplitude = 0.0;
};

// Where a generator document sends what it holds. Called from the user-interface thread and, during a
// regulation, from the pre-processor thread, one call at a time and in the order of the writes, with the
// document's lock held; must not call back into the document. Status 0 or a failure.
class KALVIO_API GeneratorOutput {
public:
    virtual ~GeneratorOutput() = default;
    virtual std::int16_t Apply(const GeneratorState& state) = 0;
};

// Whether an id is a control of the generator document or a result that comes from the generator side (4008
// and 4009).
[[nodiscard]] KALVIO_API bool IsGeneratorControl(int ctrlID);

} // namespace kalvio

// The generator document. The sources are the control ids 4306, 4310, 4339, 4343, 4021, 4117 and 4118, the
// switches 4300, 4302 and 4333. Its messenger handlers may be called from the pre-processor thread; m_lock
// guards every value and is held while the output is told, so that the output sees the writes in order. It
// stands below the pre-processor's lock and above the hardware's, and is never held over view updates or
// message boxes.
class KALVIO_API CGeneratorSettings : public CSettingsData {
public:
    explicit CGeneratorSettings(kalvio::GeneratorOutput* output = nullptr, CHostApplication* host = nullptr);

    // Null: nobody is told. Any thread.
    void SetOutput(kalvio::GeneratorOutput* output);
    // What the output is told: channel B has channel A's values while 4300 is 0. Any thread.
    [[nodiscard]] kalvio::GeneratorState GetState() const;
    // Sets a source, in storage units, without limits, output or views: for start-up. An unknown id or
    // not-a-number does nothing. Any thread.
    void SetSource(int ctrlID, double storageValue);
    [[nodiscard]] double GetSource(int ctrlID) const; // storage units; 0 for an unknown id; any thread
    [[nodiscard]] int
    GetUnit(int ctrlID) const;          // currently selected; kUnitNone for an unknown id; any thread
    void SetUnit(int ctrlID, int unit); // nothing for a unit that the source does not offer; any thread
    // Limits of a source in storage units; nothing unless minimum is at most maximum. Any thread.
    void SetLimits(int ctrlID, double minimum, double maximum);
    // What the relative units of the amplitudes refer to, with load and full scale. Any thread.
    void SetReferences(const SReferences& references);
    [[nodiscard]] int GetSwitch(int ctrlID) const; // 0 or 1; any thread
    // Sets a switch (any value but 0 is 1) without output or views; UpdateHardware follows. Any thread.
    void SetSwitch(int ctrlID, int value);
    // The status of the last Apply; 0 when all went well. A failed one leaves the document's values as
    // written. Any thread.
    [[nodiscard]] std::int16_t LastStatus() const;

    kalvio::Field<double> digitalSampleRate; // hertz, -1.0 unset; any thread

    // The sources, the switches and the sample rate, in that order.
    std::span<const kalvio::FieldRow> FieldRows() const override;
    // The rows, each behind the flag of the one save group. Nobody is told: UpdateHardware follows.
    void Serialize(CArchive& archive) override;
    // Whether the save group goes into configurations: one flag. User-interface thread.
    std::span<std::uint8_t> SaveFlags() { return m_saved.flags; }

    // Details of a source's own setting, limits and default in the unit given (kUnitNone: the selected one).
    // Also the sync frame rate results 4008 and 4009, which come from the generator side. Null for other ids;
    // the pointer holds while the document lives. User-interface thread.
    const FieldDetails* GetDefaultFieldDetails(int ctrlID, int unit) override;
    int IsEnumValueValid(int ctrlID, int value) override; // an id as above and a unit code
    // The switches, by their rows: a write of anything but 0 and 1 is refused. Any thread.
    using CSettingsData::OnMessenger;
    // The sources, by their rows: a get fills the value in the messenger's unit (kUnitNone: the selected one)
    // and the references. A write outside the limits or of not-a-number is refused; any other is stored, sent
    // to the output, and then told to the views. Results 4008 and 4009 hand over references only and refuse
    // to be set. Any thread, but a messenger that wants messages only from the user-interface thread.
    bool OnMessenger(CPhyValueMessenger* messenger) override;
    // Sends the state to the output. Any thread.
    void UpdateHardware(int ctrlID) override;
    std::span<const int> GetUnitsForCtrlID(int ctrlID) override;

private:
    struct Source {
        double minimum = 0.0; // storage units
        double maximum = 0.0;
        int unit = kUnitNone;
    };
    struct Rows;

    void Apply() KALVIO_REQUIRES(m_lock);
    [[nodiscard]] kalvio::GeneratorState State() const KALVIO_REQUIRES(m_lock);
    [[nodiscard]] double Value(int ctrlID) const KALVIO_REQUIRES(m_lock);
    [[nodiscard]] bool IsOn(int ctrlID) const KALVIO_REQUIRES(m_lock);
    void Fill(std::size_t index, CPhyValueMessenger& messenger) const KALVIO_REQUIRES(m_lock);
    bool Write(std::size_t index, CPhyValueMessenger& messenger) KALVIO_REQUIRES(m_lock);
    [[nodiscard]] FieldDetails SourceDetails(std::size_t index, int unit) const KALVIO_REQUIRES(m_lock);
    [[nodiscard]] CString RefusalText(std::size_t index) const KALVIO_REQUIRES(m_lock);

    // These take m_lock themselves.
    void TakeSource(CPhyValueMessenger* messenger);
    void TakeSwitch(CIntValueMessenger* messenger);
    bool OnSyncResult(CPhyValueMessenger* messenger) const;

    mutable CCriticalSection m_lock;
    std::array<Source, kalvio::kGeneratorSources> m_sources KALVIO_GUARDED_BY(m_lock);
    // Storage units; written under m_lock, so that the output sees the writes in order.
    std::array<kalvio::Field<double>, kalvio::kGeneratorSources> m_values;
    std::array<kalvio::Field<std::int32_t>, kalvio::kGeneratorSwitches> m_switches;
    kalvio::GroupFlags<1> m_saved; // user-interface thread
    SReferences m_references KALVIO_GUARDED_BY(m_lock);
    kalvio::GeneratorOutput* m_output KALVIO_GUARDED_BY(m_lock);
    std::int16_t m_lastStatus KALVIO_GUARDED_BY(m_lock) = 0;
    kalvio::DetailsCache m_details; // user-interface thread
};
