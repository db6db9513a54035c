#include "MSPCXMLDocument.h"

#include <cstdlib>
#include <new>
#include <pugixml.hpp>
#include <utility>

#include "MSPCByteStreams.h"
#include "MSPCXMLTree.h"
#include "MSPCXMLWriter.h"

namespace {

void* allocateOrThrow(std::size_t size) {
    // NOLINTNEXTLINE(cppcoreguidelines-owning-memory): the library owns it, and frees it with what it is given below
    if (void* const memory = std::malloc(size)) {
        return memory;
    }
    throw std::bad_alloc();
}

// Left alone the library answers a failed allocation with an empty node, and what should stand there would be missing
// from the document unnoticed.
[[maybe_unused]] const bool allocationsThrow = [] {
    pugi::set_memory_management_functions(allocateOrThrow, std::free);
    return true;
}();

}  // namespace

// The bytes that were read stay, since names and texts of the tree are pieces of them.
class MSPCXMLDocument::Tree {
public:
    explicit Tree(std::string bytes = {}) : _bytes(std::move(bytes)) {}

    // False when the bytes are not well-formed.
    [[nodiscard]] bool build(const MSPCXMLReading& reading) {
        return buildXMLTree(_document, _bytes.data(), _bytes.size(), reading);
    }
    [[nodiscard]] pugi::xml_document& document() noexcept { return _document; }

private:
    std::string _bytes;
    pugi::xml_document _document;
};

MSPCXMLDocument::MSPCXMLDocument() : _tree(std::make_unique<Tree>()) {
}
MSPCXMLDocument::MSPCXMLDocument(std::unique_ptr<Tree> tree) : _tree(std::move(tree)) {
}
MSPCXMLDocument::MSPCXMLDocument(MSPCXMLDocument&& other) noexcept = default;
MSPCXMLDocument& MSPCXMLDocument::operator=(MSPCXMLDocument&& other) noexcept = default;
MSPCXMLDocument::~MSPCXMLDocument() = default;

std::optional<MSPCXMLDocument> MSPCXMLDocument::read(std::string utf8, const MSPCXMLReading& reading) {
    auto tree = std::make_unique<Tree>(std::move(utf8));
    return tree->build(reading) ? std::optional(MSPCXMLDocument(std::move(tree))) : std::nullopt;
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
        element = MSPCXMLNewElement(handleOf(holderOfFreeElements(document).append_copy(treeNode(element.node()))));
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
    return MSPCXMLNewElement(
        handleOf(holderOfFreeElements(_tree->document()).append_child(MSPCXMLTerminatedName(name).text())));
}

std::size_t MSPCXMLDocument::write(MSPCByteWriter& writer) const {
    return writeXMLDocument(handleOf(_tree->document()), writer);
}

std::string MSPCXMLDocument::serialized() const {
    MSPCStringWriter writer;
    write(writer);
    return writer.take();
}
