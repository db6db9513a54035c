#pragma once

#include <string>

struct MSPDIAccount;

// What a page is about.
struct KZDXPageSubject {
    std::string name;                       // of the document or plan, as people know it: "House.kdzx"
    std::string maker;                      // the program and its version
    const MSPDIAccount* account = nullptr;  // of the plan that the document was made from
};
