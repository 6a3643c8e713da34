#pragma once

#include "../metadata/HeaderSets.h"
#include "Packages.h"

#include <cstddef>
#include <cstdint>
#include <optional>
#include <string>
#include <vector>

namespace TamrelMxf {

/// The root of the header metadata.
struct SPreface {
    SUUID instanceUid;
    std::optional<std::uint16_t> version; ///< major in the upper byte, minor in the lower
    std::optional<STimestamp> lastModified;
    std::optional<std::uint32_t> objectModelVersion;
    std::optional<SUUID> primaryPackage; ///< Instance UID
    std::optional<SUl> operationalPattern;
    std::vector<SUl> essenceContainers;
    std::vector<SUl> descriptiveSchemes;
    std::optional<bool> isRipPresent;
};

/// An application that wrote or changed the file.
struct SIdentification {
    SUUID instanceUid;
    std::string companyName, productName, versionString, platform;
    std::optional<SProductVersion> productVersion, toolkitVersion;
    std::optional<SUUID> productUid, generationUid;
    std::optional<STimestamp> modificationDate;
};

/// Which stream of the file holds the essence of a package.
struct SEssenceContainerData {
    SUUID instanceUid;
    SUmid linkedPackage;
    std::uint32_t bodySid = 0;  ///< 0: none in this file
    std::uint32_t indexSid = 0; ///< 0: no index tables
};

/// Something that a reference promised and the file does not keep. Reading goes on without it.
struct SModelNote {
    enum class EKind : std::uint8_t {
        missingSet, ///< no set with this Instance UID
        wrongClass, ///< there is one, of a class that cannot stand here
        ownedTwice, ///< a set before owns it already: a second owner or a circle
        tooDeep,    ///< nested deeper than kMaxReferenceDepth
    };
    EKind kind = EKind::missingSet;
    SUUID target;
    ESet expected = ESet::InterchangeObject;
};

/// All that the header metadata of a file says, put together from its sets. Sets without a place in it are left out.
/// Each set has one owner: where two references name it, the first counts; so circles end, and the work grows with
/// the number of sets alone.
struct SHeaderModel {
    std::optional<SPreface> preface;
    std::vector<SIdentification> identifications; ///< oldest first
    std::vector<SEssenceContainerData> essenceContainers;
    std::vector<CMxfPackage> packages;
    std::vector<SPackageMarker> markers; ///< in the order of the file
    std::vector<SModelNote> notes;       ///< at most kMaxModelNotes
    std::size_t noteCount = 0;           ///< all of them

    /// The package with this UMID, the first one of several, or null. Null for the zero UMID.
    const CMxfPackage* FindPackage(const SUmid& uid) const;
    /// The material package that the Preface names as primary, else the first one; null when there is none.
    const CMxfPackage* MaterialPackage() const;
    /// The container that holds the essence of a package, or null.
    const SEssenceContainerData* FindContainer(const SUmid& package) const;
    /// The file package that the material package plays: that of its first picture clip, else sound, else any; else the
    /// first package with a container in the file, the first with a file descriptor, the first source package.
    const CMxfPackage* PrimaryFilePackage() const;

    /// Makes FindPackage and FindContainer see what has been added; BuildHeaderModel has done so.
    void SortByUid();

private:
    std::vector<std::uint32_t> packagesByUid_, containersByUid_;
};

/// Puts the sets of one copy of the header metadata together. Never fails: of a damaged file what is left is there.
/// \param header  borrowed for the call
SHeaderModel BuildHeaderModel(const SHeaderSets& header);
/// The same for a primer pack and sets that were read one by one.
SHeaderModel BuildHeaderModel(const CMetadataArray& sets, const CPrimerPack& primer);

} // namespace TamrelMxf
