#include "regulation/Document.h"

namespace kalvio::test {
namespace {

using Bytes = std::vector<std::uint8_t>;

// One value a line: its group's flag, then the value.
constexpr const char* kStored = "01 89 0c 00 00"             // result 3209
                                "01 02 00 00 00"             // its FFT detector
                                "01 04 00 00 00"             // channel: both
                                "01 02 00 00 00"             // type: minimum
                                "01 00 00 00 00 00 00 f8 3f" // regulate to 1.5
                                "01 0b 00 00 00"             // in Hz
                                "01 01 00 00 00"             // tolerance type: ratio
                                "01 00 00 00 00 00 00 e0 3f" // offset 0.5
                                "01 00 00 00 00 00 00 d0 3f" // ratio 0.25
                                "01 26 00 00 00"             // in %
                                "01 00 00 00 00 00 80 48 40" // sensitivity 49
                                "01 03 00 00 00"             // trend
                                "01 00 00 00 00"             // use settling
                                "01 10 0e 00 00"             // time-out 3600
                                "01 01 00 00 00"             // continuous
                                "01 04 00 00 00"             // source: jitter amplitude
                                "01 03 00 00 00"             // its FFT detector
                                "01 01 00 00 00"             // opposite channel
                                "01 00 00 00 00 00 00 f0 bf" // lower limit -1
                                "01 00 00 00 00 00 00 00 40" // upper limit 2
                                "01 00 00 00 00 00 00 10 40" // step 4
                                "01 00 00 00 00"             // not automatic
                                "01 29 00 00 00"             // in UI
                                "01 02 00 00 00";            // direction: unknown
constexpr std::size_t kSize = 17 * 5 + 7 * 9;

constexpr double kStoredValues[kFieldCount] = {3209, 2, 4, 2, 1.5, 11, 1,  0.5, 0, 0.25, 38,   49, 3,
                                               0,    4, 3, 1, -1,  2,  41, 4,   0, 2,    3600, 1};

Bytes FromHex(const CString& hex) {
    Bytes bytes;
    CString digits;
    for (const char c : hex) {
        if (c != ' ') {
            digits += c;
        }
        if (digits.size() == 2) {
            bytes.push_back(static_cast<std::uint8_t>(std::stoi(digits, nullptr, 16)));
            digits.clear();
        }
    }
    return bytes;
}

class RegulationArchiveTest : public DocumentTest {
protected:
    Bytes Store() {
        CArchive archive;
        document.Serialize(archive);
        return archive.Bytes();
    }

    bool Load(const Bytes& bytes) {
        CString error;
        const bool loaded = document.Load(bytes, error);
        EXPECT_EQ(error.empty(), loaded);
        return loaded;
    }

    std::vector<double> Values() {
        std::vector<double> values;
        for (int index = 0; index < kFieldCount; ++index) {
            values.push_back(document.GetStoredValue(index));
        }
        return values;
    }

    const Bytes m_bytes = FromHex(kStored);
    const std::vector<double> m_stored{std::begin(kStoredValues), std::end(kStoredValues)};
};

} // namespace

TEST_F(RegulationArchiveTest, LiteralBytes) {
    ASSERT_EQ(m_bytes.size(), kSize);
    ASSERT_TRUE(Load(m_bytes));
    EXPECT_EQ(Values(), m_stored);
    EXPECT_EQ(Store(), m_bytes);
}

TEST_F(RegulationArchiveTest, LoadingRemembersTheReferencesOfItsValues) {
    ASSERT_TRUE(Load(m_bytes));
    host.analyser.references.fullScale = 1234.0;
    ASSERT_TRUE(Load(m_bytes));
    EXPECT_EQ(document.ResultReferences().fullScale, 1234.0);
    host.analyser.references.fullScale = 4321.0;
    host.application.discardStoredValues = true;
    ASSERT_TRUE(Load(m_bytes));
    EXPECT_EQ(document.ResultReferences().fullScale, 1234.0);
}

TEST_F(RegulationArchiveTest, SaveTable) {
    CConfigTreeCtrl tree;
    const HTREEITEM parent = tree.AddCheckItem(nullptr, "Regulation", 1, true);
    document.PopulateConfigTreeCtrl(&tree, parent);
    const HTREEITEM result = tree.GetChildItem(parent);
    const HTREEITEM source = tree.GetNextSiblingItem(result);
    EXPECT_EQ(std::tuple(result->id, result->ticked, source->id, source->ticked),
              std::tuple(901, true, 920, true));
    EXPECT_EQ(tree.GetChildItem(source)->text, "Source to vary");
    tree.SetTicked(result, false);
    tree.SetTicked(source, false);
    document.PopulateSaveTable(&tree, parent);
    EXPECT_EQ(Store().front(), 0);
    EXPECT_EQ(Store()[kSize - 5], 0);
    document.PopulateSaveTable(nullptr, nullptr); // without a tree only the result group
    EXPECT_EQ(Store().front(), 1);
    EXPECT_EQ(Store()[kSize - 5], 0);

    COLETreeCtrl browser;
    document.PopulateOLETreeCtrl(&browser, nullptr);
    int entries = 0;
    CString last;
    for (HTREEITEM item = browser.GetChildItem(browser.GetRootItem()); item != nullptr;
         item = browser.GetNextSiblingItem(item)) {
        ++entries;
        last = item->text;
    }
    EXPECT_EQ(entries, 23 + 3);
    EXPECT_EQ(last, "Get Regulation status");
}

} // namespace kalvio::test
