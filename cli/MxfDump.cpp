#include "cli/MxfDump.h"

#include "cli/MxfWords.h"
#include "cli/Text.h"
#include "mxf/Limits.h"
#include "mxf/klv/Keys.h"
#include "mxf/klv/KlvSearch.h"
#include "mxf/klv/PartitionReading.h"
#include "mxf/labels/EssenceKeys.h"
#include "mxf/metadata/HeaderSets.h"
#include "mxf/metadata/ValueText.h"
#include "platform/Format.h"

#include <algorithm>
#include <array>
#include <optional>
#include <span>
#include <utility>
#include <vector>

namespace zanfcp::cli {
namespace {

using namespace TamrelMxf;

using Bytes = std::span<const std::uint8_t>;
/// What stands below the line of a KLV: names and values.
using Details = std::vector<std::pair<std::string, std::string>>;

constexpr std::size_t kChunkBytes = std::size_t{64} << 10;
constexpr std::size_t kMostNameColumns = 44;
constexpr std::array<std::uint8_t, 4> kPrefix{0x06, 0x0E, 0x2B, 0x34}; // of every key

std::string nameOf(const SUl& key)
{
    if (Keys::IsPartitionPack(key)) {
        const auto kind = static_cast<EPartitionKind>(key.bytes[13]);
        const std::string_view status = word(static_cast<EPartitionStatus>(key.bytes[14]));
        return "Partition Pack: " + std::string(word(kind)) + ", " +
               (status.empty() ? format("status %02Xh", key.bytes[14]) : std::string(status));
    }
    if (key.MatchesAnyVersion(Keys::kPrimerPack)) return "Primer Pack";
    if (key.MatchesAnyVersion(Keys::kRandomIndexPack)) return "Random Index Pack";
    if (Keys::IsFill(key)) return "Fill";
    if (const SEssenceKey* essence = FindEssenceKey(key)) {
        if (essence->kind != EEssenceKeyKind::element) return std::string(essence->name);
        return std::string(essence->name) + format(", track %08X", TrackNumberOf(key));
    }
    if (const SSetDef* set = FindSet(key)) return std::string(set->name);
    if (const SUlEntry* entry = labelDictionary().Find(key)) return std::string(entry->name);
    return IsLocalSetKey(key) ? "unknown set" : "unknown";
}

const SValueStyle& style()
{
    static const SValueStyle made{.labelName = labelName};
    return made;
}

std::string labelText(const SUl& label)
{
    const std::string_view name = labelName(label);
    return name.empty() ? ToText(label) : std::string(name) + " (" + ToText(label) + ")";
}

Details packDetails(const CPartitionPack& pack)
{
    Details out = {
        {"Version", std::to_string(pack.majorVersion) + "." + std::to_string(pack.minorVersion)},
        {"KAGSize", std::to_string(pack.kagSize)},
        {"ThisPartition", std::to_string(pack.thisPartition)},
        {"PreviousPartition", std::to_string(pack.previousPartition)},
        {"FooterPartition", std::to_string(pack.footerPartition)},
        {"HeaderByteCount", std::to_string(pack.extent.headerByteCount)},
        {"IndexByteCount", std::to_string(pack.extent.indexByteCount)},
        {"IndexSID", std::to_string(pack.indexSID)},
        {"BodyOffset", std::to_string(pack.bodyOffset)},
        {"BodySID", std::to_string(pack.bodySID)},
        {"OperationalPattern",
         OperationalPatternName(pack.operationalPattern) + ", " + labelText(pack.operationalPattern)},
    };
    for (const CPartitionPack::SEssenceContainer& container : pack.essenceContainers)
        out.emplace_back("EssenceContainer", labelText(container.label));
    return out;
}

Details ripDetails(Bytes value)
{
    constexpr std::size_t kEntry = 12;
    constexpr std::size_t kTotal = 4;
    Details out;
    for (; value.size() >= kEntry + kTotal; value = value.subspan(kEntry))
        out.emplace_back("BodySID " + std::to_string(*Values::Number<std::uint32_t>(value.first(4))),
                         "offset " + std::to_string(*Values::Number<std::uint64_t>(value.subspan(4, 8))));
    if (value.size() == kTotal)
        out.emplace_back("Length", std::to_string(*Values::Number<std::uint32_t>(value)));
    else
        out.emplace_back("rest", std::to_string(value.size()) + " bytes that are no entry");
    return out;
}

Details primerDetails(const CPrimerPack& primer)
{
    constexpr std::size_t kTag = 2;
    const Values::SList list = Values::List(primer.Value(), kTag + SUl::kSize);
    Details out;
    for (std::size_t i = 0; i < list.count; ++i) {
        const SUl label = SUl::From(&list[i][kTag]);
        const SPropertyDef* property = FindProperty(nullptr, label);
        out.emplace_back(format("%02X%02X", list[i][0], list[i][1]),
                         ToText(label) + (property == nullptr ? std::string() : "  " + std::string(property->name)));
    }
    return out;
}

/// The entries of an index table segment, in a line. Layout: SMPTE ST 377-1, 11.
std::string indexEntriesText(Bytes value)
{
    constexpr std::size_t kFixed = 11;
    constexpr std::uint8_t kRandomAccess = 0x80;
    const Values::SList list = Values::List(value, kFixed);
    if (list.count == 0) return "no entries";
    std::size_t randomAccess = 0;
    for (std::size_t i = 0; i < list.count; ++i)
        randomAccess += (list[i][2] & kRandomAccess) != 0 ? 1U : 0U;
    const auto offset = [&list](std::size_t i) {
        return std::to_string(*Values::Number<std::uint64_t>(list[i].subspan(3, 8)));
    };
    return std::to_string(list.count) + " entries of " + std::to_string(list.entrySize) + " bytes, stream offsets " +
           offset(0) + " to " + offset(list.count - 1) + ", " + std::to_string(randomAccess) + " with random access";
}

/// The items of a local set, in its order.
Details setDetails(const SUl& key, Bytes value, const CPrimerPack& primer)
{
    const SSetDef* set = FindSet(key);
    Details out;
    while (!value.empty()) {
        CMetadataItem item;
        if (item.ImportFrom(value, key.bytes[5]) != 0 || item.TotalSize() == 0 || item.TotalSize() > value.size()) {
            out.emplace_back("rest", std::to_string(value.size()) + " bytes that are no whole item");
            break;
        }
        const SPropertyDef* property = PropertyOf(set, item.Tag(), &primer);
        const std::string name = property == nullptr ? "unknown" : std::string(property->name);
        out.emplace_back(name + format(" (%04X)", item.Tag()), item.Tag() == CMetadataItem::kIndexEntryArray
                                                                   ? indexEntriesText(item.Value())
                                                                   : ValueText(property, item.Value(), style()));
        if (item.ExceedsStatedLength()) break; // it reaches to the end of its segment
        value = value.subspan(item.TotalSize());
    }
    return out;
}

class Walk {
public:
    Walk(CMediaSource& source, const std::function<bool(std::string_view)>& print)
        : source_{source}, print_{print}, size_{source.GetSize()}
    {}

    MxfDumpOutcome run()
    {
        const auto first = firstPartition();
        if (!first) return outcome_;
        outcome_.isMxf = true;
        std::int64_t position = 0;
        say("      OFFSET        LENGTH  KEY                                              NAME\n");
        if (*first > 0) {
            range(0, *first, "run-in");
            position = *first;
        }
        while (position < size_ && !outcome_.isStopped && outcome_.cut.empty())
            position = step(position);
        return outcome_;
    }

private:
    /// The place of the first partition pack. KLVs may stand before it, or a run-in that is none.
    std::optional<std::int64_t> firstPartition()
    {
        std::vector<std::uint8_t> head(kMaxRunInBytes + SUl::kSize);
        head.resize(read(0, head));
        SKlvHeader klv;
        const auto found = SearchPartitionPack(head);
        if (found && klv.Parse(head) == 0) return 0;
        return found;
    }

    std::size_t read(std::int64_t position, std::span<std::uint8_t> bytes)
    {
        if (source_.Seek(position) != 0) return 0;
        return static_cast<std::size_t>(std::max<std::int64_t>(source_.Read(bytes.data(), bytes.size()), 0));
    }

    /// Shows what stands at a place. \return the place behind it
    std::int64_t step(std::int64_t position)
    {
        SKlvHeader klv;
        if (ReadKlvHeader(source_, position, klv) != 0) return noKlv(position);
        const std::int64_t left = size_ - position;
        const bool isWhole = !klv.IsIndefinite() && klv.TotalSize() <= left;
        std::string name = nameOf(klv.key);
        if (klv.IsIndefinite()) name += " (of unknown length)";
        if (!isWhole && !klv.IsIndefinite())
            name += format(" (cut: %lld bytes are there)",
                           static_cast<long long>(std::max<std::int64_t>(left - klv.HeaderSize(), 0)));
        say(format("%12lld  %12s  %s  %s\n", static_cast<long long>(position),
                   klv.IsIndefinite() ? "unknown" : std::to_string(klv.length).c_str(), ToText(klv.key).c_str(),
                   printable(name).c_str()));
        if (klv.IsIndefinite()) return position + klv.HeaderSize();
        show(details(position, klv, isWhole));
        if (isWhole) return position + klv.TotalSize();
        outcome_.cut = format("the KLV at offset %lld has %lld bytes, the file ends after %lld of them",
                              static_cast<long long>(position), static_cast<long long>(klv.TotalSize()),
                              static_cast<long long>(left));
        return size_;
    }

    Details details(std::int64_t position, const SKlvHeader& klv, bool isWhole)
    {
        const bool isPartition = Keys::IsPartitionPack(klv.key);
        const bool isPrimer = klv.key.MatchesAnyVersion(Keys::kPrimerPack);
        const bool isRip = klv.key.MatchesAnyVersion(Keys::kRandomIndexPack);
        if (isPartition && klv.key.bytes[13] == static_cast<std::uint8_t>(EPartitionKind::footer))
            outcome_.hasFooter = true;
        if (isRip && isWhole) outcome_.hasRip = true;
        const bool isSet = IsLocalSetKey(klv.key) && FindEssenceKey(klv.key) == nullptr;
        if (!isPartition && !isPrimer && !isRip && !isSet) return {};
        if (klv.length > static_cast<std::int64_t>(kMaxHeaderMetadataBytes)) return {{"value", "too long to be shown"}};

        const std::int64_t there = std::min(klv.TotalSize(), size_ - position);
        std::vector<std::uint8_t> bytes(static_cast<std::size_t>(there));
        bytes.resize(read(position, bytes));
        const Bytes value = Bytes{bytes}.subspan(std::min(bytes.size(), static_cast<std::size_t>(klv.HeaderSize())));
        if (isSet) return setDetails(klv.key, value, primer_);
        if (isRip) return ripDetails(value);
        CKlv whole;
        if (whole.View(bytes) != 0) return {};
        if (isPrimer) return primer_.ImportFrom(&whole) == 0 ? primerDetails(primer_) : Details{};
        const auto pack = CPartitionPack::CreateFrom(&whole, labelDictionary(), position);
        return pack ? packDetails(*pack) : Details{{"value", "too short for a partition pack"}};
    }

    /// Shows the bytes up to the next KLV as a range. \return the place of that, or the end of the file
    std::int64_t noKlv(std::int64_t position)
    {
        std::array<std::uint8_t, SKlvHeader::kProbeSize> head{};
        const std::size_t got = read(position, head);
        const auto compared = static_cast<std::ptrdiff_t>(std::min(got, kPrefix.size()));
        if (got < head.size() && std::equal(kPrefix.begin(), kPrefix.begin() + compared, head.begin())) {
            outcome_.cut = format("the file ends inside the key or length of the KLV at offset %lld",
                                  static_cast<long long>(position));
            range(position, size_, "head of a KLV, cut");
            return size_;
        }
        const std::int64_t next = nextKlv(position + 1);
        outcome_.rubbish += next - position;
        range(position, next, "no KLV");
        return next;
    }

    std::int64_t nextKlv(std::int64_t from)
    {
        std::vector<std::uint8_t> chunk(kChunkBytes);
        for (std::int64_t position = from; position < size_;) {
            const std::size_t got = read(position, chunk);
            const auto end = chunk.begin() + static_cast<std::ptrdiff_t>(got);
            const auto found = std::search(chunk.begin(), end, kPrefix.begin(), kPrefix.end());
            if (found != end) {
                position += found - chunk.begin();
                SKlvHeader klv;
                if (ReadKlvHeader(source_, position, klv) == 0) return position;
                ++position;
            } else if (got < chunk.size()) {
                break;
            } else {
                position += static_cast<std::int64_t>(got - (kPrefix.size() - 1)); // one may lie across the chunks
            }
        }
        return size_;
    }

    void range(std::int64_t from, std::int64_t to, const char* what)
    {
        say(format("%12lld  %12lld  %-47s  %s\n", static_cast<long long>(from), static_cast<long long>(to - from), "-",
                   what));
    }

    void show(const Details& details)
    {
        std::size_t columns = 0;
        for (const auto& [name, value] : details)
            columns = std::max(columns, std::min(name.size(), kMostNameColumns));
        for (const auto& [name, value] : details) {
            const std::size_t gap = 2 + (name.size() < columns ? columns - name.size() : 0);
            say(std::string(28, ' ') + name + std::string(gap, ' ') + printable(value) + "\n");
        }
    }

    void say(std::string_view line) { outcome_.isStopped = outcome_.isStopped || !print_(line); }

    CMediaSource& source_;
    const std::function<bool(std::string_view)>& print_;
    std::int64_t size_;
    CPrimerPack primer_; // the last one
    MxfDumpOutcome outcome_;
};

} // namespace

MxfDumpOutcome dumpMxf(CMediaSource& source, const std::function<bool(std::string_view)>& print)
{
    return Walk{source, print}.run();
}

} // namespace zanfcp::cli
