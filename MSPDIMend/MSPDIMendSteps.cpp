#include <algorithm>
#include <iterator>

#include "MSPDIMend.h"

namespace {

constexpr MSPDIMendStep steps[] = {
    {"embedded", "the XML document that lies inside another file is taken out of it",
     "the rest of the file is left out", true},
    {"namespace", "the root declares the namespace of plans and no other, and names lose their prefixes",
     "attributes of the root that have a prefix, such as the place of a schema, are left out", true},
    {"missing-uid", "tasks, resources and calendars without a UID, or with a negative one, get the next free one",
     "numbers are invented; links and assignments go with the first that had the number", true},
    {"duplicate-root", "of several tasks with UID 0 the later ones get the next free UIDs, on level 1 at least",
     "numbers are invented; links and assignments stay with the task that keeps UID 0", true},
    {"root-task", "the task with UID 0 becomes the project's summary task: Summary 1, OutlineLevel 0",
     "nothing but its dates arrives: it stands for the project, not for work", true},
    {"outline", "outline levels lead from the root to every task, order and depth kept",
     "a task with others under it may become a summary task; two levels may become one where that would cost "
     "assignments",
     true},
    {"calendar-order", "the project's calendar exchanges its UID with the calendar that has UID 1", "nothing", true},
    {"standard-calendar",
     "the project's calendar takes the name Standard and is a base calendar; without any, a Standard one is put in",
     "the calendar's name is lost; a calendar that is put in is invented: Monday to Friday, 8 to 12 and 13 to 17",
     true},
    {"resource-type", "cost resources become material; resources of an unknown type become work",
     "what a cost resource is for", true},
    {"unreadable-value", "values that the importer cannot take, and stops at, leave the copy",
     "the values themselves, which are no numbers, dates or known types", true},
    {"split-roll-up", "timephased data of tasks with others under them leave the copy where they end the import",
     "how the work of these assignments is spread over the time", true},
    {"split-pieces", "timephased data of tasks whose pieces hold no working time leave the copy",
     "how the work of these assignments is spread over the time", true},
};

}  // namespace

std::span<const MSPDIMendStep> MSPDIMendSteps() {
    return steps;
}

const MSPDIMendStep* MSPDIMendStepNamed(std::string_view name) {
    const auto* found =
        std::find_if(std::begin(steps), std::end(steps), [&](const auto& step) { return step.name == name; });
    return found == std::end(steps) ? nullptr : found;
}
