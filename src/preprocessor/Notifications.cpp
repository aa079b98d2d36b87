#include "hardware/Hardware.h"
#include "hardware/PreProcessorNotifications.h"
#include "host/HostApplication.h"
#include "preprocessor/thread/PreProcessorState.h"

namespace kalvio::preprocessor {

namespace {

void OfferSingle(std::uint32_t key) {
    State& state = GetState();
    const NotificationGate::Passage passage(state.gate);
    if (passage.IsOpen()) {
        state.single.OfferTo(key);
    }
}

void OfferBlock() {
    State& state = GetState();
    const NotificationGate::Passage passage(state.gate);
    if (passage.IsOpen()) {
        state.block.OfferToAll();
    }
}

void EnableHardwareNotifications(bool on) {
    if (CHardware* hardware = GetHostApplication().hardware; hardware != nullptr) {
        hardware->EnablePreprocessor(on);
    }
}

} // namespace

void HaltNotifications() {
    State& state = GetState();
    EnableHardwareNotifications(false);
    state.gate.Close();
    state.single.FreeReplacedTables();
    state.block.FreeReplacedTables();
}

bool AreNotificationsHalted() {
    return GetState().gate.IsClosed();
}

void ResumeNotifications() {
    State& state = GetState();
    state.gate.Open();
    EnableHardwareNotifications(true);
    state.single.MakeUpForLostWakeUp();
    state.block.MakeUpForLostWakeUp();
}

} // namespace kalvio::preprocessor

namespace NPreProcessor {

using namespace kalvio::preprocessor;

void NotifyNewData(int resultID, int all) {
    if (all != 0) {
        OfferBlock();
    } else {
        OfferSingle(static_cast<std::uint32_t>(resultID));
    }
}

void NotifyNewFFTData(int resultID, int detector) {
    OfferSingle(CSettlingFilter::MakeKey(resultID, detector));
}

void NotifyNewSettlingParams() {
    State& state = GetState();
    const kalvio::LockGuard guard(Lock());
    for (const kalvio::SignalList* list : {&state.block, &state.single}) {
        list->ForEach([](CSettlingFilter& filter)
                          KALVIO_NEEDS_PREPROCESSOR_LOCK { filter.LoadParameters(); });
    }
}

void Halt() {
    const kalvio::LockGuard guard(Lock());
    HaltNotifications();
}

void Resume() {
    const kalvio::LockGuard guard(Lock());
    ResumeNotifications();
}

} // namespace NPreProcessor
