// The front end for current chess programs. Everything that differs from StandardPolicy is here:
// the form of the lines, the limits of a search, the clock, and the options.
#pragma once

#include "uci/modernCommands.h"
#include "uci/modernOptions.h"
#include "uci/uciPolicy.h"

class ModernPolicy final : public UciPolicy {
public:
    std::vector<std::string> getUciReply(int hashMebibytes) override;
    std::optional<int> setOption(const std::vector<std::string>& words) override;
    std::optional<SearchLimits> readGo(const std::vector<std::string>& words,
                                       const Position& position, Milliseconds start) override;
    LongCommand readLongCommand(const std::vector<std::string>& words, const Game& game) override {
        return getLongCommand(words, game.position);
    }
    std::vector<std::string> answerCommand(const std::vector<std::string>& words,
                                           const Game& game) override;
    bool startsClock(const std::vector<std::string>& words) override {
        return words[0] == "ponderhit";
    }
    WaitPolicy getWaitPolicy() const override {
        return {.interval = 1, .margin = 5, .isWokenByEnd = true};
    }
    bool keepsIdleStop() const override { return false; }
    // Depth, score and counts, then the line.
    std::string getReportLine(const InfoStruct& report, const Game& game) const override;
    std::optional<std::string> getCurrentMoveLine(const CurrentMove& current) const override;
    // The last report with the counts of the whole search; without one, the static score of the
    // position. The answer names the move to ponder on, if there is one.
    std::vector<std::string> getAnswerLines(const SearchResult& result,
                                            const Game& game) const override;

private:
    TimeBudget getBudget(const std::vector<std::string>& words, Color colorToMove,
                         Milliseconds start, bool isLimited) const;

    ModernOptions options;
};
