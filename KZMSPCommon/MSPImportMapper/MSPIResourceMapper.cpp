#include "MSPIResourceMapper.h"

#include <fmt/format.h>

#include <algorithm>

#include "MSPCException.h"
#include "MSPCExtensions.h"
#include "MSPCLog.h"
#include "MSPCTextScanner.h"
#include "MSPIAmounts.h"
#include "MSPICalendarMapper.h"
#include "MSPINoteMapper.h"
#include "MSPISubject.h"

MSPIResourceMapper::MSPIResourceMapper(MSPIMappingContext& mapper, MSPIUserDataTOCElements& userDataTOCElements,
                                       std::int64_t& mspResourceMaxId)
    : MSPIObjectMapperBase(mapper), _userDataTOCElements(userDataTOCElements), _mspResourceMaxId(mspResourceMaxId) {
}

MSPCXMLNewElement MSPIResourceMapper::newResourceFromMSPResource(const MSPCFields& mspResource) {
    auto newResource = _mapper.newElement("resource");
    auto resource = newResource.node();

    addIdentity(mspResource, resource);
    const auto kind = kindOf(mspResource, _mapper.isSavedBy2007OrLater());
    addChildElementWithNameStringValue(resource, "type", kind == Kind::Staff ? "Staff" : "Material");
    if (const auto notes = mspResource.text("Notes")) {
        resource.appendChild(MSPINoteMapper().newNoteFromMSPNotes(notes.textOrEmpty(), _mapper.kdzxDocument()));
    }
    _userDataChanged = addUserDataOfExtendedAttributesToElement(
        mspResource.nodes("ExtendedAttribute"), resource, MSPIResourceUserDataKeysTag, _userDataTOCElements, _mapper);
    addCosts(mspResource, resource);
    addUnits(mspResource, resource, kind);
    addSchedule(mspResource, resource);
    if (const auto address = mspResource.text("EmailAddress")) {
        addChildElementWithNameStringValue(resource, "email-address", address.textOrEmpty());
    }
    return newResource;
}

void MSPIResourceMapper::addIdentity(const MSPCFields& mspResource, const MSPCXMLNode& resource) {
    const auto uid = mspResource.text("UID");
    if (!uid) {
        throw MSPCInternalInconsistency("Failed to get UID from Resource.");
    }
    const auto number = scanInteger64(uid.textOrEmpty()).value_or(0);
    _mspResourceUID = MSPCResourceUID{number};
    setAttributeWithNameStringValue(resource, "id", _mapper.idMapper().resourceIdFromMspdiUID(uid.textOrEmpty()));
    if (number > 0) {
        _mspResourceMaxId = std::max(_mspResourceMaxId, number);
    }
    const auto name = mspResource.text("Name");
    if (name) {
        addChildElementWithNameStringValue(resource, "name", name.textOrEmpty());
    }
    _mapper.log().log("  Mapping Resource UID={}  name='{}' ...", uid.textOrEmpty(), name.textOrEmpty());
}

// MSPDI knows material (0) and work (1) resources; from 2007 on a flag marks cost resources, which become material
// ones.
MSPIResourceMapper::Kind MSPIResourceMapper::kindOf(const MSPCFields& mspResource, bool isSavedBy2007OrLater) {
    Error error;
    const auto value = mspResource.intValue("Type", &error);
    const auto type = error ? 1 : value;
    if (type != 0 && type != 1) {
        throw MSPCInternalInconsistency(fmt::format("Invalid value of 'Type' in 'Resource': '{}'.", type));
    }
    if (isSavedBy2007OrLater) {
        error.clear();
        const bool isCostResource = mspResource.boolValue("IsCostResource", &error);
        if (!error && isCostResource) {
            return Kind::Material;
        }
    }
    return type == 0 ? Kind::Material : Kind::Staff;
}

void MSPIResourceMapper::addCosts(const MSPCFields& mspResource, const MSPCXMLNode& resource) const {
    Error error;
    const auto costPerUse = mspResource.floatValue("CostPerUse", &error);
    if (!error) {
        addChildElementWithNameStringValue(resource, "cost-per-use", MSPIAmounts::costPerUseText(costPerUse));
    }
    if (const auto rate = mspResource.text("StandardRate")) {
        addChildElementWithNameStringValue(resource, "cost-per-hour", rate.textOrEmpty());
    }
}

void MSPIResourceMapper::addUnits(const MSPCFields& mspResource, const MSPCXMLNode& resource, Kind kind) const {
    double units = 0;
    if (kind == Kind::Staff) {
        units = mspResource.floatValue("MaxUnits");
        if (units == 0) {
            units = 1;
        }
    } else {
        Error error;
        const MSPCResourceUID uid{mspResource.intValue("UID", &error)};
        if (error) {
            return;
        }
        units = _mapper.assignedUnitsOfResource(uid);
    }
    addChildElementWithNameStringValue(resource, "units-available", MSPIAmounts::unitsText(units));
}

void MSPIResourceMapper::addSchedule(const MSPCFields& mspResource, const MSPCXMLNode& resource) const {
    Error error;
    const MSPCCalendarUID calendarUID{mspResource.intValue("CalendarUID", &error)};
    if (error || MSPCNumberOf(calendarUID) < 0) {
        return;
    }
    if (const auto calendar = _mapper.index().calendarsByUID().singleNodeWithKey(calendarUID)) {
        auto schedule = MSPITellingSubject(
            "Calendar", calendar, [&] { return MSPICalendarMapper(_mapper).newScheduleFromMSPCalendar(calendar); });
        if (schedule) {
            addComment(resource, "  Resource Schedule  ");
            MSPCXMLNode(resource).appendChild(std::move(schedule));
        }
    }
}
