# SPDX-FileCopyrightText: 2026 The Kinlet developers
# SPDX-License-Identifier: LGPL-2.1-or-later
"""What a program says about its own use. Everything is asked of the program itself."""

import re
import subprocess


def output(*command):
    return subprocess.run(command, stdout=subprocess.PIPE, stderr=subprocess.STDOUT, text=True,
                          stdin=subprocess.DEVNULL, check=False).stdout


class Program:
    def __init__(self, path):
        self.path = path
        self.help = output(path, "--help")
        self.commands = self.terms("Commands")
        # A list of them, or sentences that name them.
        self.environment = self.terms("Environment") or set(re.findall(r"\bKINLET_\w+", self.help))
        forms = [line.split("  ")[0] for line in self.section("Options")]
        self.options = {option for form in forms for option in re.findall(r"(?<=--)[\w-]+", form)}
        # As they can be typed.
        self.typed_options = [re.sub(" .*", "=1", form) for form in forms
                              if form not in ("--help", "--version")]
        # A list of them, or a sentence that names them.
        self.exit_codes = self.terms("Exit codes") or set(
            re.findall(r"\b\d\b", self.help.partition("Ends with")[2].partition("\n\n")[0]))

    def section(self, title):
        text = self.help.partition(f"\n{title}:\n")[2].partition("\n\n")[0]
        return [line.strip() for line in text.splitlines()]

    def terms(self, title):
        return {line.split()[0] for line in self.section(title)}

    def options_of(self, command):
        """The options that the command takes and not every other. Nothing is done: the program is
        given options that do not fit, and says which would.
        """
        answer = output(self.path, command, *self.typed_options)
        assert f"{command} does not take" in answer, answer
        return set(re.findall(r"(?<=--)[\w-]+", answer.partition("; it takes ")[2].split("\n")[0]))
