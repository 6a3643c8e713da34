#pragma once

/// Names of the elements that documents are made of, and the fixed texts that a few of them hold.
/// Constants are named PEL, the element's name, Key. They are character arrays, so that each goes wherever a text is
/// taken: as a key, as a value, as a key of an options dictionary, as a printf argument.
/// Source: Final Cut Pro XML Interchange Format, version 5.
namespace zanfcp {

// Containers of a document
inline constexpr char PELImportOptionsKey[] = "importoptions";
inline constexpr char PELProjectKey[] = "project";
inline constexpr char PELBinKey[] = "bin";
inline constexpr char PELChildrenKey[] = "children";
inline constexpr char PELClipKey[] = "clip";
inline constexpr char PELSequenceKey[] = "sequence";

// Import options
inline constexpr char PELCreateNewProjectKey[] = "createnewproject";
inline constexpr char PELDefSequencePresetNameKey[] = "defsequencepresetname";

// What most elements have
inline constexpr char PELNameKey[] = "name";
inline constexpr char PELDurationKey[] = "duration";
inline constexpr char PELInKey[] = "in";
inline constexpr char PELOutKey[] = "out";
inline constexpr char PELStartKey[] = "start";
inline constexpr char PELEndKey[] = "end";
inline constexpr char PELEnabledKey[] = "enabled";
inline constexpr char PELLockedKey[] = "locked";
inline constexpr char PELUpdateBehaviorKey[] = "updatebehavior";
inline constexpr char PELUpdateBehaviorAdd[] = "add";

// Rate and timecode
inline constexpr char PELRateKey[] = "rate";
inline constexpr char PELNTSCKey[] = "ntsc";
inline constexpr char PELTimebaseKey[] = "timebase";
inline constexpr char PELTimecodeKey[] = "timecode";
inline constexpr char PELFrameKey[] = "frame";
inline constexpr char PELDisplayFormatKey[] = "displayformat";
inline constexpr char PELSourceKey[] = "source";
inline constexpr char PELReelKey[] = "reel";

// Markers and colours
inline constexpr char PELMarkerKey[] = "marker";
inline constexpr char PELCommentKey[] = "comment";
inline constexpr char PELColorKey[] = "color";
inline constexpr char PELColorRed[] = "red";
inline constexpr char PELColorGreen[] = "green";
inline constexpr char PELColorBlue[] = "blue";
inline constexpr char PELColorAlpha[] = "alpha";

// Clip items and links
inline constexpr char PELClipItemKey[] = "clipitem";
inline constexpr char PELMasterClipIDKey[] = "masterclipid";
inline constexpr char PELIsMasterClipKey[] = "ismasterclip";
inline constexpr char PELAlphaTypeKey[] = "alphatype";
inline constexpr char PELAlphaTypeNone[] = "none";
inline constexpr char PELSyncOffsetKey[] = "syncoffset";
inline constexpr char PELSourceTrackKey[] = "sourcetrack";
inline constexpr char PELMediaTypeKey[] = "mediatype";
inline constexpr char PELTrackIndexKey[] = "trackindex";
inline constexpr char PELLinkKey[] = "link";
inline constexpr char PELLinkClipRefKey[] = "linkclipref";
inline constexpr char PELGroupIndexKey[] = "groupindex";

// Files and media
inline constexpr char PELFileKey[] = "file";
inline constexpr char PELPathURLKey[] = "pathurl";
inline constexpr char PELMediaKey[] = "media";
inline constexpr char PELTrackKey[] = "track";
inline constexpr char PELVideoKey[] = "video";
inline constexpr char PELAudioKey[] = "audio";
inline constexpr char PELFormatKey[] = "format";
inline constexpr char PELSampleCharacteristicsKey[] = "samplecharacteristics";
inline constexpr char PELWidthKey[] = "width";
inline constexpr char PELHeightKey[] = "height";
inline constexpr char PELAnamorphicKey[] = "anamorphic";
inline constexpr char PELPixelAspectRatioKey[] = "pixelaspectratio";
inline constexpr char PELFieldDominanceKey[] = "fielddominance";
inline constexpr char PELSampleRateKey[] = "samplerate";
inline constexpr char PELDepthKey[] = "depth";
inline constexpr char PELChannelCountKey[] = "channelcount";

// Codecs
inline constexpr char PELCodecKey[] = "codec";
inline constexpr char PELAppSpecificDataKey[] = "appspecificdata";
inline constexpr char PELAppNameKey[] = "appname";
inline constexpr char PELAppManufacturerKey[] = "appmanufacturer";
inline constexpr char PELAppVersionKey[] = "appversion";
inline constexpr char PELDataKey[] = "data";
inline constexpr char PELQTCodecKey[] = "qtcodec";
inline constexpr char PELCodecNameKey[] = "codecname";
inline constexpr char PELCodecTypeNameKey[] = "codectypename";
inline constexpr char PELCodecTypeCodeKey[] = "codectypecode";
inline constexpr char PELCodecVendorCodeKey[] = "codecvendorcode";
inline constexpr char PELSpatialQualityKey[] = "spatialquality";
inline constexpr char PELTemporalQualityKey[] = "temporalquality";
inline constexpr char PELKeyframeRateKey[] = "keyframerate";
inline constexpr char PELDataRateKey[] = "datarate";

// Audio outputs
inline constexpr char PELOutputsKey[] = "outputs";
inline constexpr char PELGroupKey[] = "group";
inline constexpr char PELIndexKey[] = "index";
inline constexpr char PELNumChannelsKey[] = "numchannels";
inline constexpr char PELDownmixKey[] = "downmix";
inline constexpr char PELChannelKey[] = "channel";

// Multiclips
inline constexpr char PELMulticlipKey[] = "multiclip";
inline constexpr char PELCollapsedKey[] = "collapsed";
inline constexpr char PELSyncTypeKey[] = "synctype";
inline constexpr char PELSyncTypeTimecode[] = "3"; ///< the angles are lined up by their timecodes
inline constexpr char PELAngleKey[] = "angle";
inline constexpr char PELMediaDelayKey[] = "mediadelay";
inline constexpr char PELActiveVideoAngleKey[] = "activevideoangle";
inline constexpr char PELActiveAudioAngleKey[] = "activeaudioangle";

// Transitions
inline constexpr char PELTransitionItemKey[] = "transitionitem";
inline constexpr char PELAlignmentKey[] = "alignment";
inline constexpr char PELAlignmentCenter[] = "center";
inline constexpr char PELEffectKey[] = "effect";
inline constexpr char PELEffectIDKey[] = "effectid";
inline constexpr char PELEffectCategoryKey[] = "effectcategory";
inline constexpr char PELEffectTypeKey[] = "effecttype";
inline constexpr char PELCrossDissolveName[] = "Cross Dissolve";
inline constexpr char PELCossDissolceEffectID[] = "Cross Dissolve"; ///< spelt as hosts know it
inline constexpr char PELWipeCodeKey[] = "wipecode";
inline constexpr char PELWipeAccuracyKey[] = "wipeaccuracy";
inline constexpr char PELStartRatioKey[] = "startratio";
inline constexpr char PELEndRatioKey[] = "endratio";
inline constexpr char PELReverseKey[] = "reverse";

// Logging information, labels and comments
inline constexpr char PELLoggingInfoKey[] = "logginginfo";
inline constexpr char PELDescriptionKey[] = "description";
inline constexpr char PELSceneKey[] = "scene";
inline constexpr char PELShotTakeKey[] = "shottake";
inline constexpr char PELLogNoteKey[] = "lognote";
inline constexpr char PELGoodKey[] = "good";
inline constexpr char PELLabelsKey[] = "labels";
inline constexpr char PELLabelKey[] = "label";
inline constexpr char PELLabel2Key[] = "label2";
inline constexpr char PELCommentsKey[] = "comments";
inline constexpr char PELMasterComment1Key[] = "mastercomment1";
inline constexpr char PELMasterComment2Key[] = "mastercomment2";
inline constexpr char PELMasterComment3Key[] = "mastercomment3";
inline constexpr char PELMasterComment4Key[] = "mastercomment4";
inline constexpr char PELClipCommentA[] = "clipcommenta";
inline constexpr char PELClipCommentB[] = "clipcommentb";

} // namespace zanfcp
