#include <cmath>
#include <fstream>
#include <iterator>
#include <numbers>
#include <vector>

#include <gdal_priv.h>
#include <gtest/gtest.h>

#include "host/DirectionArrows.h"
#include "host/Picture.h"
#include "host/ScaleBar.h"
#include "host/cairo/Canvas.h"
#include "platform/geometry/WellKnown.h"
#include "tests/host/MapFixture.h"
#include "tests/host/ScratchFolder.h"

namespace qz {

void PrintTo(const Color& color, std::ostream* stream) {
    *stream << "(" << int{color.red} << ", " << int{color.green} << ", " << int{color.blue} << ")";
}

namespace {

constexpr Color white{255, 255, 255};
constexpr Color red{255, 0, 0};
constexpr Color blue{0, 0, 255};

// A PNG read back by another program's reader than the one that wrote it.
class Pixels {
public:
    explicit Pixels(const std::string& path) {
        GDALAllRegister();
        const GDALDatasetUniquePtr image(GDALDataset::Open(path.c_str(), GDAL_OF_RASTER));
        if (!image) {
            throw std::runtime_error("no picture at " + path);
        }
        width_ = image->GetRasterXSize();
        height_ = image->GetRasterYSize();
        bytes_.resize(static_cast<std::size_t>(width_) * static_cast<std::size_t>(height_) * 3);
        if (image->RasterIO(GF_Read, 0, 0, width_, height_, bytes_.data(), width_, height_, GDT_Byte, 3, nullptr, 3,
                            static_cast<GSpacing>(width_) * 3, 1, nullptr) != CE_None) {
            throw std::runtime_error("no pixels in " + path);
        }
    }
    [[nodiscard]] Color at(int x, int y) const {
        const std::size_t i =
            (static_cast<std::size_t>(y) * static_cast<std::size_t>(width_) + static_cast<std::size_t>(x)) * 3;
        return {bytes_[i], bytes_[i + 1], bytes_[i + 2]};
    }
    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    template <typename Accepts> [[nodiscard]] int count(Accepts accepts) const {
        int found = 0;
        for (int y = 0; y < height_; ++y) {
            for (int x = 0; x < width_; ++x) {
                found += accepts(at(x, y)) ? 1 : 0;
            }
        }
        return found;
    }

private:
    int width_ = 0;
    int height_ = 0;
    std::vector<std::uint8_t> bytes_;
};

std::string textOf(const std::string& path) {
    std::ifstream file(path);
    return {std::istreambuf_iterator<char>(file), {}};
}

FillSymbol solid(const Color& color) {
    return {.color = color, .outline = {.color = color, .width = 0.1}};
}

class CanvasTest : public testing::Test {
protected:
    // A sheet of 200 x 100 pixels that shows the world from (0, 0) to (20, 10).
    template <typename Draw> Pixels drawn(Draw draw) {
        const std::string path = folder_.file("sheet.png");
        Canvas canvas(path, 200, 100);
        canvas.setWindow({0, 0, 20, 10}, {0, 0, 200, 100});
        draw(canvas);
        canvas.save();
        return Pixels(path);
    }

    ScratchFolder folder_;
};

TEST_F(CanvasTest, APolygonCoversItsPlaceWithoutItsHole) {
    const Pixels pixels = drawn([](Canvas& canvas) {
        canvas.drawFill(geometryFromWkt("POLYGON ((2 2, 2 8, 10 8, 10 2, 2 2), (4 4, 6 4, 6 6, 4 6, 4 4))"),
                        solid(red));
    });
    EXPECT_EQ(pixels.at(30, 30), red); // (3, 7): north is up
    EXPECT_EQ(pixels.at(50, 50), white);
    EXPECT_EQ(pixels.at(30, 10), white);
    EXPECT_EQ(pixels.at(150, 50), white);
}

struct ArcRow {
    const char* wkt;
    XY on;
    XY off; // where the arc of the other sense would run
};

TEST_F(CanvasTest, ArcsRunOnTheirSide) {
    for (const ArcRow& row : {ArcRow{"CIRCULARSTRING (6 5, 10 9, 14 5)", {10, 9}, {10, 1}},
                              ArcRow{"CIRCULARSTRING (6 5, 10 1, 14 5)", {10, 1}, {10, 9}},
                              ArcRow{"CIRCULARSTRING (14 5, 10 9, 6 5)", {10, 9}, {10, 1}},
                              ArcRow{"CIRCULARSTRING (10 9, 14 5, 6 5)", {10, 1}, {7.2, 7.8}},
                              ArcRow{"CIRCULARSTRING (6 5, 14 5, 6 5)", {10, 9}, {10, 5}}}) {
        SCOPED_TRACE(row.wkt);
        const Pixels pixels =
            drawn([&](Canvas& canvas) { canvas.drawLines(geometryFromWkt(row.wkt), {.color = red, .width = 3}); });
        const auto at = [&](XY p) { return pixels.at(static_cast<int>(p.x * 10), static_cast<int>((10 - p.y) * 10)); };
        EXPECT_EQ(at(row.on), red);
        EXPECT_EQ(at(row.off), white);
    }
}

TEST_F(CanvasTest, ARingOfArcsIsFilled) {
    const Pixels pixels = drawn([](Canvas& canvas) {
        canvas.drawFill(geometryFromWkt("CURVEPOLYGON (CIRCULARSTRING (6 5, 14 5, 6 5))"), solid(blue));
    });
    constexpr double radius = 40;
    const int covered = pixels.count([](const Color& color) { return color == blue; });
    EXPECT_NEAR(covered, std::numbers::pi * radius * radius, 2 * std::numbers::pi * radius); // pixels of the rim
    EXPECT_EQ(pixels.at(100, 50), blue);
}

TEST_F(CanvasTest, NothingLeavesTheWindow) {
    const Pixels pixels = drawn([](Canvas& canvas) {
        canvas.setWindow({0, 0, 10, 10}, {50, 0, 100, 100});
        canvas.drawLines(geometryFromWkt("LINESTRING (-50 5, 50 5)"), {.color = red, .width = 4});
        canvas.drawMarkers(geometryFromWkt("POINT (-1 2)"), {.color = red, .size = 5});
    });
    EXPECT_EQ(pixels.at(40, 50), white);
    EXPECT_EQ(pixels.at(100, 50), red);
    EXPECT_EQ(pixels.at(160, 50), white);
    EXPECT_EQ(pixels.at(40, 80), white);
}

// A country seen through a window of a few metres: in pixels its coordinates are beyond what the drawing library takes.
TEST_F(CanvasTest, ShapesFarLargerThanTheWindowAreDrawnWhereTheyPassIt) {
    const Pixels pixels = drawn([](Canvas& canvas) {
        canvas.drawFill(geometryFromWkt("POLYGON ((-9e6 -9e6, -9e6 5, 9e6 5, 9e6 -9e6, -9e6 -9e6))"), solid(red));
        canvas.drawLines(geometryFromWkt("LINESTRING (-8e6 -8e6, 8e6 8e6)"), {.color = blue, .width = 3});
        canvas.drawLines(geometryFromWkt("CIRCULARSTRING (2 8e6, 4000002 4e6, 2 0)"), {.color = blue, .width = 3});
    });
    EXPECT_EQ(pixels.at(150, 70), red);
    EXPECT_EQ(pixels.at(150, 30), white);
    EXPECT_EQ(pixels.at(80, 20), blue); // (8, 8)
    EXPECT_EQ(pixels.at(30, 69), blue); // (3, 3)
}

TEST_F(CanvasTest, TheWindowKeepsProportionsAndShowsAllThatWasAskedFor) {
    const std::string path = folder_.file("sheet.png");
    Canvas canvas(path, 200, 100);
    canvas.setWindow({0, 0, 10, 10}, {0, 0, 200, 100});
    EXPECT_EQ(canvas.window(), (Envelope{-5, 0, 15, 10}));
    EXPECT_EQ(canvas.pixelsPerUnit(), 10);
    EXPECT_THROW(canvas.setWindow({3, 3, 3, 3}, {0, 0, 200, 100}), PlatformError);
    EXPECT_THROW(canvas.setWindow({}, {0, 0, 200, 100}), PlatformError);
}

TEST_F(CanvasTest, AnArrowPointsWhereItsAngleSays) {
    const Pixels pixels = drawn([](Canvas& canvas) {
        canvas.drawArrow({10, 5}, {.color = red, .length = 30, .width = 12, .angle = 90}); // north
    });
    EXPECT_EQ(pixels.at(100, 35), red); // near the tip
    EXPECT_EQ(pixels.at(106, 35), white);
    EXPECT_EQ(pixels.at(106, 68), red); // near the base
    EXPECT_EQ(pixels.at(125, 50), white);
}

TEST_F(CanvasTest, AnSvgHoldsThePathInPixels) {
    const std::string path = folder_.file("sheet.svg");
    Canvas canvas(path, 200, 100);
    canvas.setWindow({0, 0, 20, 10}, {0, 0, 200, 100});
    canvas.drawLines(geometryFromWkt("LINESTRING (2 2, 12 7)"), {.color = red, .width = 1.5});
    EXPECT_FALSE(std::filesystem::exists(path)) << "a picture appeared before it was complete";
    canvas.save();
    const std::string svg = textOf(path);
    EXPECT_NE(svg.find("width=\"200px\""), std::string::npos);
    EXPECT_NE(svg.find("M 20 80 L 120 30"), std::string::npos) << svg;
    EXPECT_EQ(folder_.fileCount(), 1U);
}

TEST_F(CanvasTest, RefusesWhatItCantWrite) {
    EXPECT_THROW(Canvas(folder_.file("picture.jpg"), 10, 10), UsageError);
    EXPECT_THROW(Canvas(folder_.file("picture.png"), 0, 10), UsageError);
    for (const char* ending : {"png", "svg"}) {
        EXPECT_THROW(
            {
                Canvas canvas(folder_.file(std::string("nowhere/picture.") + ending), 10, 10);
                canvas.save();
            },
            DataError)
            << ending;
    }
    EXPECT_EQ(folder_.fileCount(), 0U);
}

bool isRed(const Color& c) {
    return c.red > 180 && c.green < 80 && c.blue < 80;
}
bool isBlue(const Color& c) {
    return c.red < 60 && c.green < 120 && c.blue > 160;
}

class PictureTest : public testing::Test {
protected:
    // The map's frame lies 20 pixels inside the sheet, with 34 more below; the window is 560 x 500 metres, a metre a
    // pixel. Lines at half metres cover whole pixels.
    static constexpr PictureOptions options{.width = 600, .height = 574};

    PictureTest() {
        data_.addTable("fields", GeometryKind::polygon, 25832,
                       {"POLYGON ((100 100, 100 400, 300 400, 300 100, 100 100))"});
        data_.addTable("paths", GeometryKind::polyline, 25832, {"LINESTRING (50 249.5, 500 249.5)"});
        map_.addLayer("paths", data_.table("paths"));
        map_.addLayer("fields", data_.table("fields"));
        map_.setVisibleBounds({0, 0, 560, 500});
    }
    static Color pixelAt(const Pixels& pixels, double x, double y) {
        return pixels.at(20 + static_cast<int>(x), 520 - static_cast<int>(y));
    }

    ScratchFolder folder_;
    MapFixture data_;
    HeadlessMap map_;
};

TEST_F(PictureTest, ShowsLayersInTheirPlacesLinesOnTopOfAreas) {
    const std::string path = folder_.file("map.png");
    writePicture(path, map_, {}, options);
    const Pixels pixels(path);
    const Color paper = pixelAt(pixels, 450, 450);
    const Color field = pixelAt(pixels, 200, 350);
    const Color line = pixelAt(pixels, 400, 250);
    EXPECT_NE(field, paper);
    EXPECT_NE(line, paper);
    EXPECT_EQ(pixelAt(pixels, 200, 250), line);
    EXPECT_EQ(pixels.count([](const Color& c) { return isRed(c) || isBlue(c); }), 0);
    EXPECT_EQ(pixels.width(), options.width);
    EXPECT_EQ(pixels.height(), options.height);
}

TEST_F(PictureTest, ShowsChangesGraphicsAndDrawings) {
    map_.activeView().graphics().add({.name = "well",
                                      .kind = GraphicKind::marker,
                                      .geometry = geometryFromWkt("POINT (450 450)"),
                                      .symbol = {.marker = {.color = {0, 160, 0}, .size = 9}, .line = {}, .fill = {}},
                                      .selected = false});
    map_.activeView().display().drawPoint(geometryFromWkt("POINT (450 400)"), {.color = {200, 0, 200}, .size = 9});
    const std::string path = folder_.file("map.png");
    writePicture(path, map_,
                 {.before = {geometryFromWkt("LINESTRING (50 449.5, 400 449.5)")},
                  .after = {geometryFromWkt("LINESTRING (50 49.5, 500 49.5)")}},
                 options);
    const Pixels pixels(path);
    EXPECT_EQ(pixelAt(pixels, 450, 450), (Color{0, 160, 0}));
    EXPECT_EQ(pixelAt(pixels, 450, 400), (Color{200, 0, 200}));
    EXPECT_TRUE(isBlue(pixelAt(pixels, 300, 50)));
    const int redPixels = pixels.count(isRed);
    EXPECT_GT(redPixels, 100);
    EXPECT_LT(redPixels, 350 * 2) << "the dashes have no gaps";
}

// The window is a square in the map; turned into the layer's own reference its neighbours come in as well.
TEST_F(PictureTest, ProjectsLayersToTheMap) {
    data_.table("fields");
    MapFixture geographic;
    geographic.addTable("site", GeometryKind::polygon, 4326,
                        {"POLYGON ((8.99 52.34, 8.99 52.36, 9.01 52.36, 9.01 52.34, 8.99 52.34))"});
    HeadlessMap map;
    map.addLayer("site", geographic.table("site"));
    map.setSpatialReference(SpatialReference::fromEpsg(25832));
    map.setVisibleBounds({499000, 5798500, 501000, 5800500});
    const std::string path = folder_.file("map.png");
    writePicture(path, map, {}, options);
    const Pixels pixels(path);
    EXPECT_NE(pixelAt(pixels, 280, 250), pixelAt(pixels, 2, 2));
}

TEST_F(PictureTest, AMapWithoutAnythingIsAnEmptyFrame) {
    HeadlessMap empty;
    const std::string path = folder_.file("map.png");
    writePicture(path, empty, {}, options);
    EXPECT_NE(Pixels(path).at(20, 300), white);
}

TEST_F(PictureTest, BeforeAndAfterStandSideBySide) {
    const std::string path = folder_.file("map.png");
    BeforeAfterPicture picture(path, options);
    picture.drawBefore(map_);
    picture.drawAfter(map_, {.before = {}, .after = {geometryFromWkt("LINESTRING (50 49.5, 500 49.5)")}});
    picture.save();
    const Pixels pixels(path);
    ASSERT_EQ(pixels.width(), 2 * options.width);
    int left = 0;
    int right = 0;
    for (int y = 0; y < pixels.height(); ++y) {
        for (int x = 0; x < pixels.width(); ++x) {
            (x < options.width ? left : right) += isBlue(pixels.at(x, y)) ? 1 : 0;
        }
    }
    EXPECT_EQ(left, 0);
    EXPECT_GT(right, 500);
}

constexpr Envelope everywhere{-1e9, -1e9, 1e9, 1e9};

TEST(DirectionMarks, LieEvenlyAlongLinesAndArcs) {
    const auto straight = directionMarks(geometryFromWkt("LINESTRING (0 0, 30 0, 30 10)"), 20, everywhere);
    ASSERT_EQ(straight.size(), 2U);
    EXPECT_EQ(straight[0].at, (XY{10, 0}));
    EXPECT_EQ(straight[0].polarAngleDegrees, 0);
    EXPECT_EQ(straight[1].at, (XY{30, 0}));
    const auto arc = directionMarks(geometryFromWkt("CIRCULARSTRING (0 0, 10 10, 20 0)"), 100, everywhere);
    ASSERT_EQ(arc.size(), 1U);
    EXPECT_NEAR(arc[0].at.x, 10, 1e-12);
    EXPECT_NEAR(arc[0].at.y, 10, 1e-12);
    EXPECT_NEAR(std::remainder(arc[0].polarAngleDegrees, 360), 0, 1e-9); // clockwise over the top: eastward
    EXPECT_TRUE(directionMarks(geometryFromWkt("LINESTRING (0 0, 30 0)"), 20, {40, 0, 50, 10}).empty());
    EXPECT_TRUE(directionMarks(geometryFromWkt("LINESTRING (5 5, 5 5)"), 20, everywhere).empty());
}

TEST(DirectionMarks, TurnRoundWithTheLine) {
    const auto there = directionMarks(geometryFromWkt("LINESTRING (0 0, 30 40)"), 7, everywhere);
    const auto back = directionMarks(geometryFromWkt("LINESTRING (30 40, 0 0)"), 7, everywhere);
    ASSERT_EQ(there.size(), 7U);
    ASSERT_EQ(back.size(), 7U);
    for (std::size_t i = 0; i < there.size(); ++i) {
        EXPECT_NEAR(there[i].at.x, back[6 - i].at.x, 1e-9);
        const double turn = there[i].polarAngleDegrees - back[6 - i].polarAngleDegrees;
        EXPECT_NEAR(std::abs(std::remainder(turn, 360)), 180, 1e-9);
    }
}

struct ScaleRow {
    int epsg; // 0: none
    double longest;
    double length;
    const char* text;
};

TEST(ScaleBar, IsARoundLengthInMetresOrDegrees) {
    for (const ScaleRow& row :
         {ScaleRow{25832, 99.9, 50, "50 m"}, ScaleRow{25832, 5000, 5000, "5 km"},
          ScaleRow{25832, 0.019, 0.01, "0.01 m"}, ScaleRow{4326, 0.09, 0.05, "0.05°"}, ScaleRow{0, 3, 2, "2"},
          // 1000 US survey feet are 304.8 m; the bar is 200 m long
          ScaleRow{2263, 1000, 200 / 0.304800609601219, "200 m"}}) {
        SCOPED_TRACE(row.text);
        const auto bar =
            scaleBarFor(row.longest, row.epsg == 0 ? SpatialReference() : SpatialReference::fromEpsg(row.epsg));
        ASSERT_TRUE(bar);
        EXPECT_NEAR(bar->length, row.length, 1e-9 * row.length);
        EXPECT_EQ(bar->text, row.text);
    }
    EXPECT_FALSE(scaleBarFor(0, {}));
}

} // namespace
} // namespace qz
