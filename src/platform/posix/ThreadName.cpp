#include "platform/Thread.h"

#include <pthread.h>
#include <string>

namespace kalvio {

namespace {

constexpr std::size_t kLongestThreadName = 15; // the system refuses a longer one

} // namespace

void SetCurrentThreadName(std::string_view name) {
    pthread_setname_np(pthread_self(), std::string(name.substr(0, kLongestThreadName)).c_str());
}

} // namespace kalvio
