#include "mxf/index/MxfIndexParser.h"
#include "mxf/klv/PartitionReading.h"
#include "tests/support/FakeClock.h"
#include "tests/support/MemorySource.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <cstdlib>

namespace {

using namespace TamrelMxf;

void Expect(bool truth)
{
    if (!truth) std::abort();
}

void AskAboutUnit(CMxfIndexParser& parser, std::uint32_t sid, std::int64_t unit)
{
    (void)parser.StoredAt(sid, unit);
    for (const std::size_t element : {std::size_t{0}, std::size_t{1}, std::size_t{7}})
        (void)parser.ElementOffset(sid, unit, element);
    const auto found = parser.Find(sid, unit);
    if (!found) return;
    Expect(found->editUnit == unit && found->size >= -1 && found->size != 0 && found->streamOffset >= 0);
    Expect(found->keyFrame >= 0 && found->keyFrame <= unit && (!found->isKey || found->keyFrame == unit));
    // Either nothing is shown in place of this unit, or the place leads back to it.
    Expect(found->displayed == unit || parser.StoredAt(sid, found->displayed) == unit);
    const auto at = parser.UnitAtOffset(sid, found->streamOffset);
    Expect(!at || parser.Find(sid, *at)->streamOffset <= found->streamOffset);
}

void AskEverything(CMxfIndexParser& parser)
{
    constexpr std::int64_t kMost = CMxfIndexSegment::kUnbounded;
    for (const std::uint32_t sid : {0u, 1u, 2u}) {
        (void)parser.ConstantSize(sid);
        (void)parser.EditRate(sid);
        Expect(parser.ReorderDelay(sid) >= 0 && parser.ReorderDelay(sid) <= 127);
        const auto& segments = parser.Segments(sid);
        Expect(segments.empty() != parser.HasTable(sid));
        Expect(std::ranges::is_sorted(segments, {}, &CMxfIndexSegment::startPosition));
        std::vector<std::int64_t> units{-1, 0, 1, 2, 3, 10, 128, kMost - 1, kMost};
        for (std::size_t i = 0; i < std::min<std::size_t>(segments.size(), 20); ++i) {
            const std::int64_t start = segments[i]->startPosition;
            units.insert(units.end(), {start - 1, start, start + 1});
            if (segments[i]->UnitCount() < 1'000'000) units.push_back(start + segments[i]->UnitCount() - 1);
        }
        const auto covered = parser.CoveredUnits(sid);
        if (covered) Expect(*covered == 0 || parser.StoredAt(sid, *covered - 1).has_value());
        for (const std::int64_t unit : units)
            AskAboutUnit(parser, sid, unit);
        for (const std::int64_t offset : {std::int64_t{-1}, std::int64_t{0}, std::int64_t{100}, kMost})
            (void)parser.UnitAtOffset(sid, offset);
    }
}

} // namespace

/// First the bytes as a file with partitions, loaded through its random index pack and at once; then its segments one
/// by one, with questions in between.
extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    static const CMxfUlDict dict;
    zanfcp::test::MemorySource source{{data, data + size}};
    zanfcp::test::FakeClock clock;
    CSourceReader reader{clock};
    reader.Attach(&source, 0, {});
    CMxfIndexParser parser{&reader, {}};
    if (const auto rip = CRandomIndexPack::LoadFromEnd(source, dict, 0, true)) {
        parser.LoadSegments(*rip);
        AskEverything(parser);
    }
    parser.Reset();
    if (const auto pack = ReadPartitionPackAt(source, dict, 0)) {
        (void)parser.LoadSegmentFromPartition(*pack);
        AskEverything(parser);
    }

    CMxfIndexParser pushed{nullptr, {}};
    const std::span<const std::uint8_t> bytes{data, size};
    int imported = 0;
    for (std::size_t at = 0; at < size && imported < 20;) {
        CKlv klv;
        if (klv.View(bytes.subspan(at)) != 0) {
            ++at;
            continue;
        }
        if (pushed.ImportSegment(klv) >= -9) ++imported;
        AskEverything(pushed);
        at += static_cast<std::size_t>(std::max<std::int64_t>(klv.TotalSize(), 17));
    }
    return 0;
}
