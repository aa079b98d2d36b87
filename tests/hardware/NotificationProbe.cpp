#include "hardware/NotificationProbe.h"

#include "hardware/PreProcessorNotifications.h"
#include "platform/Text.h"

#include <mutex>
#include <utility>

namespace kalvio::test {

namespace {

std::mutex lock;
std::vector<std::string> notifications; // guarded by lock

void Note(const char* kind, int first, int second) {
    const std::scoped_lock hold(lock);
    notifications.push_back(Format("%s %d %d", kind, first, second));
}

} // namespace

std::vector<std::string> TakeNotifications() {
    const std::scoped_lock hold(lock);
    return std::exchange(notifications, {});
}

} // namespace kalvio::test

// This program links the hardware folder without the pre-processor, whose place these take.
namespace NPreProcessor {

void NotifyNewData(int resultID, int all) {
    kalvio::test::Note("data", resultID, all);
}

void NotifyNewFFTData(int resultID, int detector) {
    kalvio::test::Note("fft", resultID, detector);
}

} // namespace NPreProcessor
