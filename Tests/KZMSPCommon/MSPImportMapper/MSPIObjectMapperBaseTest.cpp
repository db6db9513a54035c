#include "MSPIObjectMapperBase.h"

#include "ExpectRaises.h"
#include "MappingFixture.h"

namespace {

class AnyMapper : public MSPIObjectMapperBase {
public:
    using MSPIObjectMapperBase::checkNode;
};

}  // namespace

TEST(MSPIObjectMapperBase, refusesEmptyHandlesByTheKindOfObject) {
    const std::pair<const char*, const char*> table[] = {
        {"Resource", "Expected NSXMLNodeProxy as a Resource object."},
        {"Task", "Expected NSXMLNodeProxy as a Task object."},
        {"PredecessorLink", "Expected NSXMLNodeProxy as a PredecessorLink object."},
    };
    for (const auto& [kind, reason] : table) {
        EXPECT_RAISES(AnyMapper::checkNode(MSPCXMLNode(), kind), MSPCInternalInconsistency, reason);
    }
}

TEST(MSPIObjectMapperBase, acceptsNodes) {
    const auto document = documentFromXML("<Task/>");
    EXPECT_NO_THROW(AnyMapper::checkNode(document.root(), "Task"));
}
