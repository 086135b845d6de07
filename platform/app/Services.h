#pragma once

#include <chrono>
#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace qz {

// How the user's system writes numbers.
struct NumberLocale {
    std::string decimalMark = ".";

    // By the operating system's name ("de_DE.UTF-8"; "" for the one the user's environment sets; "C").
    // Throws PlatformError when the system doesn't have it.
    [[nodiscard]] static NumberLocale named(const std::string& name);
};

// What a process has one of. Each is set once by a host, or by a test; the defaults serve a host that sets none.
struct Services {
    // A notice with an OK button. By default nothing is shown.
    std::function<void(const std::string& text)> showMessage;
    NumberLocale locale;
    // The release of the platform, such as "10.2.0.3348"; nothing when it is not known.
    std::optional<std::string> platformRelease = "10.2.0.3348";
    std::function<std::chrono::system_clock::time_point()> clock = std::chrono::system_clock::now;
    // Seeds random numbers; nothing: taken from the clock.
    std::optional<std::uint32_t> randomSeed;
    // Asked by long work now and then; true: the user wants it to stop.
    std::function<bool()> interruptRequested;
    // Told when the wish to stop was met by ending a walk early, so that the rest goes on.
    std::function<void()> interruptTaken;
};

// The process-wide services.
[[nodiscard]] Services& services();

// Puts back the services that were in force when it was made.
class ScopedServices {
public:
    ScopedServices();
    ~ScopedServices();
    ScopedServices(const ScopedServices&) = delete;
    ScopedServices& operator=(const ScopedServices&) = delete;

private:
    Services saved_;
};

// Shows the notice through the service.
void showMessage(const std::string& text);

// Throws Interrupted when the user wants to stop.
void checkInterrupt();

} // namespace qz
