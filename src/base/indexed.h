// A table with a typed index: a colour, a piece type, a square or a list entry. A table indexed by
// an enumeration accepts no index of another type.
//
// Almost every file includes this header, so it includes little itself.
#pragma once

#include <array>
#include <cstddef>

#ifdef KESTRAN_CHECK_INDICES
#include <cstdlib>
#endif

// `index` as a container index. Requires 0 <= index < size, which builds with
// KESTRAN_CHECK_INDICES verify.
constexpr std::size_t checkedIndex(int index, [[maybe_unused]] std::size_t size) {
#ifdef KESTRAN_CHECK_INDICES
    if (index < 0 || static_cast<std::size_t>(index) >= size) {
        std::abort();
    }
#endif
    return static_cast<std::size_t>(index);
}

// `index` as an index of a standard container. Requires 0 <= index.
constexpr std::size_t at(int index) {
    return static_cast<std::size_t>(index);
}

// `SIZE` elements, indexed from 0 by values of `Index`, which converts to int. `ROOM` is the
// number of elements in memory; those past SIZE are unused.
template <class Index, class Element, std::size_t SIZE, std::size_t ROOM = SIZE> struct Indexed {
    std::array<Element, ROOM> elements;

    constexpr Element& operator[](Index index) { return elements[checkedIndex(index, SIZE)]; }
    constexpr const Element& operator[](Index index) const {
        return elements[checkedIndex(index, SIZE)];
    }
    constexpr void fill(const Element& value) { elements.fill(value); }
    constexpr auto begin() { return elements.begin(); }
    constexpr auto end() { return elements.begin() + SIZE; }
    constexpr auto begin() const { return elements.begin(); }
    constexpr auto end() const { return elements.begin() + SIZE; }
    static constexpr std::size_t size() { return SIZE; }
};
