#pragma once

#include <functional>
#include <iosfwd>
#include <map>
#include <memory>
#include <string>
#include <vector>

#include "component/MethodTable.h"
#include "host/HeadlessHost.h"
#include "host/Picture.h"
#include "host/ReplacedFile.h"
#include "host/run/DataSets.h"
#include "host/run/HostArguments.h"
#include "host/run/RunReport.h"
#include "host/run/RunRequest.h"

namespace qz {

struct SessionOptions {
    // Nothing is ever saved.
    bool dryRun = false;
    // Runs stay in one edit session until save(); else each run is saved by itself.
    bool keepsEditing = false;
};

// Runs methods on data sets as a desktop host would: opens the data, selects, starts an edit operation, calls the
// method, stops the operation, or aborts it when the method fails, and saves.
//
// Errors before the method is called, and of saving, are thrown: UsageError, DataError, Interrupted. What came of the
// method itself is in the report. Whatever is thrown, nothing is written.
class RunSession {
public:
    // Messages of the methods go to `messages`, progress to `host`.
    RunSession(HeadlessHost& host, std::ostream& messages, SessionOptions options);

    RunReport run(const RunRequest& request);
    // Takes back, or makes again, the changes of up to `steps` runs; gives how many.
    int undo(int steps);
    int redo(int steps);
    // Saves what was edited, or gives it up, and goes on editing.
    void save();
    void discard();

private:
    class RunServices;
    class RunWatch;
    struct Layers;

    [[nodiscard]] const MethodInfo& runnableMethod(const RunRequest& request) const;
    [[nodiscard]] Layers openLayers(const RunRequest& request);
    [[nodiscard]] RunLayer openLayer(const std::string& place, const std::string& output,
                                     const SelectionRequest& selection);
    void setUpMap(const RunRequest& request);
    void loadGraphics(const std::string& path);
    void putGraphicsAside();
    // The graphics are written before the data, and take their places after them. `workspace` may be nothing.
    void saveAll(OverlayWorkspace* workspace);
    // The whole call with its edit operation; stopped or aborted, but not yet saved.
    void perform(const MethodInfo& method, HostArguments& arguments, OverlayWorkspace* workspace, RunReport& report);
    void startEditing(OverlayWorkspace& workspace, bool withOperation);
    void endOperation(OverlayWorkspace& workspace, const RunReport& report);
    void finish(OverlayWorkspace* workspace, const RunReport& report);
    // In the map's reference.
    [[nodiscard]] std::vector<Geometry> selectedShapes(const Layers& layers);
    // `beforeAfter` may be nothing.
    void writePictures(const RunRequest& request, const RunReport& report, BeforeAfterPicture* beforeAfter);
    [[nodiscard]] Highlight highlight(const RunReport& report);

    HeadlessHost& host_;
    std::ostream& messages_;
    SessionOptions options_;
    DataSets dataSets_;
    std::string graphicsPath_;                                           // of the graphics that the map shows
    std::map<std::string, std::unique_ptr<ReplacedFile>> graphicsAside_; // by path: edited, not saved and not shown
};

} // namespace qz
