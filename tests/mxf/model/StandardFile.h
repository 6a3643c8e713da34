#pragma once

#include "mxf/model/HeaderModel.h"
#include "tests/support/MxfSets.h"

#include <cstdint>
#include <optional>
#include <string_view>
#include <vector>

namespace TamrelMxf::test {

inline constexpr std::string_view kPicture = "06.0E.2B.34.04.01.01.01.01.03.02.02.01.00.00.00";
inline constexpr std::string_view kSound = "06.0E.2B.34.04.01.01.01.01.03.02.02.02.00.00.00";
inline constexpr std::string_view kTimecode = "06.0E.2B.34.04.01.01.01.01.03.02.01.01.00.00.00";
inline constexpr std::string_view kDescriptive = "06.0E.2B.34.04.01.01.01.01.03.02.01.10.00.00.00";
inline constexpr std::string_view kSubDescriptors = "06.0E.2B.34.01.01.01.09.06.01.01.04.06.10.00.00";

/// A header of an ordinary camera file, to be varied in one place at a time: a material package with timecode, picture
/// and sound, a file package with the same, a multiple descriptor and one container.
/// Instance UIDs: 1 preface, 2 content storage, 3 container, 4 identification, 100 material package, 200 file package,
/// 300 tape package, 210 descriptor with the parts 211 and 212. A track n of package p is p + 10 n, its sequence and
/// component the next two numbers. Package UMIDs 100, 200 and 300.
struct StandardFile {
    std::optional<std::int64_t> materialStart = 90000; ///< start timecode, absent: no timecode track
    std::optional<std::int64_t> fileStart = 90000;
    std::optional<std::int64_t> tapeStart = {};              ///< absent: no tape package
    std::int64_t materialPicture = 250, materialSound = 250; ///< durations, -1 unknown
    std::int64_t filePicture = 250, fileSound = 250;
    std::int64_t containerDuration = -1;
    std::int64_t clipStart = 0;     ///< of the material clips in the file package
    std::int64_t tapeClipStart = 0; ///< of the clips of the file package in the tape package
    SRational pictureRate{25, 1}, soundRate{25, 1};
    std::uint16_t base = 25;
    bool dropFrame = false;
    bool hasPicture = true, hasSound = true;
    std::string_view pictureContainer = "06.0E.2B.34.04.01.01.02.0D.01.03.01.02.04.60.01";
    std::string_view soundContainer = "06.0E.2B.34.04.01.01.01.0D.01.03.01.02.06.01.00";
    std::string_view soundCoding = {};
    std::uint32_t soundNumber = 0x16010301;
    std::string_view pictureCoding = "06.0E.2B.34.04.01.01.03.04.01.02.02.01.04.03.00";
    std::vector<MxfSet> more = {};

    SHeaderModel Model() const { return BuildHeaderModel(ReadHeaderSets(Bytes())); }
    test::Bytes Bytes() const { return Header().All(); }

    MxfHeader Header() const
    {
        MxfHeader header;
        const bool hasTape = tapeStart.has_value();
        std::vector<std::uint32_t> packages{100, 200};
        if (hasTape) packages.push_back(300);
        header.Add(MxfSet("Preface", 1)
                       .U16(0x3B05, 0x0103)
                       .Refs(0x3B06, {4})
                       .Ref(0x3B03, 2)
                       .Ul(0x3B09, "06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00"));
        header.Add(MxfSet("Identification", 4).Text(0x3C01, u"Company").Text(0x3C02, u"Product").Text(0x3C04, u"1.0"));
        header.Add(MxfSet("ContentStorage", 2).Refs(0x1901, packages).Refs(0x1902, {3}));
        header.Add(MxfSet("EssenceContainerData", 3).Package(0x2701, 200).U32(0x3F07, 1).U32(0x3F06, 129));

        AddPackage(header, {"MaterialPackage", 100, 200, materialStart, materialPicture, materialSound, clipStart});
        AddPackage(header,
                   {"SourcePackage", 200, hasTape ? 300U : 0U, fileStart, filePicture, fileSound, tapeClipStart});
        if (hasTape) AddPackage(header, {"SourcePackage", 300, 0, tapeStart, 100000, 100000, 0});
        AddDescriptors(header);
        if (hasTape) header.Add(MxfSet("TapeDescriptor", 310).Text(0x3A05, u"Maker"));
        for (const MxfSet& set : more)
            header.Add(set);
        return header;
    }

private:
    struct PackageParts {
        std::string_view className;
        std::uint32_t number;
        std::uint32_t source;
        std::optional<std::int64_t> timecode;
        std::int64_t picture;
        std::int64_t sound;
        std::int64_t start;
    };
    void AddPackage(MxfHeader& header, const PackageParts& parts) const
    {
        const std::uint32_t n = parts.number;
        std::vector<std::uint32_t> tracks;
        const auto addTrack = [&](std::uint32_t id, std::string_view kind, SRational rate, std::int64_t duration,
                                  std::uint32_t trackNumber) {
            const std::uint32_t track = n + 10 * id;
            tracks.push_back(track);
            header.Add(MxfSet("TimelineTrack", track)
                           .U32(0x4801, id)
                           .U32(0x4804, n == 200 ? trackNumber : 0)
                           .Rate(0x4B01, rate.num, rate.den)
                           .I64(0x4B02, 0)
                           .Ref(0x4803, track + 1));
            header.Add(MxfSet("Sequence", track + 1).Ul(0x0201, kind).I64(0x0202, duration).Refs(0x1001, {track + 2}));
            if (kind == kTimecode)
                header.Add(MxfSet("TimecodeComponent", track + 2)
                               .Ul(0x0201, kind)
                               .I64(0x0202, duration)
                               .I64(0x1501, *parts.timecode)
                               .U16(0x1502, base)
                               .U8(0x1503, dropFrame));
            else
                header.Add(MxfSet("SourceClip", track + 2)
                               .Ul(0x0201, kind)
                               .I64(0x0202, duration)
                               .I64(0x1201, parts.start)
                               .Package(0x1101, parts.source)
                               .U32(0x1102, id));
        };
        if (parts.timecode) addTrack(1, kTimecode, pictureRate, parts.picture, 0);
        if (hasPicture) addTrack(2, kPicture, pictureRate, parts.picture, 0x15010501);
        if (hasSound) addTrack(3, kSound, soundRate, parts.sound, soundNumber);
        MxfSet package(parts.className, n);
        package.Package(0x4401, n).Refs(0x4403, tracks).Text(0x4402, u"Name");
        if (n != 100) package.Ref(0x4701, n + 10 - n % 10);
        header.Add(package);
    }
    void AddDescriptors(MxfHeader& header) const
    {
        std::vector<std::uint32_t> parts;
        if (hasPicture) parts.push_back(211);
        if (hasSound) parts.push_back(212);
        header.Add(MxfSet("MultipleDescriptor", 210)
                       .Rate(0x3001, pictureRate.num, pictureRate.den)
                       .Ul(0x3004, "06.0E.2B.34.04.01.01.03.0D.01.03.01.02.7F.01.00")
                       .Refs(0x3F01, parts));
        if (hasPicture)
            header.Add(MxfSet("MPEGVideoDescriptor", 211)
                           .U32(0x3006, 2)
                           .Rate(0x3001, pictureRate.num, pictureRate.den)
                           .I64(0x3002, containerDuration)
                           .Ul(0x3004, pictureContainer)
                           .Ul(0x3201, pictureCoding)
                           .U32(0x3203, 1920)
                           .U32(0x3202, 540)
                           .U8(0x320C, 1)
                           .Rate(0x320E, 16, 9));
        if (!hasSound) return;
        MxfSet sound("WaveAudioEssenceDescriptor", 212);
        sound.U32(0x3006, 3)
            .Rate(0x3001, soundRate.num, soundRate.den)
            .I64(0x3002, containerDuration)
            .Ul(0x3004, soundContainer)
            .Rate(0x3D03, 48000, 1)
            .U32(0x3D07, 1)
            .U32(0x3D01, 24)
            .U16(0x3D0A, 3);
        if (!soundCoding.empty()) sound.Ul(0x3D06, soundCoding);
        header.Add(sound);
    }
};

} // namespace TamrelMxf::test
