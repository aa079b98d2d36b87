// The registry file: read whole, or kept aside with a word about what is wrong.

#include "FuzzTarget.h"
#include "platform/Registry.h"
#include "platform/ScratchFolder.h"

#include <filesystem>

namespace {

using namespace kalvio;
using fuzz::Require;

// Empties the folder and writes the one file.
CString MakeOnlyFile(const test::ScratchFolder& folder, const CString& content) {
    for (const auto& entry : std::filesystem::directory_iterator(folder.Path(""))) {
        std::filesystem::remove(entry);
    }
    const CString path = folder.Path("kalvio.ini");
    test::WriteText(path, content);
    return path;
}

} // namespace

std::vector<kalvio::fuzz::Bytes> kalvio::fuzz::Seeds() {
    const std::string text =
        "# a comment\n[Machine\\Hardware]\nFPGAFile = \"C:\\\\Kalvio\\\\fpga.bin\"\n"
        "\"odd=name\" = 7\nConverterResetWaitTime = 100\n\n[User\\Debug]\nHWErrors = -3\n"
        "Text = \"a \\\"b\\\"\\n\\r\\t\\x7F\"\n";
    return {Bytes(text.begin(), text.end()), Bytes()};
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    static const test::ScratchFolder folder;
    const CString content(data, data + size);
    const CString path = MakeOnlyFile(folder, content);
    CString error;
    CRegistry::Reset();
    const bool opened = CRegistry::Open(path, error);
    Require(opened == error.empty(), "a refusal says why");
    if (!opened) {
        Require(test::FileText(path + ".damaged") == content, "a damaged file is kept aside as it was");
        Require(!std::filesystem::exists(path), "a damaged file is moved aside");
    }
    const int before = CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", 5);
    Require(
        CRegistry::SetRegistryValue(RegistryKeyType::Machine, "Hardware", "FPGAFile", CString("a\n\"b\"")),
        "a change can be made after any file");
    CRegistry::Reset();
    Require(CRegistry::Open(path, error), "what was written can be read");
    Require(CRegistry::GetRegistryValue(RegistryKeyType::Machine, "Hardware", "FPGAFile", CString()) ==
                "a\n\"b\"",
            "the change is there");
    Require(CRegistry::GetRegistryValue(RegistryKeyType::User, "Debug", "HWErrors", 5) == before,
            "a change leaves the other values");
    CRegistry::Reset();
    return 0;
}
