#pragma once

#include <string>
#include <string_view>
#include <type_traits>
#include <utility>

namespace qz {

// Every public method, and every procedure that reports failures itself, has one error exit: whatever fails inside ends
// there, the user is told in one of these forms, and the caller gets the neutral value. Nothing written is undone.
//
//   silent        nothing is shown
//   labelled      the error's description, directly followed by the label ("" for the description alone)
//   stepped       the error's description, the label, the number of the stage that failed, and a second label
//   numbered      "Error ", the number of an unspecified failure, ": ", the description, and "In qz at " the procedure,
//                 with a blank behind, on a line of its own

namespace detail {

// The description of the exception being handled; nothing is shown for an interruption by the user.
void showFailure(std::string_view labelBefore, std::string_view step, std::string_view labelAfter) noexcept;
void showNumberedFailure(std::string_view procedure) noexcept;

} // namespace detail

template <typename Result, typename Body> Result withSilentExit(Result failure, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        return failure;
    }
}

template <typename Result, typename Body>
Result withErrorExit(std::string_view label, Result failure, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        detail::showFailure(label, {}, {});
        return failure;
    }
}

template <typename Result, typename Body>
Result withNumberedExit(std::string_view procedure, Result failure, Body body) noexcept {
    try {
        return body();
    } catch (...) {
        detail::showNumberedFailure(procedure);
        return failure;
    }
}

// `body` gets the step counter, an enum whose values are the numbers shown, and sets it before each stage.
template <typename Step, typename Result, typename Body>
Result withSteppedExit(std::string_view label, Step first, Result failure, Body body,
                       std::string_view labelAfter = {}) noexcept {
    Step step = first;
    try {
        return body(step);
    } catch (...) {
        detail::showFailure(label, std::to_string(static_cast<std::underlying_type_t<Step>>(step)), labelAfter);
        return failure;
    }
}

} // namespace qz
