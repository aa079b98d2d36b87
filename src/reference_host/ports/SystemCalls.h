#pragma once

// The system calls that serial ports are made of, in a table that tests replace.

#include <functional>
#include <span>
#include <string>
#include <string_view>

namespace kalvio::reference_host {

// Each answers what the call answers, and on failure its error number, negative.
struct SystemCalls {
    std::function<int(const std::string& path)> open; // to read and write without ever waiting
    std::function<int(int descriptor)> close;
    std::function<int(int descriptor)> lock; // against other programs that lock as well
    std::function<long(int descriptor, std::span<char> bytes)> read;
    std::function<long(int descriptor, std::string_view bytes)> write;
    std::function<int(int descriptor, unsigned long request, void* argument)> control;
};

// The system's own.
[[nodiscard]] const SystemCalls& RealSystemCalls();

} // namespace kalvio::reference_host
