#pragma once

#include <cstddef>
#include <string>
#include <string_view>
#include <vector>

#include "MSPIBaselineValues.h"

// What patches must know to take back the values they show: values are taken back in the reverse of the order in which
// they were shown. One journal serves all patches of a scenario, instead of a little memory for each.
class MSPIBaselineJournal {
public:
    // Makes the child of a value, which is one of the target's, show the value's text.
    void show(MSPCXMLNode target, const MSPIBaselineValue& value);
    // Restores the child of the value that was shown last.
    void takeBack(MSPCXMLNode target, const MSPIBaselineValue& value);

private:
    // A child whose text cannot be replaced in its place leaves the document while another element shows the text.
    struct StandIn {
        MSPCXMLNode element;
        MSPCXMLNewElement keptChild;
    };
    static constexpr auto ByStandIn = std::string::npos;

    std::vector<std::size_t> _starts;  // for each value, of the text that was replaced, or ByStandIn
    std::string _originalTexts;        // one after the other
    std::vector<StandIn> _standIns;
};
