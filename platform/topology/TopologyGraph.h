#pragma once

#include <cstdint>
#include <span>
#include <vector>

#include "platform/data/FeatureClass.h"
#include "platform/topology/SettledShapes.h"

namespace qz {

// The lines and boundaries of one or two feature classes as one planar graph: vertices within the cluster tolerance are
// one, everything that meets is noded (see clusterNoded), and what runs along the same way is one edge that knows its
// features. The features themselves are not changed. Edges are numbered by their first feature, and along it.
class TopologyGraph {
public:
    // A feature that the graph was built of. Numbers of features are in the order of the classes and of object ids.
    struct Parent {
        std::size_t featureClass = 0; // of those given
        ObjectId id = 0;
    };
    // An edge on the way of a feature, which has segments `first` and so on there; a ring may go on beyond its end.
    struct EdgeUse {
        std::uint32_t edge = 0;
        bool isReversed = false;
        std::uint32_t first = 0;
        std::uint32_t count = 0;
    };
    struct PathEdges {
        std::uint32_t feature = 0;
        std::uint32_t path = 0;
        std::vector<EdgeUse> uses;
    };
    using Features = std::span<const std::uint32_t>;

    // Of all features with a shape, or of those alone that touch the extent, which take part whole. The classes are of
    // lines or polygons and have one spatial reference; the tolerance is in its units. Throws PlatformError for other
    // classes and for a tolerance that is negative or not finite.
    TopologyGraph(std::span<FeatureClass* const> classes, const Envelope* extent, double tolerance);
    // Of shapes by themselves; the id of each is its place in the given ones. None is empty.
    TopologyGraph(std::vector<Geometry> shapes, double tolerance);

    [[nodiscard]] std::size_t featureCount() const noexcept { return features_.size(); }
    [[nodiscard]] const Parent& feature(std::size_t number) const noexcept { return features_[number]; }
    // Nothing of it moved, and no vertex came to it.
    [[nodiscard]] bool isUnchanged(std::size_t feature) const noexcept { return isUnchanged_[feature]; }
    [[nodiscard]] const Geometry& originalShape(std::size_t feature) const noexcept {
        return shapes_.original(feature);
    }
    // The edges along each part of a line, or along each ring of a polygon, exterior ones before their holes. Nothing
    // for a feature that is not larger than the tolerance.
    [[nodiscard]] std::span<const PathEdges> pathsOf(std::size_t feature) const noexcept {
        return std::span(paths_).subspan(firstPath_[feature], firstPath_[feature + 1] - firstPath_[feature]);
    }
    // The way along an edge in the direction, and with the z and m, that the feature has there.
    [[nodiscard]] Path along(const PathEdges& path, const EdgeUse& use) const;

    [[nodiscard]] std::size_t edgeCount() const noexcept { return edges_.size(); }
    // As its first feature has it. A ring that meets nothing is one edge from its first vertex to itself.
    [[nodiscard]] Polyline geometryOf(std::size_t edge) const;
    // The features that run along it, ascending.
    [[nodiscard]] Features parentsOf(std::size_t edge) const noexcept { return edges_[edge].parents; }
    // The polygons that it bounds, by the side on which they lie.
    [[nodiscard]] Features leftOf(std::size_t edge) const noexcept { return edges_[edge].left; }
    [[nodiscard]] Features rightOf(std::size_t edge) const noexcept { return edges_[edge].right; }

private:
    struct Edge {
        std::uint32_t path = 0; // of the first feature, and its use there
        std::uint32_t use = 0;
        std::vector<std::uint32_t> parents;
        std::vector<std::uint32_t> left;
        std::vector<std::uint32_t> right;
    };

    struct Network {
        std::vector<Parent> features;
        std::vector<Geometry> shapes;
    };
    [[nodiscard]] static Network read(std::span<FeatureClass* const> classes, const Envelope* extent);
    TopologyGraph(Network network, double tolerance);

    friend class EdgeTracer;
    [[nodiscard]] bool isAsGiven(std::size_t feature) const;

    std::vector<Parent> features_;
    SettledShapes shapes_;
    std::vector<Edge> edges_;
    std::vector<PathEdges> paths_;
    std::vector<bool> isUnchanged_;      // by feature
    std::vector<std::size_t> firstPath_; // of each feature, and the number of paths at last
};

} // namespace qz
