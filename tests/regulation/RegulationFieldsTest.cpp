#include "regulation/Document.h"

#include <cfloat>

namespace kalvio::test {
namespace {

using RegulationFieldsTest = DocumentTest;

constexpr double kVolt = kStepsPerVolt;

} // namespace

TEST_F(RegulationFieldsTest, AFreshDocumentHasTheseValues) {
    const double kExpected[kFieldCount] = {3251, 0, 0, 0, kVolt, kUnitVolt,  0,  0.1, 0, 0.01, 1,  10, 0,
                                           1,    0, 0, 0, 2000,  80'000'000, 11, 1e4, 1, 0,    10, 0};
    for (int index = 0; index < kFieldCount; ++index) {
        EXPECT_DOUBLE_EQ(document.GetStoredValue(index), kExpected[index]) << index;
    }
    EXPECT_EQ(document.GetStatus(), NPreProcessor::None);
}

TEST_F(RegulationFieldsTest, ControlsNameFields) {
    EXPECT_EQ(document.GetFieldIndexForCtrlID(kCtrlTolerance, kUnitVolt), kToleranceOffset);
    EXPECT_EQ(document.GetFieldIndexForCtrlID(kCtrlTolerance, kUnitDb), kToleranceOffsetDb);
    EXPECT_EQ(document.GetFieldIndexForCtrlID(kCtrlTolerance, kUnitPercent), kToleranceRatio);
    for (const int ctrlID : {2648, 2656, 2657, 2659, 2639, 2667}) {
        EXPECT_EQ(document.GetFieldIndexForCtrlID(ctrlID, kUnitNone), -1) << ctrlID;
        EXPECT_EQ(document.GetDefaultFieldDetails(ctrlID, kUnitNone), nullptr) << ctrlID;
    }
    for (int ctrlID = 2639; ctrlID <= 2667; ++ctrlID) { // the host's list has the document's, not the gaps
        const bool own = ctrlID >= 2640 && ctrlID <= 2666 && ctrlID != 2648;
        EXPECT_EQ(host.application.GetDocForID(ctrlID), own ? &document : nullptr) << ctrlID;
    }
    { const CRegulationSettings later; }
    EXPECT_EQ(host.application.GetDocForID(kCtrlResult), nullptr); // the later one took it and is gone
    for (const kalvio::FieldRow& field : Fields()) {
        if (field.ctrlID != kCtrlTolerance) {
            EXPECT_EQ(document.GetFieldIndexForCtrlID(field.ctrlID, kUnitNone), field.id);
        }
        EXPECT_FALSE(LoadText(field.details.stringId).empty()) << field.id;
        const bool hasControl = field.id != kResultFftDetector && field.id != kSourceFftDetector;
        EXPECT_EQ(!LoadText(static_cast<unsigned>(field.ctrlID)).empty(), hasControl)
            << field.ctrlID; // tooltip
    }
}

TEST_F(RegulationFieldsTest, ValidChoices) {
    struct Question {
        int ctrlID;
        std::vector<int> valid;
        std::vector<int> invalid;
    };
    const int detector = host.fftDetectors.Add("peak")->Id();
    const auto ask = [&](std::initializer_list<Question> questions) {
        for (const Question& question : questions) {
            for (const int value : question.valid) {
                EXPECT_EQ(document.IsEnumValueValid(question.ctrlID, value), 1)
                    << question.ctrlID << ' ' << value;
            }
            for (const int value : question.invalid) {
                EXPECT_EQ(document.IsEnumValueValid(question.ctrlID, value), 0)
                    << question.ctrlID << ' ' << value;
            }
        }
    };
    ask({{kCtrlResult, {3208, 3209, 3216, 3251, 3351}, {3008, 3210, 3252, 4008, 0}},
         {kCtrlResultFftDetector, {0, detector}, {detector + 1, -1}},
         {kCtrlSourceFftDetector, {0, detector}, {40}},
         {kCtrlChannel, {0, 4, 5, 6}, {-1, 7}},
         {kCtrlRegulationType, {0, 1, 2}, {-1, 3}},
         {kCtrlToleranceType, {0, 1}, {2}},
         {kCtrlResultUnit, {kUnitVolt, kUnitDbu}, {kUnitDb, kUnitHertz, kUnitDbfs}},
         {kCtrlToleranceUnit, {kUnitVolt}, {kUnitDb, kUnitPercent}},
         {kCtrlSource, {0, 4}, {5, -1, 3351}},
         {kCtrlSourceUnit, {kUnitHertz, kUnitKilohertz}, {kUnitVolt}},
         {kCtrlTrend, {0, 3}, {4}},
         {kCtrlDirection, {0, 1, 2}, {3, -1}}, // history is in range and refused
         {kCtrlTimeout, {1, 3600}, {0, 3601}},
         {kCtrlStatus, {}, {0, 1}}});
    Set("REG_ToleranceType", kRatio);
    ask({{kCtrlToleranceUnit, {kUnitDb, kUnitPercent}, {kUnitVolt}}});
    Set("REG_RegulationType", kMaximum);
    ask({{kCtrlToleranceUnit, {kUnitPercent}, {kUnitDb}}, {kCtrlChannel, {4}, {5, 6}}});
    host.analyser.inputType = static_cast<std::int32_t>(InputType::Digital);
    ask({{kCtrlResultUnit, {kUnitDbfs}, {kUnitVolt}}});
}

TEST_F(RegulationFieldsTest, DefaultUnitsFollowTheResult) {
    CFFTDetectorSettings* detector = host.fftDetectors.Add("peak");
    detector->SetUnit(kUnitDb);
    detector->SetRelativeReference(2.0 * kVolt);
    Set("REG_ResultFFTDetector", detector->Id());
    struct Row {
        int result;
        int unit;
        double regulateTo; // storage
    };
    for (const Row& row :
         {Row{3208, kUnitVolt, kVolt}, Row{3209, kUnitHertz, 1e6}, Row{3216, kUnitDegree, 0.0},
          Row{3351, kUnitDb, 0.02 * kVolt}, Row{3251, kUnitVolt, kVolt}}) {
        Set("REG_Result", row.result);
        EXPECT_EQ(document.GetResultUnit(), row.unit) << row.result;
        EXPECT_EQ(document.GetToleranceUnit(), row.unit) << row.result; // follows for offset tolerance
        EXPECT_NEAR(document.GetStoredValue(kRegulateTo), row.regulateTo, 1e-9 * kVolt) << row.result;
    }
    host.analyser.jitterDomain = 1;
    EXPECT_EQ(document.GetDefaultValue(kResultUnit), kUnitUi);
    Set("REG_Source", kSourceGeneratorAmplitude);
    EXPECT_EQ(document.GetSourceUnit(), kUnitVolt);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kSourceMaxLimit), 20.0 * kVolt);
    EXPECT_DOUBLE_EQ(document.GetSourceMaxLimit(), 20.0);
    EXPECT_DOUBLE_EQ(document.GetStepSize(), 1.0); // range 20: 10 to the (1 - 1)
}

TEST_F(RegulationFieldsTest, LimitsAreTheSettingsOwn) {
    EXPECT_DOUBLE_EQ(document.GetMaxValue(kRegulateTo), 200.0); // volts, of the analyser
    Set("REG_ResultUnit", kUnitMillivolt);
    EXPECT_DOUBLE_EQ(document.GetMaxValue(kRegulateTo), 200'000.0);
    EXPECT_DOUBLE_EQ(document.GetMaxValue(kSourceMaxLimit), 80'000.0); // hertz, of the generator
    Set("REG_SourceUnit", kUnitKilohertz);
    EXPECT_DOUBLE_EQ(document.GetMaxValue(kSourceMinLimit), 80.0);
    EXPECT_DOUBLE_EQ(document.GetMinValue(kTimeout), 1.0);
    EXPECT_DOUBLE_EQ(document.GetMaxValue(kToleranceOffsetDb), 100.0);
    Set("REG_Source", kSourceGeneratorAmplitude);
    Set("REG_SourceUnit", kUnitDbu);
    EXPECT_DOUBLE_EQ(document.GetMinValue(kStepSize), -100.0);

    Set("REG_Timeout", 3601);
    Set("REG_RegulateTo", 300'000.0);
    Set("REG_SourceMaxLimit", 60.0); // dBu: above 20 V
    EXPECT_EQ(document.GetTimeout(), 10);
    EXPECT_DOUBLE_EQ(document.GetRegulateTo(), 1000.0);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kSourceMaxLimit), 20.0 * kVolt);
    EXPECT_EQ(host.user.Texts().size(), 3U); // each refusal is explained
    EXPECT_NE(host.user.Texts()[0].find("Timeout for regulation"), CString::npos);
}

TEST_F(RegulationFieldsTest, TolerancesLiveSideBySide) {
    Set("REG_Tolerance", 0.25);
    Set("REG_ResultUnit", kUnitDbu);
    Set("REG_Tolerance", 3.0); // dB
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kToleranceOffset), 3.0);
    Set("REG_Tolerance", 101.0); // more than field 8 allows
    EXPECT_DOUBLE_EQ(document.GetTolerance(), 3.0);

    Set("REG_ToleranceType", kRatio);
    EXPECT_EQ(document.GetToleranceUnit(), kUnitPercent);
    EXPECT_DOUBLE_EQ(document.GetTolerance(), 1.0); // the default fraction, 0.01
    Set("REG_Tolerance", 5.0);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kToleranceRatio), 0.05);
    Set("REG_Tolerance", 101.0);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kToleranceRatio), 0.05);
    Set("REG_ToleranceUnit", kUnitDb);
    EXPECT_NEAR(document.GetTolerance(), 20.0 * std::log10(0.05), 1e-9);
    Set("REG_Tolerance", -20.0);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kToleranceRatio), 0.1);

    Set("REG_ToleranceType", kOffset);
    EXPECT_EQ(document.GetToleranceUnit(), kUnitDbu);
    Set("REG_ToleranceUnit", kUnitDb); // refused, and not stored
    EXPECT_EQ(document.GetToleranceUnit(), kUnitDbu);
    EXPECT_DOUBLE_EQ(document.GetTolerance(), 3.0);
}

TEST_F(RegulationFieldsTest, TypeMaximumTakesWhatItCannotUseAway) {
    for (const auto& [before, after] :
         {std::pair<int, int>(kBothTied, kBothSeparately), std::pair<int, int>(kEither, 0)}) {
        Set("REG_RegulationType", kAbsolute);
        Set("REG_ToleranceType", kOffset);
        Set("REG_Channel", before);
        Set("REG_RegulationType", kMinimum);
        EXPECT_EQ(document.GetChannel(), after);
        EXPECT_EQ(document.GetToleranceType(), kRatio);
        EXPECT_EQ(document.GetToleranceUnit(), kUnitPercent);
    }
    EXPECT_TRUE(WasHinted(kCtrlRegulationType));
}

TEST_F(RegulationFieldsTest, AnUnspecifiedDetectorIsRefused) {
    struct Row {
        const char* name;
        int ctrlID;
        int before;
        const char* text;
    };
    for (const Row& row : {Row{"REG_Result", kCtrlResult, 3251,
                               "The Result cannot be set to use an FFT Detector, because the FFT Detector "
                               "has not been specified."},
                           Row{"REG_Source", kCtrlSource, 0,
                               "The Source cannot be set to use an FFT Detector, because the FFT Detector "
                               "has not been specified."}}) {
        host.user.Clear();
        host.hints.clear();
        CIntValueMessenger messenger{.ctrlID = row.ctrlID, .value = 3351, .wantsMessages = true};
        EXPECT_TRUE(document.OnMessenger(&messenger));
        EXPECT_FALSE(messenger.changed);
        EXPECT_EQ(Number(row.name), row.before);
        EXPECT_EQ(host.user.Texts(), std::vector<CString>{row.text});
        EXPECT_TRUE(WasHinted(row.ctrlID));
    }
}

TEST_F(RegulationFieldsTest, StepSizeIsAMagnitude) {
    Set("REG_StepSizeAuto", 0);
    Set("REG_StepSize", -250.0);
    EXPECT_DOUBLE_EQ(document.GetStepSize(), 250.0);
    Set("REG_StepSize", DBL_MAX); // the automatic mark
    EXPECT_EQ(document.GetStepSizeAuto(), 1);
    EXPECT_DOUBLE_EQ(document.GetStepSize(), 250.0);
    Set("REG_Source", kSourceGeneratorAmplitude);
    Set("REG_SourceUnit", kUnitDbu);
    CPhyValueMessenger messenger;
    messenger.value = 6.0;
    messenger.unit = kUnitDbu;
    document.OnStepSize(&messenger); // as a view whose edit shows dBu sends it
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kStepSize), 6.0);
}

TEST_F(RegulationFieldsTest, PackedChoices) {
    const int id = host.fftDetectors.Add("peak")->Id();
    EXPECT_EQ(document.GetResultItemData(), 3251U);
    EXPECT_EQ(CRegulationSettings::GetResultItemData(3351, 12), 0x000C0D17U);
    int choice = 0;
    int detector = 0;
    EXPECT_EQ(document.ExtractResultFromItemData(CRegulationSettings::GetResultItemData(3351, id), &choice,
                                                 &detector),
              1);
    EXPECT_EQ(std::pair(choice, detector), std::pair(3351, id));
    EXPECT_EQ(document.ExtractResultFromItemData(0x000C0D17, &choice, &detector), 0); // no detector 12
    EXPECT_EQ(document.ExtractResultFromItemData(3252, &choice, &detector), 0);
    EXPECT_EQ(document.ExtractSourceFromItemData(4, &choice, &detector), 1);
    EXPECT_EQ(document.ExtractSourceFromItemData(5, &choice, &detector), 0);
}

TEST_F(RegulationFieldsTest, CombosOfferWhatApplies) {
    host.fftDetectors.Add("peak");
    using Items = std::vector<std::pair<CString, std::intptr_t>>;
    const auto items = [this](int ctrlID) {
        CComboBox combo;
        combo.AddString("left over");
        EXPECT_EQ(document.FillCombo(&combo, ctrlID), 1);
        Items list;
        for (int i = 0; i < combo.GetCount(); ++i) {
            list.emplace_back(combo.GetLBText(i), combo.GetItemData(i));
        }
        return list;
    };
    EXPECT_EQ(items(kCtrlResult), (Items{{"Signal Analyzer RMS amplitude", 3208},
                                         {"Signal Analyzer frequency", 3209},
                                         {"Signal Analyzer phase", 3216},
                                         {"CT Detector: Wideband", 3251},
                                         {"FFT Detector 1: peak", 0x10D17}}));
    EXPECT_EQ(items(kCtrlSource).size(), 5U);
    EXPECT_EQ(items(kCtrlDirection), (Items{{"Up", 0}, {"Down", 1}, {"Unknown", 2}}));
    EXPECT_EQ(items(kCtrlTrend).back(), (Items::value_type{"Non-monotonic", 3}));
    EXPECT_EQ(items(kCtrlChannel).size(), 7U);
    EXPECT_EQ(items(kCtrlToleranceUnit), (Items{{"V", kUnitVolt}}));
    EXPECT_EQ(items(kCtrlRegulateTo), Items{}); // in the range of the combos, but none
    Set("REG_ToleranceType", kRatio);
    EXPECT_EQ(items(kCtrlToleranceUnit), (Items{{"dB", kUnitDb}, {"%", kUnitPercent}}));
    Set("REG_Result", 3209);
    EXPECT_EQ(items(kCtrlToleranceUnit), (Items{{"%", kUnitPercent}}));
    EXPECT_EQ(items(kCtrlResultUnit), (Items{{"Hz", kUnitHertz}, {"kHz", kUnitKilohertz}}));
    Set("REG_RegulationType", kMaximum);
    EXPECT_EQ(items(kCtrlToleranceType), (Items{{"Ratio", kRatio}}));
    EXPECT_EQ(items(kCtrlChannel).back(), (Items::value_type{"Both", kBothSeparately}));
    CComboBox combo;
    EXPECT_EQ(document.FillCombo(&combo, 2639) + document.FillCombo(&combo, 2664) +
                  document.FillCombo(nullptr, kCtrlResult),
              0);
    EXPECT_EQ(document.GetComboItemText(kCtrlResult, 0x10D17), "FFT Detector 1: peak");
    EXPECT_EQ(document.GetComboItemText(kCtrlChannel, kBothTied), "Both (source tied)");
    EXPECT_EQ(document.GetComboItemText(kCtrlStepSizeAuto, 1), "Automatic");
    EXPECT_EQ(document.GetComboItemText(kCtrlDirection, NPreProcessor::kUseHistory), "");
}

TEST_F(RegulationFieldsTest, ValuesShownOutliveNewReferences) {
    host.analyser.inputType = static_cast<std::int32_t>(InputType::Digital);
    Set("REG_Result", 3208);
    Set("REG_RegulateTo", -20.0); // dBFS
    const double before = document.GetStoredValue(kRegulateTo);
    host.analyser.references.fullScale *= 2.0;
    document.OnAnalyserDomainChanged();
    EXPECT_NEAR(document.GetRegulateTo(), -20.0, 1e-9);
    EXPECT_DOUBLE_EQ(document.GetStoredValue(kRegulateTo), 2.0 * before);
    Set("REG_Result", 3209); // a frequency refers to nothing
    const double frequency = document.GetStoredValue(kRegulateTo);
    host.analyser.references.fullScale *= 2.0;
    document.OnAnalyserDomainChanged();
    EXPECT_EQ(document.GetStoredValue(kRegulateTo), frequency);
}

TEST_F(RegulationFieldsTest, AUnitThatIsNoLongerOfferedIsReplaced) {
    host.analyser.ctDetectorUnit = kUnitPercent;
    document.OnDetectorRelativityChanged(3, 1); // another detector's
    EXPECT_EQ(document.GetResultUnit(), kUnitVolt);
    document.OnDetectorRelativityChanged(kNoDetector, 1);
    EXPECT_EQ(document.GetResultUnit(), kUnitPercent);
    EXPECT_EQ(document.GetToleranceUnit(), kUnitPercent);
    EXPECT_DOUBLE_EQ(document.GetRegulateTo(), 1.0);
    EXPECT_TRUE(WasHinted(kCtrlResult));
    host.analyser.ctDetectorUnit = kUnitVolt;
    host.analyser.jitterDomain = 1;
    document.OnJDOChanged();
    EXPECT_EQ(document.GetResultUnit(), kUnitUi);
}

TEST_F(RegulationFieldsTest, ADeletedDetectorTakesItsChoiceAlong) {
    const int id = host.fftDetectors.Add("peak")->Id();
    Set("REG_ResultFFTDetector", id);
    Set("REG_Result", 3351);
    document.RemoveFFTDetector(id + 1);
    EXPECT_EQ(document.GetResult(), 3351);
    EXPECT_TRUE(document.IsFFTDetectorUsed(id));
    EXPECT_EQ(document.StartRegulation(0), 1);
    EXPECT_EQ(host.application.fftUsageCount.load(), 1);
    document.RemoveFFTDetector(id);
    EXPECT_EQ(document.GetStatus(), NPreProcessor::Aborted);
    EXPECT_EQ(host.application.fftUsageCount.load(), 0);
    EXPECT_EQ(document.GetResult(), 3251);
    EXPECT_EQ(document.GetResultFFTDetector(), 0);
    host.fftDetectors.Remove(id);
    NPreProcessor::NotifyNewFFTData(3351, id); // nothing watches what is gone
    EXPECT_FALSE(preprocessor::RunPendingWakeUp());
}

} // namespace kalvio::test
