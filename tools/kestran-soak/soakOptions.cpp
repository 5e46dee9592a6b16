#include "kestran-soak/soakOptions.h"

namespace {

std::string textOf(const TimeControl& control) {
    return control.text;
}

std::string textOf(int number) {
    return std::to_string(number);
}

template <class T> std::string listOf(const std::vector<T>& values) {
    std::string text;
    for (const T& value : values) {
        text += text.empty() ? "" : ",";
        text += textOf(value);
    }
    return text;
}

} // namespace

std::string SoakOptions::describeGames() const {
    static const SoakOptions USUAL;
    std::string text = "--seed " + std::to_string(seed);
    const auto add = [&](const std::string& name, const std::string& own,
                         const std::string& usual) {
        if (own != usual) {
            text += " " + name + " " + own;
        }
    };
    add("--plies", std::to_string(plies), std::to_string(USUAL.plies));
    add("--time", listOf(times), listOf(USUAL.times));
    add("--hash", listOf(hashes), listOf(USUAL.hashes));
    add("--margin", std::to_string(margin), std::to_string(USUAL.margin));
    add("--grace", std::to_string(grace), std::to_string(USUAL.grace));
    return text;
}
