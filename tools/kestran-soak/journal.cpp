#include "kestran-soak/journal.h"

#include "support/commandLine.h"

#include <array>
#include <charconv>
#include <fstream>
#include <limits>
#include <stdexcept>
#include <string_view>
#include <system_error>
#include <utility>
#include <vector>

// A line for each game and each process; fields with a tab between them.

namespace {

constexpr int MOST = std::numeric_limits<int>::max();
constexpr std::size_t GAME_FIELDS = 11; // before the findings
constexpr std::size_t ENGINE_FIELDS = 5;

// By kind of finding; its text follows.
constexpr std::array<const char*, 4> KIND_NAMES = {"time:", "illegal:", "protocol:", "overrun:"};

int toNumber(const std::string& text) {
    return parseNumber(text, "each number of a journal", 0, MOST);
}

std::string latenessText(const Lateness& lateness) {
    std::string text;
    for (const auto& [beyond, count] : lateness.getCounts()) {
        text += text.empty() ? "" : ",";
        text += std::to_string(beyond) + ':' + std::to_string(count);
    }
    return text;
}

Lateness parseLateness(const std::string& text) {
    Lateness lateness;
    if (text.empty()) {
        return lateness;
    }
    for (const std::string& pair : splitAt(text, ',')) {
        const std::vector<std::string> numbers = splitAt(pair, ':');
        lateness.add(toNumber(numbers.at(0)), toNumber(numbers.at(1)));
    }
    return lateness;
}

std::string findingText(const Finding& finding) {
    return KIND_NAMES.at(static_cast<std::size_t>(finding.kind)) + finding.text;
}

Finding parseFinding(const std::string& text) {
    for (std::size_t kind = 0; kind < KIND_NAMES.size(); ++kind) {
        const std::string_view name = KIND_NAMES.at(kind);
        if (text.starts_with(name)) {
            return {static_cast<Finding::Kind>(kind), text.substr(name.size())};
        }
    }
    throw std::out_of_range("no finding");
}

std::string gameText(const GameResult& result) {
    const PlayedGame& game = result.game;
    std::string line = "game\t" + std::to_string(game.number) + '\t' + std::to_string(game.seed) +
                       '\t' + std::to_string(result.plies) + '\t' + std::to_string(result.starved) +
                       '\t' + game.result + '\t' + game.termination + '\t' + game.timeControl +
                       '\t' + game.fen + '\t' + game.moves + '\t' + latenessText(result.lateness);
    for (const Finding& finding : result.findings) {
        line += '\t' + findingText(finding);
    }
    return line;
}

GameResult parseGame(const std::vector<std::string>& fields) {
    GameResult result;
    PlayedGame& game = result.game;
    game.number = toNumber(fields.at(1));
    game.seed = static_cast<unsigned>(toNumber(fields.at(2)));
    result.plies = toNumber(fields.at(3));
    result.starved = toNumber(fields.at(4));
    game.result = fields.at(5);
    game.termination = fields.at(6);
    game.timeControl = fields.at(7);
    game.fen = fields.at(8);
    game.moves = fields.at(9);
    result.lateness = parseLateness(fields.at(10));
    for (std::size_t i = GAME_FIELDS; i < fields.size(); ++i) {
        result.findings.push_back(parseFinding(fields[i]));
    }
    game.fault = joinFaults(result.findings);
    return result;
}

std::string engineText(const EngineResult& result) {
    return "engine\t" + std::to_string(result.first) + '\t' + std::to_string(result.settled) +
           '\t' + std::to_string(result.last) + '\t' + result.fault;
}

EngineResult parseEngine(const std::vector<std::string>& fields) {
    if (fields.size() != ENGINE_FIELDS) {
        throw std::out_of_range("no process");
    }
    return {toNumber(fields[1]), toNumber(fields[2]), toNumber(fields[3]), fields[4]};
}

[[noreturn]] void refuse(const std::string& path, const std::string& reason) {
    throw UsageError("the state file " + path + ' ' + reason);
}

} // namespace

Journal::Journal(std::string _path, const std::string& engine, const std::string& games,
                 SoakReport& report)
    : path(std::move(_path)) {
    const std::string heading = "kestran-soak 2\t" + engine + '\t' + games;
    try {
        file.emplace(path);
    } catch (const std::system_error& fault) {
        const bool isInUse = fault.code() == std::errc::device_or_resource_busy;
        refuse(path, isInUse ? "is in use" : "cannot be opened: " + fault.code().message());
    }
    const std::size_t length = load(heading, report);
    try {
        file->cutOff(length);
    } catch (const std::system_error& fault) {
        refuse(path, "cannot be written: " + fault.code().message());
    }
    if (length == 0) {
        addLine(heading);
    }
}

void Journal::add(const GameResult& result) {
    addLine(gameText(result));
}

void Journal::add(const EngineResult& result) {
    addLine(engineText(result));
}

std::size_t Journal::load(const std::string& heading, SoakReport& report) {
    std::ifstream kept(path, std::ios::binary);
    std::size_t length = 0;
    int number = 0;
    std::string line;
    while (std::getline(kept, line) && !kept.eof()) {
        ++number;
        const std::vector<std::string> fields = splitAt(line, '\t');
        try {
            if (number == 1 && line != heading) {
                refuse(path, "is of another soak: \"" + fields.back() + '"');
            } else if (fields.at(0) == "game") {
                const GameResult result = parseGame(fields);
                played.insert(result.game.number);
                report.add(result);
            } else if (fields.at(0) == "engine") {
                report.add(parseEngine(fields));
            } else if (number > 1) {
                throw std::out_of_range("unknown");
            }
        } catch (const std::out_of_range&) {
            refuse(path, "makes no sense in line " + std::to_string(number));
        }
        length += line.size() + 1;
    }
    if (number == 0 && !heading.starts_with(line)) {
        refuse(path, "is no such file");
    }
    return length;
}

void Journal::addLine(const std::string& line) {
    try {
        file->append(line + '\n');
    } catch (const std::system_error& fault) {
        throw std::runtime_error("the state file " + path +
                                 " cannot be written: " + fault.code().message());
    }
}
