#pragma once

#include <cstdint>

#include "MSPCFields.h"
#include "MSPIObjectMapperBase.h"
#include "MSPIUserDataMapper.h"

// Turns one MSPDI `Resource` into one target `resource`. Made for one resource and then discarded.
class MSPIResourceMapper : public MSPIObjectMapperBase {
public:
    enum class Kind { Material, Staff };

    // What kind of resource the target has for one of the plan. Raises `MSPCInternalInconsistency` "Invalid value of
    // 'Type' in 'Resource': '<value>'.".
    [[nodiscard]] static Kind kindOf(const MSPCFields& mspResource, bool isSavedBy2007OrLater);

    // `mspResourceMaxId` is the highest resource UID seen so far, raised by this mapper; user-data keys are recorded in
    // `userDataTOCElements`. All outlive the mapper.
    MSPIResourceMapper(MSPIMappingContext& mapper, MSPIUserDataTOCElements& userDataTOCElements,
                       std::int64_t& mspResourceMaxId);

    // The new element, owned by the caller; never empty. Raises `MSPCInternalInconsistency` "Failed to get UID from
    // Resource.", "Invalid value of 'Type' in 'Resource': '<value>'.", and what the value getters raise for texts that
    // are there but unreadable.
    [[nodiscard]] MSPCXMLNewElement newResourceFromMSPResource(const MSPCFields& mspResource);

    // The resource's UID, 0 for a UID text that is no number; -1 until a resource has been mapped.
    [[nodiscard]] MSPCResourceUID mspResourceUID() const { return _mspResourceUID; }
    // Whether user-data keys were recorded.
    [[nodiscard]] bool userDataChanged() const { return _userDataChanged; }

private:
    void addIdentity(const MSPCFields& mspResource, const MSPCXMLNode& resource);
    void addCosts(const MSPCFields& mspResource, const MSPCXMLNode& resource) const;
    void addUnits(const MSPCFields& mspResource, const MSPCXMLNode& resource, Kind kind) const;
    void addSchedule(const MSPCFields& mspResource, const MSPCXMLNode& resource) const;

    MSPCResourceUID _mspResourceUID{-1};
    MSPIUserDataTOCElements& _userDataTOCElements;
    std::int64_t& _mspResourceMaxId;
    bool _userDataChanged = false;
};
