#include "regulation/RegulationView.h"

#include "regulation/Document.h"
#include "support/Golden.h"
#include "support/LayoutChecks.h"
#include "support/WindowActs.h"

namespace kalvio::test {
namespace {

class RegulationViewTest : public DocumentTest, protected WindowActs {
protected:
    RegulationViewTest() {
        host.fftDetectors.Add("Noise");
        host.fftDetectors.Add("Hum");
        frame = document.OpenSettingsWindow(-1, 1, 0, nullptr);
    }

    // The controls that a user can work with.
    [[nodiscard]] std::vector<int> Enabled() const {
        std::vector<int> ids;
        for (int id = 2640; id <= 2666; ++id) {
            const CWnd* control = FindControl(*frame, id);
            if (control != nullptr && control->IsWindowEnabled() && id != 2659) {
                EXPECT_FALSE(control->IsGreyed()) << id;
                ids.push_back(id);
            }
        }
        return ids;
    }
};

TEST_F(RegulationViewTest, ShowsTheDocumentInALegibleLayout) {
    ASSERT_NE(frame, nullptr);
    EXPECT_EQ(std::pair(frame->WindowType(), frame->Panel()), std::pair(36, -1));
    EXPECT_EQ(FindControl(*frame, 2665)->GetTooltip(), "Sensitivity to local minima/maxima");
    ExpectGolden(__FILE__, "windows/defaults.txt", Dump());
    ExpectSoundLayout(DescribeWindow(*frame));
    EXPECT_EQ(Choose(2642, "a maximum value"), ActFault::None);
    EXPECT_EQ(Choose(2650, "DC offset"), ActFault::None);
    EXPECT_EQ(Act(ActKind::Click, 2664), ActFault::None);
    ExpectGolden(__FILE__, "windows/maximum.txt", Dump());
}

// Each act with what the document answers and what one control shows then.
TEST_F(RegulationViewTest, ActsReachTheDocumentOrAreRefused) {
    const struct {
        ActKind kind; // Choose: by text
        int id;
        const char* text;
        ActFault fault;
        int control;
        const char* shown;
    } acts[] = {
        {ActKind::Type, 2643, "2.5", ActFault::None, 2643, "2.5000"},
        {ActKind::Type, 2643, "1e9", ActFault::Refused, 2643, "2.5000"},
        {ActKind::Type, 2643, "volts", ActFault::Refused, 2643, "2.5000"},
        {ActKind::Choose, 2644, "mV", ActFault::None, 2643, "2500.00"},
        {ActKind::Click, 2649, "", ActFault::None, 2647, "mV"},
        {ActKind::Choose, 2645, "Ratio", ActFault::None, 2647, "%"},
        {ActKind::Type, 2646, "20", ActFault::None, 2646, "20.000"},
        {ActKind::Type, 2646, "101", ActFault::Refused, 2646, "20.000"},
        {ActKind::Choose, 2647, "dB", ActFault::None, 2646, "-13.98"},
        {ActKind::Choose, 2640, "FFT Detector 2: Hum", ActFault::None, 2646, "-13.98"},
        {ActKind::Choose, 2640, "Signal Analyzer frequency", ActFault::None, 2644, "Hz"},
        {ActKind::Choose, 2641, "Either", ActFault::None, 2647, "dB"},
        {ActKind::Choose, 2642, "a minimum value", ActFault::None, 2641, "Channel A"},
        {ActKind::Type, 2643, "3", ActFault::Disabled, 2647, "%"},
        {ActKind::Type, 2665, "12.34", ActFault::None, 2665, "12.3"},
        {ActKind::Type, 2655, "0", ActFault::Refused, 2655, "10"},
        {ActKind::Type, 2655, "60", ActFault::None, 2655, "60"},
        {ActKind::Type, 2662, "5", ActFault::Disabled, 2662, ""},
        {ActKind::Click, 2664, "", ActFault::None, 2662, "10000.00"},
        {ActKind::Choose, 2653, "kHz", ActFault::None, 2652, "80.00000"},
        {ActKind::Type, 2662, "-2", ActFault::None, 2662, "2.00000"},
        {ActKind::Choose, 2650, "Generator amplitude", ActFault::None, 2653, "V"},
        {ActKind::Choose, 2663, "Down", ActFault::None, 2652, "20.0000"},
        {ActKind::Click, 2666, "", ActFault::None, 2662, "1.0000"},
        {ActKind::Choose, 2650, "Jitter amplitude", ActFault::None, 2653, "UI"},
        {ActKind::Click, 2666, "", ActFault::Disabled, 2651, "0.0000"},
    };
    for (const auto& act : acts) {
        const CString what = Format("%d \"%s\"", act.id, act.text);
        host.user.Clear();
        const ActFault fault = act.kind == ActKind::Choose ? Choose(act.id, act.text)
                               : act.kind == ActKind::Type ? Enter(act.id, act.text)
                                                           : Act(act.kind, act.id);
        EXPECT_EQ(fault, act.fault) << what;
        EXPECT_EQ(host.user.Boxes().size(), act.fault == ActFault::Refused ? 1U : 0U) << what;
        EXPECT_EQ(TextOf(act.control), act.shown) << what;
    }
    EXPECT_EQ(document.GetResult(), kResultFrequencyA);
    EXPECT_EQ(document.GetResultFFTDetector(), 0) << "chosen together with the result";
    EXPECT_EQ(document.GetSensitivity(), 12.34) << "shown with one digit";
    EXPECT_EQ(document.GetUseSettling(), 0);
    EXPECT_EQ(Enter(2665, "12.3"), ActFault::None);
    EXPECT_EQ(document.GetSensitivity(), 12.34) << "what is shown is no change";
    CDC paper;
    dynamic_cast<CPrintView*>(frame->Children()[0])->Print(paper);
    CString lines;
    for (const CDC::TextLine& line : paper.Lines()) {
        lines += line.text + "\n";
    }
    ExpectGolden(__FILE__, "windows/print.txt", lines);
}

TEST_F(RegulationViewTest, ARunLeavesOnlyTheAbortAndItsEndIsTold) {
    const std::vector<int> idle = Enabled();
    host.output.status = 5; // the unit does not answer
    EXPECT_EQ(Act(ActKind::Click, 2656), ActFault::None);
    EXPECT_EQ(document.IsRegulationRunning(), 1);
    EXPECT_EQ(Enabled(), std::vector{2657});
    EXPECT_EQ(Act(ActKind::Click, 2656), ActFault::Disabled);
    Act(ActKind::SetDefault, 2643);
    ExpectGolden(__FILE__, "windows/running.txt", Dump());
    EXPECT_EQ(Act(ActKind::Click, 2657), ActFault::None);
    EXPECT_EQ(Enabled(), idle);
    const auto* status = dynamic_cast<CStatic*>(FindControl(*frame, 2659));
    const struct {
        NPreProcessor::EResult end;
        const char* words;
        std::uint32_t color;
    } ends[] = {{NPreProcessor::Succeeded, "Regulation successful!", 0x008000},
                {NPreProcessor::SourceLimit, "Regulation failed:\nReached source limit", 0xFF0000}};
    EXPECT_EQ(status->GetText(), "Regulation failed:\nAborted by user");
    for (const auto& end : ends) {
        Act(ActKind::Click, 2656);
        document.OnRegulationResult(end.end, 0);
        EXPECT_EQ(status->GetText(), end.words);
        EXPECT_EQ(status->GetTextColor(), end.color);
    }
    EXPECT_EQ(Enter(2652, "2"), ActFault::None); // no less than the lower limit
    EXPECT_EQ(Act(ActKind::Click, 2656), ActFault::None);
    EXPECT_EQ(host.user.Boxes().size(), 1U);
    EXPECT_EQ(Enabled(), idle);
}

TEST_F(RegulationViewTest, DetectorsComeAndGoUnderTheWindow) {
    EXPECT_EQ(Choose(2640, "FFT Detector 1: Noise"), ActFault::None);
    EXPECT_EQ(document.GetResultFFTDetector(), 1);
    host.fftDetectors.Remove(2); // the list still offers it
    EXPECT_EQ(Choose(2640, "FFT Detector 2: Hum"), ActFault::Refused);
    EXPECT_EQ(TextOf(2640), "FFT Detector 1: Noise");
    EXPECT_EQ(document.GetResultFFTDetector(), 1);
    host.fftDetectors.Find(1)->SetName("Hiss");
    for (const int hint : {-301, -302, -303, 3255, 3355}) {
        UpdateViews(nullptr, hint, nullptr, 0);
    }
    EXPECT_EQ(TextOf(2640), "FFT Detector 1: Hiss");
    document.RemoveFFTDetector(1);
    host.fftDetectors.Remove(1);
    UpdateViews(nullptr, -302, nullptr, 0);
    EXPECT_EQ(TextOf(2640), "CT Detector: Wideband");
    EXPECT_EQ(dynamic_cast<CComboBox*>(FindControl(*frame, 2640))->GetCount(), 4);
}

TEST_F(RegulationViewTest, RangesAndDefaultsAreInTheUnitShown) {
    document.SetToleranceType(kRatio);
    const std::pair<int, const char*> ranges[] = {
        {2643, "The valid range is 0 V to 200 V."},     {2646, "The valid range is 0 % to 100 %."},
        {2651, "The valid range is 2 Hz to 80000 Hz."}, {2655, "The valid range is 1 s to 3600 s."},
        {2662, "The valid range is 2 Hz to 80000 Hz."}, {2665, "The valid range is 0 % to 100 %."}};
    for (const auto& [id, text] : ranges) {
        FindControl(*frame, id)->GetParent()->Send(0x8016, static_cast<WPARAM>(id), 0);
        EXPECT_EQ(host.user.Texts().back(), text) << id;
    }
    Act(ActKind::ShowRange, 2640);
    EXPECT_EQ(host.user.Boxes().size(), std::size(ranges));
    const std::pair<int, const char*> defaults[] = {{2643, "1.0000"},
                                                    {2646, "1.000"},
                                                    {2652, "80000.00"},
                                                    {2655, "10"},
                                                    {2640, "CT Detector: Wideband"},
                                                    {2650, "Generator frequency"},
                                                    {2645, "Offset"}};
    Choose(2640, "Signal Analyzer RMS amplitude");
    for (const auto& [id, text] : {std::pair{2643, "3"}, {2646, "7"}, {2652, "400"}, {2655, "44"}}) {
        EXPECT_EQ(Enter(id, text), ActFault::None);
    }
    for (const auto& [id, text] : defaults) {
        Act(ActKind::SetDefault, id);
        EXPECT_EQ(TextOf(id), text) << id;
    }
    EXPECT_EQ(document.GetResult(), kResultCtDetectorA);
    Act(ActKind::SetDefault, 2649);
    EXPECT_EQ(document.GetUseSettling(), 1);
}

TEST_F(RegulationViewTest, PanelsOfSeveralWindowsFollowArchivesAndOneAnother) {
    const CPoint where{40, 30};
    CTypedFrameWnd* const source = document.OpenSettingsWindow(263, 1, 0, &where);
    ASSERT_NE(source, nullptr);
    EXPECT_EQ(source->GetText(), "Regulation Source");
    EXPECT_EQ(host.application.FindSettingsWindow(36, 263), source);
    EXPECT_EQ(host.application.FindSettingsWindow(36, -1), frame);
    EXPECT_EQ(host.application.FindSettingsWindow(36, 0), nullptr);
    EXPECT_EQ(document.OpenSettingsWindow(999, 1, 0, nullptr), nullptr);
    EXPECT_EQ(FindControl(*source, 2640), nullptr);
    EXPECT_EQ(source->GetWindowRect(), (CRect{40, 30, 283, 90}));
    EXPECT_EQ(Enter(2652, "5000"), ActFault::None);
    EXPECT_EQ(FindControl(*source, 2652)->GetText(), "5000.00");
    CArchive stored;
    CRegulationSettings().Serialize(stored);
    CArchive archive{stored.Bytes()};
    CString error;
    Set("REG_Source", kSourceDcOffset);
    EXPECT_EQ(FindControl(*source, 2651)->GetText(), "-10.0000");
    ASSERT_TRUE(document.Load(archive, error)) << error;
    UpdateViews(nullptr, -1, nullptr, 0);
    EXPECT_EQ(FindControl(*source, 2652)->GetText(), "80000.00");
    const int token = host.application.AddViewObserver([&](CView*, int, void*, int) { source->Close(); });
    EXPECT_EQ(PerformAct(*source, {ActKind::Type, 2651, "50", 0}).fault, ActFault::None);
    EXPECT_EQ(PerformAct(*source, {ActKind::Enter, 2651, {}, 0}).fault, ActFault::None);
    host.application.RemoveViewObserver(token);
    EXPECT_EQ(OpenFrames(), std::vector{frame});
    EXPECT_EQ(TextOf(2651), "50.00");
    host.application.regulation = nullptr; // the document goes before its window
    UpdateViews(nullptr, -1, nullptr, 0);
    EXPECT_EQ(Act(ActKind::Click, 2656), ActFault::None);
}

} // namespace
} // namespace kalvio::test
