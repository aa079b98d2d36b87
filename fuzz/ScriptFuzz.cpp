// Scripts: every line becomes a statement or an error that says where.

#include "FuzzTarget.h"
#include "reference_host/script/Script.h"

#include <algorithm>
#include <string_view>

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (const std::string_view text :
         {"REG_Result = REG_RESULT_RMSAMPLITUDE # sets\nHW_GetMainTemp\nHW_GetMainCalibString(0, 32)\n",
          "wait 100\nwait-regulation\nprint \"temperature \\x41\\n\", HW_GetMainTemp, -0x7F, 1.5e-3\n",
          "REG_RegulateTo = -1.25\r\nHW_PutMem 88, 0x8000, true\n\n# nothing\n"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    using namespace kalvio::reference_host;
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
    const ParsedScript script = ParseScript(text);
    for (const ScriptError& error : script.errors) {
        kalvio::fuzz::Require(error.line >= 1 && error.line <= lines && error.column >= 0 &&
                                  error.column <= static_cast<int>(size) + 1 && !error.message.empty(),
                              "an error says what is wrong and where");
    }
    for (const ScriptStatement& statement : script.statements) {
        kalvio::fuzz::Require(statement.line >= 1 && statement.line <= lines && !statement.name.empty(),
                              "a statement has a line and a name");
    }
    return 0;
}
