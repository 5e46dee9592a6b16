// kestran-tester: the engine for current chess programs.

#include "kestran-tester/tester.h"

int main(int argc, char** argv) {
    return testerMain(argc, argv);
}
