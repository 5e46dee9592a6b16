// Helpers for text and paths.
#pragma once

#include <span>
#include <string>
#include <vector>

enum class EnvSystem { LINUX = 0, WINDOWS = 1 };

// The path conventions of the operating system.
class Env {
public:
    Env();
    // The shared instance, created by the first call.
    static Env& getInstance();

    // A copy of `path` with the separators of the system.
    std::string slashSafeString(std::string path) const;
    std::string slashSafeString(const char* path) const;
    // Replaces the separators in place and returns `path`.
    char* slashSafeCString(char* path) const;
    // Prints `system` to standard output, as a number.
    void print() const;

    EnvSystem system; // the one that the program was built for
};

// `original` with `indentation` blanks at its start and after each line end, the last included.
std::string indentString(int indentation, const std::string& original);

// Splits text at any white space. UCI lines have other separators; see UciEngine.
std::vector<std::string> splitString(const std::string& str);

// The words with a blank between two.
std::string joined(std::span<const std::string> words);
