// Small helpers for text and paths.
#pragma once

#include <string>
#include <vector>

enum class EnvSystem { LINUX = 0, WINDOWS = 1 };

// The system that the process runs on, as far as paths are concerned.
class Env {
public:
    Env();
    // The one shared instance, made at its first use.
    static Env& getInstance();

    // A copy of `path` with its separators turned to those of the system.
    std::string slashSafeString(std::string path) const;
    std::string slashSafeString(const char* path) const;
    // The same in place; returns `path`.
    char* slashSafeCString(char* path) const;
    // Writes the system's number to standard output, for a person.
    void print() const;

    EnvSystem system;
};

// `original` with `indentation` blanks at its start and after every line end.
std::string indentString(int indentation, const std::string& original);

// The words of `str`, as white space separates them.
std::vector<std::string> splitString(const std::string& str);
