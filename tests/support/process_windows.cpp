// SPDX-License-Identifier: MIT
#include <windows.h>

#include "tests/support/program_test.h"

namespace support {
namespace {

/// Creates a file that a child process can write to.
HANDLE inheritedFile(const std::filesystem::path& file) {
    SECURITY_ATTRIBUTES inherited{sizeof inherited, nullptr, TRUE};
    return CreateFileW(file.c_str(), GENERIC_WRITE, FILE_SHARE_READ, &inherited, CREATE_ALWAYS, FILE_ATTRIBUTE_NORMAL,
                       nullptr);
}

}  // namespace

Process startProcess(const Arguments& command, const std::array<std::filesystem::path, 2>& streams) {
    std::string line;  // no argument holds a quotation mark or ends in a backslash
    for (const std::string& argument : command) line += '"' + argument + "\" ";

    STARTUPINFOA startup{};
    startup.cb = sizeof startup;
    startup.dwFlags = STARTF_USESTDHANDLES;
    startup.hStdOutput = inheritedFile(streams[0]);
    startup.hStdError = inheritedFile(streams[1]);
    PROCESS_INFORMATION process{};
    EXPECT_NE(CreateProcessA(nullptr, line.data(), nullptr, nullptr, TRUE, 0, nullptr, nullptr, &startup, &process), 0)
        << line << "error " << GetLastError();
    for (const HANDLE handle : {startup.hStdOutput, startup.hStdError, process.hThread}) CloseHandle(handle);
    return process.hProcess;
}

int waitForProcess(Process process) {
    DWORD exitCode = 0;
    WaitForSingleObject(process, INFINITE);
    EXPECT_NE(GetExitCodeProcess(process, &exitCode), 0);
    CloseHandle(process);
    return static_cast<int>(exitCode);
}

}  // namespace support
