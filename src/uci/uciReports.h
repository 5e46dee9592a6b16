// The lines and parts of lines that the engine sends, without line ends.
#pragma once

#include "search/infoStruct.h"
#include "search/variant.h"

#include <string>
#include <string_view>
#include <vector>

// The reply to `uci`, with the lines of the options.
std::vector<std::string> getGreeting(const std::string& name,
                                     const std::vector<std::string>& options);

// The line of an option whose value is a number. The default of `Hash` is the current size in
// mebibytes.
std::string getSpinOption(std::string_view name, int min, int max, int defaultVal);
std::string getHashOption(int hashMebibytes);

// The reply to `isready`.
inline constexpr std::string_view READY_OK = "readyok";

// The report of a pass.
std::string getInfo(const InfoStruct& info);

// "score cp" and the score in hundredths of a pawn, rounded towards 0. `evaluation` is in
// thousandths.
std::string getScoreInfo(int evaluation);

// "pv" and the moves of a line in the order of play.
std::string getPvInfo(const Variant& variant);

// The `info pv` line that closes a search, and the answer: the first move of the line, or "(none)"
// if it is empty.
std::string getClosingInfo(const Variant& variant);
std::string getBestMove(const Variant& variant);

// The name of the option for the size of the hash table.
inline constexpr std::string_view HASH = "Hash";

// The words before the name and the value of an option, in `option` and `setoption` lines.
inline constexpr std::string_view OPTION_NAME = "name";
inline constexpr std::string_view OPTION_VALUE = "value";
