#include "kestran-soak/player.h"

#include "kestran-soak/answer.h"

#include <iomanip>
#include <sstream>

Player::Player(const std::string& path, const std::vector<std::string>& arguments)
    : process(path, arguments) {
}

void Player::say(const std::string& line) {
    note(Clock::now(), '>', line);
    if (!process.send(line)) {
        throw ProtocolFault("the engine reads no more");
    }
}

void Player::listen() {
    process.takeOutput();
    heard = Clock::now();
}

std::optional<std::string> Player::takeLine() {
    std::optional<std::string> line = process.takeLine();
    if (line) {
        note(heard, '<', *line);
    }
    return line;
}

std::optional<UciProcess::End> Player::getEnd() {
    return process.waitForEnd(UciProcess::Timeout(0));
}

std::string Player::describeEnd() {
    const std::optional<UciProcess::End> end = getEnd();
    if (!end) {
        return "runs";
    }
    return (end->exited ? "ended with status " : "was ended by signal ") +
           std::to_string(end->status);
}

void Player::note(Clock::time_point when, char direction, const std::string& line) {
    const auto millis = std::chrono::duration_cast<std::chrono::milliseconds>(when - started);
    std::ostringstream text;
    text << std::setw(8) << millis.count() << ' ' << direction << ' ' << line << '\n';
    conversation += text.str();
}
