#include <fmt/format.h>

#include <algorithm>
#include <cstring>
#include <optional>
#include <set>
#include <string>
#include <string_view>
#include <utility>
#include <vector>

#include "MSPCTextScanner.h"
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

// Those of a tag, up to the first place that is none.
std::vector<Attribute> attributesOf(std::string_view bytes, std::size_t begin, std::size_t end) {
    std::vector<Attribute> attributes;
    while (begin < end) {
        const auto nameBegin = bytes.find_first_not_of(MSPCXMLLexis::Blanks, begin);
        const auto size = begin < nameBegin && nameBegin < end ? MSPCXMLLexis::endOfName(bytes.substr(nameBegin)) : 0;
        const auto opening = size == 0 ? npos : bytes.find_first_of("\"'", nameBegin + size);
        const auto closing = opening == npos ? npos : bytes.find(bytes[opening], opening + 1);
        if (closing == npos || closing > end ||
            trimmed(bytes.substr(nameBegin + size, opening - nameBegin - size)) != "=") {
            break;
        }
        attributes.push_back(
            {bytes.substr(nameBegin, size), bytes.substr(opening + 1, closing - opening - 1), begin, closing + 1});
        begin = closing + 1;
    }
    return attributes;
}

// A start tag, also one that is broken: none goes on behind the next "<".
struct StartTag {
    std::size_t end;  // behind its ">", or where that would have to be
    std::vector<Attribute> attributes;
    bool isSound;  // all of it is a name and attributes, each once
};

bool hasEachOnce(const std::vector<Attribute>& attributes) {
    std::set<std::string_view> names;
    return std::all_of(attributes.begin(), attributes.end(),
                       [&](const auto& attribute) { return names.insert(attribute.name).second; });
}

// Where the next tag or section begins, behind a "<" that begins something else.
std::size_t nextMarkupBehind(std::string_view bytes, std::size_t begin) {
    auto next = bytes.find('<', begin + 1);
    while (next + 1 < bytes.size() && !MSPCXMLLexis::hasClass(bytes[next + 1], MSPCXMLLexis::NameStart) &&
           std::string_view("/!?").find(bytes[next + 1]) == npos) {
        next = bytes.find('<', next + 1);
    }
    return std::min(next, bytes.size());
}

StartTag startTagAt(std::string_view bytes, std::size_t begin) {
    const auto next = nextMarkupBehind(bytes, begin);
    const auto nameEnd = begin + 1 + MSPCXMLLexis::endOfName(bytes.substr(std::min(begin + 1, bytes.size())));
    const auto end = MSPDIEndOfTag(bytes, begin);
    if (end <= next && end > nameEnd && bytes[end - 1] == '>') {
        const auto closing = end - (bytes[end - 2] == '/' ? 2 : 1);
        auto attributes = attributesOf(bytes, nameEnd, closing);
        const auto rest = attributes.empty() ? nameEnd : attributes.back().end;
        if (MSPCXMLLexis::isAllBlank(bytes.substr(rest, closing - rest)) && hasEachOnce(attributes)) {
            return {end, std::move(attributes), true};
        }
    }
    const auto tag = bytes.substr(0, next);
    const auto closing = tag.rfind('>');
    const auto last = closing == npos || closing < nameEnd ? tag.find_last_not_of(MSPCXMLLexis::Blanks) : closing;
    return {last + 1, {}, false};
}

// Whether the name of a tag from an offset on is one that is looked for.
template <typename IsWanted>
bool holdsTagNamed(std::string_view bytes, std::size_t begin, const IsWanted& isWanted) {
    for (auto tag = bytes.find('<', begin); tag != npos; tag = bytes.find('<', begin)) {
        const auto sectionEnd = MSPCXMLLexis::endOfSection(bytes, tag);
        begin = sectionEnd == tag ? MSPDIEndOfTag(bytes, tag) : sectionEnd;
        if (sectionEnd == tag) {
            const auto name = tag + (bytes.substr(tag, 2) == "</" ? 2 : 1);
            if (isWanted(bytes.substr(name, MSPCXMLLexis::endOfName(bytes.substr(name))))) {
                return true;
            }
        }
    }
    return false;
}

class NamespaceMend {
public:
    explicit NamespaceMend(std::string& plan)
        : _plan(plan),
          _bytes(plan),
          _rootBegin(MSPCXMLLexis::prologOf(plan).end),
          _rootTag(startTagAt(plan, _rootBegin)) {}

    bool mend() {
        const auto nameSize = MSPCXMLLexis::endOfName(_bytes.substr(std::min(_rootBegin + 1, _bytes.size())));
        const auto name = nameSize == 0 ? std::string_view() : _bytes.substr(_rootBegin + 1, nameSize);
        _prefix = prefixOf(name);
        if (localNameOf(name) != "Project" || !holdsList()) {
            return false;
        }
        const auto nameEnd = _rootBegin + 1 + nameSize;
        if (_rootTag.isSound) {
            mendAttributes(nameEnd);
        } else {
            _edits.replace(nameEnd, _rootTag.end, fmt::format(" xmlns=\"{}\">", planNamespace));
        }
        if (_edits.isEmpty()) {
            return false;
        }
        _plan = _edits.appliedTo(std::move(_plan));
        if (!_prefix.empty() && std::find(_prefixes.begin(), _prefixes.end(), _prefix + ":") == _prefixes.end()) {
            _prefixes.push_back(_prefix + ":");
        }
        if (!_prefixes.empty()) {
            dropPrefixes();
        }
        return true;
    }

private:
    bool holdsList() const {
        return holdsTagNamed(_bytes, _rootTag.end, [&](std::string_view name) {
            const auto* list = std::find(std::begin(planLists), std::end(planLists), localNameOf(name));
            return prefixOf(name) == _prefix && list != std::end(planLists);
        });
    }

    // Of the declarations the one of plans stays; those whose prefixes are used go to the elements that use them, and
    // attributes of the root that have a prefix go.
    void mendAttributes(std::size_t nameEnd) {
        bool isDeclared = false;
        std::optional<std::size_t> firstEdit;
        for (const auto& attribute : _rootTag.attributes) {
            const bool isDefault = attribute.name == "xmlns";
            const bool isDeclaration = isDefault || prefixOf(attribute.name) == "xmlns";
            if (isDefault && _prefix.empty() && attribute.value == planNamespace) {
                isDeclared = true;
            } else if (isDeclaration || (!prefixOf(attribute.name).empty() && prefixOf(attribute.name) != "xml")) {
                const auto edit = _edits.replace(attribute.begin, attribute.end, {});
                firstEdit = firstEdit.value_or(edit);
                const bool isOfPlans = attribute.value == planNamespace || localNameOf(attribute.name) == _prefix;
                if (isDeclaration && !isDefault && isOfPlans) {
                    _prefixes.push_back(std::string(localNameOf(attribute.name)) + ":");
                } else if (isDeclaration && !isDefault) {
                    declareWhereUsed(localNameOf(attribute.name), attribute.value);
                }
            }
        }
        // In the place of another one it needs no room that the plan does not have.
        if (!isDeclared) {
            _edits.setText(firstEdit ? *firstEdit : _edits.replace(nameEnd, nameEnd, {}),
                           fmt::format(" xmlns=\"{}\"", planNamespace));
        }
    }

    void declareWhereUsed(std::string_view prefix, std::string_view uri) {
        const auto inName = fmt::format("{}:", prefix);
        for (auto begin = _bytes.find('<', _rootTag.end); begin != npos && !_bytes.substr(begin).starts_with("</");) {
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

    // Behind the ">" of the tag whose name begins there; nearly all tags hold a name only.
    static std::size_t endOfTagNamed(std::string_view bytes, std::size_t name) {
        auto end = name;
        while (end < bytes.size() && MSPCXMLLexis::hasClass(bytes[end], MSPCXMLLexis::NamePart)) {
            ++end;
        }
        return end < bytes.size() && bytes[end] == '>' ? end + 1 : MSPDIEndOfTag(bytes, end);
    }

    // In its own place, since nearly every tag becomes shorter.
    void dropPrefixes() {
        const std::string_view bytes(_plan);
        std::size_t kept = 0;
        std::size_t copied = 0;
        const auto keepUntil = [&](std::size_t end) {
            std::memmove(_plan.data() + kept, _plan.data() + copied, end - copied);
            kept += end - copied;
        };
        for (auto tag = bytes.find('<', _rootBegin); tag != npos;) {
            const auto sectionEnd = MSPCXMLLexis::endOfSection(bytes, tag);
            const auto name = tag + (bytes.substr(tag, 2) == "</" ? 2 : 1);
            const auto prefix = std::find_if(_prefixes.begin(), _prefixes.end(), [&](const auto& candidate) {
                return bytes.substr(name).starts_with(candidate);
            });
            if (sectionEnd == tag && prefix != _prefixes.end()) {
                keepUntil(name);
                copied = name + prefix->size();
            }
            tag = bytes.find('<', sectionEnd == tag ? endOfTagNamed(bytes, name) : sectionEnd);
        }
        keepUntil(_plan.size());
        _plan.resize(kept);
    }

    std::string& _plan;
    std::string_view _bytes;  // until they change
    std::size_t _rootBegin;
    StartTag _rootTag;
    std::string _prefix;
    std::vector<std::string> _prefixes;  // of plans, with their colons
    MSPDIEdits _edits;
};

}  // namespace

bool MSPDIIsRootTagSound(std::string_view utf8) {
    return startTagAt(utf8, MSPCXMLLexis::prologOf(utf8).end).isSound;
}

bool MSPDIGiveOneNamespace(std::string& utf8) {
    return NamespaceMend(utf8).mend();
}
