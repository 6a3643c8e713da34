#pragma once

#include <cstdint>
#include <initializer_list>
#include <optional>
#include <string>
#include <vector>

/// Streams written bit by bit, by the syntax tables of ITU-T H.264 and without a line of the code under test.
namespace zanfcp::test {

using ByteRow = std::vector<std::uint8_t>;

/// Bits as a text of 0 and 1.
struct BitRow {
    std::string text;

    BitRow& u(unsigned width, std::uint64_t value)
    {
        for (unsigned i = width; i-- > 0;)
            text += ((value >> i) & 1) != 0 ? '1' : '0';
        return *this;
    }
    BitRow& ue(std::uint64_t value)
    {
        unsigned width = 1;
        while ((value + 1) >> width != 0)
            ++width;
        return u(width - 1, 0).u(width, value + 1);
    }
    BitRow& se(std::int64_t value) { return ue(static_cast<std::uint64_t>(value > 0 ? 2 * value - 1 : -2 * value)); }
    BitRow& ues(std::initializer_list<std::uint64_t> values)
    {
        for (const std::uint64_t value : values)
            ue(value);
        return *this;
    }
    BitRow& add(const BitRow& other)
    {
        text += other.text;
        return *this;
    }
    /// The bits, filled up to whole bytes with zeros.
    ByteRow bytes() const
    {
        ByteRow row((text.size() + 7) / 8);
        for (std::size_t i = 0; i < text.size(); ++i)
            if (text[i] == '1') row[i / 8] = static_cast<std::uint8_t>(row[i / 8] | (0x80 >> (i % 8)));
        return row;
    }
};

/// A NAL unit without start code: header, stop bit, bytes 03 where they must be.
inline ByteRow nalOf(std::uint8_t header, BitRow payload)
{
    ByteRow nal{header};
    unsigned zeros = 0;
    for (const std::uint8_t byte : payload.u(1, 1).bytes()) {
        if (zeros == 2 && byte <= 3) {
            nal.push_back(3);
            zeros = 0;
        }
        nal.push_back(byte);
        zeros = byte == 0 ? zeros + 1 : 0;
    }
    return nal;
}

inline ByteRow joined(std::initializer_list<ByteRow> parts)
{
    ByteRow all;
    for (const ByteRow& part : parts)
        all.insert(all.end(), part.begin(), part.end());
    return all;
}

inline ByteRow withStartCode(const ByteRow& nal)
{
    return joined({{0, 0, 0, 1}, nal});
}

/// A sequence parameter set of the Main profile, level 3: 4 bits of frame_num, 64x64.
struct SpsRow {
    unsigned id = 0;
    BitRow order = BitRow{}.ues({0, 0}); ///< pic_order_cnt_type and what follows it; type 0 with 4 bits
    bool allowsGaps = false;
    bool isFrameOnly = false;
    BitRow vui = {}; ///< empty: none

    ByteRow nal() const
    {
        BitRow bits = BitRow{}.u(8, 77).u(8, 0).u(8, 30).ues({id, 0}).add(order).ue(4).u(1, allowsGaps).ue(3);
        bits.ue(isFrameOnly ? 3 : 1).u(1, isFrameOnly);
        if (!isFrameOnly) bits.u(1, 0);
        bits.u(1, 1).u(1, 0).u(1, !vui.text.empty()).add(vui);
        return nalOf(0x67, bits);
    }
};

/// A picture parameter set with one reference in each list.
inline ByteRow ppsNal(unsigned id = 0, unsigned sps = 0, bool hasFieldOrder = true)
{
    return nalOf(0x68,
                 BitRow{}.ues({id, sps}).u(1, 0).u(1, hasFieldOrder).ues({0, 0, 0}).u(3, 0).se(0).se(0).se(0).u(3, 0));
}

enum class Field { none, top, bottom };

/// A slice of a picture for the sets above, up to its marking.
struct SliceRow {
    unsigned type = 7; ///< slice_type: 5 P, 6 B, 7 I
    bool isIdr = false;
    unsigned refIdc = 1;
    unsigned frameNum = 0;
    Field field = Field::none;
    BitRow order = {};   ///< pic_order_cnt_lsb or the deltas
    bool clears = false; ///< memory management operation 5
    unsigned firstMacroblock = 0;
    unsigned pps = 0;
    unsigned idrId = 0;
    bool isFrameOnly = false;

    ByteRow nal() const
    {
        BitRow bits = BitRow{}.ues({firstMacroblock, type, pps}).u(4, frameNum);
        if (!isFrameOnly) bits.u(1, field != Field::none);
        if (field != Field::none) bits.u(1, field == Field::bottom);
        if (isIdr) bits.ue(idrId);
        bits.add(order);
        if (type == 6) bits.u(1, 0);
        if (type != 7) bits.u(1, 0).u(1, 0); // references as in the set, in their usual order
        if (type == 6) bits.u(1, 0);
        if (refIdc != 0 && isIdr) bits.u(2, 0);
        if (refIdc != 0 && !isIdr) bits.u(1, clears);
        if (refIdc != 0 && clears) bits.ues({5, 0});
        return nalOf(static_cast<std::uint8_t>((refIdc << 5) | (isIdr ? 5 : 1)), bits.u(32, 0xABCDEF12));
    }
    ByteRow unit() const { return withStartCode(nal()); }
};

inline BitRow lsb(unsigned value, std::optional<int> deltaBottom = {})
{
    BitRow bits = BitRow{}.u(4, value);
    if (deltaBottom) bits.se(*deltaBottom);
    return bits;
}

} // namespace zanfcp::test
