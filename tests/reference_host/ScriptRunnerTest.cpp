#include "reference_host/script/ScriptRunner.h"

#include "platform/AutomationTable.h"

#include <gtest/gtest.h>

#include <sstream>

namespace kalvio::reference_host {
namespace {

// An object with one name of each sort.
class Gadget : public CCmdTarget {
public:
    const DispatchTable& GetDispatchMap() const override {
        using namespace automation;
        static const DispatchTable table{
            Property("G_Level", &Gadget::GetLevel, &Gadget::SetLevel),
            Constant("G_ONE", 1),
            Method("G_Add", &Gadget::Add),
            Method("G_Date", &Gadget::Date),
            Method("G_Reset", &Gadget::Reset),
        };
        return table;
    }

    std::int16_t GetLevel() { return level; }
    SetOutcome SetLevel(std::int16_t value) {
        if (value > 100) {
            return SetOutcome::Refused("It must be at most 100.");
        }
        level = value;
        return {};
    }
    double Add(double a, std::int16_t b) { return a + b; }
    bool Date(VARIANT* year, VARIANT* text) {
        *year = VARIANT::Short(2026);
        *text = VARIANT::String("March");
        return true;
    }
    void Reset() {
        level = 0;
        ++resets;
    }

    std::int16_t level = 7;
    int resets = 0;
};

class FakeHost : public ScriptHost {
public:
    PauseEnd Pause(std::uint32_t milliseconds) override {
        paused += milliseconds;
        return interrupted ? PauseEnd::Interrupted : PauseEnd::Done;
    }
    RegulationEnd WaitForRegulation() override { return regulation; }
    CString RefuseQuantity(const ScriptQuantity& quantity) const override {
        return quantity.name == "moon" ? "there is no moon" : "";
    }
    QuantityReading Measure(const ScriptQuantity& quantity) override {
        if (quantity.name == "silent") {
            return {{}, "V", "no value"};
        }
        return quantity.kind == QuantityKind::Result ? QuantityReading{0.5, "V", "0.5000 V"}
                                                     : QuantityReading{1000.0, "Hz", "1000.00 Hz"};
    }

    std::uint32_t paused = 0;
    bool interrupted = false;
    RegulationEnd regulation{false, true, ""};
};

class ScriptRunnerTest : public testing::Test {
protected:
    // Runs the lines until one is not well; its outcome.
    StatementOutcome Run(const char* text) {
        StatementOutcome outcome;
        for (const ScriptStatement& statement : ParseScript(text).statements) {
            outcome = m_runner.Run(statement);
            if (outcome.end != StatementEnd::Ok) {
                break;
            }
        }
        return outcome;
    }

    Gadget m_gadget;
    FakeHost m_host;
    std::array<CCmdTarget*, 1> m_objects{&m_gadget};
    ScriptNames m_names{m_objects};
    std::ostringstream m_out;
    ScriptRunner m_runner{m_names, m_host, {m_out, false, false}};
};

TEST_F(ScriptRunnerTest, AnswersAreShownAndNamesStandForValues) {
    EXPECT_EQ(Run("G_Level\n"
                  "G_Level = G_ONE\n"
                  "g_level\n"
                  "G_Add(0.5, G_Level)\n"
                  "G_Date year, month\n"
                  "print \"of \", YEAR, \"/\", month, \" \", G_ONE\n"
                  "month\n"
                  "G_Reset\n"
                  "wait 250")
                  .end,
              StatementEnd::Ok);
    EXPECT_EQ(m_out.str(), "G_Level = 7\nG_Level = 1\nG_Add = 1.5\nG_Date = true\n"
                           "of 2026/March 1\nmonth = March\n");
    EXPECT_EQ(m_gadget.resets, 1);
    EXPECT_EQ(m_host.paused, 250U);
}

TEST_F(ScriptRunnerTest, QuantitiesStandForValues) {
    EXPECT_EQ(Run("read rms\nprint read rms, \" at \", source f, \", \", read silent\n"
                  "G_Level = source f")
                  .error.message,
              "G_Level refused the value: It must be at most 100. The value was 1000.");
    EXPECT_EQ(m_out.str(), "rms = 0.5000 V\n0.5000 V at 1000.00 Hz, no value\n");
    EXPECT_EQ(Run("expect read rms within 0.5 G_ONE").end, StatementEnd::Ok);
    const StatementOutcome beyond = Run("expect read rms within -0.5 0.25");
    EXPECT_EQ(beyond.end, StatementEnd::ExpectationFailed);
    EXPECT_EQ(beyond.error.ToText("f"), "f:1:1: expected a value within -0.5 and 0.25, found 0.5");
    EXPECT_EQ(Run("expect read silent within 0 1").error.message, "silent has no value");
    EXPECT_EQ(Run("print read moon").error.message, "there is no moon");
}

struct Fault {
    const char* text;
    int column;
    const char* message;
};

// Found before anything runs.
TEST_F(ScriptRunnerTest, FaultsAreFoundBeforehand) {
    constexpr Fault kFaults[] = {
        {"G_Lebel = 3", 1, "unknown name \"G_Lebel\"; did you mean G_Level?"},
        {"Quite_Another_Thing", 1, "unknown name \"Quite_Another_Thing\""},
        {"wiat 5", 1, "unknown name \"wiat\"; did you mean wait?"},
        {"G_ONE = 2", 1, "G_ONE is read-only"},
        {"G_Add = 2", 1, "G_Add is a method and cannot be set"},
        {"G_Level 5", 1, "G_Level is a property and takes no arguments"},
        {"G_Add 1", 1, "G_Add(double, short) takes 2 arguments, not 1"},
        {"G_Add 1, G_Lvel", 10, "unknown name \"G_Lvel\"; did you mean G_Level?"},
        {"print \"x\", G_Add", 12, "G_Add needs arguments and cannot stand for a value"},
    };
    for (const Fault& fault : kFaults) {
        const std::vector<ScriptError> errors = m_runner.Check(ParseScript(fault.text).statements);
        ASSERT_EQ(errors.size(), 1U) << fault.text;
        EXPECT_EQ(errors.front().message, fault.message);
        EXPECT_EQ(errors.front().column, fault.column) << fault.text;
    }
    const std::vector<ScriptError> errors = m_runner.Check(ParseScript("G_Date 1, b").statements);
    ASSERT_EQ(errors.size(), 1U);
    EXPECT_TRUE(errors.front().message.starts_with("argument 1 of G_Date(")) << errors.front().message;
    EXPECT_TRUE(m_runner.Check(ParseScript("G_Date a, b\nprint a").statements).empty());
    EXPECT_EQ(m_runner.Check(ParseScript("print a\nG_Date a, b").statements).size(), 1U)
        << "a name is known from its first use on";
}

TEST_F(ScriptRunnerTest, FaultsWhileRunningNameLineAndReason) {
    const StatementOutcome wrongType = Run("\nG_Add 1, \"x\"");
    EXPECT_EQ(wrongType.end, StatementEnd::Wrong);
    EXPECT_EQ(wrongType.error.line, 2);
    EXPECT_NE(wrongType.error.message.find("Argument 2 of \"G_Add\""), std::string::npos);

    const StatementOutcome refused = Run("G_Level = 101");
    EXPECT_EQ(refused.end, StatementEnd::Wrong);
    EXPECT_EQ(refused.error.message, "G_Level refused the value: It must be at most 100. The value was 101.");
    EXPECT_EQ(m_gadget.level, 7);
}

TEST_F(ScriptRunnerTest, WaitsReportHowTheyEnded) {
    m_host.regulation = {false, false, "Reached source limit"};
    const StatementOutcome failed = Run("wait-regulation");
    EXPECT_EQ(failed.end, StatementEnd::RegulationFailed);
    EXPECT_EQ(failed.error.message, "Reached source limit");
    m_host.regulation.interrupted = true;
    EXPECT_EQ(Run("wait-regulation").end, StatementEnd::Interrupted);
    m_host.interrupted = true;
    EXPECT_EQ(Run("wait 5").end, StatementEnd::Interrupted);
}

} // namespace
} // namespace kalvio::reference_host
