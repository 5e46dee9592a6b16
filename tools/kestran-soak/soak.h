// The long run: engines play against themselves over pipes, game after game and hundreds at
// once, and every word of them is checked by the rules of the protocol, of chess and of the
// clock. One thread watches them all, so that an engine that thinks or sleeps costs nothing.
#pragma once

#include "kestran-soak/soakOptions.h"
#include "kestran-soak/soakReport.h"

#include <functional>

// Plays the games, and calls `onGame` after each with all that has been seen so far; what a
// state file holds is in the report and is not played again. The games of the report are
// sorted by number. CannotStart if the engine cannot be started, UsageError if the state file
// cannot be had, std::runtime_error if it cannot be written.
SoakReport runSoak(const SoakOptions& options,
                   const std::function<void(const SoakReport&)>& onGame = {});
