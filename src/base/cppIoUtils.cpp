#include "base/cppIoUtils.h"

#include <algorithm>
#include <cstring>
#include <iostream>
#include <iterator>
#include <sstream>

namespace {

#ifdef _WIN32
constexpr EnvSystem PLATFORM = EnvSystem::WINDOWS;
#else
constexpr EnvSystem PLATFORM = EnvSystem::LINUX;
#endif

struct Separators {
    char foreign;
    char own;
};

Separators separatorsOf(EnvSystem system) {
    return system == EnvSystem::WINDOWS ? Separators{'/', '\\'} : Separators{'\\', '/'};
}

void replaceStr(std::string& str, char from, char to) {
    std::replace(str.begin(), str.end(), from, to);
}

void replaceCStr(char* str, char from, char to) {
    std::replace(str, str + std::strlen(str), from, to);
}

} // namespace

Env::Env() : system(PLATFORM) {
}

Env& Env::getInstance() {
    static Env instance;
    return instance;
}

std::string Env::slashSafeString(std::string path) const {
    const auto [foreign, own] = separatorsOf(system);
    replaceStr(path, foreign, own);
    return path;
}

std::string Env::slashSafeString(const char* path) const {
    return slashSafeString(std::string(path));
}

char* Env::slashSafeCString(char* path) const {
    const auto [foreign, own] = separatorsOf(system);
    replaceCStr(path, foreign, own);
    return path;
}

void Env::print() const {
    std::cout << "Environment :\n"
              << "System :" << static_cast<int>(system) << "\n";
}

std::string indentString(int indentation, const std::string& original) {
    const std::string blanks(static_cast<std::size_t>(indentation), ' ');
    std::string result = blanks;
    for (const char c : original) {
        result += c;
        if (c == '\n') {
            result += blanks;
        }
    }
    return result;
}

std::vector<std::string> splitString(const std::string& str) {
    std::istringstream stream(str);
    return {std::istream_iterator<std::string>(stream), std::istream_iterator<std::string>()};
}

std::string joined(std::span<const std::string> words) {
    std::string text;
    for (const std::string& word : words) {
        text += (text.empty() ? "" : " ") + word;
    }
    return text;
}
