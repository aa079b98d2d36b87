// Commands as a user gives them, on the simulated unit and a clock that moves only when told.

#include "bench/CommandsRig.h"

#include "bench/commands/BenchApplication.h"
#include "bench/commands/ExitCode.h"
#include "preprocessor/PreProcessor.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <fstream>
#include <sstream>

namespace kalvio::bench {
namespace {

// Refused before the unit is touched: no exchange is traced, and the files keep what they held.
TEST_F(CommandsTest, RefusalsNameTheLimitsAndTouchNothing) {
    const struct {
        std::vector<std::string> arguments;
        const char* said;
    } rows[] = {
        {{"watch", "rms", "--level", "nan"}, "The valid range is 0 V to 20 V."},
        {{"watch", "rms", "--count", "11"}, "The valid range is 1 to 10."},
        {{"regulate", "--to", "inf"}, "The valid range is 0 V to 200 V."},
        {{"regulate", "--to", "1", "--level", "-1"}, "The valid range is 0 V to 20 V."},
        {{"regulate"}, "regulate needs a value to reach, --to VALUE, or --type max or --type min"},
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

// Bytes take their own time through the system, while this clock runs ahead.
TEST_F(CommandsTest, ScriptsTalkToASerialPort) {
    const std::string script =
        WriteScript("PORTS_CreateSerialPort(2)\nPORTS_CreateSerialPort(1)\nSP_PortOpen = true\nSP_Output = "
                    "\"*IDN?\\nA\\x80\\r\\nrest\"\n"
                    "SERIAL_ReadUntil(\"\\n\", 60000, first)\nSERIAL_ReadUntil(\"\\n\", 60000, second)\n"
                    "print first, \"|\", second\nSERIAL_ReadUntil(\"\\n\", 20, third)\n"
                    "SP_Output = 10\nSERIAL_ReadUntil(\"\\n\", 60000, third)\nprint third\n"
                    "SP_Output = \"COUNT?\\n\"\nSERIAL_ReadUntil(\"\\n\", 60000, third)\nprint third\n"
                    "SERIAL_ReadUntil(\"\\n\", 0, third)\nPORTS_WriteValue(0x378, "
                    "0x15A)\nPORTS_DeleteSerialPort(1)\nSP_Input\n");
    EXPECT_EQ(Run({"--serial", "echo", "--serial", "2=/dev/null", "--trace", Path("t"), "run", script}),
              kExitScript);
    EXPECT_EQ(m_out.str(), "PORTS_CreateSerialPort = false\nPORTS_CreateSerialPort = true\nSERIAL_ReadUntil "
                           "= true\nSERIAL_ReadUntil = true\n"
                           "Kalvio,Echo Instrument,1042,1.0|A\x80\nSERIAL_ReadUntil = false\n"
                           "SERIAL_ReadUntil = true\nrest\nSERIAL_ReadUntil = true\n4\n"
                           "SERIAL_ReadUntil = false\nPORTS_WriteValue = false\n");
    EXPECT_TRUE(Said(m_err, ":18:1: \"SP_Input\" failed: there is no current serial port; "
                            "PORTS_CreateSerialPort makes one."))
        << m_err.str();
    for (const char* line : {"PortOpen cannot be true: /dev/null is no serial device",
                             "port 0x0378 <- 0x5A, 1 byte: not enabled"}) {
        EXPECT_NE(ReadAll(Path("t")).find(line), std::string::npos) << line;
    }
    EXPECT_EQ(Run({"--serial", "0=/dev/x", "info"}), kExitUsage);
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

TEST_F(CommandsTest, ADemoThatCannotWriteAPlotFails) {
    std::filesystem::create_directories(m_directory / "demo" / "level.svg");
    EXPECT_EQ(Run({"demo", "--out", Path("demo")}), kExitRunFailed);
    EXPECT_TRUE(Said(m_err, "level.svg")) << m_err.str();
    EXPECT_TRUE(std::filesystem::exists(m_directory / "demo" / "peak.svg"));
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
