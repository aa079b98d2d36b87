// What the document's choices stand for in the host: results, sources, documents, references.

#include "host/HostApplication.h"
#include "host/ResultCatalogue.h"
#include "regulation/RegulationSettings.h"

#include <algorithm>

using namespace kalvio::regulation;

namespace {

constexpr int kNone = -1;

// The row of a result that can be regulated: of channel A, or without channels.
const kalvio::ResultRow* RegulatedRow(int result) {
    const kalvio::ResultRow* row = kalvio::FindResultRow(result);
    const bool secondId = row == nullptr || row->name == nullptr;
    return secondId || (row->channelB != kalvio::kNoOtherChannel && row->channelB < row->id) ? nullptr : row;
}

// The generator's control of each source, for channels A and B.
struct SourceControls {
    int a;
    int b; // kNone: one for both channels
};

constexpr SourceControls kSourceControls[] = {
    {kalvio::kCtrlGeneratorFrequencyA, kalvio::kCtrlGeneratorFrequencyB},
    {kalvio::kCtrlGeneratorAmplitudeA, kalvio::kCtrlGeneratorAmplitudeB},
    {kalvio::kCtrlDcOffset, kNone},
    {kalvio::kCtrlJitterFrequency, kNone},
    {kalvio::kCtrlJitterAmplitude, kNone},
};

SourceControls ControlsOf(int source) {
    constexpr int kSources = static_cast<int>(std::size(kSourceControls));
    return source >= 0 && source < kSources ? kSourceControls[source] : SourceControls{kNone, kNone};
}

} // namespace

int CRegulationSettings::GetResultIDs(int& a, int& b, int& detector, ChannelNumber& channel) {
    const kalvio::ResultRow* row = RegulatedRow(m_result);
    if (row == nullptr) {
        return 0;
    }
    a = row->id;
    b = row->channelB;
    detector = m_result == kalvio::kResultFftDetectorA ? m_resultFftDetector : kalvio::kNoDetector;
    channel = b == kNone ? kChannelA : GetActualChannel();
    return 1;
}

ChannelNumber CRegulationSettings::GetActualChannel() const {
    int first = kChannelA;
    int second = kChannelB;
    switch (m_channel) {
    case kChannelB:
        return kChannelB;
    case kSelectedChannel:
        GetSWAnalyserChannels(first, second);
        return first == kChannelA ? kChannelA : kChannelB;
    case kNonSelectedChannel:
        GetSWAnalyserChannels(first, second);
        return first == kChannelA ? kChannelB : kChannelA;
    case kBothSeparately:
    case kBothTied:
        return kChannelBoth;
    case kEither:
        return kChannelEither;
    default:
        return kChannelA;
    }
}

int CRegulationSettings::GetSourceCtrlID(int* second, int* detector) const {
    const SourceControls controls = ControlsOf(m_source);
    const ChannelNumber channel = GetActualChannel();
    const bool useB = (channel == kChannelB) != (m_oppositeChannel != 0) && controls.b != kNone;
    if (second != nullptr) {
        const bool both = channel == kChannelBoth && controls.b != kNone;
        *second = both ? (useB ? controls.a : controls.b) : kNone;
    }
    if (detector != nullptr) {
        *detector = m_sourceFftDetector;
    }
    return useB ? controls.b : controls.a;
}

void CRegulationSettings::GetSourceCtrlIDs(int& id, int& second, int& detector) const {
    id = GetSourceCtrlID(&second, &detector);
    if (detector == 0) {
        detector = kalvio::kNoDetector;
    }
}

CSettingsData* CRegulationSettings::GetSettingsForCtrlID(int ctrlID, int detector) const {
    switch (ctrlID) {
    case kalvio::kResultFftDetectorA:
    case kalvio::kResultFftDetectorB:
    case kalvio::kCtrlFftDetector:
        return GetFFTDetectorFromID(detector);
    default:
        return Host().GetDocForID(ctrlID);
    }
}

CSettingsData* CRegulationSettings::ResultDocument() const {
    if (m_result == kalvio::kResultFftDetectorA) {
        return GetFFTDetectorFromID(m_resultFftDetector);
    }
    return ResultsTable();
}

CSettingsData* CRegulationSettings::ResultsTable() const {
    CHostApplication& application = Host();
    if (IsResultFromGenerator()) {
        return application.generator;
    }
    return application.analyser;
}

CSettingsData* CRegulationSettings::SourceDocument() const {
    return GetSettingsForCtrlID(GetSourceCtrlID(nullptr, nullptr), m_sourceFftDetector);
}

void CRegulationSettings::GetReferences(SReferences& references, int result) {
    CSettingsData* document = result != 0 ? ResultDocument() : SourceDocument();
    CPhyValueMessenger messenger;
    messenger.ctrlID = result != 0 ? m_result.Get() : GetSourceCtrlID(nullptr, nullptr);
    messenger.get = true;
    if (document != nullptr && document->OnMessenger(&messenger) && messenger.hasReferences) {
        references = messenger.references;
    } else {
        const CAnalyserSettings* analyser = Host().analyser;
        references = result != 0 && analyser != nullptr ? analyser->references : SReferences{};
    }
    (result != 0 ? m_resultReferences : m_sourceReferences) = references;
}

void CRegulationSettings::RefreshReferences(int result) {
    SReferences references;
    GetReferences(references, result);
}

void CRegulationSettings::AdjustValues(int result, int source) {
    const auto reexpress = [this](std::initializer_list<int> indices, int unit, int ofResult) {
        const SReferences before = ofResult != 0 ? m_resultReferences : m_sourceReferences;
        SReferences now;
        GetReferences(now, ofResult);
        for (const int index : indices) {
            const double shown = CPhysicalValue::StorageToUnit(GetStoredValue(index), unit, before);
            SetStoredValue(index, CPhysicalValue::UnitToStorage(shown, unit, now));
        }
    };
    if (result != 0) {
        reexpress({kRegulateTo}, m_resultUnit, 1);
    }
    if (source != 0) {
        reexpress({kSourceMinLimit, kSourceMaxLimit}, m_sourceUnit, 0);
    }
}
