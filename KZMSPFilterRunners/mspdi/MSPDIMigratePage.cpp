#include "MSPDIMigratePage.h"

#include <fmt/format.h>

#include <algorithm>
#include <nlohmann/json.hpp>
#include <ostream>

#include "MSPCMessage.h"
#include "MSPDIKinds.h"

namespace {

using JSON = nlohmann::ordered_json;

constexpr std::string_view beginning = R"html(<!DOCTYPE html>
<html lang="en">
<head>
<meta charset="utf-8">
<meta name="viewport" content="width=device-width, initial-scale=1">
<meta http-equiv="Content-Security-Policy" content="default-src 'none'; style-src 'unsafe-inline'; script-src 'unsafe-inline'">
<title>Migration of plans</title>
<style>
:root { color-scheme: light dark; --line: #8884; --soft: #8882; }
body { font: 15px/1.45 system-ui, sans-serif; margin: 2rem auto; max-width: 90rem; padding: 0 1.5rem; }
h1 { font-size: 1.5rem; margin: 0 0 .25rem; }
h2 { font-size: 1.05rem; margin: 0 0 .4rem; }
.sums { display: grid; gap: 1.5rem 2.5rem; grid-template-columns: repeat(auto-fit, minmax(17rem, 1fr)); margin: 1.5rem 0; }
.sums table { border-collapse: collapse; width: 100%; }
.sums td { border-bottom: 1px solid var(--line); padding: .2rem .3rem; vertical-align: top; }
.sums td:first-child { text-align: right; white-space: nowrap; width: 1%; }
.sums small { display: block; opacity: .75; }
td.number, th.number { font-variant-numeric: tabular-nums; }
.tools { align-items: center; display: flex; flex-wrap: wrap; gap: .6rem; margin: 1rem 0 .6rem; }
.tools input { flex: 1 1 18rem; }
.tools input, .tools select, .tools button { font: inherit; padding: .3rem .5rem; }
.wide { overflow-x: auto; }
#plans { border-collapse: collapse; width: 100%; }
#plans th, #plans td { border-bottom: 1px solid var(--line); padding: .3rem .5rem; text-align: left; vertical-align: top; }
#plans th { background: Canvas; position: sticky; top: 0; }
#plans th button { all: unset; cursor: pointer; font-weight: 600; }
#plans th button:focus-visible { outline: 2px solid; }
#plans td { overflow-wrap: anywhere; }
#plans td:nth-child(1), #plans td:nth-child(3), #plans td:nth-child(5) { min-width: 11rem; }
#plans td.number, #plans td.verdict { white-space: nowrap; overflow-wrap: normal; }
#plans td.number, #plans th.number { text-align: right; }
#plans tr:nth-child(even) td { background: var(--soft); }
.imported { color: #177a3a; } .refused { color: #a65b00; } .unreadable, .failed { color: #b3261e; }
@media (prefers-color-scheme: dark) {
  .imported { color: #6fd08c; } .refused { color: #f0b35e; } .unreadable, .failed { color: #ff8f86; }
}
@page { size: A4 landscape; margin: 10mm; }
@media print {
  :root { color-scheme: light; --line: #8888; --soft: #eee; }
  body { background: #fff; color: #000; font-size: 7.5pt; margin: 0; max-width: none; padding: 0; }
  .sums { display: block; columns: 3; margin: 4mm 0; } .sums section { break-inside: avoid-column; margin-bottom: 4mm; }
  .sums section:last-child { break-inside: auto; }
  .tools input, .tools select, .tools button { display: none; } .tools { margin: 2mm 0; }
  .wide { overflow: visible; }
  #plans { table-layout: fixed; }
  #plans th { position: static; }
  #plans th, #plans td { padding: .6mm .8mm; }
  #plans th:nth-child(n), #plans td:nth-child(n) { min-width: 0; }
  #plans th:nth-child(1) { width: 19%; } #plans th:nth-child(2) { width: 6.5%; } #plans th:nth-child(3) { width: 13%; }
  #plans th:nth-child(4) { width: 8%; } #plans th:nth-child(5) { width: 11%; } #plans th:nth-child(6) { width: 4.5%; }
  #plans th:nth-child(7), #plans th:nth-child(8) { width: 6%; } #plans th:nth-child(9) { width: 8%; }
  #plans th:nth-child(10) { width: 13%; } #plans th:nth-child(11) { width: 5%; }
  .imported { color: #17703a; } .refused { color: #8a4b00; } .unreadable, .failed { color: #a3231c; }
  a { color: inherit; }
  thead { break-inside: avoid; display: table-header-group; } tr { break-inside: avoid; } h2 { break-after: avoid; }
}
</style>
</head>
<body>
)html";

constexpr std::string_view table = R"html(<div class="tools">
<input id="filter" type="search" placeholder="Filter: a part of a name, a reason, a loss" aria-label="Filter">
<select id="verdict" aria-label="Verdict"><option value="">all verdicts</option></select>
<button id="earlier" type="button">Earlier</button>
<span id="shown" role="status"></span>
<button id="later" type="button">Later</button>
</div>
<div class="wide"><table id="plans"><thead><tr></tr></thead><tbody></tbody></table></div>
<noscript><p>The table needs JavaScript; report.tsv has the same.</p></noscript>
<script id="data" type="application/json">[
)html";

constexpr std::string_view end = R"html(]</script>
<script>
"use strict";
const columns = ["Plan", "Verdict", "Reason", "Mended", "Document", "Tasks", "Resources", "Scenarios", "Warnings", "Losses", "Seconds"];
const isNumber = [5, 6, 7, 10], pageSize = 200;
const plans = JSON.parse(document.getElementById("data").textContent);
const texts = plans.map(plan => plan.slice(0, 11).join("\n").toLowerCase());
let order = plans.map((_, index) => index), sorted = -1, isDown = false, first = 0, showsAll = false;
const byId = id => document.getElementById(id);
const collator = new Intl.Collator("en", { numeric: true });

// The place of each plan among the values of a column, worked out once: to compare texts takes much longer than numbers.
const ranks = [];
function ranksBy(column) {
  if (isNumber.includes(column)) return plans.map(plan => plan[column] === "" ? -1 : plan[column]);
  const values = [...new Set(plans.map(plan => plan[column]))].sort(collator.compare);
  const places = new Map(values.map((value, place) => [value, place]));
  return plans.map(plan => places.get(plan[column]));
}
function sortBy(column) {
  isDown = sorted === column && !isDown;
  sorted = column;
  const rank = ranks[column] ??= ranksBy(column), sign = isDown ? -1 : 1;
  order.sort((a, b) => sign * (rank[a] - rank[b]) || a - b);
  first = 0;
  show();
}
function matching() {
  const words = byId("filter").value.toLowerCase(), verdict = byId("verdict").value;
  return order.filter(index => (!verdict || plans[index][1] === verdict) && texts[index].includes(words));
}
function cellOf(plan, column) {
  const cell = document.createElement("td");
  if (isNumber.includes(column)) cell.className = "number";
  if (column === 1) cell.className = "verdict " + plan[1];
  if (column === 4 && plan[11]) {
    const link = document.createElement("a");
    link.href = plan[11];
    link.textContent = plan[4];
    cell.append(link);
  } else {
    cell.textContent = plan[column];
  }
  return cell;
}
function show() {
  const found = matching();
  first = Math.max(0, Math.min(first, found.length - 1));
  first -= first % pageSize;
  const part = showsAll ? found : found.slice(first, first + pageSize);
  byId("plans").tBodies[0].replaceChildren(...part.map(index => {
    const row = document.createElement("tr");
    row.append(...columns.map((_, column) => cellOf(plans[index], column)));
    return row;
  }));
  byId("shown").textContent = found.length === 0 ? "no plan" : `${first + 1} to ${first + part.length} of ${found.length}`;
  byId("earlier").disabled = first === 0;
  byId("later").disabled = first + pageSize >= found.length;
  [...byId("plans").tHead.rows[0].cells].forEach((cell, column) =>
    cell.setAttribute("aria-sort", column !== sorted ? "none" : isDown ? "descending" : "ascending"));
}
byId("plans").tHead.rows[0].append(...columns.map((name, column) => {
  const cell = document.createElement("th"), button = document.createElement("button");
  if (isNumber.includes(column)) cell.className = "number";
  button.type = "button";
  button.textContent = name;
  button.addEventListener("click", () => sortBy(column));
  cell.append(button);
  return cell;
}));
for (const verdict of [...new Set(plans.map(plan => plan[1]))].sort()) byId("verdict").append(new Option(verdict, verdict));
for (const event of ["input", "change"]) {
  byId("filter").addEventListener(event, () => { first = 0; show(); });
  byId("verdict").addEventListener(event, () => { first = 0; show(); });
}
byId("earlier").addEventListener("click", () => { first -= pageSize; show(); });
byId("later").addEventListener("click", () => { first += pageSize; show(); });
// On paper all rows stand below each other, and the heads as texts: a browser does not repeat buttons on each sheet.
const buttons = [...document.querySelectorAll("#plans th button")];
addEventListener("beforeprint", () => {
  for (const button of buttons) button.replaceWith(button.textContent);
  showsAll = true;
  first = 0;
  show();
});
addEventListener("afterprint", () => {
  [...byId("plans").tHead.rows[0].cells].forEach((cell, column) => cell.replaceChildren(buttons[column]));
  showsAll = false;
  show();
});
show();
</script>
</body>
</html>
)html";

std::string inHTML(std::string_view text) {
    std::string result;
    for (const char character : text) {
        switch (character) {
            case '<':
                result += "&lt;";
                break;
            case '>':
                result += "&gt;";
                break;
            case '&':
                result += "&amp;";
                break;
            case '"':
                result += "&quot;";
                break;
            default:
                result += character;
        }
    }
    return result;
}

// JSON in a page: nothing in it can end the element that it stands in. Bytes that are no UTF-8 become U+FFFD.
std::string inScript(const JSON& json) {
    auto text = json.dump(-1, ' ', true, JSON::error_handler_t::replace);
    for (auto at = text.find('<'); at != std::string::npos; at = text.find('<', at)) {
        text.replace(at, 1, "\\u003c");
    }
    return text;
}

// A link from the page to a document below its folder; empty where it lies elsewhere.
std::string linkTo(const std::string& document, const std::string& outputFolder) {
    if (!document.starts_with(outputFolder + "/")) {
        return {};
    }
    constexpr std::string_view plain = "ABCDEFGHIJKLMNOPQRSTUVWXYZabcdefghijklmnopqrstuvwxyz0123456789_.-~/";
    std::string link = "./";
    for (const char character : std::string_view(document).substr(outputFolder.size() + 1)) {
        link += plain.find(character) != std::string_view::npos
                    ? std::string(1, character)
                    : fmt::format("%{:02X}", static_cast<unsigned char>(character));
    }
    return link + "/";
}

// The reason without what tells one plan's from another's.
std::string kindOf(const std::string& reason) {
    return reason.substr(0, reason.find(" ("));
}

// What a kind of loss means; empty where it is none that is known.
std::string_view kindInWords(std::string_view name) {
    const auto kinds = MSPDIKinds();
    const auto index = MSPDIKindIndex(name);
    return index < kinds.size() ? kinds[index].what : std::string_view();
}

void writeSums(std::string_view title, const std::map<std::string, std::size_t>& counts, std::ostream& out) {
    if (counts.empty()) {
        return;
    }
    std::vector<std::pair<std::string, std::size_t>> sorted(counts.begin(), counts.end());
    std::ranges::stable_sort(sorted, std::ranges::greater(), [](const auto& entry) { return entry.second; });
    out << "<section><h2>" << title << "</h2><table>\n";
    for (const auto& [name, count] : sorted) {
        out << "<tr><td>" << count << "</td><td>" << inHTML(MSPCShownText(name).view());
        if (const auto words = kindInWords(name); !words.empty()) {
            out << "<small>" << inHTML(words) << "</small>";
        }
        out << "</td></tr>\n";
    }
    out << "</table></section>\n";
}

JSON rowOf(const MSPDIMigrationRecord& record, const std::string& outputFolder) {
    const auto number = [&record](std::size_t count) { return record.isImported() ? JSON(count) : JSON(""); };
    const auto shown = [](const std::string& text) { return std::string(MSPCShownText(text).view()); };
    std::string warnings;
    for (const auto& warning : record.warnings) {
        warnings += (warnings.empty() ? "" : "; ") + warning;
    }
    auto document = record.document;
    if (document.starts_with(outputFolder + "/")) {
        document.erase(0, outputFolder.size() + 1);
    }
    return JSON::array({shown(record.plan), record.verdict, shown(record.reason), MSPDICountsInOneLine(record.mending),
                        shown(document), number(record.tasks), number(record.resources), number(record.scenarios),
                        shown(warnings), MSPDICountsInOneLine(record.losses),
                        static_cast<double>(record.milliseconds) / 1000, linkTo(record.document, outputFolder)});
}

}  // namespace

std::string MSPDICountsInOneLine(const MSPDIMigrationRecord::Counts& counts) {
    std::string text;
    for (const auto& [name, count] : counts) {
        text += fmt::format("{}{} x {}", text.empty() ? "" : ", ", count, name);
    }
    return text;
}

std::string MSPDISeconds(const MSPDIMigrationRecord& record) {
    constexpr std::size_t second = 1000;
    return fmt::format("{}.{:03}", record.milliseconds / second, record.milliseconds % second);
}

void MSPDIMigrationSums::add(const MSPDIMigrationRecord& record) {
    ++plans;
    ++verdicts[record.verdict];
    if (!record.isImported()) {
        ++reasons[kindOf(record.reason)];
    }
    for (const auto& [kind, count] : record.losses) {
        losses[kind] += count;
    }
}

void MSPDIWriteMigrationPage(const std::string& outputFolder, const std::string& made, const MSPDIMigrationSums& sums,
                             const MSPDIMigrationRecords& records, std::ostream& out) {
    out << beginning << "<h1>Migration of " << sums.plans << (sums.plans == 1 ? " plan" : " plans") << "</h1>\n<p>"
        << inHTML(MSPCShownText(outputFolder).view()) << "<br>\n<span id=\"made\">" << inHTML(made)
        << "</span></p>\n<div class=\"sums\">\n";
    writeSums("Verdicts", sums.verdicts, out);
    writeSums("Reasons", sums.reasons, out);
    writeSums("Lost or changed, by kind", sums.losses, out);
    out << "</div>\n" << table;
    std::string_view separator;
    records([&](const MSPDIMigrationRecord& record) {
        out << separator << inScript(rowOf(record, outputFolder));
        separator = ",\n";
    });
    out << end;
}
