#pragma once

#include <gtest/gtest.h>

#include <string>
#include <string_view>
#include <utility>

#include "MSPCXMLDocument.h"

// The line with which every written document begins.
inline const std::string XMLDeclaration = "<?xml version=\"1.0\" encoding=\"UTF-8\"?>\n";

// The document in a text that needs no mending; the test fails when it is no XML.
inline MSPCXMLDocument xmlDocument(std::string_view text, MSPCXMLContent content = MSPCXMLContent::Everything) {
    auto document = MSPCXMLDocument::read(std::string(text), {.content = content});
    EXPECT_TRUE(document) << "no XML: " << text.substr(0, 200);
    return document ? std::move(*document) : MSPCXMLDocument();
}
