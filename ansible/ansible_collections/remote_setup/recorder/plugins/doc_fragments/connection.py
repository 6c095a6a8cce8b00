# SPDX-License-Identifier: GPL-3.0-or-later
# The options every module of the collection takes to reach a recorder.

from __future__ import annotations


class ModuleDocFragment:
    DOCUMENTATION = r"""
options:
  host:
    description:
      - The recorder's host name or address, usually C({{ ansible_host }}) from the
        inventory (set it once for all modules with C(module_defaults) and
        C(group/remote_setup.recorder.recorder)).
    type: str
    required: true
  port:
    description: The recorder's port.
    type: int
    default: 9000
  user:
    description: The account to log in with.
    type: str
    default: Admin
  password:
    description:
      - The account's password, best kept in an Ansible Vault.
      - It reaches C(remote-setup-cli) through its environment, never on a command
        line, and is never logged.
    type: str
    default: ''
  timeout:
    description: Seconds to wait for the recorder's every answer.
    type: int
    default: 30
  cli:
    description: The C(remote-setup-cli) program, a path or a name looked up in C(PATH).
    type: str
    default: remote-setup-cli
notes:
  - Runs on the controller; give the task C(delegate_to=localhost) (or the
    recorders C(ansible_connection=local)).
requirements:
  - remote-setup-cli on the controller
"""
