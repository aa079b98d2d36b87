#pragma once

// String ids of the host's own texts. Other folders read them with kalvio::LoadText; a host program may
// register a table of its own to replace any of them.

namespace kalvio {

// Used with an argument where a comment says so.
enum HostText : unsigned {
    kTextUnknown = 11001,
    kTextPercent = 11060,
    kTextRangeUnitCount = 11071, // unit texts of range checks
    kTextRangeUnitPercent = 11073,
    kTextRangeUnitMilliseconds = 11074,

    kTextUnitShort = 11100, // + unit code
    kTextFirmwareFilter = 11256,
    kTextFirmwareExtension = 11257,
    kTextOutOfMemory = 11304,
    kTextNoWindow = 11307,
    kTextOff = 11400,
    kTextOn = 11401,
    kTextNo = 11410,
    kTextYes = 11411,
    kTextNoFrequency = 11418,
    kTextUnitLong = 11500, // + unit code

    kTextGateArrayFailed = 11700,
    kTextBringUpFailed = 11701, // %s: what failed
    kTextDspFailed = 11702,     // %d: 1 or 2

    kTextChannelA = 11800,
    kTextChannelB = 11801,
    kTextChannelSelected = 11802,
    kTextChannelNonSelected = 11803,
    kTextChannelEither = 11804,
    kTextDcOffset = 11810,
    kTextJitterFrequency = 11811,
    kTextJitterAmplitude = 11812,
    kTextGeneratorFrequencyA = 11813,
    kTextGeneratorFrequencyB = 11814,
    kTextGeneratorAmplitudeA = 11815,
    kTextGeneratorAmplitudeB = 11816,

    kTextResultRms = 11830,
    kTextResultFrequency = 11831,
    kTextResultPhase = 11832,
    kTextResultCtDetector = 11833,
    kTextResultFftDetector = 11834,
    kTextResultInputFrameRate = 11835,
    kTextResultInputDeviation = 11836,
    kTextResultCarrierAmplitude = 11837,
    kTextResultCarrierJitter = 11838,
    kTextResultCarrierPhase = 11839,
    kTextResultSyncFrameRate = 11840,
    kTextResultSyncDeviation = 11841,

    kTextInputType = 11850, // fields of the host's documents
    kTextInputAnalogue,
    kTextInputDigital,
    kTextJitterDomain,
    kTextFirstChannel,
    kTextSecondChannel,
    kTextWindowFunction,
    kTextChannelsReversed,
    kTextInputSampleRate,
    kTextOutputSampleRate,
    kTextLineUpVoltage,
    kTextReferenceA,
    kTextReferenceB,
    kTextCtDetectorUnit,
    kTextRmsUnitAnalogue,
    kTextRmsUnitDigital,
    kTextGeneratorIndependent,
    kTextGeneratorOnA,
    kTextGeneratorOnB,
    kTextGeneratorSampleRate,
    kTextFftLength,
    kTextTriggerPosition,
    kTextTriggerLevelA,
    kTextTriggerLevelB,
    kTextTriggerSlope,
    kTextTriggerFalling,
    kTextTriggerRising,
    kTextTriggerOn,
    kTextTriggerSource,
    kTextTriggerChannel,
    kTextDetectorUnit,
    kTextDetectorReference,

    kTextLoadFailed = 12010, // %s: why
    kTextOutOfRange = 12011, // %s: field, %s: range
    kTextRange = 12012,      // %s: low, %s: high
    kTextValidRange = 12013, // %s: range

    kTextSetDefault = 12030, // %s: the default
    kTextSetDefaultCaption = 12031,
    kTextValueRefused = 12052,   // %s: property; stands in kTextPropertyNotSet
    kTextMethodRefused = 12061,  // %s: method; stands in kTextMethodFailed
    kTextPropertyNotSet = 12122, // %s: why
    kTextMethodFailed = 12123,   // %s: why
};

} // namespace kalvio
