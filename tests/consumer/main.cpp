#include <iostream>

#include "component/MKQZGenFunRun.h"
#include "host/HeadlessHost.h"
#include "host/RefreshAreaRecord.h"
#include "platform/data/overlay/OverlayWorkspace.h"
#include "platform/geometry/WellKnown.h"
#include "platform/store/Stores.h"

// Flips a street of the sample town, whose path is the argument.
int main(int, char** argv) {
    qz::OverlayWorkspace town(qz::openStore(argv[1], qz::OpenMode::edit));
    qz::HeadlessHost host(std::cerr, false);
    qz::RefreshAreaRecord refresh;
    town.startEditing();
    qz::FeatureFilter street;
    street.where = "name = 'Mill Street'";
    const std::string before = qz::toWkt(*town.table("streets")->search(street)->next()->shape());
    const qz::CursorPtr cursor = town.table("streets")->search(street);
    const bool done = qz::MKQZGenFunRun().QZ_Flip(*cursor, 1, refresh, host);
    town.stopEditing(done);
    const std::string after = qz::toWkt(*town.table("streets")->search(street)->next()->shape());
    std::cout << before << "\n" << after << "\n";
    return done && before != after ? 0 : 1;
}
