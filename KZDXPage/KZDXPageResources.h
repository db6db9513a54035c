#pragma once

#include "KZDXPageTasks.h"

// The resources of a scenario in the order of the document, as a list of objects that hold what each says. The group of
// all is null.
[[nodiscard]] KZDXPageJSON KZDXPageResources(const KZDXScenario& scenario);
// The schedule of a resource: {"days": [null or [[from, to], ...] from Sunday on, in seconds of the day], "off" and
// "over": [[date, date], ...]}, behind the dates of an event the name of its calendar where that has one of its own;
// null without a schedule.
[[nodiscard]] KZDXPageJSON KZDXPageSchedule(const MSPCXMLNode& resource);
// The schedule of the project: that of the group of all resources.
[[nodiscard]] KZDXPageJSON KZDXPageProjectSchedule(const KZDXScenario& scenario);
