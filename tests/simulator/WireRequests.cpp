#include "simulator/WireRequests.h"

#include "platform/Text.h"
#include "simulator/peripherals/FirmwareReceiver.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/KedaAdapter.h"
#include "simulator/peripherals/Misbehaving.h"
#include "simulator/peripherals/PeripheralList.h"
#include "support/Replay.h"

#include <numeric>

namespace kalvio::simulator {

namespace {

using Words = test::RequestWords;
using Request = std::function<std::string(Bench& bench, Words& words)>;
using Requests = std::map<std::string, Request>;

// Bytes up to the next ":".
std::string HexOf(Words& words) {
    std::string hex;
    for (std::string word; words.More() && (word = words.Next()) != ":";) {
        const std::size_t times = word.find('x');
        const std::string bytes = word.substr(0, times);
        for (auto left = times == std::string::npos ? 1 : std::stoul(word.substr(times + 1)); left > 0;
             --left) {
            hex += bytes;
        }
    }
    return hex;
}

std::string List(const std::vector<std::string>& items) {
    std::string text;
    for (const std::string& item : items) {
        text += "- " + item + "\n";
    }
    return items.empty() ? "none" : text;
}

// "name=value" words up to the end, each to what takes it.
template<typename Target>
void Assign(Words& words, Target& target,
            const std::map<std::string, std::function<void(Target& target, double value)>>& takers) {
    while (words.More()) {
        const std::string word = words.Next();
        const std::size_t equals = word.find('=');
        takers.at(word.substr(0, equals))(target, std::strtod(word.c_str() + equals + 1, nullptr));
    }
}

template<typename Target, typename Field>
auto Into(Field Target::*field) {
    return [field](Target& target, double value) { target.*field = static_cast<Field>(value); };
}

// A frame of the peripheral bus that wants an answer.
std::string FrameOf(std::uint8_t address, std::uint8_t command, const std::vector<std::uint8_t>& data) {
    std::vector<std::uint8_t> frame{0x55, address, static_cast<std::uint8_t>(data.size()), command};
    frame.insert(frame.end(), data.begin(), data.end());
    frame.push_back(static_cast<std::uint8_t>(0x55 - std::accumulate(frame.begin() + 1, frame.end(), 0)));
    frame.push_back(0xAA);
    return ToHex(frame);
}

// The peripheral at that address.
template<typename Kind>
Kind& At(Bench& bench, Words& words) {
    const auto address = words.Number();
    const auto found = std::ranges::find_if(bench.peripherals, [&](const auto& peripheral) {
        return peripheral->Address() == address && dynamic_cast<Kind*>(peripheral.get()) != nullptr;
    });
    return dynamic_cast<Kind&>(
        *bench.peripherals.at(static_cast<std::size_t>(found - bench.peripherals.begin())));
}

// The driver.

std::string MakeUnit(Bench& bench, Words& words) {
    struct All : UnitOptions {
        std::uint32_t tick = 1000;
    };
    All options;
    Assign<All>(words, options,
                {{"absent", Into(&All::absentOpens)},
                 {"release", Into(&All::releaseNumber)},
                 {"version", Into(&All::mainBoardVersion)},
                 {"options", Into(&All::mainBoardOptions)},
                 {"analogue", Into(&All::analogueVersion)},
                 {"links", Into(&All::linkFit)},
                 {"half-degrees", Into(&All::mainTemperatureHalfDegrees)},
                 {"analogue-half-degrees", Into(&All::analogueTemperatureHalfDegrees)},
                 {"cadence", Into(&All::resultCadenceMs)},
                 {"digital", Into(&All::digitalFrameRateHz)},
                 {"reference", Into(&All::referenceFrameRateHz)},
                 {"tick", Into(&All::tick)}});
    bench.peripherals.clear();
    bench.violations = 0;
    bench.wire = std::make_unique<Wire>(options, options.tick);
    return {};
}

// What a request brought: of long data both ends.
std::string Brought(const Wire& wire, const DriverReply& reply) {
    if (!reply.ok) {
        return Format("error %u", reply.error);
    }
    const auto bytes = std::span(wire.got).first(std::min<std::size_t>(reply.bytesReturned, wire.got.size()));
    if (bytes.size() <= 40) {
        return bytes.empty() ? "ok" : "ok " + ToHex(bytes);
    }
    return Format("ok, %zu bytes ", bytes.size()) + ToHex(bytes.first(4)) + " … " + ToHex(bytes.last(4));
}

std::string ControlBy(Bench& bench, std::uint32_t code, Words& words) {
    const std::string input = HexOf(words);
    const std::string toUnit = HexOf(words);
    return Brought(*bench.wire,
                   bench.wire->Control(code, input, toUnit, static_cast<std::size_t>(words.Number())));
}

// A write, a read, a reset, a look at the last error and one at the descriptor: those that failed.
std::string Round(Bench& bench, Words&) {
    Wire& wire = *bench.wire;
    std::string failed;
    const auto note = [&failed](const char* what, const DriverReply& reply) {
        failed += reply.ok ? "" : what;
    };
    note(" write", wire.Write("0000ABCD 00000001 00000000 00000000 00000000"));
    note(" read", wire.Read(12));
    note(" reset", wire.Control(kControlVendorRequest, "00020000B00002000000"));
    note(" last-error", wire.Control(kControlLastUsbError, {}, {}, 4));
    note(" descriptor", wire.Control(kControlGetDescriptor, {}, {}, 18));
    return failed.empty() ? "all well" : failed.substr(1);
}

std::string ShowRequests(Bench& bench, Words&) {
    std::vector<std::string> items{Format("%u since the start", bench.wire->unit.RequestCount())};
    for (const RequestRecord& request : bench.wire->unit.Requests()) {
        items.push_back(Format("%08X %s, %u bytes, %s", request.code, ToHex(request.input).c_str(),
                               request.dataLength, request.ok ? "ok" : "failed"));
    }
    bench.wire->unit.ClearLogs();
    return List(items);
}

std::string ShowExchanges(Bench& bench, Words&) {
    std::vector<std::string> items;
    for (const Exchange& exchange : bench.wire->unit.Exchanges()) {
        items.push_back(Format("at %u: %u ", exchange.tick, exchange.command) + ToHex(exchange.parameters) +
                        " : " + ToHex(exchange.outData) + Format(" < %u", exchange.expectedInLength) +
                        (exchange.refused ? Format(" refused %04X", unsigned{exchange.error}) : ""));
    }
    bench.wire->unit.ClearLogs();
    return List(items);
}

const Requests& OfTheDriver() {
    static const Requests requests = {
        {"unit", MakeUnit},
        {"let",
         [](Bench& b, Words& w) {
             const std::string name = w.Next();
             return b.names[name] = HexOf(w), "";
         }},
        {"now", [](Bench& b, Words& w) { return b.wire->now += static_cast<std::uint32_t>(w.Number()), ""; }},
        {"open",
         [](Bench& b, Words& w) {
             const auto handle = static_cast<unsigned>(b.wire->unit.Open(w.Next()));
             b.wire->handle = handle != 0 ? DeviceHandle{handle} : b.wire->handle;
             return std::to_string(handle);
         }},
        {"close", [](Bench& b, Words& w) { return b.wire->unit.Close(DeviceHandle(w.Number())), ""; }},
        {"state",
         [](Bench& b, Words&) {
             return Format("open %d, initialised %d", b.wire->unit.IsOpen(), b.wire->unit.IsInitialised());
         }},
        {"present", [](Bench& b, Words& w) { return b.wire->unit.SetPresent(w.Number() != 0), ""; }},
        {"release",
         [](Bench& b, Words& w) {
             return b.wire->unit.SetReleaseNumber(static_cast<std::uint16_t>(w.Number())), "";
         }},
        {"control",
         [](Bench& b, Words& w) { return ControlBy(b, static_cast<std::uint32_t>(w.Number()), w); }},
        {"write", [](Bench& b, Words& w) { return Brought(*b.wire, b.wire->Write(HexOf(w))); }},
        {"read",
         [](Bench& b, Words& w) {
             return Brought(*b.wire, b.wire->Read(static_cast<std::size_t>(w.Number())));
         }},
        {"drain",
         [](Bench& b, Words&) {
             return Brought(*b.wire, b.wire->Control(kControlBulkRead, "080000000A000000", {}, 65472));
         }},
        {"reset",
         [](Bench& b, Words&) {
             return Brought(*b.wire, b.wire->Control(kControlVendorRequest, "00020000B00002000000"));
         }},
        {"round", Round},
        {"ask",
         [](Bench& b, Words& w) {
             const std::string header = HexOf(w);
             return b.wire->Ask(header, HexOf(w));
         }},
        {"requests", ShowRequests},
        {"exchanges", ShowExchanges},
    };
    return requests;
}

// The unit past the wire.

CalibrationMemory MemoryOf(Words& words) {
    return words.Next() == "main" ? CalibrationMemory::MainBoard : CalibrationMemory::AnalogueBoard;
}

// MEMORY AT COUNT
std::string ShowCalibration(Bench& bench, Words& words) {
    const auto bytes = bench.wire->unit.ReadCalibration(MemoryOf(words));
    const auto at = static_cast<std::size_t>(words.Number());
    const auto shown = std::span(bytes).subspan(at, static_cast<std::size_t>(words.Number()));
    std::vector<std::string> lines;
    for (std::size_t line = 0; line < shown.size(); line += 32) {
        lines.push_back(ToHex(shown.subspan(line, std::min<std::size_t>(32, shown.size() - line))));
    }
    return lines.size() > 1 ? List(lines) : lines.at(0);
}

std::string ShowRegisterWrites(Bench& bench, Words&) {
    std::vector<std::string> items;
    for (const RegisterWrite& write : bench.wire->unit.RegisterWrites()) {
        items.push_back(Format("at %u: '%c' %02X, changed %02X", write.tick, write.reg, unsigned{write.value},
                               unsigned{write.changed}));
    }
    return List(items);
}

std::string ShowImages(Bench& bench, Words&) {
    std::vector<std::string> items;
    for (const LoadedImage& image : bench.wire->unit.Images()) {
        items.push_back(Format("%u, %u: ", image.command, unsigned{image.which}) + ToHex(image.bytes));
    }
    return List(items);
}

const Requests& OfTheUnit() {
    static const Requests requests = {
        {"fault", [](Bench& b, Words& w) { return b.wire->unit.AddFault(w.Fault()), ""; }},
        {"clear-faults", [](Bench& b, Words&) { return b.wire->unit.ClearFaults(), ""; }},
        {"faults-shown", [](Bench& b, Words&) { return std::to_string(b.wire->unit.FaultsShown()); }},
        {"micro",
         [](Bench& b, Words& w) {
             const char space = w.Next()[0];
             return Format("%02X", b.wire->unit.PeekMicro(space, static_cast<std::uint16_t>(w.Number())));
         }},
        {"dsp",
         [](Bench& b, Words& w) {
             const auto dsp = static_cast<int>(w.Number());
             const char space = w.Next()[0];
             return Format("%06X", b.wire->unit.PeekDsp(dsp, space, static_cast<std::uint32_t>(w.Number())));
         }},
        {"poke-dsp",
         [](Bench& b, Words& w) {
             const auto dsp = static_cast<int>(w.Number());
             const char space = w.Next()[0];
             const auto address = static_cast<std::uint32_t>(w.Number());
             return b.wire->unit.PokeDsp(dsp, space, address, static_cast<std::uint32_t>(w.Number())), "";
         }},
        {"register",
         [](Bench& b, Words& w) { return Format("%02X", b.wire->unit.PeekRegister(w.Next()[0])); }},
        {"relays", [](Bench& b, Words&) { return ToHex(b.wire->unit.MainBoardRelays()); }},
        {"calibration", ShowCalibration},
        {"put-calibration",
         [](Bench& b, Words& w) {
             const CalibrationMemory memory = MemoryOf(w);
             const auto at = static_cast<std::size_t>(w.Number());
             return b.wire->unit.WriteCalibration(memory, at, Hex(HexOf(w))), "";
         }},
        {"default-calibration",
         [](Bench& b, Words& w) { return b.wire->unit.SetDefaultCalibration(MemoryOf(w)), ""; }},
        {"writes", ShowRegisterWrites},
        {"images", ShowImages},
        {"put-register", // REGISTER VALUE
         [](Bench& b, Words& w) {
             const CString header = Format("0000ABCD 00000007 00000000 00000000 00%02X32", w.Next()[0]);
             return b.wire->Ask(header + w.Next() + "00000000");
         }},
    };
    return requests;
}

// Signals.

std::string SetDevice(Bench& bench, Words& words) {
    using Device = DeviceUnderTest;
    Device device;
    Assign<Device>(words, device,
                   {{"gain", Into(&Device::gain)},
                    {"offset", Into(&Device::offsetVolts)},
                    {"resonance", Into(&Device::resonanceHz)},
                    {"q", Into(&Device::resonanceQ)},
                    {"saturation", Into(&Device::saturationVolts)},
                    {"noise", Into(&Device::noiseVolts)},
                    {"time", Into(&Device::timeConstantMs)},
                    {"b-gain", Into(&Device::channelBGain)},
                    {"overload", Into(&Device::overloadVolts)},
                    {"silent", Into(&Device::silent)},
                    {"seed", Into(&Device::seed)},
                    {"custom", [](Device& of, double factor) { // ratio of channel A; of B one more
                         of.custom = [factor](const Stimulus& stimulus, int channel) {
                             return stimulus.amplitudeVolts * (factor + channel);
                         };
                     }}});
    bench.wire->unit.SetDeviceUnderTest(device);
    return {};
}

// DSP ADDRESS: a result block, through the wire, as words.
std::vector<std::uint32_t> ResultBlock(Wire& wire, unsigned dsp, unsigned address) {
    wire.Ask(Format("0000ABCD 0000000C 00000000 0000002D %08X%02X580000", address, dsp));
    std::vector<std::uint32_t> words;
    for (std::size_t i = 0; i < wire.got.size(); i += 3) {
        words.push_back((wire.got[i] * 256U + wire.got[i + 1]) * 256U + wire.got[i + 2]);
    }
    return words;
}

std::string ShowResults(Bench& bench, Words& words) {
    const auto dsp = static_cast<unsigned>(words.Number());
    std::string text;
    for (const std::uint32_t word :
         ResultBlock(*bench.wire, dsp, words.More() ? static_cast<unsigned>(words.Number()) : 0x100)) {
        text += Format("%s%06X", text.empty() ? "" : " ", word);
    }
    return text;
}

// Of both channels RMS, DC in millivolts and harmonics; the phase in degrees.
std::string ShowLevels(Bench& bench, Words&) {
    std::string text;
    for (const unsigned dsp : {0U, 1U}) {
        const auto block = ResultBlock(*bench.wire, dsp, 0x100);
        const auto split = [&block](std::size_t at) { return block[at] + block[at + 1] / 16777216.0; };
        const auto whole = [&block](std::size_t at) {
            return static_cast<std::int32_t>(block[at] << 8) / 256;
        };
        text += Format("%s%.5g V, %.5g mV, harmonics %.5g %.5g %.5g, %.5g degrees%s", dsp == 0 ? "" : "; ",
                       split(0), whole(13) / 64.0, split(7), split(9), split(11), whole(4) / 32768.0,
                       (block[14] & 1) != 0 ? "" : ", overloaded");
    }
    return text;
}

std::string ShowStimulus(Bench& bench, Words& words) {
    const Stimulus stimulus = bench.wire->unit.GetStimulus(static_cast<int>(words.Number()));
    return Format("%s, %g Hz, %g V, %g V DC, jitter %g Hz %g UI", stimulus.on ? "on" : "off",
                  stimulus.frequencyHz, stimulus.amplitudeVolts, stimulus.dcOffsetVolts,
                  stimulus.jitterFrequencyHz, stimulus.jitterAmplitudeUi);
}

// DSP: whether the flag stands, which is then cleared.
std::string TakeHf2(Bench& bench, Words& words) {
    const bool first = words.Number() == 0;
    Wire& wire = *bench.wire;
    const std::string answer = wire.Ask(CString("0000ABCD 00000011 00000000 00000000 00B0") +
                                        (first ? "2208" : "2A08") + " 00015801");
    wire.Ask(CString("0000ABCD 00000017 00000000 00000000 0") + (first ? "0" : "1") + "3C0000");
    return answer.substr(27);
}

// The level of each channel behind an adapter that was told so by frames, each up to ":".
std::string Route(Bench& bench, Words& words) {
    Words none("");
    MakeUnit(bench, none);
    bench.wire->unit.Plug<KedaAdapter>(std::uint8_t{8});
    bench.wire->Ask("0000ABCD 00000016 00000038 00000000 0D000000",
                    bench.names.at("A") + bench.names.at("B-on") + "0000000000000000");
    while (words.More()) {
        bench.wire->Bus(HexOf(words), 6);
    }
    bench.wire->now += 20;
    const auto volts = [&](unsigned dsp) { return ResultBlock(*bench.wire, dsp, 0x100)[0]; };
    return Format("%u %u", volts(0), volts(1));
}

const Requests& OfTheSignals() {
    static const Requests requests = {
        {"device", SetDevice},
        {"cadence",
         [](Bench& b, Words& w) {
             return b.wire->unit.SetResultCadence(static_cast<std::uint32_t>(w.Number())), "";
         }},
        {"generate",
         [](Bench& b, Words& w) {
             return b.wire->Ask("0000ABCD 00000016 00000038 00000000 0D000000",
                                HexOf(w) + "0000000000000000");
         }},
        {"record", // the flags and registers behind both channels
         [](Bench& b, Words& w) {
             return b.wire->Ask("0000ABCD 00000016 00000038 00000000 0D000000",
                                CString(98, '0') + HexOf(w) + "00");
         }},
        {"results", ShowResults},
        {"levels", ShowLevels},
        {"stimulus", ShowStimulus},
        {"hf2", TakeHf2},
        {"route", Route},
    };
    return requests;
}

// Peripherals.

std::string Plug(Bench& bench, Words& words) {
    const PeripheralList list = ParsePeripherals(words.Next());
    for (const auto& peripheral : list.peripherals) {
        bench.wire->unit.Attach(peripheral);
        bench.peripherals.push_back(peripheral);
    }
    return list.error.empty() ? std::to_string(list.peripherals.size()) : list.error;
}

// PERIPHERAL KIND FIRST COUNT
std::string Misbehave(Bench& bench, Words& words) {
    const auto inner = ParsePeripherals(words.Next()).peripherals.at(0);
    const Misbehaviour kind = FindMisbehaviour(words.Next()).value();
    Spell spell;
    spell.first = static_cast<std::uint32_t>(words.Number());
    spell.count = static_cast<std::uint32_t>(words.Number());
    bench.peripherals.push_back(inner);
    bench.peripherals.push_back(bench.wire->unit.Plug<Misbehaving>(inner, kind, spell));
    return {};
}

// At address 5 one that says always the same, whatever it hears.
class Parrot final : public Peripheral {
public:
    Parrot(std::vector<std::uint8_t> bytes, std::uint32_t delayMs) : m_reply{std::move(bytes), delayMs} {}
    PeripheralReply Answer(ByteView, std::uint32_t) override { return m_reply; }
    [[nodiscard]] std::uint8_t Address() const override { return 5; }

private:
    PeripheralReply m_reply;
};

// DELAY BYTES
std::string PlugParrot(Bench& bench, Words& words) {
    const auto delayMs = static_cast<std::uint32_t>(words.Number());
    bench.wire->unit.AttachPeripheral(5, {});
    bench.wire->unit.Plug<Parrot>(Hex(HexOf(words)), delayMs);
    return {};
}

std::string ShowSwitcher(Bench& bench, Words& words) {
    const IoSwitcher& switcher = At<IoSwitcher>(bench, words);
    std::string text;
    for (const std::size_t bus : {0U, 1U}) {
        text += Format("%c X %02X Y %02X flags %u, ", bus == 0 ? 'A' : 'B', switcher.Mask(bus, 0),
                       switcher.Mask(bus, 1), switcher.Flags(bus));
    }
    return text + Format("%u operations", switcher.Operations());
}

std::string ShowEvents(Bench& bench, Words& words) {
    std::vector<std::string> items;
    const IoSwitcher& switcher = At<IoSwitcher>(bench, words);
    for (const RelayEvent& event : switcher.Events()) {
        items.push_back(Format("at %u: %c%c%u %s, %u in all", event.tick, event.bus == 0 ? 'A' : 'B',
                               event.group == 0 ? 'X' : 'Y', event.relay, event.closed ? "closes" : "opens",
                               switcher.Operations(event.bus, event.group, event.relay)));
    }
    return List(items);
}

std::string ShowAdapter(Bench& bench, Words& words) {
    const KedaAdapter& adapter = At<KedaAdapter>(bench, words);
    return List({"registers " + ToHex(adapter.Registers()), "SPI " + ToHex(adapter.SpiRegisters()),
                 "I2C " + ToHex(adapter.I2cRegisters()),
                 Format("clocks %g %g, sectors %zu", adapter.FrameRates().generatorHz,
                        adapter.FrameRates().analyserHz, adapter.Firmware().size())});
}

// ADDRESS DIGITAL DEVICE GENERATOR : ANALYSER, the clock bytes of both directions: the codes.
std::string ShowRates(Bench& bench, Words& words) {
    auto& adapter = At<KedaAdapter>(bench, words);
    const double digital = words.Real();
    adapter.SetClockSource({digital, words.Real()});
    const auto set = [&](std::uint8_t command, const std::vector<std::uint8_t>& data) {
        bench.wire->Bus(FrameOf(8, command, data), 6);
    };
    set(0xC5, Hex(HexOf(words)));
    set(0xC8, Hex(HexOf(words)));
    return bench.wire->Bus("550800CD 80AA", 7);
}

// ADDRESS SECTOR FIRST COUNT: sends blocks whose program bytes all carry the block's number, as long as they
// are stored.
std::string Download(Bench& bench, Words& words) {
    const auto address = static_cast<std::uint8_t>(words.Number());
    const auto sector = static_cast<unsigned>(words.Number());
    const auto first = static_cast<unsigned>(words.Number());
    const auto count = words.More() ? static_cast<unsigned>(words.Number()) : 1;
    std::string answer;
    unsigned stored = 0;
    for (; stored < count; ++stored) {
        const unsigned number = first + stored;
        std::vector<std::uint8_t> record{static_cast<std::uint8_t>(sector << 4 | number >> 8),
                                         static_cast<std::uint8_t>(number)};
        record.resize(34, static_cast<std::uint8_t>(number));
        answer = bench.wire->Bus(FrameOf(address, 0xB1, record), 6, 2000);
        if (answer.substr(6, 2) != "CF") {
            break;
        }
    }
    return Format("%u stored, ", stored) + answer;
}

std::string ShowFirmware(Bench& bench, Words& words) {
    const FirmwareReceiver& receiver = At<FirmwareReceiver>(bench, words);
    std::vector<std::string> items{
        Format("%u blocks seen%s", receiver.BlocksSeen(), receiver.IsHalf() ? ", half" : "")};
    for (const auto& [sector, bytes] : receiver.Firmware()) {
        items.push_back(Format("sector %u: %zu bytes ", unsigned{sector}, bytes.size()) +
                        ToHex(std::span(bytes).first(4)) + " … " + ToHex(std::span(bytes).last(4)));
    }
    return List(items);
}

const Requests& OfPeripherals() {
    static const Requests requests = {
        {"plug", Plug},
        {"misbehave", Misbehave},
        {"parrot", PlugParrot},
        {"unplug", [](Bench& b, Words& w) { return b.wire->unit.Detach(At<Peripheral>(b, w)), ""; }},
        {"vacate",
         [](Bench& b, Words& w) {
             return b.wire->unit.AttachPeripheral(static_cast<std::uint8_t>(w.Number()), {}), "";
         }},
        {"bus", // LENGTH FRAME : TIME-OUT
         [](Bench& b, Words& w) {
             const auto length = static_cast<std::size_t>(w.Number());
             const std::string frame = HexOf(w);
             return b.wire->Bus(frame, length, static_cast<unsigned>(w.Number()));
         }},
        {"attempts",
         [](Bench& b, Words& w) {
             return std::to_string(b.wire->unit.PeripheralAttempts(static_cast<std::uint8_t>(w.Number())));
         }},
        {"collisions", [](Bench& b, Words&) { return std::to_string(b.wire->unit.PeripheralCollisions()); }},
        {"faults", [](Bench& b, Words& w) { return List(At<BusDevice>(b, w).Faults()); }},
        {"obeyed",
         [](Bench& b, Words& w) {
             const auto& device = At<BusDevice>(b, w);
             return Format("%u, %s", device.FramesObeyed(), device.IsOn() ? "on" : "standby");
         }},
        {"delay",
         [](Bench& b, Words& w) {
             auto& device = At<BusDevice>(b, w);
             return device.SetAnswerDelay(static_cast<std::uint32_t>(w.Number())), "";
         }},
        {"shown", [](Bench& b, Words& w) { return std::to_string(At<Misbehaving>(b, w).Shown()); }},
        {"switcher", ShowSwitcher},
        {"events", ShowEvents},
        {"adapter", ShowAdapter},
        {"rates", ShowRates},
        {"download", Download},
        {"firmware", ShowFirmware},
        {"liar",
         [](Bench& b, Words& w) {
             const auto address = static_cast<std::uint8_t>(w.Number());
             FirmwareReceiverOptions options;
             options.lies = true;
             b.peripherals.push_back(b.wire->unit.Plug<FirmwareReceiver>(address, options));
             return "";
         }},
        {"lose-power", // ADDRESS BLOCK BACK-AFTER
         [](Bench& b, Words& w) {
             auto& receiver = At<FirmwareReceiver>(b, w);
             const auto block = static_cast<std::uint32_t>(w.Number());
             return receiver.LosePowerAtBlock(block, static_cast<std::uint32_t>(w.Number())), "";
         }},
        {"power-on", [](Bench& b, Words& w) { return At<FirmwareReceiver>(b, w).PowerOn(), ""; }},
    };
    return requests;
}

const Request* Find(const std::string& name) {
    for (const Requests* requests : {&OfTheDriver(), &OfTheUnit(), &OfTheSignals(), &OfPeripherals()}) {
        if (const auto found = requests->find(name); found != requests->end()) {
            return &found->second;
        }
    }
    return nullptr;
}

std::string WithNames(std::string line, const std::map<std::string, std::string>& names) {
    for (const auto& [name, bytes] : names) {
        const std::string place = "{" + name + "}";
        for (std::size_t at; (at = line.find(place)) != std::string::npos;) {
            line.replace(at, place.size(), bytes);
        }
    }
    return line;
}

} // namespace

std::string PlayRequest(Bench& bench, std::string_view request) {
    Words words(WithNames(std::string(request), bench.names));
    const std::string name = words.Next();
    const Request* const found = Find(name);
    if (found == nullptr) {
        return "no such request\n";
    }
    const std::uint32_t start = name == "unit" || name == "now" || name == "route" ? 0 : bench.wire->now;
    std::string result = (*found)(bench, words);
    std::string text;
    for (const std::string& error : bench.wire->unit.ProtocolErrors()) {
        text += "! " + error + "\n";
    }
    bench.wire->unit.ClearProtocolErrors();
    const auto violations = bench.wire->unit.RelayViolations();
    for (; bench.violations < violations.size(); ++bench.violations) {
        text += "!! " + violations[bench.violations] + "\n";
    }
    if (start != 0 && bench.wire->now != start) {
        result += Format(" (%u ms)", bench.wire->now - start);
    }
    if (result.starts_with("- ") || result.empty()) {
        return text + result;
    }
    return text + "= " + result + "\n" + (words.More() ? "too many words\n" : "");
}

} // namespace kalvio::simulator
