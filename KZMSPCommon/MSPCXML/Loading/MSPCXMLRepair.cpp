#include "MSPCXMLRepair.h"

#include <libxml/SAX2.h>
#include <libxml/dict.h>
#include <libxml/hash.h>
#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <algorithm>
#include <climits>
#include <cstddef>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "MSPCXMLEntities.h"

namespace {

using namespace MSPCXMLLexis;

template <auto Free>
struct Freer {
    template <typename Object>
    void operator()(Object* object) const noexcept {
        Free(object);
    }
};

struct TextFreer {
    void operator()(xmlChar* text) const noexcept { xmlFree(text); }
};

using DocumentPtr = std::unique_ptr<xmlDoc, Freer<xmlFreeDoc>>;
using ParserPtr = std::unique_ptr<xmlParserCtxt, Freer<xmlFreeParserCtxt>>;

// What the parser has reported, filled in while it runs.
struct Report {
    explicit Report(std::string_view bytes) : entities(bytes.size()) {}

    std::optional<MSPCXMLRepair> firstError;
    bool isStrict = false;  // what a parser may overlook is an error, too
    bool mends = false;     // asked of the parser, which does not ask it of those that it reads entities with
    bool hasFlood = false;  // out of all proportion to the bytes
    MSPCXMLEntities entities;
};

// What the parser looks for one by one, for each attribute or element again.
constexpr int MostAttributesOfATag = 1'000;
constexpr int MostOpenNamespaces = 1'000;
constexpr std::size_t LongestName = 1'000;  // each error about an element copies its name
// Of elements, attributes and namespaces: the parser's table of them stops growing at some hundreds, and then looks
// through ever longer chains.
constexpr int MostDistinctNames = 10'000;
constexpr int MostInstructions = 10'000;  // their names stand there, too, and nobody is told of those behind an error
// Where entities can make markup that is not seen in the bytes, only this many of them may be about that.
constexpr std::ptrdiff_t MostBytesOfDeclarations = 64 * 1'024;

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

// The parser owns what these give, and frees it with what it is given beside them.
// NOLINTBEGIN(cppcoreguidelines-owning-memory)
void* allocate(std::size_t size) {
    return orThrow(std::malloc(size));
}

void* reallocate(void* memory, std::size_t size) {
    return orThrow(std::realloc(memory, size));
}
// NOLINTEND(cppcoreguidelines-owning-memory)

char* duplicate(const char* text) {
    const auto size = std::strlen(text) + 1;
    return static_cast<char*>(std::memcpy(allocate(size), text, size));
}

xmlParserInputPtr refuseExternalEntity(const char*, const char*, xmlParserCtxtPtr) {
    return nullptr;
}

void prepareParserOnce() {
    static std::once_flag prepared;
    std::call_once(prepared, [] {
        // Left alone the library goes on after a failed allocation, silently drops parts of the document, or
        // crashes. It is built so that exceptions pass through it.
        xmlMemSetup(std::free, allocate, reallocate, duplicate);
        xmlInitParser();
        // Options alone do not stop it from opening local files that an entity names.
        xmlSetExternalEntityLoader(refuseExternalEntity);
    });
}

std::string withoutLineEnd(const char* message) {
    std::string text = message == nullptr ? "" : message;
    while (!text.empty() && (text.back() == '\n' || text.back() == '\r')) {
        text.pop_back();
    }
    return text;
}

void stop(xmlParserCtxt& parser) {
    static_cast<Report*>(parser._private)->hasFlood = true;
    xmlStopParser(&parser);
}

void stopAtTooManyNames(xmlParserCtxt& parser) {
    if (parser.nsNr > 2 * MostOpenNamespaces || xmlDictSize(parser.dict) > MostDistinctNames) {  // two entries for each
        stop(parser);
    }
}

void noteError(void* context, xmlErrorPtr error) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    auto* report = static_cast<Report*>(parser->_private);
    if (report == nullptr) {
        return;
    }
    stopAtTooManyNames(*parser);
    // A single text beyond the parser's measure, which it says like this.
    report->hasFlood = report->hasFlood || (error->code == XML_ERR_NO_MEMORY && report->entities.hasMarks());
    if (error->level < (report->isStrict ? XML_ERR_ERROR : XML_ERR_FATAL)) {
        return;
    }
    if (!report->firstError) {
        report->firstError = MSPCXMLRepair{error->line, withoutLineEnd(error->message)};
    }
    report->hasFlood = report->hasFlood || error->code == XML_ERR_ENTITY_LOOP;
    if (parser->recovery == 0) {
        // Nobody wants the rest, in which each error may cost a copy of all that it is about. This state ends the
        // parser's loops; xmlStopParser() would take away bytes that the one under way still looks at.
        parser->disableSAX = 1;
        parser->instate = XML_PARSER_EOF;
    }
}

// How many quoted texts stand between a "<" and the end of what it may begin.
int quotedTextsOf(std::string_view tag) {
    constexpr std::string_view notable = "\"'>";
    int count = 0;
    for (auto at = tag.find_first_of(notable); at != std::string_view::npos && tag[at] != '>'; ++count) {
        const auto closing = tag.find(tag[at], at + 1);
        at = closing == std::string_view::npos ? closing : tag.find_first_of(notable, closing + 1);
    }
    return count;
}

// Whether the parser takes a comment or CDATA section for one to its end: it gives up at a character that XML forbids,
// and goes on with what follows as markup.
bool isPassedOver(std::string_view section) {
    return !section.starts_with("<?") && std::all_of(section.begin(), section.end(), [](char character) {
        return (character >= ' ' && character <= '~') || character == '\t' || character == '\n' || character == '\r';
    });
}

// The parser sees at most as many attributes as there are quoted texts: to it a tag ends before the next "<" in any
// case. What only looks like a tag within a comment or CDATA section does not count, unless a document type may have
// the parser see sections elsewhere than we do.
bool holdsMonstrousMarkup(std::string_view bytes) {
    bool mayHoldSections = bytes.find("<!DOCTYPE") == std::string_view::npos;
    int instructions = 0;
    for (auto start = bytes.find('<'); start != std::string_view::npos;) {
        const auto sectionEnd = mayHoldSections ? endOfSection(bytes, start) : start;
        if (sectionEnd == bytes.size()) {
            mayHoldSections = false;  // one without an end: the parser may go on behind its beginning
        } else if (sectionEnd > start && isPassedOver(bytes.substr(start, sectionEnd - start))) {
            start = bytes.find('<', sectionEnd);
            continue;
        }
        const auto next = bytes.find('<', start + 1);
        const auto tag = bytes.substr(start, next == std::string_view::npos ? next : next - start);
        if (tag.starts_with("<?") && ++instructions > MostInstructions) {
            return true;
        }
        const bool mayStartElement = tag.find_first_of("!?/") != 1;
        const auto nameSize = std::min(tag.find_first_of(" \t\r\n/>"), tag.size());
        if (mayStartElement && (quotedTextsOf(tag) > MostAttributesOfATag || nameSize > LongestName)) {
            return true;
        }
        start = next;
    }
    return false;
}

void startElement(void* context, const xmlChar* name, const xmlChar* prefix, const xmlChar* /*uri*/, int namespaceCount,
                  const xmlChar** namespaces, int attributeCount, int defaultedCount, const xmlChar** attributes) {
    auto& parser = *static_cast<xmlParserCtxt*>(context);
    stopAtTooManyNames(parser);
    if (parser.instate == XML_PARSER_EOF) {
        return;
    }
    // With the URI of a prefix the tree would be searched upwards for it each time. Without, prefix and name become one
    // name, which is written the same.
    constexpr int entriesOfAttribute = 5;
    constexpr int uriOfAttribute = 2;
    for (int i = 0; i < attributeCount; ++i) {
        attributes[i * entriesOfAttribute + uriOfAttribute] = nullptr;
    }
    xmlSAX2StartElementNs(context, name, prefix, nullptr, namespaceCount, namespaces, attributeCount, defaultedCount,
                          attributes);
    // Attributes that the document type gives to elements multiply with these. Only the root's mean something: it may
    // get its namespace that way.
    if (parser.nodeNr == 1 && parser.attsDefault != nullptr) {
        xmlHashFree(parser.attsDefault, xmlHashDefaultDeallocator);
        parser.attsDefault = nullptr;
    }
}

void stopAtTooManyDeclarations(xmlParserCtxt& parser) {
    const auto& input = *parser.inputTab[0];
    if (input.cur - input.base + static_cast<std::ptrdiff_t>(input.consumed) > MostBytesOfDeclarations) {
        stop(parser);
    }
}

// The parser has made line feeds of the line ends of the content by now. Where the entity stands it would do so with
// those returns, too, that character references have made.
std::string withEscapedReturns(std::string_view content) {
    std::string escaped;
    for (const char character : content) {
        if (character == '\r') {
            escaped += "&#13;";
        } else {
            escaped += character;
        }
    }
    return escaped;
}

void declareEntity(void* context, const xmlChar* name, int type, const xmlChar* publicId, const xmlChar* systemId,
                   xmlChar* content) {
    if (type == XML_INTERNAL_GENERAL_ENTITY && content != nullptr) {
        auto escaped = withEscapedReturns(reinterpret_cast<const char*>(content));
        xmlSAX2EntityDecl(context, name, type, publicId, systemId, reinterpret_cast<xmlChar*>(escaped.data()));
    } else {
        xmlSAX2EntityDecl(context, name, type, publicId, systemId, content);
    }
    stopAtTooManyDeclarations(*static_cast<xmlParserCtxt*>(context));
}

void declareAttribute(void* context, const xmlChar* element, const xmlChar* name, int type, int defaultKind,
                      const xmlChar* defaultValue, xmlEnumerationPtr values) {
    xmlSAX2AttributeDecl(context, element, name, type, defaultKind, defaultValue, values);
    stopAtTooManyDeclarations(*static_cast<xmlParserCtxt*>(context));
}

// Whether the parser only reports a reference to an entity that is not declared, and drops it.
bool dropsUndeclared(const xmlParserCtxt& parser) {
    return parser.standalone == 1 || (parser.hasExternalSubset == 0 && parser.hasPErefs == 0);
}

xmlEntityPtr entityInContent(xmlParserCtxt& parser, const xmlChar* name, xmlEntityPtr entity, Report& report) {
    if (report.mends) {
        parser.wellFormed = 1;  // behind an error the parser would drop all references
    }
    if (entity == nullptr) {
        const bool isError = !report.mends && dropsUndeclared(parser);
        return isError ? nullptr : report.entities.asWritten(reinterpret_cast<const char*>(name));
    }
    return report.entities.markFor(entity, &parser);
}

xmlEntityPtr entityNamed(void* context, const xmlChar* name) {
    auto& parser = *static_cast<xmlParserCtxt*>(context);
    auto* const entity = xmlSAX2GetEntity(context, name);
    auto* const report = static_cast<Report*>(parser._private);
    if (report == nullptr) {
        return entity;
    }
    if (report->hasFlood || report->entities.isBeyondMeasure()) {
        stop(parser);
        return nullptr;
    }
    if (parser.instate == XML_PARSER_CONTENT) {
        return entityInContent(parser, name, entity, *report);
    }
    report->entities.countInValue(entity);
    return entity;
}

// Left alone the parser may walk in circles where entities of declarations multiply.
xmlEntityPtr parameterEntityNamed(void* context, const xmlChar* name) {
    auto& parser = *static_cast<xmlParserCtxt*>(context);
    auto* const entity = xmlSAX2GetParameterEntity(context, name);
    auto* const report = static_cast<Report*>(parser._private);
    if (report == nullptr) {
        return entity;
    }
    report->entities.countInDeclarations(entity);
    if (report->hasFlood || report->entities.isBeyondMeasure()) {
        stop(parser);
        return nullptr;
    }
    return entity;
}

// Tells nobody what it sees, and makes no tree.
void useForErrorsOnly(xmlSAXHandler& sax) {
    sax = {};
    sax.initialized = XML_SAX2_MAGIC;
    sax.startElementNs = [](void* context, const xmlChar*, const xmlChar*, const xmlChar*, int, const xmlChar**, int,
                            int, const xmlChar**) { stopAtTooManyNames(*static_cast<xmlParserCtxt*>(context)); };
    sax.serror = noteError;
}

void useForTree(xmlSAXHandler& sax) {
    sax.serror = noteError;
    sax.startElementNs = startElement;
    sax.getEntity = entityNamed;
    sax.getParameterEntity = parameterEntityNamed;
    sax.entityDecl = declareEntity;
    sax.attributeDecl = declareAttribute;
}

// Without a tree for a report that is strict.
DocumentPtr parsed(std::string_view bytes, int options, Report& report) {
    ParserPtr parser(xmlNewParserCtxt());
    if (!parser || bytes.size() > INT_MAX || holdsMonstrousMarkup(bytes)) {
        report.hasFlood = true;
        return nullptr;
    }
    parser->_private = &report;
    if (report.isStrict) {
        useForErrorsOnly(*parser->sax);
    } else {
        useForTree(*parser->sax);
    }
    try {
        DocumentPtr document(xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr,
                                               "UTF-8", options | (report.mends ? XML_PARSE_RECOVER : 0)));
        report.hasFlood = report.hasFlood || report.entities.isBeyondMeasure();
        return document;
    } catch (const std::bad_alloc&) {
        // What the parser was in the middle of is half made, and freeing that would be no safer than going on.
        static_cast<void>(parser.release());
        throw;
    }
}

std::optional<std::string> writtenAnew(DocumentPtr document) {
    xmlChar* text = nullptr;
    int size = 0;
    try {
        xmlDocDumpMemoryEnc(document.get(), &text, &size, "UTF-8");
    } catch (const std::bad_alloc&) {
        static_cast<void>(document.release());  // writing changes it for a while
        throw;
    }
    const std::unique_ptr<xmlChar, TextFreer> owner(text);
    if (text == nullptr) {
        return std::nullopt;
    }
    return std::string(reinterpret_cast<const char*>(text), static_cast<std::size_t>(size));
}

bool hasRootNamed(const DocumentPtr& document, std::string_view name) {
    const auto* root = document ? xmlDocGetRootElement(document.get()) : nullptr;
    if (root == nullptr) {
        return false;
    }
    std::string written;
    if (root->ns != nullptr && root->ns->prefix != nullptr) {
        written.append(reinterpret_cast<const char*>(root->ns->prefix)).append(":");
    }
    written += reinterpret_cast<const char*>(root->name);
    return written == name;
}

std::optional<MSPCXMLMended> mended(DocumentPtr document, const MSPCXMLEntities& entities,
                                    std::optional<MSPCXMLRepair> repair) {
    auto bytes = writtenAnew(std::move(document));
    if (!bytes) {
        return std::nullopt;
    }
    return MSPCXMLMended{entities.withTexts(std::move(*bytes)), std::move(repair)};
}

// Depth and size of plain documents have no limit; where entities can multiply text, the parser's own bounds hold.
int optionsFor(bool hasInternalSubset) {
    return XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_IGNORE_ENC | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
           (hasInternalSubset ? 0 : XML_PARSE_HUGE);
}

}  // namespace

bool isWellFormedXML(std::string_view bytes) {
    prepareParserOnce();
    Report report(bytes);
    return parsed(bytes, optionsFor(false), report) && !report.firstError && !report.hasFlood;
}

std::optional<MSPCXMLRepair> firstErrorInXML(std::string_view bytes) {
    prepareParserOnce();
    Report report(bytes);
    report.isStrict = true;
    static_cast<void>(parsed(bytes, optionsFor(false), report));
    if (report.hasFlood && !report.firstError) {
        report.firstError = MSPCXMLRepair{0, "beyond measure: too many attributes, namespaces or names, or too large"};
    }
    return std::move(report.firstError);
}

std::optional<std::string> escapedStrayAmpersands(std::string_view bytes, Entities entities) {
    constexpr auto npos = std::string_view::npos;
    std::string escaped;
    std::size_t copied = 0;
    auto index = bytes.find_first_of("&<", prologOf(bytes).end);
    while (index != npos) {
        auto next = index + 1;
        if (bytes[index] == '<') {
            next = std::max(next, endOfSection(bytes, index));
        } else if (const auto reference = referenceAt(bytes, index, entities);
                   reference.kind != Reference::Kind::Good) {
            escaped += bytes.substr(copied, index - copied);
            escaped += reference.kind == Reference::Kind::Stray ? "&amp;" : Replacement;
            next = copied = index + reference.size;
        }
        index = bytes.find_first_of("&<", next);
    }
    if (copied == 0) {
        return std::nullopt;
    }
    escaped += bytes.substr(copied);
    return escaped;
}

std::string withMendableText(std::string_view bytes) {
    std::string mendable;
    std::size_t copied = 0;
    std::size_t sectionEnd = 0;
    auto commentStart = std::string_view::npos;
    const auto write = [&](std::size_t index, std::string_view replacement, std::size_t size = 1) {
        mendable.append(bytes, copied, index - copied).append(replacement);
        copied = index + size;
    };
    std::size_t size = 1;
    for (std::size_t index = 0; index < bytes.size(); index += size) {
        const auto [characterSize, isAllowed] = characterAt(bytes, index);
        size = characterSize;
        const char character = bytes[index];
        if (!isAllowed) {
            write(index, Replacement, size);
        } else if (character == '<' && index >= sectionEnd) {
            sectionEnd = endOfSection(bytes, index);
            commentStart = bytes.substr(index).starts_with("<!--") ? index + 4 : std::string_view::npos;
        } else if (character == '-' && index >= commentStart && index + 3 < sectionEnd && bytes[index + 1] == '-') {
            write(index, " ");  // each of these errors would cost a copy of the comment
        } else if (character == '>' && index >= sectionEnd && bytes.substr(0, index).ends_with("]]")) {
            write(index, "&gt;");
        }
    }
    return mendable.append(bytes, copied);
}

std::optional<MSPCXMLMended> mendedXML(std::string_view bytes, bool hasInternalSubset,
                                       std::string_view repairableRoot) {
    if (bytes.size() > INT_MAX) {
        return std::nullopt;  // the parser takes no more; no copies are made for it
    }
    prepareParserOnce();
    const int options = optionsFor(hasInternalSubset);
    Report report(bytes);
    if (auto sound = parsed(bytes, options, report); sound && !report.firstError && !report.hasFlood) {
        return mended(std::move(sound), report.entities, std::nullopt);
    }
    if (repairableRoot.empty() || report.hasFlood) {
        return std::nullopt;
    }
    const auto escaped = escapedStrayAmpersands(bytes, hasInternalSubset ? Entities::AnyName : Entities::Predefined);
    const auto mendable = withMendableText(escaped ? std::string_view(*escaped) : bytes);
    Report recoveryReport(mendable);
    recoveryReport.mends = true;
    auto recovered = parsed(mendable, options, recoveryReport);
    if (!hasRootNamed(recovered, repairableRoot) || recoveryReport.hasFlood) {
        return std::nullopt;
    }
    return mended(std::move(recovered), recoveryReport.entities, std::move(report.firstError));
}
