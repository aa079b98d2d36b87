// What transcripts can ask for: the operations of the hardware object under their own names, and what a test
// does to the unit and the host around it.

#include "hardware/HardwareAccessDlg.h"
#include "hardware/LevelConversions.h"
#include "hardware/Transcript.h"
#include "platform/Registry.h"
#include "support/ScriptedDriver.h"

#include <cstring>
#include <fstream>
#include <numeric>
#include <tuple>

namespace kalvio::test {

namespace {

template<typename T>
std::string Show(const T& value) {
    if constexpr (std::is_same_v<T, double>) {
        return Format("%.10g", value);
    } else if constexpr (std::is_same_v<T, CString>) {
        return value;
    } else if constexpr (std::is_enum_v<T>) {
        return Show(static_cast<std::underlying_type_t<T>>(value));
    } else {
        const auto wide = static_cast<long long>(value);
        const auto bits = static_cast<unsigned long long>(wide) & (~0ULL >> (64 - 8 * sizeof(T)));
        return wide > -1000 && wide < 1000 ? std::to_string(wide) : Format("0x%llX", bits);
    }
}

// A parameter of an operation: read before the call, and shown after it when it is an out value.
template<typename T>
struct Slot {
    explicit Slot(RequestWords& words) {
        if constexpr (std::is_same_v<T, double>) {
            value = words.Real();
        } else {
            value = static_cast<T>(words.Number());
        }
    }
    T Pass() { return value; }
    [[nodiscard]] std::string Shown() const { return {}; }
    T value{};
};

template<typename T>
struct Slot<T&> {
    explicit Slot(RequestWords&) {}
    T& Pass() { return value; }
    [[nodiscard]] std::string Shown() const { return " " + Show(value); }
    T value = static_cast<T>(0x77);
};

template<>
struct Slot<const CString&> {
    explicit Slot(RequestWords& words) : value(words.Next()) {}
    const CString& Pass() { return value; }
    [[nodiscard]] std::string Shown() const { return {}; }
    CString value;
};

// Zeroes follow, as far as a length may say that there are bytes.
template<>
struct Slot<const std::uint8_t*> {
    static constexpr std::size_t kReadable = 64;
    explicit Slot(RequestWords& words) : bytes(words.Bytes()) {
        bytes.resize(std::max(bytes.size(), kReadable));
    }
    const std::uint8_t* Pass() { return bytes.data(); }
    [[nodiscard]] std::string Shown() const { return {}; }
    std::vector<std::uint8_t> bytes;
};

// "*COUNT" for a buffer, "null" for none.
template<>
struct Slot<std::uint8_t*> {
    explicit Slot(RequestWords& words) {
        const std::string word = words.Next();
        bytes.resize(word == "null" ? 0 : std::stoul(word.substr(1)), 0x77);
    }
    std::uint8_t* Pass() { return bytes.empty() ? nullptr : bytes.data(); }
    [[nodiscard]] std::string Shown() const { return bytes.empty() ? "" : " " + ToHex(bytes); }
    std::vector<std::uint8_t> bytes;
};

template<typename Result, typename... Parameters, typename Call>
std::string Carry(RequestWords& words, Call call) {
    std::tuple<Slot<Parameters>...> slots{Slot<Parameters>(words)...};
    return std::apply(
        [&call](auto&... slot) {
            if constexpr (std::is_void_v<Result>) {
                call(slot.Pass()...);
                const std::string shown = (std::string() + ... + slot.Shown());
                return shown.empty() ? shown : shown.substr(1);
            } else {
                const auto result = call(slot.Pass()...);
                return (Show(result) + ... + slot.Shown());
            }
        },
        slots);
}

template<typename Result, typename... Parameters>
Request Of(Result (CHardware::*operation)(Parameters...)) {
    return [operation](Stage& stage, RequestWords& words) {
        return Carry<Result, Parameters...>(words, [&](Parameters... arguments) {
            return (stage.rig->hardware.*operation)(static_cast<Parameters>(arguments)...);
        });
    };
}

template<typename Result, typename... Parameters>
Request Of(Result (CHardware::*operation)(Parameters...) const) {
    return [operation](Stage& stage, RequestWords& words) {
        return Carry<Result, Parameters...>(words, [&](Parameters... arguments) {
            return (stage.rig->hardware.*operation)(static_cast<Parameters>(arguments)...);
        });
    };
}

template<typename Result, typename... Parameters>
Request Of(Result (*function)(Parameters...)) {
    return [function](Stage&, RequestWords& words) { return Carry<Result, Parameters...>(words, function); };
}

// A request that answers nothing.
template<typename Work>
Request Do(Work work) {
    return [work](Stage& stage, RequestWords& words) {
        work(*stage.rig, words);
        return std::string();
    };
}

// A request that answers what it finds.
template<typename Look>
Request Tell(Look look) {
    return [look](Stage& stage, RequestWords&) { return Show(look(*stage.rig)); };
}

#define OPERATION(name)                                                                                      \
    { #name, Of(&CHardware::name) }

// Around the hardware object.

std::string MakeUnit(Stage& stage, RequestWords& words) {
    simulator::UnitOptions options;
    std::uint32_t tick = 1000;
    bool present = true;
    while (words.More()) {
        const std::string word = words.Next();
        const std::string name = word.substr(0, word.find('='));
        const auto value = std::strtoul(word.substr(word.find('=') + 1).c_str(), nullptr, 0);
        if (name == "links") {
            options.linkFit = static_cast<std::uint8_t>(value);
        } else if (name == "absent") {
            options.absentOpens = static_cast<std::uint32_t>(value);
        } else if (name == "release") {
            options.releaseNumber = static_cast<std::uint16_t>(value);
        } else if (name == "half-degrees") {
            options.mainTemperatureHalfDegrees = static_cast<std::int16_t>(value);
        } else if (name == "tick") {
            tick = static_cast<std::uint32_t>(value);
        } else {
            present = name != "out";
        }
    }
    stage.rig.reset();
    ++stage.rigs;
    stage.rig = std::make_unique<UnitRig>(options, tick);
    stage.rig->unit.SetPresent(present);
    return {};
}

std::vector<std::uint8_t> MemoryOf(Stage& stage, bool main) {
    return stage.rig->unit.ReadCalibration(main ? simulator::CalibrationMemory::MainBoard
                                                : simulator::CalibrationMemory::AnalogueBoard);
}

// BOARD AT COUNT: bytes of a calibration memory.
std::string ShowMemory(Stage& stage, RequestWords& words) {
    const auto memory = MemoryOf(stage, words.Next() == "main");
    const auto at = static_cast<std::size_t>(words.Number());
    return ToHex(std::span(memory).subspan(at, static_cast<std::size_t>(words.Number())));
}

// BOARD COPY AT BYTES: puts bytes into the image that begins at `copy`; its checksum is set right for an `at`
// that lies in the image, and left alone for a negative one.
std::string PutMemory(Stage& stage, RequestWords& words) {
    const bool main = words.Next() == "main";
    const auto copy = static_cast<std::size_t>(words.Number());
    const long long at = words.Number();
    const auto bytes = words.Bytes();
    auto memory = MemoryOf(stage, main);
    const auto image = std::span(memory).subspan(copy, 640);
    std::ranges::copy(bytes, image.begin() + std::abs(at));
    if (at >= 0) {
        const unsigned sum = std::accumulate(image.begin() + 2, image.end(), 0U) % 65535;
        image[0] = static_cast<std::uint8_t>(sum);
        image[1] = static_cast<std::uint8_t>(sum >> 8);
    }
    stage.rig->unit.WriteCalibration(main ? simulator::CalibrationMemory::MainBoard
                                          : simulator::CalibrationMemory::AnalogueBoard,
                                     copy, image);
    return {};
}

// ADDRESS DATA: a peripheral that answers every command with these data.
std::string AttachPeripheral(Stage& stage, RequestWords& words) {
    const auto address = static_cast<std::uint8_t>(words.Number());
    const auto data = words.Bytes();
    stage.rig->unit.AttachPeripheral(address, [address, data](std::span<const std::uint8_t> frame) {
        std::vector<std::uint8_t> answer{0x55, address, static_cast<std::uint8_t>(data.size()), frame[3]};
        answer.insert(answer.end(), data.begin(), data.end());
        const int sum = std::accumulate(answer.begin() + 1, answer.end(), 0);
        answer.push_back(static_cast<std::uint8_t>(0x55 - sum));
        answer.push_back(0xAA);
        return answer;
    });
    return {};
}

// A field of a host document. The field's own type takes the number.
std::string SetField(Stage& stage, RequestWords& words) {
    TestHost& host = stage.rig->host;
    const std::string name = words.Next();
    const double value = words.Real();
    const int whole = std::fabs(value) < 1e9 ? static_cast<int>(value) : 0;
    auto& analyser = host.analyser;
    auto& fft = host.fftParameters;
    // clang-format off
    const std::map<std::string, std::function<void()>> fields = {
        {"window", [&] { analyser.windowFunction = whole; }},
        {"input-type", [&] { analyser.inputType = whole; }},
        {"input-rate", [&] { analyser.inputSampleRate = value; }},
        {"output-rate", [&] { analyser.outputSampleRate = value; }},
        {"first-channel", [&] { analyser.firstChannel = whole; }},
        {"second-channel", [&] { analyser.secondChannel = whole; }},
        {"reversed", [&] { analyser.channelsReversed = whole; }},
        {"jitter", [&] { analyser.jitterDomain = whole; }},
        {"jitter-average", [&] { analyser.jitterAverage = value; }},
        {"jitter-count", [&] { analyser.jitterAverageCount = whole; }},
        {"jitter-state", [&] { analyser.jitterAveragingState = whole; }},
        {"line-up", [&] { analyser.lineUpVoltage = value; }},
        {"reference-a", [&] { analyser.referenceValue[0] = value; }},
        {"reference-b", [&] { analyser.referenceValue[1] = value; }},
        {"digital-rate", [&] { host.generator.digitalSampleRate = value; }},
        {"points", [&] { fft.fftLength = whole; }},
        {"position", [&] { fft.triggerPosition = whole; }},
        {"level-a", [&] { fft.triggerLevel[0] = value; }},
        {"level-b", [&] { fft.triggerLevel[1] = value; }},
        {"slope", [&] { fft.triggerSlope = whole; }},
        {"trigger", [&] { fft.triggerOn = whole; }},
        {"source", [&] { fft.triggerSource = whole; }},
        {"channel", [&] { fft.triggerChannel = whole; }},
        {"pending", [&] { fft.pending = whole; }},
        {"security", [&] { host.application.securityLevel = whole; }},
        {"show-errors", [&] { CRegistry::SetRegistryValue(RegistryKeyType::User, "Debug", "ShowUSBErrors", whole); }},
        {"converter-wait", [&] { CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware",
                                                             "ConverterResetWaitTime", whole); }},
    };
    // clang-format on
    fields.at(name)();
    return {};
}

// The peripheral network's switch: whether devices are asked to answer.
std::string InstallNetwork(Stage& stage, RequestWords& words) {
    struct Network final : PeripheralNetworkQueries {
        int uses = 1;
        [[nodiscard]] int UseResponses() const override { return uses; }
    };
    static Network network;
    network.uses = static_cast<int>(words.Number());
    stage.rig->host.application.kvNet = &network;
    return {};
}

// Masks and flags by their number: "4=0x40".
std::string SendGenerator(Stage& stage, RequestWords& words) {
    DSPGeneratorDetails dsp;
    MicroGeneratorDetails micro;
    while (words.More()) {
        const std::string word = words.Next();
        micro.m.at(std::stoul(word)) =
            static_cast<std::uint8_t>(std::stoul(word.substr(word.find('=') + 1), nullptr, 0));
    }
    return Show(stage.rig->hardware.SendGeneratorDetails(&dsp, &micro));
}

// VALUE VALUE BYTES (8) REGISTERS (4); shows the values as they lie in memory afterwards.
std::string SendAutoRange(Stage& stage, RequestWords& words) {
    WriteAutoRangeDetailsOut record;
    record.value0 = static_cast<std::uint32_t>(words.Number());
    record.value1 = static_cast<std::uint32_t>(words.Number());
    std::ranges::copy(words.Bytes(), record.passThrough.begin());
    std::ranges::copy(words.Bytes(), record.registers.begin());
    const std::int16_t status = stage.rig->hardware.WriteAutoRangeDetails(&record);
    std::array<std::uint8_t, 8> values{};
    std::memcpy(values.data(), &record.value0, 4);
    std::memcpy(values.data() + 4, &record.value1, 4);
    return Show(status) + " " + ToHex(values);
}

VARIANT Argument(const std::string& word, bool text) {
    if (text) {
        return VARIANT::String(word);
    }
    return word.find('.') == std::string::npos
               ? VARIANT::Long(static_cast<std::int32_t>(std::stoll(word, nullptr, 0)))
               : VARIANT::Double(std::stod(word));
}

// NAME ARGUMENTS: as a script line; texts are words of letters.
std::string CallScript(Stage& stage, RequestWords& words) {
    const std::string name = words.Next();
    std::array<VARIANT, 6> outs;
    std::vector<VARIANT> arguments;
    while (words.More()) {
        const std::string word = words.Next();
        arguments.push_back(word == "&" ? VARIANT::Reference(&outs.at(arguments.size()))
                                        : Argument(word, std::isalpha(word[0]) != 0));
    }
    const AutomationResult result = stage.rig->hardware.Invoke(name, arguments);
    std::string shown = result.Ok() ? result.value.ToJson() : result.text;
    for (const VARIANT& out : outs) {
        shown += out.Type() == AutomationType::Empty ? "" : " " + out.ToText();
    }
    return shown;
}

std::string Browse(Stage& stage, RequestWords&) {
    COLETreeCtrl tree;
    stage.rig->hardware.PopulateOLETreeCtrl(&tree, tree.GetRootItem());
    std::string text;
    for (HTREEITEM item = tree.GetChildItem(tree.GetRootItem()); item != nullptr;
         item = tree.GetNextSiblingItem(item)) {
        text += Format("\n  %d %d%d ", item->id, item->flags[0], item->flags[1]) + item->text;
    }
    return text;
}

// clang-format off
const std::map<std::string, Request>& AroundTheObject() {
    static const std::map<std::string, Request> requests = {
        {"unit", MakeUnit}, {"fault", Do([](UnitRig& rig, RequestWords& w) { rig.unit.AddFault(w.Fault()); })}, {"set", SetField}, {"memory", ShowMemory}, {"put-memory", PutMemory},
        {"peripheral", AttachPeripheral}, {"network", InstallNetwork}, {"generator", SendGenerator}, {"auto-range", SendAutoRange},
        {"script", CallScript}, {"browse", Browse},
        {"bring-up", Tell([](UnitRig& rig) { return rig.BringUp(); })},
        {"bring-up-without-window", Tell([](UnitRig& rig) { return rig.hardware.InitialiseHardware(WindowHandle::None); })},
        {"go-on-without", Do([](UnitRig& rig, RequestWords&) { rig.AnswerAccessDialog(CHardwareAccessDlg::kContinueId); })},
        {"plug-in", Do([](UnitRig& rig, RequestWords&) { rig.unit.SetPresent(true); })},
        {"advance", Do([](UnitRig& rig, RequestWords& w) { rig.host.clock.Advance(static_cast<std::uint32_t>(w.Number())); })},
        {"clear-faults", Do([](UnitRig& rig, RequestWords&) { rig.unit.ClearFaults(); })},
        {"poke", Do([](UnitRig& rig, RequestWords& w) {
             const auto space = static_cast<char>(w.Number());
             const auto address = static_cast<std::uint16_t>(w.Number());
             rig.unit.PokeMicro(space, address, static_cast<std::uint8_t>(w.Number()));
         })},
        {"cadence", Do([](UnitRig& rig, RequestWords& w) { rig.unit.SetResultCadence(static_cast<std::uint32_t>(w.Number())); })},
        {"relay-violations", Tell([](UnitRig& rig) { return rig.unit.RelayViolations().size(); })},
        {"protocol-errors", Tell([](UnitRig& rig) { return rig.unit.ProtocolErrors().size(); })},
        {"registry", Tell([](UnitRig& rig) {
             return Format("HWRunning %d HWErrors %d", rig.HWRunning(),
                           CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", -1));
         })},
        {"image", Do([](UnitRig& rig, RequestWords& w) {
             const std::string name = w.Next();
             static_cast<void>(rig.directory.MakeFile(name, static_cast<std::size_t>(w.Number())));
         })},
        {"image-setting", Do([](UnitRig&, RequestWords& w) {
             const std::string name = w.Next();
             CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", name.c_str(), w.Next());
         })},
        {"window", Tell([](UnitRig& rig) { return int{rig.host.analyser.windowFunction}; })},
        {"pending", Tell([](UnitRig& rig) { return rig.host.fftParameters.pending; })},
        {"jitter-averaging", Tell([](UnitRig& rig) {
             const auto& analyser = rig.host.analyser;
             return Format("%g %d %d", double{analyser.jitterAverage}, int{analyser.jitterAverageCount},
                           int{analyser.jitterAveragingState});
         })},
        {"arm-trigger", Tell([](UnitRig& rig) { return rig.hardware.ArmTrigger(&rig.host.fftParameters); })},
        {"detector", [](Stage& stage, RequestWords& w) { return Show(stage.rig->host.fftDetectors.Add(w.Next())->Id()); }},
        {"no-detectors", Do([](UnitRig& rig, RequestWords&) { rig.host.application.fftDetectors = nullptr; })},
        {"no-hardware", Do([](UnitRig& rig, RequestWords&) { rig.host.application.hardware = nullptr; })},
        {"answer-yes", Do([](UnitRig& rig, RequestWords&) { rig.host.user.QueueAnswer(BoxAnswer::Yes); })},
        {"TDACHalfUI-is-read-only",
         Tell([](UnitRig& rig) { return rig.hardware.SetProperty("HW_TDACHalfUI", VARIANT::Short(1)).text; })},
    };
    return requests;
}

const std::map<std::string, Request>& OfTheObject() {
    static const std::map<std::string, Request> requests = {
        OPERATION(TerminateHardware), OPERATION(IsHardwarePresent), OPERATION(IsDeviceSuspended),
        OPERATION(SuspendDevice), OPERATION(UnsuspendDevice), OPERATION(GoIntoDemoMode),
        OPERATION(CheckFirmwareVersion), OPERATION(ResetEndpoints), OPERATION(GetLinkErrorCount),
        OPERATION(Initialise), OPERATION(Terminate), OPERATION(MicroGetMem), OPERATION(MicroGetBit),
        OPERATION(DSPGetMem24), OPERATION(DSPGetBit), OPERATION(MicroPutMem), OPERATION(MicroPutBit),
        OPERATION(DSPPutMem24), OPERATION(DSPPutBit), OPERATION(MicroGetMemBlock), OPERATION(DSPGetMemBlock24),
        OPERATION(MicroPutMemBlock), OPERATION(DSPPutMemBlock24), OPERATION(MicroFillMemBlock),
        OPERATION(DSPFillMemBlock24), OPERATION(MicroWaitBit), OPERATION(DSPWaitBit), OPERATION(MicroLoad),
        OPERATION(FPGALoad), OPERATION(DSPLoad), OPERATION(DoCommand), OPERATION(DSPSendCommand),
        OPERATION(MicroPutBits), OPERATION(InitMemAddress), OPERATION(MicroWriteCtrlRegister),
        OPERATION(MicroReadCtrlRegister), OPERATION(MicroWriteCtrlRegisterBits), OPERATION(MicroReadStatusRegister),
        OPERATION(AnalogueGetMem), OPERATION(AnaloguePutMem), OPERATION(AnaloguePutBits),
        OPERATION(DSPGetControlWord), OPERATION(DSPPutControlWord), OPERATION(DSPPutControlBits),
        OPERATION(SetMainBoardRelay), OPERATION(LockHWAccess), OPERATION(UnlockHWAccess), OPERATION(SendKvNetCommand),
        OPERATION(SendKvNetData), OPERATION(SetAnalogueCalibrationValue), OPERATION(SetMainBoardCalibrationValue),
        OPERATION(SetMainBoardCalibrationByte), OPERATION(GetMainBoardCalibrationValueForID),
        OPERATION(GetAnalogueCalibrationValueForID), OPERATION(GetMainBoardCalibrationByte),
        OPERATION(GetMainBoardCalibrationString), OPERATION(GetMainBoardCalibrationVersion),
        OPERATION(GetMainBoardSoftwareVersion), OPERATION(GetMainBoardSoftwareVersionLetter),
        OPERATION(WriteMainBoardTable), OPERATION(WriteMainBoardMasterTable), OPERATION(WriteAnalogueTable),
        OPERATION(WriteAnalogueMasterTable), OPERATION(UsingMainBoardCalibration),
        OPERATION(UsingAnalogueCalibration), OPERATION(GetMainBoardHardwareVersion), OPERATION(ResetCalibration),
        OPERATION(GetResultIndex), OPERATION(GetIndexForFFTDetectorID), OPERATION(SetResultReady),
        OPERATION(SetFFTResultReady), OPERATION(IsResultReady), OPERATION(InitialiseResultReadyFlags),
        OPERATION(EnablePreprocessor), OPERATION(IsPreprocessorEnabled), OPERATION(GetBufferSize),
        OPERATION(SetBufferSize), OPERATION(SetAnalogueSampleRate), OPERATION(GetAnalogueSampleRate),
        OPERATION(GetAnalogueSamplingFreq), OPERATION(GetDSPClockCycleTime), OPERATION(IsHF2FlagReady),
        OPERATION(ResetHF2Flag), OPERATION(SetHF2FlagIgnoreCount), OPERATION(ReadPeakDetectorValues),
        OPERATION(GetTemperature), OPERATION(GetMainBoardTemperature), OPERATION(GetAnalogueBoardTemperature),
        OPERATION(Is150RImpedance), OPERATION(IsAnalogueDCCoupled), OPERATION(IsAnalogueHardware192k),
        OPERATION(AreDigitalChannelsReversed), OPERATION(GetSampleRate), OPERATION(GetSampleBufferLength),
        OPERATION(GetHWAnalyserChannels), OPERATION(WriteDivisorsToHardware), OPERATION(SetVideoSyncDetails),
        OPERATION(WriteCoefficientsOnSampleRateChange), OPERATION(GetJTAPhaseBaseCalibOffset),
        OPERATION(GetJTAXPHCalibValue), OPERATION(ResetJitterAveraging),
        {"ConvertdBuToV", Of(&ConvertdBuToV)}, {"ConvertdBVToV", Of(&ConvertdBVToV)},
        {"ConvertdBmToV", Of(&ConvertdBmToV)}, {"ConvertWToV", Of(&ConvertWToV)},
    };
    return requests;
}
// clang-format on

} // namespace

const std::map<std::string, Request>& Requests() {
    static const auto requests = [] {
        auto all = AroundTheObject();
        all.insert(OfTheObject().begin(), OfTheObject().end());
        return all;
    }();
    return requests;
}

} // namespace kalvio::test
