// Every line that the engine sends, without its line end.
#pragma once

#include "search/infoStruct.h"
#include "search/variant.h"

#include <string>
#include <string_view>
#include <vector>

// The reply to `uci`, with the present size of the table in mebibytes.
std::vector<std::string> getGreeting(int hashMebibytes);

// The reply to `isready`.
inline constexpr std::string_view READY_OK = "readyok";

// The report of a pass.
std::string getInfo(const InfoStruct& info);

// The line of moves that closes a search, and the answer: the first of these moves, or
// "(none)" if there is none.
std::string getClosingInfo(const Variant& variant);
std::string getBestMove(const Variant& variant);

// The name of the one option, as `setoption` has to write it.
inline constexpr std::string_view HASH = "Hash";
