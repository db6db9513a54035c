#include "PlanImport.h"

#include <gtest/gtest.h>

#include <fstream>

#include "StrictXML.h"

namespace fs = std::filesystem;

PlanImport::PlanImport(const std::string& testName, const std::function<void(std::ostream&)>& produce,
                       const Environment& environment)
    // Tests run at the same time, so a folder belongs to one of them.
    : _folder(fs::path(KZMSP_SCRATCH) / "plans" / testing::UnitTest::GetInstance()->current_test_info()->name() /
              testName) {
    fs::remove_all(_folder);
    fs::create_directories(_folder / "run");
    const auto plan = _folder / "run" / "Plan.xml";
    {
        std::ofstream file(plan, std::ios::binary);
        produce(file);
        EXPECT_TRUE(file.good()) << "the plan could not be written";
    }
    _result = runProgram({"--template-path", KZMSP_TEMPLATE, "Plan.xml"}, _folder / "run", environment);
    fs::remove(plan);
}

PlanImport::PlanImport(const std::string& testName, std::string_view plan, const Environment& environment)
    : PlanImport(
          testName, [plan](std::ostream& file) { file << plan; }, environment) {
}

PlanImport::~PlanImport() {
    std::error_code ignored;
    fs::remove_all(_folder, ignored);
}

std::vector<std::string> PlanImport::texts(const std::string& elementName, const std::string& document) const {
    return strictXMLTexts(_folder / "run" / "Plan.kdzx" / document, elementName);
}

std::string PlanImport::complaints() const {
    std::string complaints;
    for (const auto& entry : fs::directory_iterator(_folder / "run" / "Plan.kdzx")) {
        complaints += strictXMLComplaint(entry.path());
    }
    return complaints;
}

std::string planOf(const PlanPieces& pieces) {
    return pieces.declaration +
           "<Project xmlns=\"http://schemas.microsoft.com/project\"><ScheduleFromStart>1</ScheduleFromStart>"
           "<StartDate>2012-01-09T08:00:00</StartDate>"
           "<Calendars><Calendar><UID>1</UID><Name>Standard</Name><IsBaseCalendar>1</IsBaseCalendar>" +
           pieces.calendar + "</Calendar></Calendars>" + pieces.content + "</Project>";
}

std::string taskElement(const std::string& uid, const std::string& children) {
    return "<Task><UID>" + uid + "</UID><OutlineLevel>1</OutlineLevel>" + children + "</Task>";
}
