#!/usr/bin/python3
# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""Usage: recorder.py FOLDER_OF_RUNNER_PY ID ACCOUNT

The runner of that folder with that account. It prints each call that it gets before it serves it: the
signature, the kind, the id and the bytes.
"""

import sys

sys.dont_write_bytecode = True
folder, *sys.argv[1:], account = sys.argv[1:]
sys.path.insert(0, folder)

import dbus.service  # noqa: E402
import runner  # noqa: E402


class Recorder(runner.Runner):
    def __init__(self, bus, name):
        super().__init__(bus, name)
        self.network.account = account

    @dbus.service.method(runner.INTERFACE, in_signature="isay", out_signature="",
                         byte_arrays=True, message_keyword="message")
    def performRequest(self, requestType, requestId, request, message=None):
        print(message.get_signature(), requestType, requestId, request.hex(), flush=True)
        super().performRequest(requestType, requestId, request)


runner.Runner = Recorder
runner.main()
