#pragma once

// Made by generate_set_tables.py from data/sets.tsv and data/properties.tsv.
// clang-format off
#include <cstdint>

namespace TamrelMxf {

/// The classes of the register; the number of each is its index among AllSets().
enum class ESet : std::uint16_t {
    DMCVTGenericSet1 = 0,
    DMCVTApp1Set = 1,
    DMCVTApp2Set = 2,
    DMCVTApp3Set = 3,
    DMCVTApp4Set = 4,
    LensUnitAcquisitionMetadata = 5,
    CameraUnitAcquisitionMetadata = 6,
    UserDefinedAcquisitionMetadata = 7,
    InterchangeObject = 8,
    StructuralComponent = 9,
    Segment = 10,
    EdgeCode = 11,
    EssenceGroup = 12,
    Event = 13,
    GPITrigger = 14,
    CommentMarker = 15,
    Filler = 16,
    OperationGroup = 17,
    NestedScope = 18,
    Pulldown = 19,
    ScopeReference = 20,
    Selector = 21,
    Sequence = 22,
    SourceReference = 23,
    SourceClip = 24,
    TextClip = 25,
    HTMLClip = 26,
    TimecodeComponent = 27,
    TimecodeStream = 28,
    TimecodeStream12M = 29,
    Transition = 30,
    ContentStorage = 31,
    ControlPoint = 32,
    DefinitionObject = 33,
    DataDefinition = 34,
    OperationDefinition = 35,
    ParameterDefinition = 36,
    PluginDefinition = 37,
    CodecDefinition = 38,
    ContainerDefinition = 39,
    InterpolationDefinition = 40,
    Dictionary = 41,
    EssenceContainerData = 42,
    GenericDescriptor = 43,
    FileDescriptor = 44,
    AIFCDescriptor = 45,
    GenericPictureEssenceDescriptor = 46,
    CDCIPictureEssenceDescriptor = 47,
    RGBAPictureEssenceDescriptor = 48,
    HTMLDescriptor = 49,
    TIFFDescriptor = 50,
    WAVEDescriptor = 51,
    FilmDescriptor = 52,
    TapeDescriptor = 53,
    Preface = 54,
    Identification = 55,
    GenericLocator = 56,
    NetworkLocator = 57,
    TextLocator = 58,
    GenericPackage = 59,
    CompositionPackage = 60,
    MaterialPackage = 61,
    SourcePackage = 62,
    GenericTrack = 63,
    EventTrack = 64,
    StaticTrack = 65,
    TimelineTrack = 66,
    Parameter = 67,
    ConstantValue = 68,
    VaryingValue = 69,
    TaggedValue = 70,
    KLVData = 71,
    DMSegment = 72,
    GenericSoundEssenceDescriptor = 73,
    GenericDataEssenceDescriptor = 74,
    MultipleDescriptor = 75,
    DMSourceClip = 76,
    DateTimeDescriptor = 77,
    AES3AudioEssenceDescriptor = 78,
    WaveAudioEssenceDescriptor = 79,
    PhysicalDescriptor = 80,
    ImportDescriptor = 81,
    RecordingDescriptor = 82,
    TaggedValueDefinition = 83,
    KLVDataDefinition = 84,
    AuxiliaryDescriptor = 85,
    RIFFChunk = 86,
    BWFImportDescriptor = 87,
    MPEGVideoDescriptor = 88,
    ParsedTextDescriptor = 89,
    SGMLDescriptor = 90,
    XMLDescriptor = 91,
    HTMLParsedTextDescriptor = 92,
    RP217Descriptor = 93,
    DynamicMarker = 94,
    DynamicClip = 95,
    SubDescriptor = 96,
    JPEG2000PictureSubDescriptor = 97,
    VBIDataDescriptor = 98,
    ANCDataDescriptor = 99,
    DCPCMSoundDescriptor = 100,
    MPEGAudioDescriptor = 101,
    VC1VideoDescriptor = 102,
    PackageMarker = 103,
    ApplicationPlugInObject = 104,
    ApplicationReferencedObject = 105,
    StereoscopicPictureSubDescriptor = 106,
    TimedTextDescriptor = 107,
    TimedTextResourceSubDescriptor = 108,
    ApplicationObject = 109,
    ContainerConstraintsSubDescriptor = 110,
    MPEG4VisualSubDescriptor = 111,
    TIFFPictureEssenceDescriptor = 112,
    MCALabelSubDescriptor = 113,
    AudioChannelLabelSubDescriptor = 114,
    SoundfieldGroupLabelSubDescriptor = 115,
    GroupOfSoundfieldGroupsLabelSubDescriptor = 116,
    AVCSubDescriptor = 117,
    EventTextDescriptor = 118,
    STLDescriptor = 119,
    STLSubDescriptor = 120,
    OperationsStereoscopicSubDescriptor = 121,
    AuxDataEssenceDescriptor = 122,
    VC2SubDescriptor = 123,
    DMCVTTargetSubDescriptor = 124,
    VC5BayerPictureEssenceSubDescriptor = 125,
    VC5CDCIPictureEssenceSubDescriptor = 126,
    AACSubDescriptor = 127,
    ACESPictureSubDescriptor = 128,
    TargetFrameSubDescriptor = 129,
    IABEssenceDescriptor = 130,
    IABSoundfieldLabelSubDescriptor = 131,
    OPDefinition = 132,
    CompressionDefinition = 133,
    AbstractObject = 134,
    HEVCSubDescriptor = 135,
    JPEGXSSubDescriptor = 136,
    FFV1PictureSubDescriptor = 137,
    MGASoundEssenceDescriptor = 138,
    MGAAudioMetadataSubDescriptor = 139,
    MGASoundfieldGroupLabelSubDescriptor = 140,
    SADMAudioMetadataSubDescriptor = 141,
    SupplementalDataEssenceDescriptor = 142,
    DataStreamSubDescriptor = 143,
    DataStreamDeviceSubDescriptor = 144,
    ClassDefinition = 145,
    PropertyDefinition = 146,
    TypeDefinition = 147,
    TypeDefinitionInteger = 148,
    TypeDefinitionStrongObjectReference = 149,
    TypeDefinitionWeakObjectReference = 150,
    TypeDefinitionEnumeration = 151,
    TypeDefinitionFixedArray = 152,
    TypeDefinitionVariableArray = 153,
    TypeDefinitionSet = 154,
    TypeDefinitionString = 155,
    TypeDefinitionStream = 156,
    TypeDefinitionRecord = 157,
    TypeDefinitionRename = 158,
    TypeDefinitionExtendibleEnumeration = 159,
    TypeDefinitionIndirect = 160,
    TypeDefinitionOpaque = 161,
    TypeDefinitionCharacter = 162,
    MetaDefinition = 163,
    MetaDictionary = 164,
    ExtensionScheme = 165,
    PropertyAliasDefinition = 166,
    ExtendibleEnumerationElement = 167,
    Root = 168,
    PartitionPack = 169,
    HeaderPartitionPack = 170,
    HeaderPartitionOpenIncomplete = 171,
    HeaderPartitionClosedIncomplete = 172,
    HeaderPartitionOpenComplete = 173,
    HeaderPartitionClosedComplete = 174,
    BodyPartitionPack = 175,
    BodyPartitionOpenIncomplete = 176,
    BodyPartitionClosedIncomplete = 177,
    BodyPartitionOpenComplete = 178,
    BodyPartitionClosedComplete = 179,
    GenericStreamPartition = 180,
    FooterPartitionPack = 181,
    FooterPartitionClosedIncomplete = 182,
    FooterPartitionClosedComplete = 183,
    PrimerPack = 184,
    IndexTableSegment = 185,
    RandomIndexPack = 186,
    EncryptedTriplet = 187,
    DMObject = 188,
    DMFramework = 189,
    ProductionFramework = 190,
    ClipFramework = 191,
    SceneFramework = 192,
    Titles = 193,
    DMS1Identification = 194,
    GroupRelationship = 195,
    Branding = 196,
    DMS1Event = 197,
    Publication = 198,
    Award = 199,
    CaptionsDescription = 200,
    DMS1Annotation = 201,
    SettingPeriod = 202,
    Scripting = 203,
    Classification = 204,
    Shot = 205,
    Keypoint = 206,
    CueWords = 207,
    Participant = 208,
    ContactsList = 209,
    Person = 210,
    Organization = 211,
    Location = 212,
    Address = 213,
    Communications = 214,
    Contract = 215,
    Rights = 216,
    PictureFormat = 217,
    DeviceParameters = 218,
    NameValue = 219,
    Processing = 220,
    Project = 221,
    DMS1Framework = 222,
    ProductionClipFramework = 223,
    DMS1Object = 224,
    TextLanguage = 225,
    Thesaurus = 226,
    Contact = 227,
    CryptographicFramework = 228,
    CryptographicContext = 229,
    DMS_AS_03_Framework = 230,
    TextBasedFramework = 231,
    GenericStreamTextBasedSet = 232,
    UTF8TextBasedSet = 233,
    UTF16TextBasedSet = 234,
    TextBasedObject = 235,
    EIDRFramework = 236,
    DM_Segmentation_Framework = 237,
    DMS_AS_10_Core_Framework = 238,
    DM_AS_11_Core_Framework = 239,
    DM_AS_11_Segmentation_Framework = 240,
    DMS_AS_12_Framework = 241,
    AS_12_DescriptiveObject = 242,
    APP_InfaxFramework = 243,
    APP_PSEAnalysisFramework = 244,
    APP_VTRReplayErrorFramework = 245,
    APP_DigiBetaDropoutFramework = 246,
    APP_TimecodeBreakFramework = 247,
    DM_AS_11_UKDPP_Framework = 248,
    DMS_AS_12_AdID_Slate = 249,
    AS_07_Core_DMS_Framework = 250,
    AS_07_DMS_Device = 251,
    AS_07_DMS_Identifier = 252,
    AS_07_GSP_DMS_Object = 253,
    AS_07_GSP_DMS_Framework = 254,
    AS_07_GSP_BD_DMS_Framework = 255,
    AS_07_GSP_TD_DMS_Framework = 256,
    AS_07_Segmentation_DMS_Framework = 257,
    AS_07_TimecodeLabelSubdescriptor = 258,
    ISXDDataEssenceDescriptor = 259,
    IADataEssenceDescriptor = 260,
    IADataEssenceSubDescriptor = 261,
    PHDRMetadataTrackSubDescriptor = 262,
    ARRIRAWPictureEssenceProcessingSubDescriptor = 263,
    PictureEssenceProcessingSubDescriptor = 264,
    TextureProcessingSubDescriptor = 265,
    TextureGen1ProcessingSubDescriptor = 266,
    TextureGen2ProcessingSubDescriptor = 267,
    SensorDimensions = 268,
    RectangleSet = 269,
    SensorCharacteristics = 270,
    ColorEncodingSet = 271,
    LUT3D = 272,
    ColorProcessingSet = 273,
    ClipSubDescriptor = 274,
    RIFFChunkDefinitionSubDescriptor = 275,
    ADM_CHNASubDescriptor = 276,
    ADMChannelMapping = 277,
    RIFFChunkReferencesSubDescriptor = 278,
    ADMAudioMetadataSubDescriptor = 279,
    ADMSoundfieldGroupLabelSubDescriptor = 280,
};

/// Where a set keeps a property: under a static local tag, or, when `tag` is 0, under the tag that the
/// primer pack gives to the label with `item` in bytes 9 to 16.
struct SPropertyId {
    std::uint16_t tag;
    std::uint64_t item;
};

/// The properties that are found by a tag, under the class that owns them.
namespace Prop {
namespace DMCVTGenericSet1 {
inline constexpr SPropertyId ApplicationIdentifier{0x3601, 0x0531010100000000};
inline constexpr SPropertyId ApplicationVersionNumber{0x3602, 0x0531010200000000};
inline constexpr SPropertyId BackwardsVersion{0x3603, 0x0531010300000000};
inline constexpr SPropertyId TimeIntervalStart{0x3604, 0x0531010400000000};
inline constexpr SPropertyId TimeIntervalDuration{0x3605, 0x0531010500000000};
inline constexpr SPropertyId UpperLeftCorner{0x3606, 0x0531010600000000};
inline constexpr SPropertyId LowerRightCorner{0x3607, 0x0531010700000000};
inline constexpr SPropertyId WindowNumber{0x3608, 0x0531010800000000};
inline constexpr SPropertyId TargetedSystemDisplayPrimaries{0x3609, 0x0531010900000000};
inline constexpr SPropertyId TargetedSystemDisplayWhitePointChromaticity{0x360A, 0x0531010A00000000};
inline constexpr SPropertyId TargetedSystemDisplayMaximumLuminance{0x360B, 0x0531010B00000000};
inline constexpr SPropertyId TargetedSystemDisplayMinimumLuminance{0x360C, 0x0531010C00000000};
}
namespace DMCVTApp1Set {
inline constexpr SPropertyId MinimumPqencodedMaxrgb{0x360D, 0x0531010D00000000};
inline constexpr SPropertyId AveragePqencodedMaxrgb{0x360E, 0x0531010E00000000};
inline constexpr SPropertyId MaximumPqencodedMaxrgb{0x360F, 0x0531010F00000000};
inline constexpr SPropertyId MinimumPqencodedMaxrgbOffset{0x3610, 0x0531011000000000};
inline constexpr SPropertyId AveragePqencodedMaxrgbOffset{0x3611, 0x0531011100000000};
inline constexpr SPropertyId MaximumPqencodedMaxrgbOffset{0x3612, 0x0531011200000000};
inline constexpr SPropertyId ToneMappingOffset{0x3613, 0x0531011300000000};
inline constexpr SPropertyId ToneMappingGain{0x3614, 0x0531011400000000};
inline constexpr SPropertyId ToneMappingGamma{0x3615, 0x0531011500000000};
inline constexpr SPropertyId ChromaCompensationWeight{0x3616, 0x0531011600000000};
inline constexpr SPropertyId SaturationGain{0x3617, 0x0531011700000000};
inline constexpr SPropertyId ToneDetailFactor{0x3618, 0x0531011800000000};
}
namespace DMCVTApp2Set {
inline constexpr SPropertyId LuminanceLowerBound{0x3619, 0x0531011900000000};
inline constexpr SPropertyId LuminanceUpperBound{0x361A, 0x0531011A00000000};
inline constexpr SPropertyId LuminanceRangeSelector{0x361B, 0x0531011B00000000};
inline constexpr SPropertyId ChromaticityDiskCenter{0x361C, 0x0531011C00000000};
inline constexpr SPropertyId ChromaticityDiskRadius{0x361D, 0x0531011D00000000};
inline constexpr SPropertyId ChromaticityAreaSelector{0x361E, 0x0531011E00000000};
inline constexpr SPropertyId SaturationGainFunction{0x361F, 0x0531011F00000000};
inline constexpr SPropertyId ToneMappingInputSignalWeights{0x3620, 0x0531012000000000};
inline constexpr SPropertyId ToneMappingInputSignalBlackLevelOffset{0x3621, 0x0531012100000000};
inline constexpr SPropertyId ToneMappingInputSignalWhiteLevelOffset{0x3622, 0x0531012200000000};
inline constexpr SPropertyId ShadowGainControl{0x3623, 0x0531012300000000};
inline constexpr SPropertyId HighlightGainControl{0x3624, 0x0531012400000000};
inline constexpr SPropertyId MidToneWidthAdjustmentFactor{0x3625, 0x0531012500000000};
inline constexpr SPropertyId ToneMappingOutputFineTuningFunction{0x3626, 0x0531012600000000};
}
namespace DMCVTApp3Set {
inline constexpr SPropertyId TargetedSystemDisplaySignalFormat{0x3627, 0x0531012700000000};
inline constexpr SPropertyId MetadataColorCodingWorkspace{0x3628, 0x0531012800000000};
inline constexpr SPropertyId PreMatrixToneMapping1{0x3629, 0x0531012900000000};
inline constexpr SPropertyId PreMatrixToneMapping2{0x362A, 0x0531012A00000000};
inline constexpr SPropertyId PreMatrixToneMapping3{0x362B, 0x0531012B00000000};
inline constexpr SPropertyId ColorRemappingMatrix{0x362C, 0x0531012C00000000};
inline constexpr SPropertyId PostMatrixToneMapping1{0x362D, 0x0531012D00000000};
inline constexpr SPropertyId PostMatrixToneMapping2{0x362E, 0x0531012E00000000};
inline constexpr SPropertyId PostMatrixToneMapping3{0x362F, 0x0531012F00000000};
}
namespace DMCVTApp4Set {
inline constexpr SPropertyId CenterOfEllipse{0x3630, 0x0531013000000000};
inline constexpr SPropertyId RotationAngle{0x3631, 0x0531013100000000};
inline constexpr SPropertyId SemiMajorAxisInternalEllipse{0x3632, 0x0531013200000000};
inline constexpr SPropertyId SemiMajorAxisExternalEllipse{0x3633, 0x0531013300000000};
inline constexpr SPropertyId SemiMinorAxisExternalEllipse{0x3634, 0x0531013400000000};
inline constexpr SPropertyId OverlapProcessOption{0x3635, 0x0531013500000000};
inline constexpr SPropertyId TargetedSystemDisplayActualPeakLuminance{0x3636, 0x0531013600000000};
inline constexpr SPropertyId RowsInTargetedSystemDisplayActualPeakLuminance{0x3637, 0x0531013700000000};
inline constexpr SPropertyId MasteringDisplayActualPeakLuminance{0x3638, 0x0531013800000000};
inline constexpr SPropertyId RowsInMasteringDisplayActualPeakLuminance{0x3639, 0x0531013900000000};
inline constexpr SPropertyId MaxSCL{0x363A, 0x0531013A00000000};
inline constexpr SPropertyId AverageMaxRGB{0x363B, 0x0531013B00000000};
inline constexpr SPropertyId DistributionMaxRGBPercentages{0x363C, 0x0531013C00000000};
inline constexpr SPropertyId DistributionMaxRGBPercentiles{0x363D, 0x0531013D00000000};
inline constexpr SPropertyId FractionBrightPixels{0x363E, 0x0531013E00000000};
inline constexpr SPropertyId KneePoint{0x363F, 0x0531013F00000000};
inline constexpr SPropertyId BezierCurveAnchors{0x3640, 0x0531014000000000};
inline constexpr SPropertyId ColorSaturationWeight{0x3641, 0x0531014100000000};
}
namespace LensUnitAcquisitionMetadata {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId IrisFNumber{0x8000, 0x0420020201000000};
inline constexpr SPropertyId IrisTNumber{0x8008, 0x0420020208000000};
inline constexpr SPropertyId IrisRingPosition{0x8009, 0x0420020209000000};
inline constexpr SPropertyId FocusPositionFromImagePlane{0x8001, 0x0420020202000000};
inline constexpr SPropertyId FocusPositionFromFrontLensVertex{0x8002, 0x0420020203000000};
inline constexpr SPropertyId FocusRingPosition{0x800A, 0x042002020A000000};
inline constexpr SPropertyId MacroSetting{0x8003, 0x0420020204000000};
inline constexpr SPropertyId LensZoom35mmStillCameraEquivalent{0x8004, 0x0420020205000000};
inline constexpr SPropertyId LensZoomActualFocalLength{0x8005, 0x0420020206000000};
inline constexpr SPropertyId ZoomRingPosition{0x800B, 0x042002020B000000};
inline constexpr SPropertyId AnamorphicLensSqueezeRatio{0x800C, 0x042002020C000000};
inline constexpr SPropertyId OpticalInversion{0x800D, 0x042002020D000000};
inline constexpr SPropertyId OpticalExtenderMagnification{0x8006, 0x0420020207000000};
inline constexpr SPropertyId LensAttributes{0x8007, 0x0302030202100100};
}
namespace CameraUnitAcquisitionMetadata {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId AutoExposureMode{0x8100, 0x0420010301010000};
inline constexpr SPropertyId ExposureIndexOfPhotoMeter{0x8115, 0x04200103010C0000};
inline constexpr SPropertyId ExposureIndexOfPhotoMeterLongInteger{0x8119, 0x04200103010C0100};
inline constexpr SPropertyId AutoFocusSensingAreaSetting{0x8101, 0x0420010301020000};
inline constexpr SPropertyId ColorCorrectionFilterWheelSetting{0x8102, 0x0420010301030000};
inline constexpr SPropertyId NeutralDensityFilterWheelSetting{0x8103, 0x0420010301040000};
inline constexpr SPropertyId RotaryShutter{0x811A, 0x04200103010E0000};
inline constexpr SPropertyId OpticalAntiAliasingFilter{0x811B, 0x04200103010F0000};
inline constexpr SPropertyId ImageSensorDimensionEffectiveWidth{0x8104, 0x0420010301050000};
inline constexpr SPropertyId ImageSensorDimensionEffectiveHeight{0x8105, 0x0420010301060000};
inline constexpr SPropertyId CaptureFrameRate{0x8106, 0x0401030103010000};
inline constexpr SPropertyId ImageSensorReadoutMode{0x8107, 0x0420010301070000};
inline constexpr SPropertyId ImageSensorDecimationRatio{0x811C, 0x0420010301100000};
inline constexpr SPropertyId ImageScanDirection{0x811D, 0x0420010301110000};
inline constexpr SPropertyId ShutterSpeedAngle{0x8108, 0x0420010301080000};
inline constexpr SPropertyId ShutterSpeedTime{0x8109, 0x0420010301080100};
inline constexpr SPropertyId CameraMasterGainAdjustment{0x810A, 0x0420010301090000};
inline constexpr SPropertyId ISOSensitivity{0x810B, 0x04200103010A0000};
inline constexpr SPropertyId ISOSensitivityLongInteger{0x811E, 0x04200103010A0100};
inline constexpr SPropertyId ColorMatrix{0x8118, 0x04200103010D0000};
inline constexpr SPropertyId ElectricalExtenderMagnification{0x810C, 0x04200103010B0000};
inline constexpr SPropertyId AutoWhiteBalanceMode{0x810D, 0x0420010302010000};
inline constexpr SPropertyId WhiteBalance{0x810E, 0x0420010302020000};
inline constexpr SPropertyId TintCorrection{0x811F, 0x0420010302090000};
inline constexpr SPropertyId CameraMasterBlackLevel{0x810F, 0x0420010302030000};
inline constexpr SPropertyId CameraKneePoint{0x8110, 0x0420010302040000};
inline constexpr SPropertyId CameraKneeSlope{0x8111, 0x0420010302050000};
inline constexpr SPropertyId CameraLuminanceDynamicRange{0x8112, 0x0420010302060000};
inline constexpr SPropertyId TransferCharacteristic{0x3210, 0x0401020101010200};
inline constexpr SPropertyId ColorPrimaries{0x3219, 0x0401020101060100};
inline constexpr SPropertyId CodingEquations{0x321A, 0x0401020101030100};
inline constexpr SPropertyId LuminanceCodeRange{0x8120, 0x0420010301120000};
inline constexpr SPropertyId GammaForCDL{0x8116, 0x0420010302070000};
inline constexpr SPropertyId ColorForCDL{0x8121, 0x04200103020A0000};
inline constexpr SPropertyId ASCCDLV12{0x8117, 0x0420010302080000};
inline constexpr SPropertyId AcquisitionSettingProcedure{0x8122, 0x0420010301130000};
inline constexpr SPropertyId CameraSettingFileURI{0x8113, 0x0102010802000000};
inline constexpr SPropertyId CameraAttributes{0x8114, 0x0302030202100200};
}
namespace UserDefinedAcquisitionMetadata {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId UDAMSetIdentifier{0xE000, 0x0406080500000000};
inline constexpr SPropertyId UDAMSetVersion{0xE010, 0x0406080700000000};
}
namespace InterchangeObject {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId ObjectClass{0x0101, 0x0601010401010000};
inline constexpr SPropertyId GenerationUID{0x0102, 0x0520070108000000};
inline constexpr SPropertyId ApplicationPlugInObjects{0, 0x06010104020E0000};
}
namespace StructuralComponent {
inline constexpr SPropertyId DataDefinition{0x0201, 0x0407010000000000};
inline constexpr SPropertyId Duration{0x0202, 0x0702020101030000};
inline constexpr SPropertyId ComponentKLVData{0x0203, 0x0301021004000000};
inline constexpr SPropertyId ComponentUserComments{0x0204, 0x0302010216000000};
inline constexpr SPropertyId ComponentAttributes{0x0205, 0x0301021008000000};
}
namespace EdgeCode {
inline constexpr SPropertyId EdgeCodeStart{0x0401, 0x0104090100000000};
inline constexpr SPropertyId EdgeCodeFilmFormat{0x0402, 0x0410010301090000};
inline constexpr SPropertyId EdgeCodeFormat{0x0403, 0x0410010301020000};
inline constexpr SPropertyId EdgeCodeHeader{0x0404, 0x0103020102000000};
}
namespace EssenceGroup {
inline constexpr SPropertyId Choices{0x0501, 0x0601010406010000};
inline constexpr SPropertyId StillFrame{0x0502, 0x0601010402080000};
}
namespace Event {
inline constexpr SPropertyId EventStartPosition{0x0601, 0x0702010303030000};
inline constexpr SPropertyId EventComment{0x0602, 0x0530040401000000};
}
namespace GPITrigger {
inline constexpr SPropertyId ActiveState{0x0801, 0x0530040100000000};
}
namespace CommentMarker {
inline constexpr SPropertyId AnnotationSource{0x0901, 0x06010104020A0000};
}
namespace OperationGroup {
inline constexpr SPropertyId Operation{0x0B01, 0x0530050600000000};
inline constexpr SPropertyId InputSegments{0x0B02, 0x0601010406020000};
inline constexpr SPropertyId Parameters{0x0B03, 0x06010104060A0000};
inline constexpr SPropertyId BypassOverride{0x0B04, 0x0530050C00000000};
inline constexpr SPropertyId Rendering{0x0B05, 0x0601010402060000};
}
namespace NestedScope {
inline constexpr SPropertyId NestedScopeTracks{0x0C01, 0x0601010406070000};
}
namespace Pulldown {
inline constexpr SPropertyId InputSegment{0x0D01, 0x0601010402070000};
inline constexpr SPropertyId PulldownKind{0x0D02, 0x0540100102000000};
inline constexpr SPropertyId PulldownDirection{0x0D03, 0x0540100101000000};
inline constexpr SPropertyId PhaseFrame{0x0D04, 0x0540100103000000};
}
namespace ScopeReference {
inline constexpr SPropertyId RelativeScope{0x0E01, 0x0601010303000000};
inline constexpr SPropertyId RelativeTrack{0x0E02, 0x0601010304000000};
}
namespace Selector {
inline constexpr SPropertyId SelectedSegment{0x0F01, 0x0601010402090000};
inline constexpr SPropertyId AlternateSegments{0x0F02, 0x0601010406080000};
}
namespace Sequence {
inline constexpr SPropertyId StructuralComponents{0x1001, 0x0601010406090000};
}
namespace SourceReference {
inline constexpr SPropertyId SourcePackageID{0x1101, 0x0601010301000000};
inline constexpr SPropertyId SourceTrackID{0x1102, 0x0601010302000000};
inline constexpr SPropertyId ChannelIDs{0x1103, 0x0601010307000000};
inline constexpr SPropertyId MonoSourceTrackIDs{0x1104, 0x0601010308000000};
}
namespace SourceClip {
inline constexpr SPropertyId StartPosition{0x1201, 0x0702010301040000};
inline constexpr SPropertyId FadeInLength{0x1202, 0x0702020101050200};
inline constexpr SPropertyId FadeInType{0x1203, 0x0530050100000000};
inline constexpr SPropertyId FadeOutLength{0x1204, 0x0702020101050300};
inline constexpr SPropertyId FadeOutType{0x1205, 0x0530050200000000};
}
namespace HTMLClip {
inline constexpr SPropertyId BeginAnchor{0x1401, 0x0530060101000000};
inline constexpr SPropertyId EndAnchor{0x1402, 0x0530060201000000};
}
namespace TimecodeComponent {
inline constexpr SPropertyId StartTimecode{0x1501, 0x0702010301050000};
inline constexpr SPropertyId RoundedTimecodeBase{0x1502, 0x0404010102060000};
inline constexpr SPropertyId DropFrame{0x1503, 0x0404010105000000};
}
namespace TimecodeStream {
inline constexpr SPropertyId TimecodeStreamSampleRate{0x1601, 0x0404010102010000};
inline constexpr SPropertyId TimecodeStreamData{0x1602, 0x0407030000000000};
inline constexpr SPropertyId TimecodeSource{0x1603, 0x0404020100000000};
}
namespace TimecodeStream12M {
inline constexpr SPropertyId IncludeSync{0x1701, 0x0404010104000000};
}
namespace Transition {
inline constexpr SPropertyId TransitionOperation{0x1801, 0x0601010402050000};
inline constexpr SPropertyId CutPoint{0x1802, 0x0702010301060000};
}
namespace ContentStorage {
inline constexpr SPropertyId Packages{0x1901, 0x0601010405010000};
inline constexpr SPropertyId EssenceContainerData{0x1902, 0x0601010405020000};
}
namespace ControlPoint {
inline constexpr SPropertyId ControlPointValue{0x1A02, 0x0530050D00000000};
inline constexpr SPropertyId ControlPointTime{0x1A03, 0x0702010310020100};
inline constexpr SPropertyId EditHint{0x1A04, 0x0530050800000000};
}
namespace DefinitionObject {
inline constexpr SPropertyId DefinitionObjectIdentification{0x1B01, 0x0101150300000000};
inline constexpr SPropertyId DefinitionObjectName{0x1B02, 0x0107010203010000};
inline constexpr SPropertyId DefinitionObjectDescription{0x1B03, 0x0302030102010000};
}
namespace OperationDefinition {
inline constexpr SPropertyId OperationDataDefinition{0x1E01, 0x0530050900000000};
inline constexpr SPropertyId IsTimeWarp{0x1E02, 0x0530050300000000};
inline constexpr SPropertyId DegradeTo{0x1E03, 0x0601010404010000};
inline constexpr SPropertyId OperationCategory{0x1E06, 0x0530050A00000000};
inline constexpr SPropertyId OperationInputCount{0x1E07, 0x0530050400000000};
inline constexpr SPropertyId Bypass{0x1E08, 0x0530050500000000};
inline constexpr SPropertyId OperationParametersDefined{0x1E09, 0x0601010403020000};
}
namespace ParameterDefinition {
inline constexpr SPropertyId ParameterType{0x1F01, 0x0601010401060000};
inline constexpr SPropertyId ParameterDisplayUnits{0x1F03, 0x0530050B01000000};
}
namespace PluginDefinition {
inline constexpr SPropertyId PluginCategory{0x2203, 0x0520090100000000};
inline constexpr SPropertyId PluginVersion{0x2204, 0x0303030103000000};
inline constexpr SPropertyId PluginVersionString{0x2205, 0x0303030102010000};
inline constexpr SPropertyId DeviceManufacturerName{0x2206, 0x010A010101010000};
inline constexpr SPropertyId ManufacturerInfo{0x2207, 0x06010104020B0000};
inline constexpr SPropertyId ManufacturerID{0x2208, 0x010A010103000000};
inline constexpr SPropertyId PluginPlatform{0x2209, 0x0520090200000000};
inline constexpr SPropertyId MinPlatformVersion{0x220A, 0x0520090300000000};
inline constexpr SPropertyId MaxPlatformVersion{0x220B, 0x0520090400000000};
inline constexpr SPropertyId Engine{0x220C, 0x0520090500000000};
inline constexpr SPropertyId MinEngineVersion{0x220D, 0x0520090600000000};
inline constexpr SPropertyId MaxEngineVersion{0x220E, 0x0520090700000000};
inline constexpr SPropertyId PluginAPI{0x220F, 0x0520090800000000};
inline constexpr SPropertyId MinPluginAPI{0x2210, 0x0520090900000000};
inline constexpr SPropertyId MaxPluginAPI{0x2211, 0x0520090A00000000};
inline constexpr SPropertyId SoftwareOnly{0x2212, 0x0520090B00000000};
inline constexpr SPropertyId Accelerator{0x2213, 0x0520090C00000000};
inline constexpr SPropertyId PluginLocators{0x2214, 0x0520090D00000000};
inline constexpr SPropertyId Authentication{0x2215, 0x0520090E00000000};
inline constexpr SPropertyId ImplementedClass{0x2216, 0x0520090F00000000};
}
namespace CodecDefinition {
inline constexpr SPropertyId FileDescriptorClass{0x2301, 0x0601010401070000};
inline constexpr SPropertyId CodecDataDefinitions{0x2302, 0x0601010403010000};
}
namespace ContainerDefinition {
inline constexpr SPropertyId EssenceIsIdentified{0x2401, 0x0301020103000000};
}
namespace Dictionary {
inline constexpr SPropertyId OperationDefinitions{0x2603, 0x0601010405030000};
inline constexpr SPropertyId ParameterDefinitions{0x2604, 0x0601010405040000};
inline constexpr SPropertyId DataDefinitions{0x2605, 0x0601010405050000};
inline constexpr SPropertyId PluginDefinitions{0x2606, 0x0601010405060000};
inline constexpr SPropertyId CodecDefinitions{0x2607, 0x0601010405070000};
inline constexpr SPropertyId ContainerDefinitions{0x2608, 0x0601010405080000};
inline constexpr SPropertyId InterpolationDefinitions{0x2609, 0x0601010405090000};
inline constexpr SPropertyId KLVDataDefinitions{0x260A, 0x06010104050A0000};
inline constexpr SPropertyId TaggedValueDefinitions{0x260B, 0x06010104050B0000};
}
namespace EssenceContainerData {
inline constexpr SPropertyId LinkedPackageUID{0x2701, 0x0601010601000000};
inline constexpr SPropertyId EssenceStream{0x2702, 0x0407020000000000};
inline constexpr SPropertyId SampleIndex{0x2B01, 0x0601010201000000};
inline constexpr SPropertyId BodySID{0x3F07, 0x0103040400000000};
inline constexpr SPropertyId IndexSID{0x3F06, 0x0103040500000000};
inline constexpr SPropertyId PrecedingIndexTable{0, 0x0404050400000000};
inline constexpr SPropertyId SingularPartitionUsage{0, 0x0406020700000000};
inline constexpr SPropertyId FollowingIndexTable{0, 0x0404050500000000};
inline constexpr SPropertyId IsSparse{0, 0x0404050600000000};
}
namespace GenericDescriptor {
inline constexpr SPropertyId Locators{0x2F01, 0x0601010406030000};
inline constexpr SPropertyId SubDescriptors{0, 0x0601010406100000};
}
namespace FileDescriptor {
inline constexpr SPropertyId SampleRate{0x3001, 0x0406010100000000};
inline constexpr SPropertyId ContainerDuration{0x3002, 0x0406010200000000};
inline constexpr SPropertyId EssenceContainer{0x3004, 0x0601010401020000};
inline constexpr SPropertyId Codec{0x3005, 0x0601010401030000};
inline constexpr SPropertyId LinkedTrackID{0x3006, 0x0601010305000000};
}
namespace AIFCDescriptor {
inline constexpr SPropertyId AIFCSummary{0x3101, 0x0303030202000000};
}
namespace GenericPictureEssenceDescriptor {
inline constexpr SPropertyId PictureEssenceCoding{0x3201, 0x0401060100000000};
inline constexpr SPropertyId StoredHeight{0x3202, 0x0401050201000000};
inline constexpr SPropertyId StoredWidth{0x3203, 0x0401050202000000};
inline constexpr SPropertyId SampledHeight{0x3204, 0x0401050107000000};
inline constexpr SPropertyId SampledWidth{0x3205, 0x0401050108000000};
inline constexpr SPropertyId SampledXOffset{0x3206, 0x0401050109000000};
inline constexpr SPropertyId SampledYOffset{0x3207, 0x040105010A000000};
inline constexpr SPropertyId DisplayHeight{0x3208, 0x040105010B000000};
inline constexpr SPropertyId DisplayWidth{0x3209, 0x040105010C000000};
inline constexpr SPropertyId DisplayXOffset{0x320A, 0x040105010D000000};
inline constexpr SPropertyId DisplayYOffset{0x320B, 0x040105010E000000};
inline constexpr SPropertyId FrameLayout{0x320C, 0x0401030104000000};
inline constexpr SPropertyId VideoLineMap{0x320D, 0x0401030205000000};
inline constexpr SPropertyId AspectRatio{0x320E, 0x0401010101000000};
inline constexpr SPropertyId AlphaTransparency{0x320F, 0x0520010200000000};
inline constexpr SPropertyId TransferCharacteristic{0x3210, 0x0401020101010200};
inline constexpr SPropertyId ColorPrimaries{0x3219, 0x0401020101060100};
inline constexpr SPropertyId CodingEquations{0x321A, 0x0401020101030100};
inline constexpr SPropertyId ImageAlignmentFactor{0x3211, 0x0418010100000000};
inline constexpr SPropertyId FieldDominance{0x3212, 0x0401030106000000};
inline constexpr SPropertyId ImageStartOffset{0x3213, 0x0418010200000000};
inline constexpr SPropertyId ImageEndOffset{0x3214, 0x0418010300000000};
inline constexpr SPropertyId SignalStandard{0x3215, 0x0405011300000000};
inline constexpr SPropertyId StoredF2Offset{0x3216, 0x0401030208000000};
inline constexpr SPropertyId DisplayF2Offset{0x3217, 0x0401030207000000};
inline constexpr SPropertyId ActiveFormatDescriptor{0x3218, 0x0401030209000000};
inline constexpr SPropertyId ActiveHeight{0, 0x0401050113000000};
inline constexpr SPropertyId ActiveWidth{0, 0x0401050114000000};
inline constexpr SPropertyId ActiveXOffset{0, 0x0401050115000000};
inline constexpr SPropertyId ActiveYOffset{0, 0x0401050116000000};
inline constexpr SPropertyId AlternativeCenterCuts{0, 0x040103020B000000};
inline constexpr SPropertyId MasteringDisplayPrimaries{0, 0x0420040101010000};
inline constexpr SPropertyId MasteringDisplayWhitePointChromaticity{0, 0x0420040101020000};
inline constexpr SPropertyId MasteringDisplayMaximumLuminance{0, 0x0420040101030000};
inline constexpr SPropertyId MasteringDisplayMinimumLuminance{0, 0x0420040101040000};
}
namespace CDCIPictureEssenceDescriptor {
inline constexpr SPropertyId ComponentDepth{0x3301, 0x040105030A000000};
inline constexpr SPropertyId HorizontalSubsampling{0x3302, 0x0401050105000000};
inline constexpr SPropertyId ColorSiting{0x3303, 0x0401050106000000};
inline constexpr SPropertyId BlackRefLevel{0x3304, 0x0401050303000000};
inline constexpr SPropertyId WhiteRefLevel{0x3305, 0x0401050304000000};
inline constexpr SPropertyId ColorRange{0x3306, 0x0401050305000000};
inline constexpr SPropertyId PaddingBits{0x3307, 0x0418010400000000};
inline constexpr SPropertyId VerticalSubsampling{0x3308, 0x0401050110000000};
inline constexpr SPropertyId AlphaSampleDepth{0x3309, 0x0401050307000000};
inline constexpr SPropertyId ReversedByteOrder{0x330B, 0x030102010A000000};
}
namespace RGBAPictureEssenceDescriptor {
inline constexpr SPropertyId PixelLayout{0x3401, 0x0401050306000000};
inline constexpr SPropertyId Palette{0x3403, 0x0401050308000000};
inline constexpr SPropertyId PaletteLayout{0x3404, 0x0401050309000000};
inline constexpr SPropertyId ScanningDirection{0x3405, 0x0401040401000000};
inline constexpr SPropertyId ComponentMaxRef{0x3406, 0x040105030B000000};
inline constexpr SPropertyId ComponentMinRef{0x3407, 0x040105030C000000};
inline constexpr SPropertyId AlphaMaxRef{0x3408, 0x040105030D000000};
inline constexpr SPropertyId AlphaMinRef{0x3409, 0x040105030E000000};
}
namespace TIFFDescriptor {
inline constexpr SPropertyId IsUniform{0x3701, 0x0502010301010000};
inline constexpr SPropertyId IsContiguous{0x3702, 0x0608020100000000};
inline constexpr SPropertyId LeadingLines{0x3703, 0x0401030203000000};
inline constexpr SPropertyId TrailingLines{0x3704, 0x0401030204000000};
inline constexpr SPropertyId JPEGTableID{0x3705, 0x0502010301020000};
inline constexpr SPropertyId TIFFSummary{0x3706, 0x0303030203000000};
}
namespace WAVEDescriptor {
inline constexpr SPropertyId WAVESummary{0x3801, 0x0303030201000000};
}
namespace FilmDescriptor {
inline constexpr SPropertyId FilmFormat{0x3901, 0x0410010301080000};
inline constexpr SPropertyId FrameRate{0x3902, 0x0401080203000000};
inline constexpr SPropertyId PerforationsPerFrame{0x3903, 0x0410010301030000};
inline constexpr SPropertyId FilmAspectRatio{0x3904, 0x0410010302030000};
inline constexpr SPropertyId FilmStockManufacturer{0x3905, 0x0410010301060100};
inline constexpr SPropertyId FilmStockKind{0x3906, 0x0410010301050100};
inline constexpr SPropertyId FilmFormatName{0x3907, 0x0410010301040100};
inline constexpr SPropertyId FilmBatchNumber{0x3908, 0x0410010301070100};
}
namespace TapeDescriptor {
inline constexpr SPropertyId TapeFormFactor{0x3A01, 0x0410010101010000};
inline constexpr SPropertyId VideoSignal{0x3A02, 0x0401040101000000};
inline constexpr SPropertyId TapeFormat{0x3A03, 0x0D01010101010100};
inline constexpr SPropertyId TapeCapacity{0x3A04, 0x0410010103000000};
inline constexpr SPropertyId TapeManufacturer{0x3A05, 0x0410010104010000};
inline constexpr SPropertyId TapeFormulation{0x3A06, 0x0410010102010000};
inline constexpr SPropertyId TapeBatchNumber{0x3A07, 0x0410010106010000};
inline constexpr SPropertyId TapeStock{0x3A08, 0x0410010105010000};
}
namespace Preface {
inline constexpr SPropertyId ByteOrder{0x3B01, 0x0301020102000000};
inline constexpr SPropertyId LastModifiedDate{0x3B02, 0x0702011002040000};
inline constexpr SPropertyId ContentStorage{0x3B03, 0x0601010402010000};
inline constexpr SPropertyId Dictionary{0x3B04, 0x0601010402020000};
inline constexpr SPropertyId Version{0x3B05, 0x0301020105000000};
inline constexpr SPropertyId Identifications{0x3B06, 0x0601010406040000};
inline constexpr SPropertyId ObjectModelVersion{0x3B07, 0x0301020104000000};
inline constexpr SPropertyId PrimaryPackage{0x3B08, 0x0601010401080000};
inline constexpr SPropertyId OperationalPattern{0x3B09, 0x0102020300000000};
inline constexpr SPropertyId EssenceContainers{0x3B0A, 0x0102021002010000};
inline constexpr SPropertyId DMSchemes{0x3B0B, 0x0102021002020000};
inline constexpr SPropertyId IsRIPPresent{0, 0x0404050300000000};
inline constexpr SPropertyId APP_VTRErrorCount{0, 0x0D04010140010100};
inline constexpr SPropertyId APP_PSEFailureCount{0, 0x0D04010140010200};
inline constexpr SPropertyId APP_DigiBetaDropoutCount{0, 0x0D04010140010300};
inline constexpr SPropertyId APP_TimecodeBreakCount{0, 0x0D04010140010400};
inline constexpr SPropertyId Specification_Identifiers{0, 0x0D01080101010000};
inline constexpr SPropertyId ConformsToSpecifications{0, 0x0102021002040000};
inline constexpr SPropertyId ApplicationSchemes{0, 0x0102021002030000};
}
namespace Identification {
inline constexpr SPropertyId CompanyName{0x3C01, 0x0520070102010000};
inline constexpr SPropertyId ProductName{0x3C02, 0x0520070103010000};
inline constexpr SPropertyId ProductVersion{0x3C03, 0x0520070104000000};
inline constexpr SPropertyId VersionString{0x3C04, 0x0520070105010000};
inline constexpr SPropertyId ProductUID{0x3C05, 0x0520070107000000};
inline constexpr SPropertyId ModificationDate{0x3C06, 0x0702011002030000};
inline constexpr SPropertyId ToolkitVersion{0x3C07, 0x052007010A000000};
inline constexpr SPropertyId Platform{0x3C08, 0x0520070106010000};
inline constexpr SPropertyId ThisGenerationUID{0x3C09, 0x0520070101000000};
}
namespace NetworkLocator {
inline constexpr SPropertyId URLString{0x4001, 0x0102010101000000};
}
namespace TextLocator {
inline constexpr SPropertyId LocatorName{0x4101, 0x0104010201000000};
}
namespace GenericPackage {
inline constexpr SPropertyId PackageUID{0x4401, 0x0101151000000000};
inline constexpr SPropertyId PackageName{0x4402, 0x0103030201000000};
inline constexpr SPropertyId Tracks{0x4403, 0x0601010406050000};
inline constexpr SPropertyId PackageModifiedDate{0x4404, 0x0702011002050000};
inline constexpr SPropertyId PackageCreationDate{0x4405, 0x0702011001030000};
inline constexpr SPropertyId PackageUserComments{0x4406, 0x030201020C000000};
inline constexpr SPropertyId PackageKLVData{0x4407, 0x0301021003000000};
inline constexpr SPropertyId PackageAttributes{0x4409, 0x0301021007000000};
inline constexpr SPropertyId PackageUsage{0x4408, 0x0501010800000000};
}
namespace CompositionPackage {
inline constexpr SPropertyId DefaultFadeLength{0x4501, 0x0702020101050100};
inline constexpr SPropertyId DefaultFadeType{0x4502, 0x0530020100000000};
inline constexpr SPropertyId DefaultFadeEditUnit{0x4503, 0x0530040300000000};
inline constexpr SPropertyId CompositionRendering{0x4504, 0x06010104010A0000};
}
namespace MaterialPackage {
inline constexpr SPropertyId PackageMarker{0, 0x06010104020F0000};
}
namespace SourcePackage {
inline constexpr SPropertyId Descriptor{0x4701, 0x0601010402030000};
}
namespace GenericTrack {
inline constexpr SPropertyId TrackID{0x4801, 0x0107010100000000};
inline constexpr SPropertyId TrackName{0x4802, 0x0107010201000000};
inline constexpr SPropertyId Sequence{0x4803, 0x0601010402040000};
inline constexpr SPropertyId TrackNumber{0x4804, 0x0104010300000000};
}
namespace EventTrack {
inline constexpr SPropertyId EventEditRate{0x4901, 0x0530040200000000};
inline constexpr SPropertyId EventOrigin{0x4902, 0x07020103010B0000};
}
namespace TimelineTrack {
inline constexpr SPropertyId EditRate{0x4B01, 0x0530040500000000};
inline constexpr SPropertyId Origin{0x4B02, 0x0702010301030000};
inline constexpr SPropertyId MarkIn{0x4B03, 0x07020103010C0000};
inline constexpr SPropertyId MarkOut{0x4B04, 0x0702010302030000};
inline constexpr SPropertyId UserPosition{0x4B05, 0x07020103010D0000};
inline constexpr SPropertyId PackageMarkInPosition{0x4B06, 0x07020103010E0000};
inline constexpr SPropertyId PackageMarkOutPosition{0x4B07, 0x0702010302040000};
}
namespace Parameter {
inline constexpr SPropertyId ParameterDefinitionReference{0x4C01, 0x0601010401040000};
}
namespace ConstantValue {
inline constexpr SPropertyId Value{0x4D01, 0x0530050700000000};
}
namespace VaryingValue {
inline constexpr SPropertyId Interpolation{0x4E01, 0x0601010401050000};
inline constexpr SPropertyId PointList{0x4E02, 0x0601010406060000};
}
namespace TaggedValue {
inline constexpr SPropertyId Tag{0x5001, 0x0302010209010000};
inline constexpr SPropertyId IndirectValue{0x5003, 0x030201020A010000};
}
namespace KLVData {
inline constexpr SPropertyId KLVDataValue{0x5101, 0x0301021002000000};
}
namespace DMSegment {
inline constexpr SPropertyId TrackIDs{0x6102, 0x0107010500000000};
inline constexpr SPropertyId DMFramework{0x6101, 0x06010104020C0000};
inline constexpr SPropertyId DescriptiveMetadataPlugInID{0, 0x052007010E000000};
inline constexpr SPropertyId DescriptiveMetadataScheme{0, 0x0406080400000000};
inline constexpr SPropertyId DescriptiveMetadataApplicationEnvironmentID{0, 0x0520070110000000};
}
namespace GenericSoundEssenceDescriptor {
inline constexpr SPropertyId AudioSamplingRate{0x3D03, 0x0402030101010000};
inline constexpr SPropertyId Locked{0x3D02, 0x0402030104000000};
inline constexpr SPropertyId AudioRefLevel{0x3D04, 0x0402010103000000};
inline constexpr SPropertyId ElectroSpatialFormulation{0x3D05, 0x0402010101000000};
inline constexpr SPropertyId ChannelCount{0x3D07, 0x0402010104000000};
inline constexpr SPropertyId QuantizationBits{0x3D01, 0x0402030304000000};
inline constexpr SPropertyId DialNorm{0x3D0C, 0x0402070100000000};
inline constexpr SPropertyId SoundEssenceCoding{0x3D06, 0x0402040200000000};
inline constexpr SPropertyId ReferenceAudioAlignmentLevel{0, 0x0402010107000000};
inline constexpr SPropertyId ReferenceImageEditRate{0, 0x0402010106000000};
}
namespace GenericDataEssenceDescriptor {
inline constexpr SPropertyId DataEssenceCoding{0x3E01, 0x0403030200000000};
}
namespace MultipleDescriptor {
inline constexpr SPropertyId SubDescriptorUIDs{0x3F01, 0x06010104060B0000};
}
namespace DMSourceClip {
inline constexpr SPropertyId DMSourceClipTrackIDs{0x6103, 0x0107010600000000};
}
namespace DateTimeDescriptor {
inline constexpr SPropertyId DateTimeRate{0x3501, 0x0404010201000000};
inline constexpr SPropertyId DateTimeDropFrame{0x3502, 0x0404010202000000};
inline constexpr SPropertyId DateTimeEmbedded{0x3503, 0x0404010203000000};
inline constexpr SPropertyId DateTimeKind{0x3504, 0x0404010204000000};
}
namespace AES3AudioEssenceDescriptor {
inline constexpr SPropertyId Emphasis{0x3D0D, 0x0402050106000000};
inline constexpr SPropertyId BlockStartOffset{0x3D0F, 0x0402030203000000};
inline constexpr SPropertyId AuxBitsMode{0x3D08, 0x0402050101000000};
inline constexpr SPropertyId ChannelStatusMode{0x3D10, 0x0402050102000000};
inline constexpr SPropertyId FixedChannelStatusData{0x3D11, 0x0402050103000000};
inline constexpr SPropertyId UserDataMode{0x3D12, 0x0402050104000000};
inline constexpr SPropertyId FixedUserData{0x3D13, 0x0402050105000000};
inline constexpr SPropertyId LinkedTimecodeTrackID{0, 0x0402050107000000};
inline constexpr SPropertyId SMPTE337MDataStreamNumber{0, 0x0402050108000000};
}
namespace WaveAudioEssenceDescriptor {
inline constexpr SPropertyId BlockAlign{0x3D0A, 0x0402030201000000};
inline constexpr SPropertyId SequenceOffset{0x3D0B, 0x0402030202000000};
inline constexpr SPropertyId AvgBps{0x3D09, 0x0402030305000000};
inline constexpr SPropertyId ChannelAssignment{0x3D32, 0x0402010105000000};
inline constexpr SPropertyId PeakEnvelopeVersion{0x3D29, 0x0402030106000000};
inline constexpr SPropertyId PeakEnvelopeFormat{0x3D2A, 0x0402030107000000};
inline constexpr SPropertyId PointsPerPeakValue{0x3D2B, 0x0402030108000000};
inline constexpr SPropertyId PeakEnvelopeBlockSize{0x3D2C, 0x0402030109000000};
inline constexpr SPropertyId PeakChannels{0x3D2D, 0x040203010A000000};
inline constexpr SPropertyId PeakFrames{0x3D2E, 0x040203010B000000};
inline constexpr SPropertyId PeakOfPeaksPosition{0x3D2F, 0x040203010C000000};
inline constexpr SPropertyId PeakEnvelopeTimestamp{0x3D30, 0x040203010D000000};
inline constexpr SPropertyId PeakEnvelopeData{0x3D31, 0x040203010E000000};
}
namespace TaggedValueDefinition {
inline constexpr SPropertyId TaggedValueParentProperties{0x4C11, 0x0601010403050000};
}
namespace KLVDataDefinition {
inline constexpr SPropertyId KLVDataParentProperties{0x4D11, 0x0601010403040000};
inline constexpr SPropertyId KLVDataType{0x4D12, 0x0601010401090000};
}
namespace AuxiliaryDescriptor {
inline constexpr SPropertyId MIMEType{0x4E11, 0x0409020100000000};
inline constexpr SPropertyId CharSet{0x4E12, 0x0409030000000000};
}
namespace RIFFChunk {
inline constexpr SPropertyId ChunkID{0x4F01, 0x0406080200000000};
inline constexpr SPropertyId ChunkLength{0x4F02, 0x0406090300000000};
inline constexpr SPropertyId ChunkData{0x4F03, 0x0407040000000000};
}
namespace BWFImportDescriptor {
inline constexpr SPropertyId QltyFileSecurityReport{0x3D15, 0x0402030205000000};
inline constexpr SPropertyId QltyFileSecurityWave{0x3D16, 0x0402030206000000};
inline constexpr SPropertyId BextCodingHistory{0x3D21, 0x0402050201010000};
inline constexpr SPropertyId QltyBasicData{0x3D22, 0x0402050202010000};
inline constexpr SPropertyId QltyStartOfModulation{0x3D23, 0x0402050203010000};
inline constexpr SPropertyId QltyQualityEvent{0x3D24, 0x0402050204010000};
inline constexpr SPropertyId QltyEndOfModulation{0x3D25, 0x0402050205010000};
inline constexpr SPropertyId QltyQualityParameter{0x3D26, 0x0402050206010000};
inline constexpr SPropertyId QltyOperatorComment{0x3D27, 0x0402050207010000};
inline constexpr SPropertyId QltyCueSheet{0x3D28, 0x0402050208010000};
inline constexpr SPropertyId UnknownBWFChunks{0x3D33, 0x06010104060F0000};
}
namespace MPEGVideoDescriptor {
inline constexpr SPropertyId SingleSequence{0, 0x0401060201020000};
inline constexpr SPropertyId ConstantBPictureCount{0, 0x0401060201030000};
inline constexpr SPropertyId CodedContentScanning{0, 0x0401060201040000};
inline constexpr SPropertyId LowDelay{0, 0x0401060201050000};
inline constexpr SPropertyId ClosedGOP{0, 0x0401060201060000};
inline constexpr SPropertyId IdenticalGOP{0, 0x0401060201070000};
inline constexpr SPropertyId MaxGOP{0, 0x0401060201080000};
inline constexpr SPropertyId MaxBPictureCount{0, 0x0401060201090000};
inline constexpr SPropertyId BitRate{0, 0x04010602010B0000};
inline constexpr SPropertyId ProfileAndLevel{0, 0x04010602010A0000};
}
namespace ParsedTextDescriptor {
inline constexpr SPropertyId MIMEEncoding{0x5212, 0x0409040100000000};
}
namespace XMLDescriptor {
inline constexpr SPropertyId DefaultNamespaceURI{0x5401, 0x0102010401000000};
inline constexpr SPropertyId NamespaceURIs{0x5402, 0x0102010601000000};
inline constexpr SPropertyId NamespacePrefixes{0x5403, 0x0103060601000000};
}
namespace HTMLParsedTextDescriptor {
inline constexpr SPropertyId HTMLDOCTYPE{0x5501, 0x0103060401000000};
}
namespace RP217Descriptor {
inline constexpr SPropertyId RP217DataStreamPID{0x5601, 0x0103040600000000};
inline constexpr SPropertyId RP217VideoStreamPID{0x5602, 0x0103040700000000};
}
namespace DynamicMarker {
inline constexpr SPropertyId ToleranceMode{0x5701, 0x0702050100000000};
inline constexpr SPropertyId ToleranceInterpolationMethod{0x5702, 0x0702050300000000};
inline constexpr SPropertyId ToleranceWindow{0x5703, 0x0702050200000000};
}
namespace DynamicClip {
inline constexpr SPropertyId DynamicSourcePackageID{0x5801, 0x0601010309000000};
inline constexpr SPropertyId DynamicSourceTrackIDs{0x5802, 0x060101030A000000};
inline constexpr SPropertyId SourceIndex{0x5803, 0x060101030B000000};
inline constexpr SPropertyId SourceSpecies{0x5804, 0x060101030C000000};
}
namespace JPEG2000PictureSubDescriptor {
inline constexpr SPropertyId Rsiz{0, 0x0401060301000000};
inline constexpr SPropertyId Xsiz{0, 0x0401060302000000};
inline constexpr SPropertyId Ysiz{0, 0x0401060303000000};
inline constexpr SPropertyId XOsiz{0, 0x0401060304000000};
inline constexpr SPropertyId YOsiz{0, 0x0401060305000000};
inline constexpr SPropertyId XTsiz{0, 0x0401060306000000};
inline constexpr SPropertyId YTsiz{0, 0x0401060307000000};
inline constexpr SPropertyId XTOsiz{0, 0x0401060308000000};
inline constexpr SPropertyId YTOsiz{0, 0x0401060309000000};
inline constexpr SPropertyId Csiz{0, 0x040106030A000000};
inline constexpr SPropertyId PictureComponentSizing{0, 0x040106030B000000};
inline constexpr SPropertyId CodingStyleDefault{0, 0x040106030C000000};
inline constexpr SPropertyId QuantizationDefault{0, 0x040106030D000000};
inline constexpr SPropertyId J2CLayout{0, 0x040106030E000000};
inline constexpr SPropertyId J2KExtendedCapabilities{0, 0x040106030F000000};
inline constexpr SPropertyId J2KProfile{0, 0x0401060310000000};
inline constexpr SPropertyId J2KCorrespondingProfile{0, 0x0401060311000000};
}
namespace MPEGAudioDescriptor {
inline constexpr SPropertyId MPEGAudioBitRate{0, 0x0402040301020000};
inline constexpr SPropertyId MPEGAudioChannelAssignment{0, 0x0402040301050000};
}
namespace VC1VideoDescriptor {
inline constexpr SPropertyId VC1InitializationMetadata{0, 0x0401060401000000};
inline constexpr SPropertyId VC1SingleSequence{0, 0x0401060402000000};
inline constexpr SPropertyId VC1CodedContentType{0, 0x0401060403000000};
inline constexpr SPropertyId VC1IdenticalGOP{0, 0x0401060404000000};
inline constexpr SPropertyId VC1MaxGOP{0, 0x0401060405000000};
inline constexpr SPropertyId VC1BPictureCount{0, 0x0401060406000000};
inline constexpr SPropertyId VC1AverageBitRate{0, 0x0401060407000000};
inline constexpr SPropertyId VC1MaximumBitRate{0, 0x0401060408000000};
inline constexpr SPropertyId VC1Profile{0, 0x0401060409000000};
inline constexpr SPropertyId VC1Level{0, 0x040106040A000000};
}
namespace PackageMarker {
inline constexpr SPropertyId TimebaseReferenceTrackID{0, 0x060101030E000000};
inline constexpr SPropertyId PackageMarkInPosition{0, 0x07020103010E0000};
inline constexpr SPropertyId PackageMarkOutPosition{0, 0x0702010302040000};
}
namespace ApplicationPlugInObject {
inline constexpr SPropertyId ApplicationPluginInstanceID{0, 0x052007010D000000};
inline constexpr SPropertyId ApplicationScheme{0, 0x0406080300000000};
inline constexpr SPropertyId ApplicationEnvironmentID{0, 0x052007010F000000};
}
namespace ApplicationReferencedObject {
inline constexpr SPropertyId LinkedApplicationPluginInstanceID{0, 0x052007010B000000};
}
namespace TimedTextDescriptor {
inline constexpr SPropertyId ResourceID{0, 0x0101151200000000};
inline constexpr SPropertyId UCSEncoding{0, 0x0409050000000000};
inline constexpr SPropertyId NamespaceURI{0, 0x0102010501000000};
inline constexpr SPropertyId RFC5646LanguageTagList{0, 0x0301010202160000};
inline constexpr SPropertyId DisplayType{0, 0x0601010204000000};
inline constexpr SPropertyId IntrinsicPictureResolution{0, 0x0601010205000000};
inline constexpr SPropertyId ZpositionInUse{0, 0x0601010206000000};
}
namespace TimedTextResourceSubDescriptor {
inline constexpr SPropertyId AncillaryResourceID{0, 0x0101151300000000};
inline constexpr SPropertyId MIMEType{0, 0x0409020100000000};
inline constexpr SPropertyId BodySID{0, 0x0103040400000000};
}
namespace ApplicationObject {
inline constexpr SPropertyId BaseClass{0, 0x06010104010B0000};
}
namespace MCALabelSubDescriptor {
inline constexpr SPropertyId MCALabelDictionaryID{0, 0x0103070101000000};
inline constexpr SPropertyId MCALinkID{0, 0x0103070105000000};
inline constexpr SPropertyId MCATagSymbol{0, 0x0103070102000000};
inline constexpr SPropertyId MCATagName{0, 0x0103070103000000};
inline constexpr SPropertyId MCAChannelID{0, 0x0103040A00000000};
inline constexpr SPropertyId RFC5646SpokenLanguage{0, 0x0301010203150000};
inline constexpr SPropertyId MCATitle{0, 0x0105100000000000};
inline constexpr SPropertyId MCATitleVersion{0, 0x0105110000000000};
inline constexpr SPropertyId MCATitleSubVersion{0, 0x0105120000000000};
inline constexpr SPropertyId MCAEpisode{0, 0x0105130000000000};
inline constexpr SPropertyId MCAPartitionKind{0, 0x0104010500000000};
inline constexpr SPropertyId MCAPartitionNumber{0, 0x0104010600000000};
inline constexpr SPropertyId MCAAudioContentKind{0, 0x0302010220000000};
inline constexpr SPropertyId MCAAudioElementKind{0, 0x0302010221000000};
inline constexpr SPropertyId MCAContent{0, 0x0302010222000000};
inline constexpr SPropertyId MCAUseClass{0, 0x0302010223000000};
inline constexpr SPropertyId MCAContentSubtype{0, 0x0302010224000000};
inline constexpr SPropertyId MCAContentDifferentiator{0, 0x0302010225000000};
inline constexpr SPropertyId MCASpokenLanguageAttribute{0, 0x0302010226000000};
inline constexpr SPropertyId RFC5646AdditionalSpokenLanguages{0, 0x0302010227000000};
inline constexpr SPropertyId MCAAdditionalLanguageAttributes{0, 0x0302010228000000};
}
namespace AudioChannelLabelSubDescriptor {
inline constexpr SPropertyId SoundfieldGroupLinkID{0, 0x0103070106000000};
}
namespace SoundfieldGroupLabelSubDescriptor {
inline constexpr SPropertyId GroupOfSoundfieldGroupsLinkID{0, 0x0103070104000000};
}
namespace AVCSubDescriptor {
inline constexpr SPropertyId AVCConstantBPictureFlag{0, 0x0401060601030000};
inline constexpr SPropertyId AVCCodedContentKind{0, 0x0401060601040000};
inline constexpr SPropertyId AVCClosedGOPIndicator{0, 0x0401060601060000};
inline constexpr SPropertyId AVCIdenticalGOPIndicator{0, 0x0401060601070000};
inline constexpr SPropertyId AVCMaximumGOPSize{0, 0x0401060601080000};
inline constexpr SPropertyId AVCMaximumBPictureCount{0, 0x0401060601090000};
inline constexpr SPropertyId AVCProfile{0, 0x04010606010A0000};
inline constexpr SPropertyId AVCMaximumBitRate{0, 0x04010606010B0000};
inline constexpr SPropertyId AVCProfileConstraint{0, 0x04010606010C0000};
inline constexpr SPropertyId AVCLevel{0, 0x04010606010D0000};
inline constexpr SPropertyId AVCDecodingDelay{0, 0x04010606010E0000};
inline constexpr SPropertyId AVCMaximumRefFrames{0, 0x04010606010F0000};
inline constexpr SPropertyId AVCSequenceParameterSetFlag{0, 0x0401060601100000};
inline constexpr SPropertyId AVCPictureParameterSetFlag{0, 0x0401060601110000};
inline constexpr SPropertyId AVCAverageBitRate{0, 0x0401060601140000};
}
namespace EventTextDescriptor {
inline constexpr SPropertyId EventTextKind{0, 0x0302010801000000};
inline constexpr SPropertyId EventTextLanguageCode{0, 0x0301010202150000};
}
namespace STLDescriptor {
inline constexpr SPropertyId STLReferencePointTimecode{0, 0x0702010202020000};
}
namespace STLSubDescriptor {
inline constexpr SPropertyId STLLineNumber{0, 0x0302010802000000};
inline constexpr SPropertyId EventTextLanguageCode{0, 0x0301010202150000};
}
namespace OperationsStereoscopicSubDescriptor {
inline constexpr SPropertyId StereoscopicEyeID{0, 0x0103070301000000};
inline constexpr SPropertyId StereoscopicDataEssenceCoding{0, 0x0103070302000000};
}
namespace VC2SubDescriptor {
inline constexpr SPropertyId VC2MajorVersion{0, 0x0401060701000000};
inline constexpr SPropertyId VC2MinorVersion{0, 0x0401060702000000};
inline constexpr SPropertyId VC2Profile{0, 0x0401060703000000};
inline constexpr SPropertyId VC2Level{0, 0x0401060704000000};
inline constexpr SPropertyId VC2WaveletFilters{0, 0x0401060705000000};
inline constexpr SPropertyId VC2SequenceHeadersIdentical{0, 0x0401060706000000};
inline constexpr SPropertyId VC2EditUnitsAreCompleteSequences{0, 0x0401060707000000};
}
namespace DMCVTTargetSubDescriptor {
inline constexpr SPropertyId DMCVTApplicationIdentifier{0, 0x0531020100000000};
inline constexpr SPropertyId DMCVTApplicationVersionNumber{0, 0x0531020200000000};
inline constexpr SPropertyId DMCVTBackwardsVersion{0, 0x0531020300000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplayPrimaries{0, 0x0531020900000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplayWhitePointChromaticity{0, 0x0531020A00000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplayMaximumLuminance{0, 0x0531020B00000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplayMinimumLuminance{0, 0x0531020C00000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplaySignalFormat{0, 0x0531022700000000};
inline constexpr SPropertyId DMCVTTargetedSystemDisplayActualPeakLuminance{0, 0x0531023600000000};
inline constexpr SPropertyId DMCVTRowsInTargetedSystemDisplayActualPeakLuminance{0, 0x0531023700000000};
}
namespace VC5BayerPictureEssenceSubDescriptor {
inline constexpr SPropertyId VC5BayerComponentPattern{0, 0x0401060802000000};
inline constexpr SPropertyId VC5BayerComponentBlackLevel{0, 0x0401060803000000};
inline constexpr SPropertyId VC5BayerComponentWhiteLevel{0, 0x0401060804000000};
}
namespace VC5CDCIPictureEssenceSubDescriptor {
inline constexpr SPropertyId VC5AlphaSampling{0, 0x0401060801000000};
}
namespace AACSubDescriptor {
inline constexpr SPropertyId AACSamplingFrequency{0, 0x0402040301040000};
inline constexpr SPropertyId AACChannelConfiguration{0, 0x0402040301030000};
}
namespace ACESPictureSubDescriptor {
inline constexpr SPropertyId ACESAuthoringInformation{0, 0x0401060A01000000};
inline constexpr SPropertyId ACESMasteringDisplayPrimaries{0, 0x0401060A02000000};
inline constexpr SPropertyId ACESMasteringDisplayWhitePointChromaticity{0, 0x0401060A03000000};
inline constexpr SPropertyId ACESMasteringDisplayMaximumLuminance{0, 0x0401060A04000000};
inline constexpr SPropertyId ACESMasteringDisplayMinimumLuminance{0, 0x0401060A05000000};
}
namespace TargetFrameSubDescriptor {
inline constexpr SPropertyId TargetFrameAncillaryResourceID{0, 0x0401060901000000};
inline constexpr SPropertyId MediaType{0, 0x0401060902000000};
inline constexpr SPropertyId TargetFrameIndex{0, 0x0401060903000000};
inline constexpr SPropertyId TargetFrameTransferCharacteristic{0, 0x0401060904000000};
inline constexpr SPropertyId TargetFrameColorPrimaries{0, 0x0401060905000000};
inline constexpr SPropertyId TargetFrameComponentMaxRef{0, 0x0401060906000000};
inline constexpr SPropertyId TargetFrameComponentMinRef{0, 0x0401060907000000};
inline constexpr SPropertyId TargetFrameEssenceStreamID{0, 0x0401060908000000};
inline constexpr SPropertyId ACESPictureSubDescriptorInstanceID{0, 0x0401060909000000};
inline constexpr SPropertyId TargetFrameViewingEnvironment{0, 0x040106090A000000};
}
namespace AbstractObject {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
}
namespace HEVCSubDescriptor {
inline constexpr SPropertyId HEVCConstantBPictureFlag{0, 0x0401060602030000};
inline constexpr SPropertyId HEVCCodedContentKind{0, 0x0401060602040000};
inline constexpr SPropertyId HEVCClosedGOPIndicator{0, 0x0401060602060000};
inline constexpr SPropertyId HEVCIdenticalGOPIndicator{0, 0x0401060602070000};
inline constexpr SPropertyId HEVCMaximumGOPSize{0, 0x0401060602080000};
inline constexpr SPropertyId HEVCMaximumBPictureCount{0, 0x0401060602090000};
inline constexpr SPropertyId HEVCProfile{0, 0x04010606020A0000};
inline constexpr SPropertyId HEVCMaximumBitRate{0, 0x04010606020B0000};
inline constexpr SPropertyId HEVCProfileConstraint{0, 0x04010606020C0000};
inline constexpr SPropertyId HEVCLevel{0, 0x04010606020D0000};
inline constexpr SPropertyId HEVCDecodingDelay{0, 0x04010606020E0000};
inline constexpr SPropertyId HEVCMaximumRefFrames{0, 0x04010606020F0000};
inline constexpr SPropertyId HEVCSequenceParameterSetFlag{0, 0x0401060602100000};
inline constexpr SPropertyId HEVCPictureParameterSetFlag{0, 0x0401060602110000};
inline constexpr SPropertyId HEVCTier{0, 0x0401060602120000};
inline constexpr SPropertyId HEVCVideoParameterSetFlag{0, 0x0401060602130000};
inline constexpr SPropertyId HEVCAverageBitRate{0, 0x0401060602140000};
inline constexpr SPropertyId HEVCCTUSize{0, 0x0401060602150000};
inline constexpr SPropertyId HEVCTileUniformSpacingFlag{0, 0x0401060602160000};
inline constexpr SPropertyId HEVCTileColumnsMinus1{0, 0x0401060602170000};
inline constexpr SPropertyId HEVCTileRowsMinus1{0, 0x0401060602180000};
inline constexpr SPropertyId HEVCTileWidthMinus1{0, 0x0401060602190000};
inline constexpr SPropertyId HEVCTileHeightMinus1{0, 0x04010606021A0000};
inline constexpr SPropertyId HEVCNumberOfPPSs{0, 0x04010606021B0000};
}
namespace JPEGXSSubDescriptor {
inline constexpr SPropertyId JPEGXSPpih{0, 0x0401060B01000000};
inline constexpr SPropertyId JPEGXSPlev{0, 0x0401060B02000000};
inline constexpr SPropertyId JPEGXSWf{0, 0x0401060B03000000};
inline constexpr SPropertyId JPEGXSHf{0, 0x0401060B04000000};
inline constexpr SPropertyId JPEGXSNc{0, 0x0401060B05000000};
inline constexpr SPropertyId JPEGXSComponentTable{0, 0x0401060B06000000};
inline constexpr SPropertyId JPEGXSCw{0, 0x0401060B07000000};
inline constexpr SPropertyId JPEGXSHsl{0, 0x0401060B08000000};
inline constexpr SPropertyId JPEGXSMaximumBitrate{0, 0x0401060B09000000};
}
namespace FFV1PictureSubDescriptor {
inline constexpr SPropertyId FFV1InitializationMetadata{0, 0x0401060C01000000};
inline constexpr SPropertyId FFV1IdenticalGOP{0, 0x0401060C02000000};
inline constexpr SPropertyId FFV1MaxGOP{0, 0x0401060C03000000};
inline constexpr SPropertyId FFV1MaximumBitRate{0, 0x0401060C04000000};
inline constexpr SPropertyId FFV1Version{0, 0x0401060C05000000};
inline constexpr SPropertyId FFV1MicroVersion{0, 0x0401060C06000000};
}
namespace MGASoundEssenceDescriptor {
inline constexpr SPropertyId MGASoundEssenceBlockAlign{0, 0x0402030401000000};
inline constexpr SPropertyId MGASoundEssenceAverageBytesPerSecond{0, 0x0402030402000000};
inline constexpr SPropertyId MGASoundEssenceSequenceOffset{0, 0x0402030403000000};
}
namespace MGAAudioMetadataSubDescriptor {
inline constexpr SPropertyId MGALinkID{0, 0x0402030501000000};
inline constexpr SPropertyId MGAAudioMetadataIndex{0, 0x0402030502000000};
inline constexpr SPropertyId MGAAudioMetadataIdentifier{0, 0x0402030503000000};
inline constexpr SPropertyId MGAAudioMetadataPayloadULArray{0, 0x0402030504000000};
}
namespace MGASoundfieldGroupLabelSubDescriptor {
inline constexpr SPropertyId MGAMetadataSectionLinkID{0, 0x0402030601000000};
inline constexpr SPropertyId ADMAudioProgrammeID{0, 0x0402030602000000};
inline constexpr SPropertyId ADMAudioContentID{0, 0x0402030603000000};
inline constexpr SPropertyId ADMAudioObjectID{0, 0x0402030604000000};
}
namespace SADMAudioMetadataSubDescriptor {
inline constexpr SPropertyId SADMMetadataSectionLinkID{0, 0x0402030701000000};
inline constexpr SPropertyId SADMProfileLevelULBatch{0, 0x0402030702000000};
}
namespace DataStreamSubDescriptor {
inline constexpr SPropertyId DataStreamSchemeURI{0, 0x0406100300000000};
inline constexpr SPropertyId LinkedDataStreamID{0, 0x0601010207000000};
inline constexpr SPropertyId DataStreamSampleRate{0, 0x0406010300000000};
}
namespace DataStreamDeviceSubDescriptor {
inline constexpr SPropertyId DeviceCreatorName{0, 0x0501020601000000};
inline constexpr SPropertyId DeviceProductName{0, 0x0501020602000000};
inline constexpr SPropertyId DeviceVersion{0, 0x0501020603000000};
inline constexpr SPropertyId DeviceInstanceIdentifier{0, 0x0501020604000000};
}
namespace ClassDefinition {
inline constexpr SPropertyId ParentClass{0x0008, 0x0601010701000000};
inline constexpr SPropertyId Properties{0x0009, 0x0601010702000000};
inline constexpr SPropertyId IsConcrete{0x000A, 0x0601010703000000};
}
namespace PropertyDefinition {
inline constexpr SPropertyId PropertyType{0x000B, 0x0601010704000000};
inline constexpr SPropertyId IsOptional{0x000C, 0x0301020201000000};
inline constexpr SPropertyId LocalIdentification{0x000D, 0x0601010705000000};
inline constexpr SPropertyId IsUniqueIdentifier{0x000E, 0x0601010706000000};
inline constexpr SPropertyId MemberOf{0x002B, 0x0601010722000000};
}
namespace TypeDefinitionInteger {
inline constexpr SPropertyId Size{0x000F, 0x0301020301000000};
inline constexpr SPropertyId IsSigned{0x0010, 0x0301020302000000};
}
namespace TypeDefinitionStrongObjectReference {
inline constexpr SPropertyId ReferencedType{0x0011, 0x0601010709000000};
}
namespace TypeDefinitionWeakObjectReference {
inline constexpr SPropertyId WeakReferencedType{0x0012, 0x060101070A000000};
inline constexpr SPropertyId TargetSet{0x0013, 0x030102030B000000};
}
namespace TypeDefinitionEnumeration {
inline constexpr SPropertyId ElementType{0x0014, 0x060101070B000000};
inline constexpr SPropertyId ElementNames{0x0015, 0x0301020304000000};
inline constexpr SPropertyId ElementValues{0x0016, 0x0301020305000000};
}
namespace TypeDefinitionFixedArray {
inline constexpr SPropertyId FixedArrayElementType{0x0017, 0x060101070C000000};
inline constexpr SPropertyId ElementCount{0x0018, 0x0301020303000000};
}
namespace TypeDefinitionVariableArray {
inline constexpr SPropertyId VariableArrayElementType{0x0019, 0x060101070D000000};
}
namespace TypeDefinitionSet {
inline constexpr SPropertyId SetElementType{0x001A, 0x060101070E000000};
}
namespace TypeDefinitionString {
inline constexpr SPropertyId StringElementType{0x001B, 0x060101070F000000};
}
namespace TypeDefinitionRecord {
inline constexpr SPropertyId MemberTypes{0x001C, 0x0601010711000000};
inline constexpr SPropertyId MemberNames{0x001D, 0x0301020306000000};
}
namespace TypeDefinitionRename {
inline constexpr SPropertyId RenamedType{0x001E, 0x0601010712000000};
}
namespace TypeDefinitionExtendibleEnumeration {
inline constexpr SPropertyId ExtendibleEnumerationElementNames{0x001F, 0x0301020307000000};
inline constexpr SPropertyId ExtendibleEnumerationElementValues{0x0020, 0x0301020308000000};
}
namespace MetaDefinition {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId MetaDefinitionIdentification{0x0005, 0x0601010713000000};
inline constexpr SPropertyId MetaDefinitionName{0x0006, 0x0302040102010000};
inline constexpr SPropertyId MetaDefinitionDescription{0x0007, 0x0601010714010000};
}
namespace MetaDictionary {
inline constexpr SPropertyId ClassDefinitions{0x0003, 0x0601010707000000};
inline constexpr SPropertyId TypeDefinitions{0x0004, 0x0601010708000000};
}
namespace ExtensionScheme {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId ExtensionSchemeID{0x0024, 0x060101071B000000};
inline constexpr SPropertyId SymbolSpaceURI{0x0025, 0x060101071C000000};
inline constexpr SPropertyId PreferredPrefix{0x0026, 0x060101071D000000};
inline constexpr SPropertyId ExtensionDescription{0x0027, 0x060101071E000000};
inline constexpr SPropertyId MetaDefinitions{0x0028, 0x060101071F000000};
}
namespace PropertyAliasDefinition {
inline constexpr SPropertyId OriginalProperty{0x0029, 0x0601010720000000};
}
namespace ExtendibleEnumerationElement {
inline constexpr SPropertyId ElementOf{0x002A, 0x0601010721000000};
}
namespace Root {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId RootMetaDictionary{0x0001, 0x0601010716000000};
inline constexpr SPropertyId RootPreface{0x0002, 0x0601010717000000};
inline constexpr SPropertyId RootObjectDirectory{0x0021, 0x0601010718000000};
inline constexpr SPropertyId RootFormatVersion{0x0022, 0x0601010719000000};
inline constexpr SPropertyId RootExtensions{0x0023, 0x060101071A000000};
}
namespace IndexTableSegment {
inline constexpr SPropertyId InstanceUID{0x3C0A, 0x0101150200000000};
inline constexpr SPropertyId IndexEditRate{0x3F0B, 0x0530040600000000};
inline constexpr SPropertyId IndexStartPosition{0x3F0C, 0x07020103010A0000};
inline constexpr SPropertyId IndexDuration{0x3F0D, 0x0702020101020000};
inline constexpr SPropertyId EditUnitByteCount{0x3F05, 0x0406020100000000};
inline constexpr SPropertyId IndexSID{0x3F06, 0x0103040500000000};
inline constexpr SPropertyId BodySID{0x3F07, 0x0103040400000000};
inline constexpr SPropertyId SliceCount{0x3F08, 0x0404040101000000};
inline constexpr SPropertyId PosTableCount{0x3F0E, 0x0404040107000000};
inline constexpr SPropertyId DeltaEntryArray{0x3F09, 0x0404040106000000};
inline constexpr SPropertyId IndexEntryArray{0x3F0A, 0x0404040205000000};
inline constexpr SPropertyId ExtStartOffset{0x3F0F, 0x0406020400000000};
inline constexpr SPropertyId VBEByteCount{0x3F10, 0x0406020500000000};
inline constexpr SPropertyId SingleIndexLocation{0x3F11, 0x0404050100000000};
inline constexpr SPropertyId SingleEssenceLocation{0x3F12, 0x0406020600000000};
inline constexpr SPropertyId ForwardIndexDirection{0x3F13, 0x0404050200000000};
}
namespace DMObject {
inline constexpr SPropertyId LinkedDescriptiveObjectPluginID{0, 0x0520070111000000};
}
namespace DMFramework {
inline constexpr SPropertyId LinkedDescriptiveFrameworkPluginID{0, 0x052007010C000000};
}
namespace ProductionFramework {
inline constexpr SPropertyId IntegrationIndication{0, 0x0501010101000000};
inline constexpr SPropertyId IdentificationObjects{0, 0x0601010405400600};
inline constexpr SPropertyId GroupRelationshipObjects{0, 0x0601010405400500};
inline constexpr SPropertyId BrandingObjects{0, 0x0601010405400800};
inline constexpr SPropertyId EventObjects{0, 0x0601010405400900};
inline constexpr SPropertyId AwardObjects{0, 0x0601010405400B00};
inline constexpr SPropertyId ProductionSettingPeriodObjects{0, 0x0601010405400E01};
}
namespace ClipFramework {
inline constexpr SPropertyId ClipKind{0, 0x0302050400000000};
inline constexpr SPropertyId ClipNumber{0, 0x01050C0000000000};
inline constexpr SPropertyId ExtendedClipID{0, 0x0101150900000000};
inline constexpr SPropertyId ClipCreationDateTime{0, 0x0702011001040000};
inline constexpr SPropertyId TakeNumber{0, 0x0105070000000000};
inline constexpr SPropertyId SlateInformation{0, 0x0302050300000000};
inline constexpr SPropertyId ScriptingObjects{0, 0x0601010405400F00};
inline constexpr SPropertyId ClipShotObjects{0, 0x0601010405401102};
inline constexpr SPropertyId DeviceParametersObjects{0, 0x0601010405401E00};
inline constexpr SPropertyId ProcessingObject{0, 0x0601010402402000};
}
namespace SceneFramework {
inline constexpr SPropertyId SceneNumber{0, 0x0105060000000000};
inline constexpr SPropertyId SceneSettingPeriodObjects{0, 0x0601010405400E02};
inline constexpr SPropertyId SceneShotObjects{0, 0x0601010405401101};
}
namespace Titles {
inline constexpr SPropertyId MainTitle{0, 0x0105020100000000};
inline constexpr SPropertyId SecondaryTitle{0, 0x0105030100000000};
inline constexpr SPropertyId WorkingTitle{0, 0x01050A0100000000};
inline constexpr SPropertyId OriginalTitle{0, 0x01050B0100000000};
inline constexpr SPropertyId VersionTitle{0, 0x0105080100000000};
}
namespace DMS1Identification {
inline constexpr SPropertyId IdentifierKind{0, 0x0108010000000000};
inline constexpr SPropertyId IdentifierValue{0, 0x0108020000000000};
inline constexpr SPropertyId IdentificationLocator{0, 0x0102020200000000};
inline constexpr SPropertyId IdentificationIssuingAuthority{0, 0x020A010100000000};
}
namespace GroupRelationship {
inline constexpr SPropertyId ProgrammingGroupKind{0, 0x0202030100000000};
inline constexpr SPropertyId ProgrammingGroupTitle{0, 0x0202060100000000};
inline constexpr SPropertyId GroupSynopsis{0, 0x0302010608010000};
inline constexpr SPropertyId PositionInSequence{0, 0x0610010000000000};
inline constexpr SPropertyId TotalNumberInSequence{0, 0x0610040000000000};
inline constexpr SPropertyId EpisodicStartNumber{0, 0x0202040000000000};
inline constexpr SPropertyId EpisodicEndNumber{0, 0x0202050000000000};
}
namespace Branding {
inline constexpr SPropertyId BrandMainTitle{0, 0x01050D0100000000};
inline constexpr SPropertyId BrandOriginalTitle{0, 0x01050E0100000000};
}
namespace DMS1Event {
inline constexpr SPropertyId EventIndication{0, 0x0501010201000000};
inline constexpr SPropertyId EventStartDateTime{0, 0x0702010207020000};
inline constexpr SPropertyId EventEndDateTime{0, 0x0702010209020000};
inline constexpr SPropertyId PublicationObjects{0, 0x0601010405400A00};
inline constexpr SPropertyId EventAnnotationObjects{0, 0x0601010405400D01};
}
namespace Publication {
inline constexpr SPropertyId PublishingOrganizationName{0, 0x0210020101010000};
inline constexpr SPropertyId PublishingServiceName{0, 0x0210020102010000};
inline constexpr SPropertyId PublishingMediumName{0, 0x0210020103010000};
inline constexpr SPropertyId PublishingRegionName{0, 0x0210020104010000};
}
namespace Award {
inline constexpr SPropertyId FestivalName{0, 0x0302020103010000};
inline constexpr SPropertyId FestivalDateTime{0, 0x0702010207100100};
inline constexpr SPropertyId AwardName{0, 0x0302020104010000};
inline constexpr SPropertyId AwardCategory{0, 0x0302020105010000};
inline constexpr SPropertyId NominationCategory{0, 0x0302020106010000};
inline constexpr SPropertyId AwardParticipants{0, 0x0601010403401301};
}
namespace CaptionsDescription {
inline constexpr SPropertyId ExtendedCaptionsLanguageCode{0, 0x0301010202120000};
inline constexpr SPropertyId CaptionKind{0, 0x0403010101000000};
}
namespace DMS1Annotation {
inline constexpr SPropertyId AnnotationKind{0, 0x030201060E010000};
inline constexpr SPropertyId AnnotationSynopsis{0, 0x0302010609010000};
inline constexpr SPropertyId AnnotationDescription{0, 0x030201060A010000};
inline constexpr SPropertyId RelatedMaterialDescription{0, 0x030201060F010000};
inline constexpr SPropertyId ClassificationObjects{0, 0x0601010405401000};
inline constexpr SPropertyId AnnotationCueWordsObject{0, 0x0601010402402301};
inline constexpr SPropertyId RelatedMaterialLocators{0, 0x06010104060D0000};
inline constexpr SPropertyId AnnotationParticipants{0, 0x0601010403401303};
}
namespace SettingPeriod {
inline constexpr SPropertyId SettingDateTime{0, 0x0702010802000000};
inline constexpr SPropertyId TimePeriodKeyword{0, 0x0702010801010000};
inline constexpr SPropertyId SettingPeriodDescription{0, 0x0702010803010000};
}
namespace Scripting {
inline constexpr SPropertyId ScriptingKind{0, 0x030201060B010000};
inline constexpr SPropertyId ScriptingText{0, 0x030201060C010000};
inline constexpr SPropertyId ScriptingLocators{0, 0x06010104060E0000};
}
namespace Classification {
inline constexpr SPropertyId ContentClassification{0, 0x0302010204000000};
inline constexpr SPropertyId ClassificationNameValueObjects{0, 0x0601010405401F01};
}
namespace Shot {
inline constexpr SPropertyId ShotStartPosition{0, 0x0702010301090000};
inline constexpr SPropertyId ShotDuration{0, 0x0702020102040000};
inline constexpr SPropertyId ShotTrackIDs{0, 0x0107010700000000};
inline constexpr SPropertyId ShotDescription{0, 0x030201060D010000};
inline constexpr SPropertyId ShotCommentKind{0, 0x0302050101000000};
inline constexpr SPropertyId ShotComment{0, 0x0302050201000000};
inline constexpr SPropertyId ShotCueWordsObject{0, 0x0601010402402302};
inline constexpr SPropertyId KeyPointObjects{0, 0x0601010405401200};
}
namespace Keypoint {
inline constexpr SPropertyId KeypointKind{0, 0x0302010210010000};
inline constexpr SPropertyId KeypointValue{0, 0x0302010211010000};
inline constexpr SPropertyId KeypointPosition{0, 0x0702010301070000};
}
namespace CueWords {
inline constexpr SPropertyId InCueWords{0, 0x030201020D010000};
inline constexpr SPropertyId OutCueWords{0, 0x030201020E010000};
}
namespace Participant {
inline constexpr SPropertyId ParticipantID{0, 0x0101154001010000};
inline constexpr SPropertyId ContributionStatus{0, 0x0230010201010000};
inline constexpr SPropertyId JobFunction{0, 0x0230050101000000};
inline constexpr SPropertyId JobFunctionCode{0, 0x0230050102000000};
inline constexpr SPropertyId RoleName{0, 0x0230050201000000};
inline constexpr SPropertyId Persons{0, 0x0601010403401400};
inline constexpr SPropertyId ParticipantOrganizations{0, 0x0601010403401501};
}
namespace ContactsList {
inline constexpr SPropertyId PersonObjects{0, 0x0601010405401400};
inline constexpr SPropertyId OrganizationObjects{0, 0x0601010405401500};
inline constexpr SPropertyId LocationObjects{0, 0x0601010405401600};
}
namespace Person {
inline constexpr SPropertyId FamilyName{0, 0x0230060301010100};
inline constexpr SPropertyId FirstGivenName{0, 0x0230060301020100};
inline constexpr SPropertyId OtherGivenNames{0, 0x0230060301080100};
inline constexpr SPropertyId LinkingName{0, 0x02300603010A0100};
inline constexpr SPropertyId Salutation{0, 0x0230060301050100};
inline constexpr SPropertyId NameSuffix{0, 0x02300603010B0100};
inline constexpr SPropertyId HonorsQualifications{0, 0x0230060301060100};
inline constexpr SPropertyId FormerFamilyName{0, 0x02300603010C0100};
inline constexpr SPropertyId PersonDescription{0, 0x0230060301070100};
inline constexpr SPropertyId AlternateName{0, 0x0230060301090100};
inline constexpr SPropertyId Nationality{0, 0x02300603010D0100};
inline constexpr SPropertyId Citizenship{0, 0x02300603010E0100};
inline constexpr SPropertyId PersonOrganizations{0, 0x0601010403401502};
}
namespace Organization {
inline constexpr SPropertyId OrganizationKind{0, 0x0230020101000000};
inline constexpr SPropertyId OrganizationMainName{0, 0x0230060303010100};
inline constexpr SPropertyId OrganizationCode{0, 0x010A020101000000};
inline constexpr SPropertyId ContactDepartment{0, 0x0230060201000000};
}
namespace Location {
inline constexpr SPropertyId LocationKind{0, 0x0701200203010000};
inline constexpr SPropertyId LocationDescription{0, 0x0701200202010000};
}
namespace Address {
inline constexpr SPropertyId RoomSuiteNumber{0, 0x0701200104010101};
inline constexpr SPropertyId RoomSuiteName{0, 0x0701200104011101};
inline constexpr SPropertyId BuildingName{0, 0x0701200104011201};
inline constexpr SPropertyId PlaceName{0, 0x0701200104011401};
inline constexpr SPropertyId StreetNumber{0, 0x0701200104010201};
inline constexpr SPropertyId StreetName{0, 0x0701200104010301};
inline constexpr SPropertyId PostalTown{0, 0x0701200104010401};
inline constexpr SPropertyId City{0, 0x0701200104010501};
inline constexpr SPropertyId StateProvinceCounty{0, 0x0701200104010601};
inline constexpr SPropertyId PostalCode{0, 0x0701200104010701};
inline constexpr SPropertyId Country{0, 0x0701200104010801};
inline constexpr SPropertyId GeographicalCoordinates{0, 0x0701200104011500};
inline constexpr SPropertyId AstronomicalBodyName{0, 0x0701200104011601};
inline constexpr SPropertyId CommunicationsObjects{0, 0x0601010405401800};
inline constexpr SPropertyId AddressNameValueObjects{0, 0x0601010405401F04};
}
namespace Communications {
inline constexpr SPropertyId CentralTelephoneNumber{0, 0x0701200110030400};
inline constexpr SPropertyId TelephoneNumber{0, 0x0701200110030100};
inline constexpr SPropertyId MobileTelephoneNumber{0, 0x0701200110030500};
inline constexpr SPropertyId FaxNumber{0, 0x0701200110030200};
inline constexpr SPropertyId EmailAddress{0, 0x0701200110030301};
inline constexpr SPropertyId ContactWebPage{0, 0x0701200110030601};
}
namespace Contract {
inline constexpr SPropertyId SupplyContractNumber{0, 0x0201020000000000};
inline constexpr SPropertyId RightsObjects{0, 0x0601010405401A00};
inline constexpr SPropertyId ContractParticipants{0, 0x0601010403401302};
}
namespace Rights {
inline constexpr SPropertyId CopyrightOwner{0, 0x0205010201000000};
inline constexpr SPropertyId Rightsholder{0, 0x0205030101000000};
inline constexpr SPropertyId RightsManagementAuthority{0, 0x0205030201000000};
inline constexpr SPropertyId RegionAreaOfIPLicense{0, 0x0701200103050100};
inline constexpr SPropertyId IntellectualPropertyDescription{0, 0x0205020101000000};
inline constexpr SPropertyId RightsCondition{0, 0x0205040301000000};
inline constexpr SPropertyId RightsComment{0, 0x0205040401000000};
inline constexpr SPropertyId IntellectualPropertyRight{0, 0x0205020201000000};
inline constexpr SPropertyId RightsStartDateTime{0, 0x0702012002000000};
inline constexpr SPropertyId RightsStopDateTime{0, 0x0702012003000000};
inline constexpr SPropertyId MaxNumberOfUsages{0, 0x0205040100000000};
}
namespace PictureFormat {
inline constexpr SPropertyId ViewportAspectRatio{0, 0x0401010103000000};
inline constexpr SPropertyId PerceivedDisplayFormat{0, 0x0401010108000000};
inline constexpr SPropertyId ColorDescriptor{0, 0x0302010604010000};
}
namespace DeviceParameters {
inline constexpr SPropertyId DeviceKind{0, 0x0101200801000000};
inline constexpr SPropertyId DeviceDesignation{0, 0x0101200100000000};
inline constexpr SPropertyId DeviceAssetNumber{0, 0x0101200C00000000};
inline constexpr SPropertyId IEEEDeviceIdentifier{0, 0x0101200500000000};
inline constexpr SPropertyId DeviceManufacturerName{0, 0x010A010101010000};
inline constexpr SPropertyId DeviceModel{0, 0x0101200300000000};
inline constexpr SPropertyId DeviceSerialNumber{0, 0x0101200400000000};
inline constexpr SPropertyId DeviceUsageDescription{0, 0x0303031001010000};
inline constexpr SPropertyId DeviceParametersNameValueObjects{0, 0x0601010405401F03};
}
namespace NameValue {
inline constexpr SPropertyId ItemName{0, 0x0301020A01010000};
inline constexpr SPropertyId ItemValue{0, 0x0301020A02010000};
inline constexpr SPropertyId SMPTEUniversalLabelLocator{0, 0x0102020100000000};
}
namespace Processing {
inline constexpr SPropertyId QualityFlag{0, 0x0501010300000000};
inline constexpr SPropertyId DescriptiveComment{0, 0x0302030202010000};
inline constexpr SPropertyId LogoFlag{0, 0x0501010400000000};
inline constexpr SPropertyId GraphicUsage{0, 0x0501010701000000};
inline constexpr SPropertyId SimpleFlagging{0, 0x0501030100000000};
inline constexpr SPropertyId GenerationCopyNumber{0, 0x0501030201000000};
inline constexpr SPropertyId GenerationCloneNumber{0, 0x0501030301000000};
}
namespace Project {
inline constexpr SPropertyId ProjectNumber{0, 0x0103010600000000};
inline constexpr SPropertyId ProjectName{0, 0x0103010801000000};
}
namespace DMS1Framework {
inline constexpr SPropertyId FrameworkExtendedTextLanguageCode{0, 0x0301010202130000};
inline constexpr SPropertyId FrameworkThesaurusName{0, 0x0302010215010000};
inline constexpr SPropertyId FrameworkTitle{0, 0x01050F0100000000};
inline constexpr SPropertyId PrimaryExtendedSpokenLanguageCode{0, 0x0301010203110000};
inline constexpr SPropertyId SecondaryExtendedSpokenLanguageCode{0, 0x0301010203120000};
inline constexpr SPropertyId OriginalExtendedSpokenLanguageCode{0, 0x0301010203130000};
inline constexpr SPropertyId MetadataServerLocators{0, 0x06010104060C0000};
inline constexpr SPropertyId TitlesObjects{0, 0x0601010405400400};
inline constexpr SPropertyId AnnotationObjects{0, 0x0601010405400D00};
inline constexpr SPropertyId ParticipantObjects{0, 0x0601010405401300};
inline constexpr SPropertyId ContactsListObject{0, 0x0601010402402200};
inline constexpr SPropertyId Locations{0, 0x0601010403401600};
}
namespace ProductionClipFramework {
inline constexpr SPropertyId CaptionsDescriptionObjects{0, 0x0601010405400C00};
inline constexpr SPropertyId ContractObjects{0, 0x0601010405401900};
inline constexpr SPropertyId PictureFormatObject{0, 0x0601010402401D00};
inline constexpr SPropertyId ProjectObject{0, 0x0601010402402100};
}
namespace Thesaurus {
inline constexpr SPropertyId ThesaurusName{0, 0x0302010202010000};
}
namespace Contact {
inline constexpr SPropertyId ContactID{0, 0x0101154001020000};
inline constexpr SPropertyId ContactNameValueObjects{0, 0x0601010405401F02};
inline constexpr SPropertyId AddressObjects{0, 0x0601010405401700};
}
namespace CryptographicFramework {
inline constexpr SPropertyId CryptographicContextObject{0, 0x06010104020D0000};
}
namespace CryptographicContext {
inline constexpr SPropertyId CryptographicContextID{0, 0x0101151100000000};
inline constexpr SPropertyId SourceContainerFormat{0, 0x0601010202000000};
inline constexpr SPropertyId CipherAlgorithm{0, 0x0209030101000000};
inline constexpr SPropertyId CryptographicKeyID{0, 0x0209030102000000};
inline constexpr SPropertyId MICAlgorithm{0, 0x0209030201000000};
inline constexpr SPropertyId MICCarriage{0, 0x0D0E010107040300};
}
namespace DMS_AS_03_Framework {
inline constexpr SPropertyId AS_03_Identifier{0, 0x0D01040103010200};
inline constexpr SPropertyId AS_03_IdentifierKind{0, 0x0D01040103010100};
inline constexpr SPropertyId AS_03_ShimName{0, 0x0D01040103010300};
inline constexpr SPropertyId AS_03_SignalStandard{0, 0x0D01040103010400};
inline constexpr SPropertyId AS_03_IntendedAFD{0, 0x0D01040103010500};
inline constexpr SPropertyId AS_03_SlateTitle{0, 0x0D01040103010600};
inline constexpr SPropertyId AS_03_NOLACode{0, 0x0D01040103010700};
inline constexpr SPropertyId AS_03_Rating{0, 0x0D01040103010800};
inline constexpr SPropertyId AS_03_NielsenStreamIdentifier{0, 0x0D01040103010900};
}
namespace TextBasedFramework {
inline constexpr SPropertyId TextBasedObject{0, 0x0601010405410100};
}
namespace GenericStreamTextBasedSet {
inline constexpr SPropertyId GenericStreamID{0, 0x0103040800000000};
}
namespace UTF8TextBasedSet {
inline constexpr SPropertyId UTF8TextData{0, 0x0301022003010000};
}
namespace UTF16TextBasedSet {
inline constexpr SPropertyId UTF16TextData{0, 0x0301022003020000};
}
namespace TextBasedObject {
inline constexpr SPropertyId TextBasedMetadataPayloadSchemeID{0, 0x0406080600000000};
inline constexpr SPropertyId TextMIMEMediaType{0, 0x0409020200000000};
inline constexpr SPropertyId RFC5646TextLanguageCode{0, 0x0301010202140000};
inline constexpr SPropertyId TextDataDescription{0, 0x0302010603020000};
}
namespace EIDRFramework {
inline constexpr SPropertyId EIDRDMSEssenceID{0, 0x0101151400000000};
}
namespace DMS_AS_10_Core_Framework {
inline constexpr SPropertyId AS_10_Shim_Name{0, 0x0D0107010A010101};
inline constexpr SPropertyId AS_10_Type{0, 0x0D0107010A010102};
inline constexpr SPropertyId AS_10_Main_Title{0, 0x0D0107010A010103};
inline constexpr SPropertyId AS_10_Sub_Title{0, 0x0D0107010A010104};
inline constexpr SPropertyId AS_10_Title_Description{0, 0x0D0107010A010105};
inline constexpr SPropertyId AS_10_Organization_Name{0, 0x0D0107010A010106};
inline constexpr SPropertyId AS_10_Person_Name{0, 0x0D0107010A010107};
inline constexpr SPropertyId AS_10_Location_Description{0, 0x0D0107010A010108};
inline constexpr SPropertyId AS_10_Common_Spanning_ID{0, 0x0D0107010A010109};
inline constexpr SPropertyId AS_10_Spanning_Number{0, 0x0D0107010A01010A};
inline constexpr SPropertyId AS_10_Cumulative_Duration{0, 0x0D0107010A01010B};
}
namespace DM_AS_11_Core_Framework {
inline constexpr SPropertyId AS_11_Series_Title{0, 0x0D0107010B010101};
inline constexpr SPropertyId AS_11_Programme_Title{0, 0x0D0107010B010102};
inline constexpr SPropertyId AS_11_Episode_Title_Number{0, 0x0D0107010B010103};
inline constexpr SPropertyId AS_11_Shim_Name{0, 0x0D0107010B010104};
inline constexpr SPropertyId AS_11_Shim_Version{0, 0x0D0107010B01010A};
inline constexpr SPropertyId AS_11_Audio_Track_Layout{0, 0x0D0107010B010105};
inline constexpr SPropertyId AS_11_Primary_Audio_Language{0, 0x0D0107010B010106};
inline constexpr SPropertyId AS_11_Closed_Captions_Present{0, 0x0D0107010B010107};
inline constexpr SPropertyId AS_11_Closed_Captions_Type{0, 0x0D0107010B010108};
inline constexpr SPropertyId AS_11_Caption_Language{0, 0x0D0107010B010109};
}
namespace DM_AS_11_Segmentation_Framework {
inline constexpr SPropertyId AS_11_Part_Number{0, 0x0D0107010B020101};
inline constexpr SPropertyId AS_11_Part_Total{0, 0x0D0107010B020102};
}
namespace DMS_AS_12_Framework {
inline constexpr SPropertyId AS_12_ShimName{0, 0x0D0107010C010101};
inline constexpr SPropertyId AS_12_Slate{0, 0x0D0107010C010102};
}
namespace APP_InfaxFramework {
inline constexpr SPropertyId APP_Format{0, 0x0D04010101010100};
inline constexpr SPropertyId APP_ProgrammeTitle{0, 0x0D04010101010200};
inline constexpr SPropertyId APP_EpisodeTitle{0, 0x0D04010101010300};
inline constexpr SPropertyId APP_TransmissionDate{0, 0x0D04010101010400};
inline constexpr SPropertyId APP_MagazinePrefix{0, 0x0D04010101010500};
inline constexpr SPropertyId APP_ProgrammeNumber{0, 0x0D04010101010600};
inline constexpr SPropertyId APP_SpoolStatus{0, 0x0D04010101010700};
inline constexpr SPropertyId APP_StockDate{0, 0x0D04010101010800};
inline constexpr SPropertyId APP_SpoolDescriptor{0, 0x0D04010101010900};
inline constexpr SPropertyId APP_Memo{0, 0x0D04010101010A00};
inline constexpr SPropertyId APP_Duration{0, 0x0D04010101010B00};
inline constexpr SPropertyId APP_SpoolNumber{0, 0x0D04010101010C00};
inline constexpr SPropertyId APP_AccessionNumber{0, 0x0D04010101010D00};
inline constexpr SPropertyId APP_CatalogueDetail{0, 0x0D04010101010E00};
inline constexpr SPropertyId APP_ProductionCode{0, 0x0D04010101010F00};
inline constexpr SPropertyId APP_ItemNumber{0, 0x0D04010101011000};
}
namespace APP_PSEAnalysisFramework {
inline constexpr SPropertyId APP_RedFlash{0, 0x0D04010101020100};
inline constexpr SPropertyId APP_LuminanceFlash{0, 0x0D04010101020300};
inline constexpr SPropertyId APP_SpatialPattern{0, 0x0D04010101020200};
inline constexpr SPropertyId APP_ExtendedFailure{0, 0x0D04010101020400};
}
namespace APP_VTRReplayErrorFramework {
inline constexpr SPropertyId APP_VTRErrorCode{0, 0x0D04010101030100};
}
namespace APP_DigiBetaDropoutFramework {
inline constexpr SPropertyId APP_Strength{0, 0x0D04010101040100};
}
namespace APP_TimecodeBreakFramework {
inline constexpr SPropertyId APP_TimecodeType{0, 0x0D04010101050100};
}
namespace DM_AS_11_UKDPP_Framework {
inline constexpr SPropertyId UKDPP_Production_Number{0, 0x0D0C010101010100};
inline constexpr SPropertyId UKDPP_Synopsis{0, 0x0D0C010101010200};
inline constexpr SPropertyId UKDPP_Originator{0, 0x0D0C010101010300};
inline constexpr SPropertyId UKDPP_Copyright_Year{0, 0x0D0C010101010400};
inline constexpr SPropertyId UKDPP_Other_Identifier{0, 0x0D0C010101010500};
inline constexpr SPropertyId UKDPP_Other_Identifier_Type{0, 0x0D0C010101010600};
inline constexpr SPropertyId UKDPP_Genre{0, 0x0D0C010101010700};
inline constexpr SPropertyId UKDPP_Distributor{0, 0x0D0C010101010800};
inline constexpr SPropertyId UKDPP_Picture_Ratio{0, 0x0D0C010101010900};
inline constexpr SPropertyId UKDPP_3D{0, 0x0D0C010101010A00};
inline constexpr SPropertyId UKDPP_3D_Type{0, 0x0D0C010101010B00};
inline constexpr SPropertyId UKDPP_Product_Placement{0, 0x0D0C010101010C00};
inline constexpr SPropertyId UKDPP_PSE_Pass{0, 0x0D0C010101010D00};
inline constexpr SPropertyId UKDPP_PSE_Manufacturer{0, 0x0D0C010101010E00};
inline constexpr SPropertyId UKDPP_PSE_Version{0, 0x0D0C010101010F00};
inline constexpr SPropertyId UKDPP_Video_Comments{0, 0x0D0C010101011000};
inline constexpr SPropertyId UKDPP_Secondary_Audio_Language{0, 0x0D0C010101011100};
inline constexpr SPropertyId UKDPP_Tertiary_Audio_Language{0, 0x0D0C010101011200};
inline constexpr SPropertyId UKDPP_Audio_Loudness_Standard{0, 0x0D0C010101011300};
inline constexpr SPropertyId UKDPP_Audio_Comments{0, 0x0D0C010101011400};
inline constexpr SPropertyId UKDPP_Line_Up_Start{0, 0x0D0C010101011500};
inline constexpr SPropertyId UKDPP_Ident_Clock_Start{0, 0x0D0C010101011600};
inline constexpr SPropertyId UKDPP_Total_Number_Of_Parts{0, 0x0D0C010101011700};
inline constexpr SPropertyId UKDPP_Total_Programme_Duration{0, 0x0D0C010101011800};
inline constexpr SPropertyId UKDPP_Audio_Description_Present{0, 0x0D0C010101011900};
inline constexpr SPropertyId UKDPP_Audio_Description_Type{0, 0x0D0C010101011A00};
inline constexpr SPropertyId UKDPP_Open_Captions_Present{0, 0x0D0C010101011B00};
inline constexpr SPropertyId UKDPP_Open_Captions_Type{0, 0x0D0C010101011C00};
inline constexpr SPropertyId UKDPP_Open_Captions_Language{0, 0x0D0C010101011D00};
inline constexpr SPropertyId UKDPP_Signing_Present{0, 0x0D0C010101011E00};
inline constexpr SPropertyId UKDPP_Sign_Language{0, 0x0D0C010101011F00};
inline constexpr SPropertyId UKDPP_Completion_Date{0, 0x0D0C010101012000};
inline constexpr SPropertyId UKDPP_Textless_Elements_Exist{0, 0x0D0C010101012100};
inline constexpr SPropertyId UKDPP_Programme_Has_Text{0, 0x0D0C010101012200};
inline constexpr SPropertyId UKDPP_Programme_Text_Language{0, 0x0D0C010101012300};
inline constexpr SPropertyId UKDPP_Contact_Email{0, 0x0D0C010101012400};
inline constexpr SPropertyId UKDPP_Contact_Telephone_Number{0, 0x0D0C010101012500};
}
namespace DMS_AS_12_AdID_Slate {
inline constexpr SPropertyId adid_prefix{0, 0x0D0D010100000000};
inline constexpr SPropertyId adid_code{0, 0x0D0D010200000000};
inline constexpr SPropertyId ad_title{0, 0x0D0D010300000000};
inline constexpr SPropertyId brand{0, 0x0D0D010400000000};
inline constexpr SPropertyId product{0, 0x0D0D010500000000};
inline constexpr SPropertyId advertiser{0, 0x0D0D010600000000};
inline constexpr SPropertyId agency_office_location{0, 0x0D0D010700000000};
inline constexpr SPropertyId length{0, 0x0D0D010800000000};
inline constexpr SPropertyId medium{0, 0x0D0D010900000000};
inline constexpr SPropertyId sd_flag{0, 0x0D0D010A00000000};
inline constexpr SPropertyId parent{0, 0x0D0D010B00000000};
}
namespace AS_07_Core_DMS_Framework {
inline constexpr SPropertyId AS_07_Core_DMS_ShimName{0, 0x0D0E010107010101};
inline constexpr SPropertyId AS_07_Core_DMS_Identifiers{0, 0x0D0E010107010102};
inline constexpr SPropertyId AS_07_Core_DMS_ResponsibleOrganizationName{0, 0x0D0E010107010103};
inline constexpr SPropertyId AS_07_Core_DMS_ResponsibleOrganizationCode{0, 0x0D0E010107010105};
inline constexpr SPropertyId AS_07_Core_DMS_NatureOfOrganization{0, 0x0D0E010107010106};
inline constexpr SPropertyId AS_07_Core_DMS_WorkingTitle{0, 0x0D0E010107010107};
inline constexpr SPropertyId AS_07_Core_DMS_SecondaryTitle{0, 0x0D0E010107010108};
inline constexpr SPropertyId AS_07_Core_DMS_PictureFormat{0, 0x0D0E010107010109};
inline constexpr SPropertyId AS_07_Core_DMS_IntendedAFD{0, 0x0D0E01010701010A};
inline constexpr SPropertyId AS_07_Core_DMS_Captions{0, 0x0D0E01010701010B};
inline constexpr SPropertyId AS_07_Core_DMS_AudioTrackPrimaryLanguage{0, 0x0D0E01010701010C};
inline constexpr SPropertyId AS_07_Core_DMS_AudioTrackSecondaryLanguage{0, 0x0D0E01010701010D};
inline constexpr SPropertyId AS_07_Core_DMS_AudioTrackLayout{0, 0x0D0E01010701010E};
inline constexpr SPropertyId AS_07_Core_DMS_AudioTrackLayoutComment{0, 0x0D0E01010701010F};
inline constexpr SPropertyId AS_07_Core_DMS_Devices{0, 0x0D0E010107010110};
}
namespace AS_07_DMS_Device {
inline constexpr SPropertyId AS_07_Core_DMS_DeviceType{0, 0x0D0E010107010202};
inline constexpr SPropertyId AS_07_Core_DMS_DeviceManufacturer{0, 0x0D0E010107010203};
inline constexpr SPropertyId AS_07_Core_DMS_DeviceModel{0, 0x0D0E010107010204};
inline constexpr SPropertyId AS_07_Core_DMS_DeviceSerialNumber{0, 0x0D0E010107010205};
inline constexpr SPropertyId AS_07_Core_DMS_DeviceUsageDescription{0, 0x0D0E010107010206};
}
namespace AS_07_DMS_Identifier {
inline constexpr SPropertyId AS_07_DMS_IdentifierValue{0, 0x0D0E010107010302};
inline constexpr SPropertyId AS_07_DMS_IdentifierRole{0, 0x0D0E010107010303};
inline constexpr SPropertyId AS_07_DMS_IdentifierType{0, 0x0D0E010107010304};
inline constexpr SPropertyId AS_07_DMS_IdentifierComment{0, 0x0D0E010107010305};
}
namespace AS_07_GSP_DMS_Object {
inline constexpr SPropertyId AS_07_GSP_DMS_Identifiers{0, 0x0D0E010107010401};
inline constexpr SPropertyId AS_07_GSP_DMS_MIMEMediaType{0, 0x0D0E010107010402};
inline constexpr SPropertyId AS_07_GSP_DMS_DataDescription{0, 0x0D0E010107010403};
inline constexpr SPropertyId AS_07_GSP_DMS_Note{0, 0x0D0E010107010404};
}
namespace AS_07_GSP_TD_DMS_Framework {
inline constexpr SPropertyId AS_07_GSP_TD_DMS_PrimaryRFC5646LanguageCode{0, 0x0D0E010107020301};
inline constexpr SPropertyId AS_07_GSP_TD_DMS_SecondaryRFC5646LanguageCode{0, 0x0D0E010107020302};
}
namespace AS_07_Segmentation_DMS_Framework {
inline constexpr SPropertyId AS_07_Segmentation_DMS_PartNumber{0, 0x0D0E010107030101};
inline constexpr SPropertyId AS_07_Segmentation_DMS_PartTotal{0, 0x0D0E010107030102};
}
namespace AS_07_TimecodeLabelSubdescriptor {
inline constexpr SPropertyId AS_07_DateTimeSymbol{0, 0x0D0E010107040101};
inline constexpr SPropertyId AS_07_DateTimeEssenceTrackID{0, 0x0D0E010107040102};
inline constexpr SPropertyId AS_07_DateTimeChannelID{0, 0x0D0E010107040103};
inline constexpr SPropertyId AS_07_DateTimeDescription{0, 0x0D0E010107040104};
}
namespace ISXDDataEssenceDescriptor {
inline constexpr SPropertyId NamespaceURI{0, 0x0E09040000000000};
}
namespace IADataEssenceSubDescriptor {
inline constexpr SPropertyId ImmersiveAudioVersion{0, 0x0E09050600000000};
inline constexpr SPropertyId MaxChannelCount{0, 0x0E09050700000000};
inline constexpr SPropertyId MaxObjectCount{0, 0x0E09050800000000};
inline constexpr SPropertyId ImmersiveAudioID{0, 0x0E09050900000000};
inline constexpr SPropertyId FirstFrame{0, 0x0E09050A00000000};
inline constexpr SPropertyId IABSampleRate{0, 0x040203010F000000};
}
namespace PHDRMetadataTrackSubDescriptor {
inline constexpr SPropertyId DataDefinition{0, 0x0E09060701010104};
inline constexpr SPropertyId SourceTrackID{0, 0x0E09060701010105};
inline constexpr SPropertyId SimplePayloadSID{0, 0x0E09060701010106};
}
namespace ARRIRAWPictureEssenceProcessingSubDescriptor {
inline constexpr SPropertyId CFALayout{0, 0x0E17010101010000};
inline constexpr SPropertyId UnitCalibrationData{0, 0x0E17010101020000};
}
namespace PictureEssenceProcessingSubDescriptor {
inline constexpr SPropertyId ImageProcessingModel{0, 0x0E17010201010000};
inline constexpr SPropertyId ColorimetricDataSetIdentifier{0, 0x0E17010201020000};
inline constexpr SPropertyId Flip{0, 0x0E17010201030000};
inline constexpr SPropertyId Flop{0, 0x0E17010201040000};
}
namespace TextureProcessingSubDescriptor {
inline constexpr SPropertyId TextureApplied{0, 0x0E17010202010000};
inline constexpr SPropertyId TemporalProcessingApplied{0, 0x0E17010202020000};
inline constexpr SPropertyId BurstNoiseReductionApplied{0, 0x0E17010202030000};
}
namespace TextureGen1ProcessingSubDescriptor {
inline constexpr SPropertyId TextureNoiseReductionMode{0, 0x0E17010203010000};
inline constexpr SPropertyId TextureImageSharpness{0, 0x0E17010203020000};
inline constexpr SPropertyId TextureImageDetail{0, 0x0E17010203030000};
inline constexpr SPropertyId TextureNoiseReductionStrength{0, 0x0E17010203040000};
}
namespace TextureGen2ProcessingSubDescriptor {
inline constexpr SPropertyId TextureData{0, 0x0E17010204010000};
inline constexpr SPropertyId TextureFileName{0, 0x0E17010204020000};
}
namespace SensorDimensions {
inline constexpr SPropertyId SensorWidth{0, 0x0E17010205010000};
inline constexpr SPropertyId SensorHeight{0, 0x0E17010205020000};
}
namespace RectangleSet {
inline constexpr SPropertyId RectangleTopOffset{0, 0x0E17010206010000};
inline constexpr SPropertyId RectangleLeftOffset{0, 0x0E17010206020000};
inline constexpr SPropertyId RectangleWidth{0, 0x0E17010206030000};
inline constexpr SPropertyId RectangleHeight{0, 0x0E17010206040000};
}
namespace SensorCharacteristics {
inline constexpr SPropertyId SensorName{0, 0x0E17010207010000};
inline constexpr SPropertyId SensorPixelPitch{0, 0x0E17010207020000};
inline constexpr SPropertyId OverallSensorDimensions{0, 0x0E17010207030000};
inline constexpr SPropertyId SensorAcquisitionRectangle{0, 0x0E17010207040000};
inline constexpr SPropertyId SensorUserPixelMaskActive{0, 0x0E17010207050000};
inline constexpr SPropertyId SensorUserPixelMaskData{0, 0x0E17010207060000};
}
namespace ColorEncodingSet {
inline constexpr SPropertyId ColorEncodingPrimariesAndWhitePoint{0, 0x0E17010208010000};
inline constexpr SPropertyId ColorEncodingTransferFunction{0, 0x0E17010208020000};
}
namespace LUT3D {
inline constexpr SPropertyId LUT3DScalingFactor{0, 0x0E17010209010000};
inline constexpr SPropertyId LUT3DNormalizationGain{0, 0x0E17010209020000};
inline constexpr SPropertyId LUT3DNormalizationOffset{0, 0x0E17010209030000};
inline constexpr SPropertyId LUT3DMeshPointsPerChannel{0, 0x0E17010209040000};
inline constexpr SPropertyId LUT3DData{0, 0x0E17010209050000};
inline constexpr SPropertyId LUT3DDataLayout{0, 0x0E17010209060000};
inline constexpr SPropertyId LUT3DSourceColorEncoding{0, 0x0E17010209070000};
inline constexpr SPropertyId LUT3DTargetColorEncoding{0, 0x0E17010209080000};
inline constexpr SPropertyId LUT3DIdentifier{0, 0x0E17010209090000};
}
namespace ColorProcessingSet {
inline constexpr SPropertyId WhiteBalanceApplied{0, 0x0E1701020A010000};
inline constexpr SPropertyId SceneColorEncoding{0, 0x0E1701020A020000};
inline constexpr SPropertyId ColorLookApplied{0, 0x0E1701020A030000};
inline constexpr SPropertyId LUT3Ds{0, 0x0E1701020A040000};
inline constexpr SPropertyId LookModified{0, 0x0E1701020A050000};
inline constexpr SPropertyId CDLSlope{0, 0x0E1701020A060000};
inline constexpr SPropertyId CDLOffset{0, 0x0E1701020A070000};
inline constexpr SPropertyId CDLPower{0, 0x0E1701020A080000};
inline constexpr SPropertyId CDLSaturation{0, 0x0E1701020A090000};
inline constexpr SPropertyId LookIntensity{0, 0x0E1701020A0A0000};
inline constexpr SPropertyId LookFileName{0, 0x0E1701020A0B0000};
inline constexpr SPropertyId LookNote{0, 0x0E1701020A0C0000};
inline constexpr SPropertyId VideoRenderingVersion{0, 0x0E1701020A0D0000};
}
namespace ClipSubDescriptor {
inline constexpr SPropertyId ImageSensorCharacteristics{0, 0x0E1701020B010000};
inline constexpr SPropertyId ClipColorProcessing{0, 0x0E1701020B020000};
inline constexpr SPropertyId ImageChecksumType{0, 0x0E1701020B030000};
}
namespace RIFFChunkDefinitionSubDescriptor {
inline constexpr SPropertyId RIFFChunkStreamID{0, 0x0402030801000000};
inline constexpr SPropertyId RIFFChunkID{0, 0x0402030802000000};
inline constexpr SPropertyId RIFFChunkUUID{0, 0x0402030803000000};
inline constexpr SPropertyId RIFFChunkHashSHA1{0, 0x0402030804000000};
}
namespace ADM_CHNASubDescriptor {
inline constexpr SPropertyId NumLocalChannels{0, 0x0402030901000000};
inline constexpr SPropertyId NumADMAudioTrackUIDs{0, 0x0402030902000000};
inline constexpr SPropertyId ADMChannelMappingsArray{0, 0x0402030903000000};
}
namespace ADMChannelMapping {
inline constexpr SPropertyId LocalChannelID{0, 0x0402030904000000};
inline constexpr SPropertyId ADMAudioTrackUID{0, 0x0402030905000000};
inline constexpr SPropertyId ADMAudioTrackChannelFormatID{0, 0x0402030906000000};
inline constexpr SPropertyId ADMAudioPackFormatID{0, 0x0402030907000000};
}
namespace RIFFChunkReferencesSubDescriptor {
inline constexpr SPropertyId RIFFChunkStreamIDsArray{0, 0x0402030806000000};
}
namespace ADMAudioMetadataSubDescriptor {
inline constexpr SPropertyId RIFFChunkStreamID_link1{0, 0x0402030A01000000};
inline constexpr SPropertyId ADMProfileLevelULBatch{0, 0x0402030A02000000};
}
namespace ADMSoundfieldGroupLabelSubDescriptor {
inline constexpr SPropertyId RIFFChunkStreamID_link2{0, 0x0402030B01000000};
inline constexpr SPropertyId ADMAudioProgrammeID_ST2131{0, 0x0402030B02000000};
inline constexpr SPropertyId ADMAudioContentID_ST2131{0, 0x0402030B03000000};
inline constexpr SPropertyId ADMAudioObjectID_ST2131{0, 0x0402030B04000000};
}
} // namespace Prop
} // namespace TamrelMxf
