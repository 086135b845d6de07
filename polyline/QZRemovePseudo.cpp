#include "polyline/QZRemovePseudo.h"

#include <algorithm>
#include <optional>
#include <string>
#include <unordered_map>
#include <vector>

#include <fmt/format.h>

#include "attributes/QZAttributeRules.h"
#include "attributes/QZAttributeTransfer.h"
#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "common/NodeKey.h"
#include "platform/Error.h"
#include "platform/app/Services.h"
#include "topology/EdgeChains.h"

namespace qz {

namespace {

enum class Step { rules = 1, collect = 2, chains = 3, merge = 4 };

const Polyline& shapeOf(const FeaturePtr& line) {
    return line->shape()->as<Polyline>();
}

// The lines of the cursor, and which of their ends are pseudo nodes.
class DissolveNetwork {
public:
    DissolveNetwork(std::int16_t decimals, std::optional<std::size_t> dissolveField)
        : nodes_(decimals), dissolveField_(dissolveField) {}

    void add(FeaturePtr line) {
        const Polyline& shape = shapeOf(line);
        nodeOf_.push_back(static_cast<std::uint32_t>(nodes_.add(shape.paths.front().xy().front())));
        nodeOf_.push_back(static_cast<std::uint32_t>(nodes_.add(shape.paths.back().xy().back())));
        dissolveKeyOf_.push_back(dissolveKey(*line));
        lines_.push_back(std::move(line));
    }

    [[nodiscard]] const std::vector<FeaturePtr>& lines() const noexcept { return lines_; }
    // Runs of half-edges, also of one.
    [[nodiscard]] Groups chains() const {
        NodeIndex index{.decimals = 0, .nodeOf = nodeOf_, .endsAt = Groups(nodeOf_, nodes_.size())};
        std::size_t count = nodes_.size();
        for (std::size_t node = 0; node < nodes_.size(); ++node) {
            const auto ends = std::as_const(index.endsAt)[node];
            if (ends.size() == 2 && dissolveKeyOf_[edgeOf(ends[0])] != dissolveKeyOf_[edgeOf(ends[1])]) {
                index.nodeOf[ends[1]] = static_cast<std::uint32_t>(count++); // not to be joined: each a node by itself
            }
        }
        index.endsAt = Groups(index.nodeOf, count);
        return QZ_RemovePseudoInDicOutDic(index);
    }

private:
    [[nodiscard]] std::size_t dissolveKey(const Feature& line) {
        if (!dissolveField_) {
            return 0;
        }
        const Value& value = line.value(*dissolveField_);
        const std::string text = isNull(value) ? "Null" : toText(value);
        return dissolveKeys_.try_emplace(text, dissolveKeys_.size()).first->second;
    }

    NodeNumbers nodes_;
    std::optional<std::size_t> dissolveField_;
    std::unordered_map<std::string, std::size_t> dissolveKeys_;
    std::vector<FeaturePtr> lines_;
    std::vector<std::uint32_t> nodeOf_; // by end
    std::vector<std::size_t> dissolveKeyOf_;
};

std::optional<std::size_t> fieldAt(const Schema& schema, std::int32_t index) {
    if (index == -1) {
        return std::nullopt;
    }
    if (index < 0 || static_cast<std::size_t>(index) >= schema.fields.size()) {
        throw PlatformError(fmt::format("{} has no field {}; its fields go from 0 to {}, and -1 stands for none.",
                                        schema.name, index, schema.fields.size() - 1));
    }
    return static_cast<std::size_t>(index);
}

// From the end of the lower object id on; a ring stays as it begins, with its lowest.
std::vector<ChainMember> orderedChain(const std::vector<FeaturePtr>& lines, std::span<const EdgeEnd> run) {
    std::vector<ChainMember> chain;
    for (const EdgeEnd halfEdge : run) {
        chain.push_back({lines[edgeOf(halfEdge)], isReversed(halfEdge)});
    }
    if (chain.back().feature->objectId() < chain.front().feature->objectId()) {
        std::ranges::reverse(chain);
        std::ranges::for_each(chain, [](ChainMember& member) { member.isReversed = !member.isReversed; });
    }
    return chain;
}

// In the order and direction of the merged line.
std::vector<ChainMember> alongMergedLine(std::vector<ChainMember> chain) {
    if (std::ranges::all_of(chain, &ChainMember::isReversed)) {
        std::ranges::reverse(chain);
        std::ranges::for_each(chain, [](ChainMember& member) { member.isReversed = false; });
    }
    return chain;
}

// The first part of a line goes on where the one before it ended.
Polyline joined(const std::vector<ChainMember>& alongLine) {
    Polyline line;
    static_cast<GeometryTraits&>(line) = shapeOf(alongLine.front().feature);
    for (const ChainMember& member : alongLine) {
        const std::vector<Path>& parts = shapeOf(member.feature).paths;
        for (std::size_t i = 0; i < parts.size(); ++i) {
            if (i > 0 || line.paths.empty()) {
                line.paths.emplace_back();
            }
            appendEdge(line.paths.back(), parts[member.isReversed ? parts.size() - 1 - i : i], member.isReversed);
        }
    }
    return line;
}

void merge(const std::vector<ChainMember>& chain, const std::optional<Dictionary>& rules, RefreshArea& refresh) {
    const std::vector<ChainMember> alongLine = alongMergedLine(chain);
    if (rules) {
        writeChainValues(*rules, chain, alongLine);
    }
    Polyline line = joined(alongLine);
    refresh.add(line);
    Feature& kept = *chain.front().feature;
    kept.setShape(std::move(line));
    kept.store();
    for (const ChainMember& member : std::span(chain).subspan(1)) {
        member.feature->remove();
    }
}

} // namespace

bool QZ_RemovePseudo(Application& application, FeatureLayer& layer, FeatureCursor& cursor, std::int32_t dissolveField,
                     std::int32_t expected, RefreshArea& refresh) {
    return withSteppedExit(" QZ_RemovePseudo w=", Step::rules, false, [&](Step& step) {
        const FeatureClass& featureClass = layer.featureClass();
        const std::optional<Dictionary> rules = QZ_GetAttRules(layer.name());
        DissolveNetwork network(nodeDecimals(featureClass), fieldAt(featureClass.schema(), dissolveField));
        step = Step::collect;
        walkFeatures(application, cursor, expected, "Collecting polylines: ", [&](const FeaturePtr& line) {
            if (hasShape(*line)) {
                network.add(line);
            }
        });
        step = Step::chains;
        const Groups chains = network.chains();
        step = Step::merge;
        WalkProgress progress(application, static_cast<std::int32_t>(chains.size()), "Dissolving polylines: ");
        for (std::size_t i = 0; i < chains.size(); ++i) {
            checkInterrupt();
            if (std::as_const(chains)[i].size() > 1) {
                merge(orderedChain(network.lines(), std::as_const(chains)[i]), rules, refresh);
            }
            progress.advance(static_cast<std::int32_t>(i));
        }
        progress.hide();
        return true;
    });
}

} // namespace qz
