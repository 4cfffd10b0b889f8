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

/// Creates a file for writing. Returns null and sets errno if it exists or cannot be created.
std::FILE* create(const std::filesystem::path& file) {
#ifdef _WIN32
    // Older C run-times of Windows lack the mode "wbx".
    const int descriptor =
        _open(file.string().c_str(), _O_CREAT | _O_EXCL | _O_WRONLY | _O_BINARY, _S_IREAD | _S_IWRITE);
    return descriptor < 0 ? nullptr : _fdopen(descriptor, "wb");
#else
    return std::fopen(file.string().c_str(), "wbx");
#endif
}

}  // namespace

NewFile::NewFile(std::filesystem::path path) : path_(std::move(path)) {
    // Renaming would replace a device by a regular file, and fails for a folder.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(path_, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) fail(path_, "is not a file");

    // Numbers keep processes that write the same file apart.
    for (int number = 1; stream_ == nullptr; ++number) {
        temporary_ = path_;
        temporary_ += "." + std::to_string(number) + ".partial";
        stream_ = create(temporary_);
        if (stream_ == nullptr && (errno != EEXIST || number == 1000)) fail(path_, std::strerror(errno));
    }
}

NewFile::~NewFile() {
    if (stream_ != nullptr) std::fclose(stream_);
    std::error_code ignored;
    if (!temporary_.empty()) std::filesystem::remove(temporary_, ignored);
}

void NewFile::commit() {
    // Closing writes the rest of the buffer, so errors such as a full disk may appear only here.
    if (std::fclose(std::exchange(stream_, nullptr)) != 0) fail(path_, std::strerror(errno));
    std::error_code error;
    std::filesystem::rename(temporary_, path_, error);
    if (error) fail(path_, error.message());
    temporary_.clear();
}

}  // namespace example
