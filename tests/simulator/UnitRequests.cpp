// Memories, registers, records and faults of the unit, past the wire.

#include "simulator/RequestTools.h"

namespace kalvio::simulator {

namespace {

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

} // namespace

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

} // namespace kalvio::simulator
