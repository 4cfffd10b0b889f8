#include "tests/support/program_test.h"

#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include <cstdlib>
#include <fstream>
#include <iterator>

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
    std::string name = (fs::temp_directory_path() / "program_XXXXXX").string();
    folder_ = mkdtemp(name.data());
}

ProgramTest::~ProgramTest() { fs::remove_all(folder_); }

// The streams go to files beside the folder, so that the folder holds nothing but what the program made of it.
fs::path ProgramTest::streamFile(int stream) const { return folder_.string() + "." + std::to_string(stream); }

pid_t ProgramTest::start(Arguments command) const {
    std::vector<char*> argv;
    for (std::string& argument : command) argv.push_back(argument.data());
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int stream : {1, 2}) {
        const std::string file = streamFile(stream).string();
        posix_spawn_file_actions_addopen(&files, stream, file.c_str(), O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    pid_t process = 0;
    EXPECT_EQ(posix_spawn(&process, argv[0], &files, nullptr, argv.data(), environ), 0) << command[0];
    posix_spawn_file_actions_destroy(&files);
    return process;
}

ProgramTest::Outcome ProgramTest::wait(pid_t process) const {
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    Outcome outcome{status, contents(streamFile(2))};
    for (const int stream : {1, 2}) fs::remove(streamFile(stream));
    return outcome;
}

}  // namespace support
