#pragma once

#include <cstddef>
#include <optional>
#include <span>
#include <string_view>
#include <vector>

#include "MSPCXMLNode.h"

// A task or a resource of a scenario.
struct KZDXItem {
    MSPCXMLNode element;
    std::string_view id;  // empty where it has none
};

// An element that names a task or a resource by its `idref`.
struct KZDXReference {
    MSPCXMLNode element;
    std::size_t from = 0;           // the item that holds it
    std::optional<std::size_t> to;  // none where no item has that id
};

// Tasks or resources in the order of the document, found by their ids.
class KZDXItems {
public:
    // The child elements of that name of a scenario.
    KZDXItems(const MSPCXMLNode& scenario, std::string_view name);

    [[nodiscard]] std::size_t size() const { return _items.size(); }
    [[nodiscard]] const KZDXItem& operator[](std::size_t index) const { return _items[index]; }
    [[nodiscard]] auto begin() const { return _items.begin(); }
    [[nodiscard]] auto end() const { return _items.end(); }

    // The first item with that id; none for an empty one.
    [[nodiscard]] std::optional<std::size_t> find(std::string_view id) const;
    // All items by their ids, those of the same id in the order of the document, without those that have none.
    [[nodiscard]] std::span<const std::size_t> byId() const { return _byId; }

private:
    std::vector<KZDXItem> _items;
    std::vector<std::size_t> _byId;  // sorted, since ids can be chosen so that hashed ones all collide
};

// The group of all tasks, and that of all resources.
inline constexpr std::string_view KZDXTopTaskId = "t-1";
inline constexpr std::string_view KZDXTopResourceId = "r-1";

// The tasks and resources of a scenario and what they say about each other, indexed once. The document outlives it.
class KZDXScenario {
public:
    explicit KZDXScenario(const MSPCXMLNode& root);

    [[nodiscard]] const MSPCXMLNode& root() const { return _root; }
    [[nodiscard]] const KZDXItems& tasks() const { return _tasks; }
    [[nodiscard]] const KZDXItems& resources() const { return _resources; }
    // All in the order of their items, and of one item in the order of the document.
    [[nodiscard]] const std::vector<KZDXReference>& childTasks() const { return _childTasks; }  // task to task
    [[nodiscard]] const std::vector<KZDXReference>& links() const { return _links; }  // task to the one before it
    [[nodiscard]] const std::vector<KZDXReference>& assignments() const { return _assignments; }  // task to resource
    // resource to resource
    [[nodiscard]] const std::vector<KZDXReference>& childResources() const { return _childResources; }
    // The group of all tasks and the group of all resources, as `top-task` and `top-resource` name them.
    [[nodiscard]] std::optional<std::size_t> topTask() const;
    [[nodiscard]] std::optional<std::size_t> topResource() const;

private:
    MSPCXMLNode _root;
    KZDXItems _tasks;
    KZDXItems _resources;
    std::vector<KZDXReference> _childTasks;
    std::vector<KZDXReference> _links;
    std::vector<KZDXReference> _assignments;
    std::vector<KZDXReference> _childResources;
};

// Where the references of each item begin in a list of them, with one more at the end: those of item i are
// [starts[i], starts[i + 1]).
[[nodiscard]] std::vector<std::size_t> KZDXStarts(const std::vector<KZDXReference>& references, std::size_t itemCount);
