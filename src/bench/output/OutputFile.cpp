#include "bench/output/OutputFile.h"

#include <cerrno>
#include <cstring>
#include <utility>

namespace kalvio::bench {

OutputFile::~OutputFile() {
    std::error_code ignored;
    if (!m_beside.empty()) {
        std::filesystem::remove(m_beside, ignored);
    }
}

bool OutputFile::Complain(std::ostream& err, const std::string& reason) const {
    err << "kalvio-bench: cannot write " << m_path << ": " << reason << std::endl;
    return false;
}

bool OutputFile::Open(std::ostream& err) {
    if (!IsWanted()) {
        return true;
    }
    std::error_code error;
    m_place = std::filesystem::weakly_canonical(m_path, error);
    const std::filesystem::file_status status = std::filesystem::status(m_place, error);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) {
        m_stream.open(m_path, std::ios::binary);
        return m_stream ? true : Complain(err, std::strerror(errno));
    }
    std::filesystem::path beside = m_place;
    beside += ".new";
    m_stream.open(beside, std::ios::binary);
    if (!m_stream) {
        return Complain(err, std::strerror(errno));
    }
    m_beside = beside;
    return true;
}

bool OutputFile::Publish(std::ostream& err) {
    if (m_beside.empty()) {
        return true;
    }
    std::error_code error;
    std::filesystem::rename(m_beside, m_place, error);
    if (error) {
        return Complain(err, error.message());
    }
    m_beside.clear();
    return true;
}

bool OutputFile::Close(std::ostream& err) {
    if (!m_stream.is_open()) {
        return true;
    }
    m_stream.close();
    return m_stream ? Publish(err) : Complain(err, std::strerror(errno));
}

std::string OutputFile::Abandon() {
    return std::exchange(m_beside, {}).string();
}

} // namespace kalvio::bench
