// The adapters' document as scripts and archives see it: messages, what loading keeps.

#include "adapters/FormatConverterSettings.h"
#include "adapters/KEDAAdapterSettings.h"
#include "peripheral_network/NetworkRig.h"

namespace kalvio::test {
namespace {

class KEDADocumentTest : public ::testing::Test {
protected:
    KEDADocumentTest() : settings(*rig.network.GetFormatConverterSettings()->GetKEDAAdapterSettings()) {}
    // A device at an address that answers every command; `flags` is the last byte of its status.
    void Plug(std::uint8_t address, std::uint8_t flags, bool resets) {
        rig.unit.AttachPeripheral(address, [=](auto frame) {
            if (frame[3] == 0xFF && !resets) {
                return Bytes{};
            }
            const bool status = frame[3] == 0 || frame[3] == 0xFF;
            return AnswerFrame(address, frame[3], status ? Bytes{0x21, 0x00, flags} : Bytes{});
        });
    }

    NetworkRig rig;
    CKEDAAdapterSettings& settings;
};

TEST_F(KEDADocumentTest, FailuresOfTheBusAndOfArrays) {
    Plug(8, 0x01, true);
    ASSERT_TRUE(settings.OLESetCurrentDevice(8));
    Plug(9, 0x00, false); // in standby, and stays there
    EXPECT_FALSE(settings.OLESetCurrentDevice(9));
    EXPECT_EQ(settings.CurrentAddress(), 8);

    EXPECT_EQ(rig.network.DefineArray("slots", 0, 0), 0);
    EXPECT_EQ(rig.network.DefineArray("pairs", 1, 0), 0);
    rig.host.user.Clear();
    EXPECT_FALSE(settings.OLEAddToArray(8, 1, 0, "none"));
    EXPECT_FALSE(settings.OLEAddToArray(8, 1, 0, "pairs"));
    EXPECT_FALSE(settings.OLEAddToStereoArray(8, 0, "slots"));
    const CString mismatch = " method failed because an attempt was made to add stereo channels to a "
                             "non-stereo Channel Array, or vice versa.";
    EXPECT_EQ(
        rig.host.user.Texts(),
        (std::vector<CString>{"The KEDA_AddToArray method failed because the specified Channel Array "
                              "has not been defined.",
                              "The KEDA_AddToArray" + mismatch, "The KEDA_AddToStereoArray" + mismatch}));

    rig.host.user.Clear();
    rig.unit.AttachPeripheral(8, [](auto) { return Bytes{}; });
    EXPECT_TRUE(settings.SetProperty("KEDA_AudioOn", VARIANT::Bool(true)).Ok()); // the wish stays
    EXPECT_EQ(settings.Adapters().at(8)->GetAudioOn(), 1);
    EXPECT_EQ(rig.host.user.Texts(), std::vector<CString>{});
}

TEST_F(KEDADocumentTest, AdaptersAreStoredByAddressAndLoadedOnlyWhenWanted) {
    for (const std::uint8_t address : Bytes{9, 2, 5}) {
        ASSERT_NE(settings.CreateKEDAAdapter(address, 1), nullptr); // nobody answers
    }
    CArchive stored;
    settings.Serialize(stored);
    std::vector<std::uint8_t> bytes = stored.Bytes();
    const std::size_t record = (bytes.size() - 6) / 3;
    EXPECT_EQ(ToHex(std::span(bytes).first(6)), "010000000300");
    EXPECT_EQ((Bytes{bytes[6], bytes[6 + record], bytes[6 + 2 * record]}), (Bytes{2, 5, 9}));

    CString error;
    bytes[0] = 0; // not wanted
    rig.host.application.discardStoredValues = true;
    ASSERT_TRUE(settings.Load(bytes, error)) << error;
    EXPECT_EQ(settings.Adapters().size(), 3U); // kept, yet the flag is taken
    EXPECT_EQ(settings.GetSaveFlag(), 0);
    rig.host.application.discardStoredValues = false;
    ASSERT_TRUE(settings.Load(bytes, error)) << error;
    EXPECT_TRUE(settings.Adapters().empty());
    bytes[0] = 1;
    ASSERT_TRUE(settings.Load(bytes, error)) << error;
    EXPECT_EQ(settings.Adapters().size(), 3U);
}

} // namespace
} // namespace kalvio::test
