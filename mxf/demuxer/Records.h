#pragma once

#include "../io/ExternalIo.h"

#include <cstddef>
#include <cstdint>

/// The records of the flat interface: plain data without constructors of their own, in the global namespace.

#pragma pack(push, 4) // `io` follows the five fields in front of it without a gap
/// How a file is opened.
struct mxf_demuxer_config {
    std::uint32_t timeout;            ///< seconds to wait for the file itself, and for data in a file that grows
    std::uint32_t lazy_index_loading; ///< not 0: index tables are loaded on demand; so they are in OP-Atom and OP1b
    std::uint32_t use_external_io;    ///< not 0: `io` gives the bytes, not a file opened by path
    std::uint32_t flag;               ///< 1 by convention; not read
    std::uint32_t reserved;           ///< 0
    external_io io;
    std::uint32_t reserved_words[7]; ///< 0
    void* pointer;                   ///< not read
};
#pragma pack(pop)
static_assert(offsetof(mxf_demuxer_config, io) == 20 && sizeof(mxf_demuxer_config) == 20 + 9 * sizeof(void*) + 28);

/// What a file says about itself as a whole.
struct mxf_file_info {
    std::int64_t duration;      ///< edit units, -1 while it is not known
    std::int32_t edit_rate_num; ///< edit units of `duration` a second; 0/0 when not known
    std::int32_t edit_rate_den; ///<
    std::int64_t file_size;     ///< bytes, -1 when not known
    std::uint32_t stream_count; ///< valid indexes for mxfDemuxGetStreamFormat are below it
    /// Edit unit byte count of the first index table segment of the picture, else of the first stream that has some: 0
    /// for variable sizes. -1 when there is no segment. 0 also while index tables are not loaded, see
    /// lazy_index_loading.
    std::uint32_t index_value;
    std::uint32_t zero;                  ///<
    std::uint32_t operational_pattern;   ///< bytes 13 to 16 of the label, the first of them on top
    std::uint32_t complete;              ///< 1: closed, with a footer
    std::uint32_t drop_frame;            ///< 1: the start timecode drops frames
    std::uint32_t start_timecode;        ///< frames since 00:00:00:00; -1 in the file is the last frame of the day
    std::uint32_t source_start_timecode; ///< that of the file package
    std::uint8_t instance_uid[16];       ///< of the preface
    std::uint32_t
        header_partition_status;         ///< 1 open incomplete, 2 closed incomplete, 3 open complete, 4 closed complete
    std::uint32_t marker_count;          ///< package markers
    std::uint32_t muxing_mode;           ///< 0 unknown, 1 interleaved, 2 single stream, 3 partitioned, 4 external
    std::uint16_t timecode_base;         ///< rounded frames a second of the start timecode
    std::int64_t mark_in;                ///< edit units, -1 when absent
    std::int64_t mark_out;               ///<
    std::uint32_t timebase_track;        ///< ID of the track that the marks count on, 0 when not stated
    std::uint16_t version;               ///< of the preface: major in the upper byte, minor in the lower
    std::uint32_t identification_count;  ///<
    std::uint32_t timecode_track_number; ///< of the track that gave the start timecode
    std::uint32_t one;                   ///< 1
    std::uint32_t reserved[8];           ///< 0
};

/// What a file says about one stream of essence. 0 stands for what it leaves out.
struct mxf_stream_format {
    std::uint32_t stream_type; ///< 1 picture, 2 sound, 3 data, 4 other
    std::uint32_t track_id;
    std::uint32_t track_number;
    std::uint32_t material_track_id; ///< 0 when no material package plays the stream
    std::uint32_t body_sid;          ///< 0: the essence is not in this file
    std::uint32_t index_sid;
    std::uint8_t essence_container[16]; ///< label
    std::uint8_t coding[16];            ///< label
    std::uint32_t wrapping;             ///< 0 unknown, 1 frame, 2 clip, 3 custom, 4 field, 5 line
    std::uint32_t codec;                ///< four-character code, the first character on top
    char codec_name[144];               ///< NUL-terminated
    std::int32_t edit_rate_num;
    std::int32_t edit_rate_den;
    std::int64_t start_offset;      ///< edit units of the essence in front of the first one that is played
    std::int32_t timecode_rate_num; ///< frames a second of the timecode that starts the clip; 0/0 without one
    std::int32_t timecode_rate_den;
    double frame_rate;
    std::uint32_t frame_rate_code; ///< rate x 100, rounded: 2398, 2500, 2997
    std::uint32_t bit_rate;        ///< bit/s

    // picture
    std::uint32_t width;        ///< pixels, without the padding of coders
    std::uint32_t height;       ///< lines, of one field where fields are stored apart, without the padding below 1080
    std::uint32_t frame_height; ///< the same of both fields together
    std::uint32_t stored_width;
    std::uint32_t stored_height; ///< with padding
    std::int32_t display_x;      ///< of the displayed rectangle in the stored one
    std::int32_t display_y;
    std::uint32_t display_width;
    std::uint32_t display_height;
    std::int32_t aspect_num; ///< of the displayed picture
    std::int32_t aspect_den;
    std::uint32_t component_depth; ///< bits
    std::uint32_t horizontal_subsampling;
    std::uint32_t vertical_subsampling;
    std::uint16_t max_gop; ///< pictures; 1: intra-only
    std::uint16_t max_b_pictures;
    std::uint8_t essence_kind;    ///< see TamrelMxf::EEssenceKind; 2 is MPEG picture
    std::uint8_t profile;         ///< of MPEG: 1 MPEG-1, 2 MPEG-2, 4 MPEG-4 part 2; of AVC and HEVC: profile_idc
    std::uint8_t family;          ///< of MPEG-2: 1 MP@ML, 2 422P@ML, 3 MP@HL, 4 422P@HL, 5 MP@H-14, 6 to 8 HP
    std::uint8_t level;           ///< level_idc of AVC and HEVC
    std::uint8_t interlaced;      ///< 1 when it is
    std::uint8_t field_dominance; ///< the field that comes first, 1 or 2; 0 for progressive pictures
    std::uint8_t closed_gop;
    std::uint8_t identical_gop;

    // sound
    double sample_rate; ///< Hz
    std::uint32_t bits_per_sample;
    std::uint32_t channels;
    std::uint32_t block_align; ///< bytes of one sample of all channels

    std::uint32_t extra_data_size;  ///< bytes
    const std::uint8_t* extra_data; ///< sequence headers and the like; good until the next mxfDemuxGetFileInfo or close
};

/// An application that wrote or changed the file. Texts are NUL-terminated and cut where they do not fit.
struct mxf_identification {
    wchar_t company_name[129];
    wchar_t product_name[129];
    wchar_t version_string[129];
};

/// A package of the file.
struct mxf_top_pack {
    std::uint8_t umid[32];
    wchar_t name[1024]; ///< NUL-terminated
};

/// One property of a descriptive framework; texts in UTF-8.
struct mxf_dmd_property {
    const char* name;  ///< "ClipNumber"; "ClipShotObjects.ShotDescription" in a set that the framework owns
    const char* value; ///< as text
};

/// Descriptive metadata on a track. What it points at is good until the next mxfDemuxGetFileInfo or close.
struct mxf_dmd_framework {
    std::uint8_t instance_uid[16];
    std::uint8_t key[16];     ///< of the set
    const char* class_name;   ///< of the register; empty for an unknown class
    const char* comment;      ///< of the segment
    std::uint32_t track_id;   ///< of the track that it stands on
    std::uint32_t material;   ///< 1: in a material package
    std::int64_t event_start; ///< edit units of that track, -1 when not stated
    std::int64_t duration;    ///< edit units of that track, -1 when not stated
    std::uint32_t property_count;
    const mxf_dmd_property* properties; ///< null when there are none
};
