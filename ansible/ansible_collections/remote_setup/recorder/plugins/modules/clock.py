# SPDX-License-Identifier: GPL-3.0-or-later

from __future__ import annotations

DOCUMENTATION = r"""
module: clock
short_description: Keeps a recorder's clock right
description:
  - Reads the recorder's time and, when it is off from the controller's local time
    by more than C(tolerance) seconds (or is no possible time at all), sets it with
    C(remote-setup-cli set-time), which checks the time the recorder reports back.
  - The task is C(changed) only when the clock was set.
version_added: 1.0.0
author: Remote Setup developers
extends_documentation_fragment: remote_setup.recorder.connection
options:
  tolerance:
    description: Seconds the recorder's clock may be off before it is set.
    type: int
    default: 5
attributes:
  check_mode:
    support: full
    details: Reports whether the clock would be set, and sets nothing.
  diff_mode:
    support: none
"""

EXAMPLES = r"""
- name: Keep every recorder's clock within ten seconds
  remote_setup.recorder.clock:
    host: "{{ ansible_host }}"
    password: "{{ recorder_password }}"
    tolerance: 10
  delegate_to: localhost
"""

RETURN = r"""
recorder_time:
  description: The recorder's time before the task (null when it was no possible time).
  returned: always
  type: str
  sample: "2026-11-25T02:12:03"
offset:
  description: Seconds the recorder was ahead of the controller (negative when behind).
  returned: when the recorder's time was possible
  type: int
  sample: -3600
"""

import datetime

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.remote_setup.recorder.plugins.module_utils.recorder import (
    Recorder,
    argument_spec,
)


def main():
    module = AnsibleModule(
        argument_spec=argument_spec(tolerance=dict(type="int", default=5)),
        supports_check_mode=True,
    )
    if module.params["tolerance"] < 0:
        module.fail_json(msg="tolerance must not be negative")
    recorder = Recorder(module)
    shown = recorder.info()["recorder_time"]
    result = dict(recorder_time=shown)
    off = True
    if shown:
        offset = datetime.datetime.fromisoformat(shown) - datetime.datetime.now()
        result["offset"] = round(offset.total_seconds())
        off = abs(offset.total_seconds()) > module.params["tolerance"]
    if off and not module.check_mode:
        # Without a time the command line sets this computer's local time.
        recorder.require("set-time")
    module.exit_json(changed=off, **result)


if __name__ == "__main__":
    main()
