#include "kestran-soak/soakReport.h"

#include <algorithm>
#include <iomanip>
#include <ostream>

namespace {

// KiB that a process may gain in its first games, and after them.
constexpr std::int64_t MEMORY_SETTLING = 8192;
constexpr std::int64_t MEMORY_GROWTH = 4096;
constexpr std::size_t MOST_SHOWN = 50; // texts of a kind

std::vector<std::string>& textsOf(SoakReport& report, Finding::Kind kind) {
    switch (kind) {
    case Finding::Kind::TIME_LOSS:
        return report.timeLosses;
    case Finding::Kind::ILLEGAL_MOVE:
        return report.illegalMoves;
    case Finding::Kind::PROTOCOL_FAULT:
        return report.protocolFaults;
    case Finding::Kind::OVERRUN:
        break;
    }
    return report.overruns;
}

void writeTexts(std::ostream& stream, const std::string& title,
                const std::vector<std::string>& texts) {
    stream << title << texts.size() << '\n';
    const std::size_t shown = std::min(texts.size(), MOST_SHOWN);
    for (std::size_t i = 0; i < shown; ++i) {
        stream << "    " << texts[i] << '\n';
    }
    if (shown < texts.size()) {
        stream << "    and " << texts.size() - shown << " more\n";
    }
}

// A line for each way to measure time.
void writeLateness(std::ostream& stream, const std::map<std::string, Lateness>& lateness) {
    stream << "milliseconds beyond the time of a move\n"
              "    time             moves    in time   median   90 %   99 %  99.9 %   most\n";
    for (const auto& [time, late] : lateness) {
        stream << "    " << std::left << std::setw(12) << time << std::right << std::setw(10)
               << late.getMoves() << std::setw(11) << late.getMovesWithin(0) << std::setw(9)
               << late.getPermille(500) << std::setw(7) << late.getPermille(900) << std::setw(7)
               << late.getPermille(990) << std::setw(8) << late.getPermille(999) << std::setw(7)
               << late.getPermille(1000) << '\n';
    }
}

// The most that a process has gained from one of its figures to another, in KiB; at least 0.
std::int64_t mostGained(const std::vector<EngineResult>& engines, std::int64_t EngineResult::*from,
                        std::int64_t EngineResult::*to) {
    std::int64_t most = 0;
    for (const EngineResult& engine : engines) {
        most = std::max(most, engine.*to - engine.*from);
    }
    return most;
}

void writeMemory(std::ostream& stream, const SoakReport& report) {
    std::int64_t least = 0;
    std::int64_t most = 0;
    for (const EngineResult& engine : report.engines) {
        if (engine.settled > 0) {
            least = least == 0 ? engine.settled : std::min(least, engine.settled);
            most = std::max(most, engine.settled);
        }
    }
    stream << "memory           " << report.engines.size() << " processes, " << least << " to "
           << most << " KiB after their first games, grown by at most " << report.getSettling()
           << " KiB in them, " << report.getGrowth() << " KiB after them\n";
}

void writeSummary(std::ostream& stream, const SoakReport& report, std::int64_t seconds,
                  std::int64_t rate) {
    stream << "summary games=" << report.games << " plies=" << report.plies
           << " white=" << report.whiteWins << " black=" << report.blackWins
           << " drawn=" << report.draws << " unfinished=" << report.unfinished
           << " stopped=" << report.stopped << " timeLosses=" << report.timeLosses.size()
           << " illegalMoves=" << report.illegalMoves.size()
           << " protocolFaults=" << report.protocolFaults.size()
           << " overruns=" << report.overruns.size() << " starved=" << report.starved
           << " settlingKib=" << report.getSettling() << " growthKib=" << report.getGrowth()
           << " clean=" << (report.isClean() ? "yes" : "no") << " seconds=" << seconds
           << " perMinute=" << rate << '\n';
}

} // namespace

void SoakReport::add(const GameResult& result) {
    ++games;
    plies += result.plies;
    const std::string& score = result.game.result;
    whiteWins += score == "1-0";
    blackWins += score == "0-1";
    draws += score == "1/2-1/2";
    unfinished += result.game.termination == "unterminated";
    for (const Finding& finding : result.findings) {
        textsOf(*this, finding.kind).push_back(finding.text);
    }
    starved += result.starved;
    lateness[result.game.timeControl].add(result.lateness);
    record.push_back(result.game);
}

void SoakReport::add(const EngineResult& result) {
    engines.push_back(result);
    if (!result.fault.empty()) {
        protocolFaults.push_back(result.fault);
    }
}

std::size_t SoakReport::countFaults() const {
    return timeLosses.size() + illegalMoves.size() + protocolFaults.size();
}

std::int64_t SoakReport::getSettling() const {
    return mostGained(engines, &EngineResult::first, &EngineResult::settled);
}

std::int64_t SoakReport::getGrowth() const {
    return mostGained(engines, &EngineResult::settled, &EngineResult::last);
}

bool SoakReport::isClean() const {
    return countFaults() == 0 && getSettling() <= MEMORY_SETTLING && getGrowth() <= MEMORY_GROWTH;
}

void writeReport(std::ostream& stream, const SoakReport& report, std::chrono::seconds elapsed) {
    stream << "games            " << report.games << '\n'
           << "plies            " << report.plies << '\n'
           << "results          " << report.whiteWins << " White, " << report.blackWins
           << " Black, " << report.draws << " drawn, " << report.unfinished << " unfinished\n";
    writeTexts(stream, "time losses      ", report.timeLosses);
    writeTexts(stream, "illegal moves    ", report.illegalMoves);
    writeTexts(stream, "protocol faults  ", report.protocolFaults);
    writeTexts(stream, "clock overruns   ", report.overruns);
    stream << "late, no fault   " << report.starved
           << " answers whose engine waited for a processor, or that were seen late\n";
    writeLateness(stream, report.lateness);
    writeMemory(stream, report);
    const int games = report.games - report.resumed - report.stopped;
    const std::int64_t seconds = elapsed.count();
    const std::int64_t rate = games * 60 / std::max<std::int64_t>(seconds, 1);
    stream << "nobody looked    for at most " << report.longestAway << " ms\n"
           << "elapsed          " << seconds << " s for " << games << " whole games, " << rate
           << " a minute\n"
           << (report.isClean() ? "No fault.\n" : "FAULTS.\n");
    writeSummary(stream, report, seconds, rate);
}
