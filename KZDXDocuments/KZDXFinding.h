#pragma once

#include <string>
#include <string_view>

enum class KZDXSeverity {
    Fault,  // the document is not sound
    Note,   // odd, and meant: what the importer makes of odd plans
};

// What is wrong, or odd, at one place of a bundle.
struct KZDXFinding {
    std::string_view rule;
    KZDXSeverity severity = KZDXSeverity::Fault;
    std::string file;     // its name in the bundle
    int line = 0;         // from 1; 0 where it is no matter of a line: a file that is missing
    std::string element;  // "scenario/task[@id='t3']/start-date"; empty where the file is no XML
    std::string name;     // of the task or resource that it is, or is in: "Paint"; empty where there is none
    std::string text;     // in words, with values of the document as they are
};
