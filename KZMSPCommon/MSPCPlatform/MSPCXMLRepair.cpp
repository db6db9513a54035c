#include "MSPCXMLRepair.h"

#include <libxml/parser.h>
#include <libxml/parserInternals.h>
#include <libxml/tree.h>
#include <libxml/xmlerror.h>

#include <climits>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <mutex>
#include <new>
#include <utility>

#include "MSPCXMLSurvey.h"

namespace {

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
    std::optional<MSPCXMLRepair> firstError;
    bool hasEntityFlood = false;
};

void* orThrow(void* memory) {
    if (memory == nullptr) {
        throw std::bad_alloc();
    }
    return memory;
}

void* allocate(std::size_t size) {
    return orThrow(std::malloc(size));
}

void* reallocate(void* memory, std::size_t size) {
    return orThrow(std::realloc(memory, size));
}

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
        // Left alone the library goes on after a failed allocation, drops parts of the document without a word, or
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

void noteError(void* context, xmlErrorPtr error) {
    auto* parser = static_cast<xmlParserCtxt*>(context);
    auto* report = static_cast<Report*>(parser->_private);
    if (report == nullptr || error->level != XML_ERR_FATAL) {
        return;
    }
    if (!report->firstError) {
        report->firstError = MSPCXMLRepair{error->line, withoutLineEnd(error->message)};
    }
    report->hasEntityFlood = report->hasEntityFlood || error->code == XML_ERR_ENTITY_LOOP;
}

DocumentPtr parsed(std::string_view bytes, int options, Report& report) {
    ParserPtr parser(xmlNewParserCtxt());
    if (!parser || bytes.size() > INT_MAX) {
        return nullptr;
    }
    parser->_private = &report;
    parser->sax->serror = noteError;
    try {
        return DocumentPtr(
            xmlCtxtReadMemory(parser.get(), bytes.data(), static_cast<int>(bytes.size()), nullptr, "UTF-8", options));
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

std::optional<MSPCXMLMended> mended(DocumentPtr document, std::optional<MSPCXMLRepair> repair) {
    auto bytes = writtenAnew(std::move(document));
    return bytes ? std::optional(MSPCXMLMended{std::move(*bytes), std::move(repair)}) : std::nullopt;
}

// Depth and size of plain documents have no limit; where entities can multiply text, the parser's own bounds hold.
int optionsFor(bool hasInternalSubset) {
    return XML_PARSE_NONET | XML_PARSE_NOENT | XML_PARSE_IGNORE_ENC | XML_PARSE_NOERROR | XML_PARSE_NOWARNING |
           (hasInternalSubset ? 0 : XML_PARSE_HUGE);
}

}  // namespace

bool isWellFormedXML(std::string_view bytes) {
    prepareParserOnce();
    Report report;
    return parsed(bytes, optionsFor(false), report) && !report.firstError;
}

std::optional<MSPCXMLMended> mendedXML(std::string_view bytes, bool hasInternalSubset,
                                       std::string_view repairableRoot) {
    prepareParserOnce();
    const int options = optionsFor(hasInternalSubset);
    Report report;
    if (auto sound = parsed(bytes, options, report); sound && !report.firstError) {
        return mended(std::move(sound), std::nullopt);
    }
    if (repairableRoot.empty() || report.hasEntityFlood) {
        return std::nullopt;
    }
    const auto escaped =
        escapedStrayAmpersands(bytes, hasInternalSubset ? MSPCXMLEntities::AnyName : MSPCXMLEntities::Predefined);
    const auto mendable = withMendableText(escaped ? std::string_view(*escaped) : bytes);
    Report recoveryReport;
    auto recovered = parsed(mendable, options | XML_PARSE_RECOVER, recoveryReport);
    if (!hasRootNamed(recovered, repairableRoot) || recoveryReport.hasEntityFlood) {
        return std::nullopt;
    }
    return mended(std::move(recovered), std::move(report.firstError));
}
