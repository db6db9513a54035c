#pragma once

#include <cstdint>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <utility>
#include <vector>

#include "MSPCServices.h"
#include "MSPCUID.h"
#include "MSPDICulprit.h"
#include "MSPDIKnownCulprits.h"
#include "MSPDIPatient.h"
#include "MSPDITakenOut.h"
#include "MSPIGrowthBounds.h"
#include "MSPIMappingContext.h"
#include "MSPITaskTree.h"
#include "MSPIUserDataMapper.h"

// Maps one scenario of a plan, object by object, with the importer's own mappers, and takes out of the plan what they
// stumble over: values that they cannot read, and timephased data of which no pieces can be made. What it cannot help
// is left to the import to tell.
class MSPDIMappingTrial {
public:
    // The scenario of a baseline must be showing; -1 is the plan itself. `grown` is what was made of the project's
    // calendars in other scenarios; this one's is added. All arguments outlive this object.
    MSPDIMappingTrial(MSPDIPatient& patient, MSPCServices services, std::int32_t baselineNumber,
                      const MSPCXMLDocument& kdzxTemplate, MSPIGrowthBounds& grown);
    ~MSPDIMappingTrial();

    // Ends where something is beyond all measure: an import ends there, whatever else is mended.
    void run();
    [[nodiscard]] bool isBeyondMeasure() const { return _isBeyondMeasure; }

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

    // What a leaf belongs to, in words. Finding that out may mean to look through the whole plan.
    using Subject = std::function<std::string(const MSPCXMLNode& leaf, const MSPDIMappingFailure& failure)>;
    using Owners = std::function<std::vector<MSPCXMLNode>(const MSPDIMappingFailure&)>;

    // Tries until it succeeds or nothing is found to blame; says whether it succeeded.
    bool mend(const MSPDITrial& trial, const Owners& owners, const Subject& subject);
    // The same from a failure of the first try on; none where that succeeded.
    bool mendFrom(std::optional<MSPDIMappingFailure> failure, const MSPDITrial& trial, const Owners& owners,
                  const Subject& subject);
    bool mendAtOnce(std::optional<MSPDIMappingFailure> failure, const MSPDITrial& trial, const Owners& owners,
                    const Subject& subject);
    // Whether there were pieces to look at.
    bool mendPieceByPiece(const std::vector<MSPCXMLNode>& owners, const MSPDITrial& trial, const Subject& subject);
    [[nodiscard]] std::vector<MSPCXMLNode> definitionsFor(const std::vector<MSPCXMLNode>& owners);
    [[nodiscard]] MSPDICulprit culpritAmong(const std::vector<MSPCXMLNode>& suspects,
                                            const MSPDIMappingFailure& failure, const MSPDITrial& trial);
    bool takeOut(MSPCXMLNode leaf, const std::function<std::string()>& subject);
    template <typename Map>
    [[nodiscard]] std::optional<MSPDIMappingFailure> failureOf(const Map& map);

    bool mapProject();
    void mapResource(const MSPCXMLNode& resource);
    void readUID(const MSPCXMLNode& assignment, std::string_view name);
    void mapTask(const MSPCXMLNode& task);
    // What it asks for in vain is added to `missing`, where there is one.
    [[nodiscard]] Mapped mapped(const MSPCXMLNode& task, std::vector<std::string_view>* missing = nullptr);
    [[nodiscard]] std::optional<MSPDIMappingFailure> firstFailureOf(const MSPCXMLNode& task, Mapped& facts,
                                                                    const MSPDITrial& trial);
    bool splits(const MSPCXMLNode& task, const Mapped& facts);
    void link(const Mapped& facts);
    void removeTimephasedData(const MSPCXMLNode& task, MSPCTaskUID taskUID, std::string_view step);
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
    std::vector<std::string> _namesToBlame;  // of leaves: what is wrong is often so in many items
    MSPIGrowthBounds& _grown;
    bool _isBeyondMeasure = false;
    MSPDIKnownCulprits _knownCulprits;                             // of tasks
    std::map<std::string, std::vector<MSPCXMLNode>> _definitions;  // of custom fields, by FieldID, when asked for
    std::set<MSPCTaskUID> _withoutPieces;                          // UIDs of tasks whose timephased data were taken out
    // What shows a value of a baseline and is out of the tree until the mapping of its owner is through.
    std::optional<MSPDITakenOut> _takenOut;
    std::vector<std::pair<MSPCXMLNode, std::string>> _condemned;
};
