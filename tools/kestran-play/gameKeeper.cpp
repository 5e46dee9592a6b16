#include "kestran-play/gameKeeper.h"

#include "base/clock.h"
#include "base/process.h"
#include "kestran-play/lineInput.h"

#include <csignal>
#include <exception>
#include <fstream>
#include <initializer_list>
#include <iostream>
#include <stdexcept>
#include <utility>

namespace {

constexpr Milliseconds POLL_INTERVAL = 20;

constexpr std::initializer_list<int> ENDING_SIGNALS = {
    SIGINT,
    SIGTERM,
#ifdef SIGHUP
    SIGHUP,
#endif
};

std::atomic<bool> isEndWanted = false;

} // namespace

GameKeeper::GameKeeper(std::optional<std::string> _path, std::ostream& _out)
    : path(std::move(_path)), out(_out) {
    isEndWanted = false;
    if (watcher.start([this] { watch(); })) {
        for (const int signal : ENDING_SIGNALS) {
            std::signal(signal, [](int) { isEndWanted = true; });
        }
    }
}

GameKeeper::~GameKeeper() {
    for (const int signal : ENDING_SIGNALS) {
        std::signal(signal, SIG_DFL);
    }
    isOver = true;
    watcher.join();
}

void GameKeeper::keep(const std::string& pgn) {
    const std::lock_guard lock(mutex);
    present = pgn;
}

void GameKeeper::leave() {
    const std::lock_guard lock(mutex);
    const std::string game = std::exchange(present, "");
    if (game.empty()) {
        return;
    }
    if (path) {
        std::ofstream file(*path, std::ios::app | std::ios::binary);
        file << game << std::flush;
        if (!file) {
            throw std::runtime_error("the game cannot be added to " + *path + "; here it is:\n" +
                                     game);
        }
    }
    out << '\n' << game << std::flush;
}

void GameKeeper::watch() {
    while (!isOver) {
        sleepMilliseconds(POLL_INTERVAL);
        if (isEndWanted) {
            try {
                leave();
            } catch (const std::exception& error) {
                std::cerr << error.what() << '\n';
            }
            restoreTerminal();
            endProcess();
        }
    }
}
