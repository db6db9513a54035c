#pragma once

#include "MSPDIElement.h"

// The conditions that lines of the element table name. Those of what the importer never reads go by the line's own
// values; the others look at where the leaf stands.

// Never read.
MSPDIJudgement lostUnlessDefault(const MSPDILeaf& leaf);
MSPDIJudgement saysNothing(const MSPDILeaf& leaf);
MSPDIJudgement derivedFromOthers(const MSPDILeaf& leaf);
// The same for what the conditions of others look at.
MSPDIJudgement lostAndCompared(const MSPDILeaf& leaf);
MSPDIJudgement derivedAndCompared(const MSPDILeaf& leaf);
// Whether the first three of these decide, so that a line and a text are enough to judge a leaf: no condition of
// another leaf looks at it. And the judgement.
[[nodiscard]] bool MSPDIGoesByTextAlone(const MSPDIElement& element);
[[nodiscard]] MSPDIJudgement MSPDIJudgementOfText(const MSPDIElement& element, std::string_view text);

// Of a value that says nothing itself: `judgement`, or that it shapes others where a baseline that counts has a text by
// its name. That counts only where the owner has such a value, too.
[[nodiscard]] MSPDIJudgement MSPDIUnlessBaselineHasOne(const MSPDILeaf& leaf, MSPDIJudgement judgement);

// Read wherever it stands.
MSPDIJudgement shapesOthers(const MSPDILeaf& leaf);

// Of the project.
MSPDIJudgement projectTitle(const MSPDILeaf& leaf);
MSPDIJudgement projectName(const MSPDILeaf& leaf);
MSPDIJudgement projectStart(const MSPDILeaf& leaf);
MSPDIJudgement projectFinish(const MSPDILeaf& leaf);
MSPDIJudgement workingTimeUnit(const MSPDILeaf& leaf);
MSPDIJudgement workFormat(const MSPDILeaf& leaf);
MSPDIJudgement currencyDigits(const MSPDILeaf& leaf);
MSPDIJudgement currencySymbol(const MSPDILeaf& leaf);
MSPDIJudgement currencyPosition(const MSPDILeaf& leaf);
MSPDIJudgement projectCalendar(const MSPDILeaf& leaf);
MSPDIJudgement fieldAlias(const MSPDILeaf& leaf);
MSPDIJudgement fieldName(const MSPDILeaf& leaf);
MSPDIJudgement fieldID(const MSPDILeaf& leaf);
MSPDIJudgement fieldType(const MSPDILeaf& leaf);

// Of calendars.
MSPDIJudgement calendarUID(const MSPDILeaf& leaf);
MSPDIJudgement calendarName(const MSPDILeaf& leaf);
MSPDIJudgement calendarIsBase(const MSPDILeaf& leaf);
MSPDIJudgement calendarBase(const MSPDILeaf& leaf);
MSPDIJudgement weekDayType(const MSPDILeaf& leaf);
MSPDIJudgement weekDayWorking(const MSPDILeaf& leaf);
MSPDIJudgement weekDayTime(const MSPDILeaf& leaf);
MSPDIJudgement weekDayPeriod(const MSPDILeaf& leaf);
MSPDIJudgement emptyWorkingTime(const MSPDILeaf& leaf);
MSPDIJudgement exceptionType(const MSPDILeaf& leaf);
MSPDIJudgement exceptionWorking(const MSPDILeaf& leaf);
MSPDIJudgement exceptionDate(const MSPDILeaf& leaf);
MSPDIJudgement exceptionTime(const MSPDILeaf& leaf);
MSPDIJudgement exceptionRecurrence(const MSPDILeaf& leaf);
MSPDIJudgement ofCalendar(const MSPDILeaf& leaf);

// Of tasks.
MSPDIJudgement taskUID(const MSPDILeaf& leaf);
MSPDIJudgement taskField(const MSPDILeaf& leaf);
MSPDIJudgement taskBaselineValue(const MSPDILeaf& leaf);
MSPDIJudgement baselineNumber(const MSPDILeaf& leaf);
// Of the baseline of a task, a resource or an assignment, and never read.
MSPDIJudgement unreadBaselineValue(const MSPDILeaf& leaf);
MSPDIJudgement taskFieldID(const MSPDILeaf& leaf);
MSPDIJudgement taskFieldValue(const MSPDILeaf& leaf);
MSPDIJudgement linkPredecessor(const MSPDILeaf& leaf);
MSPDIJudgement linkType(const MSPDILeaf& leaf);
MSPDIJudgement linkLag(const MSPDILeaf& leaf);
// Says nothing of its own; it is told together with the lag.
MSPDIJudgement unitOfLag(const MSPDILeaf& leaf);
MSPDIJudgement taskMilestone(const MSPDILeaf& leaf);
MSPDIJudgement actualAmount(const MSPDILeaf& leaf);
MSPDIJudgement taskWBS(const MSPDILeaf& leaf);
MSPDIJudgement elapsedDuration(const MSPDILeaf& leaf);

// Of resources.
MSPDIJudgement resourceUID(const MSPDILeaf& leaf);
MSPDIJudgement resourceText(const MSPDILeaf& leaf);
MSPDIJudgement resourceRate(const MSPDILeaf& leaf);
MSPDIJudgement resourceCostPerUse(const MSPDILeaf& leaf);
MSPDIJudgement resourceType(const MSPDILeaf& leaf);
MSPDIJudgement resourceIsCost(const MSPDILeaf& leaf);
MSPDIJudgement resourceMaxUnits(const MSPDILeaf& leaf);
MSPDIJudgement resourceCalendar(const MSPDILeaf& leaf);
MSPDIJudgement resourceRateFormat(const MSPDILeaf& leaf);
MSPDIJudgement resourceFieldID(const MSPDILeaf& leaf);
MSPDIJudgement resourceFieldValue(const MSPDILeaf& leaf);
MSPDIJudgement ofFurtherRate(const MSPDILeaf& leaf);
MSPDIJudgement scopeOfRate(const MSPDILeaf& leaf);

// Of assignments.
MSPDIJudgement assignmentResource(const MSPDILeaf& leaf);
MSPDIJudgement assignmentUnits(const MSPDILeaf& leaf);
MSPDIJudgement assignmentWork(const MSPDILeaf& leaf);
MSPDIJudgement assignmentCost(const MSPDILeaf& leaf);
MSPDIJudgement timephasedType(const MSPDILeaf& leaf);
MSPDIJudgement timephasedValue(const MSPDILeaf& leaf);
MSPDIJudgement assignmentBaselineValue(const MSPDILeaf& leaf);
