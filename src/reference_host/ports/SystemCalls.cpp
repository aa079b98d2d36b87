#include "reference_host/ports/SystemCalls.h"

#include <cerrno>
#include <fcntl.h>
#include <sys/file.h>
#include <sys/ioctl.h>
#include <unistd.h>

namespace kalvio::reference_host {

namespace {

// Makes the call again when a signal came in between.
template<typename Call>
auto Repeat(Call call) {
    auto answer = call();
    while (answer < 0 && errno == EINTR) {
        answer = call();
    }
    return answer < 0 ? -errno : answer;
}

SystemCalls MakeRealCalls() {
    SystemCalls calls;
    calls.open = [](const std::string& path) {
        return Repeat([&] { return ::open(path.c_str(), O_RDWR | O_NOCTTY | O_NONBLOCK | O_CLOEXEC); });
    };
    calls.close = [](int descriptor) { return ::close(descriptor) < 0 ? -errno : 0; };
    calls.lock = [](int descriptor) {
        return Repeat([&] { return ::flock(descriptor, LOCK_EX | LOCK_NB); });
    };
    calls.read = [](int descriptor, std::span<char> bytes) -> long {
        return Repeat([&] { return ::read(descriptor, bytes.data(), bytes.size()); });
    };
    calls.write = [](int descriptor, std::string_view bytes) -> long {
        return Repeat([&] { return ::write(descriptor, bytes.data(), bytes.size()); });
    };
    calls.control = [](int descriptor, unsigned long request, void* argument) {
        return Repeat([&] { return ::ioctl(descriptor, request, argument); });
    };
    return calls;
}

} // namespace

const SystemCalls& RealSystemCalls() {
    static const SystemCalls calls = MakeRealCalls();
    return calls;
}

} // namespace kalvio::reference_host
