#pragma once

/// Keys of the options dictionary that rootElementForProject reads, of the dictionaries inside it, and the texts that
/// some of their values are chosen from. An absent key reads as false, 0 or nothing unless a default is given.
/// They are character arrays, so that each goes wherever a text is taken.
namespace zanfcp {

// The document.
/// Dictionary: the import options as they are written; only "createnewproject" = "TRUE" when absent.
inline constexpr char PELImportOptions[] = "importOptions";
/// Boolean, true when absent: put the bin and the sequence into a project.
inline constexpr char PELAddProject[] = "addProject";
/// Text, "Project" when absent.
inline constexpr char PELProjectName[] = "projectName";
/// Text, "Bin" when absent.
inline constexpr char PELBinName[] = "binName";
/// Text, applied when not empty.
inline constexpr char PELBinLabel[] = "binLabel";
/// Text: the label of every master clip.
inline constexpr char PELClipLabel[] = "clipLabel";
/// Boolean: build a sequence, which needs the multiclip and clip items too.
inline constexpr char PELProjectAddSequence[] = "addSequence";
/// Boolean, read without a sequence: build the multiclip, which needs clip items too.
inline constexpr char PELProjectAddMulticlip[] = "addMulticlip";
/// Boolean, read without a sequence and a multiclip: describe the tracks of every master clip.
inline constexpr char PELProjectUseCliptitems[] = "useClipItems";

// The multiclip and the sequence.
/// Integer, index of a file: the main angle, and the one that a sequence without cuts shows.
inline constexpr char PELMulticlipMainFileIndex[] = "multiclipMainFileIndex";
/// Integer, index of the file whose format and rate the sequence takes.
inline constexpr char PELSequenceTemplateFileIndex[] = "sequenceTemplateFileIndex";
/// Integer, index of the file that the sequence sounds like; the one with most audio tracks when absent.
inline constexpr char PELSoundSourceIndex[] = "soundSourceIndex";
/// Text, "Sequence" when absent.
inline constexpr char PELSequenceName[] = "sequenceName";
/// Text, applied when not empty.
inline constexpr char PELSequenceLabel[] = "sequenceLabel";
/// Timecode label at the rate of the sequence.
inline constexpr char PELSequenceStartTimecode[] = "sequenceStartTimecode";
/// Integer, frames; the span in which all files have material when absent.
inline constexpr char PELSequenceDuration[] = "sequenceDuration";
/// Boolean, read with a start timecode: place the files by their own timecode. When false, the end of the last
/// cut becomes the duration of the sequence.
inline constexpr char PELSequenceCorrectFileOffsets[] = "sequenceCorrectFileOffsets";
/// Boolean: leave the settings of the sequence to the first clip; PELSequenceSettingsOverrides is not read then.
inline constexpr char PELUseFirstClipSettings[] = "useFirstClipSettings";
/// Dictionary of the …Override keys.
inline constexpr char PELSequenceSettingsOverrides[] = "sequenceOverrides";
/// List of cut dictionaries in the order of the timeline; one cut over the whole sequence when absent or empty.
inline constexpr char PELCuts[] = "cuts";
/// List of marker dictionaries.
inline constexpr char PELMarkers[] = "markers";

// What is logged of the shot.
/// Text: the scene.
inline constexpr char PELProjectScene[] = "projectScene";
/// Text: the take.
inline constexpr char PELProjectTake[] = "projectTake";
/// Text: the first master comment.
inline constexpr char PELMasterComment1[] = "masterComment1";
/// Boolean.
inline constexpr char PELMasterComment1AddToSequence[] = "masterComment1AddToSequence";
/// Boolean. The key has no "Add", other than its constant.
inline constexpr char PELMasterComment1AddToClipsAndMulticlips[] = "masterComment1ToClipsAndMulticlips";
/// Boolean: the shot is good; marked where one of the next two keys says so.
inline constexpr char PELGoodShot[] = "logGoodShot";
/// Boolean.
inline constexpr char PELGoodShotAddToSequence[] = "logGoodShotAddToSequence";
/// Boolean.
inline constexpr char PELGoodShotAddToClipsAndMulticlips[] = "logGoodShotAddToClipsAndMulticlips";

// Overrides of the sequence settings, each applied when present.
/// Boolean.
inline constexpr char PELAnamorphicOverride[] = "anamorphicOverride";
/// Number, whole frames per second.
inline constexpr char PELEditingTimebaseOverride[] = "editingTimebaseOverride";
/// Text: "none", "upper" or "lower".
inline constexpr char PELFieldDominanceOverride[] = "fieldDominanceOverride";
/// Number, pixels; only together with the height.
inline constexpr char PELFrameSizeWidthOverride[] = "frameSizeWidthOverride";
/// Number, pixels; only together with the width.
inline constexpr char PELFrameSizeHeightOverride[] = "frameSizeHeightOverride";
/// Text: a name of NSStringFromPELPixelAspectRatio.
inline constexpr char PELPixelAspectRatioOverride[] = "pixelAspectRatioOverride";

// A cut.
/// Text: PELCutTypeCut or PELCutTypeDissolve; a record of any other type is ignored.
inline constexpr char PELCutType[] = "type";
inline constexpr char PELCutTypeCut[] = "cut";
inline constexpr char PELCutTypeDissolve[] = "dissolve";
/// Integer, index of the file that is shown; cuts only.
inline constexpr char PELCutActiveAngleIndex[] = "activeAngleIndex";
/// Timecode label on the sequence.
inline constexpr char PELCutStartTimecode[] = "start";
/// Timecode label on the sequence.
inline constexpr char PELCutEndTimecode[] = "end";

// A marker.
/// Text, required.
inline constexpr char PELMarkerName[] = "name";
/// Text.
inline constexpr char PELMarkerComment[] = "comment";
/// Colour.
inline constexpr char PELMarkerColor[] = "color";
/// Timecode label on the sequence, other than its constant says.
inline constexpr char PELMarkerStartFrame[] = "startFrame";
/// Integer, frames; none, 0 and less make a marker without an end.
inline constexpr char PELMarkerDuration[] = "duration";

} // namespace zanfcp
