#include "kestran-soak/player.h"

#include "base/cppIoUtils.h"

#include <algorithm>
#include <iomanip>
#include <regex>
#include <sstream>
#include <utility>

namespace {

using std::chrono::milliseconds;

constexpr milliseconds REPLY_TIME{2000};
constexpr milliseconds ANSWER_TIME{10000};
// For an engine that is about to end, or to say more, when a fault is written down.
constexpr milliseconds LAST_WORDS_TIME{50};
constexpr int MOST_LAST_WORDS = 1000; // lines

const std::string MOVES = "((?: [a-h][1-8][a-h][1-8][qrbn]?)+)";
const std::regex REPORT("info pv" + MOVES +
                        R"( score cp -?\d+ depth \d+ seldepth \d+ nodes \d+ time \d+ nps \d+ )");
const std::regex CLOSING("info pv" + MOVES);

void checkLine(const std::string& line, const std::regex& form, NaiveBoard board) {
    std::smatch parts;
    if (!std::regex_match(line, parts, form)) {
        throw ProtocolFault("not of its form: \"" + line + '"');
    }
    for (const std::string& move : splitString(parts[1])) {
        if (!board.play(move)) {
            throw ProtocolFault("illegal move in \"" + line + '"');
        }
    }
}

void checkAnswer(const std::vector<std::string>& lines, const NaiveBoard& board) {
    if (lines.size() < 2) {
        throw ProtocolFault("no closing line before \"" + lines.back() + '"');
    }
    for (std::size_t i = 0; i + 2 < lines.size(); ++i) {
        checkLine(lines[i], REPORT, board);
    }
    const std::string& closing = lines[lines.size() - 2];
    const std::vector<std::string> words = splitString(closing);
    if (words.size() < 3 || lines.back() != "bestmove " + words[2]) {
        throw ProtocolFault('"' + lines.back() + "\" behind \"" + closing + '"');
    }
    // A first move that is not legal is for the game to count.
    const std::vector<std::string> legal = board.getLegalMoves();
    if (std::ranges::binary_search(legal, words[2])) {
        checkLine(closing, CLOSING, board);
    }
}

} // namespace

Player::Player(const std::string& path, const std::vector<std::string>& arguments)
    : process(path, arguments) {
}

void Player::greet() {
    say("uci");
    expect("id name KESTRAN CHESS 1.1.2");
    expect("id author Bremo Talvik");
    expect("option name Hash type spin min 0 max 512 default 192 ");
    expect("uciok");
}

void Player::say(const std::string& line) {
    note('>', line);
    if (!process.send(line)) {
        throw ProtocolFault("the engine reads no more");
    }
}

void Player::expect(const std::string& wanted) {
    const std::optional<std::string> line = readLine(REPLY_TIME);
    if (line != wanted) {
        throw ProtocolFault("not \"" + wanted + "\" but " + (line ? '"' + *line + '"' : "nothing"));
    }
}

void Player::expectQuiet() {
    say("isready");
    expect("readyok");
}

void Player::setHash(int mebibytes) {
    say("setoption name Hash value " + std::to_string(mebibytes));
}

std::string Player::readAnswer(const NaiveBoard& board) {
    const Clock::time_point deadline = Clock::now() + ANSWER_TIME;
    std::vector<std::string> lines;
    while (lines.empty() || !lines.back().starts_with("bestmove ")) {
        const auto left = std::chrono::duration_cast<milliseconds>(deadline - Clock::now());
        std::optional<std::string> line = readLine(std::max(left, milliseconds(0)));
        if (!line) {
            throw ProtocolFault("no bestmove");
        }
        lines.push_back(std::move(*line));
    }
    answered = Clock::now();
    checkAnswer(lines, board);
    return lines.back().substr(std::string("bestmove ").size());
}

long Player::getResidentKib() {
    setHash(1);
    say("position startpos moves a2a3 a7a6 h2h3");
    say("go movetime 0");
    NaiveBoard board;
    for (const char* move : {"a2a3", "a7a6", "h2h3"}) {
        board.play(move);
    }
    readAnswer(board);
    expectQuiet();
    return process.getResidentKib();
}

void Player::quit() {
    say("quit");
    const std::optional<UciProcess::End> end = process.waitForEnd(REPLY_TIME);
    if (!end || !end->exited || end->status != 0) {
        throw ProtocolFault("no clean end after quit");
    }
    if (!process.readErrors().empty()) {
        throw ProtocolFault("on standard error: " + process.readErrors());
    }
}

std::string Player::describeProcess() {
    int lines = 0;
    while (lines < MOST_LAST_WORDS && readLine(LAST_WORDS_TIME)) { // into the conversation
        ++lines;
    }
    const std::optional<UciProcess::End> end = process.waitForEnd(LAST_WORDS_TIME);
    std::string text = "runs";
    if (end) {
        text = (end->exited ? "ended with status " : "was ended by signal ") +
               std::to_string(end->status);
    }
    const std::string& errors = process.readErrors();
    return text + (errors.empty() ? ", said nothing on standard error\n"
                                  : ", said on standard error:\n" + errors);
}

std::optional<std::string> Player::readLine(UciProcess::Timeout timeout) {
    std::optional<std::string> line = process.readLine(timeout);
    if (line) {
        note('<', *line);
    }
    return line;
}

void Player::note(char direction, const std::string& line) {
    const auto millis = std::chrono::duration_cast<milliseconds>(Clock::now() - started);
    std::ostringstream text;
    text << std::setw(8) << millis.count() << ' ' << direction << ' ' << line << '\n';
    conversation += text.str();
}
