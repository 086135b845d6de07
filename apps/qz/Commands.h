#pragma once

#include <atomic>

namespace CLI {
class App;
}

namespace qz {

// What the program ends with.
enum class ExitStatus { done = 0, refused = 1, wrongUsage = 2, dataError = 3, interrupted = 130 };

// Each adds its subcommand; running it sets the status.
void addMethodsCommand(CLI::App& app, ExitStatus& status);
void addInfoCommand(CLI::App& app, ExitStatus& status);
void addRunCommand(CLI::App& app, ExitStatus& status);
void addScriptCommand(CLI::App& app, ExitStatus& status);

// Calls `command` and gives the status of what it throws, after telling it on the error stream.
template <typename Command> ExitStatus withExitStatus(Command command);

// Set by Ctrl-C.
extern std::atomic<bool> interruptSignalled;

namespace detail {
[[nodiscard]] ExitStatus statusOfCurrentException();
}

template <typename Command> ExitStatus withExitStatus(Command command) {
    try {
        return command();
    } catch (...) {
        return detail::statusOfCurrentException();
    }
}

} // namespace qz
