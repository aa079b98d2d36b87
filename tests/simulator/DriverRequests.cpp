// Driver requests and whole exchanges.

#include "simulator/RequestTools.h"

namespace kalvio::simulator {

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

namespace {

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

} // namespace

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

} // namespace kalvio::simulator
