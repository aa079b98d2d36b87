#pragma once

// Texts that the tests hold the library's against, line by line, in files beside the tests.

#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <sstream>
#include <string>

namespace kalvio::test {

// Compares a text with the file of that name beside a source file, which is named as the compiler names it.
// With KALVIO_RECORD set in the environment the text is written to the file instead; look at the difference
// then.
inline void ExpectGolden(const char* source, const char* name, const std::string& text) {
    const std::filesystem::path path = std::filesystem::path(source).parent_path() / name;
    if (std::getenv("KALVIO_RECORD") != nullptr) {
        std::ofstream(path) << text;
        return;
    }
    std::ifstream file(path);
    std::istringstream lines(text);
    std::string expected;
    std::string found;
    for (int number = 1; std::getline(file, expected); ++number) {
        ASSERT_TRUE(std::getline(lines, found)) << name << ":" << number << ": missing: " << expected;
        EXPECT_EQ(found, expected) << name << ":" << number;
    }
    EXPECT_FALSE(std::getline(lines, found)) << name << " ends before: " << found;
}

} // namespace kalvio::test
