#include "DamagedBundle.h"

#include <algorithm>
#include <array>
#include <string_view>
#include <vector>

#include "MSPCXMLLoader.h"

namespace {

std::size_t below(std::mt19937& random, std::size_t count) {
    return count == 0 ? 0 : random() % count;
}

void damageBytes(std::string& bytes, std::mt19937& random) {
    const auto at = below(random, bytes.size());
    const auto length = std::min(below(random, 200), bytes.size() - at);
    switch (random() % 6) {
        case 0:
            bytes.resize(at);
            break;
        case 1:
            bytes.erase(at, length);
            break;
        case 2:
            bytes.insert(at, bytes.substr(below(random, bytes.size()), length));
            break;
        case 3:
            for (std::size_t i = at; i < at + length; ++i) {
                bytes[i] = static_cast<char>(random());
            }
            break;
        case 4:
            bytes.insert(at, std::array<const char*, 6>{"<", "&", "]]>", "\x01", "\xFF",
                                                        "<!DOCTYPE a [<!ENTITY b '&b;'>]>"}[random() % 6]);
            break;
        default:
            bytes.clear();
    }
}

std::vector<MSPCXMLNode> elementsOf(const MSPCXMLDocument& document) {
    auto elements = document.root().nodesForXPath("descendant-or-self::*");
    return elements ? std::move(*elements) : std::vector<MSPCXMLNode>();
}

// Values that are wrong in many places, or right in others.
std::string_view oddValue(std::mt19937& random) {
    constexpr std::array<std::string_view, 20> values = {"",
                                                         "t1",
                                                         "t-1",
                                                         "r1",
                                                         "r-1",
                                                         "-1",
                                                         "0",
                                                         "99999999999999999999",
                                                         "nan",
                                                         "group",
                                                         "split",
                                                         "2026-02-30T08:00:00Z",
                                                         "2026-05-04T08:00:00+02:00",
                                                         "999999999-12-31T23:59:59-26:59",
                                                         "-999999999-01-01T00:00:00Z",
                                                         "Actual.xml",
                                                         "__TOC.xml",
                                                         "..",
                                                         "\xC2\x9B"
                                                         "31m",
                                                         "Baseline"};
    return values[random() % values.size()];
}

void damageElement(MSPCXMLNode element, const std::vector<MSPCXMLNode>& others, std::mt19937& random) {
    constexpr std::array<std::string_view, 8> attributes = {"id",    "idref", "name",       "filename",
                                                            "start", "end",   "start-time", "day-of-week"};
    const auto other = others[below(random, others.size())];
    switch (random() % 5) {
        case 0:
            static_cast<void>(element.detach());
            break;
        case 1:
            element.parent().appendChild(element.newCopyOf(element));
            break;
        case 2:
            element.setAttribute(attributes[random() % attributes.size()], oddValue(random));
            break;
        case 3:
            element.setStringValue(oddValue(random));
            break;
        default:
            element.appendChild(element.newCopyOf(other));
    }
}

void damageStructure(std::string& bytes, std::mt19937& random) {
    const auto loaded = MSPCXMLLoader(MSPCXMLContent::Everything).loadBytes(bytes);
    if (!loaded) {
        return;
    }
    const auto& document = loaded->document;
    for (auto count = 1 + random() % 3; count > 0; --count) {
        const auto elements = elementsOf(document);
        const auto element = elements[below(random, elements.size())];
        if (element != document.root()) {
            damageElement(element, elements, random);
        }
    }
    bytes = document.serialized();
}

}  // namespace

std::map<std::string, std::string> damagedBundle(std::map<std::string, std::string> files, std::mt19937& random) {
    const auto file = std::next(files.begin(), static_cast<std::ptrdiff_t>(below(random, files.size())));
    switch (random() % 10) {
        case 0:
            files.erase(file);
            break;
        case 1:
        case 2:
        case 3:
        case 4:
            damageBytes(file->second, random);
            break;
        default:
            damageStructure(file->second, random);
    }
    return files;
}
