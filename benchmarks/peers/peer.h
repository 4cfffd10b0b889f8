// SPDX-License-Identifier: MIT
/// @file
/// Functions of other libraries that do the same work as a member.
#pragma once

#include <memory>
#include <span>

#include "tests/support/member.h"

namespace bench {

/// A call in the form that the peer takes.
class Prepared {
public:
    virtual ~Prepared() = default;
    virtual void run() = 0;
};

struct Peer {
    const char* name;
    const char* member;
    int tolerance;  ///< the largest difference of a channel: peers round differently
    /// Null if the peer cannot do this call in one pass.
    std::unique_ptr<Prepared> (*prepare)(const support::Call& call);
};

#if defined(OMNAR_HAS_PIXMAN)
std::span<const Peer> pixmanPeers();
#else
inline std::span<const Peer> pixmanPeers() { return {}; }
#endif

#if defined(OMNAR_HAS_OPENCV)
std::span<const Peer> openCvPeers();
#else
inline std::span<const Peer> openCvPeers() { return {}; }
#endif

#if defined(OMNAR_HAS_SDL)
std::span<const Peer> sdlPeers();
#else
inline std::span<const Peer> sdlPeers() { return {}; }
#endif

}  // namespace bench
