#pragma once

#include <cstdint>
#include <optional>
#include <string_view>

class MSPCFileSystem;
class MSPCURL;
class MSPCXMLDocument;

// Writes a document into the folder "KZMSPDIFilterDump" of a working folder, for looking at it: pretty-printed, as
// "<name>_dump.xml", or "<name>_dump(<number>).xml" when the number is greater than 0; the name is "KZMSPDIFilter"
// where none is given. A file of that name is replaced. Nothing happens when the working folder is not there or the
// file cannot be written. Raises `MSPCInternalInconsistency`
//   "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Not a file URL: '<URL>'" and, when the dump folder is
//   not there and cannot be made,
//   "*** ERROR: MSPIUtilities dumpXMLDocument:workingFolderUrl: Failed to locate dump folder: '<path>'.".
void dumpXMLDocumentWorkingFolderUrlDumpNameDumpNumber(const MSPCXMLDocument& document, const MSPCURL& workingFolder,
                                                       std::optional<std::string_view> name, std::int32_t number,
                                                       MSPCFileSystem& fileSystem);

// The same with number 0.
void dumpXMLDocumentWorkingFolderUrlDumpName(const MSPCXMLDocument& document, const MSPCURL& workingFolder,
                                             std::optional<std::string_view> name, MSPCFileSystem& fileSystem);
