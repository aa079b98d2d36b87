#pragma once

// String ids of the adapters' texts.

namespace kalvio::keda {

enum KEDAText : unsigned {
    kTextAdapter = 12532,
    kTextPanelTitle = 12536,
    kTextEnableGenerator = 12755,
    kTextEnableAnalyzer,
    kTextAudioOn,
    kTextAudioVoltage,
    kTextControlOn,
    kTextControlVoltage,
    kTextSlotLength,
    kTextLsbFirst,
    kTextLeadPad,
    kTextDataLength,
    kTextTrailPad,
    kTextSlotsPerWire,
    kTextSignExtend,
    kTextSerialClockDir,
    kTextFrameClockInvert,
    kTextFrameClock1Bit,
    kTextFrameClockEarly,
    kTextFrameClockFreq,
    kTextBitClockInvert,
    kTextBitClockFreq,
    kTextMasterClockDir,
    kTextMultiplier,
    kTextMasterClockFreq,
    kTextSetCurrent,
    kTextSetGeneratorRouting,
    kTextDelay = 12782,
    kTextSetAnalyzerRouting = 12785,
    kTextSpiPolarity,
    kTextSpiPhase,
    kTextSendSpi,
    kTextSendI2c,
    kTextGenerator = 12791,
    kTextAnalyzer,
    kTextAddress = 12935, // "Device address"
    kTextWire = 12944,    // %d
    kTextGeneratorTab = 12945,
    kTextAnalyzerTab,
    kTextControlTab,
    kTextUseAddress = 12948,
    kTextClockTooFast = 12949, // %s: direction, %s: clock, %.3f: megahertz
    kTextLeadPadBits = 12960,  // %d
    kTextTrailPadBits,         // %d
    kTextAck,
    kTextNack,
    kTextNoSuchAdapter = 12964,
    kTextNoCurrentAdapter = 12965, // %s: the method that makes one current
    kTextDeviceDetails = 12966,
    kTextDelayFirst = 12971, // of the seven delays
    kTextAddToArray = 13200,
    kTextAddToStereoArray,
    kTextBitClock,
    kTextMasterClock,
    kTextBothClocks,
    kTextBothDirections,
};

} // namespace kalvio::keda
