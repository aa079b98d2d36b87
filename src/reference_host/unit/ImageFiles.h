#pragma once

// Small program images for the simulated unit.

#include <filesystem>
#include <string>

namespace kalvio::reference_host {

// Images that the registry already names are left to it. With a registry in memory the images lie in a
// temporary directory that goes away with this object; with a registry file they lie beside it and stay, so
// that the file never names what is gone.
class ImageFiles {
public:
    ImageFiles() = default;
    ~ImageFiles();
    ImageFiles(const ImageFiles&) = delete;
    ImageFiles& operator=(const ImageFiles&) = delete;

    // Writes the images that are missing and enters them in the registry, which is open already. False when
    // they could not be written.
    bool Create(const std::string& registryFile);
    // What Create could not write, when it gave false.
    [[nodiscard]] const std::string& Failure() const { return m_failure; }
    // What Create put where that stays after the program; empty: nothing.
    [[nodiscard]] const std::string& Note() const { return m_note; }
    // The first image that the registry names and that cannot be read, with its path and registry value;
    // empty when all can.
    [[nodiscard]] static std::string Unreadable();

private:
    std::filesystem::path m_temporary; // empty: none
    std::string m_failure;
    std::string m_note;
};

} // namespace kalvio::reference_host
