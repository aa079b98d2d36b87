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

// The library calls these through its dynamic symbols, where a program's own definitions come first.
namespace NPreProcessor {

void NotifyNewData(int resultID, int all) {
    kalvio::test::Note("data", resultID, all);
}

void NotifyNewFFTData(int resultID, int detector) {
    kalvio::test::Note("fft", resultID, detector);
}

} // namespace NPreProcessor
