#include "mxf/essence/UnitCutter.h"

#include "mxf/essence/StartCodeCutter.h"
#include "mxf/model/Timing.h"

#include <algorithm>
#include <cmath>

namespace TamrelMxf {
namespace {

std::optional<std::int64_t> Times(std::int64_t a, std::int64_t b)
{
    std::int64_t product = 0;
    if (__builtin_mul_overflow(a, b, &product)) return std::nullopt;
    return product;
}

class CConstantCutter final : public CUnitCutter {
public:
    explicit CConstantCutter(std::int64_t size) : size_{size} {}

    std::optional<std::int64_t> Begin(CElementBytes& /*bytes*/, std::int64_t unit) override
    {
        return Times(unit, size_);
    }
    std::int64_t UnitsIn(std::int64_t count) const override { return std::max<std::int64_t>(count / size_, 1); }

private:
    std::int64_t size_; // above 0
};

/// Samples of sound. An edit unit may hold a number of them that changes in turn, such as 1602 and 1601.
class CSampleCutter final : public CUnitCutter {
public:
    CSampleCutter(const SRational& editRate, const SRational& sampleRate, std::int64_t blockAlign)
        : editRate_{editRate}, sampleRate_{sampleRate}, blockAlign_{blockAlign}
    {}

    std::optional<std::int64_t> Begin(CElementBytes& /*bytes*/, std::int64_t unit) override
    {
        const auto samples = Rescale(unit, editRate_, sampleRate_);
        return samples ? Times(*samples, blockAlign_) : std::nullopt;
    }
    std::int64_t UnitsIn(std::int64_t count) const override
    {
        return std::max<std::int64_t>(Rescale(count / blockAlign_, sampleRate_, editRate_).value_or(1), 1);
    }

private:
    SRational editRate_, sampleRate_; // positive
    std::int64_t blockAlign_;         // above 0
};

class CIndexCutter final : public CUnitCutter {
public:
    CIndexCutter(CMxfIndexParser& index, std::uint32_t indexSid, bool isOneElement)
        : index_{&index}, indexSid_{indexSid}, isOneElement_{isOneElement}
    {}

    std::optional<std::int64_t> Begin(CElementBytes& bytes, std::int64_t unit) override
    {
        const auto indexed = index_->Find(indexSid_, unit);
        if (!indexed) return std::nullopt;
        if (!isOneElement_) {
            if (bytes.Parts().empty()) return std::nullopt;
            const CElementBytes::SPart& last = bytes.Parts().back();
            const std::int64_t known = last.streamOffset + last.value - last.key + last.length;
            if (indexed->streamOffset > known) return std::nullopt;
            return bytes.FromContainer(indexed->streamOffset);
        }
        // Of one element for everything the first byte of the value is byte 0; some writers count its key as well.
        const auto first = index_->Find(indexSid_, 0);
        const std::int64_t header = bytes.Parts().empty() ? 0 : bytes.Parts()[0].value - bytes.Parts()[0].key;
        const bool countsKey = first && first->streamOffset == header;
        return indexed->streamOffset - (countsKey ? header : 0);
    }

    bool NeedsRow() const override { return !isOneElement_; }

private:
    CMxfIndexParser* index_;
    std::uint32_t indexSid_;
    bool isOneElement_;
};

class CElementCutter final : public CUnitCutter {
public:
    explicit CElementCutter(int elements) : elements_{static_cast<std::size_t>(elements)} {}

    std::optional<std::int64_t> Begin(CElementBytes& bytes, std::int64_t unit) override
    {
        const auto& parts = bytes.Parts();
        if (unit < 0 || std::cmp_greater_equal(unit, parts.size())) return std::nullopt;
        const std::size_t first = static_cast<std::size_t>(unit) * elements_;
        return first < parts.size() ? std::optional{parts[first].begin} : std::nullopt;
    }
    bool NeedsRow() const override { return true; }
    bool FindsAll() const override { return true; }

private:
    std::size_t elements_; // of an edit unit
};

/// A rate in Hz as a ratio: whole, a thousandth below something whole, or in thousandths.
SRational RateOf(double hertz)
{
    if (!(hertz >= 1 && hertz < 2'000'000)) return {};
    const double whole = std::round(hertz);
    if (std::abs(hertz - whole) < 1e-6) return {static_cast<std::int32_t>(whole), 1};
    const double above = std::round(hertz * 1.001);
    if (std::abs(above / 1.001 - hertz) < 1e-3) return {static_cast<std::int32_t>(above * 1000), 1001};
    return {static_cast<std::int32_t>(std::round(hertz * 1000)), 1000};
}

/// The size of the frames of DV (SMPTE ST 314, ST 370): the first block comes again, in sequences of 12000 bytes.
std::int64_t DvFrameSize(CElementBytes& bytes)
{
    constexpr std::size_t kSequence = 12'000, kFewest = 10, kMost = 4 * 12;
    const auto view = bytes.View(0, kSequence * kMost + 2);
    for (std::size_t n = kFewest; n <= kMost && n * kSequence + 1 < view.size(); ++n) {
        const std::uint8_t* const block = view.data() + n * kSequence;
        const bool isHeader = block[0] >> 5 == 0;
        const bool isFirst = (block[1] & 0xFCU) == (view[1] & 0xFCU);
        if (isHeader && isFirst) return static_cast<std::int64_t>(n * kSequence);
    }
    return 0;
}

/// The size of the frames of VC-3 (SMPTE ST 2019-1): all of a stream have the same, a whole number of 4096 bytes, and
/// begin with the same fields of their header.
std::int64_t Vc3FrameSize(CElementBytes& bytes)
{
    constexpr std::size_t kUnit = 4096, kMost = std::size_t{32} << 20;
    constexpr std::size_t kPrefix = 5, kSizes = 24, kCompression = 40, kField = 4, kHead = kCompression + kField;
    const auto view = bytes.View(0, kMost + kHead);
    if (view.size() < kHead || view[0] != 0 || view[1] != 0) return 0;
    for (std::size_t at = kUnit; view.size() >= kHead && at <= view.size() - kHead; at += kUnit) {
        const auto isSame = [&](std::size_t from, std::size_t count) {
            return std::ranges::equal(view.subspan(from, count), view.subspan(at + from, count));
        };
        if (isSame(0, kPrefix) && isSame(kSizes, kField) && isSame(kCompression, kField))
            return static_cast<std::int64_t>(at);
    }
    return 0;
}

} // namespace

CUnitCutter::~CUnitCutter() = default;

std::unique_ptr<CUnitCutter> MakeUnitCutter(const SStreamFormat& format, CMxfIndexParser* index, CElementBytes& bytes)
{
    const bool isSamples = format.essenceKind == EEssenceKind::pcm || format.essenceKind == EEssenceKind::aLaw;
    if (format.type == EStreamType::sound && isSamples && format.blockAlign > 0) {
        const SRational sampleRate = RateOf(format.sampleRate);
        if (format.editRate.IsPositive() && sampleRate.IsPositive())
            return std::make_unique<CSampleCutter>(format.editRate, sampleRate, format.blockAlign);
    }
    const bool isOneElement = format.wrapping != EWrapping::custom && bytes.Parts().size() <= 1;
    if (index != nullptr && index->HasTable(format.indexSid)) {
        const auto constant = index->ConstantSize(format.indexSid);
        if (constant && *constant > 0 && isOneElement) return std::make_unique<CConstantCutter>(*constant);
        if (index->Find(format.indexSid, 0))
            return std::make_unique<CIndexCutter>(*index, format.indexSid, isOneElement);
    }
    if (!isOneElement && format.wrapping != EWrapping::custom) return MakeElementCutter(format);
    std::int64_t size = 0;
    if (format.essenceKind == EEssenceKind::dv) size = DvFrameSize(bytes);
    if (format.essenceKind == EEssenceKind::vc3) size = Vc3FrameSize(bytes);
    if (size > 0) return std::make_unique<CConstantCutter>(size);
    return MakeStartCodeCutter(format, bytes);
}

std::unique_ptr<CUnitCutter> MakeElementCutter(const SStreamFormat& format)
{
    return std::make_unique<CElementCutter>(ElementsInEditUnit(format));
}

} // namespace TamrelMxf
