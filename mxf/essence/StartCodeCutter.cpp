#include "mxf/essence/StartCodeCutter.h"

#include "mxf/Limits.h"
#include "mxf/avc/AccessUnitSplitter.h"
#include "mxf/avc/AvcConfiguration.h"
#include "mxf/avc/NalUnit.h"

#include <algorithm>
#include <utility>

namespace TamrelMxf {
namespace {

constexpr std::size_t kStep = std::size_t{256} << 10; ///< of a row that is looked through

/// MPEG-1 and MPEG-2 (ISO/IEC 13818-2): the two fields of a frame stay together.
class CMpegCutter final : public CStartCodeCutter {
    bool BeginsPicture(std::span<const std::uint8_t> code) override
    {
        constexpr std::uint8_t kPicture = 0x00, kSequence = 0xB3, kExtension = 0xB5, kGroup = 0xB8;
        constexpr unsigned kCodingExtension = 8, kFrame = 3;
        switch (code[0]) {
        case kExtension:
            if (code[1] >> 4 == kCodingExtension) isField_ = (code[3] & 3U) != kFrame;
            return false;
        case kSequence:
        case kGroup: return std::exchange(isInHeaders_, true) ? false : Start(false);
        case kPicture:
            if (std::exchange(isInHeaders_, false)) return Start(false), false;
            return isField_ && !isSecond_ ? (isSecond_ = true, false) : Start(false);
        default: return false;
        }
    }
    bool Start(bool second)
    {
        isSecond_ = second;
        isField_ = false;
        return true;
    }

    bool isInHeaders_ = false; // a sequence or group header has begun the picture that comes
    bool isField_ = false;     // the last picture is one field
    bool isSecond_ = false;    // the last picture is the second field
};

/// AVC as a byte stream: a frame, or its two fields, is an edit unit. Parameter sets of the header serve where the
/// stream has none.
class CAvcCutter final : public CUnitCutter {
public:
    explicit CAvcCutter(const SStreamFormat& format)
    {
        CAvcParameterSets sets;
        unsigned lengthSize = 0;
        (void)ReadAvcExtraData(format.extraData, sets, lengthSize); // what is not broken of it
        const std::vector<std::uint8_t> stream = ToAnnexB(sets);
        CNalReader reader = CNalReader::AnnexB(stream);
        while (reader.Next())
            (void)splitter_.AddParameterSet(reader.Whole());
    }

    std::optional<std::int64_t> Begin(CElementBytes& bytes, std::int64_t unit) override
    {
        while (std::cmp_greater_equal(unit, begins_.size())) {
            const auto view = bytes.View(static_cast<std::int64_t>(splitter_.Position()), kStep);
            if (view.empty() || isFinished_ || begins_.size() >= kMaxWalkedUnits) return std::nullopt;
            Take(splitter_.Push(view));
        }
        return unit < 0 ? std::nullopt : std::optional{begins_[static_cast<std::size_t>(unit)]};
    }
    bool NeedsRow() const override { return true; }
    bool FindsAll() const override { return true; }
    bool Finish() override
    {
        if (std::exchange(isFinished_, true)) return false;
        Take(splitter_.Finish());
        return true;
    }

private:
    void Take(std::span<const std::uint64_t> found)
    {
        for (const std::uint64_t begin : found)
            begins_.push_back(static_cast<std::int64_t>(begin));
    }

    CAccessUnitSplitter splitter_{CAccessUnitSplitter::EUnit::frame};
    std::vector<std::int64_t> begins_;
    bool isFinished_ = false;
};

} // namespace

std::optional<std::int64_t> CStartCodeCutter::Begin(CElementBytes& bytes, std::int64_t unit)
{
    if (begins_.empty()) begins_.push_back(0);
    while (std::cmp_greater_equal(unit, begins_.size())) {
        const auto view = bytes.View(searched_, kStep);
        if (view.size() < kLookedAt || begins_.size() >= kMaxWalkedUnits) return std::nullopt;
        std::size_t at = 0;
        for (; (at = FindStartCode(view, at)) + kLookedAt <= view.size(); at += 3) {
            const std::int64_t place = searched_ + static_cast<std::int64_t>(at);
            if (BeginsPicture(view.subspan(at + 3)) && place > begins_.back()) begins_.push_back(place);
        }
        const std::size_t done = std::min(at, view.size() - kLookedAt + 1);
        searched_ += static_cast<std::int64_t>(done);
    }
    return unit < 0 ? std::nullopt : std::optional{begins_[static_cast<std::size_t>(unit)]};
}

std::unique_ptr<CUnitCutter> MakeStartCodeCutter(const SStreamFormat& format, CElementBytes& bytes)
{
    const auto first = bytes.View(0, 4);
    const bool hasZero = first.size() > 3 && first[0] == 0 && first[1] == 0 && (first[2] == 1 || first[3] == 1);
    if (!hasZero) return nullptr;
    if (format.essenceKind == EEssenceKind::mpegPicture) return std::make_unique<CMpegCutter>();
    if (format.essenceKind == EEssenceKind::avc) return std::make_unique<CAvcCutter>(format);
    return nullptr;
}

} // namespace TamrelMxf
