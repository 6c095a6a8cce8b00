# SPDX-License-Identifier: GPL-3.0-or-later

from __future__ import annotations

DOCUMENTATION = r"""
module: firmware
short_description: Brings a recorder to a firmware version
description:
  - Compares the recorder's software version with C(version) and, only when they
    differ, sends C(package) with C(remote-setup-cli upload), which checks the
    package before it connects and sends the components the recorder needs.
  - The task is C(changed) only when a package was sent and taken whole.
version_added: 1.0.0
author: Remote Setup developers
extends_documentation_fragment: remote_setup.recorder.connection
options:
  package:
    description: The firmware package (C(.KRP)) on the controller.
    type: path
    required: true
  version:
    description: The software version the package brings, as C(facts) reports it (C(a.b.c.d)).
    type: str
    required: true
  deadline:
    description: Seconds the whole transfer may take before it is stopped.
    type: int
    default: 3600
attributes:
  check_mode:
    support: full
    details: Reports whether the package would be sent, and sends nothing.
  diff_mode:
    support: none
"""

EXAMPLES = r"""
- name: Bring every recorder to 2.1.0.3, a few shops at a time
  remote_setup.recorder.firmware:
    host: "{{ ansible_host }}"
    password: "{{ recorder_password }}"
    package: files/DVR-2.1.0.3.KRP
    version: 2.1.0.3
  delegate_to: localhost
  throttle: 4
"""

RETURN = r"""
version_before:
  description: The recorder's software version before the task.
  returned: always
  type: str
  sample: 2.0.9.1
"""

import os
import re

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.remote_setup.recorder.plugins.module_utils.recorder import (
    Recorder,
    argument_spec,
)


def main():
    module = AnsibleModule(
        argument_spec=argument_spec(
            package=dict(type="path", required=True),
            version=dict(type="str", required=True),
            deadline=dict(type="int", default=3600),
        ),
        supports_check_mode=True,
    )
    params = module.params
    if not re.fullmatch(r"\d{1,3}(\.\d{1,3}){3}", params["version"]):
        module.fail_json(msg="version must be four numbers a.b.c.d, not '%s'" % params["version"])
    if not 1 <= params["deadline"] <= 604800:
        module.fail_json(msg="deadline must be from 1 to 604800 seconds")
    if not os.path.isfile(params["package"]):
        module.fail_json(msg="package %s is not a file" % params["package"])
    recorder = Recorder(module)
    before = recorder.info()["software_version"]
    wanted = ".".join(str(int(part)) for part in params["version"].split("."))
    if before == wanted or module.check_mode:
        module.exit_json(changed=before != wanted, version_before=before)
    rc, _, err = recorder.run("upload", "--deadline", str(params["deadline"]), params["package"])
    if rc != 0:
        recorder.fail(rc, err, version_before=before)
    module.exit_json(changed=True, version_before=before)


if __name__ == "__main__":
    main()
