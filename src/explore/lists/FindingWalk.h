// The way through the records of all that asks for a look, one after the other and round again.
#pragma once

#include "explore/Findings.h"

#include <cstddef>
#include <optional>
#include <vector>

namespace carvelot {

class CFindingWalk {
public:
    struct Place {
        std::size_t finding = 0; // in the list of all
        std::size_t record = 0;  // of that finding's

        bool operator==(const Place&) const = default;
    };

    // Of other findings, which must outlive the walk or be dropped: it stands nowhere then.
    void Begin(const std::vector<Finding>& findings);
    void Drop();

    // To the next record of all findings, or the one before; from nowhere to the very first one, or the very
    // last. Findings without records are passed over. Nothing where none has any.
    std::optional<Place> Step(bool forward);
    // To the next record of one finding, to its first one from another; nothing where it has none.
    std::optional<Place> StepWithin(std::size_t finding);
    // To a record that the user went to by other ways.
    void StandAt(Place place);

    std::optional<Place> Standing() const { return m_place; }
    // What stands at a place of a step.
    RecordIndex RecordAt(Place place) const { return (*m_pFindings)[place.finding].records[place.record]; }

private:
    const std::vector<Finding>* m_pFindings = nullptr;
    std::optional<Place> m_place;
};

} // namespace carvelot
