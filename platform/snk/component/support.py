# SPDX-License-Identifier: Apache-2.0
# What the component does in Python: it runs in a namespace of its own, and no traceback shows it.

import io
import sys


def describe(error):
    """The exception in short and in full, as bytes that hold no NUL."""
    import traceback

    trace = error.__traceback__
    while trace and trace.tb_frame.f_code.co_filename == "<orvlang>":
        trace = trace.tb_next
    full = "".join(traceback.format_exception(type(error), error, trace))
    name = type(error).__qualname__
    if type(error).__module__ not in ("builtins", "__main__"):
        name = type(error).__module__ + "." + name
    try:
        text = str(error)
    except Exception:
        text = "<exception str() failed>"
    short = f"{name}: {text}" if text else name
    return tuple(t.encode("utf-8", "backslashreplace").replace(b"\0", b"\\x00") for t in (short, full))


def add_folders(folders):
    """Lets imports look there last."""
    import os

    sys.path.extend(path for path in map(os.path.abspath, folders) if path not in sys.path)


def begin_script(words):
    """The code of the file, and what end_script puts back."""
    import os

    if not words:
        raise TypeError("no file to run")
    name = words[0]
    with open(name, "rb") as file:
        code = compile(file.read(), name, "exec", dont_inherit=True)
    import __main__

    saved = (sys.argv, os.path.dirname(os.path.abspath(name)), getattr(__main__, "__file__", None))
    sys.argv = words
    sys.path.insert(0, saved[1])
    __main__.__file__ = name
    return code, saved


def end_script(saved):
    import __main__

    sys.argv, folder, file = saved
    if folder in sys.path:
        sys.path.remove(folder)
    if file is not None:
        __main__.__file__ = file
    elif hasattr(__main__, "__file__"):
        del __main__.__file__


def flush():
    for stream in (sys.stdout, sys.stderr):
        if stream is not None and not getattr(stream, "closed", False):
            stream.flush()


def finish():
    """At the end of the process: what was registered with atexit. What cannot be written was told when it was."""
    import atexit

    atexit._run_exitfuncs()
    try:
        flush()
    except OSError:
        pass


def take_input():
    """Makes sys.stdin take line after line out of the one buffer that all of the process reads from."""
    from orvlang import _read_line

    class Input(io.TextIOBase):
        name = "<stdin>"
        encoding = "utf-8"
        errors = "surrogateescape"

        def __init__(self):
            self.rest = ""

        def readable(self):
            return True

        def readline(self, size=-1):
            line = self.rest or _read_line()
            size = len(line) if size is None or size < 0 else size
            line, self.rest = line[:size], line[size:]
            return line

        def read(self, size=-1):
            text = ""
            while size is None or size < 0 or len(text) < size:
                line = self.readline(-1 if size is None or size < 0 else size - len(text))
                if not line:
                    break
                text += line
            return text

        def close(self):
            pass   # exit() does so, and the process goes on

    if sys.stdin is not None:
        sys.stdin = sys.__stdin__ = Input()
