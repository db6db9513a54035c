#pragma once

#include <filesystem>
#include <functional>
#include <map>
#include <ostream>
#include <string>
#include <string_view>
#include <vector>

#include "ProgramRun.h"

// One import of a made-up plan by the built program, in Europe/Berlin or the environment given, with the delivered
// template. Its folder is taken away at the end.
class PlanImport {
public:
    using Environment = std::map<std::string, std::string>;
    inline static const Environment InBerlin{{"TZ", "Europe/Berlin"}};

    // Writes the plan with `produce`, imports it as "Plan.xml" and removes the plan.
    PlanImport(const std::string& testName, const std::function<void(std::ostream&)>& produce,
               const Environment& environment = InBerlin);
    PlanImport(const std::string& testName, std::string_view plan, const Environment& environment = InBerlin);
    ~PlanImport();
    PlanImport(const PlanImport&) = delete;
    PlanImport& operator=(const PlanImport&) = delete;

    [[nodiscard]] int status() const { return _result.status; }
    [[nodiscard]] const std::string& log() const { return _result.standardError; }
    [[nodiscard]] bool logHolds(std::string_view text) const { return log().find(text) != std::string::npos; }
    [[nodiscard]] const ProgramResult& result() const { return _result; }
    // The texts of all elements of that name in a document of the bundle, as a strict parser reads them.
    [[nodiscard]] std::vector<std::string> texts(const std::string& elementName,
                                                 const std::string& document = "Actual.xml") const;
    // What a strict parser has to say against the documents of the bundle; empty when there is nothing.
    [[nodiscard]] std::string complaints() const;

private:
    std::filesystem::path _folder;
    ProgramResult _result;
};

// A plan with these pieces: children of `Project`, children of its calendar, and its first bytes.
struct PlanPieces {
    std::string content;
    std::string calendar;
    std::string declaration;
};
[[nodiscard]] std::string planOf(const PlanPieces& pieces);
// A task of outline level 1 with these children beside `UID`.
[[nodiscard]] std::string taskElement(const std::string& uid, const std::string& children = "");
