// A plan's bytes, imported with the delivered template.

#include "BundleImport.h"
#include "FuzzWorld.h"

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size);

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size) {
    auto input = emptyTemplate();
    input.plan = textOf(bytes, size);
    importIntoBundle(input);
    return 0;
}
