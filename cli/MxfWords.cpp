#include "cli/MxfWords.h"

#include "mxf/demuxer/MxfDemuxer.h"

#include <algorithm>
#include <array>

namespace zanfcp::cli {

using namespace TamrelMxf;

const CMxfUlDict& labelDictionary()
{
    static const CMxfUlDict dict = [] {
        CMxfUlDict made;
        made.Init();
        return made;
    }();
    return dict;
}

namespace {

/// Labels of colour that came into the registers after the dictionary was made, by bytes 9 to 16.
struct ColourLabel {
    std::uint64_t item;
    std::string_view name;
};
constexpr auto kColourLabels = std::to_array<ColourLabel>({
    {0x0401010101080000, "IEC 61966-2-4 (xvYCC) Transfer Characteristic"},
    {0x0401010101090000, "ITU-R BT.2020 Transfer Characteristic"},
    {0x04010101010A0000, "SMPTE ST 2084 (PQ) Transfer Characteristic"},
    {0x04010101010B0000, "ITU-R BT.2100 HLG Transfer Characteristic"},
    {0x0401010102040000, "YCgCo Coding Equations"},
    {0x0401010102050000, "GBR Coding Equations"},
    {0x0401010102060000, "ITU-R BT.2020 Coding Equations"},
    {0x0401010103040000, "ITU-R BT.2020 Color Primaries"},
    {0x0401010103050000, "SMPTE ST 428-1 (DCDM) Color Primaries"},
    {0x0401010103060000, "P3 D65 Color Primaries"},
});

} // namespace

std::string_view labelName(const SUl& label)
{
    if (!label.IsSmpte()) return {};
    if (const SUlEntry* entry = labelDictionary().Find(label)) return entry->name;
    const auto colour = std::ranges::find(kColourLabels, label.Item(), &ColourLabel::item);
    if (colour != kColourLabels.end()) return colour->name;
    const SCoding* coding = FindCoding(label);
    return coding == nullptr ? std::string_view{} : coding->name;
}

std::string_view word(EEssenceKind kind)
{
    switch (kind) {
    case EEssenceKind::unknown: break;
    case EEssenceKind::uncompressed: return "uncompressed";
    case EEssenceKind::mpegPicture: return "MPEG";
    case EEssenceKind::dv: return "DV";
    case EEssenceKind::avc: return "AVC";
    case EEssenceKind::hevc: return "HEVC";
    case EEssenceKind::vc3: return "VC-3";
    case EEssenceKind::jpeg2000: return "JPEG 2000";
    case EEssenceKind::proRes: return "ProRes";
    case EEssenceKind::mpeg4Part2: return "MPEG-4 part 2";
    case EEssenceKind::vc1: return "VC-1";
    case EEssenceKind::vc2: return "VC-2";
    case EEssenceKind::vc5: return "VC-5";
    case EEssenceKind::jpegXs: return "JPEG XS";
    case EEssenceKind::ffv1: return "FFV1";
    case EEssenceKind::d11: return "D-11";
    case EEssenceKind::raw: return "raw";
    case EEssenceKind::aces: return "ACES";
    case EEssenceKind::tiff: return "TIFF";
    case EEssenceKind::pcm: return "PCM";
    case EEssenceKind::aLaw: return "A-law";
    case EEssenceKind::mpegAudio: return "MPEG audio";
    case EEssenceKind::aac: return "AAC";
    case EEssenceKind::codedInAes3: return "coded in AES3";
    case EEssenceKind::ac3: return "AC-3";
    case EEssenceKind::ancillary: return "ANC";
    case EEssenceKind::vbi: return "VBI";
    case EEssenceKind::timedText: return "timed text";
    case EEssenceKind::otherData: return "data";
    }
    return {};
}

std::string codecName(const SStreamFormat& format)
{
    constexpr auto kFamilies = std::to_array<std::string_view>(
        {"", " MP@ML", " 422P@ML", " MP@HL", " 422P@HL", " MP@H-14", " HP@ML", " HP@HL", " HP@H-14"});
    const std::string_view kind = word(format.essenceKind);
    if (format.essenceKind != EEssenceKind::mpegPicture) return std::string(kind.empty() ? format.codecName : kind);
    const std::string version = format.profile == 0 ? "" : "-" + std::to_string(format.profile);
    return std::string(kind) + version +
           std::string(format.family < kFamilies.size() ? kFamilies[format.family] : std::string_view{});
}

std::string codeText(std::uint32_t code)
{
    std::string text;
    for (int shift = 24; shift >= 0 && code != 0; shift -= 8)
        text += static_cast<char>(code >> shift & 0xFF);
    return text;
}

std::string pictureCodecOfFile(const std::string& path)
{
    CMxfDemuxer demuxer;
    std::string text;
    if (demuxer.Open(path.c_str(), nullptr, nullptr) != 0) return text;
    for (const SStreamLink& link : demuxer.Streams()) {
        if (link.kind != EDataKind::picture) continue;
        const SStreamFormat format = DescribeStream(link);
        const std::string code = codeText(format.codec);
        text = codecName(format) + (code.empty() ? "" : " (" + code + ")");
    }
    return text;
}

std::string_view word(EPartitionKind kind)
{
    switch (kind) {
    case EPartitionKind::header: return "header";
    case EPartitionKind::body: return "body";
    case EPartitionKind::footer: return "footer";
    }
    return {};
}

std::string_view word(EPartitionStatus status)
{
    switch (status) {
    case EPartitionStatus::openIncomplete: return "open incomplete";
    case EPartitionStatus::closedIncomplete: return "closed incomplete";
    case EPartitionStatus::openComplete: return "open complete";
    case EPartitionStatus::closedComplete: return "closed complete";
    case EPartitionStatus::genericStream: return "generic stream";
    }
    return {};
}

std::string_view word(EDataKind kind)
{
    switch (kind) {
    case EDataKind::unknown: return "unknown";
    case EDataKind::timecode: return "timecode";
    case EDataKind::descriptive: return "descriptive";
    case EDataKind::picture: return "picture";
    case EDataKind::sound: return "sound";
    case EDataKind::data: return "data";
    case EDataKind::auxiliary: return "auxiliary";
    case EDataKind::parsedText: return "parsed text";
    }
    return {};
}

std::string_view word(EWrapping wrapping)
{
    switch (wrapping) {
    case EWrapping::unknown: return "unknown";
    case EWrapping::frame: return "frame";
    case EWrapping::clip: return "clip";
    case EWrapping::custom: return "custom";
    case EWrapping::field: return "field";
    case EWrapping::line: return "line";
    }
    return {};
}

std::string_view word(EMuxingMode mode)
{
    switch (mode) {
    case EMuxingMode::unknown: return "unknown";
    case EMuxingMode::interleaved: return "interleaved";
    case EMuxingMode::singleStream: return "single stream";
    case EMuxingMode::partitioned: return "partitioned";
    case EMuxingMode::external: return "external";
    }
    return {};
}

std::string_view word(SDuration::ESource source)
{
    switch (source) {
    case SDuration::ESource::none: return "unknown";
    case SDuration::ESource::picture: return "picture track";
    case SDuration::ESource::sound: return "sound track";
    case SDuration::ESource::footer: return "footer";
    case SDuration::ESource::index: return "index tables";
    case SDuration::ESource::essence: return "size of the essence";
    }
    return {};
}

std::string_view word(SStartTimecode::ESource source)
{
    switch (source) {
    case SStartTimecode::ESource::none: return "none";
    case SStartTimecode::ESource::material: return "material package";
    case SStartTimecode::ESource::file: return "file package";
    case SStartTimecode::ESource::physical: return "tape or other source package";
    }
    return {};
}

std::string_view word(CMxfClip::EKind kind)
{
    switch (kind) {
    case CMxfClip::EKind::missing: return "missing";
    case CMxfClip::EKind::sourceClip: return "clip";
    case CMxfClip::EKind::timecode: return "timecode";
    case CMxfClip::EKind::filler: return "filler";
    case CMxfClip::EKind::descriptive: return "descriptive";
    case CMxfClip::EKind::event: return "event";
    case CMxfClip::EKind::choice: return "choice";
    case CMxfClip::EKind::transition: return "transition";
    case CMxfClip::EKind::other: return "other";
    }
    return {};
}

std::string_view word(CMxfTrack::EKind kind)
{
    switch (kind) {
    case CMxfTrack::EKind::missing: return "missing";
    case CMxfTrack::EKind::timeline: return "timeline";
    case CMxfTrack::EKind::event: return "event";
    case CMxfTrack::EKind::fixed: return "static";
    }
    return {};
}

std::string_view word(CMxfPackage::EKind kind)
{
    switch (kind) {
    case CMxfPackage::EKind::material: return "material";
    case CMxfPackage::EKind::source: return "source";
    case CMxfPackage::EKind::other: return "other";
    }
    return {};
}

} // namespace zanfcp::cli
