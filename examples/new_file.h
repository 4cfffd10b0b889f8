// SPDX-License-Identifier: MIT
/// @file
/// Atomic replacement of files.
#pragma once

#include <cstdio>
#include <filesystem>

namespace example {

/// A file that is written under a temporary name in the same folder and renamed when it is complete. Until then a file
/// that already has the name is unchanged. No temporary file remains.
class NewFile {
public:
    explicit NewFile(std::filesystem::path path);
    ~NewFile();  ///< removes the temporary file unless it was committed
    NewFile(const NewFile&) = delete;
    NewFile& operator=(const NewFile&) = delete;

    std::FILE* stream() const { return stream_; }
    void commit();  ///< closes and renames the file

private:
    std::filesystem::path path_;
    std::filesystem::path temporary_;
    std::FILE* stream_ = nullptr;
};

}  // namespace example
