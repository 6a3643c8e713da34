#pragma once

#include "../essence/EssenceRecords.h"
#include "../index/MxfIndexParser.h"
#include "../io/MediaSource.h"
#include "../io/Snitcher.h"
#include "../io/SourceReader.h"
#include "../io/WaitClock.h"
#include "../klv/PartitionScanner.h"
#include "../model/HeaderModel.h"
#include "../model/Links.h"
#include "../model/StreamFormat.h"
#include "../model/Timing.h"
#include "EssenceWalk.h"
#include "Records.h"
#include "StreamGroups.h"

#include <cstddef>
#include <cstdint>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace TamrelMxf {

class CDelivery;
class CEssenceParser;
class CFrameworkList;
struct SEssenceTrack;

/// Reads what an MXF file says about itself. One file at a time; used from one thread at a time. The codes that its
/// operations answer are those of Status.h.
class CMxfDemuxer {
public:
    /// \param clock  borrowed
    explicit CMxfDemuxer(CWaitClock& clock = CWaitClock::System());

    // The order of these is part of the interface.

    /// True once a random index pack or a footer is found; looks for both.
    virtual bool IsMxfComplete();
    /// Works out how many edit units of essence lie in front of the first one that is played, for every stream.
    virtual void SetOffsets();
    /// Works out the duration from what is known now: the header metadata, that of the footer included, or else what
    /// there is of the essence.
    virtual void CalculateDuration();
    virtual ~CMxfDemuxer();
    /// Releases everything that belongs to the open file, the source included.
    virtual void Close();

    CMxfDemuxer(const CMxfDemuxer&) = delete;
    CMxfDemuxer& operator=(const CMxfDemuxer&) = delete;

    /// \return an open demuxer; null where Open fails
    static std::unique_ptr<CMxfDemuxer> Create(const char* path, const mxf_demuxer_config* config,
                                               CLoggerT<CSnitcher> logger);
    static std::unique_ptr<CMxfDemuxer> Create(std::unique_ptr<CMediaSource> source, const mxf_demuxer_config* config,
                                               CLoggerT<CSnitcher> logger);

    /// As mxfDemuxOpen.
    int Open(const char* path, const mxf_demuxer_config* config, CSnitcher* sink);
    /// Opens on a source that is open already, without a second try.
    /// \param source  taken over, also on failure
    int Open(std::unique_ptr<CMediaSource> source, const mxf_demuxer_config* config, CLoggerT<CSnitcher> logger);
    /// Finds the header metadata in the source at hand and reads it.
    /// \return 0 or the code of the step that failed
    int ParseHeaders();

    /// As the functions of mxfDemux.h.
    int GetFileInfo(mxf_file_info* info);
    int GetIdentification(mxf_identification* identification, int index) const;
    int GetTopPack(mxf_top_pack* pack, bool material, int index) const;
    /// \param withExtraData  false leaves the extra data out
    /// \param probeEssence   true holds what the header says about wrapping against the first bytes of essence, in
    ///   files with a single stream
    int GetStreamFormat(int stream, mxf_stream_format* format, bool withExtraData, bool probeEssence);
    int GetDmFramework(int index, mxf_dmd_framework* framework, std::uint32_t* count, const mxf_dmd_framework** list);

    /// Delivery of essence, as the functions of mxfDemux.h. \param file  counts the essence containers (BodySIDs) of
    /// this file in the order of their file packages.
    int CreateParser(int file);
    int FreeParser(int file);
    int AddStream(int file, int stream, SMediaStream* receiver);
    int RemoveStream(int file, int stream);
    int Push(int file);
    int Seek(int file, mxf_dmuxer_seek* seek);
    int GetIdxEntryInfo(int file, int sample, mxf_sample_info* info);
    int FillSampleOffset(mxf_sample_info* info);
    int GetKlvInfo(std::int64_t position, std::int64_t* keyLength, std::int64_t* valueLength);

    /// The positioned read that waits for data, see CSourceReader.
    int ReadSource(std::uint8_t* buffer, std::int64_t position, int count)
    {
        return reader_.ReadSource(buffer, position, count);
    }
    /// True when index tables are loaded on demand.
    bool GetLazyIndexLoading() const { return config_.lazy_index_loading != 0; }
    bool IsHeaderParsed() const { return isHeaderParsed_; }

    /// All that the header says; empty when nothing is open.
    const SHeaderModel& Model() const { return model_; }
    const std::vector<SStreamLink>& Streams() const { return streams_; }
    const CPartitionScanner& Partitions() const { return scanner_; }
    const SDuration& Duration() const { return duration_; }
    const SStartTimecode& StartTimecode() const { return startTimecode_; }
    EMuxingMode DetectMuxingMode() const;

protected:
    /// Closes what is open; takes over the settings of the next file and where its messages go.
    void Start(const mxf_demuxer_config* config, CLoggerT<CSnitcher> logger);
    /// Reads the header that stands at the start of `source`, in a partition of any kind, and lets go of the source.
    /// \return 0 or the code of the step that failed; the demuxer then is as after Close
    int ParseDetachedHeaders(std::unique_ptr<CMediaSource> source);
    const CLoggerT<CSnitcher>& Logger() const { return logger_; }
    /// The streams of one container as its parser sees them; empty for a bad index.
    std::vector<SEssenceTrack> EssenceTracks(int file) const;
    static const CMxfUlDict& Dict();

private:
    class CClient;

    void Adopt(std::unique_ptr<CMediaSource> source);
    std::unique_ptr<CMediaSource> MakeSource(const char* path) const;
    int DoParseHeaders();
    int ReadHeader();
    int OpenSource();
    void LinkEverything();
    void ScanFooter(const CPartitionPack& footer);
    bool RefreshHeader();
    SDurationSources SourcesBesideHeader();
    std::optional<SEssenceExtent> MeasureEssence();
    CEssenceParser* FindParser(int file) const;
    std::uint32_t IndexValue();
    std::optional<SIndexExtent> IndexExtent();

    CWaitClock& clock_;
    CLoggerT<CSnitcher> logger_;
    mxf_demuxer_config config_{};
    std::unique_ptr<CMediaSource> source_;
    CSourceReader reader_;
    std::unique_ptr<CClient> client_;
    CPartitionScanner scanner_;

    bool isHeaderParsed_ = false;
    SHeaderModel model_;
    std::vector<SStreamLink> streams_;
    std::vector<std::int64_t> offsets_;  // of each stream, edit units
    std::vector<SStreamFormat> formats_; // of each stream
    std::vector<std::size_t> leaders_;   // the streams that the indexes of callers stand for
    std::unique_ptr<CFrameworkList> frameworks_;
    std::optional<CEssenceWalk> walk_; // once the essence had to be measured
    std::size_t walkedStream_ = 0;
    bool wasAsked_ = false; // for the file information, since it was opened
    SDuration duration_;
    SStartTimecode startTimecode_;
    std::unique_ptr<CMxfIndexParser> index_; // when it is loaded on demand: once a parser needs it
    std::unique_ptr<CDelivery> delivery_;    // once a parser was made
};

} // namespace TamrelMxf
