#pragma once

#include <utility>

#include "platform/app/Services.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// A cursor whose every fetch gives the user the chance to stop, also in methods that show no progress.
class InterruptibleCursor final : public FeatureCursor {
public:
    explicit InterruptibleCursor(CursorPtr cursor) : cursor_(std::move(cursor)) {}

    [[nodiscard]] CursorKind kind() const override { return cursor_->kind(); }
    // Throws Interrupted when the user wants to stop.
    [[nodiscard]] FeaturePtr next() override {
        checkInterrupt();
        return cursor_->next();
    }
    void update(Feature& feature) override { cursor_->update(feature); }
    void remove() override { cursor_->remove(); }
    ObjectId insert(FeatureBuffer& buffer) override { return cursor_->insert(buffer); }
    void flush() override { cursor_->flush(); }

private:
    CursorPtr cursor_;
};

} // namespace qz
