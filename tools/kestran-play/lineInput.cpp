#include "kestran-play/lineInput.h"

#include <iostream>

#ifdef KESTRAN_LIBEDIT
#include "support/terminal.h"

#include <cstdio>
#include <cstdlib>
#include <editline/readline.h>
#include <memory>
#include <termios.h>
#include <unistd.h>
#endif

#ifdef KESTRAN_LIBEDIT

namespace {

// The settings of the terminal before the first line; null if there are none.
const termios* getFirstSettings() {
    static termios settings;
    static const bool isKnown = tcgetattr(STDIN_FILENO, &settings) == 0;
    return isKnown ? &settings : nullptr;
}

std::optional<std::string> readEditedLine(const std::string& prompt) {
    std::cout << std::flush;
    const std::unique_ptr<char, decltype(&std::free)> typed(readline(prompt.c_str()), std::free);
    if (!typed) {
        return std::nullopt;
    }
    if (*typed != '\0') {
        add_history(typed.get());
    }
    return typed.get();
}

} // namespace

#endif

std::optional<std::string> readTypedLine(const std::string& prompt) {
#ifdef KESTRAN_LIBEDIT
    static const bool isEdited = [] {
        rl_catch_signals = 0; // the game is written by the handlers of GameKeeper
        rl_inhibit_completion = 1;
        return isatty(STDIN_FILENO) == 1 && isStandardOutputTerminal() &&
               getFirstSettings() != nullptr;
    }();
    if (isEdited) {
        return readEditedLine(prompt);
    }
#endif
    std::string line;
    std::cout << prompt << std::flush;
    return std::getline(std::cin, line) ? std::optional(line) : std::nullopt;
}

void restoreTerminal() {
#ifdef KESTRAN_LIBEDIT
    if (const termios* settings = getFirstSettings()) {
        tcsetattr(STDIN_FILENO, TCSANOW, settings);
    }
#endif
}
