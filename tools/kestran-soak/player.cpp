#include "kestran-soak/player.h"

#include <algorithm>
#include <span>

namespace {

using Clock = std::chrono::steady_clock;
using std::chrono::milliseconds;

// For the last words of an engine with a fault.
constexpr milliseconds LAST_WORDS_TIME{100};
constexpr std::size_t MOST_LINES = 1000; // of a greeting, and of last words
// Games in which a process may use memory for the first time.
constexpr std::size_t SETTLING_GAMES = 10;

[[noreturn]] void fail(const std::string& message, const std::string& line = "") {
    throw Fault(Fault::PROTOCOL, message + (line.empty() ? "" : " \"" + line + '"'));
}

} // namespace

void Player::beginGame(int hash) {
    conversation.clear();
    if (!process) {
        started = Clock::now();
        process.emplace(options.path, options.arguments);
        resident.clear();
        dialect = &OTHER_DIALECT;
        say("uci");
        dialect = &dialectOf(hear(options.patience));
        std::vector<std::string> greeting;
        while (greeting.size() < MOST_LINES && (greeting.empty() || greeting.back() != "uciok")) {
            greeting.push_back(hear(options.patience));
        }
        if (!dialect->greeting.empty() && greeting != dialect->greeting) {
            fail("unexpected answer to uci");
        }
    }
    say("ucinewgame");
    say("setoption name Hash value " + std::to_string(hash));
}

std::pair<std::string, std::int64_t> Player::think(const SoakGame& game) {
    say(game.getPositionLine());
    expectReady();
    expectSilence(milliseconds(std::uniform_int_distribution(0, options.pause)(random)));
    return search(game.getBoard(), game.getGoLine(), game.getAllowed());
}

std::pair<std::string, std::int64_t> Player::search(const plain::Position& board,
                                                    const std::string& go, std::int64_t allowed) {
    const auto asked = Clock::now();
    const auto age = [asked] {
        return std::chrono::duration_cast<milliseconds>(Clock::now() - asked);
    };
    say(go);
    std::vector<std::string> lines;
    do {
        lines.push_back(hear(milliseconds(allowed) + options.patience - age()));
    } while (!lines.back().starts_with("bestmove "));
    const std::int64_t millis = age().count();
    const std::string move = lines.back().substr(9, lines.back().find(' ', 9) - 9);
    if (!plain::Position(board).play(move)) {
        throw Fault(Fault::ILLEGAL_MOVE, "illegal move \"" + move + '"');
    }
    if (const std::string fault = findFault(lines, *dialect, board); !fault.empty()) {
        fail(fault);
    }
    return {move, millis};
}

// With the smallest table, so that it plays no part how much of the table the game has used. The
// position is none of the book: the search puts the new size in force.
void Player::endGame(GameRecord& record) {
    const std::string fen = "rnbqkbnr/1ppppppp/p7/8/8/P6P/1PPPPPP1/RNBQKBNR b KQkq - 0 2";
    say("setoption name Hash value 1");
    say("position fen " + fen);
    search(plain::Position(fen), "go movetime 1", 1);
    expectReady();
    expectSilence(milliseconds(0));
    resident.push_back(process->getResidentKib());
    const std::size_t games = std::min(resident.size(), SETTLING_GAMES);
    const std::int64_t settled = std::ranges::max(std::span(resident).first(games));
    record.settling = std::max(record.settling, settled - resident.front());
    record.growth = std::max(record.growth, resident.back() - settled);
}

void Player::quit() {
    if (process) {
        conversation.clear();
        say("quit");
        const std::optional<UciProcess::End> end = process->waitForEnd(options.patience);
        if (!end || !end->exited || end->status != 0) {
            fail("no clean end after quit");
        }
        expectSilence(milliseconds(0));
    }
}

std::string Player::settle(const Fault& fault) {
    const std::string text = options.path + ": " + fault.what();
    if (fault.kind == Fault::TIME_LOSS || !process) {
        return text;
    }
    const std::optional<UciProcess::End> end = process->waitForEnd(LAST_WORDS_TIME);
    std::optional<std::string> line;
    for (std::size_t i = 0; i < MOST_LINES && (line = process->readLine(milliseconds(0))); ++i) {
        note('<', *line);
    }
    conversation += "On standard error: " + process->readErrors() + '\n';
    process.reset();
    return text + (!end          ? "; the process was running"
                   : end->exited ? "; the process ended with status " + std::to_string(end->status)
                                 : "; the process ended by signal " + std::to_string(end->status));
}

void Player::say(const std::string& line) {
    note('>', line);
    if (!process->send(line)) {
        fail("it reads no more");
    }
}

std::string Player::hear(milliseconds timeout) {
    std::optional<std::string> line = process->readLine(std::max(timeout, milliseconds(0)));
    if (!line) {
        fail(process->isOutputOver() ? "its output has ended" : "it does not answer in time");
    }
    if (dialect == &OTHER_DIALECT && line->ends_with('\r')) {
        line->pop_back(); // as on Windows
    }
    note('<', *line);
    return *line;
}

void Player::expectReady() {
    say("isready");
    const std::string line = hear(options.patience);
    if (line != "readyok") {
        fail("instead of readyok", line);
    }
}

void Player::expectSilence(milliseconds time) {
    if (const std::optional<std::string> line = process->readLine(time)) {
        note('<', *line);
        fail("unasked line", *line);
    }
    if (const std::string& errors = process->readErrors(); !errors.empty()) {
        fail("on standard error:", errors.substr(0, errors.find('\n')));
    }
}

void Player::note(char direction, const std::string& line) {
    const auto now = std::chrono::duration_cast<milliseconds>(Clock::now() - started).count();
    conversation += std::to_string(now) + ' ' + direction + ' ' + line + '\n';
}
