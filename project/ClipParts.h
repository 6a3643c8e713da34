#pragma once

#include "../media/FileTiming.h"
#include "../media/PELFileElement.h"
#include "../xml/PELElement.h"

#include <memory>
#include <string>
#include <string_view>

/// What clips, multiclips and sequences have in common. Not installed.
namespace zanfcp::ClipParts {

/// The file's name; empty for an absent file.
std::string_view nameOf(const std::shared_ptr<PELFileElement>& file);

/// "NAME Clip", the identifier of the file's master clip.
std::string masterClipID(const std::shared_ptr<PELFileElement>& file);

/// "NAME V01" and "NAME A01", with `kind` ("V", "Multiclip A" …) in between: how links name the clip items of a file.
std::string itemID(const std::shared_ptr<PELFileElement>& file, const char* kind, NSInteger index);

/// One link to the picture's clip item, then one for each audio channel, grouped by the audio tracks of the file.
/// \param prefix  before "V" and "A" in the identifiers: "" or "Multiclip "
PELElements links(const std::shared_ptr<PELFileElement>& file, const std::string& prefix);

void addText(PELElement& parent, std::string_view key, std::string_view text);
/// As "%i".
void addInteger(PELElement& parent, std::string_view key, NSInteger value);
/// "TRUE" or "FALSE".
void addBoolean(PELElement& parent, std::string_view key, bool value);
/// Appends a child that may be absent, and then nothing is added or logged.
void addOptional(PELElement& parent, const std::shared_ptr<PELElement>& child);

/// "in" and "out" of a clip or track group that is used whole: both -1.
void addUnsetInAndOut(PELElement& parent);
/// A "file" that only refers to the full description elsewhere.
void addFileReference(PELElement& parent, const std::shared_ptr<PELFileElement>& file);
/// "name", "collapsed" and "synctype" of the one multiclip of a project.
void addMulticlipSettings(PELElement& multiclip);

/// "enabled" and "locked" of a track in use.
void addTrackState(PELElement& track);
/// "track" with the clip item, enabled and not locked. An absent clip item is logged and left out.
std::shared_ptr<PELElement> track(const std::shared_ptr<PELElement>& clipItem);

/// "Multiclip 0001": a project holds one multiclip.
inline constexpr char kMulticlipID[] = "Multiclip 0001";
/// Its name.
inline constexpr char kMulticlipName[] = "Multiclip";

inline constexpr char kVideo[] = "video";
inline constexpr char kAudio[] = "audio";

} // namespace zanfcp::ClipParts
