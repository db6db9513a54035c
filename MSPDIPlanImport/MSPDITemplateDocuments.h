#pragma once

#include <map>
#include <optional>
#include <string>

#include "MSPCURL.h"
#include "MSPCXMLDocument.h"

class MSPCFileReader;
class MSPCLog;

// The documents of templates, as imports read them. Thousands of plans are imported into the same template: that its
// bytes are sound is found out once, which takes a tenth of the time of a small import.
class MSPDITemplateDocuments {
public:
    // As `newXmlDocFromUrl` with `MSPCXMLContent::Everything`, whose failures and words in the log it has.
    [[nodiscard]] MSPCXMLDocument load(const MSPCURL& url, const MSPCFileReader& files, MSPCLog& log);

private:
    // The last bytes of a file that mean what the quick parser makes of them; none where they mean something else, or
    // are too many to be kept.
    std::map<std::string, std::optional<std::string>> _sound;  // by the name of the file
};
