// kestran-tester: the engine with the front end that today's test programs expect.

#include "kestran-tester/tester.h"

int main(int argc, char** argv) {
    return testerMain(argc, argv);
}
