#include "MSPDIImportArguments.h"

#include <fmt/format.h>

#include "MSPCException.h"
#include "MSPCPath.h"

namespace {

std::string usageText(const std::vector<std::string>& arguments) {
    const auto program = arguments.empty() ? std::string() : lastPathComponent(arguments.front());
    return fmt::format(
        "Usage:\n"
        "  {0} --template-path <KDZX_template_path> <input_MSPDI_XML_path> [<output_folder_path>]\n"
        "  {0} --template-path <KDZX_template_path> --input-list <input_list_path> [<output_folder_path>]",
        program);
}

std::optional<std::string> argumentAt(const std::vector<std::string>& arguments, std::size_t index) {
    return index < arguments.size() ? std::optional(arguments[index]) : std::nullopt;
}

}  // namespace

MSPDIImportArguments MSPDIParseArguments(const std::vector<std::string>& arguments) {
    if (arguments.size() < 4 || arguments[1] != "--template-path") {
        throw CommandLineArgumentException(fmt::format("Too few arguments. {}", usageText(arguments)));
    }
    const bool isListForm = arguments[3] == "--input-list";
    const std::size_t inputIndex = isListForm ? 4 : 3;
    return {.templatePath = arguments[2],
            .isListForm = isListForm,
            .inputPath = argumentAt(arguments, inputIndex),
            .outputFolder = argumentAt(arguments, inputIndex + 1)};
}
