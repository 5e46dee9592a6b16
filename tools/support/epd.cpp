#include "support/epd.h"

#include "base/cppIoUtils.h"
#include "notation/fen.h"
#include "support/text.h"
#include "support/textFile.h"
#include "support/uciLines.h"

#include <algorithm>
#include <span>

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
           matchForm(words[count], "#")) {
        ++count;
    }
    return count;
}

EpdRecord readRecord(const std::string& text, const std::string& path, int line) {
    std::vector<std::string> parts = splitAtSemicolons(text);
    const std::vector<std::string> words = splitString(parts.front());
    const std::size_t fields = countFields(words);
    EpdRecord record = {line, joined(std::span(words).first(fields)), {}, {}};
    const std::string fault = readPlayableFen(record.position, record.fen);
    if (!fault.empty()) {
        throw UsageError(path + ":" + std::to_string(line) + ": the position \"" + record.fen +
                         "\" cannot be played: " + fault);
    }
    // What follows the fields without a semicolon is the first operation.
    parts.front() = joined(std::span(words).subspan(fields));
    for (const std::string& part : parts) {
        if (const std::string operation = joined(splitString(part)); !operation.empty()) {
            record.operations.push_back(operation);
        }
    }
    return record;
}

} // namespace

std::vector<EpdRecord> readEpd(const std::string& path) {
    std::ifstream file = openText(path);
    std::vector<EpdRecord> records;
    int line = 0;
    for (std::string text; std::getline(file, text);) {
        ++line;
        const std::size_t begin = text.find_first_not_of(" \t\r");
        if (begin != std::string::npos && text[begin] != '#') {
            records.push_back(readRecord(text, path, line));
        }
    }
    if (file.bad()) {
        throw UsageError("the file " + path + " cannot be read to its end");
    }
    if (records.empty()) {
        throw UsageError("the file " + path + " holds no position");
    }
    return records;
}
