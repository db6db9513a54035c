#pragma once

#include <span>
#include <string_view>

#include "MSPDIElement.h"
#include "MSPDIElementTree.h"

// The table of element paths: what becomes of every leaf that plans are known to have.
[[nodiscard]] std::span<const MSPDIElement> MSPDIElements();

// Whether anything of the leaves of a line may reach the document, wherever they stand.
[[nodiscard]] bool MSPDIMayArrive(const MSPDIElement& element);

// The same as a tree of names, from the project on.
[[nodiscard]] const MSPDIElementTree& MSPDIProjectElements();

// The line for a leaf of a name below a parent ("Tasks/Task"); a null pointer where there is none.
[[nodiscard]] const MSPDIElement* MSPDIElementAt(std::string_view parent, std::string_view name);
