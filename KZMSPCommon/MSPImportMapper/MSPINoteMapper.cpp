#include "MSPINoteMapper.h"

#include "MSPCCharacters.h"
#include "MSPCExtensions.h"

MSPCXMLNewElement MSPINoteMapper::newNoteFromMSPNotes(std::string_view notes, MSPCXMLDocument& document) const {
    auto note = document.newElement("note");
    const auto text = addChildElementWithName(note.node(), "text");
    for (std::size_t lineStart = 0; lineStart < notes.size();) {
        const auto lineBreak = nextLineBreak(notes, lineStart);
        const auto run = addChildElementWithName(addChildElementWithName(text, "p"), "run");
        addChildElementWithNameStringValue(run, "lit", notes.substr(lineStart, lineBreak.start - lineStart));
        lineStart = lineBreak.end;
    }
    return note;
}
