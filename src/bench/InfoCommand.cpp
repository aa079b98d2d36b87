#include "bench/Commands.h"

#include "bench/InfoReport.h"
#include "bench/JsonOutput.h"
#include "bench/WithUnit.h"

namespace kalvio::bench {

int RunInfo(const BenchOptions& options, Terminal& terminal) {
    return WithUnit(options, terminal, [&](BenchApplication& application) -> int {
        if (options.json)
            terminal.out << DumpJson(InfoJson(application.Hardware())) << std::endl;
        else
            terminal.out << InfoTable(application.Hardware()) << std::flush;
        return kExitOk;
    });
}

} // namespace kalvio::bench
