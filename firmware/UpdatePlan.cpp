// SPDX-License-Identifier: GPL-3.0-or-later

#include "firmware/UpdatePlan.h"

namespace firmware {

UpdatePlan UpdatePlan::make(FirmwareVersion packageVersion,
                            const std::vector<FirmwarePackage::Component> &components,
                            const RecorderVersions &recorder)
{
    UpdatePlan plan;
    plan.forced = recorder.overall >= packageVersion;
    for (const FirmwarePackage::Component &component : components) {
        const auto slot = RecorderVersions::slotOf(component.type);
        const bool send = plan.forced || !slot || recorder.components[*slot] < component.version;
        plan.send.push_back(send);
        if (send)
            plan.totalBytes += component.size;
    }
    return plan;
}

} // namespace firmware
