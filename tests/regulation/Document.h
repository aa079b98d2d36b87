#pragma once

// A regulation document in a host of its own, told of results as a host program does it.

#include "regulation/RegulationSettings.h"
#include "support/RegulationRig.h"

namespace kalvio::test {

using namespace kalvio::regulation;

class DocumentTest : public RegulationRig {
protected:
    DocumentTest() {
        host.application.regulation = &document;
        host.application.regulationDetails = &document;
        host.mainWindow.onMessage = [this](const RecordingWindow::Message& message) {
            if (message.id == kMessageWatchFinished) {
                document.OnRegulationResult(static_cast<unsigned>(message.wParam),
                                            static_cast<long>(message.lParam));
            }
        };
    }

    // As a script does; a value that is refused changes nothing.
    void Set(const char* name, const VARIANT& value) {
        const AutomationResult result = document.SetProperty(name, value);
        EXPECT_TRUE(result.Ok() || (result.fault == AutomationFault::Refused && !result.text.empty()))
            << result.text;
    }
    void Set(const char* name, int value) { Set(name, VARIANT::Short(static_cast<std::int16_t>(value))); }
    void Set(const char* name, double value) { Set(name, VARIANT::Double(value)); }

    double Number(const char* name) {
        double value = -1e300;
        const AutomationResult result = document.GetProperty(name);
        EXPECT_TRUE(result.Ok() && result.value.Get(value)) << name << result.text;
        return value;
    }

    std::vector<std::uint8_t> Stored() {
        CArchive archive;
        document.Serialize(archive);
        return archive.Bytes();
    }

    [[nodiscard]] bool WasHinted(int ctrlID) const {
        return std::any_of(host.hints.begin(), host.hints.end(),
                           [ctrlID](const ViewHint& hint) { return hint.hint == ctrlID; });
    }

    // Regulates the RMS amplitude to 2 V by the generator's amplitude through two channels of a device.
    void RegulateAmplitude() {
        Set("REG_Result", 3208);
        Set("REG_Source", kSourceGeneratorAmplitude);
        Set("REG_SourceMaxLimit", 10.0);
        Set("REG_RegulateTo", 2.0);
        Set("REG_Tolerance", 0.01);
        measure = [this] {
            const GeneratorState state = host.generator.GetState();
            Put(kResultRmsA, state.on[0] ? gains[0] * state.amplitude[0] : 0.0);
            Put(kResultRmsB, state.on[1] ? gains[1] * state.amplitude[1] : 0.0);
        };
    }

    double Volts(int ctrlID) { return host.generator.GetSource(ctrlID) / kStepsPerVolt; }

    double gains[2] = {0.5, 0.25};
    CRegulationSettings document;
};

} // namespace kalvio::test
