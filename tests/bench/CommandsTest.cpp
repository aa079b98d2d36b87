// Commands as a user gives them, on the simulated unit and a clock that moves only when told.

#include "bench/CommandsRig.h"

#include "bench/commands/BenchApplication.h"
#include "bench/commands/ExitCode.h"
#include "preprocessor/PreProcessor.h"

#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <sstream>

namespace kalvio::bench {
namespace {

using Json = nlohmann::json;

TEST_F(CommandsTest, TheAccessDialogIsAnswered) {
    struct Row {
        std::vector<std::string> arguments;
        const char* typed;
        int code;
    };
    const Row rows[] = {
        {{"--unit", "none", "info"}, "", kExitOk},
        {{"--unit", "absent", "info"}, "what\nc\n", kExitOk},
        {{"--unit", "absent", "info"}, "E\n", kExitNoUnit},
        {{"--unit", "absent", "info"}, "", kExitNoUnit},
        {{"--unit", "absent", "--yes", "info"}, "", kExitOk},
        {{"--unit", "absent", "--no", "info"}, "", kExitNoUnit},
    };
    for (const Row& row : rows) {
        EXPECT_EQ(Run(row.arguments, row.typed), row.code) << m_err.str();
        EXPECT_TRUE(Said(m_err, "Please ensure that the hardware is plugged in and switched on."));
        EXPECT_EQ(Said(m_out, "demo mode"), row.code == kExitOk);
    }
}

TEST_F(CommandsTest, WrongCommandLinesAreUsageErrors) {
    const std::vector<std::string> lines[] = {
        {},
        {"sing"},
        {"watch"},
        {"watch", "loudness"},
        {"watch", "frame-rate", "--in", "dBu"},
        {"watch", "fft:30"},
        {"watch", "rms", "--count", "11"},
        {"--dut", "gain=much", "info"},
        {"--yes", "--no", "info"},
        {"--unit", "real", "info"},
        {"regulate", "--to", "1", "--in", "parsec"},
        {"regulate", "--to", "1", "--min", "5", "--max", "1"},
        {"regulate", "--result", "fft:30", "--to", "1"},
        {"regulate", "--source", "moon"},
    };
    for (const std::vector<std::string>& line : lines) {
        EXPECT_EQ(Run(line), kExitUsage) << testing::PrintToString(line);
        EXPECT_FALSE(m_err.str().empty());
    }
    EXPECT_EQ(Run({"--help"}), kExitOk);
    EXPECT_TRUE(Said(m_out, "Exit codes:"));
}

TEST_F(CommandsTest, FilesThatCannotBeWrittenAreTold) {
    for (const std::vector<std::string>& line :
         {std::vector<std::string>{"watch", "rms", "--csv", "/nowhere/x"},
          {"watch", "rms", "--plot", "/nowhere/x"},
          {"regulate", "--to", "1", "--plot", "/nowhere/x"},
          {"info", "--trace", "/nowhere/x"}}) {
        EXPECT_EQ(Run(line), kExitRunFailed);
        EXPECT_EQ(m_err.str(), "kalvio-bench: cannot write /nowhere/x: No such file or directory\n");
    }
    EXPECT_EQ(Run({"watch", "rms", "--csv", "/dev/full"}), kExitRunFailed);
    EXPECT_TRUE(Said(m_err, "cannot write /dev/full"));
}

// Refused before the unit is touched: no exchange is traced, and the files keep what they held.
TEST_F(CommandsTest, RefusalsNameTheLimitsAndTouchNothing) {
    const struct {
        std::vector<std::string> arguments;
        const char* said;
    } rows[] = {
        {{"watch", "rms", "--level", "nan"}, "The valid range is 0 V to 20 V."},
        {{"watch", "rms", "--level", "20.5"}, "The valid range is 0 V to 20 V."},
        {{"watch", "rms", "--frequency", "1e9"}, "The valid range is 2 Hz to 80000 Hz."},
        {{"watch", "rms", "--count", "11"}, "The valid range is 1 to 10."},
        {{"watch", "rms", "--timeout", "nan"}, "takes 0 to 4000000 seconds"},
        {{"regulate", "--to", "inf"}, "The valid range is 0 V to 200 V."},
        {{"regulate", "--to", "1", "--min", "nan"}, "The valid range is 0 V to 20 V."},
        {{"regulate", "--to", "1", "--level", "-1"}, "--level"},
        {{"regulate"}, "regulate needs a value to reach, --to VALUE, or --type max or --type min"},
        {{"bogus"},
         "unknown command \"bogus\"; there are demo, info, adapter, run, console, watch, regulate, window, "
         "network, arrays, firmware, download, config\n"},
    };
    for (const auto& row : rows) {
        std::ofstream(Path("kept")) << "kept";
        std::vector<std::string> line{"--trace", Path("kept")};
        line.insert(line.end(), row.arguments.begin(), row.arguments.end());
        if (row.arguments.size() > 1) {
            line.emplace_back("--plot");
            line.push_back(Path("kept"));
        }
        EXPECT_EQ(Run(line), kExitUsage) << testing::PrintToString(line);
        EXPECT_TRUE(Said(m_err, row.said)) << m_err.str();
        EXPECT_EQ(ReadAll(Path("kept")), "kept");
        EXPECT_FALSE(std::filesystem::exists(Path("kept.new")));
    }
    EXPECT_EQ(Run({"--unit", "absent", "--no", "--trace", Path("kept"), "info"}), kExitNoUnit);
    EXPECT_EQ(ReadAll(Path("kept")), "kept");
    EXPECT_TRUE(Said(m_err, "the trace of this attempt is in ")) << m_err.str();
    EXPECT_NE(ReadAll(Path("kept.new")).find("not there"), std::string::npos);
}

TEST_F(CommandsTest, AWatchSaysWhyItEndedAndKeepsTryingOnRequest) {
    const std::vector<std::string> line{"watch", "rms", "--dut", "time=200", "--tolerance", "0.5"};
    EXPECT_EQ(Run(line), kExitRunFailed);
    EXPECT_TRUE(Said(m_out, "--keep-trying goes on until --timeout")) << m_out.str();
    std::vector<std::string> patient = line;
    patient.emplace_back("--keep-trying");
    EXPECT_EQ(Run(patient), kExitOk) << m_out.str();
    EXPECT_TRUE(Said(m_out, "; trying again\n"));
    EXPECT_EQ(Run({"--version"}), kExitOk);
    EXPECT_TRUE(m_out.str().starts_with("kalvio-bench 1."));
}

TEST_F(CommandsTest, TheDemoRunsAndWritesItsPlots) {
    ASSERT_EQ(Run({"demo", "--out", Path("plots"), "--trace", Path("trace.txt")}), kExitOk) << m_out.str();
    EXPECT_TRUE(Said(m_out, "CHardware::InitialiseHardware - Calibration tables loaded"));
    EXPECT_TRUE(Said(m_out, "rms: settled at "));
    EXPECT_TRUE(Said(m_out, "  state      .   .   .   .   .   .   .   .   .   .   .  on   .   .   .   .\n"));
    for (const char* plot : {"settling.svg", "level.svg", "peak.svg"}) {
        EXPECT_TRUE(std::filesystem::exists(m_directory / "plots" / plot)) << plot;
    }
    const std::string trace = ReadAll(Path("trace.txt"));
    for (const char* line : {"open \\\\.\\kvusb-0 -> ok", "FPGALoad(), 4096 bytes out",
                             "MicroPutMem(space '2', address 0x70, value 0xFE, check 0) -> ok",
                             "DoCommand(13: generator), 56 bytes out", "Terminate(parameter 0) -> ok"}) {
        EXPECT_NE(trace.find(line), std::string::npos) << line;
    }
}

// Bytes take their own time through the system, while this clock runs ahead.
TEST_F(CommandsTest, ScriptsTalkToASerialPort) {
    const std::string script =
        WriteScript("PORTS_CreateSerialPort(2)\nPORTS_CreateSerialPort(1)\nSP_PortOpen = true\nSP_Output = "
                    "\"*IDN?\\nA\\x80\\r\\nrest\"\n"
                    "SERIAL_ReadUntil(\"\\n\", 60000, first)\nSERIAL_ReadUntil(\"\\n\", 60000, second)\n"
                    "print first, \"|\", second\nSERIAL_ReadUntil(\"\\n\", 20, third)\n"
                    "SP_Output = 10\nSERIAL_ReadUntil(\"\\n\", 60000, third)\nprint third\n"
                    "PORTS_WriteValue(0x378, 0x15A)\nPORTS_DeleteSerialPort(1)\nSP_Input\n");
    EXPECT_EQ(Run({"--serial", "echo", "--serial", "2=/dev/null", "--trace", Path("t"), "run", script}),
              kExitScript);
    EXPECT_EQ(m_out.str(), "PORTS_CreateSerialPort = false\nPORTS_CreateSerialPort = true\nSERIAL_ReadUntil "
                           "= true\nSERIAL_ReadUntil = true\n"
                           "Kalvio,Echo Instrument,1042,1.0|A\x80\nSERIAL_ReadUntil = false\n"
                           "SERIAL_ReadUntil = true\nrest\nPORTS_WriteValue = false\n");
    EXPECT_TRUE(Said(m_err, ":14:1: \"SP_Input\" failed: there is no current serial port; "
                            "PORTS_CreateSerialPort makes one."))
        << m_err.str();
    for (const char* line : {"PortOpen cannot be true: /dev/null is no serial device",
                             "port 0x0378 <- 0x5A, 1 byte: not enabled"}) {
        EXPECT_NE(ReadAll(Path("t")).find(line), std::string::npos) << line;
    }
    EXPECT_EQ(Run({"--serial", "0=/dev/x", "info"}), kExitUsage);
}

TEST_F(CommandsTest, AScriptIsCheckedBeforeAnythingRuns) {
    const std::string parse = WriteScript("print \"ran\"\nREG_Timeout = \nREG_Timeout 5 6\n");
    EXPECT_EQ(Run({"run", parse}), kExitScript);
    EXPECT_EQ(m_out.str(), "");
    EXPECT_EQ(m_err.str(), parse + ":2:15: expected a value, found the end of the line\n" + parse +
                               ":3:15: expected the end of the line, found \"6\"\n");

    const std::string names = WriteScript("print \"ran\"\nREG_Timeuot = 5\nREG_STATUS_OK = 1\n");
    EXPECT_EQ(Run({"run", names}), kExitScript);
    EXPECT_EQ(m_out.str(), "");
    EXPECT_EQ(m_err.str(), names + ":2:1: unknown name \"REG_Timeuot\"; did you mean REG_Timeout?\n" + names +
                               ":3:1: REG_STATUS_OK is read-only\n");
}

TEST_F(CommandsTest, AScriptStopsAtTheLineThatFails) {
    const std::string refused = WriteScript("print \"one\"\nREG_Timeout = 30000\nprint \"two\"\n");
    EXPECT_EQ(Run({"run", refused}), kExitScript);
    EXPECT_EQ(m_out.str(), "one\n");
    EXPECT_TRUE(Said(m_err, (refused + ":2:1: REG_Timeout refused the value: ").c_str())) << m_err.str();

    const std::string failing = WriteScript("REG_RegulateTo = 90\nREG_SourceMaxLimit = 5000\n"
                                            "REG_Start\nwait-regulation\n");
    EXPECT_EQ(Run({"--dut", "silent", "run", failing}), kExitRunFailed);
    EXPECT_TRUE(Said(m_err, ":4:1: Regulation failed: Regulation timed out")) << m_err.str();
    EXPECT_EQ(Run({"run", Path("missing.kvs")}), kExitScript);
}

TEST_F(CommandsTest, AConsoleGoesOnAfterAFaultyLine) {
    const char* input =
        "HW_GetMainTemp\nnonsense here\nHW_MicroGetMem(1, \"x\")\nREG_Timeout = 20\nREG_Timeout";
    EXPECT_EQ(Run({"console", "--json"}, input), kExitOk);
    std::istringstream lines(m_out.str());
    std::vector<Json> answers;
    for (std::string line; std::getline(lines, line);) {
        answers.push_back(Json::parse(line));
    }
    ASSERT_EQ(answers.size(), 5U) << m_out.str();
    EXPECT_EQ(answers[0]["value"], 30.5);
    EXPECT_EQ(answers[1]["line"], 2);
    EXPECT_TRUE(answers[2].contains("error"));
    EXPECT_EQ(answers[3], (Json{{"sequence", 4}, {"line", 4}, {"name", "REG_Timeout"}, {"set", 20}}));
    EXPECT_EQ(answers[4], (Json{{"sequence", 5}, {"line", 5}, {"name", "REG_Timeout"}, {"value", 20}}));
    EXPECT_EQ(Run({"console", "--strict"}, input), kExitScript);
    EXPECT_EQ(Run({"console", "--strict"}, "HW_GetMainTemp"), kExitOk);
}

TEST_F(CommandsTest, CalibrationWritesFollowTheSecurityLevel) {
    const std::string script = WriteScript("HW_SetMainCalibOperator(\"Bench 9\")\nHW_WriteMainTable\n");
    ASSERT_EQ(Run({"run", script}), kExitOk);
    EXPECT_TRUE(Said(m_out, "HW_WriteMainTable = true"));
    ASSERT_EQ(Run({"--security", "2", "run", script}), kExitOk);
    EXPECT_TRUE(Said(m_out, "HW_WriteMainTable = false"));
    EXPECT_TRUE(Said(m_err, "You do not have a high enough security level"));
}

TEST_F(CommandsTest, WhatACalibrationWriteReallyStoredIsTold) {
    const std::string script = WriteScript("HW_SetMainCalibByte(5, 300)\n"
                                           "HW_SetMainCalibByte(5, 30)\n"
                                           "HW_SetMainCalibValue(2, 2.0)\n"
                                           "HW_SetMainCalibValue(2, 1.1)\n"
                                           "HW_SetAnalogueCalibValue(48, -3.7)\n"
                                           "HW_SetAnalogueCalibValue(1, 7)\n"
                                           "HW_SetAnalogueCalibString(0, 7, \"10.00001\")\n"
                                           "HW_SetMainUnitSerialNum(70000)\n"
                                           "HW_WriteMainTable\n");
    const auto warnings = [this] {
        std::string lines;
        std::istringstream in(m_err.str());
        for (std::string line; std::getline(in, line);) {
            const std::size_t at = line.find("s.kvs:");
            lines += at == std::string::npos ? "" : line.substr(at) + "\n";
        }
        return lines;
    };
    EXPECT_EQ(Run({"run", script}), kExitOk);
    EXPECT_EQ(warnings(), "s.kvs:1: warning: HW_SetMainCalibByte stored 44, not 300\n"
                          "s.kvs:3: warning: HW_SetMainCalibValue stored 0, not 2\n"
                          "s.kvs:5: warning: HW_SetAnalogueCalibValue stored -3, not -3.7\n"
                          "s.kvs:7: warning: HW_SetAnalogueCalibString stored 10.0000, not 10.00001\n"
                          "s.kvs:8: warning: HW_SetMainUnitSerialNum stored 4464, not 70000\n");
    EXPECT_EQ(Run({"--json", "run", script}), kExitOk);
    EXPECT_EQ(warnings(), "");
    EXPECT_TRUE(Said(m_out, R"("value":true,"warning":"HW_SetMainCalibByte stored 44, not 300"})"));
    EXPECT_EQ(Run({"--unit", "none", "run", script}), kExitOk);
    EXPECT_TRUE(Said(m_err, "s.kvs:2: warning: HW_SetMainCalibByte reached no memory: there is no unit\n"));
    EXPECT_FALSE(Said(m_err, "s.kvs:6:")); // it failed
    EXPECT_TRUE(Said(m_err, "s.kvs:9: warning: HW_WriteMainTable reached no memory: there is no unit\n"));
}

TEST_F(CommandsTest, ImagesThatCannotBeWrittenAreNamed) {
    const std::string error = "cannot write the program images of the simulated unit: ";
    EXPECT_EQ(Run({"--registry", Path("missing/reg.txt"), "info"}), kExitRunFailed);
    EXPECT_TRUE(Said(m_err, (error + "no directory for them in \"" + Path("missing/reg.txt.images") +
                             "\": No such file or directory\n")
                                .c_str()))
        << m_err.str();
    std::filesystem::create_directories(Path("reg.txt.images/dsp-a.bin/full"));
    EXPECT_EQ(Run({"--registry", Path("reg.txt"), "info"}), kExitRunFailed);
    EXPECT_TRUE(
        Said(m_err, (error + "\"" + Path("reg.txt.images/dsp-a.bin") + "\" cannot be written\n").c_str()))
        << m_err.str();
}

TEST_F(CommandsTest, ARegistryFileIsKeptAndItsImagesStay) {
    ASSERT_EQ(Run({"--registry", Path("reg.txt"), "info"}), kExitOk) << m_err.str();
    const std::string kept = ReadAll(Path("reg.txt"));
    EXPECT_NE(kept.find("HWRunning = 0"), std::string::npos) << kept;
    EXPECT_TRUE(std::filesystem::exists(Path("reg.txt.images") + "/dsp-a.bin"));
    EXPECT_EQ(Run({"--registry", Path("reg.txt"), "info"}), kExitOk);

    std::filesystem::remove(Path("reg.txt.images") + "/gate-array.bin");
    EXPECT_EQ(Run({"--registry", Path("reg.txt"), "info"}), kExitNoUnit);
    EXPECT_TRUE(Said(m_err, "the unit did not come up"));

    std::ofstream(Path("bad.txt")) << "[Machine\\Hardware\nFPGAFile\n";
    EXPECT_EQ(Run({"--registry", Path("bad.txt"), "info"}), kExitOk);
    EXPECT_TRUE(std::filesystem::exists(Path("bad.txt.damaged")));
    EXPECT_FALSE(m_err.str().empty()) << "the user is told";
}

TEST_F(CommandsTest, CtrlCEndsEveryWaitAndTheUnitIsShutDown) {
    SetInterrupted(true);
    for (const std::vector<std::string>& line : {std::vector<std::string>{"watch", "rms", "--follow"},
                                                 {"console"},
                                                 {"demo", "--out", Path("d")},
                                                 {"regulate", "--to", "1", "--min", "0.1", "--max", "5"},
                                                 {"--unit", "absent", "info"}}) {
        std::vector<std::string> traced{"--trace", Path("t.txt")};
        traced.insert(traced.end(), line.begin(), line.end());
        EXPECT_EQ(Run(traced, "wait 1000\n"), kExitInterrupted) << testing::PrintToString(line);
        const bool opened = ReadAll(Path("t.txt")).find("-> ok") != std::string::npos;
        EXPECT_EQ(ReadAll(Path("t.txt")).find("Terminate(parameter 0) -> ok") != std::string::npos, opened);
    }
}

// The same on the system's clock with the pre-processor's own thread.
TEST(ThreadedCommands, ARegulationStartsRunsAndEnds) {
    std::istringstream in;
    std::ostringstream out;
    std::ostringstream err;
    Terminal terminal{in, out, err};
    EXPECT_EQ(RunCommandLine({"regulate", "--to", "0.5", "--min", "0.1", "--max", "5", "--tolerance", "0.01",
                              "--dut", "gain=2,noise=0.001"},
                             terminal),
              kExitOk)
        << out.str() << err.str();
    EXPECT_NE(out.str().find("Regulation successful!"), std::string::npos);
    EXPECT_FALSE(preprocessor::IsThreadRunning());
}

TEST_F(CommandsTest, AMessageBoxWaitsForATypedAnswer) {
    std::istringstream typed("what\ny\n");
    Terminal terminal{typed, m_out, m_err};
    LineSource lines(typed);
    TerminalUserInterface user(terminal, lines, Answers::Ask, false);
    EXPECT_FALSE(AskYesNo("Reset?")) << "what is no yes is no";
    EXPECT_TRUE(AskYesNo("Reset?"));
    EXPECT_FALSE(AskYesNo("Reset?")) << "the input has ended";
    EXPECT_EQ(m_err.str(), "? Reset? [y/n] ? Reset? [y/n] ? Reset? [y/n] no\n");
}

} // namespace
} // namespace kalvio::bench
