// What the fuzz targets have in common. Each is one function that takes bytes and ends
// the process if the code under test does not keep its word.
#pragma once

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>

// Called by libFuzzer once per input. Returns 0.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size);
// Called by libFuzzer once. Returns 0.
extern "C" int LLVMFuzzerInitialize(int* argc, char*** argv);

inline std::string textOf(const std::uint8_t* data, std::size_t size) {
    return {reinterpret_cast<const char*>(data), size};
}

inline void require(bool condition, const std::string& what) {
    if (!condition) {
        std::fprintf(stderr, "fuzz: %s\n", what.c_str());
        std::abort();
    }
}
