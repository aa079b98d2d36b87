#include "regulation/Document.h"

namespace kalvio::test {
namespace {

using RegulationFieldsTest = DocumentTest;

} // namespace

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
    CComboBox combo;
    EXPECT_EQ(document.FillCombo(&combo, 2639) + document.FillCombo(&combo, 2664) +
                  document.FillCombo(nullptr, kCtrlResult),
              0);
}

TEST_F(RegulationFieldsTest, ADeletedDetectorTakesItsChoiceAlong) {
    const int id = host.fftDetectors.Add("peak")->Id();
    Set("REG_ResultFFTDetector", id);
    Set("REG_Result", 3351);
    document.SetSourceFFTDetector(static_cast<short>(id));
    document.RemoveFFTDetector(id + 1);
    EXPECT_EQ(document.GetSourceFFTDetector(), id);
    EXPECT_EQ(document.GetResult(), 3351);
    EXPECT_TRUE(document.IsFFTDetectorUsed(id));
    EXPECT_EQ(document.StartRegulation(0), 1);
    EXPECT_EQ(host.application.fftUsageCount.load(), 1);
    document.RemoveFFTDetector(id);
    EXPECT_EQ(document.GetStatus(), NPreProcessor::Aborted);
    EXPECT_EQ(host.application.fftUsageCount.load(), 0);
    EXPECT_EQ(document.GetResult(), 3251);
    EXPECT_EQ(document.GetResultFFTDetector(), 0);
    EXPECT_EQ(document.GetSourceFFTDetector(), 0);
    host.fftDetectors.Remove(id);
    NPreProcessor::NotifyNewFFTData(3351, id); // nothing watches what is gone
    EXPECT_FALSE(preprocessor::RunPendingWakeUp());
}

} // namespace kalvio::test
