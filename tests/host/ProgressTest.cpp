#include <algorithm>
#include <sstream>

#include <gtest/gtest.h>

#include "host/HeadlessHost.h"
#include "platform/Error.h"
#include "platform/app/Services.h"

namespace qz {
namespace {

// A clock that stands still unless told.
class Progress : public testing::Test {
protected:
    Progress() {
        services().clock = [this] { return now_; };
    }
    void wait(std::chrono::milliseconds time) { now_ += time; }
    // As methods report one feature.
    void walk(StepProgressor& progressor, int first, int last) {
        for (int i = first; i <= last; ++i) {
            progressor.setPosition(i);
            progressor.setMessage("Flipping polylines: " + std::to_string(i));
            progressor.step();
            progressor.show();
        }
    }
    std::string newOutput() {
        std::string output = terminal_.str();
        terminal_.str("");
        return output;
    }
    static std::size_t redraws(const std::string& output) {
        return static_cast<std::size_t>(std::count(output.begin(), output.end(), '\r'));
    }

    ScopedServices scope_;
    std::chrono::system_clock::time_point now_{std::chrono::hours(1)};
    std::ostringstream terminal_;
};

TEST_F(Progress, RecordsWhatAWalkReported) {
    HeadlessHost host(terminal_, false);
    HeadlessProgressor& progressor = host.statusBar().stepProgressor();
    progressor.setRange(1, 151);
    progressor.setStepValue(2);
    walk(progressor, 1, 149);
    progressor.hide();
    const ProgressRecord& record = progressor.record();
    EXPECT_EQ(record.maximum, 151);
    EXPECT_EQ(record.step, 2);
    EXPECT_EQ(record.positions, 149);
    EXPECT_EQ(record.text, "Flipping polylines: 149");
    EXPECT_FALSE(record.shown);
    EXPECT_EQ(record.hideCount, 1);
    EXPECT_EQ(newOutput(), "") << "a pipe got progress";
}

TEST_F(Progress, StepsWithoutPositionsAreMoves) {
    HeadlessHost host(terminal_, false);
    HeadlessProgressor& progressor = host.statusBar().stepProgressor();
    for (int i = 0; i < 3; ++i) {
        progressor.step();
    }
    EXPECT_EQ(progressor.record().positions, 3);
}

TEST_F(Progress, TheTerminalShowsTextBarAndPercentageAndIsClearedAfterwards) {
    HeadlessHost host(terminal_, true);
    HeadlessProgressor& progressor = host.statusBar().stepProgressor();
    progressor.setRange(0, 200);
    walk(progressor, 1, 1);
    wait(std::chrono::seconds(1));
    newOutput();
    walk(progressor, 100, 100);
    EXPECT_EQ(newOutput(), "\r[===============               ]  50 % Flipping polylines: 100\x1b[K");
    progressor.hide();
    EXPECT_EQ(newOutput(), "\r\x1b[K");
}

TEST_F(Progress, IsDrawnAgainForANewPercentageOrAfterAWhile) {
    HeadlessHost host(terminal_, true);
    HeadlessProgressor& progressor = host.statusBar().stepProgressor();
    progressor.setRange(0, 1000000);
    walk(progressor, 1, 1);
    newOutput();
    walk(progressor, 2, 9000);
    EXPECT_EQ(newOutput(), "");
    wait(std::chrono::milliseconds(60));
    walk(progressor, 9001, 9500);
    EXPECT_EQ(redraws(newOutput()), 1U);
    walk(progressor, 9501, 10500);
    EXPECT_EQ(redraws(newOutput()), 1U);
}

TEST_F(Progress, LongTextsDontWrapTheLine) {
    HeadlessHost host(terminal_, true);
    std::string umlauts;
    for (int i = 0; i < 100; ++i) {
        umlauts += "ü";
    }
    host.statusBar().setMessage(umlauts);
    EXPECT_EQ(newOutput(), "\r" + umlauts.substr(0, 2 * 79) + "\x1b[K");
}

TEST_F(Progress, AStepIsWhereARunCanBeStopped) {
    HeadlessHost host(terminal_, false);
    const auto dialog = host.createProgressDialog();
    EXPECT_TRUE(dialog->goesOn());
    services().interruptRequested = [] { return true; };
    EXPECT_FALSE(dialog->goesOn());
    EXPECT_THROW(host.statusBar().stepProgressor().step(), Interrupted);
}

TEST_F(Progress, ADialogDrawsItsOwnBarAndLeavesNothing) {
    HeadlessHost host(terminal_, true);
    {
        const auto dialog = host.createProgressDialog();
        dialog->setTitle("Clean Polygons");
        dialog->setDescription("Collecting geometries...");
        dialog->progressor().setRange(0, 2);
        dialog->progressor().setStepValue(1);
        newOutput();
        dialog->progressor().step();
        EXPECT_EQ(newOutput(),
                  "\r[===============               ]  50 % Clean Polygons: Collecting geometries...\x1b[K");
    }
    EXPECT_EQ(newOutput(), "\r\x1b[K");
    EXPECT_EQ(host.statusBar().stepProgressor().record().positions, 0);
}

} // namespace
} // namespace qz
