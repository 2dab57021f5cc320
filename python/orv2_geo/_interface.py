"""The user interface of a thread: who shows its boxes and forms."""

import collections.abc
import ctypes
import operator
import threading
from ctypes import byref

from ._calls import answering, run
from ._failures import INVALID_CALL, OVERFLOW, RunFailure, check
from ._library import (
    ControlInfo, ControlLook, ErrorBox, FormFrame, FormInfo, GridFont, GridInfo, HandleEvents,
    ShowModal, UserInterface, library,
)
from ._numbers import to_i32, to_text
from ._texts import from_c, to_c

_STARTS = ("centre of owner", "centre of screen")
_ALIGNMENTS = {1: "left", 4: "centre", 7: "right"}
_KINDS = ("label", "text_box", "check_box", "option_button", "button", "frame", "progress_bar",
          "grid")


class _Installed(threading.local):
    ui = None


_installed = _Installed()


def set_user_interface(ui):
    """Lets `ui` show the boxes and forms of this thread; None: the system again.

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
    check(library().orv2_set_user_interface(None if ui is None else byref(_callbacks)))
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
    check(library().orv2_set_owner_window(window))


@answering
def _error_box(_context, text, flags, caption):
    _installed.ui.error_box(from_c(text), flags, None if caption is None else from_c(caption))


@answering
def _show_modal(_context, pointer):
    form = Form(pointer)
    try:
        _installed.ui.show_modal(form)
    finally:
        form._end()


@answering
def _handle_events(_context):
    handle = getattr(_installed.ui, "handle_events", None)
    if handle is not None:
        handle()


# One set for all threads, alive as long as the module.
_callbacks = UserInterface(ctypes.sizeof(UserInterface), None, ErrorBox(_error_box),
                           ShowModal(_show_modal), HandleEvents(_handle_events))


def _of_frame(field, convert=bool, doc=None):
    """A property of the window that a form is meant to have."""
    return property(lambda self: convert(getattr(self._frame(), field)), doc=doc)


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

    def _describe(self):
        info = FormInfo()
        check(library().orv2_form_describe(self._live(), byref(info)))
        return info

    def _frame(self):
        frame = FormFrame()
        check(library().orv2_form_describe_frame(self._live(), byref(frame)))
        return frame

    @property
    def name(self):
        return from_c(self._describe().name)

    @property
    def caption(self):
        return from_c(self._describe().caption)

    @property
    def width(self):
        """Of the client area, in twips."""
        return self._describe().width

    @property
    def height(self):
        """Of the client area, in twips."""
        return self._describe().height

    start = _of_frame("start", _STARTS.__getitem__,
                      'Where it appears: "centre of owner" or "centre of screen".')
    left = _of_frame("left", int, "Of the design, in twips; `start` tells where it appears.")
    top = _of_frame("top", int, "Of the design, in twips; `start` tells where it appears.")
    tool_window = _of_frame("tool_window", doc="Has a narrow title bar.")
    resizable = _of_frame("resizable")
    minimise_box = _of_frame("minimise_box")
    maximise_box = _of_frame("maximise_box")
    in_task_bar = _of_frame("in_task_bar")

    @property
    def open(self):
        """Still on the screen."""
        return self._describe().open != 0

    @property
    def focus(self):
        """The name of the control that has the focus, or None: at first the first
        in tab order that is visible and enabled and no label, frame or progress
        bar. It stays there until set_focus moves it."""
        told = ctypes.c_char_p()
        check(library().orv2_form_focus(self._live(), byref(told)))
        return from_c(told.value) or None

    # The user's actions. They act on what is visible and enabled, and otherwise
    # do nothing. RunFailure 438 for an unknown name. The failures of the routine
    # behind the event come out here, with the form closed, and out of the call that
    # showed the form.

    def click(self, name):
        self._act(library().orv2_form_click, to_c(to_text(name)))

    def select(self, name):
        self._act(library().orv2_form_select, to_c(to_text(name)))

    def set_text(self, name, text):
        self._act(library().orv2_form_set_text, to_c(to_text(name)), to_c(to_text(text)))

    def set_focus(self, name):
        self._act(library().orv2_form_set_focus, to_c(to_text(name)))

    def press_enter(self):
        """Presses the default button; where that cannot act, the button in focus; on
        a grid of a form without a default button, the first in tab order."""
        self._act(library().orv2_form_press_enter)

    def press_escape(self):
        self._act(library().orv2_form_press_escape)

    def close(self):
        """The title bar's box."""
        self._act(library().orv2_form_close)

    def _act(self, action, *arguments):
        run(action, self._live(), *arguments)


class Controls(collections.abc.Mapping):
    """A form's controls by name, case ignored, in the order of the form."""

    def __init__(self, form):
        self._form = form

    def __len__(self):
        return self._form._describe().control_count

    def __iter__(self):
        return (control.name for control in self._in_order())

    def __getitem__(self, name):
        for control in self._in_order():
            if control.name.lower() == str(name).lower():
                return control
        raise KeyError(name)

    def _in_order(self):
        return [Control(self._form, i) for i in range(len(self))]


def _live(field, convert=lambda stored: stored, doc=None):
    """A property of a control, as it is at the moment."""
    return property(lambda self: convert(getattr(self._describe(), field)), doc=doc)


class Control:
    """A control on a form; places and sizes in twips, inside a frame relative
    to it. Everything is read as it is at the moment."""

    def __init__(self, form, index):
        self._form = form
        self._index = index

    def _describe(self):
        return self._told(library().orv2_form_control, ControlInfo())

    def _grid(self):
        return self._told(library().orv2_form_grid, GridInfo())

    def _look(self):
        return self._told(library().orv2_form_look, ControlLook())

    def _told(self, function, info):
        check(function(self._form._live(), self._index, byref(info)))
        return info

    name = _live("name", from_c, 'A member of a control array carries its number: "Opt3D(1)".')
    kind = _live("kind", _KINDS.__getitem__)
    left = _live("left")
    top = _live("top")
    width = _live("width")
    height = _live("height")
    tab_index = _live("tab_index")
    text = _live("text", from_c, "Caption or content.")
    container = _live("container", from_c, "A frame's name; empty: the form.")
    visible = _live("visible", bool)
    enabled = _live("enabled", bool)
    is_default = _live("is_default", bool, "Answers to Enter.")
    is_cancel = _live("is_cancel", bool, "Answers to Escape.")
    value = _live("value", doc="Not zero: ticked or selected; a progress bar's position.")
    min = _live("min")
    max = _live("max")

    @property
    def text_alignment(self):
        """Of a label: "left", "centre" or "right"."""
        return _ALIGNMENTS[self._look().alignment]

    @property
    def background(self):
        """0xRRGGBB, or None for the form's own."""
        colour = self._look().background
        return None if colour < 0 else colour

    @property
    def sizes_itself(self):
        """A label as wide as its text; it holds the edge that the text is aligned to."""
        return self._look().sizes_itself != 0

    # What only a grid has: RunFailure 438 on other controls.

    @property
    def format_string(self):
        return from_c(self._grid().format_string)

    @property
    def rows(self):
        return self._grid().rows

    @property
    def cols(self):
        return self._grid().cols

    @property
    def fixed_rows(self):
        return self._grid().fixed_rows

    @property
    def fixed_cols(self):
        return self._grid().fixed_cols

    @property
    def font(self):
        """Its name, its size in points and its weight, of which 400 is normal."""
        font = self._told(library().orv2_form_font, GridFont())
        return from_c(font.name), font.points, font.weight

    def alignment(self, col):
        """1 left, 4 centre, 7 right. RunFailure 9 outside the grid."""
        told = ctypes.c_int32()
        check(library().orv2_form_alignment(self._form._live(), self._index, to_i32(col),
                                            byref(told)))
        return told.value

    def cell(self, row, col):
        """A cell's text. RunFailure 9 outside the grid."""
        told = ctypes.c_char_p()
        check(library().orv2_form_cell(self._form._live(), self._index, to_i32(row), to_i32(col),
                                       byref(told)))
        return from_c(told.value)

    def __repr__(self):
        return "<{} {}>".format(self.kind, self.name)
