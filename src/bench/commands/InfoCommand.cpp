#include "bench/commands/Commands.h"

#include "bench/commands/WithUnit.h"
#include "bench/output/InfoReport.h"
#include "bench/output/JsonOutput.h"

namespace kalvio::bench {

int RunInfo(const BenchOptions& options, Terminal& terminal) {
    return WithUnit(options, terminal, {.run = [&](BenchApplication& application) -> int {
                        if (options.json) {
                            terminal.out << DumpJson(InfoJson(application.Host().Hardware())) << std::endl;
                        } else {
                            terminal.out << InfoTable(application.Host().Hardware()) << std::flush;
                        }
                        return kExitOk;
                    }});
}

} // namespace kalvio::bench
