#pragma once

#include "EssenceWalker.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

namespace TamrelMxf {

/// The bytes of one stream as one row: the values of its elements, however they are cut. Elements are looked up as far
/// as they are asked for. One whose length is not written yet, or is too short, holds all that follows up to the next
/// partition.
class CElementBytes {
public:
    using EStep = CEssenceWalker::EStep;

    /// One element of the stream.
    struct SPart {
        std::int64_t begin = 0;        ///< of its value in the row
        std::int64_t length = 0;       ///< of its value
        std::int64_t value = 0;        ///< place of its value in the file
        std::int64_t key = 0;          ///< place of its key
        std::int64_t streamOffset = 0; ///< of its key in the container
    };

    explicit CElementBytes(const SEssenceContext& context) : context_{&context} {}

    /// Takes the KLV that a walker has found as the next element.
    /// \return false when there are kMaxWalkedUnits already
    bool Append(const SEssenceKlv& klv);
    /// True when the last element goes on for as long as the essence does: nothing follows it.
    bool IsOpen() const { return isOpen_; }
    /// True when the last element is whole: another key follows it.
    bool IsClosed() const { return !isOpen_ && isFollowed_; }
    /// True when the partition that ends an open element was met.
    bool IsEnded() const { return isEnded_; }
    /// Looks how far an open element reaches by now, and whether a closed one turns out to be too short.
    void Refresh();

    std::int64_t Size() const { return parts_.empty() ? 0 : parts_.back().begin + parts_.back().length; }
    const std::vector<SPart>& Parts() const { return parts_; }
    /// The element that holds byte `offset` of the row; null behind the end.
    const SPart* PartAt(std::int64_t offset) const;
    /// The place in the row of a byte of the container.
    std::int64_t FromContainer(std::int64_t streamOffset) const;

    /// `count` bytes of the row: in place where they lie in one element, else put together.
    /// \return fewer when they are not there
    std::span<const std::uint8_t> View(std::int64_t offset, std::size_t count);

private:
    std::int64_t Limit(const SPart& part) const;
    bool IsKeyAt(std::int64_t position) const;
    static std::int64_t WithoutFill(std::span<const std::uint8_t> bytes);
    void EndAtPartition(std::int64_t offset, std::size_t count);

    const SEssenceContext* context_;
    std::vector<SPart> parts_;
    std::int64_t stated_ = 0; // length of the last element, as its KLV says
    bool isOpen_ = false;
    bool isUnsure_ = false; // open only because its end, or what follows, is not there yet
    bool isFollowed_ = false;
    bool isEnded_ = false;
    std::vector<std::uint8_t> joined_;
};

} // namespace TamrelMxf
