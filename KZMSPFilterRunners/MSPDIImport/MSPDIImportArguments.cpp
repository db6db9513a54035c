#include "MSPDIImportArguments.h"

#include "MSPCException.h"
#include "MSPCMessage.h"
#include "MSPCPath.h"

namespace {

MSPCMessage usageText(const std::vector<std::string>& arguments) {
    const auto program = arguments.empty() ? std::string() : lastPathComponent(arguments.front());
    return MSPCMessage(
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
        throw CommandLineArgumentException(MSPCMessage("Too few arguments. {}", usageText(arguments)));
    }
    const bool isListForm = arguments[3] == "--input-list";
    const std::size_t inputIndex = isListForm ? 4 : 3;
    return {.templatePath = arguments[2],
            .isListForm = isListForm,
            .inputPath = argumentAt(arguments, inputIndex),
            .outputFolder = argumentAt(arguments, inputIndex + 1)};
}
