#pragma once

#include <functional>
#include <string>

#include "KZDXPageColumns.h"

struct MSPDIAccount;
struct MSPDIPlace;

// What a page is about.
struct KZDXPageSubject {
    std::string name;                       // of the document or plan, as people know it: "House.kdzx"
    std::string maker;                      // the program and its version
    const MSPDIAccount* account = nullptr;  // of the plan that the document was made from
    // What a value of the plan means, for the page to say it in its language; null where it is but a text. One of
    // {"work": seconds}, {"percentage": number}, {"constraint": 0 to 7}, {"date": seconds on the clock on the wall
    // since 1970} and {"target": [kind, UID, name]}; with {"link": [UID, name]} besides for the lag of a link.
    std::function<KZDXPageJSON(const MSPDIPlace&)> meaningOf = nullptr;
};
