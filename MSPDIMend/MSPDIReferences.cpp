#include "MSPDIReferences.h"

#include "MSPDIPatient.h"

void MSPDIRenumberReference(MSPDIPatient& patient, const MSPCXMLNode& owner, std::string_view name,
                            const MSPDINewUID& newUID) {
    const auto reference = owner.lastChildElement(name).element;
    const auto number = reference ? newUID(reference.stringValue()) : std::nullopt;
    if (number) {
        patient.setText(reference, *number);
    }
}

void MSPDIRenumberReferences(MSPDIPatient& patient, std::string_view list, std::string_view item, std::string_view name,
                             const MSPDINewUID& newUID) {
    for (const auto& owner : patient.items(list, item)) {
        MSPDIRenumberReference(patient, owner, name, newUID);
    }
}

void MSPDIRenumberUsesOfTasks(MSPDIPatient& patient, const MSPDINewUID& newUID) {
    MSPDIRenumberReferences(patient, "Assignments", "Assignment", "TaskUID", newUID);
    for (const auto& task : patient.items("Tasks", "Task")) {
        for (const auto& link : task.childElements("PredecessorLink")) {
            MSPDIRenumberReference(patient, link, "PredecessorUID", newUID);
        }
    }
}

void MSPDIRenumberUsesOfBaseCalendars(MSPDIPatient& patient, const MSPDINewUID& newUID) {
    MSPDIRenumberReference(patient, patient.project(), "CalendarUID", newUID);
    MSPDIRenumberReferences(patient, "Tasks", "Task", "CalendarUID", newUID);
    MSPDIRenumberReferences(patient, "Calendars", "Calendar", "BaseCalendarUID", newUID);
}
