#pragma once

// The host's FFT parameters, which the trigger is armed with.

#include "host/SettingsData.h"
#include "platform/Export.h"
#include "platform/Sync.h"

namespace kalvio {

// Controls of the FFT document.
inline constexpr int kCtrlFftLength = 3310;
inline constexpr int kCtrlTriggerPosition = 3311;
inline constexpr int kCtrlTriggerLevelA = 3312;
inline constexpr int kCtrlTriggerLevelB = 3313;
inline constexpr int kCtrlTriggerSlope = 3314;
inline constexpr int kCtrlTriggerOn = 3315;
inline constexpr int kCtrlTriggerSource = 3316;
inline constexpr int kCtrlTriggerChannel = 3317;

} // namespace kalvio

// Any thread. The trigger is armed under the document's own critical section; who changes several fields that
// belong together takes it too.
class KALVIO_API CFFTParametersSettings : public CSettingsData {
public:
    using CSettingsData::CSettingsData;

    CCriticalSection lock;
    kalvio::Field<std::int32_t> fftLength{16384};   // points
    kalvio::Field<std::int32_t> triggerPosition{0}; // 0 all after ... 4 all before the trigger
    std::array<kalvio::Field<double>, 2> triggerLevel;
    kalvio::Field<std::int32_t> triggerSlope{1};   // 0 falling, 1 rising
    kalvio::Field<std::int32_t> triggerOn{0};      // 1: wait for the trigger condition, 0: run free
    kalvio::Field<std::int32_t> triggerSource{0};  // 0 to 3
    kalvio::Field<std::int32_t> triggerChannel{0}; // 0 A, 1 B
    int pending KALVIO_GUARDED_BY(lock) = 0;       // 1: to be armed anew; arming clears it

    std::span<const kalvio::FieldRow> FieldRows() const override;
    void Serialize(CArchive& archive) override; // the rows, each behind the flag of the one save group
    // Whether the save group goes into configurations: one flag. User-interface thread.
    std::span<std::uint8_t> SaveFlags() { return m_saved.flags; }

private:
    kalvio::GroupFlags<1> m_saved; // user-interface thread
};
