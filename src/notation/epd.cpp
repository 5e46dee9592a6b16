#include "notation/epd.h"

#include "base/cppIoUtils.h"
#include "notation/fen.h"

#include <algorithm>
#include <istream>
#include <span>
#include <utility>

namespace {

constexpr std::size_t LEAST_FIELDS = 4;
constexpr std::size_t MOST_FIELDS = 6; // with two clocks

// The parts of a line between semicolons, except those in double quotes.
std::vector<std::string> splitAtSemicolons(const std::string& line) {
    std::vector<std::string> parts(1);
    bool isQuoted = false;
    for (const char letter : line) {
        isQuoted = isQuoted != (letter == '"');
        if (letter == ';' && !isQuoted) {
            parts.emplace_back();
        } else {
            parts.back() += letter;
        }
    }
    return parts;
}

// How many words of the first part are fields of the position.
std::size_t countFields(std::span<const std::string> words) {
    std::size_t count = std::min(words.size(), LEAST_FIELDS);
    while (count >= LEAST_FIELDS && count < std::min(words.size(), MOST_FIELDS) &&
           words[count].find_first_not_of("0123456789") == std::string::npos) {
        ++count;
    }
    return count;
}

// Fills in a record. Returns why its position cannot be played, or an empty text.
std::string readRecord(const std::string& line, EpdRecord& record) {
    std::vector<std::string> parts = splitAtSemicolons(line);
    const std::vector<std::string> words = splitString(parts.front());
    const std::size_t fields = countFields(words);
    record.fen = joined(std::span(words).first(fields));
    std::string fault = readPlayableFen(record.position, record.fen);
    if (!fault.empty()) {
        return fault;
    }
    // What follows the fields without a semicolon is the first operation.
    parts.front() = joined(std::span(words).subspan(fields));
    for (const std::string& part : parts) {
        if (std::vector<std::string> operation = splitString(part); !operation.empty()) {
            record.operations.push_back(std::move(operation));
        }
    }
    return "";
}

} // namespace

EpdText readEpd(std::istream& text) {
    EpdText epd;
    int number = 0;
    for (std::string line; std::getline(text, line);) {
        ++number;
        const std::size_t begin = line.find_first_not_of(" \t\r");
        if (begin == std::string::npos || line[begin] == '#') {
            continue;
        }
        EpdRecord record = {number, {}, {}, {}};
        if (const std::string fault = readRecord(line, record); !fault.empty()) {
            epd.faultLine = number;
            epd.fault = "the position \"" + record.fen + "\" cannot be played: " + fault;
            break;
        }
        epd.records.push_back(std::move(record));
    }
    return epd;
}
