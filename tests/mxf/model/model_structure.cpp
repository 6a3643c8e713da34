#include "mxf/Limits.h"
#include "mxf/model/FooterUpdate.h"
#include "mxf/model/HeaderModel.h"
#include "mxf/model/Links.h"
#include "tests/mxf/model/StandardFile.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>

using namespace TamrelMxf;
using namespace TamrelMxf::test;
using testing::ElementsAre;

namespace {

constexpr std::string_view kPackageMarker = "06.0E.2B.34.01.01.01.0C.06.01.01.04.02.0F.00.00";

TEST(Model, ReadsAnOrdinaryFile)
{
    const SHeaderModel model = StandardFile{}.Model();
    EXPECT_EQ(model.noteCount, 0U);
    ASSERT_TRUE(model.preface);
    EXPECT_EQ(model.preface->version, 0x0103);
    EXPECT_EQ(model.preface->instanceUid, Uid(1));
    ASSERT_EQ(model.identifications.size(), 1U);
    EXPECT_EQ(model.identifications[0].productName, "Product");
    ASSERT_EQ(model.essenceContainers.size(), 1U);
    EXPECT_EQ(model.essenceContainers[0].indexSid, 129U);

    ASSERT_EQ(model.packages.size(), 2U);
    const CMxfPackage* material = model.MaterialPackage();
    ASSERT_NE(material, nullptr);
    EXPECT_EQ(material->uid, Umid(100));
    EXPECT_EQ(model.PrimaryFilePackage(), model.FindPackage(Umid(200)));
    ASSERT_EQ(material->tracks.size(), 3U);
    const CMxfTrack& timecode = material->tracks[0];
    EXPECT_EQ(timecode.DataKind(), EDataKind::timecode);
    ASSERT_NE(timecode.FirstClip(CMxfClip::EKind::timecode), nullptr);
    EXPECT_EQ(timecode.FirstClip(CMxfClip::EKind::timecode)->startTimecode, 90000);
    const CMxfTrack& picture = material->tracks[1];
    EXPECT_EQ(picture.editRate, (SRational{25, 1}));
    EXPECT_EQ(picture.sequence.TotalDuration(), 250);
    EXPECT_FALSE(picture.sequence.isBare);
    EXPECT_EQ(picture.sequence.clips[0].sourcePackage, Umid(200));

    const auto& descriptor = model.FindPackage(Umid(200))->descriptor;
    ASSERT_TRUE(descriptor);
    ASSERT_EQ(descriptor->parts.size(), 2U);
    EXPECT_EQ(descriptor->parts[0].picture->storedHeight, 540U);
    EXPECT_EQ(descriptor->parts[1].sound->quantizationBits, 24U);
    EXPECT_EQ(descriptor->parts[0].containerDuration, std::nullopt); // stored -1
}

TEST(Model, ComponentsMayStandOnATrackWithoutASequence)
{
    MxfHeader header;
    header.Add(MxfSet("TimelineTrack", 10).U32(0x4801, 1).Rate(0x4B01, 25, 1).Ref(0x4803, 11))
        .Add(MxfSet("TimecodeComponent", 11).Ul(0x0201, kTimecode).I64(0x0202, 50).I64(0x1501, 7).U16(0x1502, 25))
        .Add(MxfSet("MaterialPackage", 12).Package(0x4401, 1).Refs(0x4403, {10}));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    ASSERT_EQ(model.packages.size(), 1U);
    const CMxfSequence& sequence = model.packages[0].tracks[0].sequence;
    EXPECT_TRUE(sequence.isBare);
    EXPECT_EQ(sequence.TotalDuration(), 50);
    ASSERT_EQ(sequence.clips.size(), 1U);
    EXPECT_EQ(sequence.clips[0].kind, CMxfClip::EKind::timecode);
    EXPECT_EQ(sequence.clips[0].instanceUid, Uid(11));
}

TEST(Model, TracksAndComponentsOfEveryKind)
{
    MxfHeader header;
    header.Add(MxfSet("MaterialPackage", 1).Package(0x4401, 1).Refs(0x4403, {10, 20, 30}))
        .Add(MxfSet("EventTrack", 10).U32(0x4801, 1).Rate(0x4901, 25, 1).I64(0x4902, 5).Ref(0x4803, 11))
        .Add(MxfSet("Sequence", 11).Ul(0x0201, kDescriptive).Refs(0x1001, {12, 13}))
        .Add(MxfSet("DMSegment", 12)
                 .I64(0x0601, 3)
                 .I64(0x0202, 1)
                 .Text(0x0602, u"note")
                 .Ref(0x6101, 15)
                 .Put(0x6102, Batch({BigEndian(2, 4), BigEndian(3, 4)})))
        .Add(MxfSet("CommentMarker", 13).I64(0x0601, 9).Text(0x0602, u"mark").Refs(0x0204, {16}))
        .Add(MxfSet("ClipFramework", 15)
                 .Dynamic("06.0E.2B.34.01.01.01.04.01.05.0C.00.00.00.00.00", Hex("413031"))
                 .Dynamic("06.0E.2B.34.01.01.01.05.06.01.01.04.05.40.11.02", Refs({17})))
        .Add(MxfSet("TaggedValue", 16)
                 .Text(0x5001, u"Scene")
                 .Put(0x5003, Join(Hex("42 01100200 0000 0000 060E2B3401040101"), Utf16(u"12A"))))
        .Add(MxfSet("Shot", 17).Dynamic("06.0E.2B.34.01.01.01.05.03.02.01.06.0D.01.00.00", Utf16(u"close-up")))
        .Add(MxfSet("StaticTrack", 20).U32(0x4801, 2).Ref(0x4803, 21))
        .Add(MxfSet("Sequence", 21).Ul(0x0201, kDescriptive))
        .Add(MxfSet("TimelineTrack", 30).U32(0x4801, 3).Rate(0x4B01, 25, 1).Ref(0x4803, 31))
        .Add(MxfSet("Sequence", 31).Ul(0x0201, kPicture).I64(0x0202, -1).Refs(0x1001, {32, 33, 34, 35}))
        .Add(MxfSet("Filler", 32).I64(0x0202, 10))
        .Add(MxfSet("SourceClip", 33).I64(0x0202, 20).Package(0x1101, 0))
        .Add(MxfSet("Transition", 34).I64(0x0202, 5))
        .Add(MxfSet("Selector", 35).I64(0x0202, 20).Ref(0x0F01, 36).Refs(0x0F02, {37}))
        .Add(MxfSet("SourceClip", 36).I64(0x0202, 20))
        .Add(MxfSet("Filler", 37).I64(0x0202, 20));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    EXPECT_EQ(model.noteCount, 0U);
    const auto& tracks = model.packages.at(0).tracks;
    ASSERT_EQ(tracks.size(), 3U);
    EXPECT_EQ(tracks[0].kind, CMxfTrack::EKind::event);
    EXPECT_EQ(tracks[0].editRate, (SRational{25, 1}));
    EXPECT_EQ(tracks[0].origin, 5);
    EXPECT_EQ(tracks[1].kind, CMxfTrack::EKind::fixed);

    const CMxfClip& segment = tracks[0].sequence.clips[0];
    EXPECT_EQ(segment.kind, CMxfClip::EKind::descriptive);
    EXPECT_EQ(segment.eventStart, 3);
    EXPECT_EQ(segment.comment, "note");
    EXPECT_THAT(segment.trackIds, ElementsAre(2, 3));
    ASSERT_NE(segment.framework, nullptr);
    EXPECT_EQ(segment.framework->definition->name, "ClipFramework");
    EXPECT_EQ(segment.framework->Text("ClipNumber"), "A01");
    const auto* shots = segment.framework->Find("ClipShotObjects");
    ASSERT_NE(shots, nullptr);
    ASSERT_EQ(shots->objects.size(), 1U);
    EXPECT_EQ(shots->objects[0].Text("ShotDescription"), "close-up");

    const CMxfClip& marker = tracks[0].sequence.clips[1];
    EXPECT_EQ(marker.kind, CMxfClip::EKind::event);
    ASSERT_EQ(marker.comments.size(), 1U);
    EXPECT_EQ(marker.comments[0].name + "=" + marker.comments[0].value, "Scene=12A");

    const CMxfSequence& mixed = tracks[2].sequence;
    EXPECT_EQ(mixed.TotalDuration(), 10 + 20 - 5 + 20);
    EXPECT_EQ(mixed.clips[1].sourcePackage, SUmid{});
    EXPECT_EQ(mixed.clips[2].kind, CMxfClip::EKind::transition);
    ASSERT_EQ(mixed.clips[3].alternatives.size(), 2U);
    EXPECT_EQ(mixed.clips[3].kind, CMxfClip::EKind::choice);
    EXPECT_EQ(mixed.clips[3].alternatives[0].instanceUid, Uid(36));
}

TEST(Model, OldDataDefinitionsAreUuidsInBothOrders)
{
    struct Case {
        const char* digits;
        EDataKind expected;
    };
    const Case cases[] = {
        {"80.7D.00.60.08.14.3E.6F.6F.3C.8C.E1.6C.EF.11.D2", EDataKind::picture},
        {"80.7D.00.60.08.14.3E.6F.78.E1.EB.E1.6C.EF.11.D2", EDataKind::sound},
        {"80.7F.00.60.08.14.3E.6F.7F.27.5E.81.77.E5.11.D2", EDataKind::timecode},
        {"6F.3C.8C.E1.6C.EF.11.D2.80.7D.00.60.08.14.3E.6F", EDataKind::picture},
        {"06.0E.2B.34.04.01.01.0D.01.03.02.02.03.00.00.00", EDataKind::data}, // another version
        {"06.0E.2B.34.04.01.01.01.01.03.02.01.03.00.00.00", EDataKind::timecode},
        {"06.0E.2B.34.04.01.01.05.01.03.02.03.01.00.00.00", EDataKind::auxiliary},
        {"00.00.00.00.00.00.00.00.00.00.00.00.00.00.00.00", EDataKind::unknown},
    };
    for (const Case& c : cases)
        EXPECT_EQ(DataKindOf(Label(c.digits)), c.expected) << c.digits;
}

TEST(Model, DescriptorsOfEveryClass)
{
    MxfHeader header;
    header.Add(MxfSet("SourcePackage", 1).Package(0x4401, 1).Ref(0x4701, 2))
        .Add(MxfSet("MultipleDescriptor", 2).Refs(0x3F01, {10, 20, 30, 40, 50, 60}).Refs(0x2F01, {3, 4}))
        .Add(MxfSet("NetworkLocator", 3).Text(0x4001, u"file:///a.mxf"))
        .Add(MxfSet("TextLocator", 4).Text(0x4101, u"shelf 3"))
        .Add(MxfSet("CDCIPictureEssenceDescriptor", 10)
                 .U32(0x3006, 1)
                 .U32(0x3301, 10)
                 .U32(0x3302, 2)
                 .U32(0x3308, 1)
                 .Put(0x320D, Batch({BigEndian(21, 4), BigEndian(584, 4)}))
                 .Dynamic(kSubDescriptors, Refs({11})))
        .Add(MxfSet("AVCSubDescriptor", 11)
                 .Dynamic("06.0E.2B.34.01.01.01.0E.04.01.06.06.01.0A.00.00", {122})
                 .Dynamic("06.0E.2B.34.01.01.01.0E.04.01.06.06.01.0D.00.00", {41}))
        .Add(MxfSet("RGBAPictureEssenceDescriptor", 20)
                 .Put(0x3401, Hex("580C 590C 5A0C 0000 00000000 00000000"))
                 .Dynamic(kSubDescriptors, Refs({21})))
        .Add(MxfSet("JPEG2000PictureSubDescriptor", 21)
                 .Dynamic("06.0E.2B.34.01.01.01.0A.04.01.06.03.01.00.00.00", BigEndian(3, 2))
                 .Dynamic("06.0E.2B.34.01.01.01.0A.04.01.06.03.0B.00.00.00", Batch({Hex("0B0101"), Hex("0B0201")})))
        .Add(MxfSet("AES3AudioEssenceDescriptor", 30)
                 .Rate(0x3D03, 48000, 1)
                 .U32(0x3D07, 2)
                 .Put(0x3D10, Batch({{1}, {1}}))
                 .Dynamic(kSubDescriptors, Refs({31, 32})))
        .Add(MxfSet("AudioChannelLabelSubDescriptor", 31)
                 .Dynamic("06.0E.2B.34.01.01.01.0E.01.03.07.01.02.00.00.00", Utf16(u"chL"))
                 .Dynamic("06.0E.2B.34.01.01.01.0E.01.03.04.0A.00.00.00.00", BigEndian(1, 4))
                 .Dynamic("06.0E.2B.34.01.01.01.0D.03.01.01.02.03.15.00.00", Hex("656E"))
                 .Dynamic("06.0E.2B.34.01.01.01.0E.01.03.07.01.06.00.00.00", Join(Uid(99).bytes)))
        .Add(MxfSet("SoundfieldGroupLabelSubDescriptor", 32)
                 .Dynamic("06.0E.2B.34.01.01.01.0E.01.03.07.01.05.00.00.00", Join(Uid(99).bytes)))
        .Add(MxfSet("ANCDataDescriptor", 40))
        .Add(MxfSet("TimedTextDescriptor", 50)
                 .Dynamic("06.0E.2B.34.01.01.01.0C.04.09.05.00.00.00.00.00", Utf16(u"UTF-8"))
                 .Dynamic(kSubDescriptors, Refs({51, 52})))
        .Add(MxfSet("TimedTextResourceSubDescriptor", 51)
                 .Dynamic("06.0E.2B.34.01.01.01.04.01.03.04.04.00.00.00.00", BigEndian(9, 4)))
        .Add(MxfSet("STLSubDescriptor", 52))
        // What early cameras wrote: a class that the register does not know.
        .Add(MxfSet(Label("06.0E.2B.34.02.53.01.01.0F.01.01.01.01.01.01.00"), 60).U32(0x3203, 2880));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    EXPECT_EQ(model.noteCount, 0U);
    const SDescriptor& all = *model.packages.at(0).descriptor;
    EXPECT_TRUE(all.isMultiple);
    ASSERT_EQ(all.locators.size(), 2U);
    EXPECT_EQ(all.locators[0].text, "file:///a.mxf");
    EXPECT_EQ(all.locators[1].kind, SLocator::EKind::text);
    ASSERT_EQ(all.parts.size(), 6U);

    EXPECT_EQ(all.parts[0].picture->componentDepth, 10U);
    EXPECT_THAT(all.parts[0].picture->videoLineMap, ElementsAre(21, 584));
    EXPECT_EQ(all.parts[0].subDescriptors.at(0).codedVideo->profile, 122);
    EXPECT_EQ(all.parts[0].subDescriptors[0].codedVideo->level, 41);
    EXPECT_THAT(all.parts[1].picture->pixelLayout,
                ElementsAre(SPixelComponent{'X', 12}, SPixelComponent{'Y', 12}, SPixelComponent{'Z', 12}));
    const SJpeg2000& jpeg = *all.parts[1].subDescriptors.at(0).jpeg2000;
    EXPECT_EQ(jpeg.rsiz, 3);
    ASSERT_EQ(jpeg.components.size(), 2U);
    EXPECT_EQ(jpeg.components[1][1], 2);

    EXPECT_TRUE(all.parts[2].sound->isAes3);
    EXPECT_THAT(all.parts[2].sound->channelStatusMode, ElementsAre(1, 1));
    const SMcaLabel& left = *all.parts[2].subDescriptors.at(0).mca;
    EXPECT_EQ(left.kind, SMcaLabel::EKind::channel);
    EXPECT_EQ(left.tagSymbol + " " + left.spokenLanguage, "chL en");
    EXPECT_EQ(left.channelId, 1U);
    EXPECT_EQ(left.soundfieldGroupLinkId, all.parts[2].subDescriptors.at(1).mca->linkId);

    EXPECT_EQ(all.parts[3].data->kind, SDataDescriptor::EKind::ancillary);
    EXPECT_EQ(all.parts[4].data->encoding, "UTF-8");
    EXPECT_EQ(all.parts[4].subDescriptors.at(0).resource->bodySid, 9U);
    EXPECT_TRUE(all.parts[4].subDescriptors.at(1).object);
    EXPECT_EQ(all.parts[5].definition, nullptr);
    EXPECT_EQ(all.parts[5].picture->storedWidth, 2880U);
}

TEST(Model, MarkersAreCollectedOnce)
{
    StandardFile file;
    file.more.push_back(
        MxfSet("PackageMarker", 900).Dynamic("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00", BigEndian(12, 8)));
    file.more.push_back(MxfSet("PackageMarker", 901));
    MxfHeader header = file.Header();
    header.Add(MxfSet("MaterialPackage", 400).Package(0x4401, 400).Dynamic(kPackageMarker, Join(Uid(901).bytes)));
    header.Add(MxfSet("ContentStorage", 999)); // not the one that the preface owns
    SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    ASSERT_EQ(model.markers.size(), 2U); // the package of 901 is not in the content storage
    EXPECT_EQ(model.markers[0].identifier, Uid(900));
    EXPECT_EQ(model.markers[0].markIn, 12);
    EXPECT_EQ(model.markers[1].markIn, std::nullopt);
    EXPECT_EQ(model.packages.size(), 2U);
}

/// A header in which one thing is broken, and what must still be there.
TEST(Model, SurvivesBrokenReferences)
{
    using EKind = SModelNote::EKind;
    struct Case {
        const char* name;
        MxfSet fault; ///< overrides nothing: a second set, reached by the reference below
        EKind expected;
    };
    // Each fault hangs on the material package by way of a fourth track.
    const Case cases[] = {
        {"the track's sequence is not there", MxfSet("TimelineTrack", 500).U32(0x4801, 9).Ref(0x4803, 501),
         EKind::missingSet},
        {"the track's sequence is a package", MxfSet("TimelineTrack", 500).U32(0x4801, 9).Ref(0x4803, 200),
         EKind::wrongClass},
        {"the track's sequence belongs to another track", MxfSet("TimelineTrack", 500).U32(0x4801, 9).Ref(0x4803, 121),
         EKind::ownedTwice},
        {"a component that is a sequence around itself", MxfSet("Sequence", 500).Refs(0x1001, {500}),
         EKind::ownedTwice},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        const bool isTrack = &c != &cases[3];
        MxfHeader header;
        header.Add(MxfSet("ContentStorage", 2).Refs(0x1901, {100}))
            .Add(MxfSet("MaterialPackage", 100).Package(0x4401, 100).Refs(0x4403, {120, isTrack ? 500U : 510U}))
            .Add(MxfSet("TimelineTrack", 120).U32(0x4801, 2).Ref(0x4803, 121))
            .Add(MxfSet("TimelineTrack", 510).U32(0x4801, 9).Ref(0x4803, 500))
            .Add(MxfSet("Sequence", 121).Ul(0x0201, kPicture).I64(0x0202, 7))
            .Add(MxfSet("SourcePackage", 200))
            .Add(c.fault);
        const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
        ASSERT_EQ(model.notes.size(), 1U);
        EXPECT_EQ(model.notes[0].kind, c.expected);
        ASSERT_EQ(model.packages.at(0).tracks.size(), 2U);
        EXPECT_EQ(model.packages[0].tracks[0].sequence.duration, 7);
        EXPECT_EQ(model.packages[0].tracks[1].id, 9U);
    }
}

TEST(Model, FindsItsWayWithoutItsRoots)
{
    const StandardFile file;
    const Bytes whole = file.Bytes();
    struct Case {
        const char* name;
        const char* missing; ///< key bytes 14 and 15 of the set that is made unreadable
        bool preface;
    };
    const Case cases[] = {{"no preface", "2F", false}, {"no content storage", "18", true}};
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        Bytes bytes = whole;
        const Bytes key = Hex(std::string("060E2B34025301010D01010101 01") + c.missing + "00");
        const auto at = std::search(bytes.begin(), bytes.end(), key.begin(), key.end());
        ASSERT_NE(at, bytes.end());
        at[14] = 0xFF;
        const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(bytes));
        EXPECT_EQ(model.preface.has_value(), c.preface);
        EXPECT_EQ(model.packages.size(), 2U);
        EXPECT_EQ(model.essenceContainers.size(), 1U);
        EXPECT_EQ(model.identifications.size(), 1U);
    }
}

TEST(Model, SetsThatShareAnInstanceUidAreToldApartByClass)
{
    MxfHeader header;
    header.Add(MxfSet("SourcePackage", 7).Package(0x4401, 1).Ref(0x4701, 7).Refs(0x4403, {7}))
        .Add(MxfSet("TimelineTrack", 7).U32(0x4801, 1).Ref(0x4803, 7))
        .Add(MxfSet("Sequence", 7).Ul(0x0201, kPicture))
        .Add(MxfSet("CDCIPictureEssenceDescriptor", 7).U32(0x3203, 1920));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    EXPECT_EQ(model.noteCount, 0U);
    EXPECT_EQ(model.packages.at(0).tracks[0].DataKind(), EDataKind::picture);
    EXPECT_EQ(model.packages[0].descriptor->picture->storedWidth, 1920U);
}

TEST(Model, NestingEndsAtTheLimit)
{
    MxfHeader header;
    header.Add(MxfSet("SourcePackage", 1).Package(0x4401, 1).Ref(0x4701, 2));
    for (std::uint32_t n = 2; n < 5000; ++n)
        header.Add(MxfSet("MultipleDescriptor", n).Refs(0x3F01, {n + 1}));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    ASSERT_EQ(model.notes.size(), 1U);
    EXPECT_EQ(model.notes[0].kind, SModelNote::EKind::tooDeep);
    int depth = 0;
    for (const SDescriptor* at = &*model.packages.at(0).descriptor; !at->parts.empty(); at = &at->parts[0])
        ++depth;
    EXPECT_LT(depth, kMaxReferenceDepth);
    EXPECT_GT(depth, kMaxReferenceDepth / 2);
}

TEST(Model, AHundredThousandSetsAreNoTrouble)
{
    // One sequence with as many clips as a 4-byte length can hold, referenced by many tracks, all UIDs looked up.
    constexpr std::uint32_t kClips = 100'000;
    Bytes batch = Join(BigEndian(kClips, 4), BigEndian(16, 4));
    for (std::uint32_t n = 0; n < kClips; ++n) {
        const SUUID uid = Uid(1000 + n);
        batch.insert(batch.end(), uid.bytes.begin(), uid.bytes.end());
    }
    SUl key = FindSet("Sequence")->key.Label();
    key.bytes[5] = 0x73;
    const Bytes sequence = Join(Hex("3C0A 00000010"), Uid(3).bytes, Hex("1001"), BigEndian(batch.size(), 4), batch);

    std::vector<std::uint32_t> tracks;
    MxfHeader header;
    header.Raw(Klv(key, sequence));
    for (std::uint32_t n = 0; n < 3000; ++n) {
        tracks.push_back(500'000 + n);
        header.Add(MxfSet("TimelineTrack", 500'000 + n).U32(0x4801, n).Ref(0x4803, 3));
    }
    header.Add(MxfSet("MaterialPackage", 1).Package(0x4401, 1).Refs(0x4403, tracks));
    for (std::uint32_t n = 0; n < kClips; ++n)
        header.Add(MxfSet("SourceClip", 1000 + n).I64(0x0202, 1).Package(0x1101, 2).U32(0x1102, n));
    const SHeaderSets sets = ReadHeaderSets(header.All());
    ASSERT_EQ(sets.sets.Size(), kClips + 3002);

    const auto start = std::chrono::steady_clock::now();
    const SHeaderModel model = BuildHeaderModel(sets);
    LinkStreams(model);
    const auto spent = std::chrono::steady_clock::now() - start;
    EXPECT_EQ(model.packages.at(0).tracks[0].sequence.clips.size(), kClips);
    EXPECT_EQ(model.packages[0].tracks[0].sequence.TotalDuration(), kClips);
    EXPECT_EQ(model.noteCount, 2999U); // one owner
    EXPECT_EQ(model.notes.size(), kMaxModelNotes);
    EXPECT_LT(spent, std::chrono::seconds{20}); // a quadratic walk takes minutes
}

TEST(Model, EveryCutAndEveryChangedByteIsSurvived)
{
    StandardFile file;
    file.tapeStart = 1000;
    file.more.push_back(
        MxfSet("PackageMarker", 900).Dynamic("06.0E.2B.34.01.01.01.0A.07.02.01.03.01.0E.00.00", BigEndian(12, 8)));
    const Bytes whole = file.Bytes();
    for (std::size_t size = 0; size < whole.size(); size += 3) {
        const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(std::span(whole).first(size)));
        EXPECT_LE(LinkStreams(model).size(), 2U);
    }
    for (std::size_t at = 0; at < whole.size(); ++at) {
        for (const unsigned change : {0x01U, 0x80U, 0xFFU}) {
            Bytes bytes = whole;
            bytes[at] = static_cast<std::uint8_t>(bytes[at] ^ change);
            const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(bytes));
            LinkStreams(model);
            DetectMuxingMode(model, SUl{});
        }
    }
}

TEST(FooterUpdate, LaterCopiesBringDurations)
{
    StandardFile open;
    open.materialPicture = open.materialSound = open.filePicture = open.fileSound = -1;
    SHeaderModel model = open.Model();
    const CMxfTrack* picture = &model.MaterialPackage()->tracks[1];
    EXPECT_EQ(picture->sequence.TotalDuration(), std::nullopt);

    StandardFile closed;
    closed.containerDuration = 250;
    closed.more.push_back(MxfSet("TimelineTrack", 800).U32(0x4801, 9));
    closed.more.push_back(MxfSet("Sequence", 801).I64(0x0202, 9));
    closed.more.push_back(MxfSet("Sequence", 802));
    const SUpdateReport report = UpdateFromFooter(model, ReadHeaderSets(closed.Bytes()));
    EXPECT_EQ(report.tracks.updated, 6U);
    EXPECT_EQ(report.tracks.notFound, 1U);
    EXPECT_EQ(report.sequences.updated, 6U);
    EXPECT_EQ(report.sequences.notFound, 1U);
    EXPECT_EQ(report.sequences.failed, 1U);
    EXPECT_EQ(picture->sequence.duration, 250);
    EXPECT_EQ(picture->sequence.clips[0].duration, 250);
    EXPECT_EQ(model.FindPackage(Umid(200))->descriptor->parts[0].containerDuration, 250);
}

TEST(Links, DescriptorsFindTheirTracks)
{
    struct Case {
        const char* name;
        std::optional<std::uint32_t> pictureLink, soundLink;
        std::vector<std::uint32_t> expected; ///< instance of the descriptor of each stream, 0 for none
    };
    const Case cases[] = {
        {"by track ID", 2, 3, {211, 212}},
        {"each to the other's place", 3, 2, {212, 211}},
        {"no links: by kind", std::nullopt, std::nullopt, {211, 212}},
        {"links to tracks that do not exist", 77, 78, {211, 212}},
        {"one linked, one not", std::nullopt, 3, {211, 212}},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.name);
        MxfHeader header;
        header.Add(MxfSet("SourcePackage", 200).Package(0x4401, 200).Ref(0x4701, 210).Refs(0x4403, {220, 230}))
            .Add(MxfSet("TimelineTrack", 220).U32(0x4801, 2).Ref(0x4803, 221))
            .Add(MxfSet("Sequence", 221).Ul(0x0201, kPicture))
            .Add(MxfSet("TimelineTrack", 230).U32(0x4801, 3).Ref(0x4803, 231))
            .Add(MxfSet("Sequence", 231).Ul(0x0201, kSound))
            .Add(MxfSet("MultipleDescriptor", 210).Refs(0x3F01, {212, 211}));
        MxfSet picture("CDCIPictureEssenceDescriptor", 211);
        if (c.pictureLink) picture.U32(0x3006, *c.pictureLink);
        MxfSet sound("WaveAudioEssenceDescriptor", 212);
        if (c.soundLink) sound.U32(0x3006, *c.soundLink);
        header.Add(picture).Add(sound);
        const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
        const std::vector<SStreamLink> streams = LinkStreams(model);
        ASSERT_EQ(streams.size(), 2U);
        for (std::size_t i = 0; i < 2; ++i) {
            ASSERT_NE(streams[i].descriptor, nullptr);
            EXPECT_EQ(streams[i].descriptor->instanceUid, Uid(c.expected[i]));
        }
    }
}

TEST(Links, StreamsKnowTheirContainerAndWhoPlaysThem)
{
    const SHeaderModel model = StandardFile{.tapeStart = 5}.Model();
    const std::vector<SStreamLink> streams = LinkStreams(model);
    ASSERT_EQ(streams.size(), 2U); // those of the file package alone
    EXPECT_EQ(streams[0].kind, EDataKind::picture);
    EXPECT_EQ(streams[0].bodySid, 1U);
    EXPECT_EQ(streams[0].indexSid, 129U);
    EXPECT_EQ(streams[0].track->number, 0x15010501U);
    ASSERT_NE(streams[1].materialTrack, nullptr);
    EXPECT_EQ(streams[1].materialTrack->DataKind(), EDataKind::sound);
    EXPECT_EQ(streams[1].materialPackage, model.MaterialPackage());
}

TEST(Links, TracksWithoutADataDefinitionTakeTheKindOfTheirDescriptor)
{
    MxfHeader header;
    header.Add(MxfSet("SourcePackage", 200).Package(0x4401, 200).Ref(0x4701, 210).Refs(0x4403, {220, 230}))
        .Add(MxfSet("TimelineTrack", 220).U32(0x4801, 2).U32(0x4804, 0x16010301))
        .Add(MxfSet("TimelineTrack", 230).U32(0x4801, 3)) // nothing is known about it
        .Add(MxfSet("WaveAudioEssenceDescriptor", 210).U32(0x3006, 2));
    const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
    const std::vector<SStreamLink> streams = LinkStreams(model);
    ASSERT_EQ(streams.size(), 1U);
    EXPECT_EQ(streams[0].kind, EDataKind::sound);
    EXPECT_FALSE(streams[0].IsInFile());
}

TEST(Links, OperationalPatternsAndMuxingModes)
{
    struct Case {
        const char* label;
        const char* name;
        std::vector<std::uint32_t> bodySids;
        EMuxingMode mode;
    };
    const Case cases[] = {
        {"06.0E.2B.34.04.01.01.01.0D.01.02.01.01.01.09.00", "OP1a", {1}, EMuxingMode::interleaved},
        {"06.0E.2B.34.04.01.01.0D.0D.01.02.01.01.02.09.00", "OP1b", {1, 2}, EMuxingMode::partitioned},
        {"06.0E.2B.34.04.01.01.01.0D.01.02.01.02.01.07.00", "OP2a", {0}, EMuxingMode::external},
        {"06.0E.2B.34.04.01.01.01.0D.01.02.01.03.03.01.10", "OP3c", {1, 1}, EMuxingMode::interleaved},
        {"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.00.00.00", "OP-Atom", {1}, EMuxingMode::singleStream},
        {"06.0E.2B.34.04.01.01.02.0D.01.02.01.10.03.00.00", "OP-Atom", {}, EMuxingMode::singleStream},
        {"06.0E.2B.34.04.01.01.01.0D.01.02.01.04.01.01.00", "unknown", {}, EMuxingMode::unknown},
        {"06.0E.2B.34.04.01.01.01.0D.01.03.01.01.01.01.00", "unknown", {}, EMuxingMode::unknown},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(c.label);
        MxfHeader header;
        std::uint32_t number = 10;
        for (const std::uint32_t sid : c.bodySids) {
            ++number;
            header.Add(MxfSet("EssenceContainerData", number).Package(0x2701, number).U32(0x3F07, sid));
        }
        if (!c.bodySids.empty())
            header.Add(MxfSet("SourcePackage", 1).Package(0x4401, 11).Ref(0x4701, 2))
                .Add(MxfSet("WaveAudioEssenceDescriptor", 2));
        const SHeaderModel model = BuildHeaderModel(ReadHeaderSets(header.All()));
        EXPECT_EQ(OperationalPatternName(Label(c.label)), c.name);
        EXPECT_EQ(DetectMuxingMode(model, Label(c.label)), c.mode);
    }
    const SOperationalPattern op2a = ParseOperationalPattern(Label(cases[2].label));
    EXPECT_TRUE(op2a.hasExternalEssence);
    EXPECT_FALSE(op2a.isStreamable);
    EXPECT_FALSE(op2a.hasSeveralTracks);
}

} // namespace
