#pragma once

#include "KZDXPageDocument.h"
#include "KZDXPageSubject.h"

// Everything that the page shows, as one JSON object: "title", "source", "settings", "scenario" (the actual one with
// its tasks, links, resources and schedule), "baselines", "losses" (null for a document) and "notes".
[[nodiscard]] KZDXPageJSON KZDXPageData(const KZDXPageDocument& document, const KZDXPageSubject& subject);
// The title of the document; the name of what is shown where it has none.
[[nodiscard]] std::string KZDXPageTitle(const KZDXPageDocument& document, const KZDXPageSubject& subject);
