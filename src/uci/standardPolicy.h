// The front end of the program `kestran`, whose lines never change.
#pragma once

#include "uci/uciPolicy.h"

class StandardPolicy final : public UciPolicy {
public:
    std::vector<std::string> getUciReply(int hashMebibytes) override;
    std::optional<int> setOption(const std::vector<std::string>& words) override;
    std::optional<SearchLimits> readGo(const std::vector<std::string>& words,
                                       const Position& position, Milliseconds start) override;
    WaitPolicy getWaitPolicy() const override { return {}; }
    bool keepsIdleStop() const override { return true; }
    std::string getReportLine(const InfoStruct& report, const Game& game) const override;
    std::vector<std::string> getAnswerLines(const SearchResult& result,
                                            const Game& game) const override;
};
