// The engine for those who test engines: the search of Kestran behind a TesterPolicy.
#pragma once

#include <string>

class CommandLine;

extern const std::string TESTER_HELP;
// The program behind its help: without a word the engine on the standard streams, with the word
// "bench" the signature. Returns the exit status.
int runTester(CommandLine& commandLine);
