#pragma once

#include <memory>
#include <string>
#include <string_view>
#include <vector>

#include "platform/app/Display.h"
#include "platform/data/FeatureClass.h"

namespace qz {

// The bar in the status line that long work moves.
class StepProgressor {
public:
    virtual ~StepProgressor() = default;
    virtual void setRange(std::int32_t minimum, std::int32_t maximum) = 0;
    virtual void setStepValue(std::int32_t step) = 0;
    virtual void setPosition(std::int32_t position) = 0;
    virtual void setMessage(const std::string& text) = 0;
    virtual void step() = 0;
    virtual void show() = 0;
    virtual void hide() = 0;
};

// A window over the map with a text, a bar and a cancel button.
class ProgressDialog {
public:
    virtual ~ProgressDialog() = default;
    virtual void setTitle(const std::string& title) = 0;
    virtual void setDescription(const std::string& text) = 0;
    virtual StepProgressor& progressor() = 0;
    // False after the user pressed cancel.
    [[nodiscard]] virtual bool goesOn() = 0;
    virtual void close() = 0;
};

class StatusBar {
public:
    virtual ~StatusBar() = default;
    virtual StepProgressor& stepProgressor() = 0;
    virtual void setMessage(const std::string& text) = 0;
};

// The features of a layer that the user selected.
class SelectionSet {
public:
    virtual ~SelectionSet() = default;
    [[nodiscard]] virtual std::int64_t count() = 0;
    // By ascending object id; rows deleted meanwhile are not among them.
    [[nodiscard]] virtual std::vector<ObjectId> ids() = 0;
    virtual void select(std::vector<ObjectId> ids) = 0;
    [[nodiscard]] virtual CursorPtr search() = 0;
    [[nodiscard]] virtual CursorPtr update() = 0;
};

class FeatureLayer {
public:
    virtual ~FeatureLayer() = default;
    [[nodiscard]] virtual const std::string& name() const = 0;
    [[nodiscard]] virtual FeatureClass& featureClass() = 0;
    [[nodiscard]] virtual SelectionSet& selection() = 0;
};

class ActiveView {
public:
    virtual ~ActiveView() = default;
    // What the view shows, in the map's spatial reference.
    [[nodiscard]] virtual Envelope visibleBounds() const = 0;
    // The map's.
    [[nodiscard]] virtual const SpatialReference& spatialReference() const = 0;
    virtual void refresh() = 0;
    virtual void partialRefresh(const Envelope& area) = 0;
    [[nodiscard]] virtual GraphicsContainer& graphics() = 0;
    [[nodiscard]] virtual Display& display() = 0;
};

class Map {
public:
    virtual ~Map() = default;
    [[nodiscard]] virtual const SpatialReference& spatialReference() const = 0;
    [[nodiscard]] virtual ActiveView& activeView() = 0;
    [[nodiscard]] virtual std::vector<FeatureLayer*> layers() = 0;
    // The first in the order of layers; nothing when there is none of that name.
    [[nodiscard]] FeatureLayer* findLayer(std::string_view name);
};

// Opens, closes and undoes edit operations of the workspace being edited.
class Editor {
public:
    virtual ~Editor() = default;
    [[nodiscard]] virtual bool isEditing() const = 0;
    // The workspace whose session is open; nothing when none is.
    [[nodiscard]] virtual Workspace* editWorkspace() = 0;
    virtual void startOperation() = 0;
    // `name` is what the undo menu shows.
    virtual void stopOperation(const std::string& name) = 0;
    virtual void abortOperation() = 0;
};

// Geometries whose area on the screen must be drawn again; the caller redraws after the method.
class RefreshArea {
public:
    virtual ~RefreshArea() = default;
    virtual void add(const Geometry& geometry) = 0;
};

class Application {
public:
    virtual ~Application() = default;
    [[nodiscard]] virtual StatusBar& statusBar() = 0;
    [[nodiscard]] virtual Map& focusMap() = 0;
    // Nothing when there is no extension of that identifier; "esriEditor.Editor" is the editor.
    [[nodiscard]] virtual Editor* findEditor(std::string_view identifier) = 0;
    [[nodiscard]] virtual std::unique_ptr<ProgressDialog> createProgressDialog() = 0;
};

} // namespace qz
