#include "MSPCXMLEntities.h"

#include <libxml/tree.h>

#include <algorithm>
#include <utility>

namespace {

// As the parser bounds what references make that it copies.
constexpr std::size_t MostText = 10'000'000;
constexpr std::size_t MostTextPerByte = 10;
// What is looked at again for each reference, whatever comes of it.
constexpr std::size_t MostInValues = std::size_t{64} * 1'024;
constexpr std::size_t MostInDeclarations = std::size_t{64} * 1'024;
constexpr std::size_t SizeOfReference = 16;  // what one to nothing counts for
// Around the name of an entity. Neither is a character of XML, so that no text of a tree holds one.
constexpr char MarkStart = '\x01';
constexpr char MarkEnd = '\x02';

struct BufferFreer {
    void operator()(xmlBuffer* buffer) const noexcept { xmlBufferFree(buffer); }
};

std::string_view viewOf(const xmlChar* text) {
    return text == nullptr ? std::string_view() : reinterpret_cast<const char*>(text);
}

bool hasNodes(const xmlEntity& entity) {
    return entity.children != nullptr && entity.owner != 0;
}

std::string writtenContentOf(const xmlEntity& entity) {
    const std::unique_ptr<xmlBuffer, BufferFreer> buffer(xmlBufferCreate());
    xmlBufferSetAllocationScheme(buffer.get(), XML_BUFFER_ALLOC_DOUBLEIT);
    for (auto* node = entity.children; node != nullptr; node = node->next) {
        xmlNodeDump(buffer.get(), entity.doc, node, 0, 0);
    }
    return std::string(viewOf(xmlBufferContent(buffer.get())));
}

}  // namespace

struct MSPCXMLEntities::Entry {
    std::string mark;  // what the parser takes for its text
    xmlEntity standIn = {};
    std::string text;  // markup, entities within it included
};

MSPCXMLEntities::MSPCXMLEntities(std::size_t documentSize) : _documentSize(documentSize) {
}

MSPCXMLEntities::~MSPCXMLEntities() = default;

bool MSPCXMLEntities::isBeyondMeasure() const {
    const auto most = [this](std::size_t atLeast) { return std::max(atLeast, MostTextPerByte * _documentSize); };
    return _hasLoop || _textSize > most(MostText) || _sizeInValues > most(MostInValues) ||
           _sizeInDeclarations > MostInDeclarations;
}

xmlEntity* MSPCXMLEntities::markFor(xmlEntity* entity, const void* parser) {
    if (entity == nullptr || entity->etype != XML_INTERNAL_GENERAL_ENTITY) {
        return entity;
    }
    if (!isRead(*entity, parser)) {
        return _hasLoop ? nullptr : entity;
    }
    auto& entry = entryOf(*entity);
    _textSize += entry.text.size();
    return &entry.standIn;
}

xmlEntity* MSPCXMLEntities::asWritten(std::string_view name) {
    if (!_undeclared) {
        _undeclared = std::make_unique<Entry>();
    }
    _undeclared->mark.clear();
    _undeclared->mark.append(1, '&').append(name).append(1, ';');
    becomeText(*_undeclared);
    return &_undeclared->standIn;
}

// What the parser adds to the text where it is, like "&amp;".
void MSPCXMLEntities::becomeText(Entry& entry) {
    entry.standIn.etype = XML_INTERNAL_PREDEFINED_ENTITY;
    entry.standIn.content = reinterpret_cast<xmlChar*>(entry.mark.data());
}

// The nodes belong to the entity once the parser has read its content; for content that is empty, or broken, there are
// none, and it would be read again for each reference.
bool MSPCXMLEntities::isRead(const xmlEntity& entity, const void* parser) {
    if (hasNodes(entity)) {
        return true;
    }
    const auto name = viewOf(entity.name);
    const auto isHere = [&](const auto& open) { return open.first == parser; };
    _open.erase(std::find_if(_open.begin(), _open.end(), isHere), _open.end());
    _hasLoop = std::any_of(_open.begin(), _open.end(), [&](const auto& open) { return open.second == name; });
    if (_hasLoop) {
        return false;
    }
    if (!_begun.emplace(name).second) {
        return true;
    }
    _open.emplace_back(parser, name);
    return false;
}

void MSPCXMLEntities::countInValue(const xmlEntity* entity) {
    if (entity != nullptr) {
        _sizeInValues += SizeOfReference + viewOf(entity->content).size();
    }
}

void MSPCXMLEntities::countInDeclarations(const xmlEntity* entity) {
    if (entity != nullptr) {
        _sizeInDeclarations += SizeOfReference + viewOf(entity->content).size();
    }
}

MSPCXMLEntities::Entry& MSPCXMLEntities::entryOf(const xmlEntity& entity) {
    const auto name = viewOf(entity.name);
    if (const auto known = _entries.find(name); known != _entries.end()) {
        return *known->second;
    }
    auto owned = std::make_unique<Entry>();
    auto& entry = *owned;
    entry.text = withTexts(writtenContentOf(entity));
    entry.mark.append(1, MarkStart).append(name).append(1, MarkEnd);
    entry.standIn = entity;
    becomeText(entry);
    _entries.emplace(name, std::move(owned));
    return entry;
}

std::string MSPCXMLEntities::withTexts(std::string written) const {
    auto start = written.find(MarkStart);
    if (start == std::string::npos) {
        return written;
    }
    std::string whole;
    std::size_t copied = 0;
    for (; start != std::string::npos; start = written.find(MarkStart, copied)) {
        const auto end = written.find(MarkEnd, start);
        const auto name = std::string_view(written).substr(start + 1, end - start - 1);
        whole.append(written, copied, start - copied).append(_entries.find(name)->second->text);
        copied = end + 1;
    }
    return whole.append(written, copied);
}
