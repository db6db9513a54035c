#pragma once

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLDocument.h"

class KZDXFiles;

// Why a file is no XML that a strict parser takes.
struct KZDXXMLError {
    int line = 0;  // from 1; 0 for the file as a whole
    std::string reason;
};

// One XML file of a bundle, well-formed in every respect, that knows the lines of its elements.
class KZDXXMLFile {
public:
    // Reads the bytes of a file, in any encoding that it names; none when they are not well-formed, with the reason.
    [[nodiscard]] static std::optional<KZDXXMLFile> read(std::string name, std::string bytes, KZDXXMLError& error);
    // The same of a file of a bundle; none as well where it cannot be read. The reason names the file, and the line.
    [[nodiscard]] static std::optional<KZDXXMLFile> readFrom(KZDXFiles& files, const std::string& name,
                                                             std::string& failure);

    [[nodiscard]] const std::string& name() const { return _name; }
    [[nodiscard]] MSPCXMLNode root() const { return _document.root(); }
    // The line of an element's name, from 1; 0 for an empty handle.
    [[nodiscard]] int lineOf(const MSPCXMLNode& element) const;

private:
    KZDXXMLFile(std::string name, MSPCXMLDocument document, std::vector<std::uint32_t> lineEnds);

    std::string _name;
    MSPCXMLDocument _document;
    std::vector<std::uint32_t> _lineEnds;  // where they stand in the bytes
};

// Whether the first bytes of a file, some `KZDXBeginningSize` of them, are those of XML.
inline constexpr std::size_t KZDXBeginningSize = 4096;
[[nodiscard]] bool KZDXBeginsAsXML(std::string_view beginning);

// What the rules and the comparison ask an element for. Texts that are in one piece are not copied.

// The value of an attribute; none where it is missing. Valid as long as the document.
[[nodiscard]] std::optional<std::string_view> KZDXAttribute(const MSPCXMLNode& element, std::string_view name);
// The text of a child element; none where there is no such child.
[[nodiscard]] std::optional<std::string> KZDXChildText(const MSPCXMLNode& element, std::string_view name);
// The next element among a node and its following siblings; empty where there is none.
[[nodiscard]] MSPCXMLNode KZDXElementFrom(MSPCXMLNode node);
// A whole number in decimal digits, with a minus sign perhaps; none for any other text, and beyond 64 bits.
[[nodiscard]] std::optional<std::int64_t> KZDXInteger(std::string_view text);
// A finite decimal number without an exponent; none for any other text.
[[nodiscard]] std::optional<double> KZDXNumber(std::string_view text);
