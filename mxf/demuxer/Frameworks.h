#pragma once

#include "../model/HeaderModel.h"
#include "Records.h"

#include <deque>
#include <string>
#include <vector>

namespace TamrelMxf {

/// The descriptive frameworks of a file as records, with the texts that they point at.
class CFrameworkList {
public:
    /// \param model  borrowed for the call
    explicit CFrameworkList(const SHeaderModel& model);
    CFrameworkList(const CFrameworkList&) = delete;
    CFrameworkList& operator=(const CFrameworkList&) = delete;

    const std::vector<mxf_dmd_framework>& Records() const { return records_; }

private:
    void Add(const CMxfPackage& package, const CMxfTrack& track, const CMxfClip& clip);
    void AddProperties(const SMetadataObject& object, const std::string& prefix,
                       std::vector<mxf_dmd_property>& properties);
    const char* Keep(std::string text) { return texts_.emplace_back(std::move(text)).c_str(); }

    std::deque<std::string> texts_;
    std::deque<std::vector<mxf_dmd_property>> properties_;
    std::vector<mxf_dmd_framework> records_;
};

} // namespace TamrelMxf
