#include "kestran-soak/timeControl.h"

#include "support/commandLine.h"
#include "support/textPattern.h"

#include <algorithm>
#include <utility>

namespace {

constexpr int MOST_MOVES = 1000;
constexpr int MOST_SECONDS = 86400;

// Seconds with at most three decimals.
std::int64_t toMillis(const std::string& text) {
    const std::size_t point = text.find('.');
    std::string decimals = point == std::string::npos ? "" : text.substr(point + 1);
    decimals.resize(3, '0');
    const std::int64_t seconds =
        parseNumber(text.substr(0, point), "a time in seconds", 0, MOST_SECONDS);
    return seconds * 1000 + std::stol(decimals);
}

} // namespace

TimeControl parseTimeControl(const std::string& text) {
    static const TextPattern FORM(R"((?:(\d+)/)?(\d+(?:\.\d{1,3})?)(?:\+(\d+(?:\.\d{1,3})?))?)");
    const auto parts = FORM.match(text);
    if (!parts) {
        throw UsageError("a time is like 1/0.001, 2+0.1 or 40/5, not \"" + text + '"');
    }
    TimeControl control;
    control.text = text;
    control.moves = parts->at(1).empty() ? 0 : parseNumber(parts->at(1), "MOVES", 1, MOST_MOVES);
    control.clock = toMillis(parts->at(2));
    control.increment = parts->at(3).empty() ? 0 : toMillis(parts->at(3));
    if (control.clock == 0) {
        throw UsageError("no time to begin with: \"" + text + '"');
    }
    if (control.moves == 1 && control.increment == 0) {
        control.moveTime = control.clock;
        control.clock = 0;
        control.moves = 0;
    }
    return control;
}

Clocks::Clocks(TimeControl timeControl, bool _isWhiteToMove)
    : control(std::move(timeControl)), isWhiteToMove(_isWhiteToMove) {
    left.fill(control.clock);
}

std::string Clocks::getGoLine() const {
    if (control.moveTime > 0) {
        return "go movetime " + std::to_string(control.moveTime);
    }
    std::string line = "go wtime " + std::to_string(left[0]) + " btime " + std::to_string(left[1]);
    if (control.moves > 0) {
        line += " movestogo " + std::to_string(control.moves - plies / 2 % control.moves);
    }
    if (control.increment > 0) {
        const std::string increment = std::to_string(control.increment);
        line += " winc " + increment + " binc " + increment;
    }
    return line;
}

std::int64_t Clocks::getAllowed() const {
    return control.moveTime > 0 ? control.moveTime : left[isWhiteToMove ? 0 : 1];
}

std::int64_t Clocks::take(std::int64_t used) {
    const std::int64_t beyond = used - getAllowed();
    if (control.moveTime == 0) {
        std::int64_t& own = left[isWhiteToMove ? 0 : 1];
        own += control.increment - used;
        if (control.moves > 0 && plies / 2 % control.moves == control.moves - 1) {
            own += control.clock;
        }
        own = std::max<std::int64_t>(own, 1); // where an overrun is let go, the game goes on
    }
    isWhiteToMove = !isWhiteToMove;
    ++plies;
    return beyond;
}

void Lateness::add(std::int64_t beyond, std::int64_t count) {
    counts[std::max<std::int64_t>(beyond, 0)] += count;
    moves += count;
}

void Lateness::add(const Lateness& other) {
    for (const auto& [beyond, count] : other.counts) {
        add(beyond, count);
    }
}

std::int64_t Lateness::getMovesWithin(std::int64_t beyond) const {
    std::int64_t sum = 0;
    for (auto entry = counts.begin(); entry != counts.upper_bound(beyond); ++entry) {
        sum += entry->second;
    }
    return sum;
}

std::int64_t Lateness::getPermille(int share) const {
    std::int64_t sum = 0;
    for (const auto& [beyond, count] : counts) {
        sum += count;
        if (sum * 1000 >= moves * share) {
            return beyond;
        }
    }
    return 0;
}
