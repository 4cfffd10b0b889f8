// SPDX-License-Identifier: MIT
/// @file
/// A block of operator new that ends at a fence, for working memory inside the library.
#pragma once

namespace support {

/// While it exists, operator new gives memory that ends right before a fence, one block at a time: a value read past an
/// array is a crash. Only one may exist. The sanitizers watch every block by themselves; under them it does nothing.
class FencedNew {
public:
    FencedNew();
    ~FencedNew();
    FencedNew(const FencedNew&) = delete;
    FencedNew& operator=(const FencedNew&) = delete;
};

}  // namespace support
