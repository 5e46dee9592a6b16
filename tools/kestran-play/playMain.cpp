// kestran-play: a game against the engine in a terminal.

#include "kestran-play/play.h"
#include "support/commandLine.h"

int main(int argc, char** argv) {
    return runTool("kestran-play", PLAY_HELP, argc, argv, runPlay);
}
