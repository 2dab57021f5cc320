"""The user interface of a thread: who shows its boxes and forms."""

import collections.abc
import operator
import threading

from . import _core
from ._failures import INVALID_CALL, OVERFLOW, RunFailure, warn
from ._library import needed

_STARTS = ("centre of owner", "centre of screen")
_ALIGNMENTS = {1: "left", 4: "centre", 7: "right"}
_KINDS = ("label", "text_box", "check_box", "option_button", "button", "frame", "progress_bar",
          "grid")

# The user's actions, in the order of the core.
_CLICK, _SELECT, _SET_TEXT, _SET_FOCUS, _PRESS_ENTER, _PRESS_ESCAPE, _CLOSE = range(7)

# Who shows boxes and forms, as the core numbers them.
_SCRIPTS, _OBJECT, _CONSOLE, _SYSTEM = range(4)


class _OwnInterface:
    """One of the library's own user interfaces."""

    def __init__(self, name, who):
        self._name = name
        self._who = who

    def __repr__(self):
        return "orv2_geo." + self._name

    def __reduce__(self):
        return self._name


console = _OwnInterface("console", _CONSOLE)
console.__doc__ = """Boxes are lines on standard error; forms leave as their cancel button would."""

screen = _OwnInterface("screen", _SYSTEM)
screen.__doc__ = """Boxes and forms are windows where there is a screen, and wait for a person;
else as on the console."""


class _Installed(threading.local):
    ui = None


_installed = _Installed()


def set_user_interface(ui):
    """Lets `ui` show the boxes and forms of this thread.

    None, as at the start: a box that only tells is a GeoWarning; one that tells
             of a failure that a routine traps raises that RunFailure in the middle
             of the call. Forms, and boxes over them, are windows where there is a
             screen; elsewhere forms are cancelled.
    orv2_geo.console, orv2_geo.screen: the library's own behaviour, without and
             with windows. A trapped failure is then told, and the call goes on.
    An object of your own, with

    ui.error_box(text, flags, caption)  shows a text until it is dismissed;
                                        flags 16: critical; caption None: default
    ui.show_modal(form)                 shows a form and passes the user's
                                        actions on until it is no longer open;
                                        a failure of the routine behind an event
                                        closes it, and the call that showed it
                                        raises that failure in any case
    ui.handle_events()                  optional: lets waiting events be handled

    Answers with the interface before, or None.
    """
    needed()
    who = ui._who if isinstance(ui, _OwnInterface) else _SCRIPTS if ui is None else _OBJECT
    _core.install_interface(who)
    before, _installed.ui = _installed.ui, ui
    return before


def set_owner_window(window):
    """Names the host's window over which the boxes and forms of this thread appear
    and stay, by its native number, such as an X11 window's; 0 takes it back.

    Without it, or when it is gone, the host's active window is sought. It has no
    effect on a set_user_interface of the host's own. RunFailure 6 for a number
    below 0 or beyond 64 bits.
    """
    window = operator.index(window)
    if not 0 <= window < 2**64:
        raise RunFailure(OVERFLOW)
    needed()
    _core.set_owner_window(window)


# ---- What the library calls ---------------------------------------------------


def _error_box(text, flags, caption, failure):
    ui = _installed.ui
    if ui is not None:
        ui.error_box(text, flags, caption)
    elif failure is not None:
        raise RunFailure(*failure)
    else:
        warn(text)


def _show_modal(pointer):
    form = Form(pointer)
    try:
        _installed.ui.show_modal(form)
    finally:
        form._end()


def _handle_events():
    handle = getattr(_installed.ui, "handle_events", None)
    if handle is not None:
        handle()


_core.use("error_box", _error_box)
_core.use("show_modal", _show_modal)
_core.use("handle_events", _handle_events)


# ---- Forms --------------------------------------------------------------------


def _of_frame(place, convert=bool, doc=None):
    """A property of the window that a form is meant to have."""
    return property(lambda self: convert(_core.form_frame(self._live())[place]), doc=doc)


def _of_form(place, convert=lambda told: told, doc=None):
    """A property of a form, as it is at the moment."""
    return property(lambda self: convert(_core.form_describe(self._live())[place]), doc=doc)


class Form:
    """A form on the screen. Once show_modal has returned it is no more:
    RunFailure 5."""

    def __init__(self, pointer):
        self._pointer = pointer
        self._thread = threading.get_ident()
        self.controls = Controls(self)

    def _end(self):
        self._pointer = None

    def _live(self):
        if self._pointer is None or self._thread != threading.get_ident():
            raise RunFailure(INVALID_CALL)
        return self._pointer

    name = _of_form(0)
    caption = _of_form(1)
    width = _of_form(2, doc="Of the client area, in twips.")
    height = _of_form(3, doc="Of the client area, in twips.")
    open = _of_form(4, bool, "Still on the screen.")

    start = _of_frame(0, _STARTS.__getitem__,
                      'Where it appears: "centre of owner" or "centre of screen".')
    left = _of_frame(1, int, "Of the design, in twips; `start` tells where it appears.")
    top = _of_frame(2, int, "Of the design, in twips; `start` tells where it appears.")
    tool_window = _of_frame(3, doc="Has a narrow title bar.")
    resizable = _of_frame(4)
    minimise_box = _of_frame(5)
    maximise_box = _of_frame(6)
    in_task_bar = _of_frame(7)

    @property
    def focus(self):
        """The name of the control that has the focus, or None: at first the first
        in tab order that is visible and enabled and no label, frame or progress
        bar. It stays there until set_focus moves it."""
        return _core.form_focus(self._live()) or None

    # The user's actions. They act on what is visible and enabled, and otherwise
    # do nothing. RunFailure 438 for an unknown name. The failures of the routine
    # behind the event come out here, with the form closed, and out of the call that
    # showed the form.

    def click(self, name):
        self._act(_CLICK, name)

    def select(self, name):
        self._act(_SELECT, name)

    def set_text(self, name, text):
        self._act(_SET_TEXT, name, text)

    def set_focus(self, name):
        self._act(_SET_FOCUS, name)

    def press_enter(self):
        """Presses the default button; where that cannot act, the button in focus; on
        a grid of a form without a default button, the first in tab order."""
        self._act(_PRESS_ENTER)

    def press_escape(self):
        self._act(_PRESS_ESCAPE)

    def close(self):
        """The title bar's box."""
        self._act(_CLOSE)

    def _act(self, action, *texts):
        _core.form_act(self._live(), action, *map(_core.as_text, texts))


class Controls(collections.abc.Mapping):
    """A form's controls by name, case ignored, in the order of the form."""

    def __init__(self, form):
        self._form = form

    def __len__(self):
        return _core.form_describe(self._form._live())[5]

    def __iter__(self):
        return (control.name for control in self._in_order())

    def __getitem__(self, name):
        for control in self._in_order():
            if control.name.lower() == str(name).lower():
                return control
        raise KeyError(name)

    def _in_order(self):
        return [Control(self._form, i) for i in range(len(self))]


def _live(place, convert=lambda told: told, doc=None):
    """A property of a control, as it is at the moment."""
    return property(lambda self: convert(self._told(_core.form_control)[place]), doc=doc)


def _of_grid(place):
    """A property that only a grid has: RunFailure 438 on other controls."""
    return property(lambda self: self._told(_core.form_grid)[place])


class Control:
    """A control on a form; places and sizes in twips, inside a frame relative
    to it. Everything is read as it is at the moment."""

    def __init__(self, form, index):
        self._form = form
        self._index = index

    def _told(self, function, *given):
        return function(self._form._live(), self._index, *given)

    name = _live(0, doc='A member of a control array carries its number: "Opt3D(1)".')
    kind = _live(1, _KINDS.__getitem__)
    left = _live(2)
    top = _live(3)
    width = _live(4)
    height = _live(5)
    tab_index = _live(6)
    text = _live(7, doc="Caption or content.")
    container = _live(8, doc="A frame's name; empty: the form.")
    visible = _live(9, bool)
    enabled = _live(10, bool)
    is_default = _live(11, bool, "Answers to Enter.")
    is_cancel = _live(12, bool, "Answers to Escape.")
    value = _live(13, doc="Not zero: ticked or selected; a progress bar's position.")
    min = _live(14)
    max = _live(15)

    @property
    def text_alignment(self):
        """Of a label: "left", "centre" or "right"."""
        return _ALIGNMENTS[self._told(_core.form_look)[0]]

    @property
    def background(self):
        """0xRRGGBB, or None for the form's own."""
        colour = self._told(_core.form_look)[1]
        return None if colour < 0 else colour

    @property
    def sizes_itself(self):
        """A label as wide as its text; it holds the edge that the text is aligned to."""
        return bool(self._told(_core.form_look)[2])

    format_string = _of_grid(0)
    rows = _of_grid(1)
    cols = _of_grid(2)
    fixed_rows = _of_grid(3)
    fixed_cols = _of_grid(4)

    @property
    def font(self):
        """Its name, its size in points and its weight, of which 400 is normal."""
        return self._told(_core.form_font)

    def alignment(self, col):
        """1 left, 4 centre, 7 right. RunFailure 9 outside the grid."""
        return self._told(_core.form_alignment, _core.as_i32(col))

    def cell(self, row, col):
        """A cell's text. RunFailure 9 outside the grid."""
        return self._told(_core.form_cell, _core.as_i32(row), _core.as_i32(col))

    def __repr__(self):
        return "<{} {}>".format(self.kind, self.name)
