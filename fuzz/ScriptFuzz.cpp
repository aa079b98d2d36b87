// Scripts: every line becomes a statement or an error that says where, and so does what is checked before a
// run.

#include "FuzzTarget.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/script/ReferenceScriptHost.h"
#include "reference_host/script/ScriptRunner.h"
#include "testing/ManualClock.h"

#include <algorithm>
#include <sstream>
#include <string_view>

namespace {

using namespace kalvio::reference_host;

// Checking a script changes nothing, so that one host serves all inputs.
std::vector<ScriptError> Check(const std::vector<ScriptStatement>& statements) {
    static kalvio::test::ManualClock clock;
    static ReferenceHost host{{.unit = UnitKind::None, .peripherals = "none", .threaded = false}};
    static const ScriptNames names(host.AutomationObjects());
    static ReferenceScriptHost scriptHost(host);
    std::ostringstream output;
    return ScriptRunner(names, scriptHost, {output}).Check(statements);
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (const std::string_view text :
         {"REG_Result = REG_RESULT_RMSAMPLITUDE # sets\nHW_GetMainTemp\nHW_GetMainCalibString(0, 32)\n",
          "wait 100\nwait-regulation\nprint \"temperature \\x41\\n\", HW_GetMainTemp, -0x7F, 1.5e-3\n",
          "window open adapter\nwindow act adapter 2900 type \"1\"\nsweep \"outputs\", read rms\nsave "
          "x.kvc\n",
          "source gen-ampl\nexpect read rms within 0.9 1.1\nexpect HW_GetMainTemp within -1 2\n",
          "REG_RegulateTo = -1.25\r\nHW_PutMem 88, 0x8000, true\n\n# nothing\n"}) {
        seeds.emplace_back(text.begin(), text.end());
    }
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    const std::string_view text(reinterpret_cast<const char*>(data), size);
    const auto lines = std::count(text.begin(), text.end(), '\n') + 1;
    const ParsedScript script = ParseScript(text);
    for (const std::vector<ScriptError>& errors : {script.errors, Check(script.statements)}) {
        for (const ScriptError& error : errors) {
            kalvio::fuzz::Require(error.line >= 1 && error.line <= lines && error.column >= 0 &&
                                      error.column <= static_cast<int>(size) + 1 && !error.message.empty(),
                                  "an error says what is wrong and where");
        }
    }
    for (const ScriptStatement& statement : script.statements) {
        kalvio::fuzz::Require(statement.line >= 1 && statement.line <= lines && !statement.name.empty(),
                              "a statement has a line and a name");
    }
    return 0;
}
