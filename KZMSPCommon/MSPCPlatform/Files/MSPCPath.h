#pragma once

#include <string>
#include <string_view>

// Operations on path texts. None of them looks at the file system. A slash at the end of a path counts for nothing:
// "T.kdzx/" has the last component "T.kdzx" and the extension "kdzx".

// What follows the last slash: "b.xml" of "/a/b.xml"; "/" of "/"; empty for an empty path.
[[nodiscard]] std::string lastPathComponent(std::string_view path);
// The path without its last component: "/a" of "/a/b.xml", "/" of "/b.xml", empty for "b.xml".
[[nodiscard]] std::string pathByDeletingLastComponent(std::string_view path);
// What follows the last point of the last component, without the point: "xml" of "a/Plan.final.xml"; empty for
// "Plan", "Plan." and ".xml".
[[nodiscard]] std::string pathExtension(std::string_view path);
// The path without its extension and the point before it: "a/Plan.final" of "a/Plan.final.xml".
[[nodiscard]] std::string pathByDeletingExtension(std::string_view path);
// "Plan" and "kdzx" give "Plan.kdzx".
[[nodiscard]] std::string pathByAppendingExtension(std::string_view path, std::string_view extension);
// "/a" (or "/a/") and "b" give "/a/b"; an empty folder gives "b".
[[nodiscard]] std::string pathByAppendingComponent(std::string_view folder, std::string_view component);
// ASCII letters in lower case; other characters unchanged.
[[nodiscard]] std::string lowerCased(std::string_view text);
