// A table whose index is a small type of its own: a colour, a kind, a field, an entry of a
// list. An index of another type does not compile. Builds that look for faults check each
// index; the engine that plays does not.
#pragma once

#include <algorithm>
#include <array>
#include <cstddef>
#include <span>

#ifdef KESTRAN_CHECK_INDICES
#include <cstdlib>
#endif

// `index` as a standard container wants it. Requires 0 <= index < size.
constexpr std::size_t checkedIndex(int index, [[maybe_unused]] std::size_t size) {
#ifdef KESTRAN_CHECK_INDICES
    if (index < 0 || static_cast<std::size_t>(index) >= size) {
        std::abort();
    }
#endif
    return static_cast<std::size_t>(index);
}

// The same for a container that checks its size itself. Requires 0 <= index.
constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

// `SIZE` elements, indexed from 0 by values of `Index`, which converts to int. There may be room
// for more, which nobody uses.
template <class Index, class Element, std::size_t SIZE, std::size_t ROOM = SIZE> struct Indexed {
    std::array<Element, ROOM> elements;

    constexpr Element& operator[](Index index) { return elements[checkedIndex(index, SIZE)]; }
    constexpr const Element& operator[](Index index) const {
        return elements[checkedIndex(index, SIZE)];
    }
    // The first `count` elements.
    constexpr std::span<const Element> first(int count) const {
        return {elements.data(), checkedIndex(count, SIZE + 1)};
    }
    constexpr void fill(const Element& value) { elements.fill(value); }
    constexpr auto begin() { return elements.begin(); }
    constexpr auto end() { return elements.begin() + SIZE; }
    constexpr auto begin() const { return elements.begin(); }
    constexpr auto end() const { return elements.begin() + SIZE; }
    static constexpr std::size_t size() { return SIZE; }

    // Instantiated only where two tables are compared.
    constexpr bool operator==(const Indexed& other) const {
        return std::equal(begin(), end(), other.begin());
    }
};
