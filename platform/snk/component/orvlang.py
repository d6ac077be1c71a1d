# SPDX-License-Identifier: Apache-2.0
# The part of the module that is written in Python; execute, get, set, unset and Error are there already.

from _collections_abc import MutableMapping


class Variables(MutableMapping):
    """The variables of the language by name."""

    def __getitem__(self, name):
        value = get(name)
        if value is None:
            raise KeyError(name)
        return value

    def __setitem__(self, name, value):
        set(name, value)

    def __delitem__(self, name):
        self[name]
        unset(name)

    def __contains__(self, name):
        return isinstance(name, str) and get(name) is not None

    def __iter__(self):
        return iter(dict.fromkeys(_names()))

    def __len__(self):
        return len(dict.fromkeys(_names()))

    def __repr__(self):
        return f"orvlang.variables({dict(self)!r})"


variables = Variables()
del MutableMapping, Variables
