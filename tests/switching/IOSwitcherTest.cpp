// Every operation of the I/O switcher as literal frames.

#include "SwitchingRig.h"

#include "peripheral_network/bus/KvNetTrace.h"

namespace kalvio::test {
namespace {

// The switcher stands at address 3. A line: the operation with its arguments; for each exchange the frame,
// the data of its answer with a star behind each byte that must be as it is, and the bus and group that views
// are told of. Details take bus, group, relay, state and flags of each channel.
constexpr const char* kFrames = R"(
BusChannel 0 1 3 1 | 550301840BC2AA > 00 08* 00 ! 0001
BusChannel 1 0 7 1 | 5503018507C5AA > 80* 00 03 ! 0100
BusChannel 0 0 2 0 | 5503018602C9AA > FB* FF 03 ! 0000
BusChannel 1 1 0 0 | 5503018708C2AA > FF FE* 00 ! 0101
BusExclusive 0 0 2 0 1 | 55030382040000C9AA > 04* 00 00 ! 0000
BusExclusive 1 0 2 3 0 | 55030383FBFF03CFAA > FB* FF 03 ! 0100
BusExclusive 0 1 5 254 1 | 55030382002002ABAA > 00 20* 02 ! 0001
BusExclusive 1 1 7 1 0 | 55030383FF7F014DAA > FF 7F* 01 ! 0101
BusGroupExclusive 0 0 0 1 | 5503018C01C4AA > 01* ! 0000
BusGroupExclusive 1 0 1 0 | 5503018DFDC7AA > FD* ! 0100
BusGroupExclusive 0 1 7 1 | 5503018E8043AA > 80* ! 0001
BusGroupExclusive 1 1 3 0 | 5503018FF7CBAA > F7* ! 0101
BusAll 0 0 1 | 55030382FFFF00CFAA > FF* FF* 00 ! 00FF
BusAll 1 7 0 | 55030383000003C9AA > 00* 00* 03 ! 01FF
BusGroupAll 0 0 1 | 5503018CFFC6AA > FF* ! 0000
BusGroupAll 1 1 0 | 5503018F00C2AA > 00* ! 0101
BusBalance 0 2 1 | 5503018A03C4AA > 12 34 03* ! 00FF
BusBalance 1 1 0 | 5503018B00C6AA > 12 34 00* ! 01FF
BusLoad 0 5 1 | 5503018A03C4AA > 12 34 03* ! 00FF
BusLoad 1 3 0 | 5503018B01C5AA > 12 34 01* ! 01FF
PairChannel 0 0 2 1 | 5503018402CBAA > 04* 00 00 ! 0000 | 5503018503C9AA > 08* 00 00 ! 0100
PairChannel 1 1 5 0 | 550301870DBDAA > 00 DF* 00 ! 0101 | 550301860CBFAA > 00 EF* 00 ! 0001
PairExclusive 0 5 4 0 1 | 550306811000002000009BAA > 10* 00 00 20* 00 00 ! FF00
PairExclusive 1 2 3 7 0 | 55030681555103AAA203D3AA > 55 51* 03 AA A2* 03 ! FF01
PairGroupExclusive 0 1 0 1 | 5503018C01C4AA > 01* ! 0000 | 5503018D02C2AA > 02* ! 0100
PairGroupExclusive 1 6 7 0 | 5503018EBF04AA > BF* ! 0001 | 5503018F7F43AA > 7F* ! 0101
PairAll 2 1 | 55030681555502AAAA02C9AA > 55* 55* 02 AA* AA* 02 ! FFFF
PairAll 0 0 | 55030681000000000000CBAA > 00* 00* 00 00* 00* 00 ! FFFF
PairGroupAll 1 1 | 5503018E556EAA > 55* ! 0001 | 5503018FAA18AA > AA* ! 0101
PairGroupAll 0 0 | 5503018C00C5AA > 00* ! 0000 | 5503018D00C4AA > 00* ! 0100
PairBalance 0 2 1 | 5503018A03C4AA > 12 34 03* | 5503018B03C3AA > 12 34 03* ! FFFF
PairLoad 1 1 0 | 5503018B01C5AA > 12 34 01* | 5503018A01C6AA > 12 34 01* ! FFFF
Details | 55030681000000000000CBAA > 00* 00* 00* 00* 00* 00* ! FFFF
Details 0 0 3 1 2 0 1 7 1 5 | 5503038208800342AA > 08* 80* 03* ! FFFF
Details 1 0 0 1 1 1 0 0 0 0 | 55030383000001CBAA > 00* 00* 01* ! FFFF
Details 0 0 1 1 0 1 1 2 1 3 | 55030681020000000403C2AA > 02* 00* 00* 00* 04* 03* ! FFFF
GetBus 0 | 55030088CAAA > 01 02 03
GetBus 7 | 55030089C9AA > 01 02 03
GetDC | 55030092C0AA > 7F 80 01 FF
)";

struct ExchangeLine {
    std::string frame;
    Bytes answer;
    std::vector<bool> tested;
    std::vector<std::string> told; // the view updates
};

struct OperationLine {
    std::string text;
    std::vector<std::string> call;
    std::vector<ExchangeLine> exchanges;
};

ExchangeLine ParseExchange(const std::string& text) {
    ExchangeLine line;
    bool told = false;
    for (const std::string& word : Words(text)) {
        if (line.frame.empty()) {
            line.frame = word;
        } else if (told) {
            line.told = {"-601 0103" + word, "-609 1103" + word};
        } else if (word == "!") {
            told = true;
        } else if (word != ">") {
            line.answer.push_back(Hex(word.substr(0, 2))[0]);
            line.tested.push_back(word.ends_with('*'));
        }
    }
    return line;
}

std::vector<OperationLine> ParseLines() {
    std::vector<OperationLine> lines;
    std::istringstream text(kFrames);
    for (std::string line; std::getline(text, line);) {
        std::istringstream parts(line);
        std::string part;
        if (!std::getline(parts, part, '|')) {
            continue;
        }
        lines.push_back({line, Words(part), {}});
        while (std::getline(parts, part, '|')) {
            lines.back().exchanges.push_back(ParseExchange(part));
        }
    }
    return lines;
}

using Arguments = std::vector<std::uint8_t>;
using Call = std::function<short(CIOSwitcher&, const Arguments&)>;

short SendDetails(CIOSwitcher& device, const Arguments& a) {
    void* const block = device.GetChannelArrayDetails();
    for (std::size_t at = 0; at < a.size(); at += 5) {
        ChannelDetails entry{3, 0x11, a[at], a[at + 1], a[at + 2], a[at + 3], a[at + 4]};
        EXPECT_EQ(device.AddChannelToChannelArrayDetails(block, &entry), 1);
    }
    const short code = device.UpdateDeviceWithChannelArrayDetails(block);
    ::operator delete(block);
    return code;
}

short ReadVoltages(CIOSwitcher& device, const Arguments&) {
    signed char v[4] = {};
    short code = 99;
    const int done = device.GetDCMeasurement(&v[0], &v[1], &v[2], &v[3], &code);
    EXPECT_EQ(done, code == 0 ? 1 : 0);
    EXPECT_EQ(v[1] == -128 || v[3] == -1 || v[0] == 127, done != 0) << "signed bytes";
    return code;
}

const std::map<std::string, Call> kCalls{
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

// Plays lines against a switcher that answers as they say, but for one exchange.
class Player {
public:
    // Leaves the k-th exchange unanswered, or with one byte of its answer inverted; none: plays it through.
    static constexpr std::size_t kNone = SIZE_MAX;

    short Play(const OperationLine& line, std::size_t exchange = kNone, std::size_t byte = kNone) {
        rig.events.clear();
        std::size_t next = 0;
        rig.scripted = [&, next](std::span<const std::uint8_t>) mutable {
            const bool spoilt = next == exchange;
            if (spoilt && byte == kNone) {
                return Bytes();
            }
            const std::size_t mine = std::min(next++, line.exchanges.size() - 1);
            Bytes data = line.exchanges[mine].answer;
            if (spoilt) {
                data[byte] = static_cast<std::uint8_t>(~data[byte]);
            }
            return AnswerFrame(3, Hex(line.exchanges[mine].frame)[3], data);
        };
        Arguments arguments;
        for (std::size_t at = 1; at < line.call.size(); ++at) {
            arguments.push_back(static_cast<std::uint8_t>(std::stoi(line.call[at])));
        }
        return kCalls.at(line.call[0])(*rig.network.IOSwitchers().GetIOSwitcher(3), arguments);
    }

    // What has to have happened up to an exchange: all of it, or only that it was sent, twice by the unit.
    static std::vector<std::string> Expected(const OperationLine& line, std::size_t last, bool answered) {
        std::vector<std::string> events;
        for (std::size_t at = 0; at <= last; ++at) {
            const ExchangeLine& exchange = line.exchanges[at];
            events.push_back(exchange.frame);
            if (at == last && !answered) {
                events.push_back(exchange.frame);
                break;
            }
            events.insert(events.end(), exchange.told.begin(), exchange.told.end());
        }
        return events;
    }

    SwitchingRig rig;
};

TEST(IOSwitcher, FramesHintsAndEchoes) {
    Player player;
    const std::vector<OperationLine> lines = ParseLines();
    ASSERT_EQ(lines.size(), 39U);
    for (const OperationLine& line : lines) {
        SCOPED_TRACE(line.text);
        const std::size_t count = line.exchanges.size();
        EXPECT_EQ(player.Play(line), 0);
        EXPECT_EQ(player.rig.events, Player::Expected(line, count - 1, true));
        for (std::size_t at = 0; at < count; ++at) {
            EXPECT_EQ(player.Play(line, at), -3) << "no answer to exchange " << at;
            EXPECT_EQ(player.rig.events, Player::Expected(line, at, false));
            for (std::size_t byte = 0; byte < line.exchanges[at].answer.size(); ++byte) {
                const bool tested = line.exchanges[at].tested[byte];
                EXPECT_EQ(player.Play(line, at, byte), tested ? -10 : 0) << at << " byte " << byte;
                EXPECT_EQ(player.rig.events, Player::Expected(line, tested ? at : count - 1, true));
            }
        }
    }
}

// A view that looks another switcher up while it is told must not turn the second frame there; an address
// that is no device's is never sent to.
TEST(IOSwitcher, AddressStaysAndIsChecked) {
    SwitchingRig rig;
    CIOSwitcherSettings& settings = rig.network.IOSwitchers();
    const int observer = rig.host.application.AddViewObserver(
        [&settings](CView*, int, void*, int) { settings.GetIOSwitcher(9); });
    EXPECT_EQ(settings.GetIOSwitcher(3)->StereoPairGroupAll(0, 1), 0);
    EXPECT_EQ(rig.Frames(), "3:8C:55 3:8D:AA");
    rig.host.application.RemoveViewObserver(observer);

    rig.events.clear();
    EXPECT_EQ(settings.GetIOSwitcher(254), nullptr);
    for (const int address : {64, 253, 255}) {
        CIOSwitcher& device = *settings.GetIOSwitcher(static_cast<std::uint8_t>(address));
        CIOSwitcherDetails block;
        STRUCT_RESPONSE_RELAY_STATUS_BUS state;
        short status = 99;
        EXPECT_EQ(device.BusAll(0, 0, 1), -1);
        EXPECT_EQ(device.UpdateDeviceWithChannelArrayDetails(&block), -1);
        EXPECT_EQ(device.GetBusStatus(0, &state), -1);
        EXPECT_EQ(device.GetDCMeasurement(nullptr, nullptr, nullptr, nullptr, &status), 0);
        EXPECT_EQ(status, 99);
    }
    EXPECT_TRUE(rig.events.empty());
    EXPECT_EQ(settings.GetIOSwitcher(5)->GetDCMeasurement(nullptr, nullptr, nullptr, nullptr, nullptr), 1);
}

TEST(IOSwitcher, RelayAnswers) {
    const struct {
        std::uint8_t channel;
        std::uint8_t x;
        std::uint8_t y;
        int closed; // with remove 0
        int open;   // with remove 1
    } table[] = {{7, 0x80, 0, 1, 0},      {8, 0, 0x01, 1, 0},      {15, 0xFF, 0x7F, 0, 1},
                 {16, 0xFF, 0xFF, 0, 0},  {64, 0xFF, 0, 1, 1},     {64, 0xFE, 0xFF, 0, 0},
                 {128, 0, 0xFF, 1, 1},    {128, 0xFF, 0xFE, 0, 0}, {192, 0xFF, 0xFF, 1, 1},
                 {192, 0xFF, 0xFE, 0, 0}, {255, 0xFF, 0xFF, 0, 0}};
    for (const auto& row : table) {
        const STRUCT_COMMAND_RELAY_ADDREMOVE_BUS command{.channel = row.channel};
        const STRUCT_RESPONSE_RELAY_STATUS_BUS answer{.groupX = row.x, .groupY = row.y};
        EXPECT_EQ(AddRemoveResponseMatches(command, answer, 0), row.closed) << int{row.channel};
        EXPECT_EQ(AddRemoveResponseMatches(command, answer, 1), row.open) << int{row.channel};
    }
}

TEST(IOSwitcher, NumbersAndTrace) {
    SwitchingRig rig;
    CIOSwitcher& device = *rig.network.IOSwitchers().GetIOSwitcher(3);
    for (const short number : std::initializer_list<short>{-1, 0, 1, 2, 2048, 2049}) {
        EXPECT_EQ(device.IsBusValid(number), number == 0 || number == 1);
        EXPECT_EQ(device.IsGroupValid(number), number == 0 || number == 1);
        EXPECT_EQ(device.IsChannelValid(number), number >= 1 && number <= 2048);
    }
    EXPECT_EQ(device.CanDownloadFirmware(), 0);
    std::string trace;
    SetKvNetTraceHook([&trace](const CString& text) { trace += text; });
    device.StereoPairGroupAll(0, 1);
    SetKvNetTraceHook({});
    EXPECT_EQ(trace,
              "CIOSwitcher::StereoPairGroupAll\n"
              "  Command structure : 55 03 01 8C 55 70 AA \n  Response          : 55 03 01 8C 55 70 AA \n"
              "  Command structure : 55 03 01 8D AA 1A AA \n  Response          : 55 03 01 8D AA 1A AA \n");
}

// Given: the stored status word, what the device answers (-1: nothing). What each operation of the base makes
// of it.
TEST(KvNetDevice, StatusAndReset) {
    SwitchingRig rig;
    FakeNetwork& network = rig.network;
    const CKvNetStatus stored(3, 0x00010011U);
    const auto answers = [&network](std::int32_t word) {
        network.statusWords.clear();
        network.resets.clear();
        if (word >= 0) {
            network.statusWords[3] = word;
        }
    };
    const struct {
        std::uint32_t stored;
        std::int32_t answer;
        int done;
        std::vector<std::string> resets;
    } updates[] = {{0x10011, 0x00011, 1, {"3 on"}},
                   {0x10011, 0x10011, 1, {}},
                   {0x00011, 0x00011, 1, {}},
                   {0x10011, -1, 0, {}}};
    for (const auto& row : updates) {
        answers(row.answer);
        CIOSwitcher device(CKvNetStatus(3, row.stored), 0);
        EXPECT_EQ(device.UpdateDeviceFromSettings(), row.done);
        EXPECT_EQ(network.resets, row.resets);
        EXPECT_EQ(device.Status().GetStatusWord(), row.stored);
    }
    answers(0x00011);
    CIOSwitcher device(stored, 1);
    EXPECT_EQ(device.ResetDevice(0), 1);
    EXPECT_TRUE(network.resets.empty()) << "it does not respond, so nothing is sent";
    EXPECT_EQ(device.ResetChannelArrayDevice(), 1);
    EXPECT_EQ(network.resets, std::vector<std::string>{"3 on"});
    EXPECT_EQ(device.Status().GetStatusWord(), 0x10011U);
    EXPECT_EQ(device.IsNotResponding(), 0);
    EXPECT_EQ(device.IsChannelArrayDevice(), 1);
    answers(-1);
    EXPECT_EQ(device.RefreshStatus(), 0);
    EXPECT_TRUE(network.reports.empty()) << "read quietly";
    EXPECT_EQ(network.show, 1);
    EXPECT_EQ(device.Status().GetStatusWord(), 0U);
    EXPECT_EQ(device.CKvNetDevice::CanDownloadFirmware(), 0);
    EXPECT_EQ(device.IsChannelArrayDevice(), 0);
    EXPECT_EQ(device.ResetDevice(1), 0);
    EXPECT_EQ(network.reports.size(), 1U) << "a reset tells";
    CIOSwitcher nowhere;
    EXPECT_EQ(nowhere.UpdateDeviceFromSettings(), 0);
    EXPECT_EQ(nowhere.ResetDevice(1), 0);
    EXPECT_EQ(nowhere.IsNotResponding(), 1);
}

} // namespace
} // namespace kalvio::test
