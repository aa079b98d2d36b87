// The regulation document's archive, and what the document makes of the values that it accepted.

#include "ArchiveProperty.h"
#include "regulation/RegulationSettings.h"

#include <cmath>

namespace {

using namespace kalvio::regulation;

constexpr double kLargestChoice = 2e9;

void CheckFields(CRegulationSettings& document) {
    for (const kalvio::FieldRow& field : Fields()) {
        const double value = document.GetStoredValue(field.id);
        const bool hasOwnLimits = field.details.minimum < field.details.maximum && field.id != kStepSize;
        kalvio::fuzz::Require(std::isfinite(value), "a loaded field is a number");
        kalvio::fuzz::Require(!hasOwnLimits ||
                                  (value >= field.details.minimum && value <= field.details.maximum),
                              "a loaded field lies within its limits");
    }
}

// Everything that a view and the regulator ask of a document.
void Use(CRegulationSettings& document) {
    CComboBox combo;
    for (const kalvio::FieldRow& field : Fields()) {
        const double stored = document.GetStoredValue(field.id);
        const int value = std::fabs(stored) < kLargestChoice ? static_cast<int>(stored) : 0;
        document.FillCombo(&combo, field.ctrlID);
        static_cast<void>(document.GetComboItemText(field.ctrlID, value));
        static_cast<void>(document.IsEnumValueValid(field.ctrlID, value));
        static_cast<void>(document.GetDefaultValue(field.id));
        static_cast<void>(document.GetMinValue(field.id));
        static_cast<void>(document.GetMaxValue(field.id));
        CPhyValueMessenger messenger;
        messenger.ctrlID = field.ctrlID;
        messenger.get = true;
        document.OnMessenger(&messenger);
    }
    document.OnJDOChanged();
    document.AdjustValues(1, 1);
    CRegulationSettings::RegulationDetails details;
    document.GetRegulationDetails(details);
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    const test::TestHost host;
    CRegulationSettings document;
    std::vector<Bytes> seeds{ArchiveSeed(document, 0), ArchiveSeed(document, kApplyUnsaved),
                             ArchiveSeed(document, kDiscard)};
    document.SetSource(kSourceGeneratorAmplitude);
    document.SetToleranceType(kRatio);
    document.SetTrend(3);
    document.SetChannel(kBothSeparately);
    seeds.push_back(ArchiveSeed(document, 0));
    return seeds;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    kalvio::fuzz::LoadsOrRefuses<CRegulationSettings>(data, size, [](CRegulationSettings& document) {
        CheckFields(document);
        CArchive copy;
        document.Serialize(copy);
        CRegulationSettings used;
        CString error;
        used.Load(std::span(copy.Bytes()), error);
        Use(used);
    });
    return 0;
}
