// The documents name the steps that the program has.
#include <gtest/gtest.h>

#include <cctype>
#include <fstream>
#include <iterator>
#include <set>
#include <sstream>
#include <string>

#include "MSPDIMend.h"

namespace {

std::string sourceFile(const std::string& path) {
    std::ifstream file(std::string(KZMSP_SOURCE) + "/" + path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), {}};
}

void replaceAll(std::string& text, const std::string& piece, const std::string& replacement) {
    for (auto at = text.find(piece); at != std::string::npos; at = text.find(piece, at + replacement.size())) {
        text.replace(at, piece.size(), replacement);
    }
}

std::string sentence(std::string_view text) {
    std::string result(text);
    result.front() = static_cast<char>(std::toupper(result.front()));
    result.push_back('.');
    return result;
}

}  // namespace

TEST(MendDocumentsTest, theManPageHasAllStepsInTheirOrder) {
    auto page = sourceFile("docs/mspdi-mend.1");
    const auto start = page.find(".SH STEPS");
    page = page.substr(start, page.find("\n.SH", start + 1) - start + 1);
    replaceAll(page, "\\-", "-");
    replaceAll(page, "\\(aq", "'");
    std::string wanted = ".SH STEPS\nIn the order in which they are done.\n";
    for (const auto& step : MSPDIMendSteps()) {
        wanted.append(".TP\n.B ").append(step.name).append("\n").append(sentence(step.what));
        wanted.append("\n.br\nLost or invented: ").append(step.price).append(".\n");
    }
    EXPECT_EQ(page, wanted);
}

// Of the failures that end one import only those of the template and of the disk are no plan's.
TEST(MendDocumentsTest, theManPageHasAllFailuresThatAPlanCanReach) {
    const auto importer = sourceFile("docs/MSPDIImport.1");
    const auto mending = sourceFile("docs/mspdi-mend.1");
    const auto start = importer.find(".SS The end of one import");
    std::istringstream section(importer.substr(start, importer.find("\n.SS", start) - start));
    std::size_t count = 0;
    for (std::string line; std::getline(section, line);) {
        const bool isText = line.starts_with("\\fB") && !line.starts_with("\\fBException: \\fIkind");
        const bool isOfTemplate = line.find("TOC") != std::string::npos || line.find("template") != std::string::npos ||
                                  line.find("Template") != std::string::npos ||
                                  line.find("Failed to write") != std::string::npos;
        if (isText && !isOfTemplate) {
            ++count;
            // The names of the plan's namespaces are stripped from templates alone.
            EXPECT_TRUE(mending.find(line.append("\n")) != std::string::npos ||
                        line.find("StripNamespace") != std::string::npos)
                << line;
        }
    }
    EXPECT_GT(count, 30U);
}

TEST(MendDocumentsTest, theCompletionsOfferAllSteps) {
    std::string names;
    for (const auto& step : MSPDIMendSteps()) {
        names.append(names.empty() ? "" : " ").append(step.name);
    }
    for (const auto* file : {"completions/mspdi.bash", "completions/_mspdi", "completions/mspdi.fish"}) {
        auto text = sourceFile(file);
        replaceAll(text, "'\n_mspdi_steps+='", "");  // of bash
        replaceAll(text, " \\\n        ", " ");
        replaceAll(text, " \\\n    ", " ");
        EXPECT_NE(text.find(names), std::string::npos) << file;
    }
}

TEST(MendDocumentsTest, everyStepHasANameOfItsOwn) {
    std::set<std::string_view> names;
    for (const auto& step : MSPDIMendSteps()) {
        EXPECT_TRUE(names.insert(step.name).second) << step.name;
        EXPECT_EQ(MSPDIMendStepNamed(step.name), &step);
        EXPECT_FALSE(step.what.empty() || step.price.empty());
    }
    EXPECT_EQ(MSPDIMendStepNamed("no-step"), nullptr);
}
