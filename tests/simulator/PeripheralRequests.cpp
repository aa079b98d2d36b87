// Peripherals and the bus that they hang on.

#include "simulator/RequestTools.h"
#include "simulator/peripherals/FirmwareReceiver.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/KedaAdapter.h"
#include "simulator/peripherals/Misbehaving.h"
#include "simulator/peripherals/PeripheralList.h"

#include <numeric>

namespace kalvio::simulator {

namespace {

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

} // namespace

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

} // namespace kalvio::simulator
