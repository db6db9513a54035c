#include "MSPCPath.h"

namespace {

std::string_view withoutTrailingSlashes(std::string_view path) {
    while (path.size() > 1 && path.ends_with('/')) {
        path.remove_suffix(1);
    }
    return path;
}

std::string_view lastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    if (path == "/") {
        return path;
    }
    const auto slash = path.rfind('/');
    return slash == std::string_view::npos ? path : path.substr(slash + 1);
}

// Where the point of the extension stands in a last component; npos when it has none. A point at the start or the end
// makes no extension.
std::size_t extensionPoint(std::string_view component) {
    const auto point = component.rfind('.');
    const bool isExtension = point != std::string_view::npos && point != 0 && point + 1 != component.size();
    return isExtension ? point : std::string_view::npos;
}

}  // namespace

std::string lastPathComponent(std::string_view path) {
    return std::string(lastComponent(path));
}

std::string pathByDeletingLastComponent(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const auto slash = path.rfind('/');
    if (slash == std::string_view::npos) {
        return {};
    }
    return std::string(slash == 0 ? std::string_view("/") : withoutTrailingSlashes(path.substr(0, slash)));
}

std::string pathExtension(std::string_view path) {
    const auto component = lastComponent(path);
    const auto point = extensionPoint(component);
    return point == std::string_view::npos ? std::string() : std::string(component.substr(point + 1));
}

std::string pathByDeletingExtension(std::string_view path) {
    path = withoutTrailingSlashes(path);
    const auto component = lastComponent(path);
    const auto point = extensionPoint(component);
    return std::string(point == std::string_view::npos ? path : path.substr(0, path.size() - component.size() + point));
}

std::string pathByAppendingExtension(std::string_view path, std::string_view extension) {
    std::string result(withoutTrailingSlashes(path));
    return result.append(".").append(extension);
}

std::string pathByAppendingComponent(std::string_view folder, std::string_view component) {
    std::string result(folder);
    if (!result.empty() && !result.ends_with('/')) {
        result += '/';
    }
    return result.append(component);
}

std::string lowerCased(std::string_view text) {
    std::string result(text);
    for (char& character : result) {
        if (character >= 'A' && character <= 'Z') {
            character = static_cast<char>(character - 'A' + 'a');
        }
    }
    return result;
}
