#include "mxf/model/StreamFormat.h"

#include "platform/FourCC.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <optional>

namespace TamrelMxf {
namespace {

using zanfcp::FourCC;

struct SFamily {
    std::string_view name; ///< in the register
    EEssenceKind kind;
    FourCC codec; ///< 0 where the label itself decides
};
constexpr auto kFamilies = std::to_array<SFamily>({
    {"uncompressed", EEssenceKind::uncompressed, FourCC{"raw "}},
    {"DNxUncompressed", EEssenceKind::uncompressed, FourCC{"raw "}},
    {"MPEG-1", EEssenceKind::mpegPicture, FourCC{"mp1v"}},
    {"MPEG-2", EEssenceKind::mpegPicture, FourCC{"mp2v"}},
    {"D-10", EEssenceKind::mpegPicture, FourCC{"mp2v"}},
    {"MPEG-4 part 2", EEssenceKind::mpeg4Part2, FourCC{"mp4v"}},
    {"AVC", EEssenceKind::avc, FourCC{"avc1"}},
    {"AVC NAL", EEssenceKind::avc, FourCC{"avc1"}},
    {"AVC byte stream", EEssenceKind::avc, FourCC{"avc1"}},
    {"HEVC", EEssenceKind::hevc, FourCC{"hvc1"}},
    {"HEVC NAL", EEssenceKind::hevc, FourCC{"hvc1"}},
    {"HEVC byte stream", EEssenceKind::hevc, FourCC{"hvc1"}},
    {"DV", EEssenceKind::dv, FourCC{"dvc "}},
    {"VC-3", EEssenceKind::vc3, FourCC{"AVdn"}},
    {"JPEG 2000", EEssenceKind::jpeg2000, FourCC{"mjp2"}},
    {"HTJ2K", EEssenceKind::jpeg2000, FourCC{"mjp2"}},
    {"ProRes", EEssenceKind::proRes, FourCC{"apcn"}},
    {"VC-1", EEssenceKind::vc1, FourCC{"vc-1"}},
    {"VC-2", EEssenceKind::vc2, FourCC{"drac"}},
    {"VC-5", EEssenceKind::vc5, FourCC{"CFHD"}},
    {"JPEG XS", EEssenceKind::jpegXs, FourCC{"jxsm"}},
    {"FFV1", EEssenceKind::ffv1, FourCC{"FFV1"}},
    {"D-11", EEssenceKind::d11, FourCC{}},
    {"ARRIRAW", EEssenceKind::raw, FourCC{}},
    {"Sony RAW", EEssenceKind::raw, FourCC{}},
    {"ACES", EEssenceKind::aces, FourCC{}},
    {"TIFF/EP", EEssenceKind::tiff, FourCC{"tiff"}},
    {"PCM", EEssenceKind::pcm, FourCC{}},
    {"A-law", EEssenceKind::aLaw, FourCC{"alaw"}},
    {"companded", EEssenceKind::aLaw, FourCC{"alaw"}},
    {"MPEG audio", EEssenceKind::mpegAudio, FourCC{".mp2"}},
    {"AAC", EEssenceKind::aac, FourCC{"mp4a"}},
    {"coded audio in AES3", EEssenceKind::codedInAes3, FourCC{}},
});

/// Codings whose label names the four-character code by itself, by bytes 9 to 16 under a mask.
struct SCodecLabel {
    std::uint64_t item;
    std::uint64_t mask;
    FourCC codec;
};
constexpr std::uint64_t kWhole = ~std::uint64_t{0};
constexpr std::uint64_t kFirstSeven = kWhole << 8;
constexpr auto kCodecLabels = std::to_array<SCodecLabel>({
    // D-10 at 50, 40 and 30 Mbit/s, 625 and 525 lines
    {0x0401020201020101, kWhole, FourCC{"mx5p"}},
    {0x0401020201020102, kWhole, FourCC{"mx5n"}},
    {0x0401020201020103, kWhole, FourCC{"mx4p"}},
    {0x0401020201020104, kWhole, FourCC{"mx4n"}},
    {0x0401020201020105, kWhole, FourCC{"mx3p"}},
    {0x0401020201020106, kWhole, FourCC{"mx3n"}},
    // AVC-Intra class 50: 59.94i, 50i, 29.97p, 25p, 720 at 59.94 and 50
    {0x0401020201322101, kWhole, FourCC{"ai56"}},
    {0x0401020201322102, kWhole, FourCC{"ai55"}},
    {0x0401020201322103, kWhole, FourCC{"ai53"}},
    {0x0401020201322104, kWhole, FourCC{"ai52"}},
    {0x0401020201322108, kWhole, FourCC{"ai5p"}},
    {0x0401020201322109, kWhole, FourCC{"ai5q"}},
    // and class 100
    {0x0401020201323101, kWhole, FourCC{"ai16"}},
    {0x0401020201323102, kWhole, FourCC{"ai15"}},
    {0x0401020201323103, kWhole, FourCC{"ai13"}},
    {0x0401020201323104, kWhole, FourCC{"ai12"}},
    {0x0401020201323108, kWhole, FourCC{"ai1p"}},
    {0x0401020201323109, kWhole, FourCC{"ai1q"}},
    // DV
    {0x0401020202010100, kFirstSeven, FourCC{"dvc "}},
    {0x0401020202010200, kFirstSeven, FourCC{"dvcp"}},
    {0x0401020202010300, kFirstSeven, FourCC{"dvc "}},
    {0x0401020202010400, kFirstSeven, FourCC{"dvcp"}},
    {0x0401020202020100, kFirstSeven, FourCC{"dvc "}},
    {0x0401020202020200, kFirstSeven, FourCC{"dvpp"}},
    {0x0401020202020300, kFirstSeven, FourCC{"dv5n"}},
    {0x0401020202020400, kFirstSeven, FourCC{"dv5p"}},
    {0x0401020202020500, kFirstSeven, FourCC{"dvh6"}},
    {0x0401020202020600, kFirstSeven, FourCC{"dvh5"}},
    {0x0401020202020700, kFirstSeven, FourCC{"dvhp"}},
    {0x0401020202020800, kFirstSeven, FourCC{"dvhq"}},
    // ProRes
    {0x0401020203060100, kFirstSeven, FourCC{"apco"}},
    {0x0401020203060200, kFirstSeven, FourCC{"apcs"}},
    {0x0401020203060300, kFirstSeven, FourCC{"apcn"}},
    {0x0401020203060400, kFirstSeven, FourCC{"apch"}},
    {0x0401020203060500, kFirstSeven, FourCC{"ap4h"}},
    {0x0401020203060600, kFirstSeven, FourCC{"ap4x"}},
    // 4:2:2 samples, 8 and 10 bits
    {0x0401020101020101, kWhole, FourCC{"2vuy"}},
    {0x0401020101020102, kWhole, FourCC{"yuv2"}},
    {0x0401020101020201, kWhole, FourCC{"v210"}},
    // ATSC A/52
    {0x0402020203020100, kWhole, FourCC{"ac-3"}},
});

const SFamily* FamilyOf(const SCoding* coding)
{
    if (coding == nullptr) return nullptr;
    const auto found = std::ranges::find(kFamilies, coding->family.View(), &SFamily::name);
    return found == kFamilies.end() ? nullptr : &*found;
}

/// The coding, where it is known; what the container alone lets guess otherwise.
void DescribeCoding(SStreamFormat& format)
{
    const SCoding* container = FindCoding(format.essenceContainer);
    const SCoding* coding = FindCoding(format.coding);
    if (container != nullptr) {
        format.wrapping = container->wrapping;
        // Audio streams of the MPEG mapping share its containers with the pictures.
        const auto mapping = static_cast<std::uint8_t>(container->item >> 16);
        if (coding == nullptr && container->family == "MPEG" && mapping == 0x04) {
            const bool isPicture = format.type == EStreamType::picture;
            format.essenceKind = isPicture ? EEssenceKind::mpegPicture : EEssenceKind::mpegAudio;
            format.codec = (isPicture ? FourCC{"mp2v"} : FourCC{".mp2"}).value;
        }
    }
    for (const SCoding* said : {container, coding}) {
        const SFamily* family = FamilyOf(said);
        if (family == nullptr) continue;
        format.essenceKind = family->kind;
        format.codec = family->codec.value;
        format.codecName = said->name;
    }
    const std::uint64_t item = format.coding.Item();
    // The register knows these as payloads of AES3 alone; some writers put them on elementary streams as well.
    if (format.essenceKind == EEssenceKind::codedInAes3 && container != nullptr && container->family == "MPEG") {
        constexpr std::uint64_t kFirstMpeg = 0x0402020203020400, kLastMpeg = 0x0402020203020600;
        if (item >> 8 >= kFirstMpeg >> 8 && item >> 8 <= kLastMpeg >> 8) {
            format.essenceKind = EEssenceKind::mpegAudio;
            format.codec = FourCC{".mp2"}.value;
        } else if (item == 0x0402020203020100) {
            format.essenceKind = EEssenceKind::ac3;
        }
    }
    const auto named =
        std::ranges::find_if(kCodecLabels, [&](const SCodecLabel& label) { return (item & label.mask) == label.item; });
    if (coding != nullptr && named != kCodecLabels.end()) format.codec = named->codec.value;
}

/// The family of MPEG-2 behind profile_and_level_indication (ISO/IEC 13818-2, 8), 0 for those without one.
std::uint8_t MpegFamily(std::uint8_t profileAndLevel)
{
    switch (profileAndLevel) {
    case 0x48: return 1;
    case 0x85: return 2;
    case 0x44: return 3;
    case 0x82: return 4;
    case 0x46: return 5;
    case 0x18: return 6;
    case 0x14: return 7;
    case 0x16: return 8;
    default: return 0;
    }
}

void DescribeMpeg(SStreamFormat& format, const SPictureDescriptor& picture)
{
    constexpr std::uint64_t kMpegFamilies = 0x0401020201; // bytes 9 to 13
    constexpr std::uint8_t kMpeg1 = 0x10;
    constexpr std::uint8_t kLastOfMainLevel = 2;

    format.profile = 2;
    if (format.coding.IsSmpte() && format.coding.Item() >> 24 == kMpegFamilies) {
        const std::uint8_t family = format.coding.bytes[13];
        if (family == kMpeg1)
            format.profile = 1;
        else
            format.family = family;
    }
    // Not in the standard: some writers put the label of main level on MPEG-2 of every size.
    constexpr std::uint32_t kMainLevelWidth = 720;
    if (format.family <= kLastOfMainLevel && format.width > kMainLevelWidth) format.family = 0;
    if (format.profile == 2 && format.family == 0 && picture.mpeg && picture.mpeg->profileAndLevel)
        format.family = MpegFamily(*picture.mpeg->profileAndLevel);
    if (format.profile == 2 && format.family == 0 && picture.verticalSubsampling) {
        // Nothing names it: 4:2:2 or 4:2:0, beyond standard definition or not.
        const bool is422 = *picture.verticalSubsampling == 1;
        const bool isHigh = format.width > 720;
        format.family = static_cast<std::uint8_t>((isHigh ? 3 : 1) + (is422 ? 1 : 0));
    }
    if (!picture.mpeg) return;
    format.bitRate = picture.mpeg->bitRate.value_or(0);
    format.maxGop = picture.mpeg->maxGop.value_or(0);
    format.maxBPictureCount = picture.mpeg->maxBPictureCount.value_or(0);
    format.isClosedGop = picture.mpeg->closedGop.value_or(false);
    format.isIdenticalGop = picture.mpeg->identicalGop.value_or(false);
}

void DescribeCodedVideo(SStreamFormat& format, const SCodedVideo& video)
{
    format.profile = video.profile.value_or(0);
    format.level = video.level.value_or(0);
    format.bitRate = video.averageBitRate.value_or(video.maximumBitRate.value_or(0));
    format.maxGop = video.maxGop.value_or(0);
    format.maxBPictureCount = video.maxBPictureCount.value_or(0);
    format.isClosedGop = video.closedGop.value_or(false);
    format.isIdenticalGop = video.identicalGop.value_or(false);
}

enum EFrameLayout : std::uint8_t { kFullFrame, kSeparateFields, kOneField, kMixedFields, kSegmentedFrame };

/// The field that comes first in time. Descriptors name it when it is not field 1.
std::uint8_t DominanceOf(const SPictureDescriptor& picture)
{
    return picture.fieldDominance == 2 ? 2 : 1;
}

bool IsInterlaced(const SPictureDescriptor& picture)
{
    if (picture.frameLayout) return *picture.frameLayout != kFullFrame && *picture.frameLayout != kSegmentedFrame;
    if (picture.mpeg && picture.mpeg->codedContentScanning) return *picture.mpeg->codedContentScanning == 2;
    return false;
}

/// The height of a frame: field pictures store one field. Some writers put the whole height where one field belongs;
/// twice that would stand upright.
std::uint32_t FrameHeight(const SPictureDescriptor& picture, std::uint32_t width, std::uint32_t height)
{
    const std::uint8_t layout = picture.frameLayout.value_or(kFullFrame);
    const bool storesFields = layout == kSeparateFields || layout == kSegmentedFrame;
    return storesFields && height <= width / 2 ? 2 * height : height;
}

void DescribePicture(SStreamFormat& format, const SDescriptor& descriptor)
{
    const SPictureDescriptor& picture = *descriptor.picture;
    format.coding = picture.coding.value_or(SUl{});
    DescribeCoding(format);
    format.width = picture.storedWidth.value_or(0);
    format.height = picture.storedHeight.value_or(0);
    format.sampledWidth = picture.sampledWidth.value_or(format.width);
    format.frameHeight = FrameHeight(picture, format.width, format.height);
    format.displayed = {
        .x = picture.displayXOffset.value_or(0),
        .y = picture.displayYOffset.value_or(0),
        .width = picture.displayWidth.value_or(picture.sampledWidth.value_or(format.width)),
        .height = picture.displayHeight.value_or(picture.sampledHeight.value_or(format.height)),
    };
    format.aspectRatio = picture.aspectRatio.value_or(SRational{});
    format.isInterlaced = IsInterlaced(picture);
    format.fieldDominance = format.isInterlaced ? DominanceOf(picture) : std::uint8_t{0};
    format.componentDepth = picture.componentDepth.value_or(0);
    format.horizontalSubsampling = picture.horizontalSubsampling.value_or(0);
    format.verticalSubsampling = picture.verticalSubsampling.value_or(format.horizontalSubsampling == 0 ? 0 : 1);
    if (!picture.pixelLayout.empty()) {
        format.componentDepth = picture.pixelLayout.front().depth;
        format.horizontalSubsampling = format.verticalSubsampling = 1;
    }
    if (format.essenceKind == EEssenceKind::unknown && picture.mpeg) {
        format.essenceKind = EEssenceKind::mpegPicture;
        format.codec = FourCC{"mp2v"}.value;
    }
    if (format.essenceKind == EEssenceKind::mpegPicture) DescribeMpeg(format, picture);
    if (format.essenceKind == EEssenceKind::mpeg4Part2) format.profile = 4;
    format.extraData = picture.initializationData;
    for (const SSubDescriptor& sub : descriptor.subDescriptors) {
        if (sub.codedVideo) DescribeCodedVideo(format, *sub.codedVideo);
        const auto* header = sub.object ? sub.object->Find("FFV1InitializationMetadata") : nullptr;
        if (header == nullptr) continue;
        const Values::SList bytes = Values::List(header->value, 1);
        format.extraData.assign(bytes.entries.begin(), bytes.entries.end());
    }
}

void DescribeSound(SStreamFormat& format, const SSoundDescriptor& sound)
{
    format.coding = sound.coding.value_or(SUl{});
    DescribeCoding(format);
    format.sampleRate = sound.samplingRate.value_or(SRational{}).ToDouble();
    format.bitsPerSample = sound.quantizationBits.value_or(0);
    format.channelCount = sound.channelCount.value_or(0);
    const std::uint64_t packed = std::uint64_t{format.channelCount} * ((std::uint64_t{format.bitsPerSample} + 7) / 8);
    format.blockAlign = sound.blockAlign.value_or(0);
    if (format.blockAlign == 0 && packed <= 0xFFFF) format.blockAlign = static_cast<std::uint32_t>(packed);
    // Without a coding it is samples; the container of D-10 speaks of its picture.
    if (format.essenceKind < EEssenceKind::pcm) {
        format.essenceKind = EEssenceKind::pcm;
        format.codecName = "PCM";
    }
    if (format.essenceKind == EEssenceKind::pcm) {
        constexpr std::uint64_t kAiff = 0x040202017E; // bytes 9 to 13: big-endian, where SMPTE ST 382 is little-endian
        const bool isAiff = format.coding.Item() >> 24 == kAiff;
        switch (format.blockAlign / std::max(format.channelCount, 1U)) {
        case 1: format.codec = (isAiff ? FourCC{"twos"} : FourCC{"raw "}).value; break;
        case 3: format.codec = FourCC{"in24"}.value; break;
        case 4: format.codec = FourCC{"in32"}.value; break;
        default: format.codec = (isAiff ? FourCC{"twos"} : FourCC{"sowt"}).value; break;
        }
    }
    if (sound.averageBytesPerSecond)
        format.bitRate = static_cast<std::uint32_t>(
            std::min<std::uint64_t>(std::uint64_t{*sound.averageBytesPerSecond} * 8, 0xFFFFFFFF));
    else
        format.bitRate = static_cast<std::uint32_t>(std::min(format.sampleRate * format.blockAlign * 8, 4294967295.0));
}

void DescribeData(SStreamFormat& format, const SDataDescriptor& data)
{
    format.coding = data.coding.value_or(SUl{});
    if (const SCoding* container = FindCoding(format.essenceContainer)) {
        format.wrapping = container->wrapping;
        format.codecName = container->name;
    }
    switch (data.kind) {
    case SDataDescriptor::EKind::ancillary: format.essenceKind = EEssenceKind::ancillary; break;
    case SDataDescriptor::EKind::vbi: format.essenceKind = EEssenceKind::vbi; break;
    case SDataDescriptor::EKind::timedText: format.essenceKind = EEssenceKind::timedText; break;
    case SDataDescriptor::EKind::other: format.essenceKind = EEssenceKind::otherData; break;
    }
}

EStreamType TypeOf(EDataKind kind)
{
    switch (kind) {
    case EDataKind::picture: return EStreamType::picture;
    case EDataKind::sound: return EStreamType::sound;
    case EDataKind::data: return EStreamType::data;
    default: return EStreamType::other;
    }
}

} // namespace

SStreamFormat DescribeStream(const SStreamLink& link)
{
    SStreamFormat format;
    format.type = TypeOf(link.kind);
    if (link.track != nullptr) {
        format.trackId = link.track->id.value_or(0);
        format.trackNumber = link.track->number.value_or(0);
        format.editRate = link.track->editRate.value_or(SRational{});
    }
    if (link.materialTrack != nullptr) format.materialTrackId = link.materialTrack->id.value_or(0);
    format.bodySid = link.bodySid;
    format.indexSid = link.indexSid;
    std::optional<SRational> frames;
    if (link.descriptor != nullptr) {
        const SDescriptor& descriptor = *link.descriptor;
        format.essenceContainer = descriptor.essenceContainer.value_or(SUl{});
        if (format.type == EStreamType::picture) frames = descriptor.sampleRate;
        if (descriptor.picture)
            DescribePicture(format, descriptor);
        else if (descriptor.sound)
            DescribeSound(format, *descriptor.sound);
        else if (descriptor.data)
            DescribeData(format, *descriptor.data);
    }
    format.frameRate = frames.value_or(format.editRate).ToDouble();
    format.frameRateCode = static_cast<std::uint32_t>(std::lround(std::min(format.frameRate * 100, 4294967295.0)));
    return format;
}

int ElementsInEditUnit(const SStreamFormat& format)
{
    constexpr double kFastestFrames = 30.5;
    constexpr std::uint64_t kInterlacedJpeg2000 = 0x0D010301020C03; // SMPTE ST 422, I1: frame wrapping, a field a KLV
    const bool holdsFields =
        format.wrapping == EWrapping::field || format.essenceContainer.Item() >> 8 == kInterlacedJpeg2000;
    const bool isPicture = format.type == EStreamType::picture;
    return isPicture && holdsFields && format.editRate.IsPositive() && format.editRate.ToDouble() < kFastestFrames ? 2
                                                                                                                   : 1;
}

bool HasOwnFrames(const SStreamFormat& format)
{
    const EEssenceKind kind = format.essenceKind;
    const bool isFramed = kind == EEssenceKind::mpegAudio || kind == EEssenceKind::aac || kind == EEssenceKind::ac3;
    return format.type == EStreamType::sound && isFramed;
}

} // namespace TamrelMxf
