#pragma once

#include <optional>
#include <string>
#include <string_view>

// A URL as the importer needs it: a file's or folder's place, or some other URL that is only refused.
class MSPCURL {
public:
    // The URL of a file or folder by its path. A relative path is kept as it is given.
    [[nodiscard]] static MSPCURL fileURL(std::string_view path, bool isDirectory);
    // Any URL text ("http://…", "file:///…", percent-encoded). A query or fragment is not kept.
    [[nodiscard]] static MSPCURL fromString(std::string_view text);

    [[nodiscard]] bool isFileURL() const noexcept;
    // The path without percent encoding and, for a folder, without the slash at its end.
    [[nodiscard]] const std::string& path() const noexcept { return _path; }
    // "file:///a/b%20c.xml"; a folder ends in "/". Every byte that RFC 3986 does not allow in a path is encoded.
    [[nodiscard]] std::string absoluteString() const;

private:
    std::string _scheme;
    std::string _host;
    std::string _path;
    bool _isDirectory = false;
};
