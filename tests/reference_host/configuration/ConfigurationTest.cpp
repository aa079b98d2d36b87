// Configurations as bytes: what is saved, what every earlier file holds, and what is refused.

#include "reference_host/application/ReferenceHost.h"
#include "reference_host/configuration/Listing.h"
#include "reference_host/configuration/SaveTable.h"

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "support/Golden.h"
#include "testing/ManualClock.h"

#include <gtest/gtest.h>

#include <cmath>
#include <filesystem>
#include <fstream>
#include <random>

namespace kalvio::reference_host {
namespace {

using Bytes = std::vector<std::uint8_t>;

Bytes Hex(const std::string& text) {
    Bytes bytes;
    std::string digits;
    for (const char c : text) {
        if (std::isxdigit(static_cast<unsigned char>(c)) != 0) {
            digits += c;
        }
    }
    for (std::size_t at = 0; at + 1 < digits.size(); at += 2) {
        bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits.substr(at, 2), nullptr, 16)));
    }
    return bytes;
}

// Type normal, tolerance percent, 100 ms, 3 results, average.
std::string Group(const char* tolerance) {
    return std::string("01 01000000 01 ") + tolerance + " 01 64000000 01 03000000 01 01000000 ";
}
constexpr const char* kOnePercent = "000000000000F03F";
constexpr const char* kTwoPercent = "0000000000000040";

std::string Groups(int count) {
    std::string text = Group(kTwoPercent);
    for (int group = 1; group < count; ++group) {
        text += Group(kOnePercent);
    }
    return text;
}

// RMS amplitude to 1 V within 0.1, by the generator's frequency from 20 Hz to 20 kHz.
constexpr const char* kRegulation =
    "01 880C0000 01 00000000 01 00000000 01 00000000 01 000000000000F03F 01 01000000 01 00000000 "
    "01 9A9999999999B93F 01 7B14AE47E17A843F 01 01000000 01 000000000000F03F 01 00000000 01 01000000 "
    "01 0A000000 01 00000000 "
    "01 00000000 01 00000000 01 00000000 01 00000000 0088D340 01 00000000D0127341 01 0000000000005940 "
    "01 01000000 01 0B000000 01 00000000";

constexpr const char* kArrayNow =
    "01 0100 03 4F7574 00000000 11 02 01000000 0200 03110001020103 03110101070000";
constexpr const char* kArrayAt20 =
    "01 0100 03 4F7574 00000000 11 02 01000000 0200 03010001020103 03010101070000";
constexpr const char* kArrayBefore20 = "01 0100 03 4F7574 00000000 01 0200 03010001020103 03010101070000";
constexpr const char* kAdapterHead =
    " 01000000 0100 08 08 21010100 00 00 30 00 08 00FF00AA 8000 0001 300008 8080 21 06 2A ";

std::string Adapter(bool deviceWords) {
    return std::string(kAdapterHead) + (deviceWords ? "11111111 22222222 " : "") + "02 0102";
}

ConfigurationFile File(int version, int revision, int configuration, const std::string& network) {
    ConfigurationFile file;
    file.version = static_cast<std::uint16_t>(version);
    file.revision = static_cast<std::uint16_t>(revision);
    file.configuration = static_cast<std::uint16_t>(configuration);
    const bool sevenGroups = version < 100 || (version == 100 && revision < 99);
    file.sections = {{"settling", Hex(Groups(sevenGroups ? 7 : 10))},
                     {"regulation", Hex(kRegulation)},
                     {"network", Hex(network)}};
    return file;
}

class ConfigurationTest : public testing::Test {
protected:
    [[nodiscard]] const CKEDAAdapterSettings& Adapters() {
        return *m_host.Network().GetFormatConverterSettings()->GetKEDAAdapterSettings();
    }
    std::vector<std::string> Texts(const std::vector<Problem>& problems) {
        std::vector<std::string> texts;
        for (const Problem& problem : problems) {
            texts.push_back(problem.ToText());
        }
        return texts;
    }
    std::string ValueOf(const char* name) {
        for (const ListedField& field : ListFields(m_configuration.Parts())) {
            if (field.name == name) {
                return field.Shown();
            }
        }
        return "none";
    }

    test::ManualClock m_clock;
    ReferenceHost m_host{{.unit = UnitKind::None, .peripherals = "none", .threaded = false}};
    Configuration m_configuration = m_host.MakeConfiguration();
};

// Windows that cannot be put back at all.
class BrokenWindows final : public WindowLayouts {
public:
    std::vector<WindowLayout> Collect() override { return {}; }
    std::vector<CString> Restore(const std::vector<WindowLayout>&) override {
        throw CArchiveException("the windows are stuck");
    }
};

TEST_F(ConfigurationTest, WhatRefusesWhileItIsAppliedLeavesTheDocumentsAsTheyWere) {
    m_host.Settling().SetProperty("SETT_SAAmplTolerance", VARIANT::Double(7.0));
    m_host.Network().DefineArray("saved", 0, 0);
    const Bytes saved = m_configuration.Store();
    m_host.Settling().SetProperty("SETT_SAAmplTolerance", VARIANT::Double(3.0));
    m_host.Network().RemoveArray("saved");
    m_host.Network().DefineArray("kept", 0, 0);
    m_host.Regulation().SetProperty("REG_Timeout", VARIANT::Short(25));
    BrokenWindows windows;
    const Configuration configuration({m_host, m_host.Network(), &windows});
    EXPECT_EQ(Texts(configuration.LoadBytes(saved).problems),
              std::vector<std::string>{"windows: the windows are stuck"});
    EXPECT_EQ(ValueOf("SETT_SAAmplTolerance"), "3 %");
    EXPECT_EQ(ValueOf("REG_Timeout"), "25 s");
    EXPECT_EQ(m_host.Network().GetChannelArray("saved"), nullptr);
    EXPECT_NE(m_host.Network().GetChannelArray("kept"), nullptr);
}

TEST_F(ConfigurationTest, EveryLayoutLoads) {
    const struct {
        int version, revision, configuration;
        std::string network;
        int arrays, direction;
        std::size_t adapters;
        const char* phase; // tolerance of the third settling group
    } rows[] = {
        {101, 99, 21, kArrayNow + Adapter(false), 1, 2, 1, "1 %"},
        {101, 99, 20, kArrayAt20 + Adapter(false), 1, 2, 1, "1 %"},
        {101, 99, 19, kArrayBefore20 + Adapter(false), 1, 0, 1, "1 %"},
        {101, 99, 18, kArrayBefore20 + Adapter(true), 1, 0, 1, "1 %"},
        {101, 99, 17, kArrayBefore20, 1, 0, 0, "1 %"},
        {101, 98, 17, "", 0, 0, 0, "1 %"},
        {100, 99, 17, "", 0, 0, 0, "1 %"},
        {100, 98, 17, "", 0, 0, 0, "2 %"},
    };
    const Bytes defaults = m_configuration.Store();
    for (const auto& row : rows) {
        ASSERT_TRUE(m_configuration.LoadBytes(defaults).Ok());
        m_host.Network().SetSaveChannelArrays(1);
        const Bytes bytes = Encode(File(row.version, row.revision, row.configuration, row.network));
        EXPECT_EQ(Texts(m_configuration.LoadBytes(bytes).problems), std::vector<std::string>())
            << row.version << "." << row.revision << " " << row.configuration;
        CChannelArrayList& arrays = *m_host.Network().GetChannelArrayList();
        ASSERT_EQ(arrays.GetCount(), row.arrays);
        ASSERT_EQ(Adapters().Adapters().size(), row.adapters);
        EXPECT_EQ(m_host.Network().GetSaveChannelArrays(), row.arrays);
        EXPECT_EQ(ValueOf("SETT_SAPhaseTolerance"), row.phase);
        EXPECT_EQ(ValueOf("REG_Timeout"), "10 s");
        if (row.arrays != 0) {
            ChannelDetails channel;
            arrays.GetAt(0)->GetChannelDetails(1, channel);
            EXPECT_EQ(channel, (ChannelDetails{3, 0x11, 1, 1, 7, 0, 0}));
            EXPECT_EQ(arrays.GetAt(0)->GetDirection(), row.direction);
        }
        EXPECT_EQ(ValueOf("adapter 8 I2C slave address"), row.adapters != 0 ? "42" : "none");
        const Bytes now = m_configuration.Store();
        EXPECT_TRUE(m_configuration.LoadBytes(now).Ok());
        EXPECT_EQ(m_configuration.Store(), now) << "what was loaded is saved as it is";
    }
}

TEST_F(ConfigurationTest, AllProblemsAreListed) {
    m_host.Network().DefineArray("mine", 0, 0);
    const Bytes before = m_configuration.Store();
    ConfigurationFile file =
        File(101, 99, 21,
             "01 0400 01 61 00000000 11 03 00000000 0200 46110000000000 03110202080204 "
             "01 41 00000000 00 00 00000000 0000 01 62 00000000 33 00 00000000 0100 03330000000000 "
             "01 63 00000000 21 00 00000000 0100 08210302100000 "
             "01000000 0200 08 09 21010100 00 00 30 00 08 00FF00AA 8000 0001 300008 8080 21 06 80 00 "
             "08 08 21010100 00 00 30 00 08 00FF00AA 8000 0001 300008 8080 21 06 00 00 FF");
    file.sections[0].bytes[1] = 9;     // the kind of convergence
    file.sections[0].bytes[13] = 0x7F; // the tolerance's exponent
    file.sections[1].bytes.resize(9);  // within the second value
    file.sections.push_back({"colours", {}});
    file.sections.push_back({"settling", {}});
    EXPECT_EQ(
        Texts(m_configuration.LoadBytes(Encode(file)).problems),
        (std::vector<std::string>{
            "settling: SETT_SAAmplConvergence: must be one of 0 (None), 1 (Normal), 2 (Exponential); is 9",
            "settling: SETT_SAAmplTolerance: must lie between 0 and 100, is 5.48612e+303",
            "regulation: REG_ResultFFTDetector: must be there; the section ends before it",
            "network: array \"a\" direction: must lie between 0 and 2, is 3",
            "network: array \"a\" channel 1 address: must lie between 0 and 63, is 70",
            "network: array \"a\" channel 2 bus: must lie between 0 and 1, is 2",
            "network: array \"a\" channel 2 group: must lie between 0 and 1, is 2",
            "network: array \"a\" channel 2 channel: must lie between 0 and 7, is 8",
            "network: array \"a\" channel 2 state: must lie between 0 and 1, is 2",
            "network: array \"a\" channel 2 flags: must lie between 0 and 3, is 4",
            "network: array \"A\": must have a name of its own; another array has it",
            "network: array \"b\" channel 1 device: must be an I/O switcher (17) or an adapter (33), is 51",
            "network: array \"c\" channel 1 bus: must lie between 0 and 2, is 3",
            "network: array \"c\" channel 1 group: must lie between 0 and 1, is 2",
            "network: array \"c\" channel 1 channel: must lie between 0 and 15, is 16",
            "network: adapter 1 status address: must lie between 8 and 8, is 9",
            "network: adapter 1 I2C slave address: must lie between 0 and 127, is 128",
            "network: adapter 2 address: must be its own; another adapter has 8",
            "colours: is no section of a configuration",
            "settling: must be there once",
        }));
    file = File(101, 99, 21, kArrayNow + Adapter(false) + "FF");
    file.sections.erase(file.sections.begin());
    EXPECT_EQ(Texts(m_configuration.LoadBytes(Encode(file)).problems),
              (std::vector<std::string>{"network: end: must follow the last field; 1 bytes stand between",
                                        "settling: must be there"}));
    file.version = 102;
    file.configuration = 22;
    EXPECT_EQ(Texts(m_configuration.LoadBytes(Encode(file)).problems),
              (std::vector<std::string>{"header: archive version: must be at most 101.99, is 102.99",
                                        "header: configuration version: must be at most 21, is 22"}));
    EXPECT_EQ(m_configuration.Store(), before);
}

// Fields just outside their limits, far outside, and no number at all, one at a time.
TEST_F(ConfigurationTest, EveryFieldIsRefusedByItsName) {
    std::string all;
    for (CSettingsData* document :
         std::initializer_list<CSettingsData*>{m_host.analyser, m_host.generator, m_host.fftParameters,
                                               m_host.settlingDetails, m_host.regulation}) {
        for (const FieldRow& row : document->FieldRows()) {
            const double kept = GetKept(*document, row);
            std::vector<double> values{row.details.minimum - 1.0, row.details.maximum + 1.0, 9999.0};
            if (row.real != nullptr) {
                values.push_back(std::nan(""));
            }
            for (const double value : values) {
                SetKept(*document, row, value);
                for (const std::string& text : Texts(m_configuration.Check(m_configuration.Store()))) {
                    all += text + "\n";
                }
            }
            SetKept(*document, row, kept);
        }
    }
    test::ExpectGolden(__FILE__, "problems.txt", all);
}

// Each position is told as the place that it belongs to, and nothing changes.
TEST_F(ConfigurationTest, CutsAndFlippedBitsAreRefused) {
    constexpr std::size_t kHeader = 22;
    int hints = 0;
    const int observer =
        m_host.AddViewObserver([&](CView*, int hint, void*, int) { hints += hint == -1 ? 100 : 1; });
    ASSERT_TRUE(m_configuration.LoadBytes(Encode(File(101, 99, 21, kArrayNow + Adapter(false)))).Ok());
    EXPECT_GE(std::exchange(hints, 0), 100) << "all views are told";
    const Bytes before = m_configuration.Store();
    ConfigurationFile file = File(101, 99, 21, kArrayNow);
    const Bytes whole = Encode(file);
    std::vector<std::size_t> ends;
    std::size_t end = kHeader;
    for (const FileSection& section : file.sections) {
        ends.push_back(end += 1 + section.name.size() + 4 + section.bytes.size() + 4);
    }
    ASSERT_EQ(end, whole.size());
    const auto place = [&](std::size_t at) {
        const auto section = std::ranges::upper_bound(ends, at) - ends.begin();
        return at < kHeader ? std::string("header") : Format("section %d", static_cast<int>(section) + 1);
    };
    for (std::size_t at = 0; at < whole.size(); ++at) {
        const std::vector<Problem> cut = m_configuration.LoadBytes(std::span(whole).first(at)).problems;
        ASSERT_FALSE(cut.empty());
        EXPECT_EQ(cut.front().section + " " + cut.front().field, place(at) + " length") << at;
        EXPECT_TRUE(at >= kHeader || cut.size() == 1) << "nothing is said of what follows a header cut short";
        for (unsigned bit = 0; bit < 8; ++bit) {
            Bytes damaged = whole;
            damaged[at] = static_cast<std::uint8_t>(damaged[at] ^ (1U << bit));
            const std::vector<Problem> flipped = m_configuration.LoadBytes(damaged).problems;
            ASSERT_FALSE(flipped.empty()) << at;
            EXPECT_EQ(flipped.front().section, place(at)) << at;
            EXPECT_TRUE(at >= kHeader || flipped.size() == 1) << "nor of one that is damaged";
        }
    }
    m_host.RemoveViewObserver(observer);
    EXPECT_EQ(hints, 0);
    EXPECT_EQ(m_configuration.Store(), before);
}

// Fields anywhere within their limits, arrays of any make: saved, loaded and saved again the same.
TEST_F(ConfigurationTest, RandomDocumentsComeBack) {
    std::mt19937 random(13);
    const auto below = [&](int count) { return static_cast<int>(random() % static_cast<unsigned>(count)); };
    const Bytes defaults = m_configuration.Store();
    m_host.applyUnsavedGroups = true;
    for (int round = 0; round < 60; ++round) {
        ASSERT_TRUE(m_configuration.LoadBytes(defaults).Ok());
        for (const FieldSection& section : FieldSections()) {
            CSettingsData& document = section.document(m_configuration.Parts());
            for (const FieldRow* row : RowsInArchiveOrder(document.FieldRows())) {
                const double span = row->details.maximum - row->details.minimum;
                if (!row->choices.empty()) {
                    SetKept(
                        document, *row,
                        row->choices[static_cast<std::size_t>(below(static_cast<int>(row->choices.size())))]
                            .value);
                } else if (span > 0.0 && row->units == nullptr) {
                    SetKept(document, *row,
                            row->integer != nullptr ? row->details.minimum + below(static_cast<int>(span) + 1)
                                                    : row->details.minimum + span * below(1000) / 1000.0);
                }
            }
        }
        EXPECT_EQ(
            ChangeSaveTable(m_configuration.Parts(), below(2) != 0 ? "301=off,920=off,3359=off" : "all=on"),
            "");
        m_host.fftDetectors->Add(std::string(static_cast<std::size_t>(below(300)), 'd'));
        m_host.fftDetectors->Remove(1 + below(4));
        for (int number = below(5); number > 0; --number) {
            const std::string name = Format("array %d", number);
            m_host.Network().DefineArray(name.c_str(), below(2), below(2));
            CChannelArray& array = *m_host.Network().GetChannelArray(name.c_str());
            array.SetDirection(static_cast<CChannelArray::ChannelArrayDir>(below(3)));
            for (int channels = below(40); channels > 0; --channels) {
                array.AddChannel({static_cast<std::uint8_t>(below(64)), 0x11,
                                  static_cast<std::uint8_t>(below(2)), static_cast<std::uint8_t>(below(2)),
                                  static_cast<std::uint8_t>(below(8)), static_cast<std::uint8_t>(below(2)),
                                  static_cast<std::uint8_t>(below(4))});
            }
        }
        const Bytes saved = m_configuration.Store();
        ASSERT_TRUE(m_configuration.LoadBytes(defaults).Ok());
        ASSERT_EQ(Texts(m_configuration.LoadBytes(saved).problems), std::vector<std::string>());
        ASSERT_EQ(m_configuration.Store(), saved) << round;
    }
}

TEST_F(ConfigurationTest, LoadSwitchesAndSaveTable) {
    const Documents& parts = m_configuration.Parts();
    EXPECT_NE(SaveTableText(parts).find("settling\n  [x]   301  "), std::string::npos);
    EXPECT_EQ(ChangeSaveTable(parts, "301=off,bells=on"), "there is no group \"bells\"");
    EXPECT_EQ(ChangeSaveTable(parts, "301=maybe"), "\"301=maybe\" must be an item, \"=\", and on or off");
    EXPECT_EQ(ChangeSaveTable(parts, "301=off, 920=off,10700=off,generator=off"), "");
    const std::string table = SaveTableText(parts);
    for (const char* line : {"[ ]   301", "[x]   311", "[x]   901", "[ ]   920", "[ ] 11000  Device details",
                             "[ ]  4300  generator"}) {
        EXPECT_NE(table.find(line), std::string::npos) << line;
    }
    const auto set = [&](const char* name, std::int32_t value) {
        m_host.Settling().SetProperty(name, VARIANT::Long(value));
    };
    set("SETT_SAAmplSettlingTime", 111); // in the group that is not saved
    set("SETT_SAFreqSettlingTime", 222);
    const Bytes saved = m_configuration.Store();
    const auto reload = [&](bool discard, bool applyUnsaved) {
        set("SETT_SAAmplSettlingTime", 1);
        set("SETT_SAFreqSettlingTime", 2);
        m_host.discardStoredValues = discard;
        m_host.applyUnsavedGroups = applyUnsaved;
        EXPECT_TRUE(m_configuration.LoadBytes(saved).Ok());
        return ValueOf("SETT_SAAmplSettlingTime") + ", " + ValueOf("SETT_SAFreqSettlingTime");
    };
    EXPECT_EQ(reload(false, false), "1 ms, 222 ms");
    EXPECT_EQ(reload(false, true), "111 ms, 222 ms");
    EXPECT_EQ(reload(true, true), "1 ms, 2 ms");
}

TEST_F(ConfigurationTest, OpenWindowsComeBack) {
    ASSERT_EQ(m_host.WindowsByName().Open("arrays"), "");
    const Bytes saved = m_configuration.Store();
    ASSERT_EQ(m_host.WindowsByName().Close("arrays"), "");
    EXPECT_NE(m_configuration.Store(), saved);
    EXPECT_TRUE(m_configuration.LoadBytes(saved).notSent.empty());
    EXPECT_EQ(m_configuration.Store(), saved);
    ConfigurationFile file = File(101, 99, 21, kArrayNow + Adapter(false));
    file.sections.push_back({"windows", Hex("0200 05 62656C6C73 0000 06 617272617973 0100 07")});
    EXPECT_EQ(m_configuration.LoadBytes(Encode(file)).notSent,
              (std::vector<CString>{"window \"bells\" (it could not be opened)",
                                    "window \"arrays\" (it could not be opened)"}));
}

// The page shows a file byte by byte.
TEST(ConfigurationDocument, ItsExampleHolds) {
    const auto page =
        std::filesystem::path(__FILE__).parent_path().parent_path().parent_path().parent_path() / "docs" /
        "configurations.md";
    std::ifstream stream(page);
    std::string hex;
    bool within = false;
    for (std::string line; std::getline(stream, line);) {
        if (line.starts_with("```")) {
            within = line == "```hex";
        } else if (within) {
            hex += line.substr(0, line.find("  ")) + " ";
        }
    }
    const Bytes bytes = Hex(hex);
    std::vector<Problem> problems;
    ConfigurationFile file = Decode(bytes, problems);
    EXPECT_TRUE(problems.empty()) << ProblemsText(problems);
    ASSERT_EQ(file.sections.size(), 2U);
    EXPECT_EQ(Encode(file), bytes);
    CArchive archive = file.ArchiveOf(file.sections[0]);
    EXPECT_EQ(ReadLayouts(archive), (std::vector<WindowLayout>{{"array", {0x07, 0x01}}}));
    EXPECT_EQ(file.sections[1].bytes, Hex(std::string(kArrayNow) + "01000000 0000"));
}

} // namespace
} // namespace kalvio::reference_host
