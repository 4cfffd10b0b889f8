// SPDX-License-Identifier: MIT

/// @file
/// Regions of equal pixels as the nodes of a graph, in which filling a region touches none of its pixels.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "objects/large_vector.h"

namespace omnar {

/// The 4-connected regions of equal pixels, and which of them touch. A fill gives a region another value and merges it
/// with the neighbours that have this value already, so that touching regions always differ in value.
///
/// Each edge is kept by one of its two regions: by the smaller one, or by one that has not grown to more than twice the
/// size of the other when it was last filled. The other one finds it in a bucket, by the value of the keeper. A fill
/// looks at the edges that the region keeps and at a single bucket. The regions of n pixels or more number at most
/// area / n, and planar graphs have fewer than three edges per node. Where no pixel is the seed of more than one fill,
/// all fills together therefore take O(area * log(area)) steps.
template <class Px>
class RegionGraph {
public:
    using Id = std::int32_t;

    /// No region is ever filled with either of the values.
    RegionGraph(Px never, Px neither) : never_(never), neither_(neither) {}

    Id add(Px value) {
        regions_.push_back({indexOf(regions_), value, 0, none, none, 0});
        return regions_.back().parent;
    }
    void enlarge(Id id, std::uint32_t pixels) { resize(id, std::uint64_t{regions_[at(id)].pixels} + pixels); }

    /// Adds an edge. All regions have their full size by then.
    void connect(Id a, Id b) {
        if (regions_[at(a)].pixels > regions_[at(b)].pixels) std::swap(a, b);
        const Index last = regions_[at(a)].edges;
        const bool known = last != none && links_[at(last)].region == b;  // most regions keep one edge only
        if (!known) keep(a, b, newLink());
    }

    Px valueOf(Id id) { return regions_[at(root(id))].value; }

    void fill(Id id, Px value) {
        Id self = root(id);
        if (regions_[at(self)].value == value) return;
        regions_[at(self)].value = value;
        ++fills_;
        regions_[at(self)].seen = fills_;

        Index equal = none;  // neighbours of the new value
        for (Index edges = std::exchange(regions_[at(self)].edges, none); edges != none;) {
            const Index edge = takeFirst(edges);
            const Id other = root(links_[at(edge)].region);
            Region& neighbour = regions_[at(other)];
            if (neighbour.seen == fills_) {  // the region itself since a merge, or a second edge to the same one
                append(free_, edge);
                continue;
            }
            neighbour.seen = fills_;
            if (neighbour.value == value) {
                append(equal, edge);
            } else if (neighbour.pixels < regions_[at(self)].pixels / 2) {
                keep(other, self, edge);
            } else {
                keep(self, other, edge);
            }
        }
        if (const Index bucket = bucketOf(self, value); bucket != none) {
            splice(equal, std::exchange(buckets_[at(bucket)].keepers, none));
        }
        while (equal != none) {
            const Index link = takeFirst(equal);
            const Id other = root(links_[at(link)].region);
            append(free_, link);
            // Buckets also hold regions that have had the value.
            if (regions_[at(other)].value == value) self = merge(self, other);
        }
    }

private:
    /// Of a vector below; rings of links are given by their last one.
    using Index = std::int32_t;
    static constexpr Index none = -1;

    struct Region {
        Id parent;  ///< itself, until it is merged into another one
        Px value;
        std::uint32_t pixels;
        Index edges;         ///< a ring of the edges that it keeps
        Index buckets;       ///< a chain
        std::uint32_t seen;  ///< the last fill that met it
    };
    struct Link {
        Id region;
        Index next;
    };
    /// Those that keep an edge to a region and have, or have had, a value.
    struct Bucket {
        Id region;
        Px value;
        Index keepers;  ///< a ring
        Index next;     ///< of the same region
    };

    static std::size_t at(std::int32_t index) { return static_cast<std::size_t>(index); }

    /// What the next element of a vector will have.
    template <class T>
    static Index indexOf(const LargeVector<T>& elements) {
        if (elements.size() >= std::size_t{std::numeric_limits<Index>::max()}) {
            throw COmnarException(outOfMemory, "region_graph.h", __LINE__, 0);
        }
        return static_cast<Index>(elements.size());
    }

    Id root(Id id) {
        while (regions_[at(id)].parent != id) {
            Id& parent = regions_[at(id)].parent;
            id = parent = regions_[at(parent)].parent;
        }
        return id;
    }

    void resize(Id id, std::uint64_t pixels) {
        regions_[at(id)].pixels = static_cast<std::uint32_t>(std::min(pixels, std::uint64_t{UINT32_MAX}));
    }

    /// Makes a link the edge from one region to another, kept by the first.
    void keep(Id keeper, Id other, Index edge) {
        links_[at(edge)].region = other;
        append(regions_[at(keeper)].edges, edge);
        const Px value = regions_[at(keeper)].value;
        if (value == never_ || value == neither_) return;  // nobody will look for it
        const Index link = newLink();
        links_[at(link)].region = keeper;
        Index bucket = bucketOf(other, value);
        if (bucket == none) {
            bucket = indexOf(buckets_);
            buckets_.push_back({other, value, none, std::exchange(regions_[at(other)].buckets, bucket)});
            enter(bucket);
        }
        append(buckets_[at(bucket)].keepers, link);
    }

    /// Of two regions of one value; returns the one that is left.
    Id merge(Id a, Id b) {
        if (a == b) return a;
        if (regions_[at(a)].pixels < regions_[at(b)].pixels) std::swap(a, b);
        Region &left = regions_[at(a)], &gone = regions_[at(b)];
        gone.parent = a;
        resize(a, std::uint64_t{left.pixels} + gone.pixels);
        splice(left.edges, gone.edges);
        for (Index bucket = gone.buckets; bucket != none;) {
            Bucket& moved = buckets_[at(bucket)];
            const Index next = moved.next;
            const Index own = bucketOf(a, moved.value);
            if (own != none) {
                splice(buckets_[at(own)].keepers, moved.keepers);
                moved.region = none;
            } else {
                moved.region = a;
                moved.next = std::exchange(left.buckets, bucket);
                enter(bucket);
            }
            bucket = next;
        }
        return a;
    }

    Index newLink() {
        if (free_ != none) return takeFirst(free_);
        const Index link = indexOf(links_);
        links_.push_back({});
        return link;
    }

    void append(Index& ring, Index link) {
        links_[at(link)].next = link;
        splice(ring, link);
    }

    void splice(Index& ring, Index other) {
        if (other == none) return;
        if (ring != none) std::swap(links_[at(ring)].next, links_[at(other)].next);
        ring = other;
    }

    Index takeFirst(Index& ring) {
        Link& last = links_[at(ring)];
        const Index first = last.next;
        if (first == ring) {
            ring = none;
        } else {
            last.next = links_[at(first)].next;
        }
        return first;
    }

    Index bucketOf(Id region, Px value) const {
        if (slots_.empty()) return none;
        for (std::size_t slot = slotOf(region, value);; slot = next(slot)) {
            const Index bucket = slots_[slot];
            if (bucket == none) return none;
            if (buckets_[at(bucket)].region == region && buckets_[at(bucket)].value == value) return bucket;
        }
    }

    /// Where the search for a bucket begins: Fibonacci hashing.
    std::size_t slotOf(Id region, Px value) const {
        const auto low = std::uint64_t{static_cast<std::make_unsigned_t<Px>>(value)};
        const std::uint64_t key = (static_cast<std::uint64_t>(region) << 32 | low) * 0x9E3779B97F4A7C15U;
        return (key ^ key >> 32) & (slots_.size() - 1);
    }
    std::size_t next(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

    /// Enters a bucket in the hash table. One that was moved to another region keeps its old slot, too, which is harmless.
    void enter(Index bucket) {
        if (2 * (entered_ + 1) > slots_.size()) {
            slots_.assign(std::max(std::size_t{1024}, std::bit_ceil(4 * buckets_.size())), none);
            entered_ = 0;
            for (Index each = 0; each < indexOf(buckets_); ++each) {
                if (buckets_[at(each)].region != none && each != bucket) enterSlot(each);
            }
        }
        enterSlot(bucket);
    }

    void enterSlot(Index bucket) {
        std::size_t slot = slotOf(buckets_[at(bucket)].region, buckets_[at(bucket)].value);
        while (slots_[slot] != none) slot = next(slot);
        slots_[slot] = bucket;
        ++entered_;
    }

    const Px never_, neither_;
    std::uint32_t fills_ = 0;
    LargeVector<Region> regions_;
    LargeVector<Link> links_;
    Index free_ = none;  ///< a ring
    LargeVector<Bucket> buckets_;
    LargeVector<Index> slots_;  ///< a hash table of buckets with linear probing; its size is a power of 2
    std::size_t entered_ = 0;
};

}  // namespace omnar
