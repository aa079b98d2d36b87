#include "bench/commands/CommandLine.h"
#include "bench/terminal/Interrupt.h"

#include <iostream>

int main(int argc, char** argv) {
    kalvio::bench::CatchInterrupt();
    kalvio::bench::Terminal terminal{std::cin, std::cout, std::cerr};
    return kalvio::bench::RunCommandLine({argv + 1, argv + argc}, terminal);
}
