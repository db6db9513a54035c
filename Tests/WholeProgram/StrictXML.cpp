#include "StrictXML.h"

#include <libxml/parser.h>

#include <memory>

std::string strictXMLComplaint(const std::filesystem::path& file) {
    const std::unique_ptr<xmlParserCtxt, decltype(&xmlFreeParserCtxt)> context(xmlNewParserCtxt(), xmlFreeParserCtxt);
    const std::unique_ptr<xmlDoc, decltype(&xmlFreeDoc)> document(
        xmlCtxtReadFile(context.get(), file.c_str(), nullptr,
                        XML_PARSE_NONET | XML_PARSE_NOERROR | XML_PARSE_NOWARNING | XML_PARSE_HUGE),
        xmlFreeDoc);
    if (!document || context->wellFormed != 1 || context->errNo != XML_ERR_OK) {
        const auto* error = xmlCtxtGetLastError(context.get());
        return error != nullptr ? "line " + std::to_string(error->line) + ": " + error->message : "not well-formed";
    }
    const auto* encoding = reinterpret_cast<const char*>(document->encoding);
    return encoding != nullptr && std::string(encoding) == "UTF-8" ? "" : "the declared encoding is not UTF-8";
}
