#pragma once

#include "../essence/MxfInterleavedParser.h"
#include "../index/MxfIndexParser.h"
#include "../klv/RandomIndexPack.h"
#include "QueueEssenceInput.h"

#include <atomic>
#include <cstdint>
#include <span>
#include <utility>
#include <vector>

namespace TamrelMxf {

/// The parser of a pushed stream with all that it works on.
struct SStreamDelivery {
    /// Everything is borrowed.
    struct SParts {
        SMemoryStream& queue;          ///< its lock is held while `parser` is made and used
        std::int64_t begin;            ///< what the queue had confirmed when the stream began
        const std::atomic<bool>& stop; ///< true makes the parser come back as soon as it can
        const CMxfUlDict& dict;
        std::uint32_t bodySid;    ///< of the partition that the front of the queue lies in
        std::uint64_t bodyOffset; ///< of that partition
        CLoggerT<CSnitcher> logger;
    };
    /// \param tracks  all of one BodySID, not empty
    SStreamDelivery(const SParts& parts, std::vector<SEssenceTrack> tracks)
        : input{parts.queue, parts.begin, parts.stop}, partitions{nullptr, parts.dict, 0}, index{nullptr, parts.logger},
          context{.input = input,
                  .dict = parts.dict,
                  .partitions = partitions,
                  .index = &index,
                  .start = {.position = input.Front(), .bodySid = parts.bodySid, .bodyOffset = parts.bodyOffset},
                  .logger = parts.logger},
          parser{context, std::move(tracks)}
    {}
    SStreamDelivery(const SStreamDelivery&) = delete;
    SStreamDelivery& operator=(const SStreamDelivery&) = delete;

    /// Takes over the index table segments of a header.
    /// \param bytes  what the partition pack counts as index table
    void ImportIndex(std::span<const std::uint8_t> bytes);

    CQueueEssenceInput input;
    CRandomIndexPack partitions;
    CMxfIndexParser index;
    SEssenceContext context;
    CMxfInterleavedStreamParser parser;
};

} // namespace TamrelMxf
