#include "bench/commands/CommandLine.h"
#include "bench/terminal/Interrupt.h"

#include <iostream>
#include <unistd.h>

int main(int argc, char** argv) {
    kalvio::bench::CatchInterrupt();
    const bool typed = isatty(STDIN_FILENO) != 0 && isatty(STDOUT_FILENO) != 0;
    kalvio::bench::Terminal terminal{std::cin, std::cout, std::cerr,
                                     typed ? STDIN_FILENO : kalvio::bench::kNoKeyboard};
    return kalvio::bench::RunCommandLine({argv + 1, argv + argc}, terminal);
}
