#pragma once

#include <memory>
#include <vector>

#include "component/MethodTable.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "host/run/RunRequest.h"

namespace qz {

// A layer of a run with its selection.
struct RunLayer {
    FeatureLayer* layer = nullptr; // nothing: not given
    std::vector<ObjectId> selected;
    bool selectionGiven = false;
};

// The arguments of one call: what the user wrote, and what the host has for the rest. Holds the objects that the host
// makes for the call.
class HostArguments {
public:
    // Throws UsageError that names the parameter: not one of the method's, not for users to give, unreadable, or
    // missing.
    HostArguments(const MethodInfo& method, const RunRequest& request, HeadlessHost& host, RunLayer data,
                  RunLayer source);

    [[nodiscard]] const RunRequest& request() const noexcept { return request_; }
    [[nodiscard]] std::vector<Argument>& values() noexcept { return values_; }
    [[nodiscard]] const RefreshAreaRecord& refreshArea() const noexcept { return refreshArea_; }
    // Plain values and what the method may change, by name.
    [[nodiscard]] std::vector<std::pair<std::string, Argument>> reported() const;

private:
    [[nodiscard]] Argument given(const ParameterInfo& parameter, const std::string& text);
    [[nodiscard]] Argument supplied(const ParameterInfo& parameter);
    // The shape of the first selected feature.
    [[nodiscard]] Argument selectedPolygon();
    [[nodiscard]] std::size_t countFor(const ParameterInfo& parameter) const;
    [[nodiscard]] Argument fallback(const ParameterInfo& parameter);
    [[nodiscard]] Argument layerOf(const RunLayer& layer) const;
    [[nodiscard]] Argument selectionCursor(const ParameterInfo& parameter);
    [[nodiscard]] Argument insertCursor();
    [[nodiscard]] Argument insertBuffer();
    [[nodiscard]] Argument feature(const ParameterInfo& parameter, const std::string& text);
    [[nodiscard]] FeaturePtr cursorRow(ObjectId id);
    void rejectUnknownParameters() const;
    [[noreturn]] void rejectMissing(const ParameterInfo& parameter) const;

    const MethodInfo& method_;
    const RunRequest& request_;
    HeadlessHost& host_;
    RunLayer data_;
    RunLayer source_;
    RefreshAreaRecord refreshArea_;
    CursorPtr selectionCursor_;
    CursorPtr insertCursor_;
    std::unique_ptr<FeatureBuffer> buffer_;
    std::vector<Argument> values_;
};

} // namespace qz
