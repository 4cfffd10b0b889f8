// SPDX-License-Identifier: MIT
/// @file
/// Writing a file so that nobody ever sees half of it.
#pragma once

#include <cstdio>
#include <filesystem>

namespace example {

/// A file that takes its name only when it is complete: it is written beside its target and renamed at the end. Until
/// then what the target held before stays as it is, and afterwards nothing else is left.
class NewFile {
public:
    explicit NewFile(std::filesystem::path target);
    ~NewFile();  ///< removes what commit() did not put in place
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    std::FILE* stream() const { return stream_; }
    void commit();  ///< closes the file and gives it its name

private:
    std::filesystem::path target_;
    std::filesystem::path temporary_;
    std::FILE* stream_ = nullptr;
};

}  // namespace example
