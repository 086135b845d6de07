#include "graphics/QZDerivedGraphics.h"

#include <optional>

#include <fmt/format.h>

#include "common/CursorWalk.h"
#include "common/ErrorExit.h"
#include "graphics/BoundingShapes.h"
#include "graphics/QZGraphics.h"
#include "graphics/RandomPoints.h"
#include "platform/app/Services.h"
#include "platform/geometry/Boundary.h"
#include "platform/geometry/Buffer.h"
#include "platform/geometry/ConvexHull.h"
#include "platform/geometry/CurvePosition.h"
#include "platform/geometry/InteriorPoint.h"
#include "platform/geometry/Measures.h"
#include "platform/geometry/OwnVertices.h"

namespace qz {

namespace {

enum class Step { walk = 1, draw = 2 };

// Calls `draw(feature, shape, label)` for every feature that has a shape; the label is the feature's then.
template <typename Draw>
void drawEach(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected, Draw draw) {
    GraphicLabel label(sName);
    walkShapes(application, cursor, expected, "Moving shapes: ", [&](const Feature& feature, const Geometry& shape) {
        label.read(feature);
        draw(feature, shape, label.text());
    });
}

// The frame of the methods that draw something for each feature by itself.
template <typename Draw>
bool drawGraphics(const char* label, Application& application, FeatureCursor& cursor, std::string& sName,
                  std::int32_t expected, Draw draw) {
    return withSteppedExit(label, Step::walk, false, [&](Step&) {
        drawEach(application, cursor, sName, expected, draw);
        redrawGraphics(application);
        return true;
    });
}

bool hasPaths(const Geometry& shape) {
    return shape.kind() == GeometryKind::polyline || shape.kind() == GeometryKind::polygon;
}

// What is drawn around a shape, or around all of them.
using Surround = std::optional<Geometry> (*)(const Geometry& shape);

class SingleShape {
public:
    void add(const Geometry& shape) {
        points_.spatialReference = shape.spatialReference();
        forEachOwnVertex(shape, [this](const Vertex& vertex) { points_.vertices.push_back(vertex); });
    }

    [[nodiscard]] std::optional<Geometry> surrounded(Surround surround) const {
        return points_.isEmpty() ? std::nullopt : surround(points_);
    }

private:
    Multipoint points_;
};

bool drawAround(const char* label, Application& application, FeatureCursor& cursor, std::string& sName,
                std::int32_t expected, bool bSingle, Surround surround) {
    return withSteppedExit(label, Step::walk, false, [&](Step& step) {
        SingleShape all;
        const auto drawIfAny = [&](const std::optional<Geometry>& shape) {
            if (shape) {
                drawGraphic(application, *shape, sName);
            }
        };
        drawEach(application, cursor, sName, expected, [&](const Feature&, const Geometry& shape, const std::string&) {
            if (bSingle || !hasPaths(shape)) {
                all.add(shape);
            } else {
                drawIfAny(surround(shape));
            }
        });
        step = Step::draw;
        drawIfAny(all.surrounded(surround));
        redrawGraphics(application);
        return true;
    });
}

std::optional<Geometry> envelopeOf(const Geometry& shape) {
    return rectangle(shape.envelope(), shape.spatialReference());
}

std::optional<Geometry> hullOf(const Geometry& shape) {
    return convexHull(shape);
}

std::optional<Geometry> circleAround(const Geometry& shape) {
    const auto bounding = QZ_MinBoundingCircle(shape);
    return bounding ? std::optional<Geometry>(bounding->circle) : std::nullopt;
}

// The first feature that has a shape.
FeaturePtr firstWithShape(FeatureCursor& cursor) {
    FeaturePtr feature = cursor.next();
    while (feature && !hasShape(*feature)) {
        feature = cursor.next();
    }
    return feature;
}

std::optional<Polyline> lineOf(const Geometry& shape) {
    if (const auto* polygon = shape.getIf<Polygon>()) {
        return boundary(*polygon);
    }
    const auto* line = shape.getIf<Polyline>();
    return line ? std::optional(*line) : std::nullopt;
}

Point pointAt(const Polyline& line, double ratio) {
    Point point;
    static_cast<GeometryTraits&>(point) = line;
    point.vertex = *pointAtRatio(line, ratio);
    return point;
}

void tellShortage(const Feature& feature, std::ptrdiff_t found, std::int32_t asked) {
    showMessage(
        fmt::format("Only {} of {} random points have room in the polygon {}.", found, asked, feature.objectId()));
}

} // namespace

bool QZ_FeaturesToGraphicsRun(Application& application, FeatureCursor& cursor, std::string& sName,
                              std::int32_t expected) {
    return drawGraphics(
        " QZ_FeaturesToGraphicsRun w=", application, cursor, sName, expected,
        [&](const Feature&, const Geometry& shape, const std::string& name) { drawGraphic(application, shape, name); });
}

bool QZ_CentroidGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected) {
    return drawGraphics(" QZ_CentroidGraphics w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            const auto* polygon = shape.getIf<Polygon>();
                            if (const auto centre = polygon ? centroid(*polygon) : std::nullopt) {
                                QZ_DrawPointGraphic(application, *centre, name);
                            }
                        });
}

bool QZ_VertexGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected) {
    return drawGraphics(" QZ_VertexGraphics w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            if (hasPaths(shape)) {
                                Point point;
                                static_cast<GeometryTraits&>(point) = shape.traits();
                                forEachOwnVertex(shape, [&](const Vertex& vertex) {
                                    point.vertex = vertex;
                                    QZ_DrawPointGraphic(application, point, name);
                                });
                            }
                        });
}

bool QZ_EnvelopeGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected,
                         bool bSingle) {
    return drawAround(" QZ_EnvelopeGraphics w=", application, cursor, sName, expected, bSingle, envelopeOf);
}

bool QZ_ConvexGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected,
                       bool bSingle) {
    return drawAround(" QZ_ConvexGraphics w=", application, cursor, sName, expected, bSingle, hullOf);
}

bool QZ_BoundingCircleGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                               std::int32_t expected, bool bSingle) {
    return drawAround(" QZ_BoundingCircleGraphics w=", application, cursor, sName, expected, bSingle, circleAround);
}

bool QZ_BoundingRectangleGraphics(Application& application, FeatureCursor& cursor, std::string& sName,
                                  std::int32_t expected) {
    return drawGraphics(" QZ_BoundingRectangleGraphics w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            const auto bounding = hasPaths(shape) ? QZ_BoundingRectangle(shape) : std::nullopt;
                            if (bounding) {
                                QZ_DrawPolygonGraphic(application, bounding->rectangle, name);
                            }
                        });
}

bool QZ_EACircleGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected) {
    return drawGraphics(" QZ_EACircleGraphics w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            const auto* polygon = shape.getIf<Polygon>();
                            if (const auto circle = polygon ? QZ_EACircle(*polygon) : std::nullopt) {
                                QZ_DrawPolygonGraphic(application, *circle, name);
                            }
                        });
}

bool QZ_BufferGraphics(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected,
                       double dBuf) {
    return drawGraphics(" QZ_BufferGraphics w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            if (const Polygon around = buffer(shape, dBuf); !around.isEmpty()) {
                                QZ_DrawPolygonGraphic(application, around, name);
                            }
                        });
}

bool QZ_GraphicPointAtDistance(Application& application, FeatureCursor& cursor, std::string& sName,
                               double dSplitLength) {
    return withSteppedExit(" QZ_GraphicPointAtDistance w=", Step::walk, false, [&](Step& step) {
        const FeaturePtr feature = firstWithShape(cursor);
        const std::optional<Polyline> line = feature ? lineOf(*feature->shape()) : std::nullopt;
        const double total = line ? length(*line) : 0;
        if (total == 0) {
            return true;
        }
        if (dSplitLength / total > 1) {
            showMessage("The Split distance is larger than the total length\nSplit will not occur!!!");
            return false;
        }
        step = Step::draw;
        GraphicLabel label(sName);
        label.read(*feature);
        QZ_DrawPointGraphic(application, pointAt(*line, dSplitLength / total), label.text());
        redrawGraphics(application);
        return true;
    });
}

bool QZ_RandomGraphicsPg(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected,
                         std::int32_t lNumPoints) {
    UniformNumbers numbers;
    return drawGraphics(" QZ_RandomGraphicsPg w=", application, cursor, sName, expected,
                        [&](const Feature& feature, const Geometry& shape, const std::string& name) {
                            if (const auto* polygon = shape.getIf<Polygon>()) {
                                const Multipoint points = QZ_RandomPointsInPolygon(*polygon, lNumPoints, numbers);
                                drawGraphic(application, points, name);
                                if (std::ssize(points.vertices) < lNumPoints) {
                                    tellShortage(feature, std::ssize(points.vertices), lNumPoints);
                                }
                            }
                        });
}

bool QZ_RandomGraphicsPl(Application& application, FeatureCursor& cursor, std::string& sName, std::int32_t expected,
                         std::int32_t lNumPoints) {
    UniformNumbers numbers;
    return drawGraphics(" QZ_RandomGraphicsPl w=", application, cursor, sName, expected,
                        [&](const Feature&, const Geometry& shape, const std::string& name) {
                            if (const auto* line = shape.getIf<Polyline>()) {
                                drawGraphic(application, QZ_RandomPointsOnPolyline(*line, lNumPoints, numbers), name);
                            }
                        });
}

} // namespace qz
