// SPDX-License-Identifier: MIT
/// @file
/// A fixture for tests of programs: it starts them in a folder and returns their exit codes and errors.
#pragma once

#include <gtest/gtest.h>

#include <array>
#include <filesystem>
#include <string>
#include <vector>

namespace support {

using Arguments = std::vector<std::string>;

#if defined(_WIN32)
using Process = void*;  ///< a handle
#else
using Process = int;  ///< an identifier
#endif

/// Starts `command`, the program first. Its standard output and standard error go to the two files.
Process startProcess(const Arguments& command, const std::array<std::filesystem::path, 2>& streams);

/// Waits for the end of the process. Returns its exit code, or the negated number of the signal that ended it.
int waitForProcess(Process process);

std::string contents(const std::filesystem::path& file);
std::size_t filesIn(const std::filesystem::path& folder);

/// A test with a temporary folder, which the destructor removes.
class ProgramTest : public testing::Test {
protected:
    struct Outcome {
        int status;  ///< as waitForProcess() returns it
        std::string errors;
    };

    ProgramTest();
    ~ProgramTest() override;

    std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }
    const std::filesystem::path& folder() const { return folder_; }

    /// Starts `command`. The next program starts only after wait().
    Process start(const Arguments& command) const { return startProcess(command, streamFiles()); }
    Outcome wait(Process process) const;

private:
    std::array<std::filesystem::path, 2> streamFiles() const;

    std::filesystem::path folder_;
};

}  // namespace support
