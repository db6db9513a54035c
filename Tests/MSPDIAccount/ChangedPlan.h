#pragma once

#include <map>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MSPCXMLDocument.h"
#include "MSPDIFate.h"
#include "ServicesInMemory.h"

// A plan whose leaves can be taken out or given another value, imported again each time. Ids and times are the same in
// all imports, so that documents can be compared byte by byte.
class ChangedPlan {
public:
    using Bundle = std::map<std::string, std::string>;

    explicit ChangedPlan(std::string bytes);

    [[nodiscard]] bool isImported() const { return _original.has_value(); }
    // The path and the fate of every leaf, in order.
    [[nodiscard]] const std::vector<std::pair<std::string, MSPDIFate>>& fates() const { return _fates; }
    // All leaves of the document by their paths, counted here.
    [[nodiscard]] const std::map<std::string, std::string>& leaves() const { return _texts; }
    [[nodiscard]] const std::string& textAt(const std::string& path) const { return _texts.at(path); }

    // Whether the document is the same without these leaves.
    [[nodiscard]] bool isSameWithout(const std::vector<std::string>& paths) const;
    // Whether it is the same with that value in a leaf.
    [[nodiscard]] bool isSameWith(const std::string& path, const std::string& value) const;
    // The plan with an element of a name that nobody knows, put in a place that `seed` draws, and its path.
    [[nodiscard]] std::pair<std::string, std::string> withUnknownElement(unsigned seed) const;
    // All values of the leaves whose path without numbers is this one.
    [[nodiscard]] const std::vector<std::string>& valuesAt(const std::string& elementPath) const;

private:
    [[nodiscard]] std::optional<Bundle> importOf(const MSPCXMLDocument& plan) const;
    [[nodiscard]] MSPCXMLDocument copy() const;

    std::string _bytes;
    std::optional<Bundle> _original;
    std::vector<std::pair<std::string, MSPDIFate>> _fates;
    std::map<std::string, std::string> _texts;  // of the leaves by path
    std::map<std::string, std::vector<std::string>> _values;
};

// "/Project/Tasks[1]/Task[4]/Name[1]" as "Tasks/Task/Name".
[[nodiscard]] std::string withoutNumbers(const std::string& path);
