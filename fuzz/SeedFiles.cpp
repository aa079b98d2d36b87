// Writes the seeds of a target to files: TARGET --record-seeds FOLDER. A fuzzer reads its inputs from files,
// and the seeds are made by the code that they are meant for, so that they follow its formats.

#include "FuzzTarget.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <string_view>

namespace {

bool RecordSeeds(const std::filesystem::path& folder) {
    int number = 0;
    for (const kalvio::fuzz::Bytes& seed : kalvio::fuzz::Seeds()) {
        std::ofstream file(folder / ("seed-" + std::to_string(++number)), std::ios::binary);
        file.write(reinterpret_cast<const char*>(seed.data()), static_cast<std::streamsize>(seed.size()));
        if (!file.flush()) {
            return false;
        }
    }
    return number > 0;
}

} // namespace

extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv) {
    if (*argc == 3 && std::string_view((*argv)[1]) == "--record-seeds") {
        std::exit(RecordSeeds((*argv)[2]) ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    return 0;
}
