#include "new_file.h"

#include <cerrno>
#include <cstring>
#include <string>
#include <system_error>
#include <utility>

#include "failure.h"

namespace example {
namespace {

[[noreturn]] void fail(const std::filesystem::path& file, const std::string& reason) {
    throw Failure(file.string() + ": " + reason);
}

}  // namespace

NewFile::NewFile(std::filesystem::path target) : target_(std::move(target)) {
    // Renaming would replace a device by a plain file, and cannot replace a folder.
    std::error_code ignored;
    const std::filesystem::file_status status = std::filesystem::status(target_, ignored);
    if (std::filesystem::exists(status) && !std::filesystem::is_regular_file(status)) fail(target_, "is not a file");

    // "x" never opens a file that is there already, so programs that draw the same target keep out of each other's way.
    for (int number = 1; stream_ == nullptr; ++number) {
        temporary_ = target_;
        temporary_ += "." + std::to_string(number) + ".partial";
        stream_ = std::fopen(temporary_.string().c_str(), "wbx");
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
