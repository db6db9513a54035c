"""Plans: outlines scheduled over their calendars and saved the way Microsoft Project saves XML."""

import os
from datetime import date, datetime, time, timedelta
from xml.sax.saxutils import escape

OFFICE_HOURS = [("08:00:00", "12:00:00"), ("13:00:00", "17:00:00")]
FF, FS, SF, SS = range(4)  # link types


class Calendar:
    """A weekly pattern (1 = Sunday ... 7 = Saturday) with exceptions: (name, first day, last day, hours)."""

    def __init__(self, uid, name, week, exceptions=()):
        self.uid, self.name, self.week, self.exceptions = uid, name, week, list(exceptions)

    def hours(self, day):
        for _, first, last, hours in self.exceptions:
            if first <= day <= last:
                return hours
        return self.week.get(day.isoweekday() % 7 + 1, [])

    def spans(self, day):
        return [(datetime.combine(day, time.fromisoformat(a)), datetime.combine(day, time.fromisoformat(b)))
                for a, b in self.hours(day)]

    def forward(self, start, minutes):
        """The first and last instant of so many working minutes from start on."""
        day, begin, left = start.date(), None, timedelta(minutes=minutes)
        while True:
            for a, b in self.spans(day):
                a = max(a, start)
                if a >= b:
                    continue
                begin = begin or a
                if left <= b - a:
                    return begin, a + left
                left -= b - a
            day += timedelta(days=1)

    def backward(self, finish, minutes):
        """The first and last instant of so many working minutes up to finish."""
        day, end, left = finish.date(), None, timedelta(minutes=minutes)
        while True:
            for a, b in reversed(self.spans(day)):
                b = min(b, finish)
                if a >= b:
                    continue
                end = end or b
                if left <= b - a:
                    return b - left, end
                left -= b - a
            day -= timedelta(days=1)

    def shift(self, instant, minutes):
        """An instant moved by a lag (a lead when negative) in working time."""
        if minutes == 0:
            return instant
        return self.forward(instant, minutes)[1] if minutes > 0 else self.backward(instant, -minutes)[0]

    def minutes_between(self, start, finish):
        total, day = timedelta(), start.date()
        while day <= finish.date():
            for a, b in self.spans(day):
                total += max(min(b, finish) - max(a, start), timedelta())
            day += timedelta(days=1)
        return int(total.total_seconds() // 60)


class Resource:
    def __init__(self, uid, name, kind="work", units=1.0, rate=0, per_use=0, calendar=None, notes=None, email=None,
                 label=None, fields=()):
        self.uid, self.name, self.kind, self.units, self.rate, self.per_use = uid, name, kind, units, rate, per_use
        self.calendar, self.notes, self.email, self.label = calendar, notes, email, label
        self.fields = dict(fields)


class Task:
    """One line of an outline. `links` are (key, type, lag in minutes), `uses` (resource name, units), `fields` custom
    values by field id. `stretches` tell for a resource when the work on an interrupted task is done: (start, finish,
    hours); its work is `scale` times as much as they hold."""

    def __init__(self, level, key, name, days=None, links=(), uses=(), constraint=0, on=None, done=0, notes=None,
                 priority=500, cost=0, calendar=None, kind=0, leveled=False, fields=(), stretches=None, scale=1):
        self.level, self.key, self.name, self.links, self.uses = level, key, name, list(links), list(uses)
        self.minutes = None if days is None else int(days * 480)
        self.constraint, self.on, self.done, self.notes, self.priority = constraint, on, done, notes, priority
        self.cost, self.calendar, self.kind, self.leveled = cost, calendar, kind, leveled
        self.fields, self.stretches, self.scale = dict(fields), stretches or {}, scale
        self.children, self.successors, self.start, self.finish = [], [], None, None


class Plan:
    """`fields` define custom fields: (id, name, alias, type), the last two may be None. `baselines` tell by number how
    many days earlier the tasks were planned then, and the keys of those that were not planned yet."""

    def __init__(self, file, title, version, calendars, resources, tasks, start=None, finish=None, fields=(),
                 baselines=None):
        self.file, self.title, self.version, self.calendars = file, title, version, calendars
        self.resources = {resource.name: resource for resource in resources}
        self.tasks, self.start, self.finish, self.fields_defined = tasks, start, finish, fields
        self.baselines = baselines or {}
        self.standard = calendars[0]

    # Scheduling

    def schedule(self):
        by_key = {task.key: task for task in self.tasks if task.key}
        parents = []
        for number, task in enumerate(self.tasks, start=1):
            task.uid = number
            del parents[task.level - 1:]
            if parents:
                parents[-1].children.append(task)
            parents.append(task)
            task.links = [(by_key[key], kind, lag) for key, kind, lag in task.links]
            for predecessor, _, lag in task.links:
                predecessor.successors.append((task, lag))
        leaves = [task for task in self.tasks if not task.children]
        for task in leaves if self.start else reversed(leaves):
            self.place(task) if self.start else self.place_backward(task)
        for task in reversed(self.tasks):
            if task.children:
                task.start = min(child.start for child in task.children)
                task.finish = max(child.finish for child in task.children)
                task.minutes = self.standard.minutes_between(task.start, task.finish)
        self.start = self.start or min(task.start for task in self.tasks)
        self.finish_date = max(task.finish for task in self.tasks)

    def place(self, task):
        if task.stretches:
            spans = [span for stretches in task.stretches.values() for span in stretches]
            task.start, task.finish = min(span[0] for span in spans), max(span[1] for span in spans)
            return
        calendar = task.calendar or self.standard
        start, finish = self.start, None
        for predecessor, kind, lag in task.links:
            instant = self.standard.shift(predecessor.finish if kind in (FF, FS) else predecessor.start, lag)
            if kind in (FS, SS):
                start = max(start, instant)
            else:
                finish = max(finish or instant, instant)
        if task.constraint in (2, 4):
            start = task.on if task.constraint == 2 else max(start, task.on)
        if task.constraint in (3, 6):
            finish = task.on if task.constraint == 3 else max(finish or task.on, task.on)
        if task.minutes == 0:
            task.start = task.finish = finish or start
            return
        task.start, task.finish = calendar.forward(start, task.minutes)
        if finish and (task.constraint == 3 or finish > task.finish):
            task.start, task.finish = calendar.backward(finish, task.minutes)

    def place_backward(self, task):
        finish = self.finish
        for successor, lag in task.successors:
            finish = min(finish, self.standard.shift(successor.start, -lag))
        if task.constraint == 7:
            finish = min(finish, task.on)
        if task.minutes == 0:
            task.start = task.finish = finish
        else:
            task.start, task.finish = (task.calendar or self.standard).backward(finish, task.minutes)

    # Saving

    def save(self, folder):
        self.schedule()
        self.lines, self.depth = [], 0
        self.raw('<?xml version="1.0" encoding="UTF-8" standalone="yes"?>')
        self.raw('<Project xmlns="http://schemas.microsoft.com/project">')
        self.depth = 1
        self.write_settings()
        self.group("Calendars", self.calendars + self.resource_calendars(), self.write_calendar)
        self.group("Tasks", [None] + self.tasks, self.write_task)
        self.group("Resources", [None] + list(self.resources.values()), self.write_resource)
        uses = [(task, self.resources[name], units) for task in self.tasks for name, units in task.uses]
        self.group("Assignments", list(enumerate(uses, start=1)), self.write_assignment)
        self.depth = 0
        self.raw("</Project>")
        with open(os.path.join(folder, self.file), "w", encoding="utf-8", newline="\n") as file:
            file.write("\n".join(self.lines) + "\n")

    def raw(self, line):
        self.lines.append("\t" * self.depth + line)

    def field(self, name, value):
        self.raw(f"<{name}>{escape(str(value))}</{name}>")

    def fields(self, **values):
        for name, value in values.items():
            if value is not None:
                self.field(name, value)

    def group(self, name, items, write):
        self.raw(f"<{name}>")
        self.depth += 1
        for item in items:
            write(item)
        self.depth -= 1
        self.raw(f"</{name}>")

    def element(self, name, write):
        self.group(name, [None], lambda _: write())

    def write_settings(self):
        from_start = self.finish is None
        if self.version:
            self.field("SaveVersion", self.version)
        self.fields(Name=self.file, Title=self.title, Author="A. Planner", CreationDate="2024-01-08T09:00:00",
                    LastSaved="2024-04-26T16:30:00", ScheduleFromStart=int(from_start), StartDate=iso(self.start),
                    FinishDate=iso(self.finish or self.finish_date), FYStartDate=1, CriticalSlackLimit=0,
                    CurrencyDigits=2, CurrencySymbol="€", CurrencyCode="EUR" if self.version >= 12 else None,
                    CurrencySymbolPosition=3, CalendarUID=1, DefaultStartTime="08:00:00",
                    DefaultFinishTime="17:00:00", MinutesPerDay=480, MinutesPerWeek=2400, DaysPerMonth=20,
                    DefaultTaskType=0, DefaultFixedCostAccrual=3, DefaultStandardRate=0, DefaultOvertimeRate=0,
                    DurationFormat=7, WorkFormat=2, EditableActualCosts=0, HonorConstraints=0,
                    InsertedProjectsLikeSummary=1, MultipleCriticalPaths=0, NewTasksEffortDriven=0,
                    NewTasksEstimated=1, SplitsInProgressTasks=1, SpreadActualCost=0, SpreadPercentComplete=0,
                    TaskUpdatesResource=1, FiscalYearStart=0, WeekStartDay=1, MoveCompletedEndsBack=0,
                    MoveRemainingStartsBack=0, MoveRemainingStartsForward=0, MoveCompletedEndsForward=0,
                    BaselineForEarnedValue=0, AutoAddNewResourcesAndTasks=1, CurrentDate="2024-04-26T08:00:00",
                    MicrosoftProjectServerURL=1, Autolink=0, NewTaskStartDate=0, DefaultTaskEVMethod=0,
                    ProjectExternallyEdited=0, ExtendedCreationDate="1984-01-01T00:00:00", ActualsInSync=1,
                    RemoveFileProperties=0, AdminProject=0)
        self.raw("<OutlineCodes/>")
        self.raw("<WBSMasks/>")
        if self.fields_defined:
            self.group("ExtendedAttributes", self.fields_defined, self.write_field_definition)
        else:
            self.raw("<ExtendedAttributes/>")

    def write_field_definition(self, definition):
        field_id, name, alias, kind = definition
        self.element("ExtendedAttribute", lambda: self.fields(
            FieldID=field_id, FieldName=name, CFType=kind, Alias=alias))

    def write_field_values(self, values):
        for field_id, value in values.items():
            self.element("ExtendedAttribute", lambda: self.fields(
                FieldID=field_id, Value=value, DurationFormat=7 if str(value).startswith("PT") else None))

    def baselines_of(self, task):
        """Number, start and finish of each baseline that holds the task."""
        for number, (days, missing) in self.baselines.items():
            if task.key not in missing:
                start = self.standard.shift(task.start, -days * 480)
                yield number, start, self.standard.shift(start, task.minutes)

    def write_task_baselines(self, task, work, cost):
        for number, start, finish in self.baselines_of(task):
            self.element("Baseline", lambda: self.fields(
                Number=number, Interim=0, Start=iso(start), Finish=iso(finish), Duration=duration(task.minutes),
                DurationFormat=7, EstimatedDuration=0, Work=duration(work), Cost=cost, BCWS="0.00", BCWP="0.00"))

    def write_assignment_baselines(self, task, work, cost):
        for number, start, finish in self.baselines_of(task):
            self.element("Baseline", lambda: self.fields(
                Number=number, Start=iso(start), Finish=iso(finish), Work=duration(work), Cost=cost, BCWS="0.00",
                BCWP="0.00"))

    def write_timephased(self, uid, spans):
        for start, finish, hours in spans:
            self.element("TimephasedData", lambda: self.fields(
                Type=1, UID=uid, Start=iso(start), Finish=iso(finish), Unit=2, Value=duration(hours * 60)))

    def resource_calendars(self):
        calendars = []
        for number, resource in enumerate(self.resources.values()):
            resource.calendar_uid = -1
            if resource.kind == "work":
                own = Calendar(10 + number, resource.name, {}, getattr(resource, "absences", []))
                own.base = resource.calendar or self.standard
                resource.calendar_uid = own.uid
                calendars.append(own)
        return calendars

    def write_calendar(self, calendar):
        self.element("Calendar", lambda: self.write_calendar_fields(calendar))

    def write_calendar_fields(self, calendar):
        base = getattr(calendar, "base", None)
        self.fields(UID=calendar.uid, Name=calendar.name, IsBaseCalendar=int(base is None),
                    BaseCalendarUID=base.uid if base else -1)
        if base is None or calendar.exceptions:
            self.element("WeekDays", lambda: self.write_week(calendar, base is None))
        if calendar.exceptions and self.version >= 12:
            self.group("Exceptions", calendar.exceptions, self.write_exception)

    def write_week(self, calendar, with_pattern):
        for day in range(1, 8) if with_pattern else ():
            self.element("WeekDay", lambda: (self.fields(DayType=day, DayWorking=int(day in calendar.week)),
                                             self.write_hours(calendar.week.get(day))))
        for _, first, last, hours in calendar.exceptions:
            self.element("WeekDay", lambda: (self.fields(DayType=0, DayWorking=int(bool(hours))),
                                             self.write_period(first, last), self.write_hours(hours)))

    def write_period(self, first, last):
        self.element("TimePeriod", lambda: self.fields(FromDate=f"{first}T00:00:00", ToDate=f"{last}T23:59:00"))

    def write_hours(self, hours):
        if hours:
            self.group("WorkingTimes", hours, lambda span: self.element(
                "WorkingTime", lambda: self.fields(FromTime=span[0], ToTime=span[1])))

    def write_exception(self, exception):
        name, first, last, hours = exception
        self.element("Exception", lambda: (
            self.fields(EnteredByOccurrences=0), self.write_period(first, last),
            self.fields(Occurrences=(last - first).days + 1, Name=name, Type=1, DayWorking=int(bool(hours))),
            self.write_hours(hours)))

    def write_task(self, task):
        self.element("Task", lambda: self.write_task_fields(task or self.root_task()))

    def root_task(self):
        root = Task(0, None, self.title)
        root.uid, root.children = 0, [task for task in self.tasks if task.level == 1]
        root.start = min(task.start for task in root.children)
        root.finish = max(task.finish for task in root.children)
        root.minutes = self.standard.minutes_between(root.start, root.finish)
        self.numbers = [0]
        return root

    def outline_number(self, task):
        if task.level == 0:
            return "0"
        self.numbers = self.numbers[:task.level] + [0] * (task.level - len(self.numbers))
        self.numbers[task.level - 1] += 1
        return ".".join(str(number) for number in self.numbers[:task.level])

    def work_minutes(self, task):
        if task.children:
            return sum(self.work_minutes(child) for child in task.children)
        return sum(self.use_minutes(task, self.resources[name], units) for name, units in task.uses)

    def use_minutes(self, task, resource, units):
        if resource.kind != "work":
            return 0
        if resource.name in task.stretches:
            return sum(hours for _, _, hours in task.stretches[resource.name]) * 60 * task.scale
        return task.minutes * units

    def total_cost(self, task):
        if task.children:
            return task.cost * 100 + sum(self.total_cost(child) for child in task.children)
        return task.cost * 100 + sum(self.use_cost(task, self.resources[name], units) for name, units in task.uses)

    def use_cost(self, task, resource, units):
        """In hundredths of the currency."""
        amount = self.use_minutes(task, resource, units) / 60 if resource.kind == "work" else units
        return round((amount * resource.rate + resource.per_use) * 100)

    def done_minutes(self, task, minutes_of):
        if task.children:
            return sum(self.done_minutes(child, minutes_of) for child in task.children)
        return minutes_of(task) * task.done / 100

    def percent(self, task, minutes_of):
        leaves = minutes_of(task) if not task.children else sum_leaves(task, minutes_of)
        return round(100 * self.done_minutes(task, minutes_of) / leaves) if leaves else task.done

    def write_task_fields(self, task):
        number, work = self.outline_number(task), self.work_minutes(task)
        summary, cost = bool(task.children), self.total_cost(task)
        done = self.percent(task, lambda leaf: leaf.minutes)
        work_done = self.done_minutes(task, self.work_minutes)
        has_date = task.constraint >= 2
        self.fields(UID=task.uid, ID=task.uid, Name=task.name)
        if self.version >= 14:
            self.fields(Active=1, Manual=0)
        self.fields(Type=1 if summary else task.kind, IsNull=0, CreateDate="2024-01-08T09:00:00", WBS=number,
                    OutlineNumber=number, OutlineLevel=task.level, Priority=task.priority, Start=iso(task.start),
                    Finish=iso(task.finish), Duration=duration(task.minutes), DurationFormat=7, Work=duration(work),
                    ResumeValid=0, EffortDriven=0, Recurring=0, OverAllocated=0, Estimated=0,
                    Milestone=int(task.minutes == 0), Summary=int(summary), Critical=0, IsSubproject=0,
                    IsSubprojectReadOnly=0, ExternalTask=0, EarlyStart=iso(task.start), EarlyFinish=iso(task.finish),
                    LateStart=iso(task.start), LateFinish=iso(task.finish), StartVariance=0, FinishVariance=0,
                    WorkVariance=f"{work * 1000:.2f}", FreeSlack=0, TotalSlack=0, FixedCost=task.cost * 100,
                    FixedCostAccrual=3, PercentComplete=done, PercentWorkComplete=round(100 * work_done / work) if work
                    else done, Cost=cost, OvertimeCost=0, OvertimeWork="PT0H0M0S",
                    ActualStart=iso(task.start) if done else None, ActualFinish=iso(task.finish) if done == 100 else
                    None, ActualDuration=duration(task.minutes * done / 100), ActualCost=round(cost * done / 100),
                    ActualOvertimeCost=0, ActualWork=duration(work_done), ActualOvertimeWork="PT0H0M0S",
                    RegularWork=duration(work), RemainingDuration=duration(task.minutes * (100 - done) / 100),
                    RemainingCost=cost - round(cost * done / 100), RemainingWork=duration(work - work_done),
                    RemainingOvertimeCost=0, RemainingOvertimeWork="PT0H0M0S", ACWP="0.00", CV="0.00",
                    ConstraintType=task.constraint, CalendarUID=task.calendar.uid if task.calendar else -1,
                    ConstraintDate=iso(task.on) if has_date else None, LevelAssignments=1, LevelingCanSplit=1,
                    LevelingDelay=0, LevelingDelayFormat=8,
                    PreLeveledStart=iso(task.start) if task.leveled else None,
                    PreLeveledFinish=iso(task.finish) if task.leveled else None,
                    IgnoreResourceCalendar=int(task.calendar is not None), Notes=task.notes, HideBar=0, Rollup=0,
                    BCWS="0.00", BCWP="0.00", PhysicalPercentComplete=0, EarnedValueMethod=0)
        for predecessor, kind, lag in task.links:
            self.element("PredecessorLink", lambda: self.fields(
                PredecessorUID=predecessor.uid, Type=kind, CrossProject=0, LinkLag=lag * 10, LagFormat=7))
        self.fields(ActualWorkProtected="PT0H0M0S", ActualOvertimeWorkProtected="PT0H0M0S")
        self.write_field_values(task.fields)
        self.write_task_baselines(task, work, cost)

    def write_resource(self, resource):
        self.element("Resource", lambda: self.write_resource_fields(resource or Resource(0, None)))

    def write_resource_fields(self, resource):
        used = [(task, units) for task in self.tasks for name, units in task.uses if name == resource.name]
        work = sum(self.use_minutes(task, resource, units) for task, units in used)
        self.fields(UID=resource.uid, ID=resource.uid, Name=resource.name, Type=0 if resource.kind == "material" else 1,
                    IsNull=0, Initials=resource.name[0] if resource.name else None,
                    MaterialLabel=resource.label, WorkGroup=0, EmailAddress=resource.email,
                    MaxUnits=f"{resource.units:.2f}", PeakUnits=f"{max([u for _, u in used], default=0):.2f}",
                    OverAllocated=0, CanLevel=int(resource.kind == "work"), AccrueAt=3, Work=duration(work),
                    RegularWork=duration(work), OvertimeWork="PT0H0M0S", ActualWork="PT0H0M0S",
                    RemainingWork=duration(work), ActualOvertimeWork="PT0H0M0S", RemainingOvertimeWork="PT0H0M0S",
                    PercentWorkComplete=0, StandardRate=f"{resource.rate:g}", StandardRateFormat=2, Cost=0,
                    OvertimeRate=0, OvertimeRateFormat=2, OvertimeCost=0, CostPerUse=resource.per_use * 100,
                    ActualCost=0, ActualOvertimeCost=0, RemainingCost=0, RemainingOvertimeCost=0, WorkVariance="0.00",
                    CostVariance=0, SV="0.00", CV="0.00", ACWP="0.00",
                    CalendarUID=getattr(resource, "calendar_uid", 2), Notes=resource.notes, BCWS="0.00", BCWP="0.00",
                    IsGeneric=0, IsInactive=0, IsEnterprise=0, BookingType=0, ActualWorkProtected="PT0H0M0S",
                    ActualOvertimeWorkProtected="PT0H0M0S", CreationDate="2024-01-08T09:00:00")
        if self.version >= 12:
            self.fields(IsCostResource=int(resource.kind == "cost"), IsBudget=0)
        self.write_field_values(resource.fields)
        for number in self.baselines if resource.kind == "work" else ():
            self.element("Baseline", lambda: self.fields(Number=number, Work=duration(work), Cost=0, BCWS="0.00",
                                                         BCWP="0.00"))

    def write_assignment(self, item):
        self.element("Assignment", lambda: self.write_assignment_fields(item[0], *item[1]))

    def write_assignment_fields(self, uid, task, resource, units):
        work = self.use_minutes(task, resource, units)
        cost = self.use_cost(task, resource, units)
        self.fields(UID=uid, TaskUID=task.uid, ResourceUID=resource.uid, PercentWorkComplete=task.done, ActualCost=0,
                    ActualFinish=iso(task.finish) if task.done == 100 else None, ActualOvertimeCost=0,
                    ActualOvertimeWork="PT0H0M0S", ActualStart=iso(task.start) if task.done else None,
                    ActualWork=duration(work * task.done / 100), ACWP="0.00", Confirmed=0, Cost=cost, CostRateTable=0,
                    CostVariance=0, CV="0.00", Delay=0, Finish=iso(task.finish), FinishVariance=0, WorkVariance="0.00",
                    HasFixedRateUnits=1, FixedMaterial=int(resource.kind == "material"), LevelingDelay=0,
                    LevelingDelayFormat=7, LinkedFields=0, Milestone=int(task.minutes == 0), Overallocated=0,
                    OvertimeCost=0, OvertimeWork="PT0H0M0S", RegularWork=duration(work), RemainingCost=cost,
                    RemainingOvertimeCost=0, RemainingOvertimeWork="PT0H0M0S",
                    RemainingWork=duration(work * (100 - task.done) / 100), ResponsePending=0, Start=iso(task.start),
                    StartVariance=0, Units=f"{units:g}", UpdateNeeded=0, VAC="0.00", Work=duration(work),
                    WorkContour=0, BCWS="0.00", BCWP="0.00", BookingType=0, ActualWorkProtected="PT0H0M0S",
                    ActualOvertimeWorkProtected="PT0H0M0S", CreationDate="2024-01-08T09:00:00")
        self.write_assignment_baselines(task, work, cost)
        self.write_timephased(uid, task.stretches.get(resource.name, ()))


def sum_leaves(task, minutes_of):
    return sum(sum_leaves(child, minutes_of) for child in task.children) if task.children else minutes_of(task)


def iso(instant):
    return instant.strftime("%Y-%m-%dT%H:%M:%S")


def duration(minutes):
    minutes = round(minutes)
    return f"PT{minutes // 60}H{minutes % 60}M0S"
