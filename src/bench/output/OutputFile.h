#pragma once

// A file that a command writes. What stood there before stays until there is something better: the file is
// written beside its place, with ".new" appended to its name, and moved there when it is published.

#include <filesystem>
#include <fstream>
#include <string>

namespace kalvio::bench {

class OutputFile {
public:
    // An empty path is no file: everything then succeeds and goes nowhere.
    explicit OutputFile(std::string path) : m_path(std::move(path)) {}
    ~OutputFile(); // takes away what was not published
    OutputFile(const OutputFile&) = delete;
    OutputFile& operator=(const OutputFile&) = delete;

    // Each says why on `err` when it answers false.
    // Opens the new file, so that a wrong path is known before anything is measured. A path that is no
    // regular file (a pipe, a terminal) is opened itself.
    bool Open(std::ostream& err);
    // Moves it to its place; what is written later follows there.
    bool Publish(std::ostream& err);
    // Writes it to its end and publishes it.
    bool Close(std::ostream& err);
    // Leaves an unpublished file where it is; its name, empty when there is none.
    std::string Abandon();

    [[nodiscard]] bool IsWanted() const { return !m_path.empty(); }
    [[nodiscard]] const std::string& Path() const { return m_path; }
    std::ofstream& Stream() { return m_stream; }

private:
    bool Complain(std::ostream& err, const std::string& reason) const;

    std::string m_path;
    std::filesystem::path m_place;  // where it goes, links followed
    std::filesystem::path m_beside; // empty: published, or opened itself
    std::ofstream m_stream;
};

} // namespace kalvio::bench
