// The front end for test programs of today, with all that it does otherwise than the standard
// one: the form of its lines, the limits of a search that it obeys, its clock, its options.
#pragma once

#include "uci/uciPolicy.h"

#include <string_view>

class TesterPolicy final : public UciPolicy {
public:
    std::vector<std::string> getUciReply(int hashMebibytes) override;
    // Names are compared without regard to case, and may hold blanks.
    std::optional<int> setOption(const std::vector<std::string>& words) override;
    std::optional<SearchLimits> readGo(const std::vector<std::string>& words,
                                       const Position& position, Milliseconds start) override;
    WaitPolicy getWaitPolicy() const override {
        return {.interval = 1, .margin = 5, .isWokenByEnd = true};
    }
    bool keepsIdleStop() const override { return false; }
    // Depth, score and counts first, then the line.
    std::string getReportLine(const InfoStruct& report) const override;
    // The last report once more, or the static score of the position if there was none.
    std::vector<std::string> getAnswerLines(const SearchResult& result,
                                            const Position& position) const override;

private:
    static constexpr Milliseconds DEFAULT_OVERHEAD = 10;

    TimeBudget getBudget(const std::vector<std::string>& words, Color colorToMove,
                         Milliseconds start, bool isLimited) const;

    bool ownBook = false;
    Milliseconds moveOverhead = DEFAULT_OVERHEAD; // left of the own clock, whatever happens
};
