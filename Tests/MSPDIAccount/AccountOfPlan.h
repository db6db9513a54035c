#pragma once

#include <map>
#include <string>

#include "MSPDIAccountOfPlan.h"
#include "ServicesInMemory.h"

// A plan with this content beside a start, a calendar named Standard (number 1) and a save version.
inline std::string planWith(const std::string& content, const std::string& settings) {
    return R"(<Project xmlns="http://schemas.microsoft.com/project">)" + settings +
           "<StartDate>2012-01-09T08:00:00</StartDate><Calendars><Calendar><UID>1</UID><Name>Standard</Name>"
           "<IsBaseCalendar>1</IsBaseCalendar></Calendar></Calendars>" +
           content + "</Project>";
}

// What becomes of it.
struct AccountOfPlan {
    explicit AccountOfPlan(const std::string& content, const std::string& settings = "<SaveVersion>14</SaveVersion>") {
        ServicesInMemory world;
        world.machine.addFile("/plans/Plan.xml", planWith(content, settings));
        MSPDIAccountOptions options;
        options.mostPlaces = 100;
        MSPDIFatesByPath byPath;
        options.fates = &byPath;
        account = MSPDIAccountOfPlan("/plans/Plan.xml", world.services, options);
        byPath.forEach([this](const std::string& path, MSPDIFate fate) {
            fates[path.substr(std::string("/Project/").size())] = MSPDIFateNames[MSPDIFateIndex(fate)];
        });
    }

    // The fate of the leaf at a path below the project: "Tasks[1]/Task[1]/Name[1]".
    [[nodiscard]] std::string at(const std::string& path) const {
        const auto found = fates.find(path);
        return found == fates.end() ? "(no such leaf)" : std::string(found->second);
    }
    // How often a kind is told.
    [[nodiscard]] std::size_t count(std::string_view kind) const {
        for (const auto& loss : account.losses) {
            if (loss.kind == kind) {
                return loss.count;
            }
        }
        return 0;
    }
    [[nodiscard]] const MSPDILoss& loss(std::string_view kind) const {
        for (const auto& loss : account.losses) {
            if (loss.kind == kind) {
                return loss;
            }
        }
        static const MSPDILoss none;
        ADD_FAILURE() << "no loss of kind " << kind;
        return none;
    }

    MSPDIAccount account;
    std::map<std::string, std::string_view> fates;
};

// A task of outline level 1 with these children beside its number, and the list of tasks.
inline std::string taskOf(int uid, const std::string& more = "") {
    return "<Task><UID>" + std::to_string(uid) + "</UID><OutlineLevel>1</OutlineLevel>" + more + "</Task>";
}
inline std::string tasksOf(const std::string& content) {
    return "<Tasks>" + content + "</Tasks>";
}
