#include "mxf/model/HeaderModel.h"

#include "mxf/model/ModelBuilder.h"

#include <algorithm>
#include <numeric>

namespace TamrelMxf {
namespace {

/// The indexes of `records` in the order of their UMIDs; records with the same one keep their order.
template <typename Record> std::vector<std::uint32_t> OrderByUid(const std::vector<Record>& records, SUmid Record::*uid)
{
    std::vector<std::uint32_t> order(records.size());
    std::iota(order.begin(), order.end(), 0U);
    std::ranges::stable_sort(order, {}, [&](std::uint32_t index) { return records[index].*uid; });
    return order;
}

template <typename Record> const Record* FindByUid(const std::vector<Record>& records,
                                                   const std::vector<std::uint32_t>& order, SUmid Record::*uid,
                                                   const SUmid& wanted)
{
    if (wanted.IsZero()) return nullptr;
    const auto found =
        std::ranges::lower_bound(order, wanted, {}, [&](std::uint32_t index) { return records[index].*uid; });
    if (found == order.end() || records[*found].*uid != wanted) return nullptr;
    return &records[*found];
}

} // namespace

void SHeaderModel::SortByUid()
{
    packagesByUid_ = OrderByUid(packages, &CMxfPackage::uid);
    containersByUid_ = OrderByUid(essenceContainers, &SEssenceContainerData::linkedPackage);
}

const CMxfPackage* SHeaderModel::FindPackage(const SUmid& uid) const
{
    return FindByUid(packages, packagesByUid_, &CMxfPackage::uid, uid);
}

const SEssenceContainerData* SHeaderModel::FindContainer(const SUmid& package) const
{
    return FindByUid(essenceContainers, containersByUid_, &SEssenceContainerData::linkedPackage, package);
}

const CMxfPackage* SHeaderModel::MaterialPackage() const
{
    const CMxfPackage* first = nullptr;
    for (const CMxfPackage& package : packages) {
        if (package.kind != CMxfPackage::EKind::material) continue;
        if (preface && preface->primaryPackage == package.instanceUid) return &package;
        if (first == nullptr) first = &package;
    }
    return first;
}

const CMxfPackage* SHeaderModel::PrimaryFilePackage() const
{
    if (const CMxfPackage* material = MaterialPackage()) {
        const auto played = [&](std::optional<EDataKind> kind) -> const CMxfPackage* {
            for (const CMxfTrack& track : material->tracks) {
                if (kind && track.DataKind() != *kind) continue;
                for (const CMxfClip& clip : track.sequence.clips) {
                    const CMxfPackage* package = clip.sourcePackage ? FindPackage(*clip.sourcePackage) : nullptr;
                    if (package != nullptr && package->kind == CMxfPackage::EKind::source) return package;
                }
            }
            return nullptr;
        };
        for (const auto kind : {std::optional{EDataKind::picture}, std::optional{EDataKind::sound}, {}})
            if (const CMxfPackage* package = played(kind)) return package;
    }
    const auto first = [&](auto fits) -> const CMxfPackage* {
        const auto found = std::ranges::find_if(packages, fits);
        return found == packages.end() ? nullptr : &*found;
    };
    const auto isSource = [](const CMxfPackage& package) { return package.kind == CMxfPackage::EKind::source; };
    if (const auto* package = first([&](const auto& p) { return isSource(p) && FindContainer(p.uid) != nullptr; }))
        return package;
    if (const auto* package = first([](const auto& p) { return p.IsFilePackage(); })) return package;
    return first(isSource);
}

SHeaderModel BuildHeaderModel(const CMetadataArray& sets, const CPrimerPack& primer)
{
    SHeaderModel model;
    CModelBuilder{sets, primer, model}.Build();
    return model;
}

SHeaderModel BuildHeaderModel(const SHeaderSets& header)
{
    return BuildHeaderModel(header.sets, header.primer);
}

} // namespace TamrelMxf
