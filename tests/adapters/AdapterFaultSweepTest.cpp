// Every request of every kind of work with an adapter failing in every way: the image keeps the wish, setters
// stay silent, transfers and methods say that they failed, other adapters are left alone, and the same work
// done again brings the unit to where it would have been.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "peripheral_network/NetworkRig.h"
#include "platform/Archive.h"
#include "simulator/peripherals/KedaAdapter.h"
#include "simulator/peripherals/Misbehaving.h"

namespace kalvio::test {
namespace {

using simulator::FaultKind;
using simulator::KedaAdapter;

constexpr std::uint8_t kFirst = 8; // of three

// The device's registers in the order of its status, as the image, in the order of archives, has them;
// without the rates that a unit measures, which it keeps to itself.
CString InStatusOrder(const keda::Image& image) {
    constexpr std::size_t kPlaces[] = {0, 1, 5, 6, 7, 8, 2, 3, 4, 9, 10, 11, 12, 13, 14, 15, 16, 17, 19, 18};
    Bytes bytes;
    for (const std::size_t place : kPlaces) {
        const bool measured = place == 10 || place == 17;
        bytes.push_back(measured ? image[place] & 0xF8 : image[place]);
    }
    return ToHex(bytes);
}

struct AdapterBus : NetworkRig {
    AdapterBus() {
        for (std::size_t i = 0; i < devices.size(); ++i) {
            devices[i] = unit.Plug<KedaAdapter>(static_cast<std::uint8_t>(kFirst + i));
            settings.GetKEDAAdapter(devices[i]->Address());
        }
        settings.OLESetCurrentDevice(kFirst);
        unit.ClearLogs();
    }
    CKEDAAdapter& Adapter(std::uint8_t address = kFirst) { return *settings.GetKEDAAdapter(address); }
    void Set(const char* direction, const std::vector<std::pair<const char*, int>>& values) {
        CCmdTarget* target = settings.GetProperty(direction).value.GetTarget();
        for (const auto& [name, value] : values) {
            EXPECT_TRUE(target->SetProperty(name, VARIANT::Short(static_cast<std::int16_t>(value))).Ok());
        }
    }
    void Configure() {
        Set("Generator", {{"KEDA_EnableGenerator", 1},
                          {"KEDA_AudioVoltage", 2},
                          {"KEDA_AudioOn", 1},
                          {"KEDA_SlotsPerWire", 16},
                          {"KEDA_DataLength", 20},
                          {"KEDA_MasterClockMultiplier", 256}});
        Set("Analyzer", {{"KEDA_EnableAnalyzer", 1},
                         {"KEDA_SlotLength", 16},
                         {"KEDA_SerialClockDir", CLOCKDIR_OUT},
                         {"KEDA_Delay", 14},
                         {"KEDA_BitClockInvert", 1}});
        settings.OLESetGeneratorRouting(1, 9, ROUTING_B);
        settings.OLESetAnalyzerRouting(1, 2, 2);
    }
    bool SendSpi() {
        VARIANT received;
        return settings.OLESendSPIData(1, VARIANT::Short(0x5A), VARIANT::Reference(&received));
    }
    // The unit, the library and the devices as after a first bring-up.
    void Renew() {
        hardware.TerminateHardware();
        ASSERT_EQ(BringUp(), 1);
        for (const auto& device : devices) {
            Adapter(device->Address()).InitMemberVars();
            ASSERT_EQ(Adapter(device->Address()).ResetDevice(1), 1);
        }
        Take();
    }
    [[nodiscard]] CString Registers(std::size_t device) const {
        auto registers = devices[device]->Registers();
        registers[10] &= 0xF8;
        registers[17] &= 0xF8;
        return ToHex(registers);
    }

    std::array<std::shared_ptr<KedaAdapter>, 3> devices;
    CKEDAAdapterSettings& settings = *network.GetFormatConverterSettings()->GetKEDAAdapterSettings();
};

TEST(AdapterFaultSweep, EveryRequestOfEveryWork) {
    AdapterBus rig;
    rig.Configure();
    rig.Adapter(9).SetSlaveAddress(0x55);
    CArchive stored;
    rig.settings.Serialize(stored);
    const struct {
        const char* name;
        std::function<void()> run;
        const char* method; // what a failure names; null: it stays silent
        bool touchesAll;
    } works[] = {
        {"select", [&] { rig.settings.OLESetCurrentDevice(kFirst); }, "KVNET_Reset", false},
        {"configure", [&] { rig.Configure(); }, "Routing", false},
        {"SPI", [&] { rig.SendSpi(); }, "KEDA_SendSPIData", false},
        {"I2C", [&] { rig.settings.OLESendI2CData(0x1A, 1, VARIANT::Short(5)); }, "KEDA_SendI2CData", false},
        {"read back", [&] { rig.Adapter().UpdateSettingsFromDevice(); }, nullptr, false},
        {"clocks", [&] { rig.settings.GetProperty("KEDA_BitClockFreq"); }, nullptr, false},
        {"load",
         [&] {
             CString error;
             EXPECT_TRUE(rig.settings.Load(stored.Bytes(), error)) << error;
         },
         nullptr, true},
    };
    using enum FaultKind;
    for (const auto& work : works) {
        rig.Renew();
        work.run();
        const CString image = ToHex(rig.Adapter().Registers());
        const CString reached = rig.Registers(0);
        for (const auto kind : {FailAny, FailWrite, FailRead, WrongEcho, Refuse, ShortAnswer, StaleInput,
                                Silence, Disconnect, CorruptPeripheralEcho, PeripheralStatus}) {
            bool shows = true;
            for (std::uint32_t k = 1; shows && k < 200; k += work.touchesAll ? 7 : 1) {
                SCOPED_TRACE(Format("%s, kind %d, request %u", work.name, static_cast<int>(kind), k));
                rig.Renew();
                const CString others = rig.Registers(1) + rig.Registers(2);
                const std::uint32_t before = rig.unit.FaultsShown();
                rig.unit.AddFault({kind, k, 1, kind == PeripheralStatus ? 0xFFFDU : 0x0205U});
                work.run();
                shows = rig.unit.FaultsShown() != before;
                rig.unit.ClearFaults();
                if (work.name != CString("read back") && work.name != CString("clocks")) {
                    EXPECT_EQ(ToHex(rig.Adapter().Registers()), image) << "keeps the wish";
                }
                EXPECT_EQ(rig.network.GetShowErrorMessages(), 1);
                for (const CString& text : rig.host.user.Texts()) {
                    const bool ofLink =
                        text.starts_with("The Kalvio software has encountered errors in the USB");
                    EXPECT_TRUE(ofLink || (work.method != nullptr && text.find(work.method) != CString::npos))
                        << text;
                }
                EXPECT_TRUE(work.touchesAll || rig.Registers(1) + rig.Registers(2) == others);
                rig.hardware.TerminateHardware();
                ASSERT_EQ(rig.BringUp(), 1);
                work.run();
                EXPECT_EQ(rig.Registers(0), reached);
                EXPECT_EQ(ToHex(rig.Adapter().Registers()), image);
                EXPECT_EQ(rig.Registers(0), InStatusOrder(rig.Adapter().Registers()));
            }
        }
    }
}

// Pulled out while it is in use, and plugged in again as a device just switched on.
TEST(AdapterFaultSweep, AnAdapterThatIsPulledOutComesBack) {
    AdapterBus rig;
    rig.Configure();
    const CString reached = rig.Registers(0);
    rig.unit.Detach(*rig.devices[0]);
    rig.Take();
    EXPECT_TRUE(rig.settings.SetProperty("KEDA_AudioVoltage", VARIANT::Short(3)).Ok());
    EXPECT_FALSE(rig.SendSpi());
    EXPECT_FALSE(rig.settings.OLESetGeneratorRouting(1, 1, ROUTING_A));
    EXPECT_EQ(rig.host.user.Texts().size(), 2U); // of the methods alone
    EXPECT_EQ(rig.Adapter().GetAudioVoltageSelect(), 3);
    EXPECT_EQ(rig.Adapter().UpdateDeviceFromSettings(), 0);
    EXPECT_FALSE(rig.settings.OLESetCurrentDevice(kFirst)); // found off, and not to be switched on
    rig.devices[0] = rig.unit.Plug<KedaAdapter>(kFirst);
    EXPECT_TRUE(rig.settings.OLESetCurrentDevice(kFirst)); // it answers again
    EXPECT_NE(rig.Registers(0), reached);
    rig.Adapter().SetAudioVoltageSelect(2, 0);
    EXPECT_EQ(rig.Adapter().UpdateDeviceFromSettings(), 1);
    EXPECT_EQ(rig.Registers(0), reached);
}

} // namespace
} // namespace kalvio::test
