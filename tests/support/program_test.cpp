// SPDX-License-Identifier: MIT
#include "tests/support/program_test.h"

#include <fstream>
#include <iterator>
#include <random>

namespace support {

namespace fs = std::filesystem;

std::string contents(const fs::path& file) {
    std::ifstream stream(file, std::ios::binary);
    return {std::istreambuf_iterator<char>(stream), {}};
}

std::size_t filesIn(const fs::path& folder) {
    return static_cast<std::size_t>(std::distance(fs::directory_iterator(folder), {}));
}

ProgramTest::ProgramTest() {
    std::random_device random;
    do folder_ = fs::temp_directory_path() / ("program_" + std::to_string(random()));
    while (!fs::create_directory(folder_));
}

ProgramTest::~ProgramTest() { fs::remove_all(folder_); }

// The streams go to files beside the folder, so that the folder holds only what the program wrote.
std::array<fs::path, 2> ProgramTest::streamFiles() const { return {folder_.string() + ".1", folder_.string() + ".2"}; }

ProgramTest::Outcome ProgramTest::wait(Process process) const {
    const int status = waitForProcess(process);
    const auto streams = streamFiles();
    Outcome outcome{status, contents(streams[1])};
    for (const fs::path& file : streams) fs::remove(file);
    return outcome;
}

}  // namespace support
