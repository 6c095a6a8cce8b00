# SPDX-License-Identifier: GPL-3.0-or-later

from __future__ import annotations

DOCUMENTATION = r"""
module: backup
short_description: Keeps a recorder's setup in an export file
description:
  - Exports the recorder's whole setup (the file C(remote-setup-cli export) writes
    and C(import) takes back) to C(dest) on the controller.
  - The file holds the recorder's passwords and is readable by its owner only
    (mode 0600), whatever the umask.
  - The task is C(changed) only when the setup differs from the file already there;
    the new file replaces the old one whole (written beside it, then renamed).
version_added: 1.0.0
author: Remote Setup developers
extends_documentation_fragment: remote_setup.recorder.connection
options:
  dest:
    description: The export file; its folder must exist.
    type: path
    required: true
attributes:
  check_mode:
    support: full
    details: Reads the setup and compares it, leaving C(dest) as it is.
  diff_mode:
    support: none
"""

EXAMPLES = r"""
- name: Back every recorder up
  remote_setup.recorder.backup:
    host: "{{ ansible_host }}"
    password: "{{ recorder_password }}"
    dest: "/srv/backups/recorders/{{ inventory_hostname }}.dat"
  delegate_to: localhost
"""

RETURN = r"""
dest:
  description: The export file.
  returned: always
  type: str
  sample: /srv/backups/recorders/shop-north.dat
size:
  description: Its size in bytes.
  returned: success
  type: int
  sample: 15136
"""

import filecmp
import os
import tempfile

from ansible.module_utils.basic import AnsibleModule
from ansible_collections.remote_setup.recorder.plugins.module_utils.recorder import (
    Recorder,
    argument_spec,
)


def main():
    module = AnsibleModule(
        argument_spec=argument_spec(dest=dict(type="path", required=True)),
        supports_check_mode=True,
    )
    dest = module.params["dest"]
    folder = os.path.dirname(os.path.abspath(dest))
    if not os.path.isdir(folder):
        module.fail_json(msg="the folder of dest, %s, does not exist" % folder, dest=dest)
    recorder = Recorder(module)
    # Beside dest, so that the rename below replaces it in one step.
    descriptor, temporary = tempfile.mkstemp(prefix=".remote-setup-", dir=folder)
    os.close(descriptor)
    try:
        rc, _, err = recorder.run("export", temporary)
        if rc != 0:
            recorder.fail(rc, err, dest=dest)
        same = os.path.isfile(dest) and filecmp.cmp(temporary, dest, shallow=False)
        size = os.path.getsize(temporary)
        if not same and not module.check_mode:
            os.chmod(temporary, 0o600)
            os.rename(temporary, dest)
    finally:
        if os.path.exists(temporary):
            os.unlink(temporary)
    if same and os.stat(dest).st_mode & 0o077 and not module.check_mode:
        os.chmod(dest, 0o600)
    module.exit_json(changed=not same, dest=dest, size=size)


if __name__ == "__main__":
    main()
