// What becomes of what a task holds.
#include "MSPCTextScanner.h"
#include "MSPDIArrival.h"
#include "MSPDIConditions.h"
#include "MSPDIElementTree.h"
#include "MSPDITaskView.h"
#include "MSPDIValues.h"

namespace {

const MSPDITaskFacts& factsOf(const MSPDILeaf& leaf) {
    return leaf.item.facts.tasks[leaf.item.position];
}

MSPDIJudgement repeated() {
    return {MSPDIFate::Lost, "repeated-element"};
}

// A rule's answer that nothing arrives, with what the line says about it.
MSPDIJudgement told(const MSPDIJudgement& judgement, const MSPDILeaf& leaf) {
    const bool isLeftToLine = judgement.fate == MSPDIFate::Lost && judgement.kind.empty();
    return isLeftToLine ? lostUnlessDefault(leaf) : judgement;
}

MSPDIJudgement ofEmptyRow(const MSPDILeaf& leaf) {
    const bool saysNothing = leaf.text.empty() || MSPDIIsOneOf(leaf.text, "0|1|500");
    return saysNothing ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, "empty-row");
}

// Of the project's summary task its dates arrive; most else is computed from the tasks.
MSPDIJudgement ofRoot(const MSPDILeaf& leaf) {
    const auto name = leaf.name();
    if (name == "Start" || name == "Finish") {
        return leaf.text.empty() ? MSPDIUnlessBaselineHasOne(leaf, MSPDIFate::Default)
                                 : MSPDIArrival::ofDate(leaf.item.facts, leaf.text);
    }
    if (name == "Name") {
        const bool saysNothing = leaf.text.empty() || leaf.item.facts.isProjectName(leaf.text);
        return saysNothing ? MSPDIJudgement(MSPDIFate::Default) : MSPDIJudgement(MSPDIFate::Lost, "summary-task");
    }
    if (name == "Notes" || name == "FixedCost" || name == "Priority") {
        return lostUnlessDefault(leaf);
    }
    return MSPDIFate::Derived;
}

MSPDIJudgement inAnyScenario(const MSPDILeaf& leaf) {
    const auto judgement = leaf.element.rule(MSPDITaskView(leaf.item, MSPDIPlanFacts::Actual), leaf.text);
    if (judgement.arrives()) {
        return judgement;
    }
    bool letsBaselineIn = false;  // whose value counts only where the task has a field of that name
    for (const auto& [number, baseline] : leaf.item.baselines()) {
        const MSPDITaskView view(leaf.item, number, baseline);
        const bool isHidden = view.hides(leaf.name());
        const auto ofBaseline = leaf.element.rule(view, isHidden ? view.text(leaf.name()) : leaf.text);
        if (ofBaseline.arrives() && !isHidden) {
            return ofBaseline;
        }
        letsBaselineIn = letsBaselineIn || ofBaseline.arrives();
    }
    const auto itself = told(judgement, leaf);
    return letsBaselineIn ? MSPDIJudgement(MSPDIFate::Shaping, itself.kind) : itself;
}

// A custom field's value by the definition that counts for it.
struct FieldValue {
    MSPCXMLNode owner;  // the ExtendedAttribute
    std::optional<std::size_t> definition;
};

FieldValue fieldValueOf(const MSPDILeaf& leaf) {
    FieldValue value{leaf.node.parent(), std::nullopt};
    if (const auto id = leaf.item.lastChild(value.owner, "FieldID").element) {
        const auto position = leaf.item.facts.definitionOf(id.stringValue());
        if (position && leaf.item.facts.definitions[*position].hasName) {
            value.definition = position;
        }
    }
    return value;
}

MSPDIJudgement valueOfField(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return repeated();
    }
    const auto value = fieldValueOf(leaf);
    if (!value.definition) {
        return lostUnlessDefault(leaf);
    }
    // A later field of the same name takes the place of this one.
    const auto last = leaf.item.lastFieldOfName(leaf.item.facts.definitions[*value.definition].name);
    return last == value.owner ? MSPDIJudgement(MSPDIFate::Carried) : MSPDIJudgement(MSPDIFate::Lost, "repeated-field");
}

MSPDIJudgement idOfField(const MSPDILeaf& leaf) {
    if (!leaf.isLastOfItsName()) {
        return MSPDIFate::Default;
    }
    // It hides the one before, which may have a definition.
    const bool decides = !leaf.isOnlyOfItsName() || fieldValueOf(leaf).definition;
    return decides ? MSPDIFate::Shaping : MSPDIFate::Default;
}

// Whether a baseline has a number that no scenario is made of. It is told once, whatever it holds.
const MSPDIJudgement furtherBaseline(MSPDIFate::Lost, "further-baseline");

bool isFurtherBaseline(const MSPDIItem& item, const MSPCXMLNode& baseline) {
    return !item.baselineNumber(baseline) && item.lastChild(baseline, "Number").count == 1;
}

using Link = MSPDILinkFacts::Fate;

Link fateOfLink(const MSPDILeaf& leaf, const MSPCXMLNode& link) {
    if (factsOf(leaf).state != MSPDITaskState::Mapped) {
        return Link::Dropped;
    }
    const auto predecessor = leaf.item.lastChild(link, "PredecessorUID");
    const auto uid = MSPDISingleInteger(predecessor);
    if (!uid || *uid < 0) {
        return predecessor.count > 1 ? Link::InSomeScenario : Link::Dropped;
    }
    const auto count = leaf.item.facts.tasksWithUID(MSPCTaskUID{*uid});
    if (count > 1 && leaf.item.lastChild(leaf.item.node, "Baseline").count > 0) {
        return Link::InSomeScenario;  // where only one of them has the baseline
    }
    if (count != 1) {
        return Link::Dropped;
    }
    return leaf.item.facts.mappedTask(MSPCTaskUID{*uid}) ? Link::Carried : Link::LeadsNowhere;
}

Link linkOf(const MSPDILeaf& leaf) {
    const auto link = leaf.node.parent();
    return leaf.item.link.of(link, [&] { return MSPDILinkFacts{fateOfLink(leaf, link)}; }).fate;
}

// A part of a link that is told once.
MSPDIJudgement ofDroppedLink(const MSPDILeaf& leaf) {
    const bool isLost = lostUnlessDefault(leaf).fate == MSPDIFate::Lost;
    return isLost ? MSPDIJudgement(MSPDIFate::Lost, "dropped-link") : MSPDIJudgement(MSPDIFate::Default);
}

}  // namespace

MSPDIJudgement taskUID(const MSPDILeaf& leaf) {
    const bool isTold = factsOf(leaf).sharesUID && leaf.isLastOfItsName();
    return isTold ? MSPDIJudgement(MSPDIFate::Changed, "repeated-uid") : MSPDIFate::Shaping;
}

MSPDIJudgement taskField(const MSPDILeaf& leaf) {
    const auto state = factsOf(leaf).state;
    if (leaf.element.rule == MSPDITaskRules::shaping) {
        return MSPDIFate::Shaping;
    }
    if (state == MSPDITaskState::EmptyRow) {
        return leaf.element.rule == MSPDITaskRules::outlineLevel ? MSPDIJudgement(MSPDIFate::Shaping)
                                                                 : ofEmptyRow(leaf);
    }
    const bool isLast = leaf.isLastOfItsName();
    if (leaf.element.reading == MSPDIReading::Last && !isLast) {
        return repeated();
    }
    if (leaf.element.reading == MSPDIReading::Single && !leaf.isOnlyOfItsName()) {
        return MSPDIFate::Shaping;  // together they say nothing
    }
    if (state == MSPDITaskState::Root) {
        return leaf.element.rule == MSPDITaskRules::outlineLevel ? MSPDIJudgement(MSPDIFate::Shaping) : ofRoot(leaf);
    }
    return inAnyScenario(leaf);
}

MSPDIJudgement taskBaselineValue(const MSPDILeaf& leaf) {
    const auto baseline = leaf.node.parent();
    const auto state = factsOf(leaf).state;
    const auto number = leaf.item.baselineNumber(baseline);
    const auto* const known = leaf.item.known.child(leaf.name());
    const auto* const field = known == nullptr ? nullptr : known->element();
    const bool isRead = field != nullptr && field->rule != nullptr && leaf.item.fields.singleObject(leaf.name()) &&
                        state != MSPDITaskState::EmptyRow;
    if (!isRead || !number) {
        return unreadBaselineValue(leaf);
    }
    if (!leaf.item.countsAsBaseline(baseline) || !leaf.isLastOfItsName()) {
        return repeated();
    }
    if (leaf.item.lastChild(baseline, "Number").count > 1) {
        return MSPDIFate::Shaping;
    }
    if (state == MSPDITaskState::Root) {
        const bool hides = leaf.text.empty() && (leaf.name() == "Start" || leaf.name() == "Finish");
        return hides ? MSPDIJudgement(MSPDIFate::Shaping) : ofRoot(leaf);
    }
    if (field->reading == MSPDIReading::Single && leaf.item.lastChild(leaf.item.node, leaf.name()).count > 1) {
        return lostUnlessDefault(leaf);
    }
    const auto judgement = field->rule(MSPDITaskView(leaf.item, *number, baseline), leaf.text);
    if (judgement.arrives()) {
        return judgement;
    }
    // It may still hide what the task has.
    const MSPDITaskView shown(leaf.item, *number, baseline, leaf.name());
    return field->rule(shown, shown.text(leaf.name())).arrives() ? MSPDIJudgement(MSPDIFate::Shaping)
                                                                 : told(judgement, leaf);
}

MSPDIJudgement baselineNumber(const MSPDILeaf& leaf) {
    return isFurtherBaseline(leaf.item, leaf.node.parent()) ? furtherBaseline : MSPDIJudgement(MSPDIFate::Shaping);
}

MSPDIJudgement unreadBaselineValue(const MSPDILeaf& leaf) {
    const auto judgement = lostUnlessDefault(leaf);
    const auto baseline = leaf.node.parent();
    const bool isLost = judgement.fate == MSPDIFate::Lost;
    return isLost && isFurtherBaseline(leaf.item, baseline) ? furtherBaseline : judgement;
}

MSPDIJudgement taskFieldID(const MSPDILeaf& leaf) {
    return factsOf(leaf).state == MSPDITaskState::EmptyRow ? MSPDIJudgement(MSPDIFate::Default) : idOfField(leaf);
}

MSPDIJudgement taskFieldValue(const MSPDILeaf& leaf) {
    return factsOf(leaf).state == MSPDITaskState::Mapped ? valueOfField(leaf) : lostUnlessDefault(leaf);
}

MSPDIJudgement resourceFieldID(const MSPDILeaf& leaf) {
    return leaf.item.facts.resources[leaf.item.position].isMapped ? idOfField(leaf)
                                                                  : MSPDIJudgement(MSPDIFate::Default);
}

MSPDIJudgement resourceFieldValue(const MSPDILeaf& leaf) {
    return leaf.item.facts.resources[leaf.item.position].isMapped ? valueOfField(leaf) : lostUnlessDefault(leaf);
}

MSPDIJudgement linkPredecessor(const MSPDILeaf& leaf) {
    switch (linkOf(leaf)) {
        case Link::Carried:
            return MSPDIFate::Carried;
        case Link::InSomeScenario:
            return {MSPDIFate::Shaping, "dropped-link"};  // of the plan itself it is gone, whatever a baseline keeps
        case Link::LeadsNowhere:                          // to an empty row or the project's summary task
            return {MSPDIFate::Changed, "dropped-link"};
        default:
            return {MSPDIFate::Lost, "dropped-link"};
    }
}

MSPDIJudgement linkType(const MSPDILeaf& leaf) {
    constexpr std::int64_t lastType = 3;
    const auto link = linkOf(leaf);
    if (link == Link::Dropped) {
        return ofDroppedLink(leaf);
    }
    if (link == Link::InSomeScenario || !leaf.isOnlyOfItsName()) {
        return MSPDIFate::Shaping;
    }
    const auto type = scanInteger64(leaf.text).value_or(-1);
    return type >= 0 && type <= lastType ? MSPDIJudgement(MSPDIFate::Carried)
                                         : MSPDIJudgement(MSPDIFate::Lost, "link-type");
}

MSPDIJudgement linkLag(const MSPDILeaf& leaf) {
    return linkOf(leaf) == Link::Dropped ? ofDroppedLink(leaf) : lostUnlessDefault(leaf);
}

MSPDIJudgement unitOfLag(const MSPDILeaf& /*leaf*/) {
    return MSPDIFate::Default;
}

MSPDIJudgement taskMilestone(const MSPDILeaf& leaf) {
    const auto& facts = factsOf(leaf);
    const bool hasNoDuration = MSPDISeconds(leaf.item.fields.text("Duration").textOrEmpty()).value_or(0) == 0 ||
                               !leaf.item.fields.singleObject("Duration");
    const bool isOne = MSPDIIsTrue(leaf.text);
    const bool becomesOne = facts.state == MSPDITaskState::Mapped && hasNoDuration && !facts.isSummary;
    const bool isTold = facts.state == MSPDITaskState::Mapped && !facts.isSummary && isOne != becomesOne;
    return isTold ? MSPDIJudgement(MSPDIFate::Lost, "milestone") : MSPDIJudgement(MSPDIFate::Derived);
}

// What is done says the percentages that arrive; where there are none, it says more than arrives.
MSPDIJudgement actualAmount(const MSPDILeaf& leaf) {
    const bool hasPercentage =
        leaf.item.fields.singleObject("PercentWorkComplete") || leaf.item.fields.singleObject("PercentComplete");
    const bool isTold = factsOf(leaf).state == MSPDITaskState::Mapped && !factsOf(leaf).isSummary && !hasPercentage;
    return isTold ? lostUnlessDefault(leaf) : MSPDIJudgement(MSPDIFate::Derived);
}

MSPDIJudgement taskWBS(const MSPDILeaf& leaf) {
    const auto number = leaf.item.fields.text("OutlineNumber");
    const bool saysTheSame = number && number.textOrEmpty() == leaf.text;
    return saysTheSame ? MSPDIJudgement(MSPDIFate::Derived) : lostUnlessDefault(leaf);
}

MSPDIJudgement elapsedDuration(const MSPDILeaf& leaf) {
    const auto format = scanInteger64(leaf.text).value_or(0);
    // Elapsed minutes, hours, days, weeks and months are the even ones; from 32 on the same ones are estimated.
    const auto unit = format >= 35 ? format - 32 : format;
    const bool isElapsed = (unit >= 4 && unit <= 12 && unit % 2 == 0) || unit == 20;
    return isElapsed ? MSPDIJudgement(MSPDIFate::Lost, "elapsed-duration") : MSPDIJudgement(MSPDIFate::Default);
}
