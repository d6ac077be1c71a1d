# SPDX-License-Identifier: Apache-2.0
# What the component does in Python: it runs in a namespace of its own, in which `main` is the module
# `__main__` and `read_line` gives a line of standard input.

import io
import sys


def describe(error):
    """The exception in short and in full, as bytes that hold no NUL."""
    name = type(error).__qualname__
    if type(error).__module__ not in ("builtins", "__main__"):
        name = type(error).__module__ + "." + name
    try:
        text = str(error)
    except:   # whatever it is; behind an interrupt it is most likely the next one
        text = "" if isinstance(error, KeyboardInterrupt) else "<exception str() failed>"
    short = f"{name}: {text}" if text else name
    try:
        import traceback

        trace = error.__traceback__
        while trace and trace.tb_frame.f_code.co_filename == "<orvlang>":
            trace = trace.tb_next
        full = "".join(traceback.format_exception(type(error), error, trace))
    except:   # there is no module, or no room for what it does
        full = short + "\n"
    return tuple(t.encode("utf-8", "backslashreplace").replace(b"\0", b"\\x00") for t in (short, full))


def add_folders(folders):
    """Lets imports look there last."""
    import os

    sys.path.extend(path for path in map(os.path.abspath, folders) if path not in sys.path)


def load_script(words):
    """The code of the file, and what start_script and end_script need."""
    import os

    if not words:
        raise TypeError("no file to run")
    name = words[0]
    with open(name, "rb") as file:
        code = compile(file.read(), name, "exec", dont_inherit=True)
    before = getattr(sys, "argv", None), getattr(main, "__file__", None)
    return code, (words, os.path.dirname(os.path.abspath(name)), before)


def start_script(script):
    sys.argv, folder, _ = script
    sys.path.insert(0, folder)
    main.__file__ = sys.argv[0]


def end_script(script):
    _, folder, (sys.argv, file) = script
    if file is not None:
        main.__file__ = file
    elif hasattr(main, "__file__"):
        del main.__file__
    if folder in sys.path:
        sys.path.remove(folder)


def flush():
    for stream in (getattr(sys, "stdout", None), getattr(sys, "stderr", None)):
        if hasattr(stream, "flush") and not getattr(stream, "closed", False):
            stream.flush()


def finish():
    """At the end of the process: what was registered with atexit, and what open files have yet to write.

    Returns the number of the error with which standard output refused text; 0 for none.
    """
    import atexit
    import gc

    atexit._run_exitfuncs()
    writers = (io.TextIOWrapper, io.BufferedWriter, io.BufferedRandom, io.BufferedRWPair)
    refusal = 0
    for file in [thing for thing in gc.get_objects() if issubclass(type(thing), writers)]:
        try:
            file.flush()
        except Exception as error:   # a file that is closed, too
            if file is getattr(sys, "__stdout__", None) and isinstance(error, OSError):
                refusal = error.errno
    return refusal


def take_input():
    """Makes sys.stdin take line after line out of the one buffer that all of the process reads from."""

    class Input(io.TextIOBase):
        name = "<stdin>"
        encoding = "utf-8"
        errors = "surrogateescape"

        def __init__(self):
            self.rest = ""

        def readable(self):
            return True

        def readline(self, size=-1):
            line = self.rest or read_line()
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
