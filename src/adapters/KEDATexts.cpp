#include "adapters/KEDATexts.h"

#include "platform/Text.h"

namespace {

using namespace kalvio::keda;

constexpr kalvio::TextResource kTexts[] = {
    {kTextAdapter, "KEDA Adapter"},
    {kTextPanelTitle, "KEDA Adapter Control"},
    {kTextEnableGenerator, "Enable KEDA Generator"},
    {kTextEnableAnalyzer, "Enable KEDA Analyzer"},
    {kTextAudioOn, "Turn Audio on/off"},
    {kTextAudioVoltage, "Audio voltage"},
    {kTextControlOn, "Turn Control on/off"},
    {kTextControlVoltage, "Control voltage"},
    {kTextSlotLength, "Data slot length"},
    {kTextLsbFirst, "Data LSB first"},
    {kTextLeadPad, "Data lead pad length"},
    {kTextDataLength, "Data length"},
    {kTextTrailPad, "Data trail pad length"},
    {kTextSlotsPerWire, "No. slots per wire"},
    {kTextSignExtend, "Sign extend data"},
    {kTextSerialClockDir, "Serial clock direction"},
    {kTextFrameClockInvert, "Invert Frame clock"},
    {kTextFrameClock1Bit, "Frame clock 1 bit wide"},
    {kTextFrameClockEarly, "Frame clock early"},
    {kTextFrameClockFreq, "Frame clock frequency"},
    {kTextBitClockInvert, "Invert bit clock"},
    {kTextBitClockFreq, "Bit clock frequency"},
    {kTextMasterClockDir, "Master clock direction"},
    {kTextMultiplier, "Master clock multiplier"},
    {kTextMasterClockFreq, "Master clock frequency"},
    {kTextSetCurrent, "Set current KEDA Adapter"},
    {kTextSetGeneratorRouting, "Set Generator routing"},
    {kTextDelay, "Delay"},
    {kTextSetAnalyzerRouting, "Set Analyzer routing"},
    {kTextSpiPolarity, "SPI clock polarity"},
    {kTextSpiPhase, "SPI clock phase"},
    {kTextSendSpi, "Send SPI Data"},
    {kTextSendI2c, "Send I2C Data"},
    {kTextGenerator, "Generator"},
    {kTextAnalyzer, "Analyzer"},
    {kTextClockTooFast,
     "A change has been made that makes the %s %s frequency greater than %.3fMHz. This frequency is "
     "invalid.\n\nNote:\nThe Bit clock is equal to (Frame clock x Slot Length x Slots per wire).\nThe Master "
     "clock is equal to (Frame clock x Master clock multiplier)."},
    {kTextAddress, "Device address"},
    {kTextWire, "Wire %d"},
    {kTextGeneratorTab, "Generator"},
    {kTextAnalyzerTab, "Analyzer"},
    {kTextControlTab, "Control"},
    {kTextUseAddress,
     "The address entered is not a valid KEDA Adapter address. Do you wish to use this address anyway?"},
    {kTextLeadPadBits, "Lead pad: %d"},
    {kTextTrailPadBits, "Trail pad: %d"},
    {kTextAck, "ACK"},
    {kTextNack, "NACK"},
    {kTextNoSuchAdapter, "The KEDA Adapter address entered is not a valid address of a KEDA Adapter."},
    {kTextNoCurrentAdapter,
     "You must use the %s(address) method to select the current KEDA Adapter before trying to "
     "access KEDA Adapter settings."},
    {kTextDeviceDetails, "Device details"},
    {kTextDelayFirst, "-7 ns"},
    {kTextDelayFirst + 1, "0 ns"},
    {kTextDelayFirst + 2, "7 ns"},
    {kTextDelayFirst + 3, "14 ns"},
    {kTextDelayFirst + 4, "21 ns"},
    {kTextDelayFirst + 5, "28 ns"},
    {kTextDelayFirst + 6, "35 ns"},
    {kTextAddToArray, "Add to array definition"},
    {kTextAddToStereoArray, "Add to stereo array definition"},
    {kTextBitClock, "Bit clock"},
    {kTextMasterClock, "Master clock"},
    {kTextBothClocks, "Bit clock and Master clock"},
    {kTextBothDirections, "Generator and/or Analyser"},
};

const kalvio::TextTable kTable{kTexts};

} // namespace
