#include "support/processorWaits.h"

#include <filesystem>
#include <fstream>
#include <string>
#include <system_error>

namespace {

// Of each thread since it began, in nanoseconds, by its number.
std::map<int, std::int64_t> readWaits(int pid) {
    std::map<int, std::int64_t> waits;
    std::error_code fault;
    const std::string tasks = "/proc/" + std::to_string(pid) + "/task";
    for (std::filesystem::directory_iterator task(tasks, fault), last; !fault && task != last;
         task.increment(fault)) {
        std::ifstream statistics(task->path() / "schedstat");
        std::int64_t run = 0;
        std::int64_t waited = 0;
        if (statistics >> run >> waited) {
            waits[std::stoi(task->path().filename().string())] = waited;
        }
    }
    return waits;
}

} // namespace

ProcessorWaits::ProcessorWaits(int pid) : process(pid) {
    restart();
}

void ProcessorWaits::restart() {
    before = readWaits(process);
}

std::int64_t ProcessorWaits::getMillis() const {
    std::int64_t waited = 0;
    for (const auto& [thread, wait] : readWaits(process)) {
        const auto known = before.find(thread);
        waited += wait - (known == before.end() ? 0 : known->second);
    }
    return waited / 1000000;
}
