#pragma once

#include <stdexcept>
#include <string>

namespace qz {

// A failed platform operation, with the description that a message box shows.
// Thrown by everything under platform/; travels no further than the nearest procedure with an error exit.
class PlatformError : public std::runtime_error {
public:
    explicit PlatformError(const std::string& description) : std::runtime_error(description) {}
};

// Data that can't be opened, read or written: a missing path, a locked or read-only file, a store's refusal.
class DataError : public PlatformError {
public:
    using PlatformError::PlatformError;
};

// A condition or a layer name that the user mistyped; nothing was read or written.
class UsageError : public PlatformError {
public:
    using PlatformError::PlatformError;
};

// The user asked to stop. Everything done since the last save is to be given up.
class Interrupted : public PlatformError {
public:
    Interrupted() : PlatformError("The run was interrupted.") {}
};

} // namespace qz
