// SPDX-License-Identifier: GPL-3.0-or-later

#pragma once

#include "firmware/FirmwarePackage.h"
#include "firmware/RecorderVersions.h"

#include <vector>

namespace firmware {

// Which components of a package go to a recorder. A recorder at the
// package's version or above takes every component (the update is forced:
// whatever it runs is replaced). A recorder below it takes a component it
// reports a version for only when that version is lower than the
// component's, and every component of a type it does not report.
struct UpdatePlan
{
    bool forced = false;
    std::vector<bool> send; // per component, in table order
    quint64 totalBytes = 0; // the sizes of the components sent: the 100 % mark

    static UpdatePlan make(FirmwareVersion packageVersion,
                           const std::vector<FirmwarePackage::Component> &components,
                           const RecorderVersions &recorder);
};

} // namespace firmware
