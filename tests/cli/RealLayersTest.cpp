// The methods on the layers of the folder that QZ_REAL_LAYERS names, as a user runs them; the results are new files.

#include <algorithm>
#include <cmath>
#include <set>

#include "Program.h"
#include "platform/geometry/Simplify.h"
#include "tests/support/RealData.h"
#include "tests/support/StoredRows.h"

namespace qz::test {
namespace {

// What a method may do to shapes beside what it is for.
enum Leave { keepsAll = 0, mayCross = 1, hasDrawn = 2 };

// "{fid}" is a feature of the layer, "{x}" and "{y}" its first vertex, "{d}" its size, "{tolerance}" that of the layer.
struct MethodRun {
    GeometryKind kind;
    const char* arguments;
    int leave = keepsAll;
};

constexpr MethodRun runs[] = {
    {GeometryKind::polyline, "QZ_Flip --all"},
    {GeometryKind::polyline, "QZ_SelectAndIntersectRun --all --bOver false"},
    {GeometryKind::polyline, "QZ_RemovePseudo --all --lDisIndex -1"},
    {GeometryKind::polyline, "QZ_RemoveDupPolylines --all"},
    {GeometryKind::polyline, "QZ_Explode --all"},
    {GeometryKind::polyline, "QZ_Generalize --all --iPar0 {tolerance}"},
    {GeometryKind::polyline, "QZ_TopoCleanPl --dFuzzy {tolerance}"},
    {GeometryKind::polyline, "QZ_SplitInPoint2 --fid {fid} --sOption Middle --bOver false"},
    {GeometryKind::polyline, "QZ_SplitInPoint2 --fid {fid} --sOption AllVertices --bOver true"},
    {GeometryKind::polyline, "QZ_Densify --fid {fid} --sGenType Normal --iPar0 {d} --iPar1 {tolerance}"},
    {GeometryKind::polyline, "QZ_InsertVertexRun --fid {fid} --pPoint {x},{y} --bSame true"},
    {GeometryKind::polyline,
     "QZ_OffsetPolyline --fid {fid} --pEndPoint {x},{y} --vMethod 8 --dOffDist {d} --bCopy true"},
    {GeometryKind::polyline, "QZ_SmoothRun --fid {fid} --sCurType bSpline --iPar0 3 --iPar1 3"},
    {GeometryKind::polyline, "QZ_AnalyseNodes --what All --nType All --bTrueCoords true --lMax 1000000"},
    {GeometryKind::polyline, "QZ_FindDupPolylines --sWhat All --dFuzzy {tolerance} --lMax 1000000"},
    {GeometryKind::polygon, "QZ_Explode --all"},
    {GeometryKind::polygon, "QZ_IntersectSelectedPolygons --all"},
    {GeometryKind::polygon, "QZ_TopoCleanPg --dFuzzy {tolerance}"},
    {GeometryKind::polygon, "QZ_Generalize --all --iPar0 {tolerance}", mayCross},
    {GeometryKind::polygon, "QZ_DrawGaps --bAdd true --sHow 'New Polygon'", hasDrawn},
    {GeometryKind::polygon, "QZ_DrawOverlaps"},
    {GeometryKind::polygon, "QZ_SplitPolygonRun --pPolyline '{line}'"},
    {GeometryKind::polygon, "QZ_AddPolygonRun --pNewPolygon '{square}' --iPriority 0", hasDrawn},
    {GeometryKind::polygon, "QZ_AddPolygonRun --pNewPolygon '{square}' --iPriority 1", hasDrawn},
    {GeometryKind::polygon, "QZ_AddPolygonRun --pNewPolygon '{square}' --iPriority 2", hasDrawn},
    {GeometryKind::polygon, "QZ_AddPolygonRun --pNewPolygon '{square}' --iPriority -1", hasDrawn},
    {GeometryKind::polygon, "QZ_ChamferAllRun --fid {fid} --dR {d} --bFillet true", mayCross},
    {GeometryKind::polygon, "QZ_InsertVertexRun --fid {fid} --pPoint {x},{y} --bSame true"},
    {GeometryKind::point, "QZ_RemoveDupPoints --all --dFuzzy {tolerance}"},
    {GeometryKind::point, "QZ_FindDupPoints --sWhat All --dFuzzy {tolerance} --lMax 1000000"},
};

bool hasUndefinedHeights(const FeatureRecord& record) {
    bool found = false;
    if (record.shape && record.shape->traits().zAware) {
        forEachVertex(*record.shape, [&](const Vertex& vertex) { found = found || std::isnan(vertex.z); });
    }
    return found;
}

bool isProper(const FeatureRecord& record) {
    const Polygon* polygon = record.shape ? record.shape->getIf<Polygon>() : nullptr;
    return polygon == nullptr || isSimple(*polygon);
}

// A layer as it is before all runs.
struct RealLayer {
    RealLayer(const std::string& file, FeatureSource& table)
        : path(file), schema(table.schema()), rows(recordsOf(table)) {
        isAllProper = std::ranges::all_of(rows, [](const auto& row) { return isProper(*row.second); });
        hasAllHeights = std::ranges::none_of(rows, [](const auto& row) { return hasUndefinedHeights(*row.second); });
    }

    [[nodiscard]] std::string arguments(const MethodRun& run) const {
        const auto& [fid, record] = *std::next(rows.begin(), static_cast<std::ptrdiff_t>(rows.size() / 2));
        const Envelope box =
            record->shape && !record->shape->isEmpty() ? record->shape->envelope() : Envelope{0, 0, 1, 1};
        const double d = std::hypot(box.width(), box.height()) / 7 + 1e-6;
        std::string text = run.arguments;
        const std::pair<const char*, std::string> places[] = {
            {"{fid}", fmt::format("{}", fid)},
            {"{x}", fmt::format("{}", box.xMin)},
            {"{y}", fmt::format("{}", box.yMin)},
            {"{d}", fmt::format("{}", d)},
            {"{tolerance}", fmt::format("{}", schema.shape->spatialReference.grid().xyTolerance)},
            {"{line}",
             fmt::format("LINESTRING ({} {},{} {})", box.xMin - d, box.yMin - d, box.xMax + d, box.yMax + 2 * d)},
            {"{square}", fmt::format("POLYGON (({0} {1},{0} {3},{2} {3},{2} {1},{0} {1}))", box.xMin - d, box.yMin - d,
                                     box.xMin + 2 * d, box.yMin + 3 * d)},
        };
        for (const auto& [name, value] : places) {
            for (auto at = text.find(name); at != std::string::npos; at = text.find(name)) {
                text.replace(at, std::string(name).size(), value);
            }
        }
        return text;
    }

    std::string path;
    Schema schema;
    std::map<ObjectId, RecordPtr> rows;
    bool isAllProper = false;
    bool hasAllHeights = false;
};

std::set<ObjectId> idsIn(const nlohmann::json& rows) {
    std::set<ObjectId> ids;
    for (const auto& row : rows) {
        ids.insert(row.is_object() ? row["id"].get<ObjectId>() : row.get<ObjectId>());
    }
    return ids;
}

class RealLayersCommand : public ProgramTest {
protected:
    void runOn(const RealLayer& layer, const MethodRun& run) const {
        const std::string output = (folder / "out.gpkg").string();
        std::filesystem::remove(output);
        const std::string arguments = layer.arguments(run);
        SCOPED_TRACE(arguments);
        const Outcome outcome = qz(fmt::format("run {} --data '{}:{}' --output out.gpkg --report report.json",
                                               arguments, layer.path, layer.schema.name));
        if (outcome.status != 0) {
            EXPECT_EQ(outcome.status, 1) << outcome.err;
            EXPECT_FALSE(outcome.err.empty());
            EXPECT_FALSE(std::filesystem::exists(output));
        } else if (std::filesystem::exists(output)) {
            const auto store = openStore(output, OpenMode::read);
            compare(layer, run, recordsOf(*store->table(layer.schema.name)));
        }
    }

private:
    void compare(const RealLayer& layer, const MethodRun& run, const std::map<ObjectId, RecordPtr>& after) const {
        const nlohmann::json report = nlohmann::json::parse(contentOf(folder / "report.json"));
        const std::set<ObjectId> added = idsIn(report["inserted"]);
        const std::set<ObjectId> changed = idsIn(report["updated"]);
        const std::set<ObjectId> gone = idsIn(report["deleted"]);
        EXPECT_EQ(after.size(), layer.rows.size() + added.size() - gone.size());
        for (const auto& [id, record] : layer.rows) {
            const auto now = after.find(id);
            EXPECT_EQ(now == after.end(), gone.contains(id)) << id;
            if (now != after.end() && !changed.contains(id)) {
                EXPECT_EQ(rowText(layer.schema, *now->second), rowText(layer.schema, *record));
            }
        }
        for (const auto& [id, record] : after) {
            if (added.contains(id) || changed.contains(id)) {
                EXPECT_TRUE(!layer.isAllProper || (run.leave & mayCross) != 0 || isProper(*record)) << id;
                EXPECT_TRUE(!layer.hasAllHeights || (run.leave & hasDrawn) != 0 || !hasUndefinedHeights(*record)) << id;
            }
        }
    }
};

TEST_F(RealLayersCommand, StayWholeUnderEveryMethod) {
    if (realDataSets().empty()) {
        GTEST_SKIP() << "QZ_REAL_LAYERS names no folder with layers.";
    }
    for (const std::string& path : realDataSets()) {
        const auto store = openStore(path, OpenMode::read);
        for (const std::string& name : store->tableNames()) {
            FeatureSource& table = *store->table(name);
            if (!table.schema().shape || !table.schema().shape->kind || table.count() == 0) {
                continue;
            }
            SCOPED_TRACE(path + ", " + name);
            const RealLayer layer(path, table);
            for (const MethodRun& run : runs) {
                if (run.kind == *table.schema().shape->kind) {
                    runOn(layer, run);
                }
            }
        }
    }
}

} // namespace
} // namespace qz::test
