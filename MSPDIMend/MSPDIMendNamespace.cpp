#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "MSPCXMLLexis.h"
#include "MSPDIEdits.h"
#include "MSPDIMarkup.h"
#include "MSPDIMendPasses.h"

namespace {

constexpr auto npos = std::string_view::npos;
constexpr std::string_view planNamespace = "http://schemas.microsoft.com/project";
constexpr std::string_view planLists[] = {"Tasks", "Resources", "Calendars"};

struct Attribute {
    std::string_view name;
    std::string_view value;
    std::size_t begin;  // with the blanks before it
    std::size_t end;
};

std::string_view prefixOf(std::string_view name) {
    const auto colon = name.find(':');
    return colon == npos ? std::string_view() : name.substr(0, colon);
}

std::string_view localNameOf(std::string_view name) {
    const auto colon = name.find(':');
    return colon == npos ? name : name.substr(colon + 1);
}

std::vector<Attribute> attributesOf(std::string_view bytes, std::size_t begin, std::size_t end) {
    std::vector<Attribute> attributes;
    while (begin < end) {
        const auto nameBegin = bytes.find_first_not_of(MSPCXMLLexis::Blanks, begin);
        const auto size = nameBegin < end ? MSPCXMLLexis::endOfName(bytes.substr(nameBegin)) : 0;
        const auto opening = size == 0 ? npos : bytes.find_first_of("\"'", nameBegin + size);
        const auto closing = opening == npos ? npos : bytes.find(bytes[opening], opening + 1);
        if (closing == npos || closing > end) {
            break;
        }
        attributes.push_back(
            {bytes.substr(nameBegin, size), bytes.substr(opening + 1, closing - opening - 1), begin, closing + 1});
        begin = closing + 1;
    }
    return attributes;
}

// Calls `visit` with the offset and the text of each name of a tag from an offset on, until it says that this was
// enough; whether it did.
template <typename Visit>
bool visitTagNames(std::string_view bytes, std::size_t begin, const Visit& visit) {
    for (auto tag = bytes.find('<', begin); tag != npos; tag = bytes.find('<', begin)) {
        const auto sectionEnd = MSPCXMLLexis::endOfSection(bytes, tag);
        begin = sectionEnd == tag ? MSPDIEndOfTag(bytes, tag) : sectionEnd;
        if (sectionEnd == tag) {
            const auto name = tag + (bytes.substr(tag).starts_with("</") ? 2 : 1);
            if (visit(name, bytes.substr(name, MSPCXMLLexis::endOfName(bytes.substr(name))))) {
                return true;
            }
        }
    }
    return false;
}

class NamespaceMend {
public:
    explicit NamespaceMend(std::string_view bytes)
        : _bytes(bytes),
          _rootBegin(MSPCXMLLexis::prologOf(bytes).end),
          _contentBegin(MSPDIEndOfTag(bytes, _rootBegin)) {}

    std::optional<std::string> mended() {
        const auto nameSize = MSPCXMLLexis::endOfName(_bytes.substr(std::min(_rootBegin + 1, _bytes.size())));
        const auto name = nameSize == 0 ? std::string_view() : _bytes.substr(_rootBegin + 1, nameSize);
        _prefix = prefixOf(name);
        if (localNameOf(name) != "Project" || !holdsList()) {
            return std::nullopt;
        }
        mendRootTag(_rootBegin + 1 + nameSize);
        if (_edits.isEmpty()) {
            return std::nullopt;
        }
        auto mended = _edits.appliedTo(std::string(_bytes));
        if (!_prefix.empty()) {
            dropPrefixIn(mended);
        }
        return mended;
    }

private:
    bool holdsList() const {
        return visitTagNames(_bytes, _contentBegin, [&](std::size_t, std::string_view name) {
            const auto* list = std::find(std::begin(planLists), std::end(planLists), localNameOf(name));
            return prefixOf(name) == _prefix && list != std::end(planLists);
        });
    }

    // Of the declarations the one of plans stays; those whose prefixes are used go to the elements that use them, and
    // attributes of the root that have a prefix go.
    void mendRootTag(std::size_t nameEnd) {
        bool isDeclared = false;
        for (const auto& attribute : attributesOf(_bytes, nameEnd, _contentBegin - 1)) {
            const bool isDefault = attribute.name == "xmlns";
            const bool isDeclaration = isDefault || prefixOf(attribute.name) == "xmlns";
            if (isDefault && _prefix.empty() && attribute.value == planNamespace) {
                isDeclared = true;
            } else if (isDeclaration || (!prefixOf(attribute.name).empty() && prefixOf(attribute.name) != "xml")) {
                _edits.replace(attribute.begin, attribute.end, {});
                if (isDeclaration && !isDefault && localNameOf(attribute.name) != _prefix) {
                    declareWhereUsed(localNameOf(attribute.name), attribute.value);
                }
            }
        }
        if (!isDeclared) {
            _edits.replace(nameEnd, nameEnd, fmt::format(" xmlns=\"{}\"", planNamespace));
        }
    }

    void declareWhereUsed(std::string_view prefix, std::string_view uri) {
        const auto inName = fmt::format("{}:", prefix);
        for (auto begin = _bytes.find('<', _contentBegin); begin != npos && !_bytes.substr(begin).starts_with("</");) {
            const auto sectionEnd = MSPCXMLLexis::endOfSection(_bytes, begin);
            if (sectionEnd != begin) {
                begin = _bytes.find('<', sectionEnd);
                continue;
            }
            const auto child = MSPDIExtentOfElement(_bytes, begin);
            const auto markup = _bytes.substr(child.begin, child.end - child.begin);
            if (markup.find("<" + inName) != npos || markup.find(" " + inName) != npos) {
                const auto place = child.begin + 1 + MSPCXMLLexis::endOfName(_bytes.substr(child.begin + 1));
                _edits.replace(place, place, fmt::format(" xmlns:{}=\"{}\"", prefix, uri));
            }
            begin = _bytes.find('<', child.end);
        }
    }

    // In its own place, since nearly every tag becomes shorter.
    void dropPrefixIn(std::string& plan) const {
        std::size_t kept = 0;
        std::size_t copied = 0;
        const auto keepUntil = [&](std::size_t end) {
            std::memmove(plan.data() + kept, plan.data() + copied, end - copied);
            kept += end - copied;
        };
        visitTagNames(plan, _rootBegin, [&](std::size_t offset, std::string_view name) {
            if (prefixOf(name) == _prefix) {
                keepUntil(offset);
                copied = offset + _prefix.size() + 1;
            }
            return false;
        });
        keepUntil(plan.size());
        plan.resize(kept);
    }

    std::string_view _bytes;
    std::size_t _rootBegin;
    std::size_t _contentBegin;
    std::string_view _prefix;
    MSPDIEdits _edits;
};

}  // namespace

std::optional<std::string> MSPDIPlanOfOneNamespace(std::string_view utf8) {
    return NamespaceMend(utf8).mended();
}
