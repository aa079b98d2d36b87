// What the generators put out, what stands behind them, and what is measured.

#include "simulator/RequestTools.h"
#include "simulator/peripherals/KedaAdapter.h"

namespace kalvio::simulator {

namespace {

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

} // namespace

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

} // namespace kalvio::simulator
