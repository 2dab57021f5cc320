"""Functions of the interpreter that the core calls: none that a thread may not come back from
is called without python/core/in_python.h."""
import os
import re
import unittest

CORE = os.path.join(os.path.dirname(os.path.abspath(__file__)), "..", "..", "python", "core")

# Neither runs Python's code nor gives back an object, nor makes one that garbage is collected for.
HARMLESS = """
PyAPI_FUNC PyBool_Check PyBool_FromLong PyBytes_AsString PyBytes_AsStringAndSize PyBytes_Size PyCapsule_GetPointer
PyDict_Check PyDict_Size PyErr_ExceptionMatches PyErr_Fetch PyErr_GivenExceptionMatches PyErr_Occurred
PyEval_SaveThread PyFloat_Check PyFloat_CheckExact PyFloat_FromDouble PyGILState_Release PyIndex_Check PyInit__core
PyInterpreterState_Get PyInterpreterState_GetID PyList_CheckExact PyList_GetItem PyList_Reverse PyList_Size
PyLong_AsUnsignedLongLong PyLong_AsVoidPtr PyLong_Check PyLong_FromLong PyLong_FromSize_t PyLong_FromUnsignedLongLong
PyLong_FromVoidPtr PyMem_RawCalloc PyMem_RawFree PyMem_RawMalloc PyModuleDef_Init PyObject_CheckBuffer
PyObject_GC_UnTrack PySlice_Check PyThreadState_GetDict PyThread_get_thread_ident PyTuple_Check PyTuple_GetItem
PyTuple_Size PyType_Check PyType_GetSlot PyType_IsSubtype PyUnicode_Check PyUnicode_Compare PyUnicode_DecodeUTF8
PyUnicode_FindChar PyUnicode_FromString PyUnicode_FromStringAndSize PyUnicode_GetLength PyUnicode_InternFromString
Py_EnterRecursiveCall Py_INCREF Py_LeaveRecursiveCall Py_TYPE Py_VISIT Py_XINCREF
""".split()


def text(name):
    with open(os.path.join(CORE, name), encoding="utf-8") as file:
        return re.sub(r"//.*", "", file.read())


class Calls(unittest.TestCase):
    def test_each_is_known(self):
        wrapped = re.findall(r"#define (Py\w+)\(", text("in_python.h"))
        called = set()
        for name in os.listdir(CORE):
            if name != "in_python.h":
                called.update(re.findall(r"\b(Py[A-Za-z]*_\w+)\(", text(name)))
        self.assertGreater(len(called), 100)
        self.assertEqual(sorted(called - set(wrapped) - set(HARMLESS)), [])


if __name__ == "__main__":
    unittest.main()
