#include "support/ScriptedDriver.h"
#include "support/UnitRig.h"

#include <gmock/gmock.h>

namespace kalvio::test {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

struct Trigger : testing::Test {
    Trigger() { EXPECT_EQ(rig.BringUp(), 1); }

    // Arms with the host's settings: "DSP ADDRESS=WORD" of each write, "DSP COMMAND" of each command.
    std::vector<CString> Arm() {
        rig.unit.ClearLogs();
        settings.pending = 1;
        EXPECT_EQ(rig.hardware.ArmTrigger(&settings), 0);
        EXPECT_EQ(settings.pending, 0);
        std::vector<CString> lines;
        for (const auto& e : rig.unit.Exchanges()) {
            const auto& p = e.parameters;
            if (e.command == 9) {
                EXPECT_EQ(p[9], 'X');
                lines.push_back(Format("%c %d=", 'A' + p[8], p[3]) + ToHex(std::span(p).subspan(4, 4)));
            } else {
                lines.push_back(Format("%c %02X", 'A' + p[0], p[1]));
            }
        }
        return lines;
    }

    UnitRig rig;
    CFFTParametersSettings& settings = rig.host.fftParameters;
};

TEST_F(Trigger, WritesEverythingInOrder) {
    rig.host.analyser.inputType = 1;
    settings.triggerPosition = 1;
    settings.triggerLevel[0] = 1000.9;
    settings.triggerLevel[1] = 2000.0;
    settings.triggerOn = 1;
    EXPECT_THAT(Arm(), ElementsAre("A 48=00001000", "A 47=00003000", "B 48=00001000", "B 47=00003000",
                                   "A 49=000003E8", "B 49=000007D0", "B 50=00000010", "A 50=00000004", "B 3D",
                                   "A 3D"));
    EXPECT_THAT(rig.unit.ProtocolErrors(), IsEmpty());
}

TEST_F(Trigger, TheOtherDspIsArmedFirst) {
    struct Case {
        int channel;
        int reversed;
        int on;
        int source;
        std::vector<CString> tail;
    };
    const Case cases[] = {
        {0, 0, 0, 0, {"B 50=00000010", "A 50=00000020", "B 3D", "A 3D"}},
        {1, 0, 1, 1, {"A 50=00000010", "B 50=00000002", "A 3D", "B 3D"}},
        {0, 1, 1, 2, {"A 50=00000010", "B 50=00000001", "A 3D", "B 3D"}},
        {1, 1, 1, 3, {"B 50=00000010", "A 50=00000008", "B 3D", "A 3D"}},
        {2, 0, 1, 4, {"B 50=00000010", "A 50=00000020", "B 3D", "A 3D"}},
    };
    for (const Case& c : cases) {
        settings.triggerChannel = c.channel;
        rig.host.analyser.channelsReversed = c.reversed;
        settings.triggerOn = c.on;
        settings.triggerSource = c.source;
        const auto lines = Arm();
        EXPECT_EQ(std::vector(lines.end() - 4, lines.end()), c.tail);
    }
}

TEST_F(Trigger, ThePositionSplitsTheBuffer) {
    struct Case {
        int position;
        const char* before;
        const char* after;
    };
    settings.fftLength = 16386;
    for (const Case& c : {Case{0, "00000000", "00004002"},
                          {1, "00001000", "00003001"},
                          {2, "00002001", "00002001"},
                          {3, "00003001", "00001000"},
                          {4, "00004002", "00000000"}}) {
        settings.triggerPosition = c.position;
        const auto lines = Arm();
        EXPECT_EQ(lines[0], CString("A 48=") + c.before);
        EXPECT_EQ(lines[3], CString("B 47=") + c.after);
    }
}

TEST_F(Trigger, ABufferTooLongIsSaidAndShortened) {
    auto& analyser = rig.host.analyser;
    analyser.windowFunction = 12;
    analyser.inputType = 1;
    analyser.inputSampleRate = 192000.0;
    analyser.outputSampleRate = 1000.0;
    settings.triggerPosition = 4;
    EXPECT_EQ(Arm()[0], "A 48=00004000");
    EXPECT_EQ(analyser.windowFunction, 0);
    EXPECT_EQ(rig.host.user.Texts().size(), 1U);
}

TEST_F(Trigger, LevelsAreScaledLimitedAndNegated) {
    struct Case {
        int inputType;
        int jitter;
        int slope;
        double levelA;
        const char* wordA;
        const char* wordB; // of level 100.0
    };
    auto& analyser = rig.host.analyser;
    analyser.lineUpVoltage = 6.0;
    analyser.referenceValue[0] = 2.0;
    analyser.referenceValue[1] = 3.0;
    const Case cases[] = {
        {1, 0, 1, 8388607.9, "007FFFFF", "00000064"}, {1, 0, 1, 1e30, "007FFFFF", "00000064"},
        {1, 0, 0, 1.0, "00FFFFFF", "00FFFF9C"},       {1, 0, 0, 0.0, "00000000", "00FFFF9C"},
        {1, 0, 1, -1.0, "00FFFFFF", "00000064"},      {0, 0, 1, 100.0, "0000012C", "000000C8"},
        {0, 1, 1, 1000.0, "000018A5", "00000276"},    {1, 1, 0, 1000.0, "00FFE75B", "00FFFD8A"},
    };
    settings.triggerLevel[1] = 100.0;
    for (const Case& c : cases) {
        analyser.inputType = c.inputType;
        analyser.jitterDomain = c.jitter;
        settings.triggerSlope = c.slope;
        settings.triggerLevel[0] = c.levelA;
        const auto lines = Arm();
        EXPECT_EQ(lines[4], CString("A 49=") + c.wordA) << c.levelA;
        EXPECT_EQ(lines[5], CString("B 49=") + c.wordB) << c.levelA;
    }
    analyser.referenceValue[0] = 0.0; // no level at all is no crash
    analyser.inputType = 0;
    analyser.jitterDomain = 0;
    settings.triggerLevel[0] = 0.0;
    EXPECT_EQ(Arm()[4], "A 49=00000000");
}

} // namespace
} // namespace kalvio::test
