// Plays the scenarios of the regulation document. A field is its script name or its index. A number may be
// the name of a unit, which is its code, and "2V" is two volts in storage units.
//
//   set FIELD V   refuse FIELD V ["part of the answer"]   get FIELD V   stored FIELD V   default FIELD V
//   least FIELD V   most FIELD V   valid CTRL V…   invalid CTRL V…   combo CTRL "text=data"…   text CTRL V
//   "text" boxes N   box "text"   hinted CTRL   detector NAME [UNIT REFERENCE]   digital   jitter   relative
//   UNIT   outputs N, states given to the generator   fullscale V   ohms V   channels A B tell domain|jitter
//   tell relativity DETECTOR   put CTRL V and source CTRL V   turn CTRL V and switch CTRL V   analysed A B,
//   the channels   start 0|1   stop 1   status N details NAME=V…   no-details   field CTRL UNIT INDEX   give
//   CTRL V, refused   forget ID and remove ID, a detector   packed V DETECTOR DATA   unpacked result|source
//   DATA 0|1 V DETECTOR   used ID 0|1 source-detector ID   notified RESULT DETECTOR, of no interest
//   amplitude, by the generator's, through a device of   gains A B   phase, by it   measure N run STATE, from
//   start to end   finish STATE, from where it is   state STATE   result STATE, told volts CTRL V TOLERANCE
//   fft USES TRIGGERS   messages N   invoke NAME   deaf to reports   no-detectors words STATE "text" COLOR
//   bytes HH…   damage AT   load 0|1 stores values V…, all   discard 0|1   references FULL-SCALE

#include "regulation/Document.h"
#include "regulation/RegulationStatusText.h"
#include "support/Scenarios.h"
#include "support/StateNames.h"

#include <cfloat>

namespace kalvio::test {
namespace {

double ValueOf(const std::string& word) {
    std::size_t used = 0;
    double number = 0.0;
    try {
        number = std::stod(word, &used);
    } catch (const std::invalid_argument&) {
        return GetUnitForString(word);
    }
    return word.substr(used) == "V" ? number * kStepsPerVolt : number;
}

int Int(const std::string& word) {
    return static_cast<int>(ValueOf(word));
}

int FieldOf(const std::string& word) {
    for (const FieldRow& row : Fields()) {
        if (row.script != nullptr && word == row.script) {
            return row.id;
        }
    }
    return std::stoi(word);
}

void ExpectNear(double found, const std::string& expected) {
    EXPECT_NEAR(found, ValueOf(expected), 1e-9 * std::max(1.0, std::fabs(ValueOf(expected))));
}

double DetailOf(const NPreProcessor::RegulationDetails& d, const std::string& name) {
    const std::map<std::string, double> details{
        {"resultA", d.resultA},
        {"resultB", d.resultB},
        {"detector", d.detector},
        {"mode", d.channelMode},
        {"source", d.sourceCtrlID},
        {"second", d.secondSourceCtrlID},
        {"lower", d.lower},
        {"target", d.target},
        {"upper", d.upper},
        {"least", d.sourceMinimum},
        {"most", d.sourceMaximum},
        {"references", d.resultReferences},
        {"algorithm", d.algorithm},
        {"trend", d.trend},
        {"direction", d.direction},
        {"step", d.initialStep},
        {"timeout", d.timeout},
        {"sensitivity", d.sensitivity},
        {"continuous", d.continuous},
        {"sourceDetector", d.sourceDetector},
        {"access", d.sourceAccessMode},
    };
    return details.at(name);
}

class ScenarioTest : public DocumentTest, public ::testing::WithParamInterface<Scenario> {
protected:
    AutomationResult Give(Words w) { return document.SetProperty(w[0], VARIANT::Double(ValueOf(w[1]))); }

    void ExpectValid(Words w, int answer) {
        for (const std::string& value : w.subspan(1)) {
            EXPECT_EQ(document.IsEnumValueValid(Int(w[0]), Int(value)), answer) << value;
        }
    }

    std::vector<std::string> Combo(int ctrlID) {
        CComboBox combo;
        combo.AddString("left over");
        EXPECT_EQ(document.FillCombo(&combo, ctrlID), 1);
        std::vector<std::string> items;
        for (int i = 0; i < combo.GetCount(); ++i) {
            items.push_back(combo.GetLBText(i) + "=" + std::to_string(combo.GetItemData(i)));
        }
        return items;
    }

    void ExpectDetails(Words w) {
        NPreProcessor::RegulationDetails details;
        ASSERT_EQ(document.GetRegulationDetails(details), 1);
        EXPECT_EQ(details.resultSettings, &host.analyser);
        EXPECT_EQ(details.sourceSettings, &host.generator);
        for (const std::string& word : w) {
            const std::size_t equals = word.find('=');
            SCOPED_TRACE(word);
            ExpectNear(DetailOf(details, word.substr(0, equals)), word.substr(equals + 1));
        }
    }

    void Finish(const std::string& state) {
        for (int i = 0; i < 200 && document.IsRegulationRunning() != 0; ++i) {
            MeasureOnce();
            PumpMessages();
        }
        EXPECT_EQ(document.GetStatus(), StateNamed(state));
    }

    void Unpack(Words w) {
        const auto data = static_cast<std::uint32_t>(std::stoul(w[1], nullptr, 0));
        int choice = 0;
        int detector = 0;
        EXPECT_EQ(w[0] == "result" ? document.ExtractResultFromItemData(data, &choice, &detector)
                                   : document.ExtractSourceFromItemData(data, &choice, &detector),
                  Int(w[2]));
        EXPECT_TRUE(w.size() == 3 || std::pair(choice, detector) == std::pair(Int(w[3]), Int(w[4])))
            << choice;
    }

    // The words before the last say what is looked at, the last is the number that it has to be.
    static std::function<void(Words)> Is(const std::function<double(Words)>& look) {
        return [look](Words w) { ExpectNear(look(w), w.back()); };
    }

    std::vector<std::uint8_t> bytes;
    const std::map<std::string, std::function<void(Words)>> operations{
        {"get", Is([this](Words w) { return DocumentTest::Number(w[0].c_str()); })},
        {"stored", Is([this](Words w) { return document.GetStoredValue(FieldOf(w[0])); })},
        {"default", Is([this](Words w) { return document.GetDefaultValue(FieldOf(w[0])); })},
        {"least", Is([this](Words w) { return document.GetMinValue(FieldOf(w[0])); })},
        {"most", Is([this](Words w) { return document.GetMaxValue(FieldOf(w[0])); })},
        {"boxes", Is([this](Words) { return static_cast<double>(host.user.Texts().size()); })},
        {"source", Is([this](Words w) { return host.generator.GetSource(Int(w[0])); })},
        {"switch", Is([this](Words w) { return host.generator.GetSwitch(Int(w[0])); })},
        {"outputs", Is([this](Words) { return static_cast<double>(host.output.States().size()); })},
        {"messages", Is([this](Words) { return static_cast<double>(host.mainWindow.messages.size()); })},
        {"references", Is([this](Words) { return document.ResultReferences().fullScale; })},
        {"used", Is([this](Words w) { return document.IsFFTDetectorUsed(Int(w[0])); })},
        {"start", Is([this](Words) { return document.StartRegulation(1); })},
        {"stop", Is([this](Words) { return document.StopRegulation(); })},
        {"status", Is([this](Words) { return document.OLEGetStatus(); })},
        {"state", [this](Words w) { EXPECT_EQ(document.GetStatus(), StateNamed(w[0])); }},
        {"set", [this](Words w) { EXPECT_TRUE(Give(w).Ok()) << Give(w).text; }},
        {"refuse",
         [this](Words w) {
             const AutomationResult result = Give(w);
             EXPECT_EQ(result.fault, AutomationFault::Refused);
             EXPECT_NE(result.text.find(w.size() > 2 ? w[2] : " refused the value: "), CString::npos)
                 << result.text;
         }},
        {"valid", [this](Words w) { ExpectValid(w, 1); }},
        {"invalid", [this](Words w) { ExpectValid(w, 0); }},
        {"combo",
         [this](Words w) { EXPECT_EQ(Combo(Int(w[0])), std::vector<std::string>(w.begin() + 1, w.end())); }},
        {"text", [this](Words w) { EXPECT_EQ(document.GetComboItemText(Int(w[0]), Int(w[1])), w[2]); }},
        {"box",
         [this](Words w) {
             ASSERT_FALSE(host.user.Texts().empty());
             EXPECT_EQ(host.user.Texts().back(), w[0]);
         }},
        {"hinted", [this](Words w) { EXPECT_TRUE(WasHinted(Int(w[0]))); }},
        {"detector",
         [this](Words w) {
             CFFTDetectorSettings* detector = host.fftDetectors.Add(w[0]);
             if (w.size() > 1) {
                 detector->SetUnit(Int(w[1]));
                 detector->SetRelativeReference(ValueOf(w[2]));
             }
         }},
        {"digital",
         [this](Words) { host.analyser.inputType = static_cast<std::int32_t>(InputType::Digital); }},
        {"jitter", [this](Words) { host.analyser.jitterDomain = 1; }},
        {"relative", [this](Words w) { host.analyser.ctDetectorUnit = Int(w[0]); }},
        {"fullscale", [this](Words w) { host.analyser.references.fullScale = ValueOf(w[0]); }},
        {"ohms", [this](Words w) { host.generator.SetReferences({.ohms = ValueOf(w[0])}); }},
        {"channels",
         [this](Words w) {
             host.analyser.firstChannel = Int(w[0]);
             host.analyser.secondChannel = Int(w[1]);
         }},
        {"tell",
         [this](Words w) {
             if (w[0] == "domain") {
                 document.OnAnalyserDomainChanged();
             } else if (w[0] == "jitter") {
                 document.OnJDOChanged();
             } else {
                 document.OnDetectorRelativityChanged(Int(w[1]), 1);
             }
         }},
        {"put", [this](Words w) { host.generator.SetSource(Int(w[0]), ValueOf(w[1])); }},
        {"turn", [this](Words w) { host.generator.SetSwitch(Int(w[0]), Int(w[1])); }},
        {"analysed",
         [this](Words w) {
             EXPECT_EQ(host.analyser.firstChannel.Get(), Int(w[0]));
             EXPECT_EQ(host.analyser.secondChannel.Get(), Int(w[1]));
         }},
        {"field",
         [this](Words w) {
             EXPECT_EQ(document.GetFieldIndexForCtrlID(Int(w[0]), Int(w[1])), Int(w[2]));
             EXPECT_EQ(document.GetDefaultFieldDetails(Int(w[0]), Int(w[1])) != nullptr, Int(w[2]) >= 0);
         }},
        {"give",
         [this](Words w) {
             CIntValueMessenger messenger{.ctrlID = Int(w[0]), .value = Int(w[1]), .wantsMessages = true};
             EXPECT_TRUE(document.OnMessenger(&messenger));
             EXPECT_FALSE(messenger.changed);
         }},
        {"forget", [this](Words w) { document.RemoveFFTDetector(Int(w[0])); }},
        {"remove", [this](Words w) { host.fftDetectors.Remove(Int(w[0])); }},
        {"packed",
         [](Words w) {
             EXPECT_EQ(CRegulationSettings::GetResultItemData(Int(w[0]), Int(w[1])),
                       std::stoul(w[2], nullptr, 0));
         }},
        {"unpacked", [this](Words w) { Unpack(w); }},
        {"amplitude", [this](Words) { RegulateAmplitude(); }},
        {"gains",
         [this](Words w) {
             gains[0] = ValueOf(w[0]);
             gains[1] = ValueOf(w[1]);
         }},
        {"phase",
         [this](Words) { measure = [this] { Put(kResultPhase, 15.0 * Volts(kCtrlGeneratorAmplitudeA)); }; }},
        {"measure",
         [this](Words w) {
             for (int i = Int(w[0]); i > 0; --i) {
                 MeasureOnce();
             }
         }},
        {"run",
         [this](Words w) {
             EXPECT_EQ(document.StartRegulation(1), 1);
             Finish(w[0]);
         }},
        {"finish", [this](Words w) { Finish(w[0]); }},
        {"result",
         [this](Words w) { document.OnRegulationResult(static_cast<unsigned>(StateNamed(w[0])), 0); }},
        {"volts", [this](Words w) { EXPECT_NEAR(Volts(Int(w[0])), ValueOf(w[1]), ValueOf(w[2])); }},
        {"fft",
         [this](Words w) {
             EXPECT_EQ(host.application.fftUsageCount.load(), Int(w[0]));
             EXPECT_EQ(host.application.triggerToggles.load(), Int(w[1]));
         }},
        {"invoke", [this](Words w) { EXPECT_TRUE(document.Invoke(w[0], {}).Ok()); }},
        {"deaf", [this](Words) { host.mainWindow.onMessage = nullptr; }},
        {"no-detectors", [this](Words) { host.application.fftDetectors = nullptr; }},
        {"words",
         [](Words w) {
             const StatusText status = DescribeStatus(StateNamed(w[0]));
             EXPECT_EQ(status.text, w[1]);
             EXPECT_EQ(status.color, std::stoul(w[2], nullptr, 16));
         }},
        {"bytes",
         [this](Words w) {
             for (const std::string& word : w) {
                 bytes.push_back(static_cast<std::uint8_t>(std::stoi(word, nullptr, 16)));
             }
         }},
        {"damage", [this](Words w) { bytes.at(std::stoul(w[0])) ^= 0xFF; }},
        {"load",
         [this](Words w) {
             CString error;
             EXPECT_EQ(document.Load(bytes, error), w[0] == "1");
             EXPECT_EQ(error.empty(), w[0] == "1") << error;
         }},
        {"store", [this](Words) { bytes = Stored(); }},
        {"stores", [this](Words) { EXPECT_EQ(Stored(), bytes); }},
        {"values",
         [this](Words w) {
             for (int index = 0; index < kFieldCount; ++index) {
                 EXPECT_EQ(document.GetStoredValue(index), ValueOf(w[static_cast<std::size_t>(index)]))
                     << index;
             }
         }},
        {"discard", [this](Words w) { host.application.discardStoredValues = w[0] == "1"; }},
        {"details", [this](Words w) { ExpectDetails(w); }},
        {"no-details",
         [this](Words) {
             NPreProcessor::RegulationDetails details;
             EXPECT_EQ(document.GetRegulationDetails(details), 0);
         }},
        {"source-detector",
         [this](Words w) { document.SetSourceFFTDetector(static_cast<short>(Int(w[0]))); }},
        {"notified",
         [](Words w) {
             NPreProcessor::NotifyNewFFTData(Int(w[0]), Int(w[1]));
             EXPECT_FALSE(preprocessor::RunPendingWakeUp());
         }},
    };
};

} // namespace

TEST_P(ScenarioTest, Plays) {
    Play(GetParam(), operations);
}

INSTANTIATE_TEST_SUITE_P(Scenarios, ScenarioTest, ::testing::ValuesIn(ReadScenarios(__FILE__, "scenarios")),
                         TestNameOf);

} // namespace kalvio::test
