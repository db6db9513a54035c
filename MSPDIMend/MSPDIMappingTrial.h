#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MSPCServices.h"
#include "MSPCUID.h"
#include "MSPDICulprit.h"
#include "MSPDIPatient.h"
#include "MSPIMappingContext.h"
#include "MSPITaskTree.h"
#include "MSPIUserDataMapper.h"

// Maps one scenario of a plan, object by object, with the importer's own mappers, and takes out of the plan what they
// stumble over: values that they cannot read, and timephased data of which no pieces can be made. What it cannot help
// is left to the import to tell.
class MSPDIMappingTrial {
public:
    // The scenario of a baseline must be showing; -1 is the plan itself. All arguments outlive this object.
    MSPDIMappingTrial(MSPDIPatient& patient, MSPCServices services, std::int32_t baselineNumber,
                      const MSPCXMLDocument& kdzxTemplate);
    ~MSPDIMappingTrial();

    void run();

    // The leaves of baselines that are to leave the plan when the baseline no longer shows.
    [[nodiscard]] const std::vector<std::pair<MSPCXMLNode, std::string>>& condemned() const { return _condemned; }

private:
    struct Mapped {
        std::string id;
        MSPCTaskUID uid{-1};
        std::int64_t level = 0;
        bool isSummary = false;
        bool isNull = false;
    };

    // Finding out what something is called may mean to look through the whole plan.
    using Subject = std::function<std::string()>;
    using Owners = std::function<std::vector<MSPCXMLNode>(const MSPDIMappingFailure&)>;

    // Tries until it succeeds or nothing is found to blame; says whether it succeeded.
    bool mend(const MSPDITrial& trial, const Owners& owners, const Subject& subject);
    bool takeOut(MSPCXMLNode leaf, const std::string& subject);

    bool mapProject();
    void mapResource(const MSPCXMLNode& resource);
    void readAssignment(const MSPCXMLNode& assignment);
    void mapTask(const MSPCXMLNode& task);
    [[nodiscard]] Mapped mapped(const MSPCXMLNode& task);
    bool splits(const MSPCXMLNode& task, const Mapped& facts, const Subject& subject);
    void link(const Mapped& facts);
    void removeTimephasedData(MSPCTaskUID taskUID, std::string_view step, const std::string& subject);
    [[nodiscard]] std::vector<MSPCXMLNode> assignmentsOf(MSPCTaskUID taskUID);

    MSPDIPatient& _patient;
    MSPCServices _services;
    MSPIMappingContext _context;
    MSPIUserDataTOCElements _userDataTOCElements;
    std::int64_t _mspTaskMaxId = 0;
    std::int64_t _mspResourceMaxId = 0;
    MSPCXMLNewElement _scenario;
    MSPCXMLNewElement _groupType;  // that of any group
    std::unique_ptr<MSPITaskTree> _tree;
    std::unique_ptr<MSPIAssignmentPool> _pool;
    std::set<MSPCTaskUID> _withoutPieces;  // UIDs of tasks whose timephased data were taken out
    // What shows a value of a baseline and is set aside until the mapping of its owner is through.
    struct Aside {
        MSPCXMLNode parent;
        MSPCXMLNode before;
        MSPCXMLNewElement leaf;
    };
    std::vector<Aside> _aside;
    std::vector<std::pair<MSPCXMLNode, std::string>> _condemned;
};
