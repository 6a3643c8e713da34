#pragma once

#include "ElementBytes.h"
#include "EssenceParser.h"
#include "EssenceWalker.h"
#include "TrackMatch.h"
#include "UnitCutter.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <span>
#include <vector>

namespace TamrelMxf {

/// Every wrapping in which an element is not an edit unit: one element for the whole stream (clip wrapping, OP-Atom),
/// blocks of sound that hold several edit units or parts of some (custom wrapping), several edit units in each element
/// (proxy files). The elements of a stream are one row of bytes to it, which CUnitCutter cuts; see there for how.
/// Mostly there is a single stream; several go side by side in time.
/// Sound whose edit units are its samples is delivered in blocks of a twenty-fifth of a second, counted from the first
/// sample on, or of a picture when there are some.
class CMxfSingleStreamParser final : public CEssenceParser {
public:
    CMxfSingleStreamParser(const SEssenceContext& context, std::vector<SEssenceTrack> tracks);

    int Push() override;
    int Seek(mxf_dmuxer_seek& seek) override;
    int GetSampleInfo(std::int64_t editUnit, mxf_sample_info& info) override;
    int FillSampleOffset(mxf_sample_info& info) override;

protected:
    const SWalkedUnit* Walk(SLane& lane, std::int64_t unit) override;

private:
    using EStep = CEssenceWalker::EStep;

    struct SRow {
        explicit SRow(const SEssenceContext& context) : bytes{context} {}

        CElementBytes bytes;
        std::unique_ptr<CUnitCutter> cutter = nullptr; // once the first element is known
        std::unique_ptr<CPictureOrder> order = nullptr;
    };
    /// Edit units of one stream, and the bytes that they take in its row.
    struct SSpan {
        std::int64_t from = 0, to = 0;
        std::int64_t begin = 0, end = 0;
        bool isLast = false;
    };

    SRow& RowOf(const SLane& lane) { return rows_[static_cast<std::size_t>(&lane - Lanes().data())]; }
    const SRational& StepRate();
    std::int64_t FromStep(const SLane& lane, std::int64_t step);
    std::int64_t ToStep(const SLane& lane, std::int64_t editUnit);
    SRow* OpenRow();
    bool WaitForMore(CElementBytes& bytes, std::int64_t count);
    EStep Extend(SRow& row, std::int64_t size, bool isWaiting = true);
    EStep BeginOf(SLane& lane, std::int64_t unit, std::int64_t& begin);
    bool EndsWithUnit(const SLane& lane);
    EStep Locate(SLane& lane, std::int64_t from, std::int64_t to, SSpan& span);
    EStep Offer(SLane& lane, bool& isTaken);

    CEssenceWalker walker_;
    CTrackMatch match_;
    std::vector<SRow> rows_; // of each lane
    SRational stepRate_;
    bool isWalked_ = false; // all elements are known
    std::int64_t step_ = 0;
    std::size_t nextLane_ = 0; // of the step at hand
};

} // namespace TamrelMxf
