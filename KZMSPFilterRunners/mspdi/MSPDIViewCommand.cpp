#include "MSPDIViewCommand.h"

#include <fmt/format.h>

#include <CLI/CLI.hpp>
#include <memory>
#include <new>
#include <nlohmann/json.hpp>

#include "KZDXPage.h"
#include "MSPCDesktop.h"
#include "MSPCException.h"
#include "MSPCFileSystem.h"
#include "MSPCMessage.h"
#include "MSPCPath.h"
#include "MSPDIAccountOfPlan.h"
#include "MSPDICommonOptions.h"
#include "MSPDIDocumentAround.h"
#include "MSPDIDocumentFiles.h"
#include "MSPDIJSON.h"
#include "MSPDIRun.h"
#include "MSPDIValueWords.h"

namespace {

constexpr std::string_view standardOutput = "-";

struct Arguments {
    std::string shown;
    std::string page;
    bool isToBeOpened = false;
};

// Enough of each kind of loss to find all places of most plans, and few enough to keep the page small.
constexpr std::size_t mostPlaces = 200;

// The account of a plan. Long texts only begin, so that they are not kept for each place; what was mended is told
// whole: its end says where.
MSPDIAccount accountOf(const std::string& plan, const MSPCServices& services) {
    MSPDIAccountOptions options;
    options.mostPlaces = mostPlaces;
    auto account = MSPDIAccountOfPlan(plan, services, options);
    for (auto& loss : account.losses) {
        for (auto& place : loss.where) {
            place.value = loss.kind == "overwritten-by-repair" ? place.value : MSPDIShownValue(place.value);
            place.name = MSPDIShownValue(place.name);
            place.path = MSPDIShownPath(place.path);
            place.targetName = MSPDIShownValue(place.targetName);
        }
    }
    return account;
}

using JSON = KZDXPageJSON;

JSON told(std::monostate /*nothing*/) {
    return nullptr;
}

JSON told(const MSPDIWork& work) {
    return {{"work", work.seconds}};
}

JSON told(const MSPDIPercentage& percentage) {
    return {{"percentage", percentage.percent}};
}

JSON told(const MSPDIConstraint& constraint) {
    return {{"constraint", constraint.type}};
}

JSON told(const MSPDITarget& target) {
    return {{"target", JSON::array({target.kind, target.uid, target.name})}};
}

JSON told(const KZDXDateTime& date) {
    return {{"date", KZDXPageDate(date)[0]}};
}

JSON meaningOf(const MSPDIPlace& place) {
    auto meaning = std::visit([](const auto& value) { return told(value); }, MSPDIMeaningOf(place));
    const auto link = MSPDILinkOf(place);
    if (!meaning.is_null() && link) {
        meaning["link"] = JSON::array({link->uid, link->name});
    }
    return meaning;
}

std::optional<KZDXPage> pageOf(const std::string& name, const MSPCServices& services, std::string& failure) {
    std::vector<std::string> repairs;
    const auto files = MSPDIFilesOfDocumentOrPlan(name, services, failure, repairs);
    if (!files) {
        return std::nullopt;
    }
    const auto path = services.fileSystem.absolutePath(name);
    KZDXPageSubject subject{lastPathComponent(path), MSPDIVersionText, nullptr, meaningOf};
    MSPDIAccount account;
    if (!services.fileSystem.isDirectory(path)) {
        account = accountOf(path, services);
        subject.account = &account;
    }
    auto page = KZDXPageOf(*files, subject, failure);
    if (page) {
        page->notes.insert(page->notes.begin(), repairs.begin(), repairs.end());
    }
    return page;
}

// What is wrong with the document or plan is told, and nothing is given then.
std::optional<KZDXPage> pageOrTell(const std::string& name, MSPDIRun& run) {
    std::string failure;
    try {
        if (auto page = pageOf(name, run.services, failure)) {
            return page;
        }
    } catch (const MSPCException& exception) {
        failure = exception.reason();
    } catch (const std::bad_alloc&) {
        failure = "not enough memory";
    }
    run.couldNotLook(name, failure);
    return std::nullopt;
}

// "House.html" in the current folder for "plans/House.xml".
std::string defaultPage(const std::string& shown, const MSPCFileSystem& fileSystem) {
    return pathByDeletingExtension(lastPathComponent(fileSystem.absolutePath(shown))) + ".html";
}

// Why a page is not to be written there; none where it may be. What nobody named is never replaced, and the document
// itself never at all.
std::optional<std::string> obstacleTo(const Arguments& arguments, const std::string& page,
                                      const MSPCFileSystem& fileSystem) {
    const auto path = fileSystem.absolutePath(page);
    if (fileSystem.isDirectory(path)) {
        return "it is a folder";
    }
    if (fileSystem.isSameFile(path, fileSystem.absolutePath(arguments.shown))) {
        return "it is what the page shall show";
    }
    if (const auto document = MSPDIDocumentAround(path, fileSystem)) {
        return fmt::format("it would become a part of the document {}", *document);
    }
    if (arguments.page.empty() && fileSystem.exists(path)) {
        return fmt::format("it exists already (-o {} replaces it)", page);
    }
    return std::nullopt;
}

// "71 tasks"
std::string counted(std::size_t count, std::string_view thing) {
    return fmt::format("{} {}{}", count, thing, count == 1 ? "" : "s");
}

void tellPage(const std::string& name, const KZDXPage& page, MSPDIRun& run) {
    if (run.isQuiet) {
        return;
    }
    if (run.isJSON) {
        MSPDIWriteJSON({{"page", name},
                        {"bytes", page.html.size()},
                        {"tasks", page.tasks},
                        {"resources", page.resources},
                        {"baselines", page.baselines},
                        {"notes", page.notes}},
                       run.out);
    } else {
        run.out << fmt::format("{}: {}, {}, {}\n", MSPCShownText(name), counted(page.tasks, "task"),
                               counted(page.resources, "resource"), counted(page.baselines, "baseline"));
    }
}

void writePage(const Arguments& arguments, MSPDIRun& run) {
    auto& fileSystem = run.services.fileSystem;
    const auto name = arguments.page.empty() ? defaultPage(arguments.shown, fileSystem) : arguments.page;
    const bool isPiped = name == standardOutput;
    const auto obstacle = isPiped ? std::nullopt : obstacleTo(arguments, name, fileSystem);
    const auto page = pageOrTell(arguments.shown, run);
    if (!page) {
        return;
    }
    for (const auto& note : page->notes) {
        run.warn(arguments.shown, note);
    }
    if (isPiped) {
        run.out << page->html;
        return;
    }
    const auto path = fileSystem.absolutePath(name);
    const auto failure =
        obstacle ? obstacle
                 : fileSystem.writeAtomically(path, [&page](MSPCByteWriter& writer) { writer.write(page->html); });
    if (failure) {
        run.couldNotLook(name, *failure);
        return;
    }
    tellPage(name, *page, run);
    if (arguments.isToBeOpened && !MSPCOpenOnDesktop(path)) {
        run.couldNotLook(name, "it is written, but nothing here opens it (xdg-open)");
    }
}

}  // namespace

void MSPDIAddViewCommand(CLI::App& program, MSPDIRun& run) {
    const auto arguments = std::make_shared<Arguments>();
    auto& view = *program.add_subcommand("view", "Make a page that shows a document, or what a plan becomes");
    view.add_option("DOCUMENT-OR-PLAN", arguments->shown, "A document, or a plan, which is imported in memory")
        ->required();
    view.add_option("-o,--output", arguments->page, "The page; - is standard output")->option_text("PAGE");
    view.add_flag("--open", arguments->isToBeOpened, "Open the page in the browser");
    view.footer(
        "Exit status: 0 the page is written, 2 it is not, or wrong arguments.\n"
        "See also: man mspdi-view");
    MSPDIAddCommonOptions(view, run);
    view.callback([arguments, &run] { writePage(*arguments, run); });
}
