#include "MSPCXMLDocument.h"

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "MSPCStringSink.h"
#include "MSPCXMLAsides.h"
#include "MSPCXMLEncoding.h"
#include "MSPCXMLFilter.h"
#include "MSPCXMLReader.h"
#include "MSPCXMLRepair.h"
#include "MSPCXMLSurvey.h"
#include "MSPCXMLTree.h"
#include "MSPCXMLWriter.h"

namespace {

void* allocateOrThrow(std::size_t size) {
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

// Left alone the library answers a failed allocation with an empty node, and what should stand there would be missing
// from the document without a word.
[[maybe_unused]] const bool allocationsThrow = [] {
    pugi::set_memory_management_functions(allocateOrThrow, std::free);
    return true;
}();

}  // namespace

// The bytes that were read stay, since names and texts of the tree are pieces of them.
class MSPCXMLDocument::Tree {
public:
    Tree() = default;

    // Takes the bytes (UTF-8) over; none when they are not well-formed.
    static std::unique_ptr<Tree> load(std::string bytes, const MSPCXMLReading& reading) {
        auto tree = std::make_unique<Tree>();
        tree->_bytes = std::move(bytes);
        const bool isLoaded = loadXMLTree(tree->_document, tree->_bytes.data(), tree->_bytes.size(), reading);
        return isLoaded ? std::move(tree) : nullptr;
    }

    [[nodiscard]] pugi::xml_document& document() noexcept { return _document; }
    [[nodiscard]] MSPCXMLAsides& asides() noexcept { return _asides; }

private:
    std::string _bytes;
    pugi::xml_document _document;
    MSPCXMLAsides _asides;
};

MSPCXMLDocument::MSPCXMLDocument() : _tree(std::make_unique<Tree>()) {
}
MSPCXMLDocument::MSPCXMLDocument(std::unique_ptr<Tree> tree) : _tree(std::move(tree)) {
}
MSPCXMLDocument::MSPCXMLDocument(MSPCXMLDocument&& other) noexcept = default;
MSPCXMLDocument& MSPCXMLDocument::operator=(MSPCXMLDocument&& other) noexcept = default;
MSPCXMLDocument::~MSPCXMLDocument() = default;

std::optional<MSPCXMLDocument> MSPCXMLDocument::read(std::string bytes, MSPCXMLContent content,
                                                     std::string_view repairableRoot,
                                                     std::optional<MSPCXMLRepair>* repair,
                                                     const MSPCXMLReadAgain& readAgain) {
    auto utf8 = xmlBytesAsUtf8(std::move(bytes));
    if (!utf8) {
        return std::nullopt;
    }
    const auto survey = surveyXML(*utf8);
    // What is written back must be sound; it is small, so the thorough parser may look at it first.
    const bool isSound = content == MSPCXMLContent::DataOnly || survey.hasInternalSubset || isWellFormedXML(*utf8);
    if (!survey.hasInternalSubset && !survey.hasStrayAmpersand && isSound) {
        const bool mayRepair = !repairableRoot.empty();
        auto original = mayRepair && !readAgain ? utf8 : std::nullopt;
        if (auto tree = Tree::load(
                std::move(*utf8),
                {.content = content, .hasSections = survey.hasSections, .hasMixedContent = survey.hasMixedContent})) {
            return MSPCXMLDocument(std::move(tree));
        }
        if (mayRepair && readAgain) {
            original = readAgain();
            original = original ? xmlBytesAsUtf8(std::move(*original)) : std::nullopt;
        }
        utf8 = std::move(original);
    }
    return utf8 ? readMended(*utf8, survey.hasInternalSubset, content, repairableRoot, repair) : std::nullopt;
}

std::optional<MSPCXMLDocument> MSPCXMLDocument::readStrictly(std::string utf8, MSPCXMLRepair& error) {
    if (surveyXML(utf8).hasInternalSubset) {
        error = {0, "The document type declares something"};
        return std::nullopt;
    }
    if (auto found = firstErrorInXML(utf8)) {
        error = std::move(*found);
        return std::nullopt;
    }
    auto tree = Tree::load(std::move(utf8), {.isSound = true});
    if (!tree) {
        error = {0, "not well-formed"};
        return std::nullopt;
    }
    return MSPCXMLDocument(std::move(tree));
}

std::optional<MSPCXMLDocument> MSPCXMLDocument::readFiltered(MSPCXMLFiltered filtered) {
    // What is known about the whole document decides, so that the answers are those of the whole document.
    auto tree = Tree::load(std::move(filtered.bytes), {.content = MSPCXMLContent::DataOnly,
                                                       .hasSections = filtered.hasSections,
                                                       .hasMixedContent = filtered.hasMixedContent,
                                                       .hasNestedValues = filtered.hasNestedValues});
    if (!tree) {
        return std::nullopt;
    }
    tree->asides() = std::move(filtered.asides);
    return MSPCXMLDocument(std::move(tree));
}

std::optional<MSPCXMLDocument> MSPCXMLDocument::readMended(const std::string& utf8, bool hasInternalSubset,
                                                           MSPCXMLContent content, std::string_view repairableRoot,
                                                           std::optional<MSPCXMLRepair>* repair) {
    auto mended = mendedXML(utf8, hasInternalSubset, repairableRoot);
    auto tree = mended ? Tree::load(std::move(mended->bytes), {.content = content, .isMended = true}) : nullptr;
    if (!tree) {
        return std::nullopt;
    }
    if (repair != nullptr) {
        *repair = std::move(mended->repair);
    }
    return MSPCXMLDocument(std::move(tree));
}

const MSPCXMLAsides& MSPCXMLDocument::asides() const noexcept {
    return _tree->asides();
}

MSPCXMLAsides MSPCXMLDocument::takeAsides() {
    return std::exchange(_tree->asides(), {});
}

MSPCXMLNode MSPCXMLDocument::root() const noexcept {
    return handleOf(rootElementOf(_tree->document()));
}

MSPCXMLNode MSPCXMLDocument::setRoot(MSPCXMLNewElement&& element) {
    if (!element) {
        return {};
    }
    auto& document = _tree->document();
    auto former = rootElementOf(document);
    if (treeNode(element.node()).root() != document) {
        element = MSPCXMLNewElement(handleOf(sideRoom(document).append_copy(treeNode(element.node()))));
    }
    const auto child = treeNode(element.node());
    if (former) {
        document.insert_move_before(child, former);  // between the same comments
        destroySubtree(former);
    } else {
        document.append_move(child);
    }
    return element.release();
}

MSPCXMLNewElement MSPCXMLDocument::newElement(std::string_view name) {
    return MSPCXMLNewElement(handleOf(sideRoom(_tree->document()).append_child(MSPCXMLTerminatedName(name).text())));
}

std::size_t MSPCXMLDocument::write(MSPCByteSink& sink) const {
    return writeXMLDocument(handleOf(_tree->document()), sink);
}

std::string MSPCXMLDocument::serialized() const {
    MSPCStringSink sink;
    write(sink);
    return sink.take();
}
