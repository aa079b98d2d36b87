#include "regulation/RegulationView.h"

#include "regulation/Document.h"
#include "support/DocumentScript.h"

namespace kalvio::test {

class RegulationViewTest : public DocumentTest, public ::testing::WithParamInterface<const char*> {};

TEST_P(RegulationViewTest, ActByAct) {
    host.fftDetectors.Add("Noise");
    host.fftDetectors.Add("Hum");
    DocumentScript script(host, document, __FILE__, GetParam());
    script.words["open"] = [&](const std::string& rest) { // PANEL [X Y]
        std::istringstream words(rest);
        int panel = 0;
        CPoint where{};
        words >> panel >> where.x >> where.y;
        CTypedFrameWnd* const frame = document.OpenSettingsWindow(panel, 1, 0, words ? &where : nullptr);
        script.Note(frame == nullptr
                        ? "none"
                        : Format("window type %d, panel %d", frame->WindowType(), frame->Panel()));
        if (frame == nullptr) {
            return;
        }
        script.window = frame;
        EXPECT_EQ(host.application.FindSettingsWindow(36, panel), frame);
        EXPECT_EQ(host.application.FindSettingsWindow(36, 0), nullptr);
        const CRect at = frame->GetWindowRect();
        EXPECT_TRUE(!words || (at.left == where.x && at.top == where.y));
    };
    script.words["output"] = [this](const std::string& rest) { // what the unit answers
        host.output.status = static_cast<std::int16_t>(std::stoi(rest));
    };
    script.words["result"] = [this](const std::string& rest) { // the end of a run
        document.OnRegulationResult(static_cast<unsigned>(std::stoul(rest)), 0);
    };
    script.words["color"] = [&](const std::string&) {
        script.Note(
            Format("%06X", dynamic_cast<CStatic&>(*FindControl(*script.window, 2659)).GetTextColor()));
    };
    script.words["remove"] = [this](const std::string& rest) { host.fftDetectors.Remove(std::stoi(rest)); };
    script.words["forget"] = [this](const std::string& rest) { document.RemoveFFTDetector(std::stoi(rest)); };
    script.words["name"] = [this](const std::string& rest) { // ID NAME
        host.fftDetectors.Find(std::stoi(rest))->SetName(rest.substr(2));
    };
    script.words["gone"] = [this](const std::string&) { host.application.regulation = nullptr; };
    script.Play();
}

INSTANTIATE_TEST_SUITE_P(Windows, RegulationViewTest,
                         ::testing::Values("windows/regulation.txt", "windows/acts.txt"));

} // namespace kalvio::test
