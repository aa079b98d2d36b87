#include "simulator/peripherals/PeripheralList.h"

#include "simulator/peripherals/BusFrame.h"
#include "simulator/peripherals/FirmwareReceiver.h"
#include "simulator/peripherals/IoSwitcher.h"
#include "simulator/peripherals/KedaAdapter.h"
#include "simulator/peripherals/Misbehaving.h"

#include <charconv>
#include <set>
#include <utility>

namespace kalvio::simulator {

namespace {

constexpr std::string_view kNobody = "none";
constexpr std::string_view kTwin = "twin";
constexpr unsigned kLowestRateHz = 8000;
constexpr unsigned kHighestRateHz = 768000;

// Everything that the options of an entry can say.
struct Wishes {
    DeviceIdentity identity;
    KedaAdapterOptions keda;
    std::optional<Misbehaviour> fault;
    bool twin = false;
};

std::shared_ptr<Peripheral> MakeSwitcher(std::uint8_t address, const Wishes& wishes) {
    return std::make_shared<IoSwitcher>(address, wishes.identity);
}

std::shared_ptr<Peripheral> MakeLoader(std::uint8_t address, const Wishes& wishes) {
    return std::make_shared<FirmwareReceiver>(address, FirmwareReceiverOptions{wishes.identity, false});
}

std::shared_ptr<Peripheral> MakeKeda(std::uint8_t address, const Wishes& wishes) {
    KedaAdapterOptions options = wishes.keda;
    options.identity = wishes.identity;
    return std::make_shared<KedaAdapter>(address, options);
}

struct Kind {
    std::string_view name;
    DeviceIdentity identity;
    std::string_view options; // beyond those of every kind, each with a blank before and behind it
    std::shared_ptr<Peripheral> (*make)(std::uint8_t address, const Wishes& wishes);
};

const Kind kKinds[] = {
    {"switcher", kSwitcherIdentity, " ", MakeSwitcher},
    {"loader", FirmwareReceiverOptions{}.identity, " class ", MakeLoader},
    {"keda", KedaAdapterOptions{}.identity, " rate device spi i2c ", MakeKeda},
};

std::optional<unsigned> Number(std::string_view text, int base, unsigned lowest, unsigned highest) {
    unsigned value = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), value, base);
    if (error != std::errc{} || end != text.data() + text.size() || value < lowest || value > highest) {
        return std::nullopt;
    }
    return value;
}

std::optional<unsigned> Letter(std::string_view text) {
    if (text.size() != 1 || text[0] < 'A' || text[0] > 'P') {
        return std::nullopt;
    }
    return static_cast<unsigned>(text[0] - 'A');
}

bool SetVersion(std::string_view value, std::uint8_t& nibble) {
    const auto version = Letter(value);
    nibble = static_cast<std::uint8_t>(version.value_or(0));
    return version.has_value();
}

bool SetRate(std::string_view value, unsigned lowest, double& rate) {
    const auto number = Number(value, 10, lowest, kHighestRateHz);
    rate = number.value_or(0);
    return number.has_value();
}

bool SetFault(std::string_view value, Wishes& wishes) {
    wishes.twin = value == kTwin;
    wishes.fault = FindMisbehaviour(value);
    return wishes.twin || wishes.fault.has_value();
}

bool SetClass(std::string_view value, Wishes& wishes) {
    const auto number = Number(value, 16, 0, 0xFF);
    wishes.identity.classType = static_cast<std::uint8_t>(number.value_or(0));
    return number.has_value();
}

// The usual numbers of the modes: bit 1 the polarity, bit 0 the phase.
bool SetSpiMode(std::string_view value, Wishes& wishes) {
    const auto number = Number(value, 10, 0, 3);
    wishes.keda.spiMode = {(number.value_or(0) & 1) != 0, (number.value_or(0) & 2) != 0};
    return number.has_value();
}

bool SetI2cAddress(std::string_view value, Wishes& wishes) {
    const auto number = Number(value, 16, 0, 0x7F);
    wishes.keda.i2cAddress = static_cast<std::uint8_t>(number.value_or(0));
    return number.has_value();
}

struct Option {
    std::string_view name;
    const char* takes;
    bool (*set)(std::string_view value, Wishes& wishes);
};

constexpr Option kOptions[] = {
    {"hw", "a letter A to P",
     [](std::string_view value, Wishes& wishes) { return SetVersion(value, wishes.identity.hardware); }},
    {"fw", "a letter A to P",
     [](std::string_view value, Wishes& wishes) { return SetVersion(value, wishes.identity.firmware); }},
    {"fault", "twin or a fault", SetFault},
    {"class", "two hex digits", SetClass},
    {"rate", "a frame rate of 8000 to 768000 Hz",
     [](std::string_view value, Wishes& wishes) {
         return SetRate(value, kLowestRateHz, wishes.keda.clocks.digitalRateHz);
     }},
    {"device", "a frame rate of up to 768000 Hz, 0 for none",
     [](std::string_view value, Wishes& wishes) {
         return SetRate(value, 0, wishes.keda.clocks.deviceRateHz);
     }},
    {"spi", "a mode 0 to 3", SetSpiMode},
    {"i2c", "an address of two hex digits up to 7F", SetI2cAddress},
};

constexpr std::string_view kCommonOptions = " hw fw fault ";

// Cuts the text off up to the separator, which goes as well.
std::string_view Cut(std::string_view& text, char separator) {
    const std::size_t end = text.find(separator);
    const std::string_view head = text.substr(0, end);
    text = end == std::string_view::npos ? std::string_view{} : text.substr(end + 1);
    return head;
}

bool Knows(const Kind& kind, std::string_view option) {
    const std::string word = " " + std::string(option) + " ";
    return kCommonOptions.find(word) != std::string_view::npos ||
           kind.options.find(word) != std::string_view::npos;
}

// What is wrong with an option of an entry; empty when it was taken.
std::string TakeOption(const Kind& kind, std::string_view text, Wishes& wishes) {
    const std::string_view name = Cut(text, '=');
    for (const Option& option : kOptions) {
        if (option.name != name || !Knows(kind, name)) {
            continue;
        }
        if (option.set(text, wishes)) {
            return {};
        }
        std::string fault = std::string(name) + " takes " + option.takes;
        return option.set == SetFault ? fault + " (" + MisbehaviourNames() + ")" : fault;
    }
    return "a " + std::string(kind.name) + " has no option '" + std::string(name) + "'; it has" +
           std::string(kCommonOptions) + std::string(kind.options.substr(1));
}

class ListParser {
public:
    PeripheralList Parse(std::string_view text) {
        if (text == kNobody) {
            return {};
        }
        for (bool more = true; more && m_list.error.empty();) {
            more = text.find(',') != std::string_view::npos;
            m_entry = Cut(text, ',');
            TakeEntry(m_entry);
        }
        if (!m_list.error.empty()) {
            m_list.peripherals.clear();
        }
        return std::move(m_list);
    }

private:
    void TakeEntry(std::string_view rest) {
        std::string_view head = Cut(rest, ':');
        const std::string_view name = Cut(head, '@');
        for (const Kind& kind : kKinds) {
            if (kind.name == name) {
                return TakeDevice(kind, head, rest);
            }
        }
        Fail("the kinds are switcher, loader and keda, as in switcher@3; or none at all");
    }

    void TakeDevice(const Kind& kind, std::string_view addressText, std::string_view rest) {
        const auto address = Number(addressText, 10, 0, kLastPeripheralAddress);
        if (!address) {
            return Fail("the address is a number 0 to 63");
        }
        if (!m_addresses.insert(*address).second) {
            return Fail("the address is taken already");
        }
        Wishes wishes;
        wishes.identity = kind.identity;
        while (!rest.empty()) {
            if (const std::string fault = TakeOption(kind, Cut(rest, ':'), wishes); !fault.empty()) {
                return Fail(fault);
            }
        }
        Add(kind, static_cast<std::uint8_t>(*address), wishes);
    }

    void Add(const Kind& kind, std::uint8_t address, const Wishes& wishes) {
        std::shared_ptr<Peripheral> device = kind.make(address, wishes);
        if (wishes.fault) {
            device = std::make_shared<Misbehaving>(std::move(device), *wishes.fault);
        }
        m_list.peripherals.push_back(std::move(device));
        if (wishes.twin) {
            m_list.peripherals.push_back(kind.make(address, wishes));
        }
    }

    void Fail(const std::string& why) { m_list.error = "peripheral '" + std::string(m_entry) + "': " + why; }

    PeripheralList m_list;
    std::string_view m_entry;
    std::set<unsigned> m_addresses;
};

} // namespace

PeripheralList ParsePeripherals(std::string_view text) {
    return ListParser().Parse(text);
}

} // namespace kalvio::simulator
