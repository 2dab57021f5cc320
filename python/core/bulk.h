// bulk.h: one member called for every row of some columns.
#pragma once

#include "owned.h"

namespace orv2_geo::python {

/// call_rows(member, object, values, rows, result, failed): a call for each row. A value
/// that has a buffer is a column, of the parameter's own type and one element a row, which
/// the member reads and writes in place; any other is the same in every row. `result` takes
/// the answers, or is None. `failed` takes each row's failure number, or is None: then the
/// first failure is raised. Answers with how many rows were called.
PyObject* call_rows(PyObject* module, PyObject* arguments);

/// is_column(object, format): whether its buffer holds elements of a format one behind the
/// other, each where the machine wants it, to be read as they are.
PyObject* is_column(PyObject* module, PyObject* arguments);

}  // namespace orv2_geo::python
