#pragma once

#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "KZDXFiles.h"
#include "KZDXXMLFile.h"

inline constexpr std::string_view KZDXContentsName = "__TOC.xml";
inline constexpr std::string_view KZDXActualName = "Actual.xml";
inline constexpr std::string_view KZDXActualScenario = "Actual";

// A scenario that the table of contents names.
struct KZDXEntry {
    MSPCXMLNode element;
    std::string_view id;        // each empty where it is missing
    std::string_view name;      // "Actual", "Baseline", "Baseline1" ...
    std::string_view filename;  // in the bundle

    // Whether the file name is one of a file in the bundle itself: nothing outside of it is ever opened.
    [[nodiscard]] bool staysInBundle() const;
};

// The table of contents of a bundle.
class KZDXContents {
public:
    explicit KZDXContents(KZDXXMLFile file);

    [[nodiscard]] const KZDXXMLFile& file() const { return _file; }
    [[nodiscard]] MSPCXMLNode root() const { return _file.root(); }
    [[nodiscard]] const MSPCXMLNode& window() const { return _window; }    // empty where it is missing
    [[nodiscard]] const MSPCXMLNode& project() const { return _project; }  // empty where it is missing
    [[nodiscard]] const std::vector<KZDXEntry>& entries() const { return _entries; }
    // The first namespace that the root element declares; empty where it declares none.
    [[nodiscard]] std::string_view namespaceURI() const { return _namespaceURI; }
    // The first scenario of that name; a null pointer where there is none.
    [[nodiscard]] const KZDXEntry* entryNamed(std::string_view name) const;

private:
    KZDXXMLFile _file;
    MSPCXMLNode _window;
    MSPCXMLNode _project;
    std::string_view _namespaceURI;
    std::vector<KZDXEntry> _entries;
    std::vector<std::size_t> _byName;  // entries, sorted: a table of contents may name very many
};
