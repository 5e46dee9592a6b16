#include "uci/goCommand.h"

#include "base/loggingService.h"

#include <algorithm>
#include <cstdlib>
#include <limits>
#include <string_view>

namespace {

constexpr std::string_view WTIME = "wtime";
constexpr std::string_view BTIME = "btime";
constexpr std::string_view WINC = "winc";
constexpr std::string_view BINC = "binc";
constexpr std::string_view MOVETIME = "movetime";
constexpr std::string_view MOVES_TO_GO = "movestogo";
constexpr std::string_view INFINITE_UCI = "infinite";

// The number at the start of a text, saturated at 32 bits; 0 if there is none.
Milliseconds parseMillis(const std::string& str) {
    return std::clamp<long>(std::strtol(str.c_str(), nullptr, 10),
                            std::numeric_limits<std::int32_t>::min(),
                            std::numeric_limits<std::int32_t>::max());
}

// If the word at `index` is `name` and another word follows, stores that word's number.
bool checkForValueParam(std::string_view name, Milliseconds& into,
                        const std::vector<std::string>& words, std::size_t index) {
    if (words[index] != name || index + 1 >= words.size()) {
        return false;
    }
    into = parseMillis(words[index + 1]);
    return true;
}

} // namespace

GoWords readGoWords(const std::vector<std::string>& commands) {
    GoWords words;
    for (std::size_t i = 0; i < commands.size(); ++i) {
        checkForValueParam(WTIME, words.time[WHITE], commands, i);
        checkForValueParam(BTIME, words.time[BLACK], commands, i);
        checkForValueParam(WINC, words.increment[WHITE], commands, i);
        checkForValueParam(BINC, words.increment[BLACK], commands, i);
        checkForValueParam(MOVETIME, words.moveTimeLocal, commands, i);
        checkForValueParam(MOVES_TO_GO, words.movesToGo, commands, i);
        if (commands[i] == INFINITE_UCI) {
            words.infinite = true;
            break;
        }
    }
    if (words.movesToGo <= 0) {
        words.movesToGo = GoWords::DEFAULT_MOVES_TO_GO;
    }
    return words;
}

TimeBudget handleGoCommandProps(const std::vector<std::string>& commands, Color colorToMove,
                                Milliseconds start) {
    constexpr Milliseconds NOT_GIVEN = GoWords::NOT_GIVEN;
    const GoWords words = readGoWords(commands);
    const Milliseconds ownTime = words.time[colorToMove];
    const Milliseconds ownIncrement = words.increment[colorToMove];
    if (words.infinite) {
        logger.info("set infinite");
        return {start, NOT_GIVEN, true};
    }
    if (words.moveTimeLocal != NOT_GIVEN) {
        logger.debug("fixed time for a move");
        return {start, words.moveTimeLocal};
    }
    if (ownTime > 0 && ownIncrement >= 0) {
        logger.debug("incremental game");
        return {start, ownTime / words.movesToGo + ownIncrement};
    }
    if (ownTime > 0 && ownIncrement == NOT_GIVEN) {
        logger.debug("fixed time for the next fixed number of moves");
        return {start, ownTime / words.movesToGo};
    }
    logger.warn("cannot understand go command parameters");
    return {start, NOT_GIVEN};
}
