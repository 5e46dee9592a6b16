#include "uci/modernOptions.h"

#include "uci/uciReports.h"
#include "uci/words.h"

#include <algorithm>
#include <array>
#include <fstream>
#include <iostream>

namespace {

constexpr const char* BOOK_FILE = "BookFile";

// A number. Without a member, setting it has no effect beyond the result of set().
struct Spin {
    const char* name;
    int initial, min, max;
    int ModernOptions::*value = nullptr;
};

constexpr std::array SPINS = {
    // A value that no table can have is rejected when the table is resized.
    Spin{"Hash", ModernOptions::DEFAULT_HASH, 0, ModernOptions::MAX_HASH},
    Spin{"Threads", 1, 1, 1},
    Spin{"MultiPV", 1, 1, ModernOptions::MAX_LINES, &ModernOptions::lines},
    Spin{"UCI_Elo", LEVELS.back().rating, LEVELS.front().rating, LEVELS.back().rating,
         &ModernOptions::rating},
    Spin{"Move Overhead", ModernOptions::DEFAULT_OVERHEAD, 0, ModernOptions::MAX_OVERHEAD,
         &ModernOptions::moveOverhead},
};

struct Check {
    const char* name;
    bool ModernOptions::*value;
};

constexpr std::array CHECKS = {
    Check{"UCI_LimitStrength", &ModernOptions::limitsStrength},
    Check{"Ponder", &ModernOptions::ponder},
    Check{"OwnBook", &ModernOptions::ownBook},
};

std::optional<bool> truthOf(const std::string& text) {
    const std::string word = lowered(text);
    return word == "true" || word == "false" ? std::optional(word == "true") : std::nullopt;
}

void reject(const char* name, const std::string& value, const char* type) {
    std::cerr << "option " << name << " rejected: \"" << value << "\" is not " << type << std::endl;
}

} // namespace

std::vector<std::string> ModernOptions::getLines() {
    std::vector<std::string> lines;
    lines.reserve(SPINS.size() + CHECKS.size() + 2);
    for (const Spin& spin : SPINS) {
        lines.push_back(std::string("option name ") + spin.name + " type spin default " +
                        std::to_string(spin.initial) + " min " + std::to_string(spin.min) +
                        " max " + std::to_string(spin.max));
    }
    for (const Check& check : CHECKS) {
        lines.push_back(std::string("option name ") + check.name + " type check default false");
    }
    lines.push_back(std::string("option name ") + BOOK_FILE + " type string default <empty>");
    lines.emplace_back("option name Clear Hash type button");
    return lines;
}

std::optional<int> ModernOptions::set(const std::vector<std::string>& words) {
    const auto place = std::find(words.begin(), words.end(), OPTION_VALUE);
    // A button has no value: each search clears the table, so it needs no action.
    if (words[1] != OPTION_NAME || words.end() - place < 2) {
        return std::nullopt;
    }
    const std::string name = lowered(joined(words.begin() + 2, place));
    const std::string value = joined(place + 1, words.end());
    for (const Check& check : CHECKS) {
        if (name == lowered(check.name)) {
            if (const std::optional<bool> truth = truthOf(value)) {
                this->*check.value = *truth;
            } else {
                reject(check.name, value, "true or false");
            }
            return std::nullopt;
        }
    }
    if (name == lowered(BOOK_FILE)) {
        readBook(value);
        return std::nullopt;
    }
    for (const Spin& spin : SPINS) {
        if (name == lowered(spin.name)) {
            const std::optional<int> number = numberOf(value);
            if (!number) {
                reject(spin.name, value, "a number");
            } else if (spin.value != nullptr) {
                this->*spin.value = std::clamp(*number, spin.min, spin.max);
            }
            return spin.name == HASH ? number : std::nullopt;
        }
    }
    return std::nullopt;
}

// Without a value, or with the word for none, it is the built-in book again.
void ModernOptions::readBook(const std::string& path) {
    if (path.empty() || path == "<empty>") {
        book = nullptr;
        return;
    }
    const bool canBeRead = std::ifstream(path).is_open();
    PolyglotBook fromFile = canBeRead ? PolyglotBook::getBookFromFile(path, false) : PolyglotBook();
    if (fromFile.isEmpty()) {
        std::cerr << "option " << BOOK_FILE
                  << " rejected: " << (canBeRead ? "no book line in \"" : "cannot open \"") << path
                  << '"' << std::endl;
        return;
    }
    book = std::make_shared<PolyglotBook>(std::move(fromFile));
}
