#include <algorithm>
#include <iterator>

#include "MSPDIMend.h"

namespace {

constexpr MSPDIMendStep steps[] = {
    {"embedded", "the plan that lies inside another file, or inside another element, is taken out of it",
     "the rest of the file is left out", true},
    {"namespace", "the root declares the namespace of plans and no other, and names lose their prefixes",
     "attributes of the root that have a prefix, such as the place of a schema, or cannot be read are left out", true},
    {"missing-uid",
     "tasks, resources and calendars without a UID, or with one that is negative or no number, get the next free one",
     "numbers are invented; links and assignments go with the first that had the number", true},
    {"duplicate-root", "of several tasks with UID 0 the later ones get the next free UIDs, on level 1 at least",
     "numbers are invented; links and assignments stay with the task that keeps UID 0", true},
    {"root-task", "the task with UID 0 becomes the project's summary task: Summary 1, OutlineLevel 0",
     "nothing but its dates arrives: it stands for the project, not for work", true},
    {"outline",
     "outline levels lead from the root to every task, order and depth kept; one that is no number becomes that of the "
     "task before",
     "a task with others under it may become a summary task; two levels may become one where that would cost "
     "assignments",
     true},
    {"calendar-order",
     "a person's calendar that has UID 1 exchanges it with the project's calendar, or gets the next free one",
     "nothing", true},
    {"project-calendar", "the project's calendar gets UID 1, in exchange with the calendar that has it",
     "what the other calendar holds arrives no longer; so nothing is done where that is more than what the project's "
     "brings",
     false},
    {"standard-calendar",
     "the project's calendar becomes a base calendar, named Standard unless it has UID 1; without any, a Standard one "
     "is put in",
     "a name other than Standard may be lost; a calendar that is put in is invented: Monday to Friday, 8 to 12 and 13 "
     "to 17",
     true},
    {"resource-type", "cost resources become material; resources of an unknown type become work",
     "what a cost resource is for", true},
    {"unreadable-value", "values that the importer cannot take, and stops at, leave the copy",
     "the values themselves, which are no numbers, dates or known types", true},
    {"split-roll-up", "timephased data of tasks with others under them leave the copy where they end the import",
     "how the work of these assignments is spread over the time", true},
    {"split-pieces", "timephased data of tasks whose pieces hold no working time leave the copy",
     "how the work of these assignments is spread over the time", true},
    {"resource-weeks",
     "days and exceptions that a resource's calendar has from its base calendar are written into it, and it becomes "
     "one",
     "changes of the base calendar no longer reach the resource", false},
    {"exceptions-2003", "exceptions of calendars in the form of 2003 are written in the later form", "nothing", false},
    {"recurring-exceptions",
     "recurring exceptions of calendars are written out as single dates, from the plan's first day to its last",
     "the dates before and behind, and the names of the exceptions", false},
    {"work-weeks", "work weeks are written out as exceptions of single dates, from the plan's first day to its last",
     "the dates before and behind, and the names of the work weeks", false},
    {"deadline-to-field", "deadlines become a custom field of their tasks", "the deadline is a text from then on",
     false},
    {"lag-to-field", "the lag of links becomes a custom field of the later task, in words",
     "the lag is a text from then on; lag in percent stays as it is", false},
    {"units-to-field", "units of work resources other than 100% become a custom field of the task, in words",
     "the units are a text from then on", false},
    {"hyperlink-to-field", "hyperlinks of tasks and assignments become a custom field of the tasks",
     "the hyperlink is a text from then on", false},
    {"wbs-to-field", "WBS codes become a custom field of their tasks", "nothing", false},
    {"contact-to-field", "contacts become a custom field of their tasks", "nothing", false},
    {"manual-to-field", "that a task is scheduled by hand becomes a custom field of it",
     "the mark is a text from then on", false},
    {"active-to-field", "that a task is inactive becomes a custom field of it", "the mark is a text from then on",
     false},
    {"calendar-to-field", "calendars of tasks become a custom field of them, by their names",
     "what the calendar says does not arrive", false},
    {"actual-to-field", "actual starts and finishes become a custom field of their tasks",
     "the dates are a text from then on", false},
    {"physical-to-field", "physical completion becomes a custom field of its tasks", "the share is a text from then on",
     false},
    {"estimated-to-field", "that a duration is estimated becomes a custom field of its task",
     "the mark is a text from then on", false},
    {"recurring-to-field", "that a task recurs becomes a custom field of it", "the mark is a text from then on", false},
    {"subproject-to-field", "the project that a task stands for, or comes from, becomes a custom field of it",
     "the link to it is a text from then on", false},
    {"commitment-to-field", "commitments become a custom field of their tasks", "the dates are a text from then on",
     false},
    {"entered-to-field", "dates and durations that were entered as text become a custom field of their tasks",
     "nothing", false},
    {"leveling-to-field", "delays by leveling become a custom field of their tasks, in words",
     "the delay is a text from then on", false},
    {"overtime-to-field", "overtime work becomes a custom field of its task, in words",
     "the work is a text from then on", false},
    {"accrual-to-field", "that fixed costs are due at the start becomes a custom field of their tasks, in words",
     "the mark is a text from then on", false},
    {"leveling-settings-to-field",
     "that leveling must not split tasks or move their assignments becomes a custom field of them, in words",
     "the marks are a text from then on", false},
    {"details-to-field", "managers, owners, boards and sprints of tasks become a custom field of them, in words",
     "nothing", false},
    {"assignment-notes-to-field", "notes of assignments become a custom field of their tasks",
     "the notes are a text of the task from then on", false},
    {"contour-to-field", "how the work of assignments is spread becomes a custom field of their tasks, in words",
     "the contour is a text from then on", false},
    {"assignment-delay-to-field", "delays of assignments become a custom field of their tasks, in words",
     "the delay is a text from then on", false},
    {"field-keys", "the last task and the last resource get every custom field in use, so that all have a key",
     "they have fields without a value", false},
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

bool MSPDIMendOptions::isAskedFor(std::string_view step) const {
    return isAll || std::find(only.begin(), only.end(), step) != only.end();
}
