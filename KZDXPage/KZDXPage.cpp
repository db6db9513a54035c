#include "KZDXPage.h"

#include <fmt/format.h>
#include <nlohmann/json.hpp>

#include "KZDXPageData.h"
#include "KZDXPageMarkup.h"
#include "KZDXPageProgram.h"
#include "MSPCDigest.h"

namespace {

// The data as the content of a script element: without "<" nothing in it ends the element or begins a comment.
std::string embedded(const KZDXPageJSON& data) {
    const auto text = data.dump(-1, ' ', false, KZDXPageJSON::error_handler_t::replace);
    std::string safe;
    safe.reserve(text.size() + text.size() / 64);
    for (const auto character : text) {
        if (character == '<') {
            safe += "\\u003c";  // it stands within texts only
        } else {
            safe += character;
        }
    }
    return safe;
}

// Nothing is loaded, from anywhere; of scripts and styles only the page's own are taken, told by their digests; and no
// text ever becomes markup.
std::string policy() {
    return fmt::format(
        "default-src 'none'; script-src 'sha256-{}'; style-src 'sha256-{}'; base-uri 'none'; form-action 'none'; "
        "require-trusted-types-for 'script'; trusted-types 'none'",
        MSPCSHA256InBase64(KZDXPageScript()), MSPCSHA256InBase64(KZDXPageStyle()));
}

std::string assembled(const KZDXPageDocument& document, const KZDXPageSubject& subject) {
    const auto title = KZDXPageEscaped(KZDXPageTitle(document, subject));
    std::string html = "<!DOCTYPE html>\n<html lang=en>\n<meta charset=utf-8>\n";
    html += fmt::format("<meta http-equiv=Content-Security-Policy content=\"{}\">\n", policy());
    html += "<meta name=viewport content=\"width=device-width, initial-scale=1\">\n";
    html += "<meta name=color-scheme content=\"light dark\">\n<meta name=referrer content=no-referrer>\n";
    html += fmt::format("<meta name=generator content=\"{}\">\n", KZDXPageEscaped(subject.maker));
    html += fmt::format("<title>{}</title>\n<style>", title);
    html += KZDXPageStyle();
    html += "</style>\n<body>\n<div id=page></div>\n<script type=application/json id=document>";
    html += embedded(KZDXPageData(document, subject));
    html += "</script>\n<script>";
    html += KZDXPageScript();
    html += "</script>\n<script type=text/plain id=licences>";
    html += KZDXPageLicences();
    html += fmt::format("</script>\n<noscript>\n<h1>{}</h1>\n", title);
    html += KZDXPageTable(document.actual);
    return html + "\n</noscript>\n";
}

}  // namespace

std::optional<KZDXPage> KZDXPageOf(KZDXFiles& files, const KZDXPageSubject& subject, std::string& failure) {
    const auto document = KZDXPageDocument::open(files, failure);
    if (!document) {
        return std::nullopt;
    }
    const auto& scenario = document->actual.content->scenario;
    KZDXPage page;
    page.html = assembled(*document, subject);
    page.tasks = document->actual.content->rows.size();
    page.resources = scenario.resources().size() - (scenario.topResource() ? 1 : 0);
    page.baselines = document->baselines.size();
    page.notes = document->notes;
    return page;
}
