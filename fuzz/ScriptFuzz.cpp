// Scripts: every line becomes a statement or an error that says where; a script without errors is run.

#include "FuzzTarget.h"
#include "reference_host/application/ReferenceHost.h"
#include "reference_host/script/ScriptRunner.h"
#include "testing/ManualClock.h"
#include "testing/ScriptedUserInterface.h"

#include <nlohmann/json.hpp>

#include <algorithm>
#include <memory>
#include <sstream>
#include <string_view>

namespace {

using namespace kalvio::reference_host;

constexpr std::size_t kMostStatements = 40;

// Waits end at once, nothing is measured, and files are neither written nor read.
class IdleHost final : public ScriptHost {
public:
    PauseEnd Pause(std::uint32_t) override { return PauseEnd::Done; }
    RegulationEnd WaitForRegulation() override { return {false, true, "done"}; }
    [[nodiscard]] CString RefuseQuantity(const ScriptQuantity&) const override { return {}; }
    [[nodiscard]] CString RefuseWindow(const WindowRequest&) const override { return {}; }
};

// A reference host without a unit, and without its ports: a script must not reach the devices of this
// computer.
class Session {
public:
    explicit Session(const std::vector<ScriptStatement>& statements) : m_statements(statements) {}

    std::vector<ScriptError> CheckThenRun() {
        std::vector<ScriptError> errors = m_runner.Check(m_statements);
        for (std::size_t i = 0; errors.empty() && i < std::min(m_statements.size(), kMostStatements); ++i) {
            if (StatementOutcome outcome = m_runner.Run(m_statements[i]); outcome.end != StatementEnd::Ok) {
                errors.push_back(std::move(outcome.error));
            }
        }
        std::istringstream lines(m_output.str());
        for (std::string line; std::getline(lines, line);) {
            kalvio::fuzz::Require(nlohmann::json::accept(line), "a statement's answer is JSON");
        }
        return errors;
    }

private:
    const std::vector<ScriptStatement>& m_statements;
    kalvio::test::ManualClock m_clock;
    kalvio::test::ScriptedUserInterface m_interface;
    ReferenceHost m_host{{.unit = UnitKind::None, .peripherals = "none", .threaded = false}};
    CCmdTarget* m_objects[4]{&m_host.Hardware(), &m_host.Settling(), &m_host.Regulation(), &m_host.Network()};
    ScriptNames m_names{m_objects};
    IdleHost m_idle;
    std::ostringstream m_output;
    ScriptRunner m_runner{m_names, m_idle, {m_output, true}};
};

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    std::vector<Bytes> seeds;
    for (const std::string_view text :
         {"REG_Result = REG_RESULT_RMSAMPLITUDE # sets\nHW_GetMainTemp\nHW_GetMainCalibString(0, 32)\n",
          "wait 100\nwait-regulation\nprint \"temperature \\x41\\n\", HW_GetMainTemp, -0x7F, 1.5e-3\n",
          "window open adapter\nwindow act adapter 2900 type \"1\"\nsweep \"outputs\", read rms\nsave "
          "x.kvc\n",
          "HW_GetMainTemp\nREG_Result\nprint read rms, \"x\"\nKVNET_GetStatus(3, answer)\nprint answer\n",
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
    std::vector<ScriptError> errors = script.errors;
    if (errors.empty() && !script.statements.empty()) {
        errors = std::make_unique<Session>(script.statements)->CheckThenRun();
    }
    for (const ScriptError& error : errors) {
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
