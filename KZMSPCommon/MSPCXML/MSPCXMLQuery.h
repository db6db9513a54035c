#pragma once

#include <string_view>

#include "MSPCXMLNode.h"

// Paths of plain child names ("Name", "Tasks/Task"): the bulk of all queries, answered by walking the children, with
// the answer that the query engine would give.

// Whether a query is such a path, in ASCII letters, digits, "_", "-" and ".".
[[nodiscard]] bool isPlainChildPath(std::string_view query);

// The same for one step.
[[nodiscard]] bool isPlainChildName(std::string_view query);

// Calls `visit` with each element at the path below `node`, in document order, without allocating anything.
template <typename Visit>
void visitPlainChildPath(const MSPCXMLNode& node, std::string_view path, Visit&& visit) {
    const auto slash = path.find('/');
    const auto name = path.substr(0, slash);
    for (auto child = node.firstChildElement(name); child; child = child.nextSiblingElement(name)) {
        if (slash == std::string_view::npos) {
            visit(child);
        } else {
            visitPlainChildPath(child, path.substr(slash + 1), visit);
        }
    }
}
