#include "platform/Files.h"

#include <cerrno>
#include <cstdio>
#include <cstring>
#include <fcntl.h>
#include <filesystem>
#include <new>
#include <span>
#include <stdexcept>
#include <string_view>
#include <sys/stat.h>
#include <unistd.h>
#include <utility>

namespace kalvio {

namespace {

constexpr mode_t kNewFileMode = 0644;

// An open file descriptor that closes itself.
class Descriptor {
public:
    explicit Descriptor(int number) : m_number(number) {}
    ~Descriptor() { Close(); }
    Descriptor(const Descriptor&) = delete;
    Descriptor& operator=(const Descriptor&) = delete;

    [[nodiscard]] bool IsOpen() const { return m_number >= 0; }
    [[nodiscard]] int Number() const { return m_number; }
    bool Close() {
        const int number = m_number;
        m_number = -1;
        return number < 0 || close(number) == 0;
    }

private:
    int m_number;
};

bool Resize(std::vector<std::uint8_t>& bytes, std::uint64_t size) {
    if (size > kLargestFileBytes) {
        return false;
    }
    try {
        bytes.resize(static_cast<std::size_t>(size));
        return true;
    } catch (const std::bad_alloc&) {
        return false;
    } catch (const std::length_error&) {
        return false;
    }
}

bool ReadAll(int descriptor, std::span<std::uint8_t> bytes) {
    while (!bytes.empty()) {
        const ssize_t got = read(descriptor, bytes.data(), bytes.size());
        if (got > 0) {
            bytes = bytes.subspan(static_cast<std::size_t>(got));
        } else if (got == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

bool WriteAll(int descriptor, std::string_view content) {
    while (!content.empty()) {
        const ssize_t put = write(descriptor, content.data(), content.size());
        if (put > 0) {
            content.remove_prefix(static_cast<std::size_t>(put));
        } else if (put == 0 || errno != EINTR) {
            return false;
        }
    }
    return true;
}

// The content has to be on the disk before the name points at it.
bool WriteNewFile(const CString& path, std::string_view content) {
    Descriptor file(open(path.c_str(), O_WRONLY | O_CREAT | O_TRUNC | O_CLOEXEC, kNewFileMode));
    return file.IsOpen() && WriteAll(file.Number(), content) && fsync(file.Number()) == 0 && file.Close();
}

// A second name for what stands at the path, put in the place of the former one in one step. No file there is
// nothing to keep.
bool KeepOld(const CString& path) {
    const CString old = path + "~";
    const CString link = old + ".new";
    unlink(link.c_str());
    if (::link(path.c_str(), link.c_str()) != 0) {
        return errno == ENOENT;
    }
    const bool kept = rename(link.c_str(), old.c_str()) == 0;
    const int reason = errno;
    unlink(link.c_str()); // it stays when both names are of one file already
    errno = reason;
    return kept;
}

// A rename is on the disk when its folder is.
void FlushFolder(const CString& path) {
    const Descriptor folder(open(path.empty() ? "." : path.c_str(), O_RDONLY | O_CLOEXEC | O_DIRECTORY));
    if (folder.IsOpen()) {
        fsync(folder.Number());
    }
}

} // namespace

FileStatus ReadFile(const CString& path, std::vector<std::uint8_t>& bytes) {
    // Without O_NONBLOCK a pipe of that name would keep the caller waiting for a writer.
    const Descriptor file(open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK));
    struct stat details {};
    if (!file.IsOpen() || fstat(file.Number(), &details) != 0 || !S_ISREG(details.st_mode)) {
        return FileStatus::NotOpened;
    }
    std::vector<std::uint8_t> content;
    if (!Resize(content, static_cast<std::uint64_t>(details.st_size))) {
        return FileStatus::NoMemory;
    }
    if (!ReadAll(file.Number(), content)) {
        return FileStatus::ReadFailed;
    }
    bytes = std::move(content);
    return FileStatus::Ok;
}

bool WriteFileAtomically(const CString& path, const CString& content) {
    const CString beside = path + ".new";
    if (WriteNewFile(beside, content) && rename(beside.c_str(), path.c_str()) == 0) {
        return true;
    }
    unlink(beside.c_str());
    return false;
}

CString SaveFileKeepingOld(const CString& path, std::span<const std::uint8_t> content) {
    std::error_code error;
    const std::filesystem::path place = std::filesystem::weakly_canonical(path, error);
    if (std::filesystem::is_directory(place, error)) {
        return std::strerror(EISDIR);
    }
    const CString target = place.string();
    const CString beside = target + ".new";
    const std::string_view bytes(reinterpret_cast<const char*>(content.data()), content.size());
    if (WriteNewFile(beside, bytes) && KeepOld(target) && rename(beside.c_str(), target.c_str()) == 0) {
        FlushFolder(place.parent_path().string());
        return {};
    }
    const int reason = errno;
    unlink(beside.c_str());
    return std::strerror(reason);
}

} // namespace kalvio
