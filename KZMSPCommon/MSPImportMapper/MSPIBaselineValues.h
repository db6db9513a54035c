#pragma once

#include <cstddef>
#include <memory_resource>
#include <span>
#include <string_view>
#include <vector>

#include "MSPCFields.h"
#include "MSPCXMLNode.h"

// A child of a task, resource or assignment, and the text that it is to show for a baseline.
struct MSPIBaselineValue {
    MSPCXMLNode child;
    std::string_view text;
};

// What baselines have for the children of the elements they belong to. The texts are copies, laid out in the order in
// which they are shown: the baselines themselves are scattered over the whole document.
class MSPIBaselineValues {
public:
    // Appends the values of one baseline: for each child of the element that is the last of its name, the last value of
    // that name. "Number" is none.
    void append(const MSPCFields& element, const MSPCXMLNode& baseline);
    // Takes the last ones back, down to that number.
    void shrink(std::size_t size) { _values.resize(size); }

    [[nodiscard]] std::size_t size() const { return _values.size(); }
    // Whether any value that was ever appended is for a number by which elements are looked up ("UID", "TaskUID" …).
    [[nodiscard]] bool haveUID() const { return _haveUID; }
    // Valid until values are appended.
    [[nodiscard]] std::span<const MSPIBaselineValue> all() const { return _values; }

private:
    [[nodiscard]] std::string_view kept(std::string_view text);

    std::vector<MSPIBaselineValue> _values;
    bool _haveUID = false;
    std::pmr::monotonic_buffer_resource _texts;

    // For the baseline that is being appended: the element's fields that show a value so far, and by field its position
    // in _values or None.
    static constexpr auto None = static_cast<std::size_t>(-1);
    std::vector<std::size_t> _fieldsShown;
    std::vector<std::size_t> _positionByField;
};
