// Every operation of the I/O switcher as literal frames.

#include "SwitchingRig.h"

#include "peripheral_network/bus/KvNetTrace.h"

namespace kalvio::test {
namespace {

struct Exchange {
    std::string frame;
    Bytes answer;
    std::vector<bool> tested;
    std::vector<std::string> told; // the view updates
};

Exchange ParseExchange(const std::string& text) {
    const std::vector<std::string> words = Words(text);
    Exchange exchange{words[0], {}, {}, {}};
    std::size_t at = 2; // behind ">"
    for (; at < words.size() && words[at] != "!"; ++at) {
        exchange.answer.push_back(Hex(words[at].substr(0, 2))[0]);
        exchange.tested.push_back(words[at].ends_with('*'));
    }
    if (at < words.size()) {
        exchange.told = {"-601 0103" + words[at + 1], "-609 1103" + words[at + 1]};
    }
    return exchange;
}

using Arguments = std::vector<std::uint8_t>;
using Device = CIOSwitcher;

short SendDetails(Device& device, const Arguments& a) {
    void* const block = device.GetChannelArrayDetails();
    for (std::size_t at = 0; at < a.size(); at += 5) {
        ChannelDetails entry{3, 0x11, a[at], a[at + 1], a[at + 2], a[at + 3], a[at + 4]};
        EXPECT_EQ(device.AddChannelToChannelArrayDetails(block, &entry), 1);
    }
    const short code = device.UpdateDeviceWithChannelArrayDetails(block);
    ::operator delete(block);
    return code;
}

short ReadVoltages(Device& device, const Arguments&) {
    short code = 99;
    const int done = device.GetDCMeasurement(nullptr, nullptr, nullptr, nullptr, &code);
    EXPECT_EQ(done, code == 0 ? 1 : 0);
    return code;
}

const std::map<std::string, std::function<short(Device&, const Arguments&)>> kCalls{
    {"BusChannel", [](auto& d, auto& a) { return d.BusChannel(a[0], a[1], a[2], a[3]); }},
    {"BusExclusive", [](auto& d, auto& a) { return d.BusExclusiveChannel(a[0], a[1], a[2], a[3], a[4]); }},
    {"BusGroupExclusive",
     [](auto& d, auto& a) { return d.BusGroupExclusiveChannel(a[0], a[1], a[2], a[3]); }},
    {"BusAll", [](auto& d, auto& a) { return d.BusAll(a[0], a[1], a[2]); }},
    {"BusGroupAll", [](auto& d, auto& a) { return d.BusGroupAll(a[0], a[1], a[2]); }},
    {"BusBalance", [](auto& d, auto& a) { return d.BusBalance(a[0], a[1], a[2]); }},
    {"BusLoad", [](auto& d, auto& a) { return d.BusLoad(a[0], a[1], a[2]); }},
    {"PairChannel", [](auto& d, auto& a) { return d.StereoPairChannel(a[0], a[1], a[2], a[3]); }},
    {"PairExclusive",
     [](auto& d, auto& a) { return d.StereoPairExclusiveChannel(a[0], a[1], a[2], a[3], a[4]); }},
    {"PairGroupExclusive",
     [](auto& d, auto& a) { return d.StereoPairGroupExclusiveChannel(a[0], a[1], a[2], a[3]); }},
    {"PairAll", [](auto& d, auto& a) { return d.StereoPairAll(a[0], a[1]); }},
    {"PairGroupAll", [](auto& d, auto& a) { return d.StereoPairGroupAll(a[0], a[1]); }},
    {"PairBalance", [](auto& d, auto& a) { return d.StereoPairBalance(a[0], a[1], a[2]); }},
    {"PairLoad", [](auto& d, auto& a) { return d.StereoPairLoad(a[0], a[1], a[2]); }},
    {"Details", SendDetails},
    {"GetBus", [](auto& d, auto& a) { return d.GetBusStatus(a[0], nullptr); }},
    {"GetDC", ReadVoltages},
};

constexpr std::size_t kNone = SIZE_MAX;

// Plays operations against a switcher that answers as their line says, but for one exchange.
struct Player {
    explicit Player(const std::vector<std::string>& line) : call(Words(line[0])) {
        std::transform(line.begin() + 1, line.end(), std::back_inserter(exchanges), ParseExchange);
    }

    // The k-th exchange is not answered, or with one byte of its answer inverted; kNone: all goes well.
    short Play(SwitchingRig& rig, std::size_t exchange, std::size_t byte) const {
        rig.events.clear();
        rig.scripted = [&, next = std::size_t{0}](std::span<const std::uint8_t> frame) mutable {
            if (next == exchange && byte == kNone) {
                return Bytes();
            }
            Bytes data = exchanges[next].answer;
            if (next++ == exchange) {
                data[byte] = static_cast<std::uint8_t>(~data[byte]);
            }
            return AnswerFrame(3, frame[3], data);
        };
        Arguments arguments;
        for (std::size_t at = 1; at < call.size(); ++at) {
            arguments.push_back(static_cast<std::uint8_t>(std::stoi(call[at])));
        }
        return kCalls.at(call[0])(*rig.Switchers().GetIOSwitcher(3), arguments);
    }

    // What happens up to an exchange. One without an answer is sent twice by the unit and told to nobody.
    [[nodiscard]] std::vector<std::string> Events(std::size_t last, bool answered) const {
        std::vector<std::string> events;
        for (std::size_t at = 0; at <= last; ++at) {
            const bool lost = at == last && !answered;
            events.insert(events.end(), lost ? 2 : 1, exchanges[at].frame);
            if (!lost) {
                events.insert(events.end(), exchanges[at].told.begin(), exchanges[at].told.end());
            }
        }
        return events;
    }

    std::vector<std::string> call;
    std::vector<Exchange> exchanges;
};

TEST(IOSwitcher, FramesHintsAndEchoes) {
    SwitchingRig rig;
    for (const auto& line : TableOf("operations.txt")) {
        SCOPED_TRACE(line[0]);
        const Player player(line);
        const std::size_t end = player.exchanges.size() - 1;
        EXPECT_EQ(player.Play(rig, kNone, kNone), 0);
        EXPECT_EQ(rig.events, player.Events(end, true));
        for (std::size_t at = 0; at <= end; ++at) {
            EXPECT_EQ(player.Play(rig, at, kNone), -3) << "no answer to exchange " << at;
            EXPECT_EQ(rig.events, player.Events(at, false));
            for (std::size_t byte = 0; byte < player.exchanges[at].answer.size(); ++byte) {
                const bool tested = player.exchanges[at].tested[byte];
                EXPECT_EQ(player.Play(rig, at, byte), tested ? -10 : 0) << at << " byte " << byte;
                EXPECT_EQ(rig.events, player.Events(tested ? at : end, true));
            }
        }
    }
}

// A view that looks another switcher up while it is told must not turn the second frame there; an address
// that is no device's is never sent to.
TEST(IOSwitcher, AddressStaysAndIsChecked) {
    SwitchingRig rig;
    CIOSwitcherSettings& settings = rig.Switchers();
    const int observer = rig.host.application.AddViewObserver(
        [&settings](CView*, int, void*, int) { settings.GetIOSwitcher(9); });
    std::string trace;
    SetKvNetTraceHook([&trace](const CString& text) { trace += text; });
    EXPECT_EQ(settings.GetIOSwitcher(3)->StereoPairGroupAll(0, 1), 0);
    SetKvNetTraceHook({});
    EXPECT_EQ(trace,
              "CIOSwitcher::StereoPairGroupAll\n"
              "  Command structure : 55 03 01 8C 55 70 AA \n  Response          : 55 03 01 8C 55 70 AA \n"
              "  Command structure : 55 03 01 8D AA 1A AA \n  Response          : 55 03 01 8D AA 1A AA \n");
    rig.host.application.RemoveViewObserver(observer);
    rig.events.clear();
    EXPECT_EQ(settings.GetIOSwitcher(254), nullptr);
    for (const std::uint8_t address : std::initializer_list<std::uint8_t>{64, 253, 255}) {
        Device& device = *settings.GetIOSwitcher(address);
        CIOSwitcherDetails block;
        EXPECT_EQ(device.BusAll(0, 0, 1), -1);
        EXPECT_EQ(device.UpdateDeviceWithChannelArrayDetails(&block), -1);
        EXPECT_EQ(device.GetBusStatus(0, nullptr), -1);
        EXPECT_EQ(device.GetDCMeasurement(nullptr, nullptr, nullptr, nullptr, nullptr), 0);
    }
    EXPECT_TRUE(rig.events.empty());
    for (const short number : std::initializer_list<short>{-1, 0, 1, 2, 2048, 2049}) {
        EXPECT_EQ(settings.GetIOSwitcher(3)->IsChannelValid(number), number >= 1 && number <= 2048);
    }
}

TEST(IOSwitcher, RelayAnswers) {
    const struct {
        std::uint8_t channel, x, y;
        int closed, open; // matches with remove 0 and with remove 1
    } table[] = {{7, 0x80, 0, 1, 0},    {8, 0, 0x01, 1, 0},     {15, 255, 0x7F, 0, 1}, {16, 255, 255, 0, 0},
                 {64, 255, 0, 1, 1},    {64, 0xFE, 255, 0, 0},  {128, 0, 255, 1, 1},   {128, 255, 0xFE, 0, 0},
                 {192, 255, 255, 1, 1}, {192, 255, 0xFE, 0, 0}, {255, 255, 255, 0, 0}};
    for (const auto& row : table) {
        const STRUCT_COMMAND_RELAY_ADDREMOVE_BUS command{.channel = row.channel};
        const STRUCT_RESPONSE_RELAY_STATUS_BUS answer{.groupX = row.x, .groupY = row.y};
        EXPECT_EQ(AddRemoveResponseMatches(command, answer, 0), row.closed) << int{row.channel};
        EXPECT_EQ(AddRemoveResponseMatches(command, answer, 1), row.open) << int{row.channel};
    }
}

// What the base of devices makes of a stored status and of what the device answers.
TEST(KvNetDevice, StatusAndReset) {
    SwitchingRig rig;
    Bytes& status = rig.models[3].status;
    const auto make = [](std::uint32_t word, int notResponding) {
        return Device(CKvNetStatus(3, word), notResponding);
    };
    const struct {
        std::uint32_t stored;
        std::uint8_t on;
        const char* frames;
    } table[] = {{0x10011, 0, "3:00: 3:FF:01"}, {0x10011, 1, "3:00:"}, {0x00011, 0, "3:00:"}};
    for (const auto& row : table) {
        status[2] = row.on;
        Device device = make(row.stored, 0);
        EXPECT_EQ(device.UpdateDeviceFromSettings(), 1);
        EXPECT_EQ(rig.Frames(), row.frames);
        EXPECT_EQ(device.Status().GetStatusWord(), row.stored);
    }
    Device device = make(0x00011, 1);
    EXPECT_EQ(device.ResetDevice(0), 1);
    EXPECT_EQ(rig.Frames(), "") << "it does not respond, so nothing is sent";
    EXPECT_EQ(device.ResetChannelArrayDevice(), 1);
    EXPECT_EQ(device.Status().GetStatusWord(), 0x10011U);
    EXPECT_EQ(device.CKvNetDevice::CanDownloadFirmware() + device.IsChannelArrayDevice(), 2);
    EXPECT_EQ(device.CanDownloadFirmware(), 0);
    rig.silent = 3;
    EXPECT_EQ(make(0x10011, 0).UpdateDeviceFromSettings(), 0);
    EXPECT_EQ(device.RefreshStatus(), 0);
    EXPECT_TRUE(rig.host.user.Texts().empty() && rig.network.GetShowErrorMessages() == 1) << "read quietly";
    EXPECT_EQ(device.Status().GetStatusWord(), 0U);
    EXPECT_EQ(device.CKvNetDevice::CanDownloadFirmware() + device.IsChannelArrayDevice(), 0);
    EXPECT_EQ(device.ResetDevice(1), 0);
    EXPECT_EQ(rig.host.user.Texts().size(), 1U) << "a reset tells";
    EXPECT_EQ(Device().UpdateDeviceFromSettings() + Device().ResetDevice(1), 0);
}

} // namespace
} // namespace kalvio::test
