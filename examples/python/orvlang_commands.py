# SPDX-License-Identifier: Apache-2.0
"""Two commands of the language, written in Python.

    ORVANE_PATH=examples orvlang -P table=s:n -P jsonget=d: examples/python/inventory.cmd
"""

import json

import orvlang


class table:
    """table [-n] [-s SEPARATOR] COMMAND...: the output of commands in columns."""

    @staticmethod
    def run(args, options):
        if len(args) < 2:
            return "", "table: give a command\n"
        separator = options.get("s", [None])[0]
        rows, errors = [], ""
        for command in args[1:]:
            result = orvlang.execute(command)
            rows += [line.split(separator) for line in result.output.splitlines()]
            errors += result.error
        widths = [0] * max(map(len, rows), default=0)
        for row in rows:
            for place, cell in enumerate(row):
                widths[place] = max(widths[place], len(cell))
        text = ""
        for number, row in enumerate(rows, 1):
            line = "  ".join(cell.ljust(width) for cell, width in zip(row, widths)).rstrip()
            text += f"{number:3}  {line}\n" if "n" in options else line + "\n"
        return text, errors


class jsonget:
    """jsonget [-d DEFAULT] FILE PATH...: values of a JSON file, one a line."""

    @staticmethod
    def run(args, options):
        if len(args) < 3:
            return "", "jsonget: give a file and what to take out of it, such as lamps.0.name\n"
        try:
            with open(args[1], encoding="utf-8") as file:
                document = json.load(file)
        except (OSError, ValueError) as error:
            return "", f"jsonget: {error}\n"
        text = errors = ""
        for path in args[2:]:
            value = document
            try:
                for name in path.split("."):
                    value = value[int(name)] if isinstance(value, list) else value[name]
            except (LookupError, TypeError, ValueError):
                if "d" not in options:
                    errors += f"jsonget: there is no {path}\n"
                    continue
                value = options["d"][0]
            text += (value if isinstance(value, str) else json.dumps(value)) + "\n"
        return text, errors
