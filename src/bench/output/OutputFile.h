#pragma once

// A file that a command writes: opened before the run, so that a wrong path is known at once.

#include "bench/terminal/Terminal.h"

#include <fstream>
#include <string>

namespace kalvio::bench {

class OutputFile {
public:
    // An empty path is no file: everything then succeeds and goes nowhere.
    explicit OutputFile(std::string path) : m_path(std::move(path)) {}

    // Each says why on `err` when it answers false.
    bool Open(std::ostream& err);
    bool Close(std::ostream& err);

    [[nodiscard]] bool IsWanted() const { return !m_path.empty(); }
    [[nodiscard]] const std::string& Path() const { return m_path; }
    std::ostream& Stream() { return m_stream; }

private:
    bool Complain(std::ostream& err) const;

    std::string m_path;
    std::ofstream m_stream;
};

} // namespace kalvio::bench
