#pragma once

#include <cstdint>
#include <deque>
#include <optional>
#include <string>

#include "MSPCXMLDocument.h"
#include "MSPIBaselinePatch.h"
#include "MSPIImportInfo.h"
#include "MSPIMappingContext.h"
#include "MSPIProjectSettings.h"
#include "MSPIUserDataMapper.h"

// Turns one MSPDI plan into one scenario document, the actual scenario or a baseline, and records it and the
// project's settings in the table of contents. Made for one scenario: `map` is called once, then the result is taken.
class MSPIMapper : public MSPIMappingContext {
public:
    // The plan, the documents, the info and the services outlive the mapper. Raises `MSPCInternalInconsistency`
    // "Unexpected baseline number in info dictionary: <number>" for a number below 0 or above 10.
    MSPIMapper(MSPIPlan& plan, const MSPCXMLDocument& kdzxTemplateXmlDoc, MSPCXMLDocument& kdzxTOCXmlDoc,
               const MSPIImportInfo& info, const MSPCServices& services);

    // Maps the scenario. A baseline without data produces no document and leaves the table of contents untouched. While
    // a baseline is mapped the MSPDI document shows its values; afterwards it is exactly what it was, unless the
    // mapping failed. Raises `MSPIMapperException` "MSPIMapper.map: Source XML DOM is not a valid MSPDI document." and
    // "MSPIMapper.map: Failed to create empty XML DOM for target model.", `MSPCInternalInconsistency` "No scenario name
    // provided in info dictionary.", and what the mappers of the parts and the table of contents raise.
    void map();

    // The scenario document; none before `map` and when nothing is to be written.
    [[nodiscard]] std::optional<MSPCXMLDocument>& kdzxXmlDoc() { return _kdzxXmlDoc; }
    // The project's name as the scenario builder found it.
    [[nodiscard]] const std::string& mspProjectName() const { return _mspProjectName; }

private:
    void validateSource() const;
    bool applyBaseline();
    void revertBaseline();
    [[nodiscard]] std::vector<MSPCXMLNode> hiddenElementsOfBaseline();
    MSPCXMLNewElement newScenarioElement();
    std::string makeScenarioDocument(MSPCXMLNewElement&& newScenario);
    void addHeaderComments(const MSPCXMLNode& scenario) const;
    void updateTOC(const std::string& scenarioId, const MSPICurrencySettings& currency);

    MSPCXMLDocument& _kdzxTOCXmlDoc;
    std::optional<MSPCXMLDocument> _kdzxXmlDoc;
    const MSPIImportInfo& _info;
    std::string _mspProjectName;
    MSPIProjectSettings _settings;
    MSPIBaselineJournal _journal;
    std::deque<MSPIBaselinePatch> _patches;  // in the order of the document: assignments, resources, tasks
    bool _userDataChanged = false;
    MSPIUserDataTOCElements _userDataTOCElements;
    std::int64_t _mspTaskMaxId = 0;
    std::int64_t _mspResourceMaxId = 0;
};
