// The hardware object: every operation is one of a part.

#include "hardware/Hardware.h"

#include "hardware/HardwareParts.h"
#include "hardware/KvNetFrame.h"
#include "hardware/registers/UnitAddresses.h"
#include "host/HostApplication.h"
#include "platform/DebugFile.h"

#include <algorithm>
#include <array>

using namespace kalvio;

namespace {

// Steps of the converter that makes the jitter.
constexpr std::int16_t kTdacHalfUi = 260;
constexpr std::int16_t kTdacJitterStart = 0;
constexpr std::int16_t kTdacJitterEnd = 0;

} // namespace

CHardware::CHardware(DeviceDriver& driver) : m_parts(std::make_unique<Parts>(driver)) {}

CHardware::~CHardware() {
    TerminateHardware();
}

int CHardware::InitialiseHardware(WindowHandle window) {
    CDebugFile::Write("CHardware::InitialiseHardware\n");
    if (m_parts->transport.IsOpen()) {
        return 0;
    }
    m_parts->messageWindow = window;
    return m_parts->bringUp.Run(window) ? 1 : 0;
}

// --- Bring-up, demo mode, shutdown ---

void CHardware::TerminateHardware() {
    m_parts->life.Terminate();
}

int CHardware::IsHardwarePresent() const {
    return m_parts->commands.IsActive() ? 1 : 0;
}

WindowHandle CHardware::GetMessageWnd() const {
    return m_parts->messageWindow;
}

int CHardware::IsDeviceSuspended() const {
    return m_parts->commands.IsSuspended() ? 1 : 0;
}

void CHardware::SuspendDevice() {
    m_parts->life.Suspend();
}

void CHardware::UnsuspendDevice() {
    m_parts->life.Resume();
}

void CHardware::GoIntoDemoMode() {
    m_parts->life.EnterDemoMode();
}

int CHardware::CheckFirmwareVersion() {
    return m_parts->bringUp.IsFirmwareRight() ? 1 : 0;
}

int CHardware::ResetEndpoints() {
    return m_parts->transport.ResetEndpoints();
}

int CHardware::GetLinkErrorCount() const {
    return m_parts->transport.LinkErrors();
}

// --- Commands ---

std::int16_t CHardware::Initialise(std::uint16_t parameter, int force) {
    return m_parts->commands.Initialise(parameter, force);
}

std::int16_t CHardware::Terminate(std::uint16_t parameter, int force) {
    return m_parts->commands.Terminate(parameter, force);
}

std::int16_t CHardware::MicroGetMem(std::uint8_t space, std::uint16_t address, std::uint8_t& data) {
    return m_parts->commands.MicroGetMem(space, address, data);
}

std::int16_t CHardware::MicroGetBit(std::uint8_t space, std::uint32_t bitAddress, int& value) {
    return m_parts->commands.MicroGetBit(space, bitAddress, value);
}

std::int16_t CHardware::DSPGetMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                    std::uint32_t& data) {
    return m_parts->commands.DSPGetMem24(dsp, space, address, data);
}

std::int16_t CHardware::DSPGetBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t mask, int& value) {
    return m_parts->commands.DSPGetBit(dsp, space, address, mask, value);
}

std::int16_t CHardware::MicroPutMem(std::uint8_t space, std::uint16_t address, std::uint8_t data, int check) {
    return m_parts->commands.MicroPutMem(space, address, data, check);
}

std::int16_t CHardware::MicroPutBit(std::uint8_t space, std::uint32_t bitAddress, int value) {
    return m_parts->commands.MicroPutBit(space, bitAddress, value);
}

std::int16_t CHardware::DSPPutMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                    std::uint32_t data) {
    return m_parts->commands.DSPPutMem24(dsp, space, address, data);
}

std::int16_t CHardware::DSPPutBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t mask, int state) {
    return m_parts->commands.DSPPutBit(dsp, space, address, mask, state);
}

std::int16_t CHardware::MicroGetMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                         std::uint8_t* buffer, int evenIfSuspended) {
    return m_parts->commands.MicroGetMemBlock(space, address, length, buffer, evenIfSuspended);
}

std::int16_t CHardware::DSPGetMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                         std::uint32_t length, std::uint8_t* buffer) {
    return m_parts->commands.DSPGetMemBlock24(dsp, space, address, length, buffer);
}

std::int16_t CHardware::MicroPutMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                         const std::uint8_t* buffer, int check) {
    return m_parts->commands.MicroPutMemBlock(space, address, length, buffer, check);
}

std::int16_t CHardware::DSPPutMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                         std::uint32_t length, const std::uint8_t* buffer) {
    return m_parts->commands.DSPPutMemBlock24(dsp, space, address, length, buffer);
}

std::int16_t CHardware::MicroFillMemBlock(std::uint8_t space, std::uint16_t address, std::uint16_t length,
                                          std::uint8_t value) {
    return m_parts->commands.MicroFillMemBlock(space, address, length, value);
}

std::int16_t CHardware::DSPFillMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                          std::uint32_t length, std::uint32_t value) {
    return m_parts->commands.DSPFillMemBlock24(dsp, space, address, length, value);
}

std::int16_t CHardware::MicroWaitBit(std::uint8_t space, std::uint32_t bitAddress, std::uint8_t state,
                                     std::uint16_t timeout, int& value) {
    return m_parts->commands.MicroWaitBit(space, bitAddress, state, timeout, value);
}

std::int16_t CHardware::DSPWaitBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t mask, std::uint8_t state, std::uint16_t timeout,
                                   int& value) {
    return m_parts->commands.DSPWaitBit(dsp, space, address, mask, state, timeout, value);
}

std::int16_t CHardware::MicroLoad(std::uint8_t which, const CString& path) {
    return m_parts->commands.MicroLoad(which, path);
}

std::int16_t CHardware::FPGALoad(const CString& path) {
    return m_parts->commands.FPGALoad(path);
}

std::int16_t CHardware::DSPLoad(std::uint8_t dsp, const CString& path, int flag) {
    return m_parts->commands.DSPLoad(dsp, path, flag);
}

std::int16_t CHardware::DoCommand(std::uint8_t id, std::uint32_t outLength, const std::uint8_t* outData,
                                  std::uint32_t inLength, std::uint8_t* inData) {
    return m_parts->commands.DoCommand(id, outLength, outData, inLength, inData);
}

std::int16_t CHardware::DSPSendCommand(std::uint8_t dsp, std::uint8_t command) {
    return m_parts->commands.DSPSendCommand(dsp, command);
}

std::int16_t CHardware::MicroPutBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                                     std::uint8_t onBits) {
    return m_parts->commands.MicroPutBits(space, address, offBits, onBits);
}

std::int16_t CHardware::InitMemAddress(std::uint16_t address) {
    return m_parts->commands.InitMemAddress(address);
}

// --- Registers ---

std::int16_t CHardware::MicroWriteCtrlRegister(std::uint16_t reg, std::uint8_t value) {
    return m_parts->mainBoard.WriteControl(reg, value);
}

std::int16_t CHardware::MicroReadCtrlRegister(std::uint16_t reg, std::uint8_t& value) {
    return m_parts->mainBoard.ReadControl(reg, value);
}

std::int16_t CHardware::MicroWriteCtrlRegisterBits(std::uint16_t reg, std::uint8_t clearMask,
                                                   std::uint8_t setBits) {
    return m_parts->mainBoard.WriteControlBits(reg, clearMask, setBits);
}

std::int16_t CHardware::MicroReadStatusRegister(std::uint16_t address, std::uint8_t& value) {
    return m_parts->mainBoard.ReadStatus(address, value);
}

std::int16_t CHardware::AnalogueGetMem(std::uint8_t reg, std::uint8_t& value) {
    return m_parts->analogue.Get(reg, value);
}

std::int16_t CHardware::AnaloguePutMem(std::uint8_t reg, std::uint8_t value) {
    return m_parts->analogue.Put(reg, value);
}

std::int16_t CHardware::AnaloguePutBits(std::uint8_t reg, std::uint8_t clearMask, std::uint8_t setBits) {
    return m_parts->analogue.PutBits(reg, clearMask, setBits);
}

std::int16_t CHardware::DSPGetControlWord(std::uint8_t dsp, std::uint32_t& word) {
    word = m_parts->controlWords.Get(dsp);
    return 0;
}

std::int16_t CHardware::DSPPutControlWord(std::uint8_t dsp, std::uint32_t word) {
    return m_parts->controlWords.Put(dsp, word);
}

std::int16_t CHardware::DSPPutControlBits(std::uint8_t dsp, std::uint32_t clearMask, std::uint32_t setBits) {
    return m_parts->controlWords.PutBits(dsp, clearMask, setBits);
}

std::int16_t CHardware::SetMainBoardRelay(std::uint8_t relay, std::uint8_t on) {
    return m_parts->mainBoard.SetRelay(relay, on);
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int CHardware::LockHWAccess() {
    m_parts->commands.HardwareAccess().lock();
    return 1;
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int CHardware::UnlockHWAccess() {
    m_parts->commands.HardwareAccess().unlock();
    return 1;
}

// --- Peripheral bus ---

std::uint16_t CHardware::SendKvNetCommand(const std::uint8_t* frame, std::uint8_t frameLength,
                                          std::uint8_t* response, std::uint8_t responseLength,
                                          std::uint16_t timeout) {
    return m_parts->peripherals.Send({frame, frameLength}, {response, responseLength}, timeout);
}

std::int16_t CHardware::SendKvNetData(std::uint8_t address, std::uint8_t command, std::uint8_t length,
                                      const std::uint8_t* data, std::uint8_t responseLength,
                                      std::uint8_t* response) {
    if (length > kKvNetLongestData || responseLength > kKvNetLongestData) {
        return static_cast<std::int16_t>(kPeripheralTooLong);
    }
    const CHostApplication& host = GetHostApplication();
    std::fill_n(response, responseLength, std::uint8_t{0});
    if (host.hardware == nullptr) {
        return static_cast<std::int16_t>(kPeripheralFailed);
    }
    std::array<std::uint8_t, kKvNetLongestFrame> frame{};
    std::array<std::uint8_t, kKvNetLongestFrame> answer{};
    const bool useResponses =
        host.kvNet != nullptr ? host.kvNet->UseResponses() != 0 : host.kvNetUseResponses.load();
    const std::size_t frameLength =
        BuildKvNetFrame(frame.data(), address, command, data, length, useResponses);
    const std::uint16_t status =
        host.hardware->SendKvNetCommand(frame.data(), static_cast<std::uint8_t>(frameLength), answer.data(),
                                        static_cast<std::uint8_t>(responseLength + kKvNetFramingBytes), 0);
    if (status == 0) {
        std::copy_n(&answer[kKvNetDataAt], responseLength, response);
    }
    return static_cast<std::int16_t>(status);
}

// --- Results and samples ---

EResIndex CHardware::GetResultIndex(int resultID) {
    return ResultArrivals::IndexOf(resultID);
}

int CHardware::GetIndexForFFTDetectorID(int detectorID) const {
    return ResultArrivals::SlotOf(detectorID);
}

void CHardware::SetResultReady(int resultID, EResIndex index, int noNotify) {
    m_parts->results.SetReady(resultID, index, noNotify == 0);
}

void CHardware::SetFFTResultReady(int resultID, int detectorID, int notify) {
    m_parts->results.SetFftReady(resultID, detectorID, notify != 0);
}

int CHardware::IsResultReady(int resultID, int detectorID) {
    return m_parts->results.TakeReady(resultID, detectorID);
}

int CHardware::InitialiseResultReadyFlags() {
    m_parts->results.Clear();
    return 1;
}

void CHardware::TerminateResultReadyFlags() {}

void CHardware::EnablePreprocessor(bool on) {
    m_parts->results.EnableNotifications(on);
}

bool CHardware::IsPreprocessorEnabled() const {
    return m_parts->results.AreNotificationsEnabled();
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int CHardware::LockResults() const {
    m_parts->results.lock.lock();
    return 1;
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS int CHardware::UnlockResults() const {
    m_parts->results.lock.unlock();
    return 1;
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS void CHardware::LockSampleBuffer() {
    m_parts->samples.lock.lock();
}

KALVIO_NO_THREAD_SAFETY_ANALYSIS void CHardware::UnlockSampleBuffer() {
    m_parts->samples.lock.unlock();
}

CEvent& CHardware::GetResultEvent() {
    return m_parts->results.event;
}

std::uint32_t CHardware::GetBufferSize() const {
    return m_parts->samples.Size();
}

int CHardware::SetBufferSize(std::uint32_t samples) {
    return m_parts->samples.SetSize(samples);
}

std::uint8_t* CHardware::GetSampleBuffer(ChannelNumber channel) {
    return m_parts->samples.Samples(channel);
}

std::uint8_t* CHardware::GetDemoSampleBuffer(ChannelNumber channel) {
    return m_parts->samples.DemoSamples(channel);
}

std::uint8_t* CHardware::GetCTABuffer(ChannelNumber channel) {
    return m_parts->samples.CtaSamples(channel);
}

std::uint8_t CHardware::GetDSPForChannel(ChannelNumber channel) {
    return static_cast<std::uint8_t>(channel);
}

// --- Sample rate and unit state ---

std::int16_t CHardware::SetAnalogueSampleRate(SampleRate rate, int resetConverters, int force) {
    return m_parts->rate.Set(rate, resetConverters != 0, force != 0);
}

SampleRate CHardware::GetAnalogueSampleRate() const {
    return m_parts->rate.Get();
}

double CHardware::GetAnalogueSamplingFreq() const {
    return m_parts->rate.Hertz();
}

double CHardware::GetDSPClockCycleTime() const {
    return m_parts->clock.CycleNanoseconds();
}

int CHardware::IsHF2FlagReady(std::uint8_t dsp) {
    return m_parts->hf2.IsReady(dsp);
}

std::int16_t CHardware::ResetHF2Flag(std::uint8_t dsp) {
    return m_parts->hf2.Reset(dsp);
}

void CHardware::SetHF2FlagIgnoreCount(std::uint8_t dsp, std::int16_t count) {
    m_parts->hf2.SetIgnoreCount(dsp, count);
}

std::int16_t CHardware::ReadPeakDetectorValues(std::uint8_t* peakA, std::uint8_t* peakB) {
    m_parts->readings.ReadPeaks(peakA, peakB);
    return 0;
}

std::int16_t CHardware::GetTemperature(std::uint8_t sensor, double& degrees, int evenIfSuspended) {
    return m_parts->readings.ReadTemperature(sensor, degrees, evenIfSuspended != 0);
}

double CHardware::GetMainBoardTemperature() {
    return m_parts->readings.Temperature(address::kMainBoardSensor);
}

double CHardware::GetAnalogueBoardTemperature() {
    return m_parts->readings.Temperature(address::kAnalogueBoardSensor);
}

int CHardware::Is150RImpedance() const {
    return m_parts->links.Is150R() ? 1 : 0;
}

int CHardware::IsAnalogueDCCoupled() const {
    return m_parts->links.IsDcCoupled() ? 1 : 0;
}

int CHardware::IsAnalogueHardware192k() const {
    return m_parts->links.Is192k() ? 1 : 0;
}

int CHardware::AreDigitalChannelsReversed() const {
    return 0;
}

double CHardware::GetSampleRate() const {
    return m_parts->input.RateInForce();
}

std::uint32_t CHardware::GetSampleBufferLength(int showMessage) {
    const AnalyserInput::BufferLength length = m_parts->input.ComputeBufferLength();
    if (length.windowReset) {
        AnalyserInput::TellWindowReset(showMessage != 0);
    }
    return length.samples;
}

void CHardware::GetHWAnalyserChannels(int& channelA, int& channelB) const {
    AnalyserInput::ConvertersInUse(channelA, channelB);
}

// --- Generator, auto-range, coefficients ---

std::int16_t CHardware::SendGeneratorDetails(const DSPGeneratorDetails* dsp,
                                             const MicroGeneratorDetails* micro) {
    return m_parts->generator.SendDetails(*dsp, *micro);
}

std::int16_t CHardware::WriteAutoRangeDetails(WriteAutoRangeDetailsOut* record) {
    return m_parts->autoRange.Write(*record);
}

std::int16_t CHardware::WriteDivisorsToHardware(std::uint16_t d1, std::uint16_t d2, std::uint16_t d3,
                                                std::uint16_t d4, std::uint16_t d5) {
    return m_parts->generator.WriteDivisors({d1, d2, d3, d4, d5});
}

std::int16_t CHardware::SetVideoSyncDetails(int mode, std::uint8_t standardA, std::uint8_t standardB,
                                            std::uint16_t s1, std::uint16_t s2, std::uint16_t s3,
                                            std::uint16_t s4, std::uint16_t s5, std::uint16_t s6,
                                            std::uint16_t s7, std::uint16_t s8) {
    return m_parts->generator.SetVideoSync(
        {static_cast<std::uint8_t>(mode), standardA, standardB, {s5, s6, s7, s8, s1, s2, s3, s4}});
}

std::int16_t CHardware::WriteCoefficientsOnSampleRateChange() {
    return m_parts->rate.WriteCoefficients();
}

int CHardware::ArmTrigger(CFFTParametersSettings* settings) {
    m_parts->trigger.Arm(*settings);
    return 0;
}

int CHardware::GetJTAPhaseBaseCalibOffset(int channel) const {
    return m_parts->boards.PhaseBaseOffset(channel);
}

int CHardware::GetJTAXPHCalibValue(int channel) const {
    return m_parts->boards.IsPhaseEven(channel);
}

void CHardware::ResetJitterAveraging(int restart) {
    ResetJitterAverages(restart != 0);
}

std::int16_t CHardware::GetTDACJitterStart() {
    return kTdacJitterStart;
}

std::int16_t CHardware::GetTDACJitterEnd() {
    return kTdacJitterEnd;
}

std::int16_t CHardware::GetTDACHalfUI() {
    return kTdacHalfUi;
}
