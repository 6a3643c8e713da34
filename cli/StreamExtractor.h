#pragma once

#include "cli/EssenceOutput.h"
#include "cli/WavHeader.h"
#include "mxf/demuxer/Records.h"
#include "mxf/essence/EssenceRecords.h"

#include <cstdint>
#include <limits>
#include <optional>
#include <string>
#include <vector>

namespace zanfcp::cli {

/// The WAV file that holds a stream.
/// \return the format, or an Error (unsupported) whose `what` goes on behind "stream N"
Result<WavFormat> wavFormatOf(const mxf_stream_format& format);
/// Whether samples of sound lie in the file with their first byte on top, the other way round than in a WAV file.
bool isBigEndianSound(const mxf_stream_format& format);

/// What an extraction takes of its stream, in played edit units.
struct ExtractedRange {
    std::int64_t from = std::numeric_limits<std::int64_t>::min();
    std::int64_t to = std::numeric_limits<std::int64_t>::max(); ///< the first one that is left out
    /// Nothing but the edit units of the range. Otherwise pictures that those are decoded from are taken as well: in
    /// front of it whatever is delivered, behind it what is stored in front of its last one.
    bool isExact = false;
};

/// How a stream is written.
struct ExtractionPlan {
    std::optional<WavFormat> wav = {}; ///< nothing for the bare essence
    bool swapsBytes = false;           ///< samples of a WAV file stand the other way round in the MXF file
    std::int64_t startOffset = 0;      ///< edit units of the essence in front of the first one that is played
};

/// The receiver that writes a stream to a file.
class StreamExtractor final : public SMediaStream {
public:
    /// What is not as it was recorded.
    struct Damage {
        std::uint64_t damaged = 0;       ///< samples that lack bytes
        std::int64_t lost = 0;           ///< edit units that are missing between others
        std::int64_t firstPosition = -1; ///< in the file, of the first sample that is damaged or follows a gap
        std::int64_t firstUnit = 0;      ///< its played edit unit
    };

    StreamExtractor(EssenceOutput output, const ExtractionPlan& plan, ExtractedRange range);

    int TakeSample(const mxf_sample& sample) override;

    /// Whether all of the range has been delivered, or writing has failed.
    bool isDone() const { return isDone_ || !status_; }
    /// Makes the file appear, once all samples have been delivered.
    Status finish();
    /// Why writing failed.
    const Status& status() const { return status_; }

    std::int64_t editUnits() const { return written_; } ///< written
    std::int64_t leading() const { return leading_; }   ///< of these the ones in front of the range
    std::uint64_t bytes() const { return bytes_; }      ///< of essence, written
    /// The edit unit behind the last one that was delivered: one that is played, as far as pictures are stored in
    /// that order.
    std::int64_t end() const { return expected_.value_or(plan_.startOffset) - plan_.startOffset; }
    const Damage& damage() const { return damage_; }

private:
    void noteDamage(const mxf_sample& sample);
    void write(std::int64_t firstUnit, std::span<const std::uint8_t> bytes, std::int64_t editUnits);
    void append(std::span<const std::uint8_t> bytes);
    void writePending();

    EssenceOutput output_;
    ExtractionPlan plan_;
    ExtractedRange range_;
    Status status_;
    bool isDone_ = false;
    std::optional<std::int64_t> expected_; ///< the stored edit unit that continues what was delivered
    std::int64_t written_ = 0;
    std::int64_t leading_ = 0;
    std::uint64_t bytes_ = 0;
    Damage damage_;
    std::vector<std::uint8_t> pending_; ///< pictures behind the range: written when one of the range follows
    std::int64_t pendingUnits_ = 0;
    std::vector<std::uint8_t> swapped_;
};

} // namespace zanfcp::cli
