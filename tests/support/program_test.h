// SPDX-License-Identifier: MIT
/// @file
/// Tests of whole programs: a folder to work in, and what a program did there.
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

/// Starts the program that `command` names first, with its output and its complaints going to two files.
Process startProcess(const Arguments& command, const std::array<std::filesystem::path, 2>& streams);

/// Waits until the process ends, and returns its exit code, or minus the number of the signal that ended it.
int waitForProcess(Process process);

std::string contents(const std::filesystem::path& file);
std::size_t filesIn(const std::filesystem::path& folder);

/// A test in a folder of its own, which goes away with it.
class ProgramTest : public testing::Test {
protected:
    struct Outcome {
        int status;  ///< as waitForProcess() tells it
        std::string errors;
    };

    ProgramTest();
    ~ProgramTest() override;

    std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }
    const std::filesystem::path& folder() const { return folder_; }

    /// Starts a program, the first of `command`; one at a time. wait() waits for its end.
    Process start(const Arguments& command) const { return startProcess(command, streamFiles()); }
    Outcome wait(Process process) const;

private:
    std::array<std::filesystem::path, 2> streamFiles() const;

    std::filesystem::path folder_;
};

}  // namespace support
