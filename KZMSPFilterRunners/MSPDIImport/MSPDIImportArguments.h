#pragma once

#include <optional>
#include <string>
#include <vector>

// The command line, taken apart by position. Two forms:
//   <program> --template-path <template bundle> <input MSPDI file> [<output folder>]
//   <program> --template-path <template bundle> --input-list <list file> [<output folder>]
// Paths are as given. What follows the output folder is ignored.
struct MSPDIImportArguments {
    std::string templatePath;
    bool isListForm = false;
    std::optional<std::string> inputPath;  // the input file or the list file; none when "--input-list" comes last
    std::optional<std::string> outputFolder;
};

// Takes apart all arguments, the program's own path first. Options are recognised at their fixed positions and with
// their exact spelling only. With fewer than four arguments, or when the second is not "--template-path", raises
// CommandLineArgumentException "Too few arguments. <usage text>".
[[nodiscard]] MSPDIImportArguments MSPDIParseArguments(const std::vector<std::string>& arguments);
