#pragma once

// The hardware object: everything that the library knows of the unit goes through the one CHardware.

#include "hardware/CalibrationTable.h"
#include "hardware/CommandSet.h"
#include "hardware/DSPMap.h"
#include "hardware/EResIndex.h"
#include "hardware/GeneratorDetails.h"
#include "hardware/MemoryAccess.h"
#include "hardware/PreProcessorNotifications.h"
#include "hardware/SampleRate.h"
#include "hardware/UsbTransport.h"
#include "host/SettingsData.h"
#include "host/Trees.h"
#include "platform/Automation.h"
#include "platform/Sync.h"
#include "platform/Window.h"

#include <memory>

class CFFTParametersSettings;

// Every status is 0 for success, else a transport code, a code of the unit, or a local code (CommandSet.h);
// before bring-up has ended every reported failure reads 1.
class KALVIO_API CHardware : public CCmdTarget {
public:
    explicit CHardware(kalvio::DeviceDriver& driver);
    ~CHardware() override;
    CHardware(const CHardware&) = delete;
    CHardware& operator=(const CHardware&) = delete;

    // --- Bring-up, demo mode, shutdown: user-interface thread, but for the queries ---
    // Opens the unit (or asks the user), checks its firmware, starts and loads it and writes its initial
    // settings. 1: running, or in demo mode; 0: failed, told to the user, or left by the user, or already
    // open. What was created stays for TerminateHardware. When an initial setting fails, `window` is sent
    // message 0x8071 with wParam 11701 and a char[] text as lParam, which the receiver frees with delete[];
    // if the window is gone, the library frees it.
    int InitialiseHardware(WindowHandle window);
    // Stops the unit, closes it and frees what bring-up made. Does nothing twice; bring-up may follow.
    void TerminateHardware();
    // A device is open and not suspended. Any thread.
    [[nodiscard]] int IsHardwarePresent() const;
    [[nodiscard]] WindowHandle GetMessageWnd() const;
    [[nodiscard]] int IsDeviceSuspended() const;
    // Parks the unit (nothing without one): commands then answer 0 and send nothing, samples come from the
    // demo buffers. Posts message 0x8033 to the application's main window.
    void SuspendDevice();
    void UnsuspendDevice();
    void GoIntoDemoMode();
    // 1 when the unit's firmware is the one that goes with this software, or no unit is open; else 0.
    int CheckFirmwareVersion();
    // 1, or 0 at the first endpoint that fails. Any thread.
    int ResetEndpoints();
    [[nodiscard]] int GetLinkErrorCount() const;

    // --- Commands: any thread; see CommandSet.h for the frames ---
    std::int16_t Initialise(std::uint16_t parameter, int force);
    std::int16_t Terminate(std::uint16_t parameter, int force);
    std::int16_t MicroGetMem(std::uint8_t space, std::uint16_t address, std::uint8_t& data);
    std::int16_t MicroGetBit(std::uint8_t space, std::uint32_t bitAddress, int& value);
    std::int16_t DSPGetMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                             std::uint32_t& data);
    std::int16_t DSPGetBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                           int& value);
    std::int16_t MicroPutMem(std::uint8_t space, std::uint16_t address, std::uint8_t data, int check);
    std::int16_t MicroPutBit(std::uint8_t space, std::uint32_t bitAddress, int value);
    std::int16_t DSPPutMem24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t data);
    std::int16_t DSPPutBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                           int state);
    std::int16_t MicroGetMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                  std::uint8_t* buffer, int evenIfSuspended);
    std::int16_t DSPGetMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t length, std::uint8_t* buffer);
    std::int16_t MicroPutMemBlock(std::uint8_t space, std::uint16_t address, std::uint32_t length,
                                  const std::uint8_t* buffer, int check);
    std::int16_t DSPPutMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                  std::uint32_t length, const std::uint8_t* buffer);
    std::int16_t MicroFillMemBlock(std::uint8_t space, std::uint16_t address, std::uint16_t length,
                                   std::uint8_t value);
    std::int16_t DSPFillMemBlock24(std::uint8_t dsp, std::uint8_t space, std::uint32_t address,
                                   std::uint32_t length, std::uint32_t value);
    std::int16_t MicroWaitBit(std::uint8_t space, std::uint32_t bitAddress, std::uint8_t state,
                              std::uint16_t timeout, int& value);
    std::int16_t DSPWaitBit(std::uint8_t dsp, std::uint8_t space, std::uint32_t address, std::uint32_t mask,
                            std::uint8_t state, std::uint16_t timeout, int& value);
    std::int16_t MicroLoad(std::uint8_t which, const CString& path);
    std::int16_t FPGALoad(const CString& path);
    std::int16_t DSPLoad(std::uint8_t dsp, const CString& path, int flag);
    std::int16_t DoCommand(std::uint8_t id, std::uint32_t outLength, const std::uint8_t* outData,
                           std::uint32_t inLength, std::uint8_t* inData);
    std::int16_t DSPSendCommand(std::uint8_t dsp, std::uint8_t command);
    std::int16_t MicroPutBits(std::uint8_t space, std::uint16_t address, std::uint8_t offBits,
                              std::uint8_t onBits);
    std::int16_t InitMemAddress(std::uint16_t address);

    // --- Registers: any thread; sequences of several calls inside LockHWAccess ---
    // Control registers CTRL0 0x8000, CTRL1 0x8080, CTRL2 0x8800, CTRL3 0x8880; reads and bit writes go by
    // the unit's own shadow of them: 272 for another register on read, 274 on a bit write.
    std::int16_t MicroWriteCtrlRegister(std::uint16_t reg, std::uint8_t value);
    std::int16_t MicroReadCtrlRegister(std::uint16_t reg, std::uint8_t& value);
    std::int16_t MicroWriteCtrlRegisterBits(std::uint16_t reg, std::uint8_t clearMask, std::uint8_t setBits);
    std::int16_t MicroReadStatusRegister(std::uint16_t address, std::uint8_t& value);
    std::int16_t AnalogueGetMem(std::uint8_t reg, std::uint8_t& value);
    // Analogue registers 'p' to 'w', with the relay guard: a write may wait up to 120 ms (RelayGuard.h).
    std::int16_t AnaloguePutMem(std::uint8_t reg, std::uint8_t value);
    std::int16_t AnaloguePutBits(std::uint8_t reg, std::uint8_t clearMask, std::uint8_t setBits);
    // DSP control words: what was written last, without asking the unit; always 0.
    std::int16_t DSPGetControlWord(std::uint8_t dsp, std::uint32_t& word);
    std::int16_t DSPPutControlWord(std::uint8_t dsp, std::uint32_t word);
    std::int16_t DSPPutControlBits(std::uint8_t dsp, std::uint32_t clearMask, std::uint32_t setBits);
    std::int16_t SetMainBoardRelay(std::uint8_t relay, std::uint8_t on);
    // The hardware-access lock, recursive; both answer 1. Failures of commands inside it are shown to the
    // user once it is released.
    int LockHWAccess();
    int UnlockHWAccess();

    // --- Peripheral bus: any thread; takes the hardware-access lock itself ---
    // One frame out, one back; sent once more when the unit gives a status. 0: answered; the unit's status
    // word (the response is filled all the same); 0xFFFE: no unit (the response is zeroed) or the exchange
    // with it failed; 0xFFFF: a length above 40. The time-out is the unit's, 0 its default.
    std::uint16_t SendKvNetCommand(const std::uint8_t* frame, std::uint8_t frameLength,
                                   std::uint8_t* response, std::uint8_t responseLength,
                                   std::uint16_t timeout);

    // Builds a peripheral frame, sends it on the application's hardware object and copies the data of the
    // answer, zeroes after a failure (KvNetFrame.h). 0, -1 for more than 34 bytes of data or response,
    // else what SendKvNetCommand gave.
    static std::int16_t SendKvNetData(std::uint8_t address, std::uint8_t command, std::uint8_t length,
                                      const std::uint8_t* data, std::uint8_t responseLength,
                                      std::uint8_t* response);

    // --- Calibration: user-interface thread ---
    // Each pair does on the main board's or the analogue board's table what the operation of that name does
    // on a table (CalibrationTable.h). Getters answer 0, 0.0 or an empty text while the unit is not present
    // (the dates then stay as they are); the others answer 0 before bring-up made the tables.
    int SetMainBoardCalibrationByte(int offset, std::uint8_t value);
    int SetAnalogueCalibrationByte(int offset, std::uint8_t value);
    int SetMainBoardCalibrationValue(int offset, double value);
    int SetAnalogueCalibrationValue(int offset, double value);
    int SetMainBoardCalibrationString(int offset, int length, const CString& text);
    int SetAnalogueCalibrationString(int offset, int length, const CString& text);
    [[nodiscard]] std::uint8_t GetMainBoardCalibrationByte(int offset) const;
    [[nodiscard]] std::uint8_t GetAnalogueCalibrationByte(int offset) const;
    [[nodiscard]] double GetMainBoardCalibrationValue(int offset) const;
    [[nodiscard]] double GetAnalogueCalibrationValue(int offset) const;
    [[nodiscard]] double GetMainBoardCalibrationValueForID(int id) const;
    [[nodiscard]] double GetAnalogueCalibrationValueForID(int id) const;
    [[nodiscard]] CString GetMainBoardCalibrationString(int offset, int length) const;
    [[nodiscard]] CString GetAnalogueCalibrationString(int offset, int length) const;
    int WriteMainBoardTable();
    int WriteAnalogueTable();
    int WriteMainBoardMasterTable();
    int WriteAnalogueMasterTable();
    int GetMainBoardCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                    VARIANT* minute, VARIANT* second) const;
    int GetAnalogueCalibrationDate(VARIANT* year, VARIANT* month, VARIANT* day, VARIANT* hour,
                                   VARIANT* minute, VARIANT* second) const;
    [[nodiscard]] std::uint16_t GetMainBoardCalibrationVersion() const;
    [[nodiscard]] std::uint16_t GetAnalogueCalibrationVersion() const;
    int SetMainBoardCalibrationVersion(std::uint16_t version);
    int SetAnalogueCalibrationVersion(std::uint16_t version);
    [[nodiscard]] std::uint16_t GetMainBoardUnitSerialNum() const;
    [[nodiscard]] std::uint16_t GetAnalogueUnitSerialNum() const;
    int SetMainBoardUnitSerialNum(std::uint16_t serial);
    int SetAnalogueUnitSerialNum(std::uint16_t serial);
    [[nodiscard]] CString GetMainBoardCalibrationOrganisation() const;
    [[nodiscard]] CString GetAnalogueCalibrationOrganisation() const;
    [[nodiscard]] CString GetMainBoardCalibrationOperator() const;
    [[nodiscard]] CString GetAnalogueCalibrationOperator() const;
    int SetMainBoardCalibrationOrganisation(const CString& text);
    int SetAnalogueCalibrationOrganisation(const CString& text);
    int SetMainBoardCalibrationOperator(const CString& text);
    int SetAnalogueCalibrationOperator(const CString& text);
    [[nodiscard]] int UsingMainBoardCalibration() const;
    [[nodiscard]] int UsingAnalogueCalibration() const;
    // As stamped when the table was last written; a main board's low nibble of 1 reads as 0x11.
    [[nodiscard]] std::uint8_t GetMainBoardHardwareVersion() const;
    [[nodiscard]] std::uint8_t GetAnalogueHardwareVersion() const;
    [[nodiscard]] std::uint8_t GetMainBoardHardwareOptions() const;
    [[nodiscard]] std::uint8_t GetAnalogueHardwareOptions() const;
    [[nodiscard]] std::uint16_t GetMainBoardSoftwareVersion() const;
    [[nodiscard]] std::uint16_t GetAnalogueSoftwareVersion() const;
    [[nodiscard]] CString GetMainBoardSoftwareVersionLetter() const;
    [[nodiscard]] CString GetAnalogueSoftwareVersionLetter() const;
    // Copies master to mirror on the main board and then on the analogue board, and shows how it went. 1, or
    // 0 as soon as one board failed.
    int ResetCalibration();

    // --- Results and samples ---
    // Any thread, no lock.
    [[nodiscard]] static EResIndex GetResultIndex(int resultID);
    [[nodiscard]] int GetIndexForFFTDetectorID(int detectorID) const; // 0-39; 40 unknown; -1 no list
    // A new result stands in the host's fields: sets its flag and tells the pre-processor, when that is
    // enabled and noNotify is 0. An index outside the enumeration does nothing.
    void SetResultReady(int resultID, EResIndex index, int noNotify);
    // The same for an FFT detector on channel B (3352) or A (any other id); tells when notify is not 0. An
    // unknown detector has no flag.
    void SetFFTResultReady(int resultID, int detectorID, int notify);
    // 1 once for every arrival: reading clears. The detector matters for 3351 and 3352 only.
    int IsResultReady(int resultID, int detectorID);
    int InitialiseResultReadyFlags();
    void TerminateResultReadyFlags();
    void EnablePreprocessor(bool on);
    [[nodiscard]] bool IsPreprocessorEnabled() const;
    // The results lock: around copying a result and reading-and-clearing its flag. A leaf: nothing is
    // locked or called while it is held. Any thread.
    int LockResults() const;
    int UnlockResults() const;
    void LockSampleBuffer();
    void UnlockSampleBuffer();
    CEvent& GetResultEvent();
    // Sizes count samples of 3 bytes. While the unit is present they concern the sample and CTA buffers,
    // otherwise the demo buffers. SetBufferSize replaces the buffers by zeroed ones, unless they have that
    // size: 1, or 0 when memory ran out (the size stays the new one, buffers may be missing). The buffers
    // are null when there are none, and for a channel other than A and B. Any thread; a caller that goes on
    // using a buffer holds the sample-buffer lock meanwhile.
    [[nodiscard]] std::uint32_t GetBufferSize() const;
    int SetBufferSize(std::uint32_t samples);
    std::uint8_t* GetSampleBuffer(ChannelNumber channel);
    std::uint8_t* GetDemoSampleBuffer(ChannelNumber channel);
    std::uint8_t* GetCTABuffer(ChannelNumber channel);
    [[nodiscard]] static std::uint8_t GetDSPForChannel(ChannelNumber channel);

    // --- Sample rate and unit state ---
    // User-interface thread unless said otherwise.
    // Switches registers, converters and coefficients to a rate and updates the views (hint 4300). Nothing
    // for the rate in force unless forced. With resetConverters it waits up to about 1.5 s. The status of
    // the first register write that failed (the rate counts as set), else 0.
    std::int16_t SetAnalogueSampleRate(SampleRate rate, int resetConverters, int force);
    [[nodiscard]] SampleRate GetAnalogueSampleRate() const;
    [[nodiscard]] double GetAnalogueSamplingFreq() const; // hertz; any thread
    [[nodiscard]] double GetDSPClockCycleTime() const;    // nanoseconds; any thread
    // 1 when the DSP has new results, unless arrivals are to be ignored, of which each look that reached the
    // unit takes one. Any thread, as the next two.
    int IsHF2FlagReady(std::uint8_t dsp);
    std::int16_t ResetHF2Flag(std::uint8_t dsp);
    void SetHF2FlagIgnoreCount(std::uint8_t dsp, std::int16_t count);
    // 8 bytes each as the unit sends them, or null; zeroes when the exchange failed. Always 0. Any thread.
    std::int16_t ReadPeakDetectorValues(std::uint8_t* peakA, std::uint8_t* peakB);
    // Degrees in steps of 0.5; untouched when the read failed, whose status is the answer. Any thread.
    std::int16_t GetTemperature(std::uint8_t sensor, double& degrees, int evenIfSuspended);
    double GetMainBoardTemperature(); // degrees, from a suspended unit too; 0.0 when it cannot be read
    double GetAnalogueBoardTemperature();
    [[nodiscard]] int Is150RImpedance() const;
    [[nodiscard]] int IsAnalogueDCCoupled() const;
    [[nodiscard]] int IsAnalogueHardware192k() const;
    [[nodiscard]] int AreDigitalChannelsReversed() const;
    // Hertz: the rate of the analyser's input; for a window that corrects the frequency the lower of input
    // and output rate, -1.0 while either is unset. An analogue input has the analogue sampling frequency.
    [[nodiscard]] double GetSampleRate() const;
    // Samples that an FFT needs: its points, for such a window times the smallest power of two not below
    // the ratio of the higher rate to the lower. Beyond 262144 samples the window is set back to
    // rectangular, with a message when asked for.
    std::uint32_t GetSampleBufferLength(int showMessage);
    // Each 1 when that converter is in use: by the channels selected, exchanged while the host's channels
    // are reversed; A alone in the jitter domain.
    void GetHWAnalyserChannels(int& channelA, int& channelB) const;

    // --- Generator, auto-range, coefficients: user-interface or pre-processor thread ---
    // Both wait when a relay would be toggled back too soon. The records are not null.
    std::int16_t SendGeneratorDetails(const DSPGeneratorDetails* dsp, const MicroGeneratorDetails* micro);
    // Converts the two 32-bit values of the record to big-endian in place.
    std::int16_t WriteAutoRangeDetails(WriteAutoRangeDetailsOut* record);
    std::int16_t WriteDivisorsToHardware(std::uint16_t d1, std::uint16_t d2, std::uint16_t d3,
                                         std::uint16_t d4, std::uint16_t d5);
    std::int16_t SetVideoSyncDetails(int mode, std::uint8_t standardA, std::uint8_t standardB,
                                     std::uint16_t s1, std::uint16_t s2, std::uint16_t s3, std::uint16_t s4,
                                     std::uint16_t s5, std::uint16_t s6, std::uint16_t s7, std::uint16_t s8);
    // To both DSPs, for the analogue rate and, when one is set, the host's digital rate. Nothing for a
    // digital rate without coefficients.
    std::int16_t WriteCoefficientsOnSampleRateChange();
    // Sets both DSPs up from the settings, arms them and clears the pending flag, all under the settings'
    // own lock; messages come up when it is released. Always 0. User-interface thread, as the rest.
    int ArmTrigger(CFFTParametersSettings* settings);
    [[nodiscard]] int
    GetJTAPhaseBaseCalibOffset(int channel) const;            // half of the main board's entry 25 or 24
    [[nodiscard]] int GetJTAXPHCalibValue(int channel) const; // 1 when that entry is even, else 0
    void ResetJitterAveraging(int restart);
    std::int16_t GetTDACJitterStart();
    std::int16_t GetTDACJitterEnd();
    std::int16_t GetTDACHalfUI();

    // --- Automation: user-interface thread ---
    [[nodiscard]] const kalvio::DispatchTable& GetDispatchMap() const override;
    void PopulateOLETreeCtrl(COLETreeCtrl* tree, HTREEITEM parent);
    // Spaces: 1 'X', 2 'S', 3 the I2C bus (writes are checked); of a DSP 1 'X', 2 'Y'. DSPs: 1 A, 2 B. Any
    // other number, and a failure, reads 0 or gives false.
    std::int16_t OLEMicroGetMem(std::int16_t space, std::int16_t address);
    bool OLEMicroPutMem(std::int16_t space, std::int16_t address, std::int16_t data);
    std::int32_t OLEDSPGetMem(std::int16_t dsp, std::int16_t space, std::int32_t address);
    bool OLEDSPPutMem(std::int16_t dsp, std::int16_t space, std::int32_t address, std::int32_t data);

private:
    struct Parts;
    std::unique_ptr<Parts> m_parts;
};
