#include "uci/uciReports.h"

#include "notation/longAlgebraicMove.h"
#include "search/engineParameters.h"
#include "search/score.h"

#include <sstream>

namespace {

constexpr const char* ID_NAME = "id name ";
constexpr const char* ID_AUTHOR = "id author Bremo Talvik";
constexpr const char* UCI_OK = "uciok";

constexpr const char* OPTION_COMMAND = "option";
constexpr const char* MIN_COMMAND = "min";
constexpr const char* MAX_COMMAND = "max";
constexpr const char* DEFAULT_COMMAND = "default";

constexpr const char* UCI_INFO_ = "info ";
constexpr const char* UCI_PV = "pv";
constexpr const char* UCI_SCORE_ = "score ";
constexpr const char* UCI_CP_ = "cp ";
constexpr const char* UCI_DEPTH_ = "depth ";
constexpr const char* UCI_SELDEPTH_ = "seldepth ";
constexpr const char* UCI_NODES_ = "nodes ";
constexpr const char* UCI_TIME_ = "time ";
constexpr const char* UCI_NPS_ = "nps ";

constexpr const char* BEST_MOVE_SPACE = "bestmove ";
constexpr const char* NO_MOVE = "(none)";

} // namespace

std::vector<std::string> getGreeting(const std::string& name,
                                     const std::vector<std::string>& options) {
    std::vector<std::string> lines = {ID_NAME + name, ID_AUTHOR};
    lines.insert(lines.end(), options.begin(), options.end());
    lines.emplace_back(UCI_OK);
    return lines;
}

std::string getSpinOption(std::string_view name, int min, int max, int defaultVal) {
    std::ostringstream text;
    text << OPTION_COMMAND << ' ' << OPTION_NAME << ' ' << name << " type spin " << MIN_COMMAND
         << ' ' << min << ' ' << MAX_COMMAND << ' ' << max << ' ' << DEFAULT_COMMAND << ' '
         << defaultVal << ' ';
    return text.str();
}

std::string getHashOption(int hashMebibytes) {
    return getSpinOption(HASH, EngineConfig::HASH_MIN, EngineConfig::HASH_MAX, hashMebibytes);
}

std::string getScoreInfo(int evaluation) {
    return std::string(UCI_SCORE_) + UCI_CP_ + std::to_string(evaluation / CENTIPAWN);
}

std::string getPvInfo(const Variant& variant) {
    std::string text = UCI_PV;
    for (int i = 0; i < variant.varLength; ++i) {
        text += ' ' + LongAlgebraicMove(variant.get(i).move).toString();
    }
    return text;
}

std::string getInfo(const InfoStruct& info) {
    std::ostringstream text;
    text << UCI_INFO_ << getPvInfo(info.pv) << ' ' << getScoreInfo(info.pv.evaluation) << ' '
         << UCI_DEPTH_ << info.depth << ' ' << UCI_SELDEPTH_ << info.selDepth << ' ' << UCI_NODES_
         << info.nodesSearched << ' ' << UCI_TIME_ << info.time << ' ' << UCI_NPS_
         << info.nodesPerSec << ' ';
    return text.str();
}

std::string getClosingInfo(const Variant& variant) {
    return UCI_INFO_ + getPvInfo(variant);
}

std::string getBestMove(const Variant& variant) {
    const Move* move = variant.getFirstMove();
    return BEST_MOVE_SPACE + (move != nullptr ? LongAlgebraicMove(*move).toString() : NO_MOVE);
}
