#include "MSPDIElementTable.h"

#include <gtest/gtest.h>

#include <fstream>
#include <functional>
#include <sstream>

#include "MSPCXMLSelection.h"
#include "MSPDIKinds.h"
#include "MSPIElementsRead.h"

namespace {

void visitRead(const MSPCXMLSelection& selection, const std::string& path,
               const std::function<void(const std::string&)>& visit) {
    if (selection.isWhole()) {
        visit(path);
        return;
    }
    for (const auto& name : selection.childNames()) {
        visitRead(*selection.child(name), path.empty() ? name : path + "/" + name, visit);
    }
}

const MSPDIElement* lineFor(const std::string& path) {
    const auto slash = path.rfind('/');
    return slash == std::string::npos ? MSPDIElementAt("", path)
                                      : MSPDIElementAt(path.substr(0, slash), path.substr(slash + 1));
}

}  // namespace

TEST(MSPDIElementTableTest, knowsEverythingThatIsRead) {
    std::size_t count = 0;
    visitRead(*MSPIElementsRead().child("Project"), "", [&count](const std::string& path) {
        ++count;
        // Baselines keep what bears the name of something else that is read.
        const bool isOfBaseline = path.find("/Baseline/") != std::string::npos;
        EXPECT_TRUE(isOfBaseline || lineFor(path) != nullptr) << path;
    });
    EXPECT_GT(count, 60U);
}

TEST(MSPDIElementTableTest, letsNothingArriveThatIsNotRead) {
    for (const auto& element : MSPDIElements()) {
        if (!MSPDIMayArrive(element)) {
            continue;
        }
        std::istringstream names{std::string(element.names)};
        for (std::string name; names >> name;) {
            const auto* selection = MSPIElementsRead().child("Project");
            std::istringstream steps{std::string(element.parent)};
            for (std::string step; std::getline(steps, step, '/') && selection != nullptr;) {
                selection = selection->isWhole() ? selection : selection->child(step);
            }
            // Baselines keep what bears the name of something that is read.
            const bool isOfBaseline = element.parent.find("/Baseline") != std::string_view::npos;
            ASSERT_NE(selection, nullptr) << element.parent;
            EXPECT_TRUE(isOfBaseline || selection->child(name) != nullptr) << element.parent << '/' << name;
        }
    }
}

TEST(MSPDIElementTableTest, namesKindsThatThereAre) {
    for (const auto& element : MSPDIElements()) {
        if (!element.kind.empty()) {
            EXPECT_LT(MSPDIKindIndex(element.kind), MSPDIKinds().size()) << element.kind;
        }
    }
}

TEST(MSPDIElementTableTest, knowsAllElementsOfTheSharedPlans) {
    std::ifstream list(std::string(KZMSP_SOURCE) + "/../shared/elements.tsv");
    if (!list) {
        GTEST_SKIP() << "the list of elements is not there";
    }
    std::string line;
    std::getline(list, line);
    while (std::getline(list, line)) {
        std::istringstream fields(line);
        std::string path;
        std::string plans;
        std::string all;
        std::string leaves;
        std::getline(fields, path, '\t');
        std::getline(fields, plans, '\t');
        std::getline(fields, all, '\t');
        std::getline(fields, leaves, '\t');
        if (std::stoi(leaves) > 0) {
            EXPECT_NE(lineFor(path.substr(path.find('/') + 1)), nullptr) << path;
        }
    }
}
