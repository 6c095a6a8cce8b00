# SPDX-License-Identifier: GPL-3.0-or-later

from __future__ import annotations

DOCUMENTATION = r"""
module: facts
short_description: What a recorder reports about itself, and chosen settings
description:
  - Reads what C(remote-setup-cli info) reports (channels, video standard, model,
    software version, alarm and audio inputs, disks, the recorder's time) and,
    when asked, settings by name, into C(ansible_facts.recorder).
  - Changes nothing.
version_added: 1.0.0
author: Remote Setup developers
extends_documentation_fragment: remote_setup.recorder.connection
options:
  settings:
    description:
      - Settings to read, named as C(remote-setup-cli dump) names them (a section
        C(camera), a field C(camera.title) or one element C(camera.title[2])).
      - Values come typed (numbers, named values as C(value)/C(name), bit masks as
        lists of names); passwords are masked.
    type: list
    elements: str
    default: []
attributes:
  check_mode:
    support: full
  diff_mode:
    support: none
"""

EXAMPLES = r"""
- name: Learn what each shop's recorder is
  remote_setup.recorder.facts:
    host: "{{ ansible_host }}"
    password: "{{ recorder_password }}"
    settings: [camera.title, date-time]
  delegate_to: localhost

- name: Show the software versions
  ansible.builtin.debug:
    msg: "{{ inventory_hostname }} runs {{ ansible_facts.recorder.software_version }}"
"""

RETURN = r"""
ansible_facts:
  description: The facts, under C(recorder).
  returned: success
  type: dict
  contains:
    recorder:
      description: What C(info --json) reports, and C(settings), a dict of the settings asked for.
      type: dict
      sample:
        channels: 16
        video: NTSC
        model: 1441793
        software_version: 1.0.0.0
        alarm_inputs: 16
        alarm_outputs: 4
        audio_inputs: 4
        disks: 2
        recorder_time: "2026-11-25T02:12:03"
        settings:
          camera.title[0]: Entrance
"""

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.remote_setup.recorder.plugins.module_utils.recorder import (
    Recorder,
    argument_spec,
)


def main():
    module = AnsibleModule(
        argument_spec=argument_spec(settings=dict(type="list", elements="str", default=[])),
        supports_check_mode=True,
    )
    recorder = Recorder(module)
    facts = recorder.info()
    if module.params["settings"]:
        result = recorder.require("get", *module.params["settings"])
        facts["settings"] = {s["name"]: s["value"] for s in result.get("settings", [])}
    module.exit_json(changed=False, ansible_facts={"recorder": facts})


if __name__ == "__main__":
    main()
