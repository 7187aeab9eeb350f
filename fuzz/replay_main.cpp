// Replays saved fuzzer inputs without libFuzzer: every file named on the command
// line, and every regular file inside a directory named there, goes once through
// LLVMFuzzerTestOneInput. Built with the ordinary compiler, so the plain and the
// sanitizer test builds both replay the corpus.

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <iostream>
#include <iterator>
#include <string>
#include <vector>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);

namespace fs = std::filesystem;

int main(int argc, char** argv) {
    if (argc < 2) {
        std::cerr << "usage: " << argv[0] << " FILE|DIRECTORY...\n";
        return 1;
    }
    std::vector<fs::path> inputs;
    for (int i = 1; i < argc; ++i) {
        const fs::path p = argv[i];
        std::error_code ec;
        if (fs::is_directory(p, ec)) {
            for (const fs::directory_entry& entry : fs::recursive_directory_iterator(p))
                if (entry.is_regular_file()) inputs.push_back(entry.path());
        } else if (fs::is_regular_file(p, ec)) {
            inputs.push_back(p);
        } else {
            std::cerr << "replay: no such file or directory: " << p << "\n";
            return 1;
        }
    }
    // A fixed order, so that a failure names the same file on every machine.
    std::sort(inputs.begin(), inputs.end());
    if (inputs.empty()) {
        std::cerr << "replay: no inputs found\n";
        return 1;
    }
    for (const fs::path& p : inputs) {
        std::ifstream file(p, std::ios::binary);
        if (!file) {
            std::cerr << "replay: cannot read " << p << "\n";
            return 1;
        }
        const std::string bytes{std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
        // Named before the run, so a crash report says which input did it.
        std::cerr << "replay: " << p.string() << "\n";
        LLVMFuzzerTestOneInput(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size());
    }
    std::cout << "replayed " << inputs.size() << " inputs\n";
    return 0;
}
