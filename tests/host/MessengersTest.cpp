// What the host's documents answer to the messengers of their controls, in every unit, beside each other.

#include "support/Golden.h"
#include "support/TestHost.h"

#include <cmath>
#include <set>

namespace kalvio::test {
namespace {

constexpr int kResults[] = {3008, 3009, 3051, 3054, 3057, 3208, 3209, 3210,  3211, 3216,
                            3251, 3253, 3351, 3352, 4008, 4009, 9991, 65535, 1};
constexpr int kUnits[] = {kUnitStorage,     kUnitNone,
                          kUnitVolt,        kUnitSecond,
                          kUnitHertz,       kUnitMillivolt,
                          kUnitMicrovolt,   kUnitKilohertz,
                          kUnitDbu,         kUnitDbv,
                          kUnitDbm,         kUnitWatt,
                          kUnitCarrierVolt, kUnitFullScale,
                          kUnitDbfs,        kUnitDb,
                          kUnitPercent,     kUnitUi,
                          kUnitDegree,      kUnitPpm,
                          kUnitRatio,       2};

class MessengersTest : public ::testing::Test {
protected:
    MessengersTest() {
        for (const CSettingsData* document : documents) {
            for (const FieldRow& row : document->FieldRows()) {
                ids.insert(row.ctrlID);
            }
        }
        host.analyser.references = {kUnitVolt, 2.0 * kStepsPerVolt, 75.0, 1.5 * kStepsPerVolt};
        WriteResult(*detector->ResultA(), 1250.0);
        WriteResult(*detector->ResultB(), 1500.0);
    }

    CString Details(CSettingsData& document, int id, int unit) {
        const FieldDetails* details = document.GetDefaultFieldDetails(id, unit);
        return details == nullptr
                   ? CString()
                   : Format(" [%u: %.9g to %.9g, %.9g, type %d, %d]", details->stringId, details->minimum,
                            details->maximum, details->defaultValue, details->numberType, details->decimals);
    }

    CString Reals(CSettingsData& document, int id) {
        CString text;
        for (const int unit : kUnits) {
            CPhyValueMessenger get;
            get.ctrlID = id;
            get.get = true;
            get.unit = unit;
            if (document.OnMessenger(&get)) {
                text += Format("  in %d: %.9g", unit, get.value) + Details(document, id, unit) +
                        Format(" offered %d\n", document.IsEnumValueValid(id, unit));
            }
        }
        std::vector<std::pair<double, int>> given;
        for (const double value : {-1.0, 0.0, 0.25, 1.0, 50.0, 1e9, std::nan("")}) {
            given.emplace_back(value,
                               value == 50.0 ? static_cast<int>(kUnitPercent) : static_cast<int>(kUnitNone));
        }
        for (const int unit : document.GetUnitsForCtrlID(id)) {
            given.emplace_back(2.0, unit);
        }
        for (const auto& [value, unit] : given) {
            CPhyValueMessenger set;
            set.ctrlID = id;
            set.value = value;
            set.unit = unit;
            document.SetModifiedFlag(false);
            if (document.OnMessenger(&set)) {
                text += Format("  := %g in %d: %s%s%s\n", value, unit, set.changed ? "changed " : "",
                               document.IsModified() ? "modified " : "",
                               set.refused ? ("refused " + set.refusal).c_str() : "");
            }
        }
        return text;
    }

    CString Integers(CSettingsData& document, int id) {
        CString text;
        for (int value = -1; value <= 6; ++value) {
            CIntValueMessenger set;
            set.ctrlID = id;
            set.value = value;
            document.SetModifiedFlag(false);
            if (document.OnMessenger(&set)) {
                CIntValueMessenger get;
                get.ctrlID = id;
                get.get = true;
                document.OnMessenger(&get);
                text += Format("  := %d: %s%s%s%s, now %d\n", value, set.changed ? "changed " : "",
                               document.IsModified() ? "modified " : "", set.refused ? "refused " : "",
                               set.refusal.c_str(), get.value);
            }
        }
        return text;
    }

    TestHost host;
    CFFTDetectorSettings* detector = host.fftDetectors.Add("Noise");
    CSettingsData* documents[4] = {&host.analyser, &host.generator, &host.fftParameters, detector};
    std::set<int> ids{std::begin(kResults), std::end(kResults)};
};

TEST_F(MessengersTest, AnswerInEveryUnit) {
    CString all;
    for (int which = 0; CSettingsData * document : documents) {
        all += Format("document %d\n", which++);
        for (const int id : ids) {
            CString units;
            for (const int unit : document->GetUnitsForCtrlID(id)) {
                units += Format(" %d", unit);
            }
            CString text = Reals(*document, id) + Integers(*document, id) + Details(*document, id, kUnitNone);
            if (!text.empty() || !units.empty()) {
                all += Format(" control %d, units%s\n", id, units.c_str()) + text + "\n";
            }
        }
        for (const GeneratorState& state : host.output.States()) {
            all += Format(" %g %g %g %g %d %d %g %g %g\n", state.frequency[0], state.frequency[1],
                          state.amplitude[0], state.amplitude[1], state.on[0] ? 1 : 0, state.on[1] ? 1 : 0,
                          state.dcOffset, state.jitterFrequency, state.jitterAmplitude);
        }
        for (const ViewHint& hint : host.hints) {
            all += Format(" %d/%d", hint.hint, hint.flag);
        }
        host.hints.clear();
    }
    ExpectGolden(__FILE__, "messengers.txt", all);
}

// By what the analyser looks at, and by the units of the detector and the amplitudes.
TEST_F(MessengersTest, ResultsHaveDefaultsByTheInput) {
    CString all;
    for (const int row : {0, 1, 2, 3, 4, 5, 6, 7, 8}) {
        host.analyser.inputType =
            static_cast<std::int32_t>(row % 3 == 0 ? InputType::Analogue : InputType::Digital);
        host.analyser.jitterDomain = row % 3 == 2 ? 1 : 0;
        host.analyser.ctDetectorUnit = row / 3 == 0 ? kUnitVolt : row / 3 == 1 ? kUnitDb : kUnitDbv;
        host.analyser.rmsUnitAnalogue = row / 3 == 2 ? kUnitDb : kUnitVolt;
        host.analyser.rmsUnitDigital = row / 3 == 2 ? kUnitPercent : kUnitDbfs;
        for (const int id : kResults) {
            CString units;
            for (const int unit : host.analyser.GetUnitsForCtrlID(id)) {
                units += Format(" %d", unit);
            }
            all += Format("%d %d: %.9g in %d of", row, id, host.analyser.GetResultDefault(id),
                          host.analyser.GetResultDefaultUnit(id)) +
                   units + Details(host.analyser, id, kUnitNone) + "\n";
        }
    }
    ExpectGolden(__FILE__, "defaults.txt", all);
}

} // namespace
} // namespace kalvio::test
