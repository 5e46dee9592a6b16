// A game against the engine in a terminal, command by command.
#pragma once

// The main function of kestran-play.
int playMain(int argc, const char* const* argv);
