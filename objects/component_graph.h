// SPDX-License-Identifier: MIT

/// @file
/// Connected components of equal pixels as the nodes of a graph. A fill in the graph accesses no pixel.
#pragma once

#include <algorithm>
#include <bit>
#include <cstddef>
#include <cstdint>
#include <limits>
#include <type_traits>
#include <utility>

#include "buffers/host/large_vector.h"

namespace omnar {

/// The region adjacency graph: the nodes are the 4-connected components of equal pixels, the edges join those that
/// touch. A fill gives a component another value and merges it with the neighbours of that value: adjacent components
/// always differ in value.
///
/// Each edge is kept by one of its two components: by the smaller one, or by one that had at most about twice the
/// pixels of the other at its last fill. The other one finds the edge in a bucket, by the value of the keeper. A fill
/// visits the edges that the component keeps and a single bucket. At most area / n components have n pixels or more,
/// and a planar graph has fewer than three edges per node. If no pixel is the seed of more than one fill, all fills
/// together take O(area * log(area)) steps.
template <class Px>
class ComponentGraph {
public:
    using Id = std::int32_t;

    /// No component is ever filled with `object` or `reserved`.
    ComponentGraph(Px object, Px reserved) : object_(object), reserved_(reserved) {}

    Id add(Px value) {
        components_.push_back({nextIndex(components_), value, 0, none, none, 0});
        return components_.back().parent;
    }
    void enlarge(Id id, std::uint32_t pixels) { resize(id, std::uint64_t{componentAt(id).pixels} + pixels); }

    /// Adds an edge, after both components have their full size.
    void connect(Id a, Id b) {
        if (componentAt(a).pixels > componentAt(b).pixels) std::swap(a, b);
        const Index last = componentAt(a).edges;
        const bool known = last != none && linkAt(last).component == b;  // most components keep a single edge
        if (!known) keep(a, b, newLink());
    }

    Px valueOf(Id id) { return componentAt(root(id)).value; }

    void fill(Id id, Px value) {
        Id self = root(id);
        if (componentAt(self).value == value) return;
        componentAt(self).value = value;
        ++fills_;
        componentAt(self).visited = fills_;

        Index equal = none;  // edges to neighbours of the new value
        for (Index edges = std::exchange(componentAt(self).edges, none); edges != none;) {
            const Index edge = takeFirst(edges);
            const Id other = root(linkAt(edge).component);
            Component& neighbour = componentAt(other);
            if (neighbour.visited == fills_) {  // the component itself after a merge, or a second edge to it
                append(free_, edge);
                continue;
            }
            neighbour.visited = fills_;
            if (neighbour.value == value) {
                append(equal, edge);
            } else if (neighbour.pixels < componentAt(self).pixels / 2) {
                keep(other, self, edge);
            } else {
                keep(self, other, edge);
            }
        }
        if (const Index bucket = bucketOf(self, value); bucket != none) {
            splice(equal, std::exchange(bucketAt(bucket).keepers, none));
        }
        while (equal != none) {
            const Index link = takeFirst(equal);
            const Id other = root(linkAt(link).component);
            append(free_, link);
            // Buckets also hold components that no longer have the value.
            if (componentAt(other).value == value) self = merge(self, other);
        }
    }

private:
    /// An index into one of the vectors below. A ring of links is given by its last link.
    using Index = std::int32_t;
    static constexpr Index none = -1;

    struct Component {
        Id parent;  ///< itself, unless merged into another component
        Px value;
        std::uint32_t pixels;
        Index edges;            ///< a ring: the edges that it keeps
        Index buckets;          ///< a list
        std::uint32_t visited;  ///< the last fill that visited it
    };
    struct Link {
        Id component;
        Index next;
    };
    /// The components that keep an edge to a component and have, or have had, a value.
    struct Bucket {
        Id component;
        Px value;
        Index keepers;  ///< a ring
        Index next;     ///< of the same component
    };

    Component& componentAt(Id id) { return components_[static_cast<std::size_t>(id)]; }
    Link& linkAt(Index index) { return links_[static_cast<std::size_t>(index)]; }
    Bucket& bucketAt(Index index) { return buckets_[static_cast<std::size_t>(index)]; }
    const Bucket& bucketAt(Index index) const { return buckets_[static_cast<std::size_t>(index)]; }

    /// The index of the next element of a vector.
    template <class T>
    static Index nextIndex(const LargeVector<T>& elements) {
        if (elements.size() >= std::size_t{std::numeric_limits<Index>::max()}) {
            throw COmnarException(outOfMemory, "component_graph.h", __LINE__, 0);
        }
        return static_cast<Index>(elements.size());
    }

    Id root(Id id) {
        while (componentAt(id).parent != id) {
            Id& parent = componentAt(id).parent;
            id = parent = componentAt(parent).parent;
        }
        return id;
    }

    void resize(Id id, std::uint64_t pixels) {
        componentAt(id).pixels = static_cast<std::uint32_t>(std::min(pixels, std::uint64_t{UINT32_MAX}));
    }

    /// Makes `edge` the edge between two components, kept by the first.
    void keep(Id keeper, Id other, Index edge) {
        linkAt(edge).component = other;
        append(componentAt(keeper).edges, edge);
        const Px value = componentAt(keeper).value;
        if (value == object_ || value == reserved_) return;  // no fill looks for it
        const Index link = newLink();
        linkAt(link).component = keeper;
        Index bucket = bucketOf(other, value);
        if (bucket == none) {
            bucket = nextIndex(buckets_);
            buckets_.push_back({other, value, none, std::exchange(componentAt(other).buckets, bucket)});
            enter(bucket);
        }
        append(bucketAt(bucket).keepers, link);
    }

    /// Merges the smaller of two components of one value into the other. Returns the one that is kept.
    Id merge(Id a, Id b) {
        if (a == b) return a;
        if (componentAt(a).pixels < componentAt(b).pixels) std::swap(a, b);
        Component &kept = componentAt(a), &merged = componentAt(b);
        merged.parent = a;
        resize(a, std::uint64_t{kept.pixels} + merged.pixels);
        splice(kept.edges, merged.edges);
        for (Index bucket = merged.buckets; bucket != none;) {
            Bucket& moved = bucketAt(bucket);
            const Index next = moved.next;
            const Index existing = bucketOf(a, moved.value);
            if (existing != none) {
                splice(bucketAt(existing).keepers, moved.keepers);
                moved.component = none;
            } else {
                moved.component = a;
                moved.next = std::exchange(kept.buckets, bucket);
                enter(bucket);
            }
            bucket = next;
        }
        return a;
    }

    Index newLink() {
        if (free_ != none) return takeFirst(free_);
        const Index link = nextIndex(links_);
        links_.push_back({});
        return link;
    }

    void append(Index& ring, Index link) {
        linkAt(link).next = link;
        splice(ring, link);
    }

    void splice(Index& ring, Index other) {
        if (other == none) return;
        if (ring != none) std::swap(linkAt(ring).next, linkAt(other).next);
        ring = other;
    }

    Index takeFirst(Index& ring) {
        Link& last = linkAt(ring);
        const Index first = last.next;
        if (first == ring) {
            ring = none;
        } else {
            last.next = linkAt(first).next;
        }
        return first;
    }

    Index bucketOf(Id component, Px value) const {
        if (slots_.empty()) return none;
        for (std::size_t slot = slotOf(component, value);; slot = nextSlot(slot)) {
            const Index bucket = slots_[slot];
            if (bucket == none) return none;
            if (bucketAt(bucket).component == component && bucketAt(bucket).value == value) return bucket;
        }
    }

    /// The first slot of the search for a bucket, by Fibonacci hashing.
    std::size_t slotOf(Id component, Px value) const {
        const auto low = std::uint64_t{static_cast<std::make_unsigned_t<Px>>(value)};
        const std::uint64_t key = (static_cast<std::uint64_t>(component) << 32 | low) * 0x9E3779B97F4A7C15U;
        return (key ^ key >> 32) & (slots_.size() - 1);
    }
    std::size_t nextSlot(std::size_t slot) const { return (slot + 1) & (slots_.size() - 1); }

    /// Enters a bucket in the hash table. The slot of a bucket that was moved from another component stays, unused.
    void enter(Index bucket) {
        if (2 * (entered_ + 1) > slots_.size()) {
            slots_.assign(std::max(std::size_t{1024}, std::bit_ceil(4 * buckets_.size())), none);
            entered_ = 0;
            for (Index each = 0; each < nextIndex(buckets_); ++each) {
                if (bucketAt(each).component != none && each != bucket) enterSlot(each);
            }
        }
        enterSlot(bucket);
    }

    void enterSlot(Index bucket) {
        std::size_t slot = slotOf(bucketAt(bucket).component, bucketAt(bucket).value);
        while (slots_[slot] != none) slot = nextSlot(slot);
        slots_[slot] = bucket;
        ++entered_;
    }

    const Px object_, reserved_;
    std::uint32_t fills_ = 0;
    LargeVector<Component> components_;
    LargeVector<Link> links_;
    Index free_ = none;  ///< a ring of unused links
    LargeVector<Bucket> buckets_;
    LargeVector<Index> slots_;  ///< a hash table of buckets: linear probing, its size a power of 2
    std::size_t entered_ = 0;
};

}  // namespace omnar
