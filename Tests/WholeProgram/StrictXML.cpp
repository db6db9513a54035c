#include "StrictXML.h"

#include <gtest/gtest.h>
#include <libxml/parser.h>
#include <libxml/xmlreader.h>

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

std::vector<std::string> strictXMLTexts(const std::filesystem::path& file, const std::string& elementName) {
    EXPECT_EQ(strictXMLComplaint(file), "") << file;
    const std::unique_ptr<xmlTextReader, decltype(&xmlFreeTextReader)> reader(
        xmlReaderForFile(file.c_str(), nullptr, XML_PARSE_NONET | XML_PARSE_HUGE), xmlFreeTextReader);
    std::vector<std::string> texts;
    while (reader && xmlTextReaderRead(reader.get()) == 1) {
        if (xmlTextReaderNodeType(reader.get()) == XML_READER_TYPE_ELEMENT &&
            elementName == reinterpret_cast<const char*>(xmlTextReaderConstLocalName(reader.get()))) {
            const std::unique_ptr<xmlChar, void (*)(void*)> text(xmlTextReaderReadString(reader.get()), xmlFree);
            texts.emplace_back(text ? reinterpret_cast<const char*>(text.get()) : "");
        }
    }
    return texts;
}
