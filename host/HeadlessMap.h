#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "host/HeadlessDisplay.h"
#include "host/HeadlessGraphics.h"
#include "platform/app/Application.h"

namespace qz {

class HeadlessMap;

// Selected rows, kept by object id.
class HeadlessSelection final : public SelectionSet {
public:
    explicit HeadlessSelection(FeatureClass& featureClass) : class_(featureClass) {}

    [[nodiscard]] std::int64_t count() override;
    [[nodiscard]] std::vector<ObjectId> ids() override;
    void select(std::vector<ObjectId> ids) override;
    [[nodiscard]] CursorPtr search() override;
    [[nodiscard]] CursorPtr update() override;

private:
    [[nodiscard]] FeatureFilter filter() const;

    FeatureClass& class_;
    std::vector<ObjectId> selected_;
};

class HeadlessLayer final : public FeatureLayer {
public:
    HeadlessLayer(std::string name, FeatureClass& featureClass)
        : name_(std::move(name)), class_(featureClass), selection_(featureClass) {}

    [[nodiscard]] const std::string& name() const override { return name_; }
    [[nodiscard]] FeatureClass& featureClass() override { return class_; }
    [[nodiscard]] HeadlessSelection& selection() override { return selection_; }

private:
    std::string name_;
    FeatureClass& class_;
    HeadlessSelection selection_;
};

// A view without a screen.
class HeadlessView final : public ActiveView {
public:
    explicit HeadlessView(HeadlessMap& map) : map_(map), display_(*this) {}

    // As set, else the full extent of the layers in the map's reference with a margin of 5 %, and at least a metre
    // wide and high. Empty when there is nothing to show.
    [[nodiscard]] Envelope visibleBounds() const override;
    void setVisibleBounds(const Envelope& bounds) { bounds_ = bounds; }
    [[nodiscard]] const SpatialReference& spatialReference() const override;
    // Pictures are drawn when they are asked for.
    void refresh() override {}
    void partialRefresh(const Envelope&) override {}
    [[nodiscard]] HeadlessGraphics& graphics() override { return graphics_; }
    [[nodiscard]] const HeadlessGraphics& graphics() const noexcept { return graphics_; }
    [[nodiscard]] HeadlessDisplay& display() override { return display_; }

private:
    HeadlessMap& map_;
    Envelope bounds_;
    HeadlessGraphics graphics_;
    HeadlessDisplay display_;
};

// Layers, graphics and one view of them. The feature classes belong to their workspaces and must outlive the layers.
class HeadlessMap final : public Map {
public:
    HeadlessMap() : view_(*this) {}
    HeadlessMap(const HeadlessMap&) = delete;
    HeadlessMap& operator=(const HeadlessMap&) = delete;

    // As set, else that of the first layer; none without layers.
    [[nodiscard]] const SpatialReference& spatialReference() const override;
    [[nodiscard]] HeadlessView& activeView() override { return view_; }
    [[nodiscard]] const HeadlessView& activeView() const noexcept { return view_; }
    // In the order of adding; the first one is drawn on top.
    [[nodiscard]] std::vector<FeatureLayer*> layers() override;

    // The layer lives until clearLayers.
    FeatureLayer& addLayer(std::string name, FeatureClass& featureClass);
    void clearLayers() { layers_.clear(); }
    // None: that of the first layer.
    void setSpatialReference(const SpatialReference& reference) { reference_ = reference; }
    // Empty: the full extent.
    void setVisibleBounds(const Envelope& bounds) { view_.setVisibleBounds(bounds); }
    // Of all layers, in the map's reference.
    [[nodiscard]] Envelope fullExtent() const;

private:
    std::vector<std::unique_ptr<HeadlessLayer>> layers_;
    SpatialReference reference_;
    HeadlessView view_;
};

} // namespace qz
