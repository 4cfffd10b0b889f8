// SPDX-License-Identifier: MIT
#include <fcntl.h>
#include <spawn.h>
#include <sys/wait.h>
#include <unistd.h>

#include "tests/support/program_test.h"

namespace support {

Process startProcess(const Arguments& command, const std::array<std::filesystem::path, 2>& streams) {
    std::vector<char*> argv;
    for (const std::string& argument : command) argv.push_back(const_cast<char*>(argument.c_str()));
    argv.push_back(nullptr);
    posix_spawn_file_actions_t files;
    posix_spawn_file_actions_init(&files);
    for (const int stream : {1, 2}) {
        posix_spawn_file_actions_addopen(&files, stream, streams[static_cast<std::size_t>(stream - 1)].c_str(),
                                         O_WRONLY | O_CREAT | O_TRUNC, 0600);
    }
    pid_t process = 0;
    EXPECT_EQ(posix_spawn(&process, argv[0], &files, nullptr, argv.data(), environ), 0) << command[0];
    posix_spawn_file_actions_destroy(&files);
    return process;
}

int waitForProcess(Process process) {
    int status = 0;
    EXPECT_EQ(waitpid(process, &status, 0), process);
    return WIFSIGNALED(status) ? -WTERMSIG(status) : WEXITSTATUS(status);
}

}  // namespace support
