#pragma once

#include <cstddef>
#include <deque>
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
    // Appends the values of one baseline, and gives them: for each child of the element that is the last of its name,
    // the last value of that name. "Number" is none. Valid as long as this object.
    std::span<const MSPIBaselineValue> append(const MSPCFields& element, const MSPCXMLNode& baseline);

    // Whether any value that was ever appended is for a number by which elements are looked up ("UID", "TaskUID" …).
    [[nodiscard]] bool showUID() const { return _showUID; }

private:
    // A field of the element, and the last child of the baseline that bears its name.
    struct Shown {
        std::size_t field;
        MSPCXMLNode value;
    };

    [[nodiscard]] std::vector<MSPIBaselineValue>& blockWithRoomFor(std::size_t count);
    [[nodiscard]] std::string_view kept(std::string_view text);

    // None ever grows beyond its room, so that values stay in their places.
    std::deque<std::vector<MSPIBaselineValue>> _blocks;
    bool _showUID = false;
    std::pmr::monotonic_buffer_resource _texts;

    // For the baseline that is being appended: what it shows so far, and by field the position of the value in the last
    // block or None.
    static constexpr auto None = static_cast<std::size_t>(-1);
    std::vector<Shown> _shown;
    std::vector<std::size_t> _positionByField;
};
