#pragma once

#include <vector>

#include "platform/geometry/CircularArc.h"
#include "platform/geometry/Coordinates.h"

namespace qz {

// A segment on its way through the noder: straight where it has no circle. Not of zero length.
struct NodingSegment {
    XY start;
    XY end;
    const CircularArc* circle = nullptr;

    [[nodiscard]] Envelope envelope() const;
};

// A place that two segments have in common. A ratio is 0 or 1 exactly when the position is that end, bit for bit.
struct Contact {
    XY position;
    double ratioA = 0;
    double ratioB = 0;
    bool tangential = false; // arcs only: they meet inside of both without crossing
};

struct Contacts {
    std::vector<Contact> points; // isolated ones
    struct Stretch {
        Contact from; // in the direction of the first segment
        Contact to;
    };
    std::vector<Stretch> stretches; // shared by both

    void clear() noexcept {
        points.clear();
        stretches.clear();
    }
};

// What counts as meeting beyond exact arithmetic.
struct ContactTolerance {
    double endDistance = 0;    // an end this close to the other segment lies on it, and is the contact
    double circleDistance = 0; // circles whose centres and radii differ by no more are one circle
};

// Replaces `contacts` by what the two have in common. Straight segments are told apart by exact predicates; contacts of
// arcs are exact up to the rounding of their circle. Crossings don't depend on the order or the direction of the two.
void findContacts(const NodingSegment& a, const NodingSegment& b, const ContactTolerance& tolerance,
                  Contacts& contacts);

} // namespace qz
