#pragma once

#include <gtest/gtest.h>

#include <map>
#include <string>
#include <string_view>

using BundleFiles = std::map<std::string, std::string>;

// A small document made by hand in which everything is sound: an outline with a split task, a link, an assignment, a
// custom field, time off, and a baseline. Tests break it; what they replace stands in it once.
inline BundleFiles soundBundle() {
    constexpr std::string_view contents = R"(<?xml version="1.0" encoding="UTF-8"?>
<table-of-contents xmlns="urn:kadenza:document:2" version="2">
    <window>
        <editing-scenario>aActual0001</editing-scenario>
        <comparison-scenario>aBaseline01</comparison-scenario>
    </window>
    <project>
        <title>House</title>
        <next-task-id>7</next-task-id>
        <next-resource-id>3</next-resource-id>
        <scenario id="aActual0001" name="Actual" filename="Actual.xml"/>
        <scenario id="aBaseline01" name="Baseline" filename="Baseline.xml"/>
        <auto-level>no</auto-level>
        <currency-format>$1,234.56</currency-format>
        <duration-format hours-per-day="8" hours-per-week="40" hours-per-month="160" hours-per-year="1920"/>
        <effort-format hours-per-day="8" hours-per-week="40" hours-per-month="160" hours-per-year="1921"/>
        <task-user-data-keys>
            <user-data>
                <key>Region</key>
                <null/>
            </user-data>
        </task-user-data-keys>
    </project>
</table-of-contents>
)";
    constexpr std::string_view actual = R"(<?xml version="1.0" encoding="UTF-8"?>
<scenario xmlns="urn:kadenza:document:2" id="aActual0001">
    <!--  2026-11-21 20:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->
    <!--  Imported MS Project 2010: 'House'  -->
    <start-date>2026-05-04T08:00:00+02:00</start-date>
    <granularity>hours</granularity>
    <!--  Resources  -->
    <top-resource idref="r-1"/>
    <resource id="r-1">
        <type>Group</type>
        <!--  Project Schedule  -->
        <schedule>
            <schedule-day day-of-week="monday">
                <time-span start-time="28800" end-time="43200"/>
                <time-span start-time="46800" end-time="61200"/>
            </schedule-day>
            <schedule-day day-of-week="tuesday"/>
            <calendar name="Time Off" editable="yes" overtime="no">
                <event start="2026-12-24T00:00:00+01:00" end="2026-12-26T23:59:59+01:00"/>
            </calendar>
        </schedule>
        <child-resource idref="r1"/>
        <child-resource idref="r2"/>
    </resource>
    <resource id="r1">
        <name>Anna</name>
        <type>Staff</type>
        <cost-per-use>0.00</cost-per-use>
        <cost-per-hour>50</cost-per-hour>
        <units-available>1.000000</units-available>
    </resource>
    <resource id="r2">
        <name>Wood</name>
        <type>Material</type>
        <units-available>5.000000</units-available>
    </resource>
    <!--  Tasks  -->
    <top-task idref="t-1"/>
    <task id="t-1">
        <type>group</type>
        <start-date>2026-05-04T08:00:00+02:00</start-date>
        <end-date>2026-05-29T17:00:00+02:00</end-date>
        <child-task idref="t1"/>
        <child-task idref="t4"/>
    </task>
    <task id="t1">
        <title>Building</title>
        <type>group</type>
        <effort>144000</effort>
        <child-task idref="t2"/>
        <child-task idref="t3"/>
    </task>
    <task id="t2">
        <title>Dig</title>
        <type>task</type>
        <schedule-type>asap</schedule-type>
        <priority>500</priority>
        <effort>57600</effort>
        <completion-percentage>0.50</completion-percentage>
        <effort-done>28800</effort-done>
        <recalculate>duration</recalculate>
        <static-cost>0.000000</static-cost>
        <start-date>2026-05-04T08:00:00+02:00</start-date>
        <end-date>2026-05-05T17:00:00+02:00</end-date>
        <note>
            <text>
                <p>
                    <run>
                        <lit>Mind the pipes</lit>
                    </run>
                </p>
            </text>
        </note>
        <user-data>
            <key>Region</key>
            <string>North</string>
        </user-data>
        <assignment idref="r1"/>
    </task>
    <task id="t3">
        <title>Paint</title>
        <split/>
        <effort>86400.00</effort>
        <start-date>2026-05-06T08:00:00+02:00</start-date>
        <end-date>2026-05-12T17:00:00+02:00</end-date>
        <prerequisite-task idref="t2" kind="FS"/>
        <child-task idref="t5"/>
        <child-task idref="t6"/>
        <assignment idref="r2"/>
    </task>
    <task id="t4">
        <title>Done</title>
        <type>milestone</type>
        <effort>0</effort>
        <leveled-start>2026-05-29T17:00:00+02:00</leveled-start>
        <start-date>2026-05-29T17:00:00+02:00</start-date>
        <end-date>2026-05-29T17:00:00+02:00</end-date>
        <prerequisite-task idref="t3" kind="SS"/>
    </task>
    <task id="t5">
        <title>Paint</title>
        <effort>28800.00</effort>
        <start-constraint-date>2026-05-06T08:00:00+02:00</start-constraint-date>
        <start-date>2026-05-06T08:00:00+02:00</start-date>
        <end-date>2026-05-06T17:00:00+02:00</end-date>
        <duration>28800.00</duration>
    </task>
    <task id="t6">
        <title>Paint</title>
        <effort>57600.00</effort>
        <start-date>2026-05-11T08:00:00+02:00</start-date>
        <end-date>2026-05-12T17:00:00+02:00</end-date>
        <duration>57600.00</duration>
    </task>
    <!--  Critical Path  -->
    <critical-path root="-1" enabled="no"/>
</scenario>
)";
    constexpr std::string_view baseline = R"(<?xml version="1.0" encoding="UTF-8"?>
<scenario xmlns="urn:kadenza:document:2" id="aBaseline01" fixed-end="yes">
    <!--  2026-11-21 20:00:00 +0000: Kadenza 2.x MSPDI Importer.  -->
    <!--  Imported MS Project 2010: 'House'  -->
    <end-date>2026-05-29T17:00:00Z</end-date>
    <top-resource idref="r-1"/>
    <resource id="r-1">
        <type>Group</type>
    </resource>
    <top-task idref="t-1"/>
    <task id="t-1">
        <type>group</type>
    </task>
</scenario>
)";
    return {{"__TOC.xml", std::string(contents)},
            {"Actual.xml", std::string(actual)},
            {"Baseline.xml", std::string(baseline)}};
}

// The text with another one in the place of a piece that stands in it exactly once.
inline std::string withReplaced(std::string text, std::string_view piece, std::string_view other) {
    const auto found = text.find(piece);
    const bool isOnce = found != std::string::npos && text.find(piece, found + 1) == std::string::npos;
    EXPECT_TRUE(isOnce) << piece;
    return isOnce ? text.replace(found, piece.size(), other) : text;
}

// The document with a piece of one of its files replaced.
inline BundleFiles brokenBundle(const std::string& file, std::string_view piece, std::string_view other) {
    auto files = soundBundle();
    files[file] = withReplaced(files[file], piece, other);
    return files;
}
