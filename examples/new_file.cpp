// SPDX-License-Identifier: MIT
#include "new_file.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#ifdef _WIN32
#include <fcntl.h>
#include <io.h>
#include <sys/stat.h>
#endif

#include "failure.h"

namespace example {
namespace {

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& reason) {
    throw Failure(file.string() + ": " + reason);
}

/// Opens a file that is not there yet, for writing. Null if it is there or cannot be made; errno tells.
std::FILE* create(const std::filesystem::path& file) {
#ifdef _WIN32
    // The mode "wbx" came late to the C run-time of Windows.
    const int descriptor =
        _open(file.string().c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
#else
    return std::fopen(file.string().c_str(), "wbx");
#endif
}

}  // namespace

NewFile::NewFile(std::filesystem::path target) : target_(std::move(target)) {
    // Renaming would replace a device by a plain file, and cannot replace a folder.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(target_, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) fail(target_, "is not a file");

    // Programs that draw the same target keep out of each other's way.
    for (int number = 1; stream_ == nullptr; ++number) {
        temporary_ = target_;
        temporary_ += "." + std::to_string(number) + ".partial";
        stream_ = create(temporary_);
        if (stream_ == nullptr && (errno != EEXIST || number == 1000)) fail(target_, std::strerror(errno));
    }
}

NewFile::~NewFile() {
    if (stream_ != nullptr) std::fclose(stream_);
    std::error_code ignored;
    if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

void NewFile::commit() {
    // Closing writes what is still buffered, so it is here that a full disk may show.
    if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail(target_, std::strerror(errno));
    std::error_code error;
    std::filesystem::rename(temporary_, target_, error);
    if (error) fail(target_, error.message());
    temporary_.clear();
}

}  // namespace example
