#pragma once

#include <cstddef>
#include <string>

#include "platform/app/Application.h"
#include "platform/app/Services.h"

namespace qz {

// What the dialog over a long walk shows: its title, what is being done, and behind the count " elements processed".
struct WalkTexts {
    std::string title;
    std::string description;
    std::string counted;
};

// Calls `process(i)` for 0 … count - 1 under a progress dialog, until the user cancels, which is told.
template <typename Process>
void walkCancellable(Application& application, const WalkTexts& texts, std::size_t count, Process process) {
    const std::size_t step = count / 100 + 1; // between two looks at the dialog
    const auto dialog = application.createProgressDialog();
    dialog->setTitle(texts.title);
    dialog->setDescription(texts.description);
    dialog->progressor().setRange(0, static_cast<std::int32_t>(count / step));
    dialog->progressor().setStepValue(1);
    for (std::size_t i = 0; i < count; ++i) {
        if (i % step == 0) {
            if (!dialog->goesOn()) {
                showMessage("Cancelled at " + std::to_string(i) + " of " + std::to_string(count) + texts.counted +
                            "; what was done until then is kept.");
                break;
            }
            dialog->setDescription(std::to_string(i) + " of " + std::to_string(count) + texts.counted);
            dialog->progressor().step();
        }
        process(i);
    }
    dialog->close();
}

} // namespace qz
