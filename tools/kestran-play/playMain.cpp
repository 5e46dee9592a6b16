// kestran-play: a game against the engine in a terminal.

#include "base/platform.h"
#include "kestran-play/play.h"
#include "support/commandLine.h"

int main(int argc, char** argv) {
    prepareMemory();
    return runTool("kestran-play", PLAY_HELP, argc, argv, runPlay);
}
