// Random choices by a seed.
#pragma once

#include <initializer_list>
#include <random>

class Dice {
public:
    explicit Dice(unsigned seed) : random(seed) {}

    int below(int end) { return static_cast<int>(random() % static_cast<unsigned>(end)); }
    bool chance(int percent) { return below(100) < percent; }
    template <class T> T pick(std::initializer_list<T> values) {
        return values.begin()[below(static_cast<int>(values.size()))];
    }
    template <class T> typename T::value_type pickFrom(const T& values) {
        return values[static_cast<std::size_t>(below(static_cast<int>(values.size())))];
    }

private:
    std::mt19937 random;
};
