#include "mxf/klv/PartitionScanner.h"
#include "mxf/metadata/HeaderSets.h"
#include "mxf/metadata/ValueText.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"

#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

/// Puts every value of the metadata into words, none of which may reach the terminal as a control character.
void tell(std::span<const std::uint8_t> metadata)
{
    using namespace TamrelMxf;
    const SHeaderSets header = ReadHeaderSets(metadata);
    for (std::size_t i = 0; i < header.sets.Size(); ++i)
        for (const auto& [tag, item] : header.sets[i].Items()) {
            const SPropertyDef* property = PropertyOf(FindSet(header.sets[i].Key()), tag, &header.primer);
            const std::string text = ValueText(property, item.Value());
            if (std::ranges::any_of(text, [](char c) { return (c >= 0 && c < ' ') || c == 0x7F; })) std::abort();
        }
}

} // namespace

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
        tell(scanner.Metadata());
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
