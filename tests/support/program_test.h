/// @file
/// Tests of whole programs: a folder to work in, and what a program did there.
#pragma once

#include <gtest/gtest.h>
#include <sys/types.h>

#include <filesystem>
#include <string>
#include <vector>

namespace support {

using Arguments = std::vector<std::string>;

std::string contents(const std::filesystem::path& file);
std::size_t filesIn(const std::filesystem::path& folder);

/// A test in a folder of its own, which goes away with it.
class ProgramTest : public testing::Test {
protected:
    struct Outcome {
        int status;  ///< as waitpid() tells it
        std::string errors;
    };

    ProgramTest();
    ~ProgramTest() override;

    std::filesystem::path operator/(const std::string& name) const { return folder_ / name; }
    const std::filesystem::path& folder() const { return folder_; }

    /// Starts a program, the first of `command`; one at a time. wait() waits for its end.
    pid_t start(Arguments command) const;
    Outcome wait(pid_t process) const;

private:
    std::filesystem::path streamFile(int stream) const;

    std::filesystem::path folder_;
};

}  // namespace support
