# SPDX-License-Identifier: GPL-3.0-or-later
# What the modules share: the options that reach a recorder and the one way
# they run remote-setup-cli. The password travels in the environment of the
# one process that needs it, never on a command line that `ps` shows.

from __future__ import annotations

import json

CONNECTION_ARGS = dict(
    host=dict(type="str", required=True),
    port=dict(type="int", default=9000),
    user=dict(type="str", default="Admin"),
    password=dict(type="str", default="", no_log=True),
    timeout=dict(type="int", default=30),
    cli=dict(type="str", default="remote-setup-cli"),
)

# remote-setup-cli's exit codes.
EXIT_NAMES = {0: "ok", 1: "refused", 2: "usage error", 3: "no session"}


def argument_spec(**own):
    options = dict(CONNECTION_ARGS)
    options.update(own)
    return options


def check_range(module):
    """Refuses what the recorder could never take, before anything runs."""
    params = module.params
    if not 1 <= params["port"] <= 65535:
        module.fail_json(msg="port must be from 1 to 65535, not %d" % params["port"])
    if not 1 <= params["timeout"] <= 86400:
        module.fail_json(msg="timeout must be from 1 to 86400 seconds, not %d" % params["timeout"])


class Recorder:
    """One recorder, reached through remote-setup-cli --json."""

    def __init__(self, module):
        self.module = module
        check_range(module)
        params = module.params
        self.program = module.get_bin_path(params["cli"], required=True)
        self.options = [
            "--host", params["host"],
            "--port", str(params["port"]),
            "--user", params["user"],
            "--timeout", str(params["timeout"]),
        ]
        self.environment = {"REMOTE_SETUP_PASSWORD": params["password"] or ""}

    def run(self, *arguments, json_output=True):
        """(exit code, parsed JSON or None, standard error)."""
        command = [self.program] + self.options + (["--json"] if json_output else []) + list(arguments)
        rc, out, err = self.module.run_command(command, environ_update=self.environment)
        result = None
        if json_output and out.strip():
            try:
                result = json.loads(out)
            except ValueError:
                result = None
        return rc, result, err

    def fail(self, rc, err, **extra):
        """Ends the module with the command's messages."""
        prefix = "remote-setup-cli: "
        lines = [line[len(prefix):] if line.startswith(prefix) else line
                 for line in err.splitlines() if line.strip() and not line.startswith("Try '")]
        # Progress drawn with carriage returns counts from its last drawing.
        lines = [line.split("\r")[-1].strip() for line in lines]
        message = "; ".join(lines) or "remote-setup-cli ended with exit code %d" % rc
        self.module.fail_json(msg=message, rc=rc, outcome=EXIT_NAMES.get(rc, "exit %d" % rc),
                              stderr=err, **extra)

    def require(self, *arguments):
        """The command's JSON; any failure ends the module."""
        rc, result, err = self.run(*arguments)
        if rc != 0 or result is None:
            self.fail(rc, err)
        return result

    def info(self):
        return self.require("info")
