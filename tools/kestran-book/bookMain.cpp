#include "kestran-book/book.h"

int main(int argc, char** argv) {
    return bookMain(argc, argv);
}
