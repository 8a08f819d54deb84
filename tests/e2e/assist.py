#!/usr/bin/python3
"""Uses the program as assistive technology does.

    assist.py COMMAND ARGUMENT... , COMMAND ARGUMENT... , ...

Every command waits until it can be carried out, and ends the script where that takes too long.
"""

import sys
import time
import warnings

import gi

gi.require_version("Atspi", "2.0")
from gi.repository import Atspi, GLib  # noqa: E402

PATIENCE = 30.0
# Its successors are younger than the oldest system that this serves.
warnings.simplefilter("ignore", DeprecationWarning)


def program():
    desktop = Atspi.get_desktop(0)
    desktop.set_cache_mask(Atspi.Cache.NONE)
    for place in range(desktop.get_child_count()):
        found = desktop.get_child_at_index(place)
        if found is not None and found.get_name() == "tallyvox":
            return found
    return None


def everything(node):
    for place in range(node.get_child_count()):
        child = node.get_child_at_index(place)
        if child is not None:
            yield child
            yield from everything(child)


def told():
    """Every name and every description."""
    words = []
    for node in everything(program()):
        words += [node.get_name(), node.get_description()]
    return [word for word in words if word]


def find(name, suits):
    for node in everything(program()):
        if node.get_name() == name and suits(node):
            return node
    raise LookupError(name)


def is_enabled(node):
    return node.get_state_set().contains(Atspi.StateType.ENABLED)


def press(name):
    """Presses what is called so."""
    find(name, lambda node: node.get_action_iface() is not None
         and is_enabled(node)).get_action_iface().do_action(0)


def set_value(name, value):
    """Sets the value of what is called so."""
    find(name, lambda node: node.get_value_iface() is not None
         and is_enabled(node)).get_value_iface().set_current_value(float(value))


def see(name):
    """Waits until something tells this."""
    if name not in told():
        raise LookupError(name)


def miss(name):
    """Waits until nothing tells this."""
    if name in told():
        raise LookupError(f"no {name}")


def disabled(name):
    """Waits until what is called so and can be pressed is disabled."""
    find(name, lambda node: node.get_action_iface() is not None and not is_enabled(node))


def count(prefix, number):
    """Waits until so many names begin so."""
    found = sum(name.startswith(prefix) for name in told())
    if found != int(number):
        raise LookupError(f"{found} instead of {number} of {prefix}")


COMMANDS = {"press": press, "set": set_value, "see": see, "miss": miss, "disabled": disabled,
            "count": count}


def carry_out(command, *arguments):
    end = time.monotonic() + PATIENCE
    while True:
        try:
            return COMMANDS[command](*arguments)
        except (LookupError, AttributeError, GLib.Error) as problem:
            if time.monotonic() > end:
                here = told() if program() else "nothing"
                sys.exit(f"{command} {' '.join(arguments)}: {problem!r}; there is {here}")
        time.sleep(0.02)


def main():
    line = []
    for word in [*sys.argv[1:], ","]:
        if word != ",":
            line.append(word)
        elif line:
            carry_out(*line)
            line = []
    print(f"done {time.monotonic()}")


if __name__ == "__main__":
    main()
