#pragma once

#include <map>
#include <memory>
#include <string>
#include <utility>

#include "platform/data/overlay/OverlayClass.h"

namespace qz {

// A data set that runs work on and the table of it that was named.
struct OpenLayer {
    OverlayWorkspace* workspace = nullptr;
    OverlayClass* featureClass = nullptr;
};

// The data sets of a session, each opened once, so that one run sees what another edited.
class DataSets {
public:
    // `withholdSaves`: nothing is ever written.
    DataSets(bool withholdSaves, SaveObserver observer)
        : withholdSaves_(withholdSaves), observer_(std::move(observer)) {}

    // `place` is PATH[:LAYER]; without a layer the only one with shapes is meant. With an output, a copy of the data is
    // worked on that appears there with the first save. Throws DataError for a path or a layer that doesn't exist,
    // naming the layers there are.
    [[nodiscard]] OpenLayer open(const std::string& place, const std::string& output = {});

private:
    [[nodiscard]] OverlayWorkspace& workspace(const std::string& path, const std::string& output);

    bool withholdSaves_;
    SaveObserver observer_;
    std::map<std::pair<std::string, std::string>, std::unique_ptr<OverlayWorkspace>> workspaces_; // by path and output
};

// PATH and LAYER of PATH[:LAYER]; a path that exists as a whole has no layer part.
[[nodiscard]] std::pair<std::string, std::string> splitPlace(const std::string& place);

} // namespace qz
