#pragma once

#include "media/quicktime/Asset.h"
#include "platform/ByteReader.h"
#include "tests/support/Bytes.h"

#include <memory>

namespace zanfcp::test {

/// Reads a movie from memory; `file` must outlive the asset.
inline Result<quicktime::Asset> readAsset(const Bytes& file)
{
    return quicktime::Asset::read(std::make_unique<MemoryByteSource>(file.span()));
}
Result<quicktime::Asset> readAsset(Bytes&&) = delete;

} // namespace zanfcp::test
