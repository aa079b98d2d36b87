// Runs a fuzz target without a fuzzer: COUNT SEED [FOLDER]. First the target's seeds and the folder's files
// as they are, then COUNT inputs: random ones and damaged copies of these. Input n of seed s is the same as
// input 0 of seed s + n, which a failure reports.

#include "FuzzTarget.h"

#include <algorithm>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <random>
#include <string>

namespace {

using kalvio::fuzz::Bytes;

constexpr std::size_t kLongestRandom = 1024;
constexpr std::size_t kMostChanges = 6;

volatile std::sig_atomic_t g_failing = 0; // the seed of the input that runs; 0: none

void TellSeed(int) {
    if (g_failing == 0) {
        std::fprintf(stderr, "failed with one of the seeds or files\n");
    } else {
        std::fprintf(stderr,
                     "failed with seed %lu; arguments \"1 %lu FOLDER\" run this input after the files\n",
                     static_cast<unsigned long>(g_failing), static_cast<unsigned long>(g_failing));
    }
}

class Generator {
public:
    Generator(const std::vector<Bytes>& corpus, unsigned seed) : m_corpus(corpus), m_random(seed) {}

    Bytes Make() {
        if (m_corpus.empty() || Below(8) == 0) {
            return RandomBytes(Below(kLongestRandom));
        }
        Bytes bytes = Seed();
        for (std::size_t changes = Below(kMostChanges); changes > 0; --changes) {
            Change(bytes);
        }
        return bytes;
    }

private:
    std::size_t Below(std::size_t limit) {
        return std::uniform_int_distribution<std::size_t>(0, limit - 1)(m_random);
    }
    std::uint8_t RandomByte() { return static_cast<std::uint8_t>(Below(256)); }
    const Bytes& Seed() { return m_corpus[Below(m_corpus.size())]; }

    Bytes RandomBytes(std::size_t length) {
        Bytes bytes(length);
        for (std::uint8_t& byte : bytes) {
            byte = RandomByte();
        }
        return bytes;
    }

    void Change(Bytes& bytes) {
        const auto at = bytes.begin() + static_cast<std::ptrdiff_t>(Below(bytes.size() + 1));
        const auto left = static_cast<std::size_t>(bytes.end() - at);
        const auto end = at + static_cast<std::ptrdiff_t>(Below(std::min<std::size_t>(left, 16) + 1));
        switch (Below(6)) {
        case 0: // damage
            for (auto byte = at; byte != end; ++byte) {
                *byte = RandomByte();
            }
            break;
        case 1: // one bit
            if (at != bytes.end()) {
                *at = static_cast<std::uint8_t>(*at ^ (1U << Below(8)));
            }
            break;
        case 2: // extreme values
            std::fill(at, end, Below(2) == 0 ? std::uint8_t{0x00} : std::uint8_t{0xFF});
            break;
        case 3:
            bytes.erase(at, end);
            break;
        case 4: {
            const Bytes more = RandomBytes(Below(16));
            bytes.insert(at, more.begin(), more.end());
            break;
        }
        default: { // go on with another seed
            const Bytes other = Seed();
            bytes.erase(at, bytes.end());
            bytes.insert(bytes.end(),
                         other.begin() + static_cast<std::ptrdiff_t>(std::min(bytes.size(), other.size())),
                         other.end());
            break;
        }
        }
    }

    const std::vector<Bytes>& m_corpus;
    std::mt19937 m_random;
};

// In the order of their names, so that a seed means the same input on every machine.
void AddFiles(const std::filesystem::path& folder, std::vector<Bytes>& corpus) {
    std::vector<std::filesystem::path> paths;
    for (const auto& entry : std::filesystem::directory_iterator(folder)) {
        paths.push_back(entry.path());
    }
    std::ranges::sort(paths);
    for (const std::filesystem::path& path : paths) {
        std::ifstream file(path, std::ios::binary);
        corpus.emplace_back(std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>());
    }
}

} // namespace

int main(int argc, char** argv) {
    LLVMFuzzerInitialize(&argc, &argv);
    const unsigned long count = argc > 1 ? std::stoul(argv[1]) : 10000;
    const unsigned long seed = argc > 2 ? std::stoul(argv[2]) : 1;
    std::vector<Bytes> corpus = kalvio::fuzz::Seeds();
    if (argc > 3) {
        AddFiles(argv[3], corpus);
    }
    std::signal(SIGABRT, TellSeed);
    for (const Bytes& bytes : corpus) {
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    for (unsigned long i = 0; i < count; ++i) {
        g_failing = static_cast<std::sig_atomic_t>(seed + i);
        const Bytes bytes = Generator(corpus, static_cast<unsigned>(seed + i)).Make();
        LLVMFuzzerTestOneInput(bytes.data(), bytes.size());
    }
    std::printf("%zu seeds and files, %lu inputs, seed %lu: all promises held\n", corpus.size(), count, seed);
    return EXIT_SUCCESS;
}
