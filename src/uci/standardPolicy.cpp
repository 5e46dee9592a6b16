#include "uci/standardPolicy.h"

#include "uci/goCommand.h"
#include "uci/uciReports.h"

namespace {

// Part of the protocol, whatever the version of the project.
constexpr const char* PROTOCOL_NAME = "KESTRAN CHESS 1.1.2";

} // namespace

std::vector<std::string> StandardPolicy::getUciReply(int hashMebibytes) {
    return getGreeting(PROTOCOL_NAME, {getHashOption(hashMebibytes)});
}

// Accepts only `setoption name Hash value N`; every option here has a value of one word.
std::optional<int> StandardPolicy::setOption(const std::vector<std::string>& words) {
    if (words.size() > 4 && words[1] == OPTION_NAME && words[2] == HASH &&
        words[3] == OPTION_VALUE) {
        return getIntOption(words[2], words[4]);
    }
    return std::nullopt;
}

std::optional<SearchLimits> StandardPolicy::readGo(const std::vector<std::string>& words,
                                                   const Position& position, Milliseconds start) {
    if (words.size() < 2) {
        return std::nullopt;
    }
    return SearchLimits{.time = handleGoCommandProps(words, position.colorToMove, start)};
}

std::string StandardPolicy::getReportLine(const InfoStruct& report, const Game& /*game*/) const {
    return getInfo(report);
}

std::vector<std::string> StandardPolicy::getAnswerLines(const SearchResult& result,
                                                        const Game& /*game*/) const {
    return {getClosingInfo(result.line), getBestMove(result.line)};
}
