#pragma once

// What the program tells the shell; listed in --help.

namespace kalvio::bench {

enum ExitCode : int {
    kExitOk = 0,
    kExitRunFailed = 1,     // a result did not settle, a regulation failed, a file could not be written
    kExitUsage = 2,         // the command line
    kExitNoUnit = 3,        // the unit did not come up
    kExitScript = 4,        // a script could not be read, or a line of it was wrong or failed
    kExitFile = 5,          // another file could not be read, or was refused for what it holds
    kExitInterrupted = 130, // Ctrl-C
};

} // namespace kalvio::bench
