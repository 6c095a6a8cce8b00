# SPDX-License-Identifier: GPL-3.0-or-later

from __future__ import annotations

DOCUMENTATION = r"""
module: settings
short_description: Brings a recorder's settings to the values given
description:
  - Gives the settings to C(remote-setup-cli apply), which checks every value as
    C(set) does before it connects, compares them with the recorder, writes each
    touched section once and reads the record again to see that every value held.
  - The task is C(changed) only when something was written (in check mode, when
    something would be).
  - A bad name or value fails the task before the recorder is contacted.
version_added: 1.0.0
author: Remote Setup developers
extends_documentation_fragment: remote_setup.recorder.connection
options:
  settings:
    description:
      - Setting names as C(remote-setup-cli dump) prints them (a field such as
        C(camera.covert) covers every element, C(camera.title[0]) one) and the
        values wanted, as C(set) takes them; a dict with C(value), or a list of bit
        names, as C(--json) prints them, is taken too.
      - Quote C("On") and C("Off"); unquoted YAML reads them as true and false,
        which this module turns back into C(On) and C(Off).
      - C(********) leaves a password as the recorder holds it.
    type: dict
    required: true
  ignore:
    description: Settings to leave alone, by name pattern (C(stream.*), C(users.password)).
    type: list
    elements: str
    default: []
attributes:
  check_mode:
    support: full
    details: Runs C(apply --check), which reports what would change and sends nothing.
  diff_mode:
    support: full
    details: Before and after hold one C(name = value) line per changed setting.
"""

EXAMPLES = r"""
- name: Name the cameras and keep quality high
  remote_setup.recorder.settings:
    host: "{{ ansible_host }}"
    password: "{{ recorder_password }}"
    settings:
      camera.title[0]: Entrance
      camera.title[1]: Till
      record.quality[1][0]: High
      camera.covert: "Off"
  delegate_to: localhost
"""

RETURN = r"""
changes:
  description: Each setting that differed, with the recorder's value before and the one wanted.
  returned: always
  type: list
  elements: dict
  sample:
    - name: camera.title[0]
      before: CAM 01
      after: Entrance
changed_count:
  description: How many settings differed.
  returned: always
  type: int
  sample: 1
"""

import json
import os
import tempfile

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.remote_setup.recorder.plugins.module_utils.recorder import (
    Recorder,
    argument_spec,
)


def wanted_value(value):
    """A value as apply reads it from JSON."""
    if isinstance(value, bool):
        return "On" if value else "Off"
    if isinstance(value, (int, dict, list)):
        return value
    return str(value)


def shown(value):
    if isinstance(value, dict):
        return value.get("name") or value.get("value")
    if isinstance(value, list):
        return ",".join(str(v) for v in value)
    return value


def main():
    module = AnsibleModule(
        argument_spec=argument_spec(
            settings=dict(type="dict", required=True),
            ignore=dict(type="list", elements="str", default=[]),
        ),
        supports_check_mode=True,
    )
    if not module.params["settings"]:
        module.fail_json(msg="settings names no setting")
    recorder = Recorder(module)
    wanted = {"settings": [{"name": str(name), "value": wanted_value(value)}
                           for name, value in module.params["settings"].items()]}
    # A private file: it may hold passwords.
    descriptor, path = tempfile.mkstemp(prefix="remote-setup-", suffix=".json")
    try:
        with os.fdopen(descriptor, "w") as stream:
            json.dump(wanted, stream)
        arguments = ["apply"]
        if module.check_mode:
            arguments.append("--check")
        for pattern in module.params["ignore"]:
            arguments += ["--ignore", pattern]
        rc, result, err = recorder.run(*arguments, path)
    finally:
        os.unlink(path)

    changes = (result or {}).get("changes", [])
    extra = dict(changes=changes, changed_count=len(changes))
    if rc != 0:
        # The plan was printed before the write that failed.
        recorder.fail(rc, err, **extra)
    diff = dict(
        before="".join("%s = %s\n" % (c["name"], shown(c["before"])) for c in changes),
        after="".join("%s = %s\n" % (c["name"], shown(c["after"])) for c in changes),
    )
    module.exit_json(changed=bool(changes), diff=diff, **extra)


if __name__ == "__main__":
    main()
