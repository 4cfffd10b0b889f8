// SPDX-License-Identifier: MIT
/// @file
/// Blocks of operator new that end at a fence, for working memory inside the library.
#pragma once

namespace support {

/// While it exists, operator new of its thread returns a block that ends directly before a fence, one block at a time, so
/// that a read past an array crashes. At most one may exist. Under the sanitizers, which check every block, it has no
/// effect.
class FencedNew {
public:
    FencedNew();
    ~FencedNew();
    FencedNew(const FencedNew&) = delete;
    FencedNew& operator=(const FencedNew&) = delete;
};

}  // namespace support
