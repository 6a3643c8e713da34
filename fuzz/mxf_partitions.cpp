#include "mxf/klv/PartitionScanner.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    using namespace TamrelMxf;
    static const CMxfUlDict dict = [] {
        CMxfUlDict made;
        made.Init();
        return made;
    }();
    zanfcp::test::MemorySource source{{data, data + size}};
    zanfcp::test::FakeClock clock;
    CSourceReader reader{clock};
    reader.Attach(&source, 0, {});
    CPartitionScanner scanner{reader, dict};
    scanner.Reset({}, nullptr, true);

    if (scanner.FindPartitionWithMetadata() == kSuccess) {
        if (scanner.HeaderPartition() == nullptr) std::abort();
        const auto end = static_cast<std::uint64_t>(scanner.MetadataPosition()) + scanner.Metadata().size();
        if (end > size && !scanner.Metadata().empty()) std::abort();
    }
    if (scanner.IsMxfComplete() != (scanner.RandomIndexPack() != nullptr || scanner.FooterPartition() != nullptr))
        std::abort();
    if (scanner.RandomIndexPack() == nullptr) return 0;
    (void)scanner.ScanPartitions();
    for (const std::uint32_t bodySID : {0u, 1u, 2u})
        for (const std::int64_t offset : {0, 1, 320, 100'000})
            if (scanner.RandomIndexPack()->TranslateOffset(offset, bodySID) >= static_cast<std::int64_t>(size))
                std::abort();
    return 0;
}
