#include "platform/Registry.h"

#include "platform/DebugFile.h"
#include "platform/Files.h"
#include "platform/Sync.h"
#include "platform/posix/FileLock.h"
#include "platform/system/RegistryFile.h"

#include <filesystem>
#include <system_error>
#include <utility>

namespace {

using kalvio::FileStatus;
using kalvio::Format;
using kalvio::RegistryFile;
using kalvio::RegistryValue;

struct RegistryState {
    kalvio::Mutex lock;
    RegistryFile file KALVIO_GUARDED_BY(lock);
    CString path KALVIO_GUARDED_BY(lock); // empty: memory only
};

RegistryState& State() {
    // Never destroyed: an abandoned thread may still ask for a setting while the process ends.
    static RegistryState& state = *new RegistryState;
    return state;
}

CString SectionOf(RegistryKeyType type, const CString& key) {
    return (type == RegistryKeyType::Machine ? "Machine\\" : "User\\") + key;
}

template<typename T>
T Load(RegistryKeyType type, const CString& key, const CString& name, const T& defaultValue) {
    RegistryState& state = State();
    const kalvio::LockGuard guard(state.lock);
    const RegistryValue* value = state.file.Find(SectionOf(type, key), name);
    const T* held = value != nullptr ? std::get_if<T>(value) : nullptr;
    return held != nullptr ? *held : defaultValue;
}

// The file as it is now; one that cannot be read or understood is not taken over.
void TakeOver(const CString& path, RegistryFile& file) {
    std::vector<std::uint8_t> bytes;
    CString ignored;
    if (kalvio::ReadFile(path, bytes) == FileStatus::Ok) {
        file.Parse(CString(bytes.begin(), bytes.end()), ignored);
    }
}

// What kept the value out of the file, or empty.
CString StoreQuietly(const CString& section, const CString& name, const RegistryValue& value) {
    RegistryState& state = State();
    const kalvio::LockGuard guard(state.lock);
    if (state.path.empty()) {
        return state.file.Set(section, name, value) ? CString() : "the key has control characters";
    }
    // Other programs may have changed the file meanwhile; what they stored stays.
    const kalvio::FileLock alone(state.path);
    TakeOver(state.path, state.file);
    if (!state.file.Set(section, name, value)) {
        return "the key has control characters";
    }
    if (kalvio::WriteFileAtomically(state.path, state.file.Text())) {
        return {};
    }
    return Format("\"%s\" could not be written", state.path.c_str());
}

bool Store(RegistryKeyType type, const CString& key, const CString& name, const RegistryValue& value) {
    const CString failure = StoreQuietly(SectionOf(type, key), name, value);
    if (!failure.empty()) {
        CDebugFile::Write(
            Format("CRegistry::SetRegistryValue - \"%s\" not saved: %s\n", name.c_str(), failure.c_str()));
    }
    return failure.empty();
}

// Moves a damaged file to a name that no file has yet. Empty when it could not be moved.
CString KeepAside(const CString& path) {
    CString aside = path + ".damaged";
    std::error_code error;
    for (int number = 2; std::filesystem::exists(std::filesystem::symlink_status(aside, error)); ++number) {
        aside = Format("%s.damaged.%d", path.c_str(), number);
    }
    std::filesystem::rename(path, aside, error);
    return error ? CString() : aside;
}

bool IsMissing(const CString& path) {
    std::error_code error;
    return std::filesystem::status(path, error).type() == std::filesystem::file_type::not_found;
}

// Reads the file of the path. What was wrong, or empty. A path whose file must stay as it is comes back
// empty, so that nothing is written there.
CString LoadFile(CString& path, RegistryFile& file) {
    if (path.empty() || IsMissing(path)) {
        return {};
    }
    std::vector<std::uint8_t> bytes;
    if (kalvio::ReadFile(path, bytes) != FileStatus::Ok) {
        return Format("The registry file \"%s\" could not be read. Default settings are used and changes are "
                      "not saved.",
                      std::exchange(path, {}).c_str());
    }
    CString where;
    if (file.Parse(CString(bytes.begin(), bytes.end()), where)) {
        return {};
    }
    const CString damaged =
        Format("The registry file \"%s\" is damaged in %s. ", path.c_str(), where.c_str());
    const CString aside = KeepAside(path);
    if (aside.empty()) {
        path.clear();
        return damaged + "It could not be moved aside. Default settings are used and changes are not saved.";
    }
    return damaged + Format("It is kept as \"%s\". Default settings are used.", aside.c_str());
}

} // namespace

CString CRegistry::GetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                    const CString& defaultValue) {
    return Load(type, key, name, defaultValue);
}

int CRegistry::GetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                int defaultValue) {
    return Load(type, key, name, defaultValue);
}

bool CRegistry::SetRegistryValue(RegistryKeyType type, const CString& key, const CString& name,
                                 const CString& value) {
    return Store(type, key, name, value);
}

bool CRegistry::SetRegistryValue(RegistryKeyType type, const CString& key, const CString& name, int value) {
    return Store(type, key, name, value);
}

bool CRegistry::Open(const CString& path, CString& error) {
    CString usedPath = path;
    RegistryFile file;
    error = LoadFile(usedPath, file);
    RegistryState& state = State();
    const kalvio::LockGuard guard(state.lock);
    state.file = std::move(file);
    state.path = std::move(usedPath);
    return error.empty();
}

void CRegistry::Reset() {
    RegistryState& state = State();
    const kalvio::LockGuard guard(state.lock);
    state.file = {};
    state.path.clear();
}
