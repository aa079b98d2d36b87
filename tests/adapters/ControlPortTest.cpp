// Transfers of scripts over an adapter's control port: what their arguments may be, what goes over the bus,
// and the devices that answer behind it.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "peripheral_network/NetworkRig.h"
#include "simulator/peripherals/KedaAdapter.h"

namespace kalvio::test {
namespace {

VARIANT Numbers(std::initializer_list<int> values) {
    VARIANT::Array elements;
    for (const int value : values) {
        elements.push_back(VARIANT::Short(static_cast<std::int16_t>(value)));
    }
    return VARIANT::FromArray(elements);
}

VARIANT Zeroes(std::size_t count) {
    return VARIANT::FromArray(VARIANT::Array(count, VARIANT::Short(0)));
}

CString Shown(const VARIANT& value) {
    const VARIANT::Array* elements = value.GetArray();
    if (elements == nullptr) {
        return value.ToText();
    }
    CString text = "[";
    for (const VARIANT& element : *elements) {
        text += (text.size() > 1 ? " " : "") + element.ToText();
    }
    return text + "]";
}

// An adapter at 8 that answers an SPI transfer with the complement of its bytes.
struct PortRig : NetworkRig {
    PortRig() {
        unit.AttachPeripheral(8, [this](auto frame) {
            const Bytes data(frame.begin() + 4, frame.end() - 2);
            if (frame[3] == 0xCA || frame[3] == 0xCB) {
                sent += Format("%02X ", frame[3]) + ToHex(data);
            }
            Bytes answer(frame[3] == 0 ? Bytes{0x21, 0x00, 0x01} : Bytes{});
            for (const std::uint8_t byte : frame[3] == 0xCA ? data : Bytes{}) {
                answer.push_back(static_cast<std::uint8_t>(~byte));
            }
            return AnswerFrame(8, frame[3], answer);
        });
        EXPECT_TRUE(settings.OLESetCurrentDevice(8));
    }
    CString sent;
    CKEDAAdapterSettings& settings = *network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
};

TEST(ControlPort, ArgumentsOfTransfers) {
    const VARIANT ten = Numbers({1, 2, 3, 4, 5, 6, 7, 8, 9, 10});
    const VARIANT eleven = Numbers({1, 2, 3, 4, 5, 6, 7, 8, 9, 10, 11});
    const VARIANT square = VARIANT::FromArray({Numbers({1, 2}), Numbers({3, 4})});
    const VARIANT gap = VARIANT::FromArray({VARIANT::Short(1), VARIANT()});
    const VARIANT word = VARIANT::FromArray({VARIANT::Short(1), VARIANT::String("x")});
    const VARIANT digits = VARIANT::FromArray({VARIANT::String("7"), VARIANT::Double(8.0)});
    const struct {
        const char* what;
        int count;
        VARIANT transmit;
        VARIANT receive;      // of SPI
        const char* sent;     // over SPI; null: refused
        const char* received; // by a receive argument that is taken
        const char* byI2c;    // null: refused
    } kRows[] = {
        {"an array", 2, Numbers({1, 0x5A}), Zeroes(2), "CA 015A", "[254 165]", "CB 34015A"},
        {"a single value", 1, VARIANT::Short(0x5A), VARIANT::Short(0), "CA 5A", "165", "CB 345A"},
        {"a single value into an array", 1, VARIANT::Short(1), Zeroes(1), "CA 01", "[254]", "CB 3401"},
        {"elements above 255", 2, Numbers({0x155, -1}), Zeroes(2), "CA 55FF", "[170 0]", "CB 3455FF"},
        {"fewer than there are", 1, Numbers({9, 8}), Zeroes(2), "CA 09", "[246 0]", "CB 3409"},
        {"more than there are", 3, Numbers({9, 8}), Zeroes(2), "CA 090800", "[246 247]", "CB 34090800"},
        {"none", 0, Numbers({9}), Zeroes(1), "CA ", "[0]", "CB 34"},
        {"ten", 10, ten, Zeroes(10), "CA 0102030405060708090A", "[254 253 252 251 250 249 248 247 246 245]",
         "CB 340102030405060708090A"},
        {"numbers in words", 2, digits, Zeroes(2), "CA 0708", "[248 247]", "CB 340708"},
        {"eleven", 11, eleven, Zeroes(11), nullptr, "", nullptr},
        {"eleven of few", 11, ten, Zeroes(10), nullptr, "", nullptr},
        {"less than none", -1, ten, Zeroes(10), nullptr, "", nullptr},
        {"two dimensions", 2, square, Zeroes(2), nullptr, "", nullptr},
        {"an empty element", 2, gap, Zeroes(2), nullptr, "", nullptr},
        {"a word", 2, word, Zeroes(2), nullptr, "", nullptr},
        {"nothing", 1, VARIANT(), Zeroes(1), nullptr, "", nullptr},
        {"a single value for two", 2, VARIANT::Short(1), Zeroes(2), nullptr, "", nullptr},
        {"unequal lengths", 2, Numbers({1, 2}), Zeroes(3), nullptr, "", "CB 340102"},
        {"two dimensions to receive", 2, Numbers({1, 2}), square, nullptr, "", "CB 340102"},
        {"a single value to receive two", 2, Numbers({1, 2}), VARIANT::Short(0), nullptr, "", "CB 340102"},
    };
    PortRig rig;
    const auto expect = [&rig](const char* sent, bool done, const char* method) {
        EXPECT_EQ(done, sent != nullptr);
        EXPECT_EQ(rig.sent, sent != nullptr ? sent : "");
        rig.sent.clear();
        const CString failed = Format("The method failed: the call of %s was not carried out.", method);
        EXPECT_EQ(rig.host.user.Texts(),
                  sent != nullptr ? std::vector<CString>{} : std::vector<CString>{failed});
        rig.host.user.Clear();
    };
    for (const auto& row : kRows) {
        for (const bool byReference : {false, true}) {
            SCOPED_TRACE(Format("%s, %s", row.what, byReference ? "by reference" : "by value"));
            VARIANT transmit = row.transmit;
            VARIANT receive = row.receive;
            const VARIANT given = byReference ? VARIANT::Reference(&transmit) : transmit;
            const auto count = static_cast<std::int16_t>(row.count);
            expect(row.sent, rig.settings.OLESendSPIData(count, given, VARIANT::Reference(&receive)),
                   "KEDA_SendSPIData");
            EXPECT_EQ(Shown(receive), row.sent != nullptr ? row.received : Shown(row.receive));
            EXPECT_EQ(Shown(transmit), Shown(row.transmit));
            expect(row.byI2c, rig.settings.OLESendI2CData(0x1A, count, given), "KEDA_SendI2CData");
        }
    }
    for (const std::int16_t address : std::initializer_list<std::int16_t>{-1, 128, 300}) {
        expect(nullptr, rig.settings.OLESendI2CData(address, 1, VARIANT::Short(1)), "KEDA_SendI2CData");
    }
}

// Register files behind the port: a first byte with 80 set reads, another writes what follows.
TEST(ControlPort, ClockModesMustMatchAndAddressesBeAcknowledged) {
    for (int mode = 0; mode < 4; ++mode) { // bit 1 the polarity, bit 0 the phase
        NetworkRig rig;
        simulator::KedaAdapterOptions options;
        options.spiMode = {(mode & 1) != 0, (mode & 2) != 0};
        const auto device = rig.unit.Plug<simulator::KedaAdapter>(std::uint8_t{8}, options);
        CKEDAAdapterSettings& settings = *rig.network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
        ASSERT_TRUE(settings.OLESetCurrentDevice(8));
        for (int used = 0; used < 4; ++used) {
            SCOPED_TRACE(Format("device in mode %d, port in %d", mode, used));
            settings.SetProperty("KEDA_SPIClockPhase", VARIANT::Bool((used & 1) != 0));
            settings.SetProperty("KEDA_SPIClockPolarity", VARIANT::Bool((used & 2) != 0));
            VARIANT received = Zeroes(2);
            EXPECT_TRUE(
                settings.OLESendSPIData(2, Numbers({0x03, 0x40 + used}), VARIANT::Reference(&received)));
            EXPECT_EQ(device->SpiRegisters()[3] == 0x40 + used, used == mode);
            EXPECT_TRUE(settings.OLESendSPIData(2, Numbers({0x83, 0}), VARIANT::Reference(&received)));
            EXPECT_EQ(Shown(received).ends_with(Format(" %d]", 0x40 + used)), used == mode);
        }
        CKEDAAdapter& adapter = *settings.GetKEDAAdapter(8);
        EXPECT_EQ(adapter.GetI2CStatus(), 0);
        EXPECT_FALSE(settings.OLESendI2CData(0x1B, 2, Numbers({3, 7})));
        EXPECT_EQ(adapter.GetI2CStatus(), 2);
        EXPECT_TRUE(settings.OLESendI2CData(0x1A, 2, Numbers({3, 7})));
        EXPECT_EQ(adapter.GetI2CStatus(), 1);
        EXPECT_EQ(device->I2cRegisters()[3], 7);
    }
}

} // namespace
} // namespace kalvio::test
