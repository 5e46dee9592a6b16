// A game against the engine in a terminal, command by command.
#pragma once

#include <string>

class CommandLine;

extern const std::string PLAY_HELP;
// The tool behind its help. Reads standard input, writes to standard output and returns the exit
// status.
int runPlay(CommandLine& commandLine);
