"""The shared library: where it is, and the shape of its functions."""

import ctypes
import os
import threading
from ctypes import (
    CFUNCTYPE, POINTER, Structure, Union, c_char_p, c_double, c_float, c_int16, c_int32, c_size_t,
    c_uint16, c_uint32, c_uint64, c_void_p,
)

# The tags of the interface.
NONE, I16, I32, F32, F64, BOOL, TEXT, OBJECT, VARIANT = range(9)
DOUBLE_ARRAY, SINGLE_ARRAY, LONG_ARRAY, SHORT_ARRAY, STRING_ARRAY, OMITTED, UTF8 = range(9, 16)
BYREF = 0x100

METHOD, PROPERTY_READ, PROPERTY_WRITE, ANY = range(4)


class _As(Union):
    _fields_ = [
        ("f64", c_double), ("f32", c_float), ("i32", c_int32), ("i16", c_int16),
        ("boolean", c_int16), ("handle", c_uint64), ("utf8", c_char_p), ("pointer", c_void_p),
    ]


class Value(Structure):
    """One argument or answer: a tag, and the field that goes with it."""
    _anonymous_ = ("value",)
    _fields_ = [("tag", c_uint16), ("value", _As)]


class Failure(Structure):
    _fields_ = [("number", c_int32), ("description", c_char_p), ("source", c_char_p)]


class ClassInfo(Structure):
    _fields_ = [("name", c_char_p), ("registered_name", c_char_p), ("member_count", c_size_t)]


class MemberInfo(Structure):
    _fields_ = [("name", c_char_p), ("kind", c_int32), ("result", c_uint16),
                ("parameter_count", c_size_t)]


class ParameterInfo(Structure):
    _fields_ = [("name", c_char_p), ("type", c_uint16), ("optional", c_int16),
                ("has_default", c_int16), ("default_value", c_int32)]


class ArrayInfo(Structure):
    _fields_ = [("type", c_uint16), ("dimensions", c_uint16), ("allocated", c_int16),
                ("locked", c_int16), ("lower", c_int32), ("count", c_uint32)]


SetProperty = CFUNCTYPE(c_int32, c_void_p, c_char_p, POINTER(Value))
Call = CFUNCTYPE(c_int32, c_void_p, c_char_p, POINTER(Value), c_size_t, POINTER(Value))
Release = CFUNCTYPE(None, c_void_p)
Resize = CFUNCTYPE(c_int32, c_void_p, c_int32, c_uint32, c_int32, c_uint32, c_int16,
                   POINTER(c_void_p))
ErrorBox = CFUNCTYPE(c_int32, c_void_p, c_char_p, c_int32, c_char_p)
ShowModal = CFUNCTYPE(c_int32, c_void_p, c_void_p)
HandleEvents = CFUNCTYPE(c_int32, c_void_p)


class HostObject(Structure):
    _fields_ = [("size", c_size_t), ("set_property", SetProperty), ("call", Call),
                ("release", Release)]


class UserInterface(Structure):
    _fields_ = [("size", c_size_t), ("context", c_void_p), ("error_box", ErrorBox),
                ("show_modal", ShowModal), ("handle_events", HandleEvents)]


class FormInfo(Structure):
    _fields_ = [("name", c_char_p), ("caption", c_char_p), ("width", c_int32),
                ("height", c_int32), ("open", c_int16), ("control_count", c_size_t)]


class ControlInfo(Structure):
    _fields_ = [
        ("name", c_char_p), ("kind", c_int32), ("left", c_int32), ("top", c_int32),
        ("width", c_int32), ("height", c_int32), ("tab_index", c_int32), ("text", c_char_p),
        ("container", c_char_p), ("visible", c_int16), ("enabled", c_int16),
        ("is_default", c_int16), ("is_cancel", c_int16), ("value", c_double), ("min", c_double),
        ("max", c_double),
    ]


class GridInfo(Structure):
    _fields_ = [("format_string", c_char_p), ("rows", c_int32), ("cols", c_int32),
                ("fixed_rows", c_int32), ("fixed_cols", c_int32)]


class FormFrame(Structure):
    _fields_ = [("start", c_int32), ("left", c_int32), ("top", c_int32),
                ("tool_window", c_int16), ("resizable", c_int16), ("minimise_box", c_int16),
                ("maximise_box", c_int16), ("in_task_bar", c_int16)]


class ControlLook(Structure):
    _fields_ = [("alignment", c_int32), ("background", c_int32), ("sizes_itself", c_int16)]


class GridFont(Structure):
    _fields_ = [("name", c_char_p), ("points", c_double), ("weight", c_int32)]


_handle_out = POINTER(c_uint64)
_size_out = POINTER(c_size_t)
_units_out = POINTER(c_void_p)

# The functions in the header's order. All but the version and the count answer with
# a status.
DECLARATIONS = {
    "orv2_version": (),
    "orv2_last_failure": (POINTER(Failure),),
    "orv2_failure_at": (c_size_t, POINTER(c_int32), POINTER(c_char_p)),
    "orv2_class_count": (),
    "orv2_class_at": (c_size_t, POINTER(ClassInfo)),
    "orv2_member_at": (c_size_t, c_size_t, POINTER(MemberInfo)),
    "orv2_parameter_at": (c_size_t, c_size_t, c_size_t, POINTER(ParameterInfo)),
    "orv2_create": (c_char_p, _handle_out),
    "orv2_reference": (c_uint64,),
    "orv2_release": (c_uint64,),
    "orv2_class_of": (c_uint64, _size_out),
    "orv2_find_member": (c_uint64, c_char_p, c_int32, _size_out),
    "orv2_call": (c_uint64, c_size_t, POINTER(Value), c_size_t, POINTER(Value)),
    "orv2_call_name": (c_uint64, c_char_p, POINTER(Value), c_size_t, POINTER(Value)),
    "orv2_array_new": (c_uint16, _handle_out),
    "orv2_array_make": (c_uint16, c_int32, c_uint32, c_uint16, _handle_out),
    "orv2_array_adopt": (c_uint16, c_void_p, c_int32, c_uint32, Resize, c_void_p, _handle_out),
    "orv2_array_describe": (c_uint64, POINTER(ArrayInfo)),
    "orv2_array_bounds": (c_uint64, POINTER(c_int32), POINTER(c_int32)),
    "orv2_array_data": (c_uint64, POINTER(c_void_p)),
    "orv2_array_resize": (c_uint64, c_int32, c_int32, c_int16),
    "orv2_array_lock": (c_uint64,),
    "orv2_array_unlock": (c_uint64,),
    "orv2_array_get_text": (c_uint64, c_int32, _units_out, _size_out),
    "orv2_array_set_text": (c_uint64, c_int32, c_char_p, c_size_t),
    "orv2_text_new": (c_char_p, c_size_t, _handle_out),
    "orv2_text_set": (c_uint64, c_char_p, c_size_t),
    "orv2_text_get": (c_uint64, _units_out, _size_out),
    "orv2_host_object_new": (POINTER(HostObject), c_void_p, _handle_out),
    "orv2_set_failure": (c_int32, c_char_p, c_char_p),
    "orv2_set_user_interface": (POINTER(UserInterface),),
    "orv2_set_owner_window": (c_uint64,),
    "orv2_form_describe": (c_void_p, POINTER(FormInfo)),
    "orv2_form_control": (c_void_p, c_size_t, POINTER(ControlInfo)),
    "orv2_form_grid": (c_void_p, c_size_t, POINTER(GridInfo)),
    "orv2_form_describe_frame": (c_void_p, POINTER(FormFrame)),
    "orv2_form_look": (c_void_p, c_size_t, POINTER(ControlLook)),
    "orv2_form_font": (c_void_p, c_size_t, POINTER(GridFont)),
    "orv2_form_alignment": (c_void_p, c_size_t, c_int32, POINTER(c_int32)),
    "orv2_form_cell": (c_void_p, c_size_t, c_int32, c_int32, POINTER(c_char_p)),
    "orv2_form_focus": (c_void_p, POINTER(c_char_p)),
    "orv2_form_click": (c_void_p, c_char_p),
    "orv2_form_select": (c_void_p, c_char_p),
    "orv2_form_set_text": (c_void_p, c_char_p, c_char_p),
    "orv2_form_set_focus": (c_void_p, c_char_p),
    "orv2_form_press_enter": (c_void_p,),
    "orv2_form_press_escape": (c_void_p,),
    "orv2_form_close": (c_void_p,),
}

_soname = "liborv2_geo.so.2"
_file_names = (_soname, "liborv2_geo.so")
_presets = ("release", "report", "debug", "clang", "bench", "asan")

_lock = threading.RLock()
_loaded = None
_loaded_from = None


def load(path):
    """Uses the library at `path`. To be called before anything else is used.

    Asking for the same library again changes nothing; for another one it is
    too late: RuntimeError.
    """
    wanted = os.path.realpath(os.fspath(path))
    with _lock:
        if _loaded is None:
            _open(wanted)
        elif _loaded_from != wanted:
            raise RuntimeError("the library is in use already, from " + _loaded_from)


def library():
    """The library's functions, sought on first use."""
    if _loaded is None:
        with _lock:
            if _loaded is None:
                _open(_found())
    return _loaded


def _open(path):
    global _loaded, _loaded_from
    opened = ctypes.CDLL(path)
    for name, arguments in DECLARATIONS.items():
        function = getattr(opened, name)
        function.argtypes = arguments
        function.restype = c_size_t if name == "orv2_class_count" else c_int32
    _loaded, _loaded_from = opened, path


def _found():
    """Beside the package, in the build tree, or wherever the loader finds it."""
    package = os.path.dirname(os.path.abspath(__file__))
    builds = os.path.join(os.path.dirname(os.path.dirname(package)), "build")
    places = [package] + [os.path.join(builds, preset, "lib") for preset in _presets]
    for place in places:
        for name in _file_names:
            path = os.path.join(place, name)
            if os.path.exists(path):
                return os.path.realpath(path)
    return _soname
