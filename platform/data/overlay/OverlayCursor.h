#pragma once

#include <vector>

#include "platform/data/overlay/OverlayClass.h"

namespace qz {

// Walks rows whose ids were fixed when it was opened; with CursorKind::update it writes them as well.
class OverlayReadCursor final : public FeatureCursor {
public:
    OverlayReadCursor(OverlayClass& featureClass, CursorKind kind, std::vector<ObjectId> ids,
                      SpatialReference outputReference);

    [[nodiscard]] CursorKind kind() const override { return kind_; }
    [[nodiscard]] FeaturePtr next() override;
    void update(Feature& feature) override;
    void remove() override;
    ObjectId insert(FeatureBuffer& buffer) override;
    void flush() override;

private:
    void requireUpdateCursor() const;
    [[nodiscard]] RecordPtr current();
    void readChunk();
    [[nodiscard]] RecordPtr inOutputReference(RecordPtr record) const;

    OverlayClass& class_;
    CursorKind kind_;
    std::vector<ObjectId> ids_;
    SpatialReference outputReference_; // none: as stored
    std::size_t position_ = 0;         // of the next row
    std::optional<ObjectId> last_;     // the row given last, while it can be written
    std::vector<RecordPtr> chunk_;     // rows as stored, read ahead
    std::size_t chunkBegin_ = 0;
    std::uint64_t chunkRevision_ = 0;
};

class OverlayInsertCursor final : public FeatureCursor {
public:
    explicit OverlayInsertCursor(OverlayClass& featureClass) : class_(featureClass) {}

    [[nodiscard]] CursorKind kind() const override { return CursorKind::insert; }
    [[nodiscard]] FeaturePtr next() override;
    void update(Feature& feature) override;
    void remove() override;
    ObjectId insert(FeatureBuffer& buffer) override;
    void flush() override;

private:
    OverlayClass& class_;
};

} // namespace qz
