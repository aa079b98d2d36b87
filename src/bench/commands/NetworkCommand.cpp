#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/JsonOutput.h"
#include "bench/output/NetworkReport.h"

namespace kalvio::bench {

namespace {

constexpr int kAddressesOfDot = 4;

// Every address that nobody answers costs its time-out, twice.
void Scan(CKvNetSettings& network, std::ostream& progress) {
    progress << "scanning addresses 0 to 63 " << std::flush;
    network.FillDeviceList([&progress](std::uint8_t address) {
        if (address % kAddressesOfDot == 0) {
            progress << "." << std::flush;
        }
    });
    progress << " " << network.Devices().size() << " found" << std::endl;
}

int List(ReferenceHost& host, const BenchOptions& options, Terminal& terminal) {
    if (host.Hardware().IsHardwarePresent() == 0) {
        terminal.err << "kalvio-bench: there is no unit, and no network without one" << std::endl;
        return kExitNoUnit;
    }
    Scan(host.Network(), terminal.err);
    if (options.json) {
        terminal.out << DumpJson(DevicesJson(host.Network().Devices())) << std::endl;
    } else {
        terminal.out << DeviceTable(host.Network().Devices()) << std::flush;
    }
    return kExitOk;
}

} // namespace

int RunNetwork(const BenchOptions& options, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) {
                        return List(application.Host(), options, terminal);
                    }});
}

} // namespace kalvio::bench
