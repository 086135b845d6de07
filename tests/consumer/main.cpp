#include <iostream>

#include "component/MKQZGenFunRun.h"
#include "platform/geometry/Orientation.h"
#include "platform/geometry/WellKnown.h"

int main() {
    std::string platform;
    std::string built;
    std::cout << qz::MKQZGenFunRun().GetQZVersion(platform, built) << " for " << platform << "\n";
    qz::Polyline line = qz::geometryFromWkt("LINESTRING (0 0,1 2)").as<qz::Polyline>();
    qz::reverseOrientation(line);
    return qz::toWkt(line) == "LINESTRING (1 2,0 0)" ? 0 : 1;
}
