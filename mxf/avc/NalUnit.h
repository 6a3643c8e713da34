#pragma once

#include <cstddef>
#include <cstdint>
#include <span>

namespace TamrelMxf {

/// nal_unit_type (ITU-T H.264, table 7-1), as far as anything here tells them apart.
enum class ENalType : std::uint8_t {
    slice = 1,
    partitionA = 2,
    partitionB = 3,
    partitionC = 4,
    idrSlice = 5,
    sei = 6,
    sequenceParameterSet = 7,
    pictureParameterSet = 8,
    accessUnitDelimiter = 9,
    endOfSequence = 10,
    endOfStream = 11,
    filler = 12,
    sequenceParameterSetExtension = 13,
    prefix = 14,
    subsetSequenceParameterSet = 15,
    reserved18 = 18,
    auxiliarySlice = 19,
    sliceExtension = 20,
};

/// True for the NAL units that begin with a slice header of the primary or of a redundant coded picture.
constexpr bool HasSliceHeader(ENalType type)
{
    return type == ENalType::slice || type == ENalType::partitionA || type == ENalType::idrSlice;
}

/// True for the NAL units that, behind the slices of a picture, belong to the next one (7.4.1.2.3).
constexpr bool StandsBeforeSlices(ENalType type)
{
    return (type >= ENalType::sei && type <= ENalType::accessUnitDelimiter) ||
           (type >= ENalType::prefix && type <= ENalType::reserved18);
}

/// The place of the next three bytes 00 00 01 at or behind `from`; the size of `bytes` when there is none.
/// Costs little more than a search for one byte.
std::size_t FindStartCode(std::span<const std::uint8_t> bytes, std::size_t from);

/// Goes through the NAL units of a piece of stream that is in memory whole: a byte stream with start codes
/// (ITU-T H.264, Annex B), or units behind their length (ISO/IEC 14496-15, 5.3.4.2). The bytes are borrowed.
///
/// The end of a unit in a byte stream is looked for only when it is asked for, so who reads a slice header and
/// then stops pays nothing for the rest of the slice.
class CNalReader {
public:
    static CNalReader AnnexB(std::span<const std::uint8_t> bytes) { return CNalReader{bytes, 0}; }
    /// \param lengthSize  bytes of each length, 1 to 4
    static CNalReader LengthPrefixed(std::span<const std::uint8_t> bytes, unsigned lengthSize)
    {
        return CNalReader{bytes, lengthSize};
    }

    /// Moves to the next unit; empty ones are passed over. \return false when there is none
    bool Next();

    // Of the unit that Next() moved to:
    ENalType Type() const { return static_cast<ENalType>(bytes_[begin_] & 0x1F); }
    std::uint8_t RefIdc() const { return static_cast<std::uint8_t>((bytes_[begin_] >> 5) & 3); }
    /// From the header byte on, as far as is known without a search: up to the end of the unit or of all bytes.
    std::span<const std::uint8_t> Head() const
    {
        return bytes_.subspan(begin_, (isEndKnown_ ? end_ : bytes_.size()) - begin_);
    }
    /// From the header byte to the last byte of the unit that is not 0: zeros in front of a start code are no part
    /// of it, and no unit ends with one (7.4.1).
    std::span<const std::uint8_t> Whole();
    /// Where its start code or length stands in the bytes; the zero byte of a start code of four included.
    std::size_t Offset() const { return offset_; }
    /// True once a length was met that reaches past the end; that unit is the last and has the bytes there are.
    bool IsCutShort() const { return isCutShort_; }

private:
    CNalReader(std::span<const std::uint8_t> bytes, unsigned lengthSize) : bytes_{bytes}, lengthSize_{lengthSize} {}
    bool NextBehindLength();
    bool NextBehindStartCode();

    std::span<const std::uint8_t> bytes_;
    unsigned lengthSize_; ///< 0: start codes
    std::size_t offset_ = 0;
    std::size_t begin_ = 0;   ///< of the unit's header byte
    std::size_t end_ = 0;     ///< behind the unit, if known: the next start code or length
    bool isEndKnown_ = false; ///< also false before the first unit
    bool isCutShort_ = false;
};

} // namespace TamrelMxf
