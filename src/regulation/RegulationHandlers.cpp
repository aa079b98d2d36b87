// The change handlers of the fields.

#include "host/HostApplication.h"
#include "platform/UserInterface.h"
#include "regulation/RegulationSettings.h"

#include <cmath>

using namespace kalvio::regulation;

namespace {

// What a ratio tolerance refers to: itself.
constexpr SReferences kRatioReferences{.unit = kUnitRatio, .reference = 1.0};

void TellViews(std::initializer_list<int> ctrlIDs) {
    for (const int ctrlID : ctrlIDs) {
        UpdateViews(nullptr, ctrlID, nullptr, 1);
    }
}

} // namespace

bool CRegulationSettings::StoreEnum(IntField& member, CIntValueMessenger* messenger) {
    const bool changed = OnEnumValue(member, messenger);
    if (changed) {
        TellViews({messenger->ctrlID});
    }
    return changed;
}

void CRegulationSettings::StoreFlag(IntField& member, CIntValueMessenger* messenger) {
    if (OnBoolValue(member, messenger)) {
        TellViews({messenger->ctrlID});
    }
}

void CRegulationSettings::StoreReal(RealField& member, CPhyValueMessenger* messenger,
                                    const FieldDetails& limits, int fieldUnit, int storedUnit,
                                    const SReferences& references) {
    if (OnPhyValue(member, messenger, limits, fieldUnit, storedUnit, references)) {
        TellViews({messenger->ctrlID});
    }
}

// A difference of levels is in dB whatever the levels refer to.
void CRegulationSettings::StoreDifference(RealField& member, CPhyValueMessenger* messenger,
                                          const FieldDetails& limits, int shownUnit,
                                          const SReferences& references) {
    const int keptUnit = IsdBUnit(shownUnit) ? kUnitDb : shownUnit;
    if (messenger->unit == shownUnit) {
        messenger->unit = keptUnit;
    }
    StoreReal(member, messenger, limits, keptUnit, keptUnit, references);
}

bool CRegulationSettings::StoreDetectorChoice(IntField& member, CIntValueMessenger* messenger, int detector,
                                              unsigned refusal) {
    const bool needsDetector = !messenger->get && messenger->value == kalvio::kResultFftDetectorA;
    if (!needsDetector || GetFFTDetectorFromID(detector) != nullptr) {
        return StoreEnum(member, messenger);
    }
    messenger->changed = false;
    messenger->refused = true;
    messenger->refusal = kalvio::LoadText(refusal);
    if (messenger->wantsMessages) {
        kalvio::ShowMessage(messenger->refusal, kalvio::BoxIcon::Exclamation);
    }
    TellViews({messenger->ctrlID}); // they show the choice that was refused
    return false;
}

void CRegulationSettings::OnResult(CIntValueMessenger* messenger) {
    if (!StoreDetectorChoice(m_result, messenger, m_resultFftDetector, kTextNoResultDetector)) {
        return;
    }
    SetToDefault(kResultUnit);
    RefreshReferences(1);
    SetToDefault(kRegulateTo);
    SetToDefault(kToleranceOffset);
    FollowResultUnit();
    TellViews({kCtrlResultUnit, kCtrlRegulateTo, kCtrlTolerance});
}

void CRegulationSettings::OnResultFFTDetector(CIntValueMessenger* messenger) {
    if (StoreEnum(m_resultFftDetector, messenger)) {
        RefreshReferences(1);
    }
}

void CRegulationSettings::OnChannel(CIntValueMessenger* messenger) {
    StoreEnum(m_channel, messenger);
}

void CRegulationSettings::OnRegulationType(CIntValueMessenger* messenger) {
    if (!StoreEnum(m_regulationType, messenger) || IsAbsolute()) {
        return;
    }
    if (m_channel == kBothTied) {
        m_channel = kBothSeparately;
    } else if (m_channel == kEither) {
        m_channel = kChannelA;
    }
    m_toleranceType = kRatio;
    m_toleranceUnit = kUnitPercent;
    TellViews({kCtrlChannel, kCtrlToleranceType, kCtrlToleranceUnit, kCtrlTolerance});
}

void CRegulationSettings::OnRegulateTo(CPhyValueMessenger* messenger) {
    StoreReal(m_regulateTo, messenger, DetailsOf(kRegulateTo), m_resultUnit, kUnitStorage,
              m_resultReferences);
}

void CRegulationSettings::OnResultUnit(CIntValueMessenger* messenger) {
    if (StoreEnum(m_resultUnit, messenger)) {
        FollowResultUnit();
    }
}

void CRegulationSettings::FollowResultUnit() {
    if (IsOffset()) {
        SetToDefault(kToleranceUnit);
        TellViews({kCtrlToleranceUnit});
    }
}

void CRegulationSettings::OnToleranceType(CIntValueMessenger* messenger) {
    if (StoreEnum(m_toleranceType, messenger)) {
        SetToDefault(kToleranceUnit);
        TellViews({kCtrlToleranceUnit, kCtrlTolerance});
    }
}

void CRegulationSettings::OnTolerance(CPhyValueMessenger* messenger) {
    if (IsOffset()) {
        const int index = IsdBUnit(m_resultUnit) ? kToleranceOffsetDb : kToleranceOffset;
        StoreDifference(m_toleranceOffset, messenger, DetailsOf(index), m_resultUnit, m_resultReferences);
        return;
    }
    FieldDetails limits = DetailsOf(kToleranceRatio);
    limits.minimum = CPhysicalValue::StorageToUnit(limits.minimum, m_toleranceUnit, kRatioReferences);
    limits.maximum = CPhysicalValue::StorageToUnit(limits.maximum, m_toleranceUnit, kRatioReferences);
    StoreReal(m_toleranceRatio, messenger, limits, m_toleranceUnit, kUnitStorage, kRatioReferences);
}

void CRegulationSettings::OnToleranceUnit(CIntValueMessenger* messenger) {
    if (messenger->get || !IsOffset()) {
        StoreEnum(m_toleranceUnit, messenger);
    } else {
        messenger->refused = IsEnumValueValid(kCtrlToleranceUnit, messenger->value) == 0;
        messenger->refusal = messenger->refused ? AdmittedText(kCtrlToleranceUnit) : CString();
    }
}

void CRegulationSettings::OnSensitivity(CPhyValueMessenger* messenger) {
    StoreReal(m_sensitivity, messenger, DetailsOf(kSensitivity), kUnitPercent, kUnitPercent,
              kRatioReferences);
}

void CRegulationSettings::OnTrend(CIntValueMessenger* messenger) {
    StoreEnum(m_trend, messenger);
}

void CRegulationSettings::OnUseSettling(CIntValueMessenger* messenger) {
    StoreFlag(m_useSettling, messenger);
}

void CRegulationSettings::OnSource(CIntValueMessenger* messenger) {
    if (!StoreDetectorChoice(m_source, messenger, m_sourceFftDetector, kTextNoSourceDetector)) {
        return;
    }
    SetToDefault(kSourceUnit);
    RefreshReferences(0);
    SetToDefault(kSourceMinLimit);
    SetToDefault(kSourceMaxLimit);
    SetToDefault(kStepSize);
    TellViews({kCtrlSourceUnit, kCtrlSourceMinLimit, kCtrlSourceMaxLimit, kCtrlStepSize});
}

void CRegulationSettings::OnSourceFFTDetector(CIntValueMessenger* messenger) {
    StoreEnum(m_sourceFftDetector, messenger);
}

void CRegulationSettings::OnOppositeChannel(CIntValueMessenger* messenger) {
    StoreFlag(m_oppositeChannel, messenger);
}

void CRegulationSettings::OnMinLimit(CPhyValueMessenger* messenger) {
    StoreReal(m_sourceMinLimit, messenger, DetailsOf(kSourceMinLimit), m_sourceUnit, kUnitStorage,
              m_sourceReferences);
}

void CRegulationSettings::OnMaxLimit(CPhyValueMessenger* messenger) {
    StoreReal(m_sourceMaxLimit, messenger, DetailsOf(kSourceMaxLimit), m_sourceUnit, kUnitStorage,
              m_sourceReferences);
}

void CRegulationSettings::OnSourceUnit(CIntValueMessenger* messenger) {
    StoreEnum(m_sourceUnit, messenger);
}

void CRegulationSettings::OnStepSize(CPhyValueMessenger* messenger) {
    if (messenger->get) {
        StoreDifference(m_stepSize, messenger, DetailsOf(kStepSize), m_sourceUnit, m_sourceReferences);
        return;
    }
    if (messenger->value == NPreProcessor::kAutomaticStep) {
        CIntValueMessenger automatic;
        automatic.ctrlID = kCtrlStepSizeAuto;
        automatic.value = 1;
        OnStepSizeAuto(&automatic);
        messenger->changed = automatic.changed;
        return;
    }
    messenger->value = std::fabs(messenger->value);
    StoreDifference(m_stepSize, messenger, DetailsOf(kStepSize), m_sourceUnit, m_sourceReferences);
}

void CRegulationSettings::OnStepSizeAuto(CIntValueMessenger* messenger) {
    StoreFlag(m_stepSizeAuto, messenger);
}

void CRegulationSettings::OnDirection(CIntValueMessenger* messenger) {
    StoreEnum(m_direction, messenger);
}

void CRegulationSettings::OnTimeout(CIntValueMessenger* messenger) {
    if (OnIntValue(m_timeout, messenger, kTimeout)) {
        TellViews({kCtrlTimeout});
    }
}

void CRegulationSettings::OnContinuous(CIntValueMessenger* messenger) {
    StoreFlag(m_continuous, messenger);
}
