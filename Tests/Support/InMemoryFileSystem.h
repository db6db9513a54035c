#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MSPCFileSystem.h"
#include "MSPCPath.h"

// A file system in memory that records what is done to it. The current folder is "/home/me", which is there from the
// start. The operations that can fail (readFile, copyContent, createFolder, writeAtomically, appear) are counted from 1
// and can be told to fail.
class InMemoryFileSystem final : public MSPCFileSystem {
public:
    InMemoryFileSystem() { addFolder("/home/me"); }

    // Setting up; the folders above are made too. A link's target is an absolute path.
    void addFile(const std::string& path, std::string bytes = {}) { add(path, {Kind::File, std::move(bytes)}); }
    void addFolder(const std::string& path) { add(path, {Kind::Folder, {}}); }
    void addLink(const std::string& path, std::string target) { add(path, {Kind::Link, std::move(target)}); }
    // What happens in the middle of a run without being counted: something takes a path away with all below it.
    void takeAway(const std::string& path) { eraseTree(path); }

    // Makes the counted call number `call` (1 is the next one) fail with that reason.
    void failAtCall(int call, std::string reason) { _failures[_calls + call] = std::move(reason); }
    // Makes every counted call of that operation fail: "readFile", "appear" ...
    void failAlways(const std::string& operation, std::string reason) { _broken[operation] = std::move(reason); }

    // The counted calls so far, as "<operation> <path>" or "copyContent <from> -> <to>", failed ones included.
    [[nodiscard]] const std::vector<std::string>& calls() const { return _record; }
    [[nodiscard]] std::string contents(const std::string& path) const {
        const auto* node = find(path);
        return node && node->kind == Kind::File ? node->bytes : std::string("(no file)");
    }
    // All paths at or below a folder, in order.
    [[nodiscard]] std::vector<std::string> pathsBelow(const std::string& folder) const {
        std::vector<std::string> result;
        for (const auto& [path, node] : _nodes) {
            if (isInside(path, folder)) {
                result.push_back(path);
            }
        }
        return result;
    }

    [[nodiscard]] std::string standardizedPath(std::string_view path) const override {
        if (path.empty()) {
            return {};
        }
        std::string whole(path);
        if (whole == "~" || whole.starts_with("~/")) {
            whole = "/home/me" + whole.substr(1);
        }
        return withoutDots(whole);
    }
    [[nodiscard]] std::string absolutePath(std::string_view path) const override {
        const auto whole = standardizedPath(path);
        return whole.empty() || whole.starts_with('/') ? whole : withoutDots("/home/me/" + whole);
    }
    [[nodiscard]] bool leadsToAnything(const std::string& path) const override { return !resolvedPath(path).empty(); }
    [[nodiscard]] bool exists(const std::string& path) const override { return find(path) != nullptr; }
    [[nodiscard]] bool isDirectory(const std::string& path) const override {
        const auto resolved = resolvedPath(path);
        const auto* node = resolved.empty() ? nullptr : find(resolved);
        return node && node->kind == Kind::Folder;
    }
    [[nodiscard]] std::optional<std::vector<std::string>> namesIn(const std::string& folder,
                                                                  std::string* failure = nullptr) const override {
        if (!isDirectory(folder)) {
            if (failure != nullptr) {
                *failure = exists(folder) ? "Not a directory" : "No such file or directory";
            }
            return std::nullopt;
        }
        std::vector<std::string> names;
        const auto top = resolvedPath(folder);
        for (const auto& path : pathsBelow(top)) {
            if (path != top && pathByDeletingLastComponent(path) == top) {
                names.push_back(lastPathComponent(path));
            }
        }
        return names;
    }
    [[nodiscard]] std::string resolvedPath(const std::string& path) const override {
        auto result = absolutePath(path);
        for (int links = 0; links <= 40; ++links) {
            const auto next = withFirstLinkFollowed(result);
            if (next == result) {
                return exists(result) ? result : std::string();
            }
            result = next;
        }
        return {};
    }
    [[nodiscard]] bool isSameFile(const std::string& first, const std::string& second) const override {
        const auto resolved = resolvedPath(first);
        return !resolved.empty() && resolved == resolvedPath(second);
    }

    [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                      std::string* failure = nullptr) const override {
        return readFileAt(path, path, failure);
    }

    // What a new folder holds is kept below "/hidden" until it appears.
    [[nodiscard]] std::unique_ptr<MSPCNewFolder> newFolder(const std::string& path, bool replacesOld) override {
        ++_newFolders;
        const bool isTaken = exists(path) && !(replacesOld && !_fixed.contains(path));
        return isTaken ? nullptr : std::make_unique<NewFolder>(*this, path, replacesOld);
    }
    // How often a new folder was begun or refused, which is not counted as a call.
    [[nodiscard]] int newFolders() const { return _newFolders; }
    // From now on that path cannot be replaced.
    void fix(const std::string& path) { _fixed.insert(path); }
    // What remains of everything that is replaced.
    void keepRemainsAs(std::string path) { _remains = std::move(path); }

    [[nodiscard]] std::optional<std::string> createFolder(const std::string& path) override {
        if (const auto reason = begin("createFolder", path)) {
            return reason;
        }
        if (exists(path) && !isDirectory(path)) {
            return "Not a directory";
        }
        addFolder(path);
        return std::nullopt;
    }
    void removeEmptyFolder(const std::string& path) override {
        if (isDirectory(path) && pathsBelow(path).size() == 1) {
            takeAway(path);
        }
    }
    [[nodiscard]] std::optional<std::string> writeAtomically(
        const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override {
        return writeAt(path, path, produce);
    }

    [[nodiscard]] std::optional<std::string> synchronize(const std::set<std::string>& folders) override {
        _synchronized.push_back(folders);
        const auto broken = _broken.find("synchronize");
        return broken == _broken.end() ? std::nullopt : std::optional(broken->second);
    }
    // The folders of each call of `synchronize`, which is not counted.
    [[nodiscard]] const std::vector<std::set<std::string>>& synchronized() const { return _synchronized; }

private:
    std::vector<std::set<std::string>> _synchronized;
    std::set<std::string> _fixed;
    std::string _remains;
    int _newFolders = 0;
    enum class Kind { File, Folder, Link };
    struct Node {
        Kind kind = Kind::File;
        std::string bytes;  // a link's target
    };
    struct StringWriter final : MSPCByteWriter {
        std::string bytes;
        void write(std::string_view more) override { bytes.append(more); }
    };

    class NewFolder final : public MSPCNewFolder {
    public:
        NewFolder(InMemoryFileSystem& files, std::string path, bool replacesOld)
            : _files(files), _path(std::move(path)), _replacesOld(replacesOld) {
            _files.addFolder(_hidden);
        }
        ~NewFolder() override { _files.eraseTree(_hidden); }
        NewFolder(const NewFolder&) = delete;
        NewFolder& operator=(const NewFolder&) = delete;

        [[nodiscard]] std::optional<std::string> copyContent(const std::string& from) override {
            if (const auto reason = _files.begin("copyContent", from + " -> " + _path)) {
                return reason;
            }
            if (!_files.isDirectory(from)) {
                return "Not a directory";
            }
            const auto source = _files.resolvedPath(from);
            for (const auto& path : _files.pathsBelow(source)) {
                _files._nodes[_hidden + path.substr(source.size())] = _files._nodes[path];
            }
            return std::nullopt;
        }
        [[nodiscard]] std::optional<std::string> readFile(const std::string& path,
                                                          std::string* failure = nullptr) const override {
            return _files.readFileAt(path, hidden(path), failure);
        }
        [[nodiscard]] std::optional<std::string> writeAtomically(
            const std::string& path, const std::function<void(MSPCByteWriter&)>& produce) override {
            return _files.writeAt(path, hidden(path), produce);
        }
        [[nodiscard]] std::optional<std::string> appear(bool& isTaken) override {
            isTaken = false;
            if (const auto reason = _files.begin("appear", _path)) {
                return reason;
            }
            isTaken = _files.exists(_path) && !_replacesOld;
            if (isTaken) {
                return "File exists";
            }
            _files.eraseTree(_path);
            for (const auto& path : _files.pathsBelow(_hidden)) {
                _files._nodes[_path + path.substr(_hidden.size())] = _files._nodes[path];
            }
            return std::nullopt;
        }
        void setPath(const std::string& path) override {
            _path = path;
            _replacesOld = false;
        }
        [[nodiscard]] std::string remainsOfReplaced() const override { return _replacesOld ? _files._remains : ""; }

    private:
        std::string hidden(const std::string& path) const { return _hidden + path.substr(_path.size()); }

        InMemoryFileSystem& _files;
        std::string _path;
        bool _replacesOld;
        const std::string _hidden = "/hidden";
    };

    [[nodiscard]] std::optional<std::string> readFileAt(const std::string& path, const std::string& place,
                                                        std::string* failure) const {
        auto reason = begin("readFile", path);
        const auto* node = find(resolvedPath(place));
        if (!reason && (!node || node->kind != Kind::File)) {
            reason = node ? "Is a directory" : "No such file or directory";
        }
        if (reason && failure) {
            *failure = *reason;
        }
        return reason ? std::nullopt : std::optional(node->bytes);
    }
    // The bytes are collected first, so what `produce` throws leaves the file as it was.
    [[nodiscard]] std::optional<std::string> writeAt(const std::string& path, const std::string& place,
                                                     const std::function<void(MSPCByteWriter&)>& produce) {
        if (const auto reason = begin("writeAtomically", path)) {
            return reason;
        }
        StringWriter writer;
        produce(writer);
        if (!isDirectory(pathByDeletingLastComponent(place))) {
            return "No such file or directory";
        }
        if (const auto* node = find(place); node && node->kind == Kind::Folder) {
            return "Is a directory";
        }
        _nodes[place] = {Kind::File, std::move(writer.bytes)};
        return std::nullopt;
    }

    // Counts and records a call; gives the reason when it is to fail.
    std::optional<std::string> begin(const std::string& operation, const std::string& operands) const {
        _record.push_back(operation + " " + operands);
        ++_calls;
        if (const auto listed = _failures.find(_calls); listed != _failures.end()) {
            return listed->second;
        }
        const auto broken = _broken.find(operation);
        return broken == _broken.end() ? std::nullopt : std::optional(broken->second);
    }

    static bool isInside(const std::string& path, const std::string& folder) {
        return path == folder || folder == "/" || path.starts_with(folder + "/");
    }

    static std::string withoutDots(const std::string& path) {
        const bool isAbsolute = path.starts_with('/');
        std::vector<std::string> components;
        for (std::size_t start = 0; start < path.size();) {
            const auto end = std::min(path.find('/', start), path.size());
            const auto component = path.substr(start, end - start);
            if (component == ".." && !components.empty() && components.back() != "..") {
                components.pop_back();
            } else if (component == ".." ? !isAbsolute : !component.empty() && component != ".") {
                components.push_back(component);
            }
            start = end + 1;
        }
        std::string result;
        for (const auto& component : components) {
            result += (isAbsolute || !result.empty() ? "/" : "") + component;
        }
        return result.empty() ? (isAbsolute ? "/" : ".") : result;
    }

    void add(const std::string& path, Node node) {
        for (auto folder = pathByDeletingLastComponent(path); folder != "/";
             folder = pathByDeletingLastComponent(folder)) {
            _nodes.try_emplace(folder, Node{Kind::Folder, {}});
        }
        _nodes.insert_or_assign(path, std::move(node));
    }

    void eraseTree(const std::string& path) {
        std::erase_if(_nodes, [&path](const auto& entry) { return isInside(entry.first, path); });
    }

    // The node with that very path: a link in the last component is not followed, links above it are.
    const Node* find(const std::string& path) const {
        static const Node root{Kind::Folder, {}};
        if (path == "/") {
            return &root;
        }
        auto found = _nodes.find(path);
        if (found == _nodes.end() && path.starts_with('/')) {
            const auto folder = resolvedFolder(pathByDeletingLastComponent(path));
            found = _nodes.find(pathByAppendingComponent(folder, lastPathComponent(path)));
        }
        return found == _nodes.end() ? nullptr : &found->second;
    }

    std::string resolvedFolder(std::string folder) const {
        for (int links = 0; links <= 40; ++links) {
            const auto next = withFirstLinkFollowed(folder);
            if (next == folder) {
                break;
            }
            folder = next;
        }
        return folder;
    }

    std::string withFirstLinkFollowed(const std::string& path) const {
        for (const auto& [link, node] : _nodes) {
            if (node.kind == Kind::Link && isInside(path, link)) {
                return node.bytes + path.substr(link.size());
            }
        }
        return path;
    }

    std::map<std::string, Node> _nodes;
    std::map<int, std::string> _failures;
    std::map<std::string, std::string> _broken;
    mutable int _calls = 0;
    mutable std::vector<std::string> _record;
};
