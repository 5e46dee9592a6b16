// kestran-play: a game against the engine in a terminal.

#include "kestran-play/play.h"

int main(int argc, char** argv) {
    return playMain(argc, argv);
}
