#pragma once

#include <cstddef>
#include <string_view>

#include "MSPCXMLNode.h"
#include "MSPDIFate.h"
#include "MSPDIItem.h"

struct MSPDIElement;

// A fate, and what kind of loss it is, where it is to be told.
struct MSPDIJudgement {
    MSPDIFate fate = MSPDIFate::Default;
    std::string_view kind;  // one of `MSPDIKinds`, or empty

    MSPDIJudgement() = default;
    MSPDIJudgement(MSPDIFate of, std::string_view ofKind = {}) : fate(of), kind(ofKind) {}  // NOLINT

    // Whether anything of the leaf reaches the document.
    [[nodiscard]] bool arrives() const { return fate <= MSPDIFate::Shaping; }
};

// An element without child elements, and what the table says about its path.
struct MSPDILeaf {
    const MSPDIItem& item;
    const MSPDIElement& element;
    MSPCXMLNode node;
    std::string_view text;
    std::string_view nodeName;

    [[nodiscard]] std::string_view name() const { return nodeName; }
    [[nodiscard]] bool isLastOfItsName() const { return item.lastChild(node.parent(), name()).element == node; }
    [[nodiscard]] bool isOnlyOfItsName() const { return item.lastChild(node.parent(), name()).count == 1; }
};

using MSPDICondition = MSPDIJudgement (*)(const MSPDILeaf& leaf);

// Which of several children of one name the importer reads.
enum class MSPDIReading : unsigned char {
    Last,    // the last one
    Single,  // none at all unless it is the only one
};

class MSPDITaskView;
// What becomes of a field of a task in one scenario.
using MSPDITaskRule = MSPDIJudgement (*)(const MSPDITaskView& task, std::string_view text);

// A line of the table: what becomes of the leaves of these names below these parents.
struct MSPDIElement {
    std::string_view parent;       // below the project: "Tasks/Task"; empty for the project itself
    std::string_view names;        // with blanks between them
    MSPDICondition condition;      // decides, by what this line says and by where the leaf stands
    std::string_view defaults{};   // values that say nothing, "|" between them; an empty text says nothing anyway
    std::string_view kind{};       // of the loss
    MSPDITaskRule rule = nullptr;  // for fields of tasks that are read
    MSPDIReading reading = MSPDIReading::Last;
};
