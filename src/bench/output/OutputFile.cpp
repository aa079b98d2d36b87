#include "bench/output/OutputFile.h"

#include <cerrno>
#include <cstring>

namespace kalvio::bench {

bool OutputFile::Complain(std::ostream& err) const {
    err << "kalvio-bench: cannot write " << m_path << ": " << std::strerror(errno) << std::endl;
    return false;
}

bool OutputFile::Open(std::ostream& err) {
    if (!IsWanted())
        return true;
    m_stream.open(m_path, std::ios::binary);
    return m_stream ? true : Complain(err);
}

bool OutputFile::Close(std::ostream& err) {
    if (!m_stream.is_open())
        return true;
    m_stream.close();
    return m_stream ? true : Complain(err);
}

} // namespace kalvio::bench
