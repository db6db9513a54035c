#pragma once

#include <string>
#include <string_view>

struct MSPDIRefusal;

// What the importer tells, in words for people who do not know its inside.

// Why a plan was refused, in one line: "a resource is neither work nor material (Invalid value of 'Type' in 'Resource':
// '2' (Resource UID='3' name='Travel').)". The importer's own words alone where they are plain enough.
[[nodiscard]] std::string MSPDIReasonInWords(const MSPDIRefusal& refusal);
// Whether not the plan is to blame, but the template that it was to be imported into.
[[nodiscard]] bool MSPDIBlamesTemplate(const MSPDIRefusal& refusal);
// A warning, as it stands behind "WARNING: ": what of it is known in words, the others as they are.
[[nodiscard]] std::string MSPDIWarningInWords(std::string_view warning);
